#include <gtest/gtest.h>

#include <QComboBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <functional>
#include <map>

#include "qxbase/framework/host_services.h"
#include "qxbase/panels/color_panel.h"
#include "qxbase/panels/ctrl_client_prop_selector.h"
#include "qxbase/panels/smart_edit.h"
#include "qxbase/panels/source_control_property_page.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

namespace {

using I32 = std::int32_t;

// A panel with one property of each kind the editors tell apart ("Tint" is a colour by its type
// information, "LineColor" by its name).
class TestSource : public TKSMSSink {
public:
    TestSource(QWidget* parent, const QString& name, const QString& description) : TKSMSSink(parent)
    {
        setObjectName(name);
        SetObjectDescription(description);
        Variant modes = Variant::CreateArray(0, 2, varVariant);
        for (int i = 0; i < 3; ++i) modes.SetArrayElement(i, Variant(QStringList({"Off", "Slow", "Fast"})[i]));
        FValues = {{"Level", I32{5}},    {"Gain", 1.5},  {"Label", "a"}, {"LineColor", I32{clBlue}},
                   {"Tint", I32{clGreen}}, {"Mode", I32{1}}};
        for (const auto& [property, type, info] : {std::tuple{"Level", varInteger, ""}, {"Gain", varDouble, ""},
                                                   {"Label", varOleStr, ""}, {"LineColor", varInteger, ""},
                                                   {"Tint", varInteger, "TColor"}})
            RegisterProperty(property, property, GetSet(property), type, info, false, 0, 0, 0);
        RegisterProperty("Mode", "Mode", GetSet("Mode"), 0, modes, 0);
    }

    std::map<QString, Variant> FValues;

private:
    TQXPropertyGetSet GetSet(const QString& name)
    {
        return [this, name](TQXPropertyItem*, bool Get, bool, Variant& Value) {
            if (Get) Value = FValues[name];
            else FValues[name] = Value;
            return S_OK;
        };
    }
};

class TestClient : public TKSSourceControlClient {
public:
    using TKSSourceControlClient::TKSSourceControlClient;
    bool CanClientHandle(TKSControlSourcePropListItem*, TQXPropertyHandle, const QString&) override { return true; }
    bool CanClientAdd(TKSControlSourcePropListItem*, TQXPropertyHandle, const QString& Name) override
    {
        return Name != FRefuse;
    }
    QString FRefuse;
};

// A worksheet with the client and "Source1" on one page and "Seq1" (a sequencer) on another.
class PropSelector : public ::testing::Test {
protected:
    void SetUp() override
    {
        auto* page = new QWidget(&FSheet);
        FClient = new TestClient(page);
        FClient->setObjectName("Button1");
        FClient->SetObjectDescription("Button");
        FMeter = new TestSource(page, "Source1", "Meter");
        new TestSource(new QWidget(&FSheet), "Seq1", "Sequencer");
        FSelector.SetTheComponent(FClient);
        FSelector.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&FSelector));
    }
    void TearDown() override { RestoreHostServices(); }

    template <class T>
    T* Child(const QString& name)
    {
        auto* widget = FSelector.findChild<T*>(name);
        EXPECT_NE(widget, nullptr) << name.toStdString();
        return widget;
    }
    QTreeWidget* AvailableTree() { return FSelector.GetAvaiblePropTreeView(); }
    QTreeWidgetItem* Available(const QString& panel, const QString& property)
    {
        for (QTreeWidgetItemIterator it(AvailableTree()); *it; ++it) {
            const int index = (*it)->data(0, Qt::UserRole).toInt();
            if (index >= 0 && Key(FSelector.GetAvailableList().at(std::size_t(index)).get()) == panel + "." + property)
                return *it;
        }
        return nullptr;
    }
    void Click(const char* button) { QTest::mouseClick(Child<QPushButton>(button), Qt::LeftButton); }
    void Add(const QString& panel, const QString& property)
    {
        AvailableTree()->setCurrentItem(Available(panel, property));
        Click("AddPropToActiveListButton");
    }
    // Binds properties of Source1 by code, as a loaded worksheet would, and reopens the selector.
    void Bind(const QStringList& properties)
    {
        for (const QString& property : properties) {
            auto item = std::make_unique<TKSControlSourcePropListItem>();
            item->FPanelName = "Source1";
            item->FPropertyName = property;
            ASSERT_TRUE(FClient->SetupPropertyConnnection(item.get()));
            FClient->GetPropInputList().push_back(std::move(item));
        }
        FSelector.SetTheComponent(FClient);
    }
    void Select(int index) { Selected()->setCurrentItem(Selected()->topLevelItem(index)); }
    QTreeWidget* Selected() { return FSelector.GetSelectedPropTreeView(); }
    static QString Key(const TKSControlSourcePropListItem* item)
    {
        return item ? item->FPanelName + "." + item->FPropertyName : QString();
    }
    QStringList Bindings()
    {
        QStringList keys;
        for (const auto& item : FClient->GetPropInputList()) keys << Key(item.get());
        return keys;
    }
    TKSControlSourcePropListItem& Item(int binding) { return *FClient->GetPropInputList().at(std::size_t(binding)); }
    void Type(const QString& edit, const QString& text)
    {
        auto* line = Child<THVKSmartEdit>(edit);
        line->selectAll();
        QTest::keyClicks(line, text);
        QTest::keyClick(line, Qt::Key_Return);
    }

    QWidget FSheet;
    TestClient* FClient = nullptr;
    TestSource* FMeter = nullptr;
    TCtrlClientPropSelector FSelector;
};

QStringList Texts(const QTreeWidgetItem& parent)
{
    QStringList texts;
    for (int i = 0; i < parent.childCount(); ++i) texts << parent.child(i)->text(0);
    return texts;
}

TEST_F(PropSelector, AvailableTreeShowsTheWorksheetsNamedSourcesSortedWithSequencersApart)
{
    new TestSource(FClient->parentWidget(), QString(), "Unnamed");
    QWidget otherSheet;
    new TestSource(&otherSheet, "Other", "Meter");
    FSelector.SetTheComponent(FClient);

    QTreeWidget* tree = AvailableTree();
    EXPECT_EQ(Texts(*tree->invisibleRootItem()),
              QStringList({"Button [Button1]", "Meter [Source1]", "Sequencers and action counters"}));
    EXPECT_EQ(Texts(*tree->topLevelItem(1)), QStringList({"Gain", "Label", "Level", "LineColor", "Mode",
                                                          "Panel State", "Show property page", "Tint"}));
    EXPECT_EQ(Texts(*tree->topLevelItem(2)), QStringList({"Sequencer [Seq1]"}));
    EXPECT_EQ(tree->topLevelItem(2)->child(0)->childCount(), 8);
}

TEST_F(PropSelector, AddingByDoubleClickOrButtonMakesLiveBindingsOfTheFirstBindingsType)
{
    QTreeWidget* tree = AvailableTree();
    ASSERT_NE(Available("Source1", "Gain"), nullptr);
    // A real double click: a click, then the second press as a double click.
    const QPoint at = tree->visualItemRect(Available("Source1", "Level")).center();
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, at);
    ASSERT_EQ(Bindings(), QStringList({"Source1.Level"}));
    const TKSControlSourcePropListItem& added = Item(0);
    EXPECT_NE(added.FEventLink, nullptr);
    EXPECT_EQ(added.FActiveValue, Variant(I32{5})) << "starts at the source's value";
    EXPECT_EQ(FSelector.GetSelectedItem(), &added);

    EXPECT_EQ(Available("Source1", "Gain"), nullptr) << "the first binding restricts to integers";
    Add("Seq1", "Tint");
    Add("Source1", "Level");
    EXPECT_EQ(Bindings(), QStringList({"Source1.Level", "Seq1.Tint"})) << "bound once";
    EXPECT_EQ(Key(FSelector.GetSelectedItem()), "Source1.Level");
    FClient->FRefuse = "LineColor";
    Add("Source1", "LineColor");
    EXPECT_EQ(Bindings().size(), 2);
}

TEST_F(PropSelector, RemovingSelectsTheNeighbourAndTheLastRemovalOffersEveryTypeAgain)
{
    Bind({"Gain"});  // only floating-point properties are offered now
    Add("Seq1", "Gain");
    Select(0);
    Click("RemovePropFromActiveListButton");
    EXPECT_EQ(Bindings(), QStringList({"Seq1.Gain"}));
    EXPECT_EQ(Key(FSelector.GetSelectedItem()), "Seq1.Gain");
    EXPECT_EQ(FSelector.GetAvailableList().size(), 2u);

    Click("RemovePropFromActiveListButton");
    EXPECT_TRUE(Bindings().isEmpty());
    EXPECT_EQ(FSelector.GetAvailableList().size(), 8u + 8u + 2u);
    Click("RemovePropFromActiveListButton");  // nothing left to remove
}

TEST_F(PropSelector, UpAndDownSwapWithTheNeighbourAndKeepTheMovedBindingSelected)
{
    Bind({"Level", "LineColor", "Tint"});
    Select(0);
    Click("ItemUpButton");
    EXPECT_EQ(Bindings(), QStringList({"Source1.Level", "Source1.LineColor", "Source1.Tint"}));
    Click("ItemDownButton");
    EXPECT_EQ(Bindings(), QStringList({"Source1.LineColor", "Source1.Level", "Source1.Tint"}));
    Click("ItemDownButton");
    Click("ItemDownButton");
    EXPECT_EQ(Bindings(), QStringList({"Source1.LineColor", "Source1.Tint", "Source1.Level"}));
    EXPECT_EQ(Selected()->topLevelItem(2)->text(0), "Meter [Source1]: Level");
    Click("ItemUpButton");
    EXPECT_EQ(Bindings(), QStringList({"Source1.LineColor", "Source1.Level", "Source1.Tint"}));
}

TEST_F(PropSelector, EachPropertyTypeShowsItsOwnEditor)
{
    const char* editors[] = {"SmartEdit", "SmartEdit", "SmartEdit", "ComboBox", "Panel", "Panel"};
    Bind({"Level", "Gain", "Label", "Mode", "LineColor", "Tint"});
    for (int i = 0; i < 6; ++i) {
        Select(i);
        for (const QString slot : {"ActualValue", "ActiveValue", "PassiveValue"})
            for (const char* editor : {"SmartEdit", "ComboBox", "Panel"})
                EXPECT_EQ(Child<QWidget>(slot + editor)->isVisible(), qstrcmp(editor, editors[i]) == 0)
                    << i << " " << slot.toStdString() << editor;
    }
}

TEST_F(PropSelector, SmartEditsStoreTextConvertedByKindAndRestoreTextsThatDoNotConvert)
{
    Bind({"Level", "Gain", "Label"});
    Select(0);
    Type("ActiveValueSmartEdit", "42");
    EXPECT_EQ(Item(0).FActiveValue, Variant(I32{42}));
    Type("ActiveValueSmartEdit", "4.5");
    EXPECT_EQ(Item(0).FActiveValue, Variant(I32{42}));
    EXPECT_EQ(Child<THVKSmartEdit>("ActiveValueSmartEdit")->text(), "42");

    Select(1);
    Type("PassiveValueSmartEdit", "2.5");
    EXPECT_EQ(Item(1).FPassiveValue, Variant(2.5));
    Type("ActualValueSmartEdit", "7.25");
    EXPECT_EQ(FMeter->FValues["Gain"], Variant(7.25)) << "the actual value is written to the source";

    Select(2);
    Type("ActiveValueSmartEdit", "12");
    EXPECT_EQ(Item(2).FActiveValue, Variant("12"));
}

TEST_F(PropSelector, ComboBoxesStoreIndicesAndColourPanelsTheChosenColour)
{
    Bind({"Mode", "Tint"});
    Select(0);
    QTest::keyClick(Child<QComboBox>("ActiveValueComboBox"), Qt::Key_Down);
    EXPECT_EQ(Item(0).FActiveValue, Variant(I32{2}));
    QTest::keyClick(Child<QComboBox>("ActualValueComboBox"), Qt::Key_Up);
    EXPECT_EQ(FMeter->FValues["Mode"], Variant(I32{0}));
    EXPECT_EQ(Item(0).FPassiveValue, Variant(I32{1}));

    Select(1);
    TColor offered = -1;
    bool choose = true;
    HostServices().ChooseColor = [&](QWidget*, TColor& color) {
        offered = color;
        if (choose) color = clRed;
        return choose;
    };
    QTest::mouseClick(Child<THVKColorPanel>("PassiveValuePanel"), Qt::LeftButton);
    EXPECT_EQ(offered, clGreen);
    EXPECT_EQ(Item(1).FPassiveValue, Variant(I32{clRed}));
    choose = false;
    QTest::mouseClick(Child<THVKColorPanel>("ActiveValuePanel"), Qt::LeftButton);
    EXPECT_EQ(Item(1).FActiveValue, Variant(I32{clGreen}));
}

TEST_F(PropSelector, ASourceOrClientThatGoesAwayLeavesNothingBehindToUse)
{
    Bind({"Level"});
    Add("Seq1", "Level");
    Select(0);
    delete FMeter;  // the client drops the binding to it
    EXPECT_EQ(FSelector.GetSelectedItem(), nullptr);
    Click("RemovePropFromActiveListButton");
    Add("Source1", "Tint");
    EXPECT_EQ(Bindings(), QStringList({"Seq1.Level"}));

    delete FClient;
    EXPECT_EQ(Selected()->topLevelItemCount(), 0);
    EXPECT_EQ(AvailableTree()->topLevelItemCount(), 0);
}

// A bound source is watched also where no event link tells of it, and a link follows its
// binding to the panel that now has the name.
TEST_F(PropSelector, ABindingNeverReachesASourceThatWentAway)
{
    Bind({"Level"});
    Select(0);
    FMeter->setObjectName("Old");
    auto* renamed = new TestSource(FClient->parentWidget(), "Source1", "New meter");
    FClient->InstallControlSourceConnections();
    EXPECT_EQ(Item(0).FEventLink->GetEventSource(), renamed);
    delete renamed;
    EXPECT_TRUE(Bindings().isEmpty());
    Type("ActualValueSmartEdit", "3");

    // Kept without a link: the panel has no such property.
    FClient->SetRemoveWholePanel(true);
    auto* dryer = new TestSource(FClient->parentWidget(), "Dryer", "Dryer");
    auto& kept = *FClient->GetPropInputList().emplace_back(std::make_unique<TKSControlSourcePropListItem>());
    kept.FPanelName = "Dryer";
    kept.FPropertyName = "Heat";
    FClient->InstallControlSourceConnections();
    ASSERT_EQ(kept.FSource, dryer);
    delete dryer;
    EXPECT_EQ(kept.FSource, nullptr);
    FSelector.SetTheComponent(FClient);
    EXPECT_EQ(Selected()->topLevelItem(0)->text(0), "Dryer [Dryer]: Heat (unresolved)");
}

using PropertyPage = PropSelector;

TEST_F(PropertyPage, IsNamedAfterTheClientsCaptionElseItsName)
{
    TKSSourceControlPropertyPage page;
    page.SetTheComponent(FClient);
    EXPECT_EQ(page.windowTitle(), "   Properties of Button");
    FClient->SetCaption(QString());
    page.SetTheComponent(FClient);
    EXPECT_EQ(page.windowTitle(), "   Properties of Button1");
}

TEST_F(PropertyPage, OkAndEnterGiveOneCancelEscapeAndClosingTwo)
{
    Bind({"Level"});
    using Page = TKSSourceControlPropertyPage;
    // Typing into the active value edit, then a key to the edit or to the page.
    auto typeThen = [](const char* text, Qt::Key key, bool toEdit) {
        return [=](Page& page) {
            auto* edit = page.findChild<THVKSmartEdit*>("ActiveValueSmartEdit");
            edit->setFocus();
            QTest::keyClicks(edit, text);
            QTest::keyClick(toEdit ? static_cast<QWidget*>(edit) : &page, key);
        };
    };
    const std::pair<std::function<void(Page&)>, int> rows[] = {
        {[](Page& page) { QTest::mouseClick(page.GetOKButton(), Qt::LeftButton); }, 1},
        {[](Page& page) { QTest::mouseClick(page.GetCancelButton(), Qt::LeftButton); }, 2},
        {[](Page& page) { page.close(); }, 2},
        {typeThen("7", Qt::Key_Escape, true), 2},
        {typeThen("8", Qt::Key_Return, true), 1},
        {typeThen("9", Qt::Key_Enter, false), 1},
    };
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        SCOPED_TRACE(i);
        Page page;
        page.SetTheComponent(FClient);
        QTimer::singleShot(0, &page, [&] { rows[i].first(page); });
        QTimer::singleShot(5000, &page, [&] { page.done(99); });  // never hang
        EXPECT_EQ(page.exec(), rows[i].second);
    }
    EXPECT_EQ(Item(0).FActiveValue, Variant(I32{589})) << "shown with the first binding selected; OK stores, Cancel not";
}

}  // namespace
