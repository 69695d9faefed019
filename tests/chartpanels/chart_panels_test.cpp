#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QListWidget>
#include <QPointer>
#include <QPrinter>
#include <QTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "qxbase/chartpanels/chart_panel_registration.h"
#include "qxbase/chartpanels/recorder_panel.h"
#include "qxbase/chartpanels/scope_panel.h"
#include "qxbase/chartpanels/amplitude_spectrum_panel.h"
#include "qxbase/control/event_link.h"
#include "qxbase/framework/host_services.h"
#include "qxbase/panels/channel_visibilities_dialog.h"
#include "qxbase/panels/histo_ui.h"
#include "qxbase/panels/panel_tab_page.h"
#include "qxbase/panels/worksheet_file.h"
#include "qxbase/sources/simulated_source.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

namespace {

// A page with a simulated source "Sim" sampling at 1000 Hz in blocks of 250: a 2 V sine of 10 Hz,
// a 1 V sine of 50 Hz and a 3 V square of 5 Hz.
struct TBench {
    TBench()
    {
        RegisterSimulatedSource();
        RegisterChartPanels();
        Page.setObjectName("Page");
        Source = new TKSSimulatedSource(&Page);
        Source->setObjectName("Sim");
        Source->SetSampleRate(1000);
        Source->SetBlockSize(250);
        Source->SetWaveformLines({"sine 2 10 0 0", "sine 1 50 0 0", "square 3 5 0 0"});
    }
    template <class T>
    T& Add(const QString& Channels)
    {
        auto* panel = new T(&Page);
        panel->resize(500, 320);
        panel->SetChannels(Channels);
        panel->SetSourceName("Sim");
        return *panel;
    }
    void Steps(int Count)
    {
        for (int i = 0; i < Count; ++i) Source->Step();
    }

    TKSPanelTabPage Page;
    TKSSimulatedSource* Source = nullptr;
};

double Sine(double Amplitude, double Hz, int Sample)
{
    return Amplitude * std::sin(2 * std::numbers::pi * Hz * Sample / 1000.0);
}

const TQXChartCurve& Curve(const TKSChartPanel& Panel, int Index)
{
    return *Panel.GetChart().GetCurve(Index);
}

Variant BusValue(TQXControlSource& Source, const QString& Name)
{
    TQXPropertyHandle handle = 0;
    Variant value;
    if (Source.GetPropertyHandle(Name, handle)) Source.GetPropertyValue(handle, value);
    return value;
}

bool SetBus(TQXControlSource& Source, const QString& Name, const Variant& Value)
{
    TQXPropertyHandle handle = 0;
    return Source.GetPropertyHandle(Name, handle) && Source.SetPropertyValue(nullptr, handle, Value);
}

}  // namespace

TEST(RecorderPanel, KeepsTheLastSecondsAndScrollsThroughThemWhileHeld)
{
    TBench bench;
    auto& recorder = bench.Add<TKSRecorderPanel>("0 2");
    // A span beyond the kept time raises it, and the bus hears of both.
    TQXEventLink listener;
    int updates = 0;
    listener.OnValueUpdated = [&](TQXEventLink*, std::uint32_t) { ++updates; };
    listener.SetEventSource(&recorder);
    recorder.SetTimeSpan(100.0);
    EXPECT_EQ(updates, 2);
    recorder.SetTimeSpan(1.0);
    recorder.SetKeptTime(2.0);
    ASSERT_EQ(recorder.GetChart().GetCurveCount(), 2);
    bench.Steps(16);  // 4 s: trimmed in steps, never below 2 s kept
    const TQXChartCurve& sine = Curve(recorder, 0);
    EXPECT_GE(sine.Samples.size(), 2000U);
    EXPECT_LE(sine.Samples.size(), 3000U);
    const int first = static_cast<int>(std::lround(sine.X0 * 1000));
    EXPECT_EQ(first + static_cast<int>(sine.Samples.size()), 4000);
    EXPECT_NEAR(sine.Samples[17], Sine(2, 10, first + 17), 1e-12);
    EXPECT_DOUBLE_EQ(recorder.GetChart().GetXAxis().Max, 4.0);
    EXPECT_DOUBLE_EQ(recorder.GetChart().GetXAxis().Min, 3.0);

    // Held, it goes on recording but the view stays; scrolling stops at both ends.
    recorder.SetHold(true);
    bench.Steps(1);
    EXPECT_DOUBLE_EQ(recorder.GetChart().GetXAxis().Max, 4.0);
    EXPECT_DOUBLE_EQ(recorder.GetKeptEnd(), 4.25);
    int back = 0;
    while (recorder.ScrollBackward()) ++back;
    EXPECT_GE(back, 2);
    EXPECT_NEAR(recorder.GetChart().GetXAxis().Min, recorder.GetKeptStart(), 1e-9);
    while (recorder.ScrollForward()) {}
    EXPECT_DOUBLE_EQ(recorder.GetChart().GetXAxis().Max, 4.25);
    recorder.SetHold(false);
    bench.Steps(1);
    EXPECT_DOUBLE_EQ(recorder.GetChart().GetXAxis().Max, 4.5);

    // A source that starts over does not join its new samples to the old ones.
    bench.Source->SetSampleRate(500);
    bench.Steps(1);
    EXPECT_EQ(Curve(recorder, 0).Samples.size(), 250U);
    EXPECT_DOUBLE_EQ(Curve(recorder, 0).DX, 1.0 / 500);
}

TEST(ScopePanel, CapturesAroundTheTriggerAndHoldsASingleShot)
{
    TBench bench;
    auto& scope = bench.Add<TKSScopePanel>("0 1");
    scope.SetTriggerBufferSize(200);
    scope.SetPreTrigger(50);
    scope.SetTriggerLevel(1.0);
    scope.SetTriggerChannel(0);
    bench.Steps(2);
    ASSERT_GT(scope.GetCaptureCount(), 0);
    const TQXChartCurve& sine = Curve(scope, 0);
    ASSERT_EQ(sine.Samples.size(), 200U);
    EXPECT_DOUBLE_EQ(sine.X0, -0.05);
    EXPECT_LT(sine.Samples[49], 1.0);  // the trigger sample sits at x = 0
    EXPECT_GE(sine.Samples[50], 1.0);
    EXPECT_EQ(Curve(scope, 1).Samples.size(), 200U);

    scope.SetTriggerType(kttNegative);
    bench.Steps(2);  // the pre-trigger fills again first
    EXPECT_GT(Curve(scope, 0).Samples[49], 1.0);
    EXPECT_LE(Curve(scope, 0).Samples[50], 1.0);

    scope.SetTriggerSingleShot(true);
    scope.RearmTrigger();
    bench.Steps(1);
    const int shots = scope.GetCaptureCount();
    bench.Steps(3);
    EXPECT_EQ(scope.GetCaptureCount(), shots);
    EXPECT_EQ(scope.GetTriggerStateText(), "Single shot done");
    ASSERT_TRUE(SetBus(scope, "RearmTrigger", Variant("True")));
    bench.Steps(2);
    EXPECT_EQ(scope.GetCaptureCount(), shots + 1);

    // Off runs free: every full buffer is shown, whatever the level.
    scope.SetTriggerType(kttOff);
    scope.SetTriggerSingleShot(false);
    scope.SetTriggerLevel(100.0);
    const int before = scope.GetCaptureCount();
    bench.Steps(4);
    EXPECT_EQ(scope.GetCaptureCount(), before + 4);
    EXPECT_EQ(scope.GetTriggerStateText(), "Free run");
}

TEST(SpectrumPanel, ShowsEachSineAtItsFrequencyOnEveryScale)
{
    TBench bench;
    auto& spectrum = bench.Add<TKSSpectrumPanel>("0 1");
    spectrum.SetFFTBufferSize(1000);  // rounded up
    EXPECT_EQ(spectrum.GetFFTBufferSize(), 1024);
    bench.Steps(4);
    EXPECT_EQ(spectrum.GetSpectrumCount(), 0);
    bench.Steps(1);
    ASSERT_EQ(spectrum.GetSpectrumCount(), 1);
    for (const auto& [curve, hz] : {std::pair{0, 10.0}, std::pair{1, 50.0}}) {
        const TQXChartCurve& c = Curve(spectrum, curve);
        const auto peak = std::max_element(c.Samples.begin(), c.Samples.end()) - c.Samples.begin();
        EXPECT_NEAR(c.X0 + c.DX * static_cast<double>(peak), hz, 1000.0 / 1024) << curve;
    }
    EXPECT_DOUBLE_EQ(spectrum.GetChart().GetXAxis().Max, 500.0);
    EXPECT_EQ(spectrum.GetBufferForSave().front().Kind, dkFrequency);
    ASSERT_TRUE(SetBus(spectrum, "YAxisScale", Variant("dB")));
    EXPECT_EQ(spectrum.GetChart().GetYAxis(1)->Scale, yasDB);
    EXPECT_LT(spectrum.GetChart().GetYAxis(1)->Min, 0.0);  // refitted to dB values
}

TEST(ChartPanel, ChannelsOfDifferentKindsAreRefused)
{
    TBench bench;
    auto& recorder = bench.Add<TKSRecorderPanel>("0 1");
    TQXMSExChannelInformation info = *bench.Source->GetChannelList(1);
    EXPECT_TRUE(recorder.GetErrorText().isEmpty());
    info.Flags = TQXMSChannelFlags{msexFFTArrayData};
    bench.Source->UpdateChannelInformation(1, info);
    recorder.GetLink().UpdateSettingsEx();
    EXPECT_EQ(recorder.GetErrorText(), "Error: the channels contain different types of data.");
    bench.Steps(1);
    EXPECT_TRUE(Curve(recorder, 0).Samples.empty());
}

// Every common property goes through the bus, into the file and back.
TEST(ChartPanel, PropertiesTravelThroughTheBusAndTheWorksheet)
{
    TBench bench;
    auto& scope = bench.Add<TKSScopePanel>("1 0");
    scope.setObjectName("Scope");
    const std::vector<std::pair<QString, Variant>> writes = {
        {"LegendPosition", Variant("Vertical")}, {"DisplayStyle", Variant(std::int32_t{1})},
        {"XAxisScale", Variant("logarithmic")}, {"AutoScale", Variant(true)},
        {"BandColor", Variant(std::int32_t{0x102030})}, {"BackgroundColor", Variant(std::int32_t{0x405060})},
        {"CursorPanelPosition", Variant("Left")}, {"ShowCursor", Variant(true)},
        {"SaveMethod", Variant("Use name")}, {"FileName", Variant("/tmp/run")},
        {"UseEngineeringUnits", Variant(false)}, {"CursorDecimals", Variant(std::int32_t{5})},
        {"XAxisMin", Variant(-0.5)}, {"XAxisMax", Variant(0.25)}, {"YAxisVisible", Variant(false)},
        {"ActiveBand", Variant(std::int32_t{1})}, {"TriggerType", Variant("Off")},
        {"TriggerBufferSize", Variant(std::int32_t{300})}, {"TriggerLevel", Variant(0.75)},
        {"TriggerSingleShot", Variant(true)}, {"TriggerChannel", Variant(std::int32_t{1})},
        {"PreTrigger", Variant(std::int32_t{30})}, {"ShowTriggerState", Variant(false)},
    };
    for (const auto& [name, value] : writes) ASSERT_TRUE(SetBus(scope, name, value)) << name.toStdString();
    ASSERT_TRUE(SetBus(scope, "YAxisOffsetActiveBand", Variant(-4.0)));
    ASSERT_TRUE(SetBus(scope, "YAxisScaleActiveBand", Variant(8.0)));
    ASSERT_TRUE(SetBus(scope, "ChangeXAxis", Variant(std::int32_t{0})));
    EXPECT_DOUBLE_EQ(scope.GetChart().GetXAxis().Min, -0.5);
    EXPECT_DOUBLE_EQ(scope.GetChart().GetYAxis(1)->Max, 4.0);
    EXPECT_EQ(BusValue(scope, "CursorPanelPosition").ToInteger(), cppLeft);
    EXPECT_FALSE(SetBus(scope, "NoSuchProperty", Variant(1.0)));
    // A choice that is not one is ignored.
    ASSERT_TRUE(SetBus(scope, "LegendPosition", Variant("Diagonal")));
    EXPECT_EQ(scope.GetLegendPosition(), lpVertical);

    const QByteArray saved = WriteWorksheet({&bench.Page});
    const std::vector<std::unique_ptr<TKSPanelTabPage>> pages = ReadWorksheet(saved, "w.qxw");
    ASSERT_EQ(pages.size(), 1U);
    EXPECT_EQ(QString::fromUtf8(WriteWorksheet({pages[0].get()})), QString::fromUtf8(saved));
    auto* read = pages[0]->findChild<TKSScopePanel*>("Scope");
    ASSERT_NE(read, nullptr);
    EXPECT_NE(read->GetLink().GetSource(), nullptr);
    for (const auto& [name, value] : writes)
        EXPECT_EQ(BusValue(*read, name).ToString(), BusValue(scope, name).ToString()) << name.toStdString();
    EXPECT_DOUBLE_EQ(read->GetChart().GetYAxis(1)->Min, -4.0);
    EXPECT_EQ(read->GetLink().GetMSChannelIndex(0), 0);
}

TEST(ChartPanel, SavedBufferLoadsBackUnchangedAndPrintsToPdf)
{
    TBench bench;
    auto& recorder = bench.Add<TKSRecorderPanel>("0 1 2");
    bench.Steps(3);
    QTemporaryDir dir;
    recorder.SetSaveMethod(smUseName);
    recorder.SetFileName(dir.filePath("run"));
    const QString path = recorder.SaveBuffer();
    ASSERT_EQ(path, dir.filePath("run.dcf"));

    auto& other = bench.Add<TKSRecorderPanel>("");
    other.LoadBuffer(path);
    ASSERT_EQ(other.GetChart().GetCurveCount(), 3);
    for (int c = 0; c < 3; ++c) {
        EXPECT_EQ(Curve(other, c).Samples, Curve(recorder, c).Samples) << c;
        EXPECT_EQ(Curve(other, c).Name, Curve(recorder, c).Name);
        EXPECT_DOUBLE_EQ(Curve(other, c).X0, Curve(recorder, c).X0);
    }
    EXPECT_TRUE(other.GetHold());
    bench.Steps(1);  // a loaded file is not overwritten by live data
    EXPECT_EQ(Curve(other, 0).Samples.size(), Curve(recorder, 0).Samples.size() - 250);

    QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(dir.filePath("chart.pdf"));
    recorder.PrintTo(printer);
    QFile pdf(dir.filePath("chart.pdf"));
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    EXPECT_TRUE(pdf.read(4) == "%PDF");
    EXPECT_GT(pdf.size(), 1000);
}

// The dialog's event loop may remove the panel (a closed worksheet, a handler's deleteLater).
TEST(ChartPanel, RemovedWhileItsDialogIsOpen)
{
    for (void (TKSChartPanel::*show)() : {&TKSChartPanel::ShowAxisSetup, &TKSChartPanel::ShowChannelVisibilities}) {
        TBench bench;
        QPointer<TKSRecorderPanel> recorder = &bench.Add<TKSRecorderPanel>("0 1");
        QTimer::singleShot(0, [&] {
            recorder->deleteLater();
            QTimer::singleShot(0, [] { qobject_cast<QDialog*>(QApplication::activeModalWidget())->accept(); });
        });
        (recorder->*show)();
        EXPECT_TRUE(recorder.isNull());
    }
}

// "Change X-Axis" holds the x axis until "Reset X-Axis", whatever moves the panel's own axis.
TEST(ChartPanel, ChangedXAxisStaysOverNewSizesAndChannels)
{
    TBench bench;
    auto& recorder = bench.Add<TKSRecorderPanel>("0");
    auto& scope = bench.Add<TKSScopePanel>("0");
    const auto panels = {static_cast<TKSChartPanel*>(&recorder), static_cast<TKSChartPanel*>(&scope)};
    for (TKSChartPanel* panel : panels) {
        panel->SetXAxisMin(0.25);
        panel->SetXAxisMax(0.5);
        panel->ChangeXAxis();
    }
    recorder.SetTimeSpan(3.0);
    scope.SetTriggerBufferSize(300);
    bench.Source->SetSampleRate(2000);  // the curves are rebuilt
    bench.Steps(2);
    for (const TKSChartPanel* panel : panels)
        EXPECT_EQ(std::pair(panel->GetChart().GetXAxis().Min, panel->GetChart().GetXAxis().Max), std::pair(0.25, 0.5));
}

TEST(ChartPanel, CurvesHiddenInTheDialogStayHiddenWhenTheChannelsAreRebuilt)
{
    TBench bench;
    auto& recorder = bench.Add<TKSRecorderPanel>("0 1 2");
    QTimer::singleShot(0, [] {
        auto* dialog = qobject_cast<TFChannelVisibilities*>(QApplication::activeModalWidget());
        dialog->CLBVisibilities()->item(1)->setCheckState(Qt::Unchecked);
        dialog->accept();
    });
    recorder.ShowChannelVisibilities();
    bench.Source->SetSampleRate(2000);
    EXPECT_EQ(recorder.GetHiddenCurves(), "1");
}

TEST(ChartPanel, DeletedByAListenerDuringABusWrite)
{
    TBench bench;
    QPointer<TKSScopePanel> scope = &bench.Add<TKSScopePanel>("0");
    TQXEventLink listener;
    listener.OnValueUpdated = [&](TQXEventLink*, std::uint32_t) { delete scope.data(); };
    listener.SetEventSource(scope);
    // Below the pre-trigger of 100, which follows and is announced while the write runs.
    EXPECT_TRUE(SetBus(*scope, "TriggerBufferSize", Variant(std::int32_t{50})));
    EXPECT_TRUE(scope.isNull());
}
