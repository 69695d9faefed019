#include <gtest/gtest.h>

#include <QWidget>
#include <memory>

#include "qxbase/panels/source_control_client.h"
#include "qxbase/sources/connection_collector.h"
#include "qxbase/sources/measure_source.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

// A panel with an integer property "Level" (5) and an enumeration "Mode" (Off, On, Auto).
class TOvenPanel : public TKSMSSink {
    Q_OBJECT

public:
    explicit TOvenPanel(QWidget* parent = nullptr) : TKSMSSink(parent)
    {
        RegisterProperty(
            "Level of the oven", "Level",
            [this](TQXPropertyItem*, bool Get, bool, Variant& Value) {
                if (Get && FailReads) throw Exception("Level cannot be read");
                if (Get) Value = std::int32_t{5};
                return S_OK;
            },
            varInteger, "int", false, 0, 0, 1);
        Variant modes = Variant::CreateArray(0, 2, varVariant);
        modes.SetArrayElement(0, "Off");
        modes.SetArrayElement(1, "On");
        modes.SetArrayElement(2, "Auto");
        RegisterProperty(
            "Mode", "Mode",
            [](TQXPropertyItem*, bool Get, bool, Variant& Value) {
                if (Get) Value = std::int32_t{0};
                return S_OK;
            },
            0, modes, 2);
    }
    bool FailReads = false;
};

// Clients named as the host's classes whose lines the overview builds in full or marks.
class TKSCtrlSrcCliButton : public TKSSourceControlClient {
    Q_OBJECT
public:
    using TKSSourceControlClient::TKSSourceControlClient;
};
class TKSCombCliScope : public TKSSourceControlClient {
    Q_OBJECT
public:
    using TKSSourceControlClient::TKSSourceControlClient;
};
class TKSCtrlSrcCliEvent : public TKSSourceControlClient {
    Q_OBJECT
    Q_PROPERTY(QString ActiveEventEventDescription MEMBER FDescription)
public:
    using TKSSourceControlClient::TKSSourceControlClient;
    QString FDescription = "Alarm raised";
};

namespace {

template <class T>
T* Make(QWidget* Owner, const QString& Name, const QString& Description)
{
    auto* object = new T(Owner);
    object->setObjectName(Name);
    object->SetObjectDescription(Description);
    return object;
}

void Bind(TKSSourceControlClient* Client, const QString& Panel, const QString& Property, const Variant& Active = {},
          const Variant& Passive = {})
{
    auto& item = *Client->GetPropInputList().emplace_back(std::make_unique<TKSControlSourcePropListItem>());
    item.FPanelName = Panel;
    item.FPropertyName = Property;
    item.FActiveValue = Active;
    item.FPassiveValue = Passive;
}

QStringList Lines(const TQXConnectionTarget* Target)
{
    QStringList lines;
    for (int i = 0; i < Target->GetConnectionCount(); ++i) lines << Target->GetConnection(i);
    return lines;
}

QStringList Descriptions(const TQXConnectionRoot* Root)
{
    QStringList texts;
    for (int i = 0; i < Root->GetConnectionTargetCount(); ++i) texts << Root->GetConnectionTarget(i)->GetDescription();
    return texts;
}

// A sheet with a page holding a source, a chart reading it, the oven and clients bound to it.
class ConnectionScan : public ::testing::Test {
public:
    void SetUp() override
    {
        Source->ChannelListAdd("c0", "V", "volt", -10, 10, {}, 0, 1, true);
        Source->ChannelListAdd("c1", "A", "amp", 0, 0.5, {}, 0, 2, true);
        Source->ChannelListAdd("c2", "T", "degC", -1.5e-7, 1e20, {}, 0, 3, true);
        Chart->SetChannelMode(3);
        Chart->ChannelAddMultiple({2, -1, 9, 0});  // only as many positions as the source has
        ChartLink->SetQXMeasureSourceEx(Source);
        NotAPanel.SetQXMeasureSourceEx(Source);
    }
    void TearDown() override
    {
        ChartLink->SetQXMeasureSourceEx(nullptr);
        NotAPanel.SetQXMeasureSourceEx(nullptr);
    }

    // What loading a worksheet does for every client.
    void InstallAll()
    {
        for (QObject* child : Page->children())
            if (auto* client = qobject_cast<TKSSourceControlClient*>(child)) client->InstallControlSourceConnections();
    }

    QWidget Sheet;
    QWidget* Page = new QWidget(&Sheet);
    TQXMeasureSourceEx* Source = Make<TQXMeasureSourceEx>(Page, "Src", "Source B");
    TKSMSSink* Chart = Make<TKSMSSink>(Page, "Chart", "Chart 1");
    std::unique_ptr<TQXMeasureLinkEx> ChartLink = std::make_unique<TQXMeasureLinkEx>(Chart);
    TQXMeasureLinkEx NotAPanel{&Sheet};
    TOvenPanel* Oven = Make<TOvenPanel>(Page, "Oven", "Oven");
    TQXConnectionCollector Collector;
};

}  // namespace

TEST_F(ConnectionScan, DataSourcesWithTheChannelsOfEachReadingPanel)
{
    // A source without component name, nested in a panel, yields no root.
    Make<TQXMeasureSourceEx>(Chart, "", "Source A");
    Make<TQXMeasureSourceEx>(Chart, "Inner", "Source A");
    TQXMeasureLinkEx second(Oven);
    second.SetQXMeasureSourceEx(Source);

    Collector.ScanRoot(&Sheet);
    ASSERT_EQ(Collector.GetDataSourceRootCount(), 2);
    EXPECT_EQ(Collector.GetDataSourceRoot(0)->GetComponentName(), "Inner");
    const TQXConnectionRoot* root = Collector.GetDataSourceRoot(1);
    EXPECT_EQ(root->GetDescription(), "Source B");
    EXPECT_EQ(root->GetClassName(), "TQXMeasureSourceEx");
    EXPECT_EQ(Descriptions(root), (QStringList{"Chart 1", "Oven"}));
    EXPECT_EQ(Lines(root->GetConnectionTarget(0)), (QStringList{"T [degC];  {-1.5E-7,1E20}", "unknown"}));
    EXPECT_EQ(root->GetConnectionTarget(0)->GetClassName(), "TKSMSSink");
    EXPECT_EQ(root->GetConnectionTarget(1)->GetConnectionCount(), 0);
    EXPECT_EQ(root->GetConnectionTarget(1)->GetConnection(0), "");
    EXPECT_EQ(root->GetConnectionTarget(2), nullptr);
    EXPECT_EQ(Collector.GetDataSourceRoot(-1), nullptr);

    // Scans add up until cleared.
    Collector.ScanRoot(&Sheet);
    EXPECT_EQ(Collector.GetDataSourceRootCount(), 4);
    Collector.Clear();
    EXPECT_EQ(Collector.GetDataSourceRootCount(), 0);
}

TEST_F(ConnectionScan, BindingLinesByClientClassAndTheirListeners)
{
    auto* button = Make<TKSCtrlSrcCliButton>(Page, "Button", "Button");
    Bind(button, "Oven", "Level");
    Bind(button, "Oven", "Mode", std::int32_t{1}, std::int32_t{0});
    Bind(button, "Chart", "PanelEnable");
    auto* plain = Make<TKSSourceControlClient>(Page, "Plain", "Plain");
    Bind(plain, "Oven", "Level");
    auto* scope = Make<TKSCombCliScope>(Page, "Scope", "Scope");
    Bind(scope, "Oven", "Level");
    auto* alarm = Make<TKSCtrlSrcCliEvent>(Page, "", "Alarm");
    Bind(alarm, "Oven", "Level");
    auto* shown = Make<TKSCtrlSrcCliEvent>(Page, "Alarm2", "Alarm 2");
    Bind(shown, "Oven", "Mode");
    InstallAll();
    Bind(shown, "Gone", "Level");

    Collector.ScanRoot(&Sheet);
    ASSERT_EQ(Collector.GetControlSourceRootCount(), 5);
    EXPECT_EQ(Collector.GetControlSourceRoot(0)->GetDescription(), "Alarm");
    const TQXConnectionRoot* root = Collector.GetControlSourceRoot(1);
    ASSERT_EQ(root->GetDescription(), "Alarm 2");
    // The scan installed the bindings again, which dropped the one that does not resolve.
    EXPECT_EQ(Lines(root->GetConnectionTarget(0)), (QStringList{"Mode = [active: Off] [passive: Off]"}));

    root = Collector.GetControlSourceRoot(2);
    ASSERT_EQ(root->GetDescription(), "Button");
    EXPECT_EQ(Descriptions(root), (QStringList{"Chart 1", "Oven"}));
    EXPECT_EQ(Lines(root->GetConnectionTarget(0)), (QStringList{"Panel State = [active: Enabled] [passive: Enabled]"}));
    EXPECT_EQ(Lines(root->GetConnectionTarget(1)),
              (QStringList{"Level of the oven = 5", "Mode = [active: On] [passive: Off]"}));
    EXPECT_EQ(root->GetConnectionTarget(1)->GetComponentName(), "Oven");
    EXPECT_EQ(root->GetConnectionTarget(1)->GetClassName(), "TOvenPanel");

    EXPECT_EQ(Lines(Collector.GetControlSourceRoot(3)->GetConnectionTarget(0)),
              (QStringList{"Level of the oven = unknown"}));
    EXPECT_EQ(Lines(Collector.GetControlSourceRoot(4)->GetConnectionTarget(0)),
              (QStringList{"!Compound control! : Level of the oven = unknown"}));

    // The oven's listeners: every bound client with a component name; the event client shows
    // its event description.
    ASSERT_EQ(Collector.GetEventSourceRootCount(), 2);
    root = Collector.GetEventSourceRoot(1);
    ASSERT_EQ(root->GetDescription(), "Oven");
    EXPECT_EQ(Descriptions(root), (QStringList{"Alarm 2", "Button", "Button", "Plain", "Scope"}));
    EXPECT_EQ(Lines(root->GetConnectionTarget(0)), (QStringList{"Alarm raised"}));
    EXPECT_EQ(Lines(root->GetConnectionTarget(1)), QStringList());
}

TEST_F(ConnectionScan, AFailingScanKeepsWhatItCollected)
{
    auto* first = Make<TKSCtrlSrcCliButton>(Page, "First", "Same");
    Bind(first, "Chart", "PanelEnable");
    auto* second = Make<TKSCtrlSrcCliButton>(Page, "Second", "Same");
    Bind(second, "Chart", "PanelEnable");
    auto* failing = Make<TKSCtrlSrcCliButton>(Page, "Failing", "Failing");
    Bind(failing, "Oven", "Level");
    auto* never = Make<TKSCtrlSrcCliButton>(Page, "Never", "Never");
    Bind(never, "Chart", "PanelEnable");
    InstallAll();
    Oven->FailReads = true;

    Collector.ScanRoot(&Sheet);
    EXPECT_EQ(Collector.GetDataSourceRootCount(), 1);
    ASSERT_EQ(Collector.GetControlSourceRootCount(), 2);
    EXPECT_EQ(Collector.GetControlSourceRoot(0)->GetComponentName(), "First");
    EXPECT_EQ(Collector.GetControlSourceRoot(1)->GetComponentName(), "Second");
    Oven->FailReads = false;
}

#include "connection_collector_test.moc"
