#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>
#include <cmath>
#include <numbers>
#include <tuple>

#include "apps/qxsheet/data_panels.h"
#include "apps/qxsheet/datapath_demo.h"
#include "apps/qxsheet/worksheet_app.h"
#include "qxbase/chartpanels/recorder_panel.h"
#include "qxbase/panels/histo_ui.h"
#include "qxbase/framework/host_services.h"
#include "qxbase/panels/panel_tab_page.h"
#include "qxbase/sources/simulated_source.h"
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

// The bundled sines: 2 V at 10 Hz and 1 V at 3 Hz, each channel sampled at 1024 Hz in blocks of
// 1024.
double Sine(int k, double Amplitude = 2.0, double Hz = 10.0)
{
    return Amplitude * std::sin(2.0 * std::numbers::pi * Hz * k / 1024.0);
}

double Captured(const QString& text, const QString& pattern)
{
    const QRegularExpressionMatch match = QRegularExpression(pattern).match(text);
    return match.hasMatch() ? match.captured(1).toDouble() : std::nan("");
}

class Datapath : public ::testing::Test {
protected:
    void TearDown() override { qx::RestoreHostServices(); }
    QTemporaryDir FDir;
};

// What each consumer and math channel prints is checked against the waveform computed here, or
// (the spectra) against the sine settings printed beside them, not against the library.
TEST_F(Datapath, PrintsWhatEachConsumerAndMathChannelTookPerCycle)
{
    QString text;
    QString complaint;
    QTextStream out(&text);
    QTextStream err(&complaint);
    ASSERT_EQ(RunDatapathDemo({}, 3, out, err), 0) << complaint.toStdString();
    out.flush();

    double squares = 0.0;
    for (int k = 2048; k < 3072; ++k) squares += Sine(k) * Sine(k);
    const QStringList cycles = text.split("\ncycle ");
    ASSERT_EQ(cycles.size(), 4) << text.toStdString();
    const QString third = cycles[3].left(cycles[3].indexOf("\nmath channels"));
    EXPECT_NEAR(Captured(third, "RMS of AI 1 = (\\S+) V"), std::sqrt(squares / 1024.0), 1e-5);
    EXPECT_NEAR(Captured(third, "RMS of AI 1 .* at t = (\\S+) s"), 2.0, 1e-9);
    EXPECT_TRUE(third.contains("TKSRecorderPanel Recorder: 3 curves, 3072 samples kept each (t = 0 .. 3 s), view 0 .. 5 s"))
        << third.toStdString();
    EXPECT_TRUE(third.contains(QRegularExpression("TKSScopePanel Scope: capture \\d+: 2 curves of 200 samples, trigger at "
                                                  "x = 0 \\(50 samples in\\)")))
        << third.toStdString();
    // Each spectrum peaks at its sine's frequency with its amplitude.
    for (const auto& [channel, hz, amplitude] : {std::tuple{1, 10.0, 2.0}, std::tuple{2, 3.0, 1.0}, std::tuple{3, 25.0, 0.5}}) {
        const QString pattern = QStringLiteral("AI %1 peak at (\\S+) Hz, (\\S+) V").arg(channel);
        EXPECT_NEAR(Captured(third, pattern), hz, 1e-9) << third.toStdString();
        EXPECT_NEAR(Captured(third, "AI " + QString::number(channel) + " peak at \\S+ Hz, (\\S+) V"), amplitude, 1e-4);
    }

    // The scope's first cursor stands at x = 0, on the trigger sample: the first at or above 1 V
    // after one below.
    const QString readout = text.mid(text.indexOf("\ncursor read-outs"));
    const double y = Captured(readout, "Scope \\(AI 1\\): Cursor 1: x = \\S+ \\S*, y = (\\S+)");
    EXPECT_GE(y, 1.0) << readout.toStdString();
    EXPECT_LT(y, 1.0 + 2.0 * 2.0 * std::numbers::pi * 10.0 / 1024.0);
    EXPECT_TRUE(readout.contains(QRegularExpression("Recorder \\(AI 1\\): Cursor 1: x = 1.25\\d* , y = .*Hz")))
        << readout.toStdString();

    // The math channels of the last cycle, samples 2048..3071: the sum's and the scaling's second
    // samples.
    const QString math = text.mid(text.indexOf("\nmath channels of TKSMathChannelProcessor Math"));
    EXPECT_NEAR(Captured(math, "Sum \\(.*second (\\S+) V"), Sine(2049) + Sine(2049, 1.0, 3.0), 1e-5);
    EXPECT_NEAR(Captured(math, "Percent \\(.*second (\\S+) %"), (Sine(2049, 1.0, 3.0) + 1.0) * 50.0, 1e-4);
    EXPECT_NEAR(Captured(math, "RMS \\(RMS of buffer\\): = (\\S+) V"), std::sqrt(squares / 1024.0), 1e-5);
    for (int channel = 1; channel <= 3; ++channel) {
        const QRegularExpressionMatch peak =
            QRegularExpression(QStringLiteral("Spectrum AI %1 \\(FFT\\): peak at (\\S+) Hz, amplitude (\\S+); "
                                              "the input is a sine of (\\S+) Hz, amplitude (\\S+)\n").arg(channel))
                .match(math);
        ASSERT_TRUE(peak.hasMatch()) << math.toStdString();
        EXPECT_NEAR(peak.captured(1).toDouble(), peak.captured(3).toDouble(), 1e-9) << channel;
        EXPECT_NEAR(peak.captured(2).toDouble(), peak.captured(4).toDouble(), 1e-4) << channel;
    }

    const QString overview = text.mid(text.indexOf("\nconnections"));
    EXPECT_TRUE(overview.contains("data sources: 3\n")) << overview.toStdString();
    EXPECT_TRUE(overview.contains("  \"Math channels\" (TKSMathChannelProcessor Math)\n"
                                  "    -> \"RMS math channel\" (TDemoMeterPanel MathRms)\n"));
    EXPECT_TRUE(overview.contains("  \"Simulated source\" (TKSSimulatedSource Simulator)\n"
                                  "    -> \"Math channels\" (TKSMathChannelProcessor Math)\n"
                                  "    -> \"RMS of the 2 V sine\" (TDemoMeterPanel SineRms)\n"
                                  "         V [sine];  {-2,2}\n"))
        << overview.toStdString();
}

TEST_F(Datapath, AWorksheetWithoutASimulatedSourceIsRefused)
{
    std::unique_ptr<TWorksheetWindow> window = OpenWorksheetWindow({});
    const QString path = FDir.filePath("plain.qxw");
    delete window->GetPages().back();
    ASSERT_TRUE(window->SaveTo(path));
    QString text;
    QString complaint;
    QTextStream out(&text);
    QTextStream err(&complaint);
    EXPECT_EQ(RunDatapathDemo(path, 1, out, err), 1);
    err.flush();
    EXPECT_EQ(complaint, "qxsheet: " + path + " has no simulated source to step\n");
}

// Panels find their sources by name after load; a name that is nowhere leaves a panel detached,
// and a panel that goes lets go of its source.
TEST_F(Datapath, LinksAreAttachedAfterLoadAndLetGoWhenThePanelsGo)
{
    std::unique_ptr<TWorksheetWindow> window = OpenWorksheetWindow({});
    auto& source = Get<qx::TKSSimulatedSource>(*window, "Simulator");
    auto& meter = Get<TDemoMeterPanel>(*window, "SineRms");
    auto& recorder = Get<qx::TKSRecorderPanel>(*window, "Recorder");
    EXPECT_EQ(recorder.GetLink().GetMSChannelIndex(2), 4);
    EXPECT_EQ(source.GetLinkCount(), 6);
    source.Step();
    EXPECT_DOUBLE_EQ(recorder.GetChart().GetCurve(0)->Samples[25], Sine(25));

    recorder.SetSourceName("Nowhere");
    EXPECT_EQ(recorder.GetLink().GetSource(), nullptr);
    EXPECT_EQ(source.GetLinkCount(), 5);
    delete &meter;
    EXPECT_EQ(source.GetLinkCount(), 4);
}

TEST_F(Datapath, TheWindowRunsTheSourceOnlyWhenShownOutsideDesignMode)
{
    std::unique_ptr<TWorksheetWindow> window = OpenWorksheetWindow({});
    auto& source = Get<qx::TKSSimulatedSource>(*window, "Simulator");
    EXPECT_FALSE(source.IsRunning());
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    EXPECT_TRUE(source.IsRunning());
    window->SetDesignMode(true);
    EXPECT_FALSE(source.IsRunning());
    window->SetDesignMode(false);
    EXPECT_TRUE(source.IsRunning());
    window->hide();
    EXPECT_FALSE(source.IsRunning());
}

}  // namespace
