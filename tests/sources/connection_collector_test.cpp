#include <gtest/gtest.h>

#include <QWidget>
#include <memory>

#include "qxbase/panels/source_control_client.h"
#include "qxbase/sources/connection_collector.h"
#include "qxbase/sources/measure_source.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

// A panel with an integer property "Level" (5) and an enumeration "Mode" (Off, On, Auto; 0).
class TOvenPanel : public TKSMSSink {
    Q_OBJECT

public:
    explicit TOvenPanel(QWidget* parent = nullptr) : TKSMSSink(parent)
    {
        const auto read = [this](std::int32_t Value) {
            return [this, Value](TQXPropertyItem*, bool Get, bool, Variant& Out) {
                if (Get && FailReads) throw Exception("cannot be read");
                if (Get) Out = Value;
                return S_OK;
            };
        };
        RegisterProperty("Level of the oven", "Level", read(5), varInteger, "int", false, 0, 0, 1);
        Variant modes = Variant::CreateArray(0, 2, varVariant);
        for (int i = 0; i < 3; ++i) modes.SetArrayElement(i, QStringList{"Off", "On", "Auto"}.at(i));
        RegisterProperty("Mode", "Mode", read(0), 0, modes, 2);
    }
    bool FailReads = false;
};

// Clients named as host classes whose lines are built in full, or marked as compound.
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

// A sheet with a page holding a source "Src", a chart reading it and the oven.
class ConnectionScan : public ::testing::Test {
public:
    void SetUp() override
    {
        Source->ChannelListAdd("c0", "V", "volt", -10, 10, {}, 0, 1, true);
        Source->ChannelListAdd("c1", "A", "amp", 0, 0.5, {}, 0, 2, true);
        Source->ChannelListAdd("c2", "T", "degC", -1.5e-7, 1e20, {}, 0, 3, true);
        Chart->SetChannelMode(3);
        Chart->ChannelAddMultiple({2, -1, 9, 0});  // read up to the source's three channels
        ChartLink.SetQXMeasureSourceEx(Source);
        NotAPanel.SetQXMeasureSourceEx(Source);
    }

    template <class T>
    T* Make(QWidget* Owner, const QString& Name, const QString& Description)
    {
        auto* object = new T(Owner);
        object->setObjectName(Name);
        object->SetObjectDescription(Description);
        return object;
    }
    // A client bound to the given "panel.property" names, installed as loading does it.
    template <class T>
    T* Client(const QString& Name, const QString& Description, const QStringList& Bindings)
    {
        T* client = Make<T>(Page, Name, Description);
        for (const QString& binding : Bindings) {
            auto& item = *client->GetPropInputList().emplace_back(std::make_unique<TKSControlSourcePropListItem>());
            item.FPanelName = binding.section('.', 0, 0);
            item.FPropertyName = binding.section('.', 1);
        }
        client->InstallControlSourceConnections();
        return client;
    }
    static QStringList Lines(const TQXConnectionRoot* Root, int Target)
    {
        const TQXConnectionTarget* target = Root->GetConnectionTarget(Target);
        QStringList lines;
        for (int i = 0; i < target->GetConnectionCount(); ++i) lines << target->GetConnection(i);
        return lines;
    }
    static QStringList Targets(const TQXConnectionRoot* Root)
    {
        QStringList texts;
        for (int i = 0; i < Root->GetConnectionTargetCount(); ++i) texts << Root->GetConnectionTarget(i)->GetDescription();
        return texts;
    }

    QWidget Sheet;
    QWidget* Page = new QWidget(&Sheet);
    TQXMeasureSourceEx* Source = Make<TQXMeasureSourceEx>(Page, "Src", "Source B");
    TKSMSSink* Chart = Make<TKSMSSink>(Page, "Chart", "Chart 1");
    TOvenPanel* Oven = Make<TOvenPanel>(Page, "Oven", "Oven");
    TQXMeasureLinkEx ChartLink{Chart};
    TQXMeasureLinkEx NotAPanel{&Sheet};
    TQXConnectionCollector Collector;
};

}  // namespace

TEST_F(ConnectionScan, DataSourcesWithTheChannelsOfEachReadingPanel)
{
    // A source without component name yields no root; one nested in a panel is found.
    Make<TQXMeasureSourceEx>(Chart, "", "Source A");
    Make<TQXMeasureSourceEx>(Chart, "Inner", "Source A");
    TQXMeasureLinkEx ovenLink(Oven);
    ovenLink.SetQXMeasureSourceEx(Source);

    Collector.ScanRoot(&Sheet);
    ASSERT_EQ(Collector.GetDataSourceRootCount(), 2);
    EXPECT_EQ(Collector.GetDataSourceRoot(0)->GetComponentName(), "Inner");
    const TQXConnectionRoot* root = Collector.GetDataSourceRoot(1);
    EXPECT_EQ(root->GetClassName(), "TQXMeasureSourceEx");
    EXPECT_EQ(Targets(root), (QStringList{"Chart 1", "Oven"}));
    // Channel 9 is beyond the source's list: no line.
    EXPECT_EQ(Lines(root, 0), (QStringList{"T [degC];  {-1.5E-7,1E20}", "unknown"}));
    EXPECT_EQ(Lines(root, 1), QStringList());

    // Scans add up until cleared.
    Collector.ScanRoot(&Sheet);
    EXPECT_EQ(Collector.GetDataSourceRootCount(), 4);
    Collector.Clear();
    EXPECT_EQ(Collector.GetDataSourceRoot(0), nullptr);
}

TEST_F(ConnectionScan, BindingLinesByClientClassAndTheirListeners)
{
    Client<TKSCtrlSrcCliButton>("Button", "Button", {"Oven.Level", "Chart.PanelEnable", "Oven.Mode"});
    Client<TKSSourceControlClient>("Plain", "Plain", {"Oven.Level"});
    Client<TKSCombCliScope>("Scope", "Scope", {"Oven.Level"});
    Client<TKSCtrlSrcCliEvent>("", "Alarm", {"Oven.Level"});
    Client<TKSCtrlSrcCliEvent>("Alarm2", "Alarm", {"Oven.Mode"});

    Collector.ScanRoot(&Sheet);
    ASSERT_EQ(Collector.GetControlSourceRootCount(), 5);
    // Equal descriptions keep both roots, in the order found.
    EXPECT_EQ(Collector.GetControlSourceRoot(0)->GetComponentName(), "");
    const TQXConnectionRoot* root = Collector.GetControlSourceRoot(2);
    ASSERT_EQ(root->GetDescription(), "Button");
    EXPECT_EQ(Targets(root), (QStringList{"Chart 1", "Oven"}));
    EXPECT_EQ(root->GetConnectionTarget(1)->GetClassName(), "TOvenPanel");
    EXPECT_EQ(Lines(root, 0), (QStringList{"Panel State = [active: Enabled] [passive: Enabled]"}));
    EXPECT_EQ(Lines(root, 1), (QStringList{"Level of the oven = 5", "Mode = [active: Off] [passive: Off]"}));
    EXPECT_EQ(Lines(Collector.GetControlSourceRoot(3), 0), (QStringList{"Level of the oven = unknown"}));
    EXPECT_EQ(Lines(Collector.GetControlSourceRoot(4), 0),
              (QStringList{"!Compound control! : Level of the oven = unknown"}));

    // The oven's listeners with a component name, one per link; the event client shows its
    // event description.
    ASSERT_EQ(Collector.GetEventSourceRootCount(), 2);
    root = Collector.GetEventSourceRoot(1);
    ASSERT_EQ(root->GetDescription(), "Oven");
    EXPECT_EQ(Targets(root), (QStringList{"Alarm", "Button", "Button", "Plain", "Scope"}));
    EXPECT_EQ(Lines(root, 0), (QStringList{"Alarm raised"}));
}

TEST_F(ConnectionScan, KeptUnresolvedBindingsAreShownAsSuch)
{
    DisableProperyDelete = true;
    Client<TKSCtrlSrcCliButton>("Button", "Button", {"Oven.Heat", "Gone.Level"});
    Collector.ScanRoot(&Sheet);
    DisableProperyDelete = false;
    const TQXConnectionRoot* root = Collector.GetControlSourceRoot(0);
    ASSERT_EQ(Targets(root), (QStringList{"", "Oven"}));
    EXPECT_EQ(root->GetConnectionTarget(0)->GetComponentName(), "Gone");
    EXPECT_EQ(Lines(root, 0), (QStringList{"Level = unresolved"}));
    EXPECT_EQ(Lines(root, 1), (QStringList{"Heat = unresolved"}));
}

TEST_F(ConnectionScan, AFailingScanKeepsWhatItCollected)
{
    Client<TKSCtrlSrcCliButton>("First", "First", {"Chart.PanelEnable"});
    Client<TKSCtrlSrcCliButton>("Failing", "Failing", {"Oven.Level"});
    Client<TKSCtrlSrcCliButton>("Never", "Never", {"Chart.PanelEnable"});
    Oven->FailReads = true;
    Collector.ScanRoot(&Sheet);
    EXPECT_EQ(Collector.GetDataSourceRootCount(), 1);
    ASSERT_EQ(Collector.GetControlSourceRootCount(), 1);
    EXPECT_EQ(Collector.GetControlSourceRoot(0)->GetComponentName(), "First");
    Oven->FailReads = false;
}

#include "connection_collector_test.moc"
