// Cost of one chart frame of 8 curves of 1,000,000 samples each, beside a plain minimum and
// maximum pass over the same 8M samples in the same run; of an axis's ticks and labels; and of
// the cursor read-out's SetValues.
#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>
#include <cmath>
#include <limits>
#include <memory>
#include <random>

#include "qxbase/chart/chart_surface.h"
#include "qxbase/chart/chart_ticks.h"
#include "qxbase/panels/histo_cursor_panel.h"

#include "bench/application_main.h"

namespace {

constexpr int CurveCount = 8;
constexpr std::size_t SamplesPerCurve = 1'000'000;

// Built once, so every benchmark reads the same memory.
qx::TQXChartSurface& Surface()
{
    static std::unique_ptr<qx::TQXChartSurface> surface = [] {
        auto chart = std::make_unique<qx::TQXChartSurface>();
        const qx::TColor colors[CurveCount] = {qx::clLime, qx::clYellow, qx::clAqua,  qx::clFuchsia,
                                               qx::clRed,  qx::clWhite,  qx::clSilver, qx::clOlive};
        std::mt19937 rng(3);
        std::normal_distribution<double> noise(0.0, 0.05);
        for (int c = 0; c < CurveCount; ++c) {
            const int index = chart->AddCurve(QStringLiteral("Channel %1").arg(c + 1), QStringLiteral("V"), colors[c], 0);
            qx::TQXChartCurve& curve = *chart->GetCurve(index);
            curve.DX = 1e-4;
            curve.Samples.resize(SamplesPerCurve);
            for (std::size_t i = 0; i < SamplesPerCurve; ++i)
                curve.Samples[i] = std::sin(static_cast<double>(i) * 1e-4 * (c + 1)) + noise(rng);
        }
        chart->GetYAxis(0)->Title = QStringLiteral("Voltage [V]");
        chart->GetXAxis().Title = QStringLiteral("Time [s]");
        chart->SetCursorsVisible(true);
        chart->CurvesChanged();
        chart->AutoscaleX();
        chart->AutoscaleBand(0);
        return chart;
    }();
    return *surface;
}

// The reference: the least any drawing of every sample must do.
void BM_PlainMinMax8M(benchmark::State& state)
{
    const qx::TQXChartSurface& chart = Surface();
    for (auto _ : state) {
        double lo = std::numeric_limits<double>::infinity();
        double hi = -lo;
        for (int c = 0; c < CurveCount; ++c) {
            for (double v : chart.GetCurve(c)->Samples) {
                lo = std::min(lo, v);
                hi = std::max(hi, v);
            }
        }
        benchmark::DoNotOptimize(lo);
        benchmark::DoNotOptimize(hi);
    }
    state.SetItemsProcessed(state.iterations() * CurveCount * static_cast<std::int64_t>(SamplesPerCurve));
}
BENCHMARK(BM_PlainMinMax8M)->Unit(benchmark::kMillisecond);

void BM_ChartFrame8M(benchmark::State& state)
{
    const qx::TQXChartSurface& chart = Surface();
    QImage image(1200, 700, QImage::Format_RGB32);
    for (auto _ : state) {
        QPainter painter(&image);
        chart.Render(painter, image.rect());
    }
    state.SetItemsProcessed(state.iterations() * CurveCount * static_cast<std::int64_t>(SamplesPerCurve));
}
BENCHMARK(BM_ChartFrame8M)->Unit(benchmark::kMillisecond);

void BM_AxisTicksAndLabels(benchmark::State& state)
{
    std::vector<double> ticks;
    QStringList labels;
    double offset = 0.0;
    for (auto _ : state) {
        // A moving range, as a scrolling recorder's x axis has.
        offset += 0.37;
        qx::ComputeTicks(qx::tkLinear, -0.0021 + offset, 0.0083 + offset, 1100, 60, ticks);
        qx::FormatTickLabels(qx::tkLinear, ticks, {}, labels);
        benchmark::DoNotOptimize(labels);
    }
}
BENCHMARK(BM_AxisTicksAndLabels);

// The cursor read-out's work on every cursor move: seven numbers formatted and set on labels.
void BM_CursorPanelSetValues(benchmark::State& state)
{
    qx::TKSHistoCursorPanel panel;
    double x = 0.0;
    for (auto _ : state) {
        x += 0.001;
        panel.SetValues(x, 1.234567, -3, 0, x + 0.25, -0.98765, -3, -3, qx::xasLinear, QStringLiteral("V"));
    }
}
BENCHMARK(BM_CursorPanelSetValues);

}  // namespace

int main(int argc, char** argv)
{
    return RunBenchmarksInApplication(argc, argv);
}
