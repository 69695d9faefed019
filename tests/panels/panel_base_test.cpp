#include <gtest/gtest.h>

#include <QAction>
#include <QMenu>
#include <QPushButton>

#include "qxbase/control/atelier_connection.h"
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

TEST_F(PanelProperties, PanelEnableDisablesOnlyOnTheExactTextOrANumberZero)
{
    QPushButton* button = new QPushButton(&FPanel);
    Write("PanelEnable", "Disabled");
    EXPECT_FALSE(button->isEnabled());
    EXPECT_EQ(Read("PanelEnable"), Variant(std::int32_t{0}));
    Write("PanelEnable", "Enabled ");
    EXPECT_TRUE(button->isEnabled());
    EXPECT_EQ(Read("PanelEnable"), Variant(std::int32_t{1}));
    Write("PanelEnable", "disabled");
    EXPECT_TRUE(FPanel.GetPanelEnabled());

    Write("PanelEnable", std::int32_t{0});
    EXPECT_FALSE(FPanel.GetPanelEnabled());
    Write("PanelEnable", 0.25);
    EXPECT_TRUE(FPanel.GetPanelEnabled());
    Write("PanelEnable", false);
    Write("PanelEnable", Variant::Null());  // neither number nor text: the state stays
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

TEST(PanelChannelList, ModeDecidesHowTheListGrows)
{
    const auto listAfter = [](std::uint8_t mode, std::initializer_list<int> added) {
        TestPanel panel;
        panel.SetChannelMode(mode);
        for (int channel : added)
            panel.ChannelAdd(channel);
        std::vector<int> list;
        for (int i = 0; i <= panel.GetChannelCount(); ++i)  // one past the end gives -1
            list.push_back(panel.GetChannelArray(i));
        return list;
    };
    EXPECT_EQ(listAfter(0, {5, 7}), std::vector<int>({-1}));
    EXPECT_EQ(listAfter(1, {5, 7, -1}), std::vector<int>({7, -1}));
    EXPECT_EQ(listAfter(2, {5, 7, 9}), std::vector<int>({5, 9, -1}));
    EXPECT_EQ(listAfter(3, {5, -1, 7, 5, 9}), std::vector<int>({5, 7, 9, -1}));
}

TEST(PanelChannelList, AddMultipleSkipsCapAndDuplicatesButNotTheMode)
{
    TestPanel panel;
    panel.SetChannelMode(1);
    panel.ChannelAddMultiple({1, 2});
    EXPECT_EQ(panel.GetChannelCount(), 0);
    panel.SetChannelMode(2);
    panel.ChannelAddMultiple({4, 4, 6});
    panel.SetChannelArray(3, 8);
    panel.SetChannelArray(1, 5);
    EXPECT_EQ(panel.GetChannelCount(), 3);
    EXPECT_EQ(panel.GetChannelArray(1), 5);
    // In single mode only index 0 answers, even with more entries in the list.
    panel.SetChannelMode(1);
    EXPECT_EQ(panel.GetChannelArray(0), 4);
    EXPECT_EQ(panel.GetChannelArray(1), -1);
}

TEST(PanelSettings, GridSpacingIgnoresZeroAndDescriptionSetsTheCaption)
{
    TestPanel panel;
    panel.SetGridSpacingX(10);
    panel.SetGridSpacingX(0);
    panel.SetGridSpacingY(-4);
    EXPECT_EQ(panel.GetGridSpacingX(), 10);
    EXPECT_EQ(panel.GetGridSpacingY(), 8);
    panel.SetObjectDescription("Gauge 3");
    EXPECT_EQ(panel.GetObjectDescription(), "Gauge 3");
    EXPECT_EQ(panel.GetCaption(), "Gauge 3");
}

TEST(PanelClass, DescriptionAndBitmaps)
{
    EXPECT_EQ(TKSMSSink::GetDescription(TKSMSSink::staticMetaObject), "Unassigned description for TKSMSSink");
    EXPECT_EQ(TKSMSSink::GetClassIcon().size(), QSize(24, 24));
    QImage bitmap(3, 3, QImage::Format_RGB32);
    EXPECT_TRUE(TKSMSSink::GetBitmapFromResource("TSINKPOPUPIMAGE", bitmap));
    EXPECT_EQ(bitmap.size(), QSize(16, 16));
    EXPECT_FALSE(TKSMSSink::GetBitmapFromResource("NOSUCHIMAGE", bitmap));
    EXPECT_TRUE(bitmap.isNull());
}

TEST(PanelTree, EnableReachesNestedPanelsAndPlainChildrenAndLoadingEnablesAll)
{
    TestPanel outer;
    auto* button = new QPushButton(&outer);
    auto* inner = new TestPanel(&outer);
    auto* innerButton = new QPushButton(inner);
    auto* box = new QWidget(&outer);
    auto* boxButton = new QPushButton(box);

    outer.EnableControlTree(&outer, false);
    EXPECT_FALSE(inner->GetPanelEnabled());
    EXPECT_FALSE(button->isEnabled() || innerButton->isEnabled() || boxButton->isEnabled());
    // A nested panel keeps its own enabled state; its children carry the change.
    EXPECT_TRUE(inner->isEnabled());
    outer.EnableControlTree(box, true);  // not a panel: nothing
    EXPECT_FALSE(box->isEnabled());

    int updates = 0;  // one for each of its two properties
    TQXEventLink link;
    link.OnValueUpdated = [&](TQXEventLink*, std::uint32_t) { ++updates; };
    link.SetEventSource(&outer);
    outer.LoadFinished();
    EXPECT_TRUE(outer.GetPanelEnabled() && inner->GetPanelEnabled() && innerButton->isEnabled());
    EXPECT_EQ(updates, 2);
}

TEST(PanelMenu, ItemsActInOrderPropertiesAtelierSeparatorHelp)
{
    TestPanel panel;
    const QList<QAction*> items = panel.GetPopupMenu()->actions();
    ASSERT_EQ(items.size(), 4);
    // The property page opens from the menu in design mode only.
    items[0]->trigger();
    EXPECT_EQ(panel.PagesShown, 0);
    panel.SetDesignMode(true);
    items[0]->trigger();
    EXPECT_EQ(panel.PagesShown, 1);

    int relayed = 0;
    AtelierConnection().OnPanelsToRepository = [&](TAtelierConnection*) { ++relayed; };
    items[1]->trigger();
    AtelierConnection().OnPanelsToRepository = {};
    EXPECT_EQ(relayed, 1);

    QString topic = "none";
    HostServices().HTMLHelp = [&](const QString& t, const QString&) {
        topic = t;
        return true;
    };
    items[3]->trigger();
    RestoreHostServices();
    EXPECT_EQ(topic, "TKSMSSink");
}
