#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QStyleOptionViewItem>
#include <QTest>

#include "qxbase/chartpanels/recorder_panel.h"
#include "qxbase/config/property_page_handler.h"
#include "qxbase/sources/math_channel_processor.h"
#include "qxbase/sources/simulated_source.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

namespace {

// Clicks the check box of the item in `Row`, where the style draws it.
void ClickBox(THVKTansparentTreeView& Tree, int Row)
{
    QStyleOptionViewItem option;
    option.initFrom(&Tree);
    option.rect = Tree.visualItemRect(Tree.topLevelItem(Row));
    option.features = QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
    const QRect box = Tree.style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, &Tree);
    QTest::mouseClick(Tree.viewport(), Qt::LeftButton, {}, box.center());
}

// A panel that keeps the source it is given, as data panels do.
class SourcePanel : public TKSMSSink {
public:
    using TKSMSSink::TKSMSSink;
    TQXMeasureSourceEx* GetMeasureSource() const override { return Source; }
    void SetMeasureSource(TQXMeasureSourceEx* Value) override { Source = Value; }
    TQXMeasureSourceEx* Source = nullptr;
};

// A worksheet of two pages: "SimA" (8 channels) on the first, "SimB" (3 channels) and "Empty"
// (none) on the second; and a 300 x 320 property page holding the channel tree.
class ChannelPicker : public ::testing::Test {
protected:
    template <class T>
    static T* Named(T* Source, const QString& Name)
    {
        Source->setObjectName(Name);
        Source->SetObjectDescription(Name);
        return Source;
    }
    static TKSSimulatedSource* Simulated(QWidget* Page, const QString& Name, int Channels)
    {
        auto* source = Named(new TKSSimulatedSource(Page), Name);
        source->SetNrOfCGLChannels(Channels);
        return source;
    }
    // A panel on the first page holding `Channels` of SimA in `Mode`, and the picker on it.
    template <class T = SourcePanel>
    T* Open(std::uint8_t Mode, const std::vector<int>& Channels)
    {
        auto* panel = new T(Page1);
        panel->setObjectName("Panel");
        panel->SetChannelMode(Mode);
        panel->SetMeasureSource(SimA);
        panel->ChannelAddMultiple(Channels);
        Handler.Create(panel, &Tree);
        PropertyPage.resize(300, 320);
        PropertyPage.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&PropertyPage));
        return panel;
    }
    static QString Items(const QComboBox& Combo)
    {
        QStringList items;
        for (int i = 0; i < Combo.count(); ++i) items << Combo.itemText(i);
        return items.join(',');
    }
    QString Checks() const
    {
        QString checks;
        for (int row = 0; row < Tree.topLevelItemCount(); ++row) checks += Tree.GetItemChecked(row) ? 'x' : '.';
        return checks;
    }
    static std::vector<int> Held(const TKSMSSink& Panel)
    {
        std::vector<int> held;
        for (int i = 0; i < Panel.GetChannelCount(); ++i) held.push_back(Panel.GetChannelArray(i));
        return held;
    }

    QWidget Sheet;
    QWidget* Page1 = new QWidget(&Sheet);
    QWidget* Page2 = new QWidget(&Sheet);
    TKSSimulatedSource* SimA = Simulated(Page1, "SimA", 8);
    TKSSimulatedSource* SimB = Simulated(Page2, "SimB", 3);
    TQXMeasureSourceEx* Empty = Named(new TQXMeasureSourceEx(Page2), "Empty");
    QWidget PropertyPage;
    THVKTansparentTreeView Tree{&PropertyPage};
    TKSPropertyPageHandler Handler;
};

TEST_F(ChannelPicker, ListsTheWorksheetsSourcesAndLeavesAProcessorPanelOutOnceOpened)
{
    Open<TKSMathChannelProcessor>(0, {});
    const QComboBox& combo = *Handler.GetSourceCombo();
    EXPECT_EQ(Items(combo), "SimA,Math channels,SimB,Empty");
    EXPECT_EQ(combo.currentText(), "SimA");
    EXPECT_EQ(Handler.GetMeasureSource(), SimA);

    Handler.GetSourceCombo()->showPopup();
    EXPECT_EQ(Items(combo), "SimA,SimB,Empty");
    EXPECT_EQ(combo.currentText(), "SimA");
}

TEST_F(ChannelPicker, ClicksAndSpaceEditThePanelsChannels)
{
    SourcePanel* panel = Open(3, {3, 0, 3});
    EXPECT_EQ(Tree.GetMaxChecked(), 8);
    EXPECT_EQ(Checks(), "x..x....");
    EXPECT_EQ(Tree.topLevelItem(5)->text(0), SimA->GetChannelList(5)->Name);

    ClickBox(Tree, 5);
    EXPECT_EQ(Held(*panel), std::vector<int>({3, 0, 3, 5}));
    ClickBox(Tree, 3);  // every occurrence goes
    EXPECT_EQ(Held(*panel), std::vector<int>({0, 5}));
    Tree.setCurrentItem(Tree.topLevelItem(0));
    QTest::keyClick(&Tree, Qt::Key_Space);
    EXPECT_EQ(Held(*panel), std::vector<int>({5}));

    // The list changed behind the page's back: with one channel held, any uncheck clears it.
    panel->ChannelClear();
    panel->ChannelAdd(1);
    ClickBox(Tree, 5);
    EXPECT_TRUE(Held(*panel).empty());
}

TEST_F(ChannelPicker, ARefusedCheckChangesNothingAndTheNextClickCounts)
{
    SourcePanel* panel = Open(2, {0, 3});
    QSignalSpy refused(&Tree, &THVKTansparentTreeView::tooManyChecked);
    QSignalSpy clicked(&Tree, &THVKTansparentTreeView::itemCheckClicked);
    ClickBox(Tree, 5);
    EXPECT_EQ(refused.count(), 1);
    ASSERT_EQ(clicked.count(), 1);
    EXPECT_EQ(clicked[0], QVariantList({5, QVariant::fromValue(tvisUnchecked)}));
    EXPECT_FALSE(Tree.GetItemChecked(5));
    EXPECT_EQ(Held(*panel), std::vector<int>({0, 3}));

    ClickBox(Tree, 0);
    EXPECT_EQ(Held(*panel), std::vector<int>({3}));
}

TEST_F(ChannelPicker, ChoosingASourceConnectsThePanelAndRefillsTheTree)
{
    auto* recorder = Open<TKSRecorderPanel>(3, {});
    QComboBox& combo = *Handler.GetSourceCombo();
    combo.showPopup();
    QAbstractItemView& list = *combo.view();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(list.window()));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(list.model()->index(1, 0)).center());
    EXPECT_EQ(combo.currentText(), "SimB");
    EXPECT_EQ(recorder->GetMeasureSource(), SimB);
    EXPECT_EQ(Tree.topLevelItemCount(), 3);
    EXPECT_EQ(Tree.GetMaxChecked(), 3);

    // The source's channel list changes while the page is open: the tree follows.
    SimB->SetNrOfCGLChannels(2);
    EXPECT_EQ(Tree.topLevelItemCount(), 2);

    Handler.SetMeasureSource(Empty);
    EXPECT_EQ(Tree.topLevelItemCount(), 0);
    EXPECT_EQ(recorder->GetMeasureSource(), SimB);
}

TEST_F(ChannelPicker, ControlsKeepTheirPlaceAndAnchorsOnThePage)
{
    Open(3, {});
    const QLabel& sources = *Handler.GetSourceLabel();
    const QLabel& channels = *Handler.GetChannelsLabel();
    const QComboBox& combo = *Handler.GetSourceCombo();
    const int comboTop = 16 + sources.height() + 8;
    const int treeTop = comboTop + combo.height() + 8 + channels.height() + 8;
    EXPECT_EQ(sources.geometry(), QRect(16, 16, 276, sources.height()));
    EXPECT_EQ(combo.geometry(), QRect(32, comboTop, 260, combo.height()));
    EXPECT_EQ(channels.geometry(), QRect(16, comboTop + combo.height() + 8, 276, channels.height()));
    EXPECT_EQ(Tree.geometry(), QRect(32, treeTop, 260, 320 - treeTop - 8));

    PropertyPage.resize(420, 500);
    EXPECT_EQ(combo.geometry(), QRect(32, comboTop, 380, combo.height()));
    EXPECT_EQ(Tree.geometry(), QRect(32, treeTop, 380, 500 - treeTop - 8));
}

TEST(CheckTreeView, AHookMayClearTheTreeInsideAClick)
{
    THVKTansparentTreeView tree;
    tree.AddItems({{"a", 0, 7}, {"b", 1, 9}});
    int clicks = 0;
    tree.OnItemClick = [&](QObject*, int Index, THVKTreeViewItemStates) {
        ++clicks;
        tree.Clear();
        tree.AddItems({{"c", 0, Index}});
    };
    tree.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&tree));
    ClickBox(tree, 1);
    EXPECT_EQ(clicks, 1);
    ASSERT_EQ(tree.topLevelItemCount(), 1);
    EXPECT_EQ(tree.GetItemIndex(0), 9);
}

}  // namespace
