#include <gtest/gtest.h>

#include <QComboBox>
#include <QPushButton>
#include <QTabWidget>
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

// A panel with one property of each kind the editors tell apart.
class TestSource : public TKSMSSink {
public:
    TestSource(QWidget* parent, const QString& name, const QString& description) : TKSMSSink(parent)
    {
        setObjectName(name);
        SetObjectDescription(description);
        Register("Level", varInteger, QString(), Variant(std::int32_t{5}));
        Register("Gain", varDouble, QString(), Variant(1.5));
        Register("Label", varOleStr, QString(), Variant("a"));
        Register("LineColor", varInteger, QString(), Variant(std::int32_t{clBlue}));
        Register("Tint", varInteger, QStringLiteral("TColor"), Variant(std::int32_t{clGreen}));
        Variant modes = Variant::CreateArray(0, 2, varVariant);
        modes.SetArrayElement(0, Variant("Off"));
        modes.SetArrayElement(1, Variant("Slow"));
        modes.SetArrayElement(2, Variant("Fast"));
        FValues[QStringLiteral("Mode")] = Variant(std::int32_t{1});
        RegisterProperty(QStringLiteral("Mode"), QStringLiteral("Mode"), GetSet(QStringLiteral("Mode")), 0, modes, 0);
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
    void Register(const char* name, std::uint16_t type, const QString& typeInfo, const Variant& value)
    {
        const QString text = QLatin1String(name);
        FValues[text] = value;
        RegisterProperty(text, text, GetSet(text), type, typeInfo, false, 0, 0, 0);
    }
};

// Accepts every property except the one named in FRefuse.
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

class PropSelector : public ::testing::Test {
protected:
    void SetUp() override
    {
        auto* page = new QWidget(&FSheet);  // the client's worksheet is its topmost ancestor
        FClient = new TestClient(page);
        FClient->setObjectName(QStringLiteral("Button1"));
        FClient->SetObjectDescription(QStringLiteral("Button"));
        FMeter = new TestSource(page, QStringLiteral("Source1"), QStringLiteral("Meter"));
        FSeq = new TestSource(&FSheet, QStringLiteral("Seq1"), QStringLiteral("Sequencer"));
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
            if (index < 0) continue;
            const auto& item = *FSelector.GetAvailableList().at(static_cast<std::size_t>(index));
            if (item.FPanelName == panel && item.FPropertyName == property) return *it;
        }
        return nullptr;
    }
    void Click(const char* button) { QTest::mouseClick(Child<QPushButton>(QLatin1String(button)), Qt::LeftButton); }
    void Add(const QString& panel, const QString& property)
    {
        AvailableTree()->setCurrentItem(Available(panel, property));
        Click("AddPropToActiveListButton");
    }
    // Binds by code, as a loaded worksheet would, and reopens the selector on the client.
    void Bind(const QStringList& properties)
    {
        for (const QString& property : properties) {
            auto item = std::make_unique<TKSControlSourcePropListItem>();
            item->FPanelName = QStringLiteral("Source1");
            item->FPropertyName = property;
            ASSERT_TRUE(FClient->SetupPropertyConnnection(item.get()));
            FClient->GetPropInputList().push_back(std::move(item));
        }
        FSelector.SetTheComponent(FClient);
    }
    void Select(int index)
    {
        QTreeWidget* tree = FSelector.GetSelectedPropTreeView();
        tree->setCurrentItem(tree->topLevelItem(index));
    }
    static QString Key(const TKSControlSourcePropListItem* item)
    {
        return item ? item->FPanelName + QLatin1Char('.') + item->FPropertyName : QString();
    }
    QStringList Bindings()
    {
        QStringList keys;
        for (const auto& item : FClient->GetPropInputList()) keys << Key(item.get());
        return keys;
    }
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
    TestSource* FSeq = nullptr;
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
    new TestSource(FClient->parentWidget(), QString(), QStringLiteral("Unnamed"));
    QWidget otherSheet;
    new TestSource(&otherSheet, QStringLiteral("Other"), QStringLiteral("Meter"));
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
    QTreeWidgetItem* level = Available("Source1", "Level");
    ASSERT_NE(level, nullptr);
    ASSERT_NE(Available("Source1", "Gain"), nullptr);
    // A real double click: the first click, then the second as a double click.
    const QPoint at = tree->visualItemRect(level).center();
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, at);
    ASSERT_EQ(Bindings(), QStringList({"Source1.Level"}));
    const TKSControlSourcePropListItem& added = *FClient->GetPropInputList().front();
    EXPECT_NE(added.FEventLink, nullptr);
    EXPECT_EQ(added.FSource, FMeter);
    EXPECT_EQ(added.FPropertyDescription, QStringLiteral("Level"));
    EXPECT_EQ(added.FActiveValue, Variant(std::int32_t{5})) << "starts at the source's value";
    EXPECT_EQ(FSelector.GetSelectedItem(), &added);

    EXPECT_EQ(Available("Source1", "Gain"), nullptr) << "the first binding restricts to integers";
    Add("Seq1", "Tint");
    Add("Source1", "Level");
    EXPECT_EQ(Bindings(), QStringList({"Source1.Level", "Seq1.Tint"})) << "bound once";
    EXPECT_EQ(Key(FSelector.GetSelectedItem()), "Source1.Level");

    FClient->FRefuse = QStringLiteral("LineColor");
    Add("Source1", "LineColor");
    EXPECT_EQ(Bindings().size(), 2);
}

TEST_F(PropSelector, RemovingSelectsTheNeighbourAndTheLastRemovalOffersEveryTypeAgain)
{
    Bind({"Gain"});
    for (const auto& item : FSelector.GetAvailableList()) EXPECT_EQ(item->FPropertyType, varDouble);
    EXPECT_EQ(FSelector.GetAvailableList().size(), 2u);
    Add("Seq1", "Gain");
    Select(0);
    Click("RemovePropFromActiveListButton");
    EXPECT_EQ(Bindings(), QStringList({"Seq1.Gain"}));
    EXPECT_EQ(Key(FSelector.GetSelectedItem()), "Seq1.Gain");
    EXPECT_EQ(FSelector.GetAvailableList().size(), 2u);

    Click("RemovePropFromActiveListButton");
    EXPECT_TRUE(Bindings().isEmpty());
    EXPECT_EQ(FSelector.GetSelectedItem(), nullptr);
    EXPECT_NE(Available("Source1", "Mode"), nullptr);
    EXPECT_EQ(FSelector.GetAvailableList().size(), 8u + 8u + 2u);
    EXPECT_FALSE(Child<THVKSmartEdit>("ActiveValueSmartEdit")->isEnabled());
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
    EXPECT_EQ(Key(FSelector.GetSelectedItem()), "Source1.Level");
    EXPECT_EQ(FSelector.GetSelectedPropTreeView()->topLevelItem(2)->text(0), "Meter [Source1]: Level");
    Click("ItemUpButton");
    EXPECT_EQ(Bindings(), QStringList({"Source1.LineColor", "Source1.Level", "Source1.Tint"}));
}

TEST_F(PropSelector, EachPropertyTypeShowsItsEditorWithTheValues)
{
    struct Row {
        const char* property;
        const char* editor;
        TSmartEditKind kind;
    };
    const Row rows[] = {{"Level", "SmartEdit", sekInteger}, {"Gain", "SmartEdit", sekFloat},
                        {"Label", "SmartEdit", sekText},    {"Mode", "ComboBox", sekText},
                        {"LineColor", "Panel", sekText},    {"Tint", "Panel", sekText}};
    Bind({"Level", "Gain", "Label", "Mode", "LineColor", "Tint"});
    for (int i = 0; i < 6; ++i) {
        const Row& row = rows[i];
        SCOPED_TRACE(row.property);
        Select(i);
        for (const char* slot : {"Actual", "Active", "Passive"}) {
            const QString prefix = QLatin1String(slot) + QLatin1String("Value");
            for (const char* editor : {"SmartEdit", "ComboBox", "Panel"})
                EXPECT_EQ(Child<QWidget>(prefix + QLatin1String(editor))->isVisible(), qstrcmp(editor, row.editor) == 0)
                    << slot << " " << editor;
        }
    }
    Select(0);
    EXPECT_EQ(Child<THVKSmartEdit>("PassiveValueSmartEdit")->text(), "5");
    Select(1);
    EXPECT_EQ(Child<THVKSmartEdit>("ActiveValueSmartEdit")->GetKind(), sekFloat);
    Select(3);
    auto* combo = Child<QComboBox>("ActiveValueComboBox");
    EXPECT_EQ(combo->count(), 3);
    EXPECT_EQ(combo->currentText(), "Slow");
    Select(5);
    EXPECT_EQ(Child<THVKColorPanel>("ActualValuePanel")->GetColor(), clGreen);
}

TEST_F(PropSelector, SmartEditsStoreConvertedTextAndRestoreTextsThatDoNotConvert)
{
    Bind({"Level", "Gain", "Label"});
    const auto& list = FClient->GetPropInputList();
    Select(0);
    Type("ActiveValueSmartEdit", "42");
    EXPECT_EQ(list[0]->FActiveValue, Variant(std::int32_t{42}));
    Type("ActiveValueSmartEdit", "4.5");
    EXPECT_EQ(list[0]->FActiveValue, Variant(std::int32_t{42}));
    EXPECT_EQ(Child<THVKSmartEdit>("ActiveValueSmartEdit")->text(), "42");

    Select(1);
    Type("PassiveValueSmartEdit", "2.5");
    EXPECT_EQ(list[1]->FPassiveValue, Variant(2.5));
    Type("PassiveValueSmartEdit", "2,5");
    EXPECT_EQ(list[1]->FPassiveValue, Variant(2.5));
    EXPECT_EQ(Child<THVKSmartEdit>("PassiveValueSmartEdit")->text(), "2.5");
    Type("ActualValueSmartEdit", "7.25");
    EXPECT_EQ(FMeter->FValues["Gain"], Variant(7.25)) << "the actual value is written to the source";

    Select(2);
    Type("ActiveValueSmartEdit", "12");
    EXPECT_EQ(list[2]->FActiveValue, Variant("12"));
    EXPECT_EQ(list[0]->FActiveValue, Variant(std::int32_t{42})) << "only the selected binding changes";
}

TEST_F(PropSelector, ComboBoxesStoreIndicesAndColourPanelsTheChosenColour)
{
    Bind({"Mode", "Tint"});
    const auto& list = FClient->GetPropInputList();
    Select(0);
    QTest::keyClick(Child<QComboBox>("ActiveValueComboBox"), Qt::Key_Down);
    EXPECT_EQ(list[0]->FActiveValue, Variant(std::int32_t{2}));
    QTest::keyClick(Child<QComboBox>("ActualValueComboBox"), Qt::Key_Up);
    EXPECT_EQ(FMeter->FValues["Mode"], Variant(std::int32_t{0}));
    EXPECT_EQ(list[0]->FPassiveValue, Variant(std::int32_t{1}));

    Select(1);
    TColor offered = -1;
    bool choose = true;
    HostServices().ChooseColor = [&](QWidget*, TColor& color) {
        offered = color;
        if (choose) color = clRed;
        return choose;
    };
    auto* panel = Child<THVKColorPanel>("PassiveValuePanel");
    QTest::mouseClick(panel, Qt::LeftButton);
    EXPECT_EQ(offered, clGreen);
    EXPECT_EQ(list[1]->FPassiveValue, Variant(std::int32_t{clRed}));
    EXPECT_EQ(panel->GetColor(), clRed);
    choose = false;
    QTest::mouseClick(Child<THVKColorPanel>("ActiveValuePanel"), Qt::LeftButton);
    EXPECT_EQ(list[1]->FActiveValue, Variant(std::int32_t{clGreen}));
}

TEST_F(PropSelector, ASourceOrClientThatGoesAwayLeavesNothingBehindToUse)
{
    Bind({"Level"});
    Add("Seq1", "Level");
    Select(0);
    delete FMeter;  // the client drops the binding to it
    EXPECT_EQ(FSelector.GetSelectedItem(), nullptr);
    Type("ActiveValueSmartEdit", "3");
    Click("RemovePropFromActiveListButton");
    Add("Source1", "Tint");
    EXPECT_EQ(Bindings(), QStringList({"Seq1.Level"}));

    delete FClient;
    EXPECT_EQ(FSelector.GetTheComponent(), nullptr);
    EXPECT_EQ(FSelector.GetSelectedPropTreeView()->topLevelItemCount(), 0);
    EXPECT_EQ(AvailableTree()->topLevelItemCount(), 0);
}

using PropertyPage = PropSelector;

TEST_F(PropertyPage, IsSizedTabbedAndNamedAfterTheClient)
{
    TKSSourceControlPropertyPage page;
    page.SetTheComponent(FClient);
    EXPECT_EQ(page.windowTitle(), "   Properties of Button");
    FClient->SetCaption(QString());
    page.SetTheComponent(FClient);
    EXPECT_EQ(page.windowTitle(), "   Properties of Button1");
    page.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&page));
    EXPECT_EQ(page.size(), QSize(436, 358));
    EXPECT_EQ(page.GetPageControl()->tabText(0), "Control source");
    EXPECT_EQ(page.GetPageControl()->widget(0), page.GetSelector());
}

TEST_F(PropertyPage, OkAndEnterGiveOneCancelAndEscapeTwo)
{
    Bind({"Level"});
    struct Row {
        const char* name;
        std::function<void(TKSSourceControlPropertyPage&)> act;
        int result;
    };
    const Row rows[] = {
        {"OK button", [](auto& page) { QTest::mouseClick(page.GetOKButton(), Qt::LeftButton); }, 1},
        {"Cancel button", [](auto& page) { QTest::mouseClick(page.GetCancelButton(), Qt::LeftButton); }, 2},
        {"Escape", [](auto& page) { QTest::keyClick(&page, Qt::Key_Escape); }, 2},
        {"window closed", [](auto& page) { page.close(); }, 2},
        {"Enter in a value edit",
         [](auto& page) {
             auto* edit = page.template findChild<THVKSmartEdit*>("ActiveValueSmartEdit");
             QTest::keyClicks(edit, "9");
             QTest::keyClick(edit, Qt::Key_Return);
         },
         1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        TKSSourceControlPropertyPage page;
        page.SetTheComponent(FClient);
        QTimer::singleShot(0, &page, [&] { row.act(page); });
        QTimer::singleShot(5000, &page, [&] { page.done(99); });  // never hang
        EXPECT_EQ(page.exec(), row.result);
    }
    EXPECT_EQ(FClient->GetPropInputList().front()->FActiveValue, Variant(std::int32_t{59}))
        << "the page selects the first binding when shown, and Enter stores the edit";
}

}  // namespace
