#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>
#include <QTimer>
#include <QTreeWidget>
#include <stdexcept>
#include <utility>

#include "apps/qxsheet/bindings_demo.h"
#include "apps/qxsheet/demo_clients.h"
#include "apps/qxsheet/demo_panels.h"
#include "apps/qxsheet/worksheet_app.h"
#include "qxbase/control/event_link.h"
#include "qxbase/framework/host_services.h"
#include "qxbase/panels/ctrl_client_prop_selector.h"
#include "qxbase/config/panel_property_page.h"
#include "tests/framework/print_qstring.h"

using namespace qxsheet;

namespace {

template <class T>
T& Get(const QObject& root, const char* name)
{
    T* found = root.findChild<T*>(QString::fromLatin1(name));
    if (found == nullptr) throw std::runtime_error(std::string("no panel ") + name);
    return *found;
}

qx::TQXPropertyHandle Handle(const qx::TQXControlSource& source, const char* name)
{
    qx::TQXPropertyHandle handle = 0;
    source.GetPropertyHandle(QString::fromLatin1(name), handle);
    return handle;
}

void Write(qx::TQXControlSource& source, const char* name, const qx::Variant& value)
{
    source.SetPropertyValue(nullptr, Handle(source, name), value);
}

// The names of the properties a source announces as updated.
struct TUpdates {
    explicit TUpdates(qx::TQXControlSource& source)
    {
        FLink.OnValueUpdated = [this, &source](qx::TQXEventLink*, std::uint32_t handle) {
            QString name;
            source.GetPropertyNameFromHandle(handle, name);
            FNames << name;
        };
        FLink.SetEventSource(&source);
    }
    qx::TQXEventLink FLink;
    QStringList FNames;
};

QPoint Centre(const QWidget& widget) { return widget.rect().center(); }

TEST(DemoPanelBus, WritesChangeThePanelAndOnlyUsableValuesAreTaken)
{
    TDemoLamp lamp;
    lamp.resize(100, 100);
    const QImage enabled = lamp.grab().toImage();
    Write(lamp, "PanelEnable", qx::Variant("Disabled"));
    EXPECT_NE(lamp.grab().toImage(), enabled) << "a disabled panel is veiled";
    Write(lamp, "PanelEnable", qx::Variant(std::int32_t{1}));
    EXPECT_EQ(lamp.grab().toImage(), enabled);

    const std::pair<qx::Variant, bool> rows[] = {
        {qx::Variant(true), true}, {qx::Variant("Off"), false}, {qx::Variant("maybe"), false},
        {qx::Variant(2.5), true},  {qx::Variant::Null(), true},
    };
    for (const auto& [value, on] : rows) {
        Write(lamp, "On", value);
        EXPECT_EQ(lamp.GetOn(), on) << value.VarType();
    }
    qx::Variant read;
    ASSERT_TRUE(lamp.GetPropertyValue(Handle(lamp, "On"), read));
    EXPECT_EQ(read, qx::Variant(std::int32_t{1}));
    Write(lamp, "LampColor", qx::Variant(std::int32_t{qx::clRed}));
    EXPECT_EQ(lamp.GetLampColor(), qx::clRed);

    TDemoValueDisplay display;
    Write(display, "Value", qx::Variant("12.5"));
    EXPECT_EQ(display.GetValue(), 12.5);
    Write(display, "Value", qx::Variant("twelve"));
    Write(display, "Value", qx::Variant::Null());
    EXPECT_EQ(display.GetValue(), 12.5);
}

// A bus write is announced once, by the bus; a setter announces a change itself, and only a
// change.
TEST(DemoPanelBus, EveryChangeIsAnnouncedOnce)
{
    TDemoValueDisplay display;
    TDemoLamp lamp;
    TUpdates displayUpdates(display);
    TUpdates lampUpdates(lamp);
    Write(display, "Value", qx::Variant(7.0));
    display.SetValue(3.0);
    display.SetValue(3.0);
    display.SetUnit(QStringLiteral("bar"));
    lamp.SetOn(true);
    lamp.SetLampColor(qx::clBlue);
    Write(lamp, "On", qx::Variant("Off"));
    EXPECT_EQ(displayUpdates.FNames, QStringList({"Value", "Value"}));
    EXPECT_EQ(lampUpdates.FNames, QStringList({"On", "LampColor", "On"}));
}

class Bindings : public ::testing::Test {
protected:
    void SetUp() override { FWindow = OpenWorksheetWindow({}); }
    void TearDown() override { qx::RestoreHostServices(); }

    void Show()
    {
        FWindow->resize(KSnapshotSize);
        FWindow->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(FWindow.get()));
    }
    template <class T>
    T& Panel(const char* name) { return Get<T>(*FWindow, name); }

    QTemporaryDir FDir;
    std::unique_ptr<TWorksheetWindow> FWindow;
};

// A second binding of the button, to a floating-point property, comes back from a saved file
// with the first, and a press sets both.
TEST_F(Bindings, SurviveASaveAndLoadAndAreLiveAfterIt)
{
    auto& button = Panel<TDemoButtonPanel>("AcknowledgeAlarm");
    auto item = std::make_unique<qx::TKSControlSourcePropListItem>();
    item->FPanelName = QStringLiteral("Zone1Temperature");
    item->FPropertyName = QStringLiteral("Value");
    item->FActiveValue = qx::Variant(20.5);
    button.GetPropInputList().push_back(std::move(item));
    ASSERT_TRUE(button.SetupPropertyConnnection(button.GetPropInputList().back().get()));

    const QString path = FDir.filePath("bound.qxw");
    ASSERT_TRUE(FWindow->SaveTo(path));
    ASSERT_TRUE(FWindow->Open(path));
    EXPECT_TRUE(Panel<TDemoButtonPanel>("AcknowledgeAlarm").Press());
    EXPECT_FALSE(Panel<TDemoLamp>("OverTemperature").GetOn());
    EXPECT_EQ(Panel<TDemoValueDisplay>("Zone1Temperature").GetValue(), 20.5);
}

TEST_F(Bindings, ClicksOutsideDesignModeActAndTheSwitchFollowsItsTarget)
{
    Show();
    auto& heaterSwitch = Panel<TDemoSwitchPanel>("HeaterSwitch");
    auto& heater = Panel<TDemoBarMeter>("HeaterPower");
    QTest::mouseClick(&heaterSwitch, Qt::LeftButton, {}, Centre(heaterSwitch));
    EXPECT_FALSE(heater.GetPanelEnabled());

    // Someone else writes the target: the switch shows what it holds.
    Write(heater, "PanelEnable", qx::Variant("Enabled"));
    EXPECT_TRUE(heaterSwitch.GetOn());
    Write(heater, "PanelEnable", qx::Variant("Disabled"));
    EXPECT_FALSE(heaterSwitch.GetOn());

    // In design mode a click selects; a disabled switch does nothing.
    FWindow->SetDesignMode(true);
    QTest::mouseClick(&heaterSwitch, Qt::LeftButton, {}, Centre(heaterSwitch));
    EXPECT_TRUE(heaterSwitch.GetIsSelected());
    EXPECT_FALSE(heater.GetPanelEnabled());
    FWindow->SetDesignMode(false);
    Write(heaterSwitch, "PanelEnable", qx::Variant(std::int32_t{0}));
    QTest::mouseClick(&heaterSwitch, Qt::LeftButton, {}, Centre(heaterSwitch));
    EXPECT_FALSE(heater.GetPanelEnabled());
    EXPECT_FALSE(heaterSwitch.GetOn());

    auto& button = Panel<TDemoButtonPanel>("AcknowledgeAlarm");
    QTest::mouseClick(&button, Qt::LeftButton, {}, Centre(button));
    EXPECT_FALSE(Panel<TDemoLamp>("OverTemperature").GetOn());
}

// The page is modal: it is looked at from a timer inside its event loop, after it is cancelled
// (so that a failed assertion cannot leave it open). Any other dialog is closed after five
// seconds, so the test cannot hang.
TEST_F(Bindings, ThePropertyPageOfTheSwitchShowsItsBindings)
{
    Show();
    FWindow->SetDesignMode(true);
    auto& heaterSwitch = Panel<TDemoSwitchPanel>("HeaterSwitch");
    bool seen = false;
    int polls = 0;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        auto* page = qobject_cast<qx::TKSPanelPropertyPage*>(dialog);
        if (dialog != nullptr && (page != nullptr || ++polls > 250)) dialog->reject();
        if (page == nullptr || std::exchange(seen, true)) return;
        ASSERT_NE(page->GetSelector(), nullptr);
        EXPECT_EQ(page->windowTitle(), "Properties of Heater");
        qx::TCtrlClientPropSelector& selector = *page->GetSelector();
        QTreeWidget& selected = *selector.GetSelectedPropTreeView();
        ASSERT_EQ(selected.topLevelItemCount(), 1);
        // A binding read from the file shows its property's description, as an added one does.
        EXPECT_EQ(selected.topLevelItem(0)->text(0), QStringLiteral("Heater power in % [HeaterPower]: Panel State"));
        EXPECT_EQ(Get<QComboBox>(*page, "ActiveValueComboBox").currentText(), "Enabled");
        EXPECT_EQ(Get<QComboBox>(*page, "PassiveValueComboBox").currentText(), "Disabled");
        // What the switch may take: never itself, never a property page.
        for (const auto& offered : selector.GetAvailableList()) {
            EXPECT_NE(offered->FPanelName, "HeaterSwitch");
            EXPECT_NE(offered->FPropertyName, "ShowPropertypage");
        }
        EXPECT_FALSE(selector.GetAvailableList().empty());
    });
    poll.start(20);
    QTest::mouseDClick(&heaterSwitch, Qt::LeftButton, {}, Centre(heaterSwitch));
    EXPECT_TRUE(seen);
}

TEST(BindingsDemo, PrintsTheUpdatesTheSwitchAndTheButtonCause)
{
    QString text;
    QString complaint;
    QTextStream out(&text);
    QTextStream err(&complaint);
    ASSERT_EQ(RunBindingsDemo({}, out, err), 0) << complaint.toStdString();
    out.flush();
    const QStringList expected = {
        "TDemoSwitchPanel HeaterSwitch (\"Heater\"):",
        "  HeaterPower->PanelEnable  active 1 \"Enabled\", passive 0 \"Disabled\"",
        "  OverTemperature->On  active 0 \"Off\", passive 1 \"On\"",
        "listening on HeaterPower, OverTemperature",
        "[1 property write] sender=\"Heater\" source=\"Heater power in %\" property=\"Panel State\" value=\"Disabled\"",
        "SysPropertyUpdated  panel HeaterPower, property PanelEnable = Disabled",
        "switch HeaterSwitch is now off",
        "SysPropertyUpdated  panel HeaterPower, property PanelEnable = Enabled",
        "press button AcknowledgeAlarm",
        "sender=\"Acknowledge alarm\" source=\"Over-temperature\" property=\"Lamp on\" value=\"Off\"",
        "SysPropertyUpdated  panel OverTemperature, property On = Off",
        "debug output  DoOnEventlinkSourceDestroied EventLink = ",
        "<Acknowledge alarm>: Source destroied, removing link to Over-temperature->On",
    };
    qsizetype from = 0;
    for (const QString& line : expected) {
        const qsizetype at = text.indexOf(line, from);
        ASSERT_GE(at, 0) << "missing or out of order: " << line.toStdString() << "\n" << text.toStdString();
        from = at + line.size();
    }
    EXPECT_EQ(text.count("SysPropertyUpdated"), 3);
    EXPECT_TRUE(text.contains("<Heater>: Source destroied, removing link to Heater power in %->PanelEnable"));
    EXPECT_FALSE(qx::DoDebug);
}

}  // namespace
