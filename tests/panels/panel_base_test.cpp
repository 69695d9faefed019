#include <gtest/gtest.h>

#include <QAction>
#include <QMenu>
#include <QPushButton>
#include <QStringList>
#include <memory>

#include "qxbase/control/event_link.h"
#include "qxbase/framework/host_services.h"
#include "qxbase/panels/panel_base.h"
#include "tests/framework/print_qstring.h"
#include "tests/panels/panel_test_support.h"

using namespace qx;
using qxtest::TestPanel;

namespace {

class PanelProperties : public ::testing::Test {
protected:
    void Write(const QString& Name, const Variant& Value)
    {
        TQXPropertyHandle handle = 0;
        ASSERT_TRUE(FPanel.GetPropertyHandle(Name, handle));
        ASSERT_TRUE(FPanel.SetPropertyValue(nullptr, handle, Value));
    }
    Variant Read(const QString& Name)
    {
        TQXPropertyHandle handle = 0;
        Variant value;
        EXPECT_TRUE(FPanel.GetPropertyHandle(Name, handle));
        EXPECT_TRUE(FPanel.GetPropertyValue(handle, value));
        return value;
    }

    TestPanel FPanel;
};

}  // namespace

TEST_F(PanelProperties, BothAreEnumerationsWithTheirChoices)
{
    for (const auto& [name, description, first, second] :
         {std::tuple{"ShowPropertypage", "Show property page", "True", "Unknown"},
          std::tuple{"PanelEnable", "Panel State", "Disabled", "Enabled"}}) {
        TQXPropertyHandle handle = 0;
        ASSERT_TRUE(FPanel.GetPropertyHandle(name, handle)) << name;
        const TQXPropertyItem* item = FPanel.GetPropertyItem(handle);
        EXPECT_EQ(item->FDescription, description);
        EXPECT_EQ(item->FDataType, varQXEnumeration);
        Variant list;
        ASSERT_TRUE(FPanel.GetEnumerationList(handle, list));
        EXPECT_EQ(list.ArrayElement(0).ToString(), first);
        EXPECT_EQ(list.ArrayElement(1).ToString(), second);
    }
    // Clearing registers both again instead of raising on the second round.
    FPanel.ClearProperties();
    EXPECT_EQ(FPanel.GetPropertyCount(), 2);
}

TEST_F(PanelProperties, PanelEnableDisablesOnlyOnTheExactText)
{
    QPushButton* button = new QPushButton(&FPanel);
    Write("PanelEnable", "Disabled");
    EXPECT_FALSE(FPanel.GetPanelEnabled());
    EXPECT_FALSE(button->isEnabled());
    EXPECT_EQ(Read("PanelEnable"), Variant(std::int32_t{0}));

    Write("PanelEnable", "Enabled ");
    EXPECT_TRUE(FPanel.GetPanelEnabled());
    EXPECT_TRUE(button->isEnabled());
    EXPECT_EQ(Read("PanelEnable"), Variant(std::int32_t{1}));

    Write("PanelEnable", "Disabled");
    Write("PanelEnable", "disabled");
    EXPECT_TRUE(FPanel.GetPanelEnabled());
}

TEST_F(PanelProperties, PanelEnableTakesAnyNumberAsNonZero)
{
    Write("PanelEnable", std::int32_t{0});
    EXPECT_FALSE(FPanel.GetPanelEnabled());
    Write("PanelEnable", 0.25);
    EXPECT_TRUE(FPanel.GetPanelEnabled());
    Write("PanelEnable", false);
    EXPECT_FALSE(FPanel.GetPanelEnabled());
    // Neither number nor text: the state stays.
    Write("PanelEnable", Variant::Null());
    EXPECT_FALSE(FPanel.GetPanelEnabled());
}

TEST_F(PanelProperties, ShowPropertypageOpensOnIntegerZeroOrTrue)
{
    int requests = 0;
    FPanel.OnShowPropertyPageRequest = [&](TKSMSSink* sender) {
        EXPECT_EQ(sender, &FPanel);
        ++requests;
    };
    EXPECT_EQ(Read("ShowPropertypage"), Variant(std::int32_t{1}));
    Write("ShowPropertypage", std::int32_t{1});
    Write("ShowPropertypage", "true");
    Write("ShowPropertypage", 0.0);
    Write("ShowPropertypage", false);
    EXPECT_EQ(FPanel.PagesShown, 0);
    Write("ShowPropertypage", std::int32_t{0});
    Write("ShowPropertypage", Variant::FromByte(0));
    Write("ShowPropertypage", "True");
    EXPECT_EQ(FPanel.PagesShown, 3);
    EXPECT_EQ(requests, 3);
}

struct ChannelRow {
    const char* name;
    std::uint8_t mode;
    std::vector<int> added;
    std::vector<int> expected;
};

class PanelChannels : public ::testing::TestWithParam<ChannelRow> {};

TEST_P(PanelChannels, ModeDecidesHowTheListGrows)
{
    TestPanel panel;
    panel.SetChannelMode(GetParam().mode);
    for (int channel : GetParam().added)
        panel.ChannelAdd(channel);
    std::vector<int> list;
    for (int i = 0; i < panel.GetChannelCount(); ++i)
        list.push_back(panel.GetChannelArray(i));
    EXPECT_EQ(list, GetParam().expected);
    EXPECT_EQ(panel.GetChannelArray(panel.GetChannelCount()), -1);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PanelChannels,
    ::testing::Values(ChannelRow{"NoneIgnores", 0, {5, 7}, {}},
                      ChannelRow{"SingleReplaces", 1, {5, 7, -1}, {7}},
                      ChannelRow{"TwoOverwriteTheSecond", 2, {5, 7, 9}, {5, 9}},
                      ChannelRow{"AnyKeepsDistinct", 3, {5, -1, 7, 5, 9}, {5, 7, 9}}),
    [](const ::testing::TestParamInfo<ChannelRow>& row) { return std::string(row.param.name); });

TEST(PanelChannelList, AddMultipleSkipsCapAndDuplicatesButNotTheMode)
{
    TestPanel panel;
    panel.SetChannelMode(1);
    panel.ChannelAddMultiple({1, 2});
    EXPECT_EQ(panel.GetChannelCount(), 0);
    panel.SetChannelMode(2);
    panel.ChannelAddMultiple({4, 4, 6});
    EXPECT_EQ(panel.GetChannelCount(), 3);
    panel.SetChannelArray(3, 8);
    panel.SetChannelArray(-1, 8);
    panel.SetChannelArray(1, 5);
    EXPECT_EQ(panel.GetChannelArray(1), 5);
    EXPECT_EQ(panel.GetChannelArray(-1), -1);
    // In single mode only index 0 answers, even with more entries in the list.
    panel.SetChannelMode(1);
    EXPECT_EQ(panel.GetChannelArray(0), 4);
    EXPECT_EQ(panel.GetChannelArray(1), -1);
    panel.ChannelClear();
    EXPECT_EQ(panel.GetChannelArray(0), -1);
}

TEST(PanelSettings, GridSpacingIgnoresZeroAndLess)
{
    TestPanel panel;
    panel.SetGridSpacingX(10);
    panel.SetGridSpacingX(0);
    panel.SetGridSpacingY(-4);
    EXPECT_EQ(panel.GetGridSpacingX(), 10);
    EXPECT_EQ(panel.GetGridSpacingY(), 8);
}

TEST(PanelSettings, ObjectDescriptionBecomesTheCaption)
{
    TestPanel panel;
    panel.SetObjectDescription("Gauge 3");
    EXPECT_EQ(panel.GetObjectDescription(), "Gauge 3");
    EXPECT_EQ(panel.GetCaption(), "Gauge 3");
    EXPECT_EQ(panel.windowTitle(), "Gauge 3");
}

TEST(PanelClass, DescriptionDependenciesAndBitmaps)
{
    EXPECT_EQ(TKSMSSink::GetDescription(TKSMSSink::staticMetaObject), "Unassigned description for TKSMSSink");
    EXPECT_EQ(TKSMSSink::GetDependencies(),
              "hvkutilcomponents.bpl,rvbase.bpl,ZLDeviceExchangeFilters.bpl,rtl70.bpl,vcl70.bpl,vclx70.bpl,"
              "vclsmp70.bpl,vcljpg70.bpl,dbrtl70.bpl,chartpak_D7.bpl,OrreryZL.bpl,ZLCoreKS.bpl,QQSINFO.QQ2");
    EXPECT_EQ(TKSMSSink::GetClassIcon().size(), QSize(24, 24));

    QImage bitmap(3, 3, QImage::Format_RGB32);
    EXPECT_TRUE(TKSMSSink::GetBitmapFromResource("TSINKPOPUPIMAGE", bitmap));
    EXPECT_EQ(bitmap.size(), QSize(16, 16));
    EXPECT_FALSE(TKSMSSink::GetBitmapFromResource("NOSUCHIMAGE", bitmap));
    EXPECT_TRUE(bitmap.isNull());
}

TEST(PanelTree, EnableReachesNestedPanelsAndPlainChildrenOnly)
{
    TestPanel outer;
    auto* button = new QPushButton(&outer);
    auto* inner = new TestPanel(&outer);
    auto* innerButton = new QPushButton(inner);
    auto* box = new QWidget(&outer);
    auto* boxButton = new QPushButton(box);

    outer.EnableControlTree(&outer, false);
    EXPECT_FALSE(outer.GetPanelEnabled());
    EXPECT_FALSE(inner->GetPanelEnabled());
    EXPECT_FALSE(button->isEnabled());
    EXPECT_FALSE(innerButton->isEnabled());
    // A nested panel keeps its own enabled state; its children carry the change.
    EXPECT_TRUE(inner->isEnabled());
    EXPECT_FALSE(boxButton->isEnabled());

    // Something other than a panel is left alone.
    outer.EnableControlTree(box, true);
    EXPECT_FALSE(box->isEnabled());
}

TEST(PanelLifecycle, LoadFinishedEnablesTheTreeAndAnnouncesEveryProperty)
{
    TestPanel panel;
    auto* button = new QPushButton(&panel);
    panel.EnableControlTree(&panel, false);
    QStringList updated;
    TQXEventLink link;
    link.OnValueUpdated = [&](TQXEventLink*, std::uint32_t handle) {
        QString name;
        panel.GetPropertyNameFromHandle(handle, name);
        updated << name;
    };
    link.SetEventSource(&panel);

    panel.LoadFinished();
    EXPECT_TRUE(panel.GetPanelEnabled());
    EXPECT_TRUE(button->isEnabled());
    EXPECT_EQ(updated, QStringList({"ShowPropertypage", "PanelEnable"}));
}

TEST(PanelMenu, ItemsInOrderAndTheirActions)
{
    TestPanel panel;
    const QList<QAction*> items = panel.GetPopupMenu()->actions();
    ASSERT_EQ(items.size(), 4);
    EXPECT_EQ(items[0]->text(), "Properties");
    EXPECT_EQ(items[0]->statusTip(), "Open property page");
    EXPECT_EQ(items[1]->text(), "To Atelier...");
    EXPECT_EQ(items[1]->statusTip(), "Copy selected panels to the selected Atelier group");
    EXPECT_TRUE(items[2]->isSeparator());
    EXPECT_EQ(items[3]->text(), "Help");

    // The property page opens from the menu in design mode only.
    items[0]->trigger();
    EXPECT_EQ(panel.PagesShown, 0);
    panel.SetDesignMode(true);
    items[0]->trigger();
    EXPECT_EQ(panel.PagesShown, 1);

    QString topic = "none";
    HostServices().HTMLHelp = [&](const QString& t, const QString&) {
        topic = t;
        return true;
    };
    items[3]->trigger();
    RestoreHostServices();
    EXPECT_EQ(topic, "TKSMSSink");
}
