#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimer>
#include <tuple>
#include <vector>

#include "qxbase/framework/host_services.h"
#include "qxbase/framework/stream_registry.h"
#include "qxbase/panels/panel_tab_page.h"
#include "qxbase/panels/source_control_client.h"
#include "qxbase/panels/worksheet_file.h"
#include "tests/control/control_test_support.h"

using namespace qx;

// A panel with an integer property "Level" that keeps whatever is written to it.
class TLevelPanel : public TKSMSSink {
    Q_OBJECT

public:
    explicit TLevelPanel(QWidget* parent = nullptr) : TKSMSSink(parent)
    {
        const auto access = [this](TQXPropertyItem*, bool Get, bool, Variant& Value) {
            if (Get && FailReads)
                throw Exception("Level cannot be read");
            if (Get)
                Value = FLevel;
            else
                FLevel = Value;
            return S_OK;
        };
        RegisterProperty("Level of the panel", "Level", access, varInteger, "int", false, 0, 0, 1);
    }
    Variant FLevel = Variant(std::int32_t{5});
    static inline bool FailReads = false;
};

class TTestClient : public TKSSourceControlClient {
    Q_OBJECT

public:
    using TKSSourceControlClient::TKSSourceControlClient;

    TKSControlSourcePropListItem& Add(const QString& Panel, const QString& Property, const Variant& Active = {},
                                      const Variant& Passive = {})
    {
        auto& item = *FPropList.emplace_back(std::make_unique<TKSControlSourcePropListItem>());
        item.FPanelName = Panel;
        item.FPropertyName = Property;
        item.FActiveValue = Active;
        item.FPassiveValue = Passive;
        return item;
    }
    TKSControlSourcePropListItem& Item(std::size_t i) { return *FPropList.at(i); }
    // "Panel.Property/kind active passive" per binding.
    QString Describe() const
    {
        const auto typed = [](const Variant& v) {
            return v.IsEmpty() ? "Empty" : VarTypeAsText(v.VarType()) + ":" + v.ToString();
        };
        QStringList texts;
        for (const auto& item : FPropList)
            texts << QStringLiteral("%1.%2/%3 %4 %5")
                         .arg(item->FPanelName, item->FPropertyName)
                         .arg(item->FDataType)
                         .arg(typed(item->FActiveValue), typed(item->FPassiveValue));
        return texts.join(" | ");
    }
    void InitContol() override { ++InitCount; }

    int InitCount = 0;
};

namespace {

// A sheet (the container) holding page P with source "Oven" and client "Switch", and page Q with
// source "Fan". Output collects the operating system's debug output.
class Binding : public ::testing::Test {
public:
    void SetUp() override
    {
        if (FindStreamClass("TLevelPanel") == nullptr) {
            RegisterStreamClass<TLevelPanel>();
            RegisterStreamClass<TTestClient>();
        }
        HostServices().DebugOutput = [this](const QString& Text) { Output << Text; };
        Client->setObjectName("Switch");
        Client->SetObjectDescription("Switch 1");
    }
    void TearDown() override
    {
        // The panels go after the hooks are restored; their bindings must not report then.
        Client->GetPropInputList().clear();
        RestoreHostServices();
    }

    static TLevelPanel* Panel(QWidget* Owner, const QString& Name)
    {
        auto* panel = new TLevelPanel(Owner);
        panel->setObjectName(Name);
        panel->SetObjectDescription(Name + " panel");
        return panel;
    }
    std::unique_ptr<TTestClient> Read(const QString& Name, const QJsonArray& Values)
    {
        auto client = std::make_unique<TTestClient>();
        client->setObjectName("c");
        ReadComponentData(*client, QJsonObject{{"defined", QJsonObject{{Name, Values}}}});
        return client;
    }

    QWidget Sheet;
    QWidget* P = new QWidget(&Sheet);
    QWidget* Q = new QWidget(&Sheet);
    TTestClient* Client = new TTestClient(P);
    TLevelPanel* Oven = Panel(P, "Oven");
    TLevelPanel* Fan = Panel(Q, "Fan");
    QStringList Output;
};

TEST_F(Binding, FindsPanelsByExactNameThenSubtempThenItself)
{
    TLevelPanel* sub = Panel(Q, "SUBTEMP_Dryer");
    Panel(Q, "SUBTEMP_Oven");
    TLevelPanel* nested = Panel(Oven, "Inner");
    Panel(Q, "Inner");
    EXPECT_EQ(Client->GetPanelByName("Oven"), Oven);
    EXPECT_EQ(Client->GetPanelByName("Dryer"), sub);  // on another page
    EXPECT_EQ(Client->GetPanelByName("Inner"), nested);
    EXPECT_EQ(Client->GetPanelByName("Switch"), Client);
    EXPECT_EQ(Client->GetPanelByName("oven"), nullptr);
    EXPECT_EQ(Client->GetPanelByName("P"), nullptr);  // a widget, not a control source

    TTestClient alone;
    alone.setObjectName("Alone");
    EXPECT_EQ(alone.GetPanelByName("Alone"), nullptr);
    HostServices().GetContainer = [this](const QObject*) { return P; };
    EXPECT_EQ(alone.GetPanelByName("Oven"), Oven);
    EXPECT_EQ(alone.GetPanelByName("Alone"), &alone);
}

TEST_F(Binding, SetUpFillsOnlyUnassignedValuesAndFollowsTheBoundProperty)
{
    TKSControlSourcePropListItem& item = Client->Add("Oven", "Level", {}, std::int32_t{7});
    ASSERT_TRUE(Client->SetupPropertyConnnection(&item));
    EXPECT_EQ(item.FActiveValue, Variant(std::int32_t{5}));
    EXPECT_EQ(item.FPassiveValue, Variant(std::int32_t{7}));
    EXPECT_FALSE(Client->SetupPropertyConnnection(&Client->Add("Oven", "Heat")));
    EXPECT_EQ(Oven->GetEventLinkCount(), 1);  // a failed set-up leaves no link behind

    Oven->FLevel = "hot";
    Oven->EventFirePropertyUpdated("PanelEnable");
    EXPECT_EQ(item.FActualValue, Variant(std::int32_t{5}));
    Oven->EventFirePropertyUpdated("Level");
    EXPECT_EQ(item.FActualValue, Variant("hot"));
}

TEST_F(Binding, ADestroyedSourceTakesOneBindingOrWithTheWholePanelOptionAllOfIt)
{
    for (bool wholePanel : {false, true}) {
        Output.clear();
        Client->GetPropInputList().clear();
        Client->SetRemoveWholePanel(wholePanel);
        TLevelPanel* dryer = Panel(P, "Dryer");
        QStringList told;  // links are told last first; with the option the first takes them all
        for (const char* property : {"Level", "PanelEnable", "ShowPropertypage"}) {
            TKSControlSourcePropListItem& item = Client->Add("Dryer", property);
            ASSERT_TRUE(Client->SetupPropertyConnnection(&item));
            const auto low = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(item.FEventLink.get()));
            told.prepend("DoOnEventlinkSourceDestroied EventLink = "
                         + QString::number(low, 16).rightJustified(8, '0').toUpper());
        }
        ASSERT_TRUE(Client->SetupPropertyConnnection(&Client->Add("Fan", "Level")));
        qxtest::TDebugViewer viewer;
        delete dryer;

        EXPECT_EQ(Client->Describe(), "Fan.Level/0 Integer:5 Integer:5");
        EXPECT_EQ(Output, wholePanel ? told.first(1) : told);
        ASSERT_FALSE(viewer.Lines.isEmpty());
        EXPECT_EQ(viewer.Lines.front(),
                  QStringList{"<Switch 1>: Source destroied, removing link to Dryer panel->ShowPropertypage"});
    }
}

TEST_F(Binding, APropertySetChangeDropsOnlyBindingsWhosePropertyIsGone)
{
    ASSERT_TRUE(Client->SetupPropertyConnnection(&Client->Add("Oven", "Level")));
    ASSERT_TRUE(Client->SetupPropertyConnnection(&Client->Add("Oven", "PanelEnable")));
    qxtest::TDebugViewer viewer;
    Oven->ClearProperties();  // Level goes, the others come back under new handles
    Oven->EventFire(0, qxecControlPropertiesChanged, {});

    TQXPropertyHandle handle = 0;
    Oven->GetPropertyHandle("PanelEnable", handle);
    ASSERT_EQ(Client->GetPropInputList().size(), 1U);
    EXPECT_EQ(Client->Item(0).FPropertyHandle, handle);
    EXPECT_TRUE(
        viewer.Lines.contains(QStringList{"<Switch 1>: Property invalid, removing link to Oven panel->Level"}));
}

TEST_F(Binding, InstallDropsUnresolvableBindingsUnlessAnOptionKeepsThem)
{
    const QString oven = "Oven.Level/0 Integer:5 Integer:5";
    const QString fan = "Fan.Level/0 Integer:5 Integer:5";
    const QString all =
        oven + " | Nowhere.Level/0 Empty Empty | Oven.Heat/0 Empty Empty | Oven.Level/2 Empty Empty | " + fan;
    for (auto [wholePanel, disableDelete, kept] :
         {std::tuple{false, false, oven + " | " + fan}, std::tuple{true, false, all}, std::tuple{false, true, all}}) {
        Client->GetPropInputList().clear();
        Client->SetRemoveWholePanel(wholePanel);
        DisableProperyDelete = disableDelete;
        Client->Add("Oven", "Level");
        Client->Add("Nowhere", "Level");
        Client->Add("Oven", "Heat");
        Client->Add("Oven", "Level").FDataType = 2;
        Client->Add("Fan", "Level");
        Client->InstallControlSourceConnections();
        DisableProperyDelete = false;
        EXPECT_EQ(Client->Describe(), kept);
    }
    const TQXEventLink* link = Client->Item(0).FEventLink.get();
    ASSERT_NE(link, nullptr);
    Client->InstallControlSourceConnections();
    EXPECT_EQ(Client->Item(0).FEventLink.get(), link);

    TTestClient alone;  // without an owner nothing is installed
    alone.Add("Nowhere", "Level");
    alone.InstallControlSourceConnections();
    EXPECT_EQ(alone.GetPropInputList().size(), 1U);
}

TEST_F(Binding, ValuesNotHandedOutAreUnassigned)
{
    Client->Add("Oven", "Level", std::int32_t{1}, std::int32_t{0});
    Variant active = "old";
    Variant passive = "old";
    EXPECT_FALSE(Client->GetValuesOfProperty("Oven", "Heat", active, passive));
    EXPECT_TRUE(active.IsEmpty() && passive.IsEmpty());
    Client->SetDeliverPassive(false);
    passive = "old";
    EXPECT_TRUE(Client->GetValuesOfProperty("Oven", "Level", active, passive) && passive.IsEmpty());
}

TEST_F(Binding, SetupReportsAnUnchangedPanelOnlyWhenThePageClosesWithOk)
{
    for (int result : {1, 2}) {
        std::vector<bool> changes;
        Client->OnPanelChanged = [&changes](TKSMSSink*, bool Changed) { changes.push_back(Changed); };
        QTimer::singleShot(0, [result] {
            if (auto* page = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
                page->done(result);
        });
        Client->CallSetup();
        EXPECT_EQ(changes, result == 1 ? std::vector<bool>{false} : std::vector<bool>{});
    }
}

// The actual value's type chooses how both values are stored: a string actual value stores
// numbers as text; values that fit nothing are named in the debug output, not lost silently.
TEST_F(Binding, CurrentStoredFormIsIniLinesTypedByTheActualValue)
{
    Client->SetPanelEnable(false);
    Client->Add("Oven", "Mode", 2.5, true).FActualValue = "auto";
    Client->Add("Fan", "On", std::int32_t{1}, 0.0).FActualValue = false;
    Client->Add("Fan", "Speed", 0.25, Variant::Null()).FActualValue = 0.5F;
    TKSControlSourcePropListItem& odd = Client->Add("X", "Y", Variant::CreateArray(0, 1, varVariant), "abc");
    odd.FActualValue = Variant::Null();
    odd.FDataType = 3;
    const QStringList lines = {
        "[General]", "PanelEnabled=0", "[Listitems]", "Len=4",
        "listitem.0.FPanelName=Oven", "listitem.0.FPropertyName=Mode", "listitem.0.FDataType=0",
        "listitem.0.vartypeinfo=8", "listitem.0.FActiveValue=2.5", "listitem.0.FPassiveValue=True",
        "listitem.1.FPanelName=Fan", "listitem.1.FPropertyName=On", "listitem.1.FDataType=0",
        "listitem.1.vartypeinfo=11", "listitem.1.FActiveValue=1", "listitem.1.FPassiveValue=0",
        "listitem.2.FPanelName=Fan", "listitem.2.FPropertyName=Speed", "listitem.2.FDataType=0",
        "listitem.2.vartypeinfo=4", "listitem.2.FActiveValue=0.25", "listitem.2.FPassiveValue=0",
        "listitem.3.FPanelName=X", "listitem.3.FPropertyName=Y", "listitem.3.FDataType=3",
        "listitem.3.vartypeinfo=1", "listitem.3.FActiveValue=0", "listitem.3.FPassiveValue=abc"};
    const QJsonArray stored{QJsonArray::fromStringList(lines)};
    EXPECT_EQ(WriteComponent(*Client).value("defined"), QJsonObject({{"ControlSourceClientEx", stored}}));
    const QString place = R"(Component "Switch" (TTestClient): binding 3 (X->Y), )";
    EXPECT_EQ(Output, QStringList({place + "FActiveValue: a value of type Array Variant cannot be stored, stored as 0",
                                   place + R"(FPassiveValue: "abc" is not a 32-bit integer value, stored as text)"}));

    const auto read = Read("ControlSourceClientEx", stored);
    EXPECT_FALSE(read->GetPanelEnabled());
    EXPECT_EQ(read->InitCount, 1);
    EXPECT_EQ(read->Describe(), "Oven.Mode/0 String:2.5 String:True | Fan.On/0 Boolean:True Boolean:False | "
                                "Fan.Speed/0 Double:0.25 Double:0 | X.Y/3 Integer:0 String:abc");
}

// The writer and the reader decide a value's kind by one rule: white space around a text counts
// the same on both sides.
TEST_F(Binding, StoredValuesReadBackAsTheKindAndValueTheyWereWrittenAs)
{
    const std::pair<Variant, Variant> rows[] = {  // actual value (picks the kind), active value
        {std::int32_t{1}, "2\n"}, {std::int32_t{1}, " 2"}, {1.0, "1.5\n"}, {true, "1\n"}, {"x", " 2 "}};
    const QStringList expected = {"String:2\n", "Integer:2", "String:1.5\n", "String:1\n", "String: 2 "};
    for (const auto& [actual, active] : rows)
        Client->Add("Oven", "Level", active).FActualValue = actual;
    TTestClient read;
    read.ReadControlSourceClientEx(Client->WriteControlSourceClientEx());
    QStringList values;
    for (const auto& item : read.GetPropInputList())
        values << VarTypeAsText(item->FActiveValue.VarType()) + ":" + item->FActiveValue.ToString();
    EXPECT_EQ(values, expected);
}

TEST_F(Binding, OlderStoredFormIsWrittenOnRequestOnlyAndReadBack)
{
    Client->Add("Oven", "Level", std::int32_t{1}, std::int32_t{0}).FActualValue = std::int32_t{5};
    Client->Add("Oven", "Mode", 2.5, true).FActualValue = "auto";
    Client->Add("Fan", "Speed", 0.25, std::int32_t{2}).FActualValue = 0.5;
    Client->Add("Fan", "On", true, false).FActualValue = true;
    TWriter writer;
    Client->WriteProperties(writer);
    EXPECT_EQ(QJsonDocument(writer.GetValues()).toJson(QJsonDocument::Compact),
              R"([["Oven","Level",0,3,1,0,"Oven","Mode",0,8,"2.5","True","Fan","Speed",0,5,{"float":"0.25"},)"
              R"({"float":"2"},"Fan","On",0,11,true,false]])");
    const auto read = Read("FakeControlSourceClient", writer.GetValues());
    EXPECT_EQ(read->InitCount, 1);
    EXPECT_EQ(read->Describe(), "Oven.Level/0 Integer:1 Integer:0 | Oven.Mode/0 String:2.5 String:True | "
                                "Fan.Speed/0 Double:0.25 Double:2 | Fan.On/0 Boolean:True Boolean:False");

    // A value of another kind stays as it is; an entry cut short by the end of the list goes.
    const QJsonArray damaged =
        QJsonDocument::fromJson(R"([["Oven","Level",0,3,"hot",4000000000,"X","Y",2,11,true]])").array();
    EXPECT_EQ(Read("FakeControlSourceClient", damaged)->Describe(), "Oven.Level/0 String:hot Int64:4000000000");
    EXPECT_EQ(Output, QStringList{R"(Component "c" (TTestClient): binding 1 (X->Y): )"
                                  "the list ends after 5 of its 6 values, skipped"});
    EXPECT_THROW(Read("FakeControlSourceClient", QJsonDocument::fromJson(R"([[1,"Level"]])").array()), EStreamError);
}

TEST_F(Binding, DamagedStoredListsKeepWhatIsThereAndNameWhatIsNot)
{
    const QString c = R"(Component "c" (TTestClient): )";
    struct Row {
        QStringList lines;
        QString bindings;
        QStringList output;
    };
    const Row rows[] = {
        {{"[Listitems]", "listitem.0.FPanelName=Oven", "listitem.0.FPropertyName=Level"}, "",
         {c + "2 key(s) of [Listitems] beyond Len=0 ignored"}},
        {{"[Listitems]", "Len=4", "listitem.2.FPanelName=Oven", "listitem.2.FPropertyName=Level",
          "listitem.0.FDataType=0", "listitem.0.FActiveValue=1", "listitem.1.FPanelName=Oven",
          "listitem.1.FDataType=256"},
         "Oven.Level/0 Empty Empty",
         {c + "Len is 4 but 1 binding(s) are missing", c + "binding 0 has neither FPanelName nor FPropertyName, skipped",
          c + R"(binding 1 (Oven->): FDataType "256" is not a number from 0 to 255, skipped)"}},
        {{"[listitems]", "len=2", "listitem.0.FPropertyName=Level", "listitem.0.vartypeinfo=11",
          "listitem.0.FActiveValue=yes", "listitem.0.FPassiveValue= 0 ", "listitem.1.FPanelName=Fan",
          "listitem.1.vartypeinfo=abc", "listitem.1.FActiveValue=1.5", "listitem.1.FPassiveValue=$10"},
         ".Level/0 String:yes Boolean:False | Fan./0 Integer:2 Integer:16", {}},
    };
    for (const auto& [lines, bindings, output] : rows) {
        Output.clear();
        const auto client = Read("ControlSourceClientEx", QJsonArray{QJsonArray::fromStringList(lines)});
        EXPECT_EQ(client->Describe(), bindings) << lines.join('\n').toStdString();
        EXPECT_EQ(Output, output) << lines.join('\n').toStdString();
        EXPECT_TRUE(client->GetPanelEnabled());
    }
}

TEST_F(Binding, AWorksheetReconnectsItsBindingsOnTheSamePageAndAcrossPages)
{
    std::vector<TKSPanelTabPage*> before{new TKSPanelTabPage(&Sheet), new TKSPanelTabPage(&Sheet)};
    before[0]->setObjectName("PageP");
    before[1]->setObjectName("PageQ");
    auto* client = new TTestClient(before[0]);
    client->setObjectName("Switch2");
    Panel(before[0], "Oven2");
    Panel(before[1], "Fan2");
    client->Add("Oven2", "Level", std::int32_t{1});
    client->Add("Fan2", "Level", {}, "off");
    client->LoadFinished();
    const QByteArray written = WriteWorksheet(before);

    const auto pages = ReadWorksheet(written, "sheet.qxw");
    ASSERT_EQ(pages.size(), 2U);
    auto* read = pages[0]->findChild<TTestClient*>("Switch2");
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->Describe(), "Oven2.Level/0 Integer:1 Integer:5 | Fan2.Level/0 Integer:5 String:off");
    EXPECT_EQ(WriteWorksheet({pages[0].get(), pages[1].get()}), written);

    // Raising while a binding connects fails the load; the pages that shared a parent go once.
    TLevelPanel::FailReads = true;
    EXPECT_THROW(ReadWorksheet(written, "sheet.qxw"), Exception);
    TLevelPanel::FailReads = false;
}

}  // namespace

#include "source_control_client_test.moc"
