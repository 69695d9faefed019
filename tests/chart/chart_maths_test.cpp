#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <random>

#include "qxbase/chart/chart_cursor.h"
#include "qxbase/chart/chart_decimation.h"
#include "qxbase/chart/chart_mapping.h"
#include "qxbase/chart/chart_ticks.h"
#include "qxbase/measure/channel_types.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Inf = std::numeric_limits<double>::infinity();

struct TickRow {
    const char* Name;
    TQXTickKind Kind;
    double Min, Max, Length, Spacing;
    // Empty: only the general rules are checked.
    std::vector<double> Ticks;
    QStringList Labels;
};

}  // namespace

TEST(ChartTicks, RoundValuesWithinTheRangeAndLabelsWithOnePrefixPerAxis)
{
    const TickRow rows[] = {
        {"plain", tkLinear, 0, 10, 500, 50, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, {}},
        {"milli", tkLinear, 0, 0.002, 200, 50, {0, 5e-4, 1e-3, 1.5e-3, 2e-3}, {"0.0 m", "0.5 m", "1.0 m", "1.5 m", "2.0 m"}},
        {"negative, reversed", tkLinear, -3, -7, 400, 100, {-7, -6, -5, -4, -3}, {"-7", "-6", "-5", "-4", "-3"}},
        {"micro around zero", tkLinear, -6e-4, 6e-4, 300, 100, {-5e-4, 0, 5e-4}, {"-500 µ", "0 µ", "500 µ"}},
        {"pico", tkLinear, 1e-12, 3e-12, 300, 100, {1e-12, 2e-12, 3e-12}, {"1 p", "2 p", "3 p"}},
        {"giga", tkLinear, 0, 4e9, 400, 100, {0, 1e9, 2e9, 3e9, 4e9}, {"0 G", "1 G", "2 G", "3 G", "4 G"}},
        {"min equals max", tkLinear, 5, 5, 400, 50, {5}, {"5"}},
        {"too narrow for doubles", tkLinear, 1e6, 1e6 + 1e-9, 400, 50, {1e6 + 5e-10}, {}},
        {"whole double range", tkLinear, -DBL_MAX, DBL_MAX, 400, 50, {}, {}},
        {"no room", tkLinear, 0, 1, 0, 50, {0, 1}, {}},
        {"short strip: 3.3 spacings fit", tkLinear, 0.2, 0.85, 100, 30, {0.2, 0.4, 0.6, 0.8}, {}},
        {"decades with 2 and 5", tkLogarithmic, 1, 1000, 300, 30, {1, 2, 5, 10, 20, 50, 100, 200, 500, 1000},
         {"1", "2", "5", "10", "20", "50", "100", "200", "500", "1 k"}},
        {"every other decade", tkLogarithmic, 1e-6, 1e6, 300, 30, {1e-6, 1e-4, 1e-2, 1, 1e2, 1e4, 1e6}, {}},
        {"inside one decade", tkLogarithmic, 2, 8, 300, 100, {2, 4, 6, 8}, {"2", "4", "6", "8"}},
        {"log, non-positive limits", tkLogarithmic, -5, 0, 300, 30, {1, 2, 5, 10}, {}},
        {"minutes", tkDateTime, 0, 3600, 600, 60, {0, 600, 1200, 1800, 2400, 3000, 3600}, {}},
        {"sub-second", tkDateTime, 0, 0.5, 500, 100, {0, 0.1, 0.2, 0.3, 0.4, 0.5}, {}},
        {"weeks", tkDateTime, 0, 86400 * 28, 400, 100, {0, 604800, 604800 * 2, 604800 * 3, 604800 * 4}, {}},
    };
    for (const TickRow& row : rows) {
        SCOPED_TRACE(row.Name);
        std::vector<double> ticks{42.0};  // stale content must go
        ComputeTicks(row.Kind, row.Min, row.Max, row.Length, row.Spacing, ticks);
        ASSERT_FALSE(ticks.empty());
        for (std::size_t i = 0; i < ticks.size(); ++i) {
            ASSERT_TRUE(std::isfinite(ticks[i]));
            if (i > 0) {
                EXPECT_LT(ticks[i - 1], ticks[i]);
            }
        }
        if (!row.Ticks.empty()) {
            ASSERT_EQ(ticks.size(), row.Ticks.size());
            for (std::size_t i = 0; i < ticks.size(); ++i) EXPECT_NEAR(ticks[i], row.Ticks[i], std::fabs(row.Ticks[i]) * 1e-12);
        }
        if (row.Kind == tkLinear && row.Length > 0) {
            EXPECT_LE(ticks.size(), row.Length / row.Spacing + 1);
        }
        QStringList labels;
        FormatTickLabels(row.Kind, ticks, QStringLiteral("hh:mm"), labels);
        EXPECT_EQ(labels.size(), static_cast<qsizetype>(ticks.size()));
        if (!row.Labels.isEmpty()) {
            EXPECT_EQ(labels, row.Labels);
        }
    }
    std::vector<double> ticks;
    ComputeTicks(tkLinear, NaN, 1, 100, 10, ticks);
    EXPECT_TRUE(ticks.empty());
    QStringList labels;
    FormatTickLabels(tkDateTime, {0, 90061.5, NaN}, QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz"), labels);
    EXPECT_EQ(labels, QStringList({"1970-01-01 00:00:00.000", "1970-01-02 01:01:01.500", ""}));
}

TEST(ChartMapping, RoundTripsAndNeverGivesNaNForBadLimits)
{
    struct Row {
        TQXAxisTransform Transform;
        double Min, Max, Value, Pixel;
    };
    // Axis from pixel 100 (Min) to 0 (Max), as a y axis runs.
    const Row rows[] = {
        {atLinear, 0, 10, 2.5, 75},     {atLinear, 10, 0, 2.5, 25},        {atLogarithmic, 1, 1000, 10, 100 - 100 / 3.0},
        {atDB, -60, 0, 0.01, 100 - 100 / 3.0}, {atDB, -60, 0, -0.01, 100 - 100 / 3.0},
        {atLogarithmic, 1000, 1, 100, 100 - 100 / 3.0},
    };
    for (const Row& row : rows) {
        const TQXAxisMapping map = MakeAxisMapping(row.Transform, row.Min, row.Max, 100, 0);
        EXPECT_NEAR(map.ToPixel(row.Value), row.Pixel, 1e-9) << row.Transform << " " << row.Value;
        EXPECT_NEAR(map.FromPixel(map.ToPixel(row.Value)), std::fabs(row.Value), 1e-12);
    }
    EXPECT_DOUBLE_EQ(MakeAxisMapping(atDB, -60, 0, 100, 0).AxisUnitToPixel(-30), 50);
    EXPECT_EQ(MakeAxisMapping(atLinear, 3, 3, 100, 0).ToPixel(7), 50) << "degenerate axis: the middle";
    EXPECT_EQ(MakeAxisMapping(atLogarithmic, 0, -3, 100, 0).ToPixel(1), 100) << "repaired limits do not mirror";

    const double badLimits[][2] = {{0, 0}, {-1, 10}, {-5, -1}, {NaN, 5}, {0, Inf}, {-DBL_MAX, DBL_MAX}};
    for (TQXAxisTransform transform : {atLinear, atLogarithmic, atDB}) {
        for (const auto& limits : badLimits) {
            const TQXAxisMapping map = MakeAxisMapping(transform, limits[0], limits[1], 500, 0);
            for (double value : {0.0, -1.0, 1e-300, 1e300, -Inf, Inf, DBL_MAX}) {
                const double pixel = map.ToPixel(value);
                EXPECT_TRUE(std::isfinite(pixel)) << transform << " " << limits[0] << ".." << limits[1] << " " << value;
                EXPECT_FALSE(std::isnan(map.FromPixel(pixel)));
            }
        }
    }
    double lo = -1, hi = 100;
    SaneLogLimits(lo, hi);
    EXPECT_DOUBLE_EQ(lo, 1e-4);
    EXPECT_EQ(hi, 100);
}

// A naive pass: each sample to the column its pixel rounds to.
TEST(ChartDecimation, MatchesANaivePerColumnPassOnRandomDataWithGaps)
{
    std::mt19937 rng(7);
    std::normal_distribution<double> noise(0.0, 1.0);
    std::vector<double> samples(20000);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const auto pick = rng() % 40;
        samples[i] = pick == 0 ? NaN : pick == 1 ? NoValueMarker : pick == 2 ? -Inf : noise(rng);
    }
    std::fill(samples.begin() + 5000, samples.begin() + 5400, NaN);  // whole columns undrawable
    struct Row {
        const char* Name;
        TQXAxisTransform Transform;
        double Min, Max, X0, DX;
        bool Magnitude;
    };
    const Row rows[] = {
        {"linear", atLinear, 0, 20000, 0.37, 1, false},     {"zoomed in", atLinear, 300.2, 700.9, 0, 1, false},
        {"mirrored", atLinear, 15000, -40, 0.11, 1, true},  {"log", atLogarithmic, 0.1, 25000, -3.3, 1.3, false},
        {"sparse", atLinear, 0.5, 30.5, 0.3, 0.7, false},   {"beyond the data", atLinear, 1e6, 2e6, 0, 1, false},
    };
    const int left = 40;
    const int width = 317;
    TQXDecimation out;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.Name);
        const TQXAxisMapping map = MakeAxisMapping(row.Transform, row.Min, row.Max, left, left + width - 1);
        DecimateCurve(samples.data(), samples.size(), row.X0, row.DX, map, left, width, row.Magnitude, out);
        ASSERT_EQ(out.Columns.size(), static_cast<std::size_t>(width));
        std::vector<TQXColumnRange> naive(width, TQXColumnRange{Inf, -Inf, NaN, NaN, 0});
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const double column = std::floor(map.ToPixel(row.X0 + static_cast<double>(i) * row.DX) + 0.5) - left;
            if (column < 0 || column >= width) continue;
            TQXColumnRange& c = naive[static_cast<std::size_t>(column)];
            ++c.Count;
            if (!std::isfinite(samples[i]) || samples[i] == NoValueMarker) continue;
            const double v = row.Magnitude ? std::fabs(samples[i]) : samples[i];
            if (std::isnan(c.First)) c.First = v;
            c.Last = v;
            c.Min = std::min(c.Min, v);
            c.Max = std::max(c.Max, v);
        }
        for (int c = 0; c < width; ++c) {
            const TQXColumnRange& got = out.Columns[static_cast<std::size_t>(c)];
            const TQXColumnRange& want = naive[static_cast<std::size_t>(c)];
            ASSERT_EQ(got.Count, want.Count) << "column " << c;
            ASSERT_EQ(got.Min, want.Min) << "column " << c;
            ASSERT_EQ(got.Max, want.Max) << "column " << c;
            if (want.Min <= want.Max) {
                ASSERT_EQ(got.First, want.First) << "column " << c;
                ASSERT_EQ(got.Last, want.Last) << "column " << c;
            }
        }
    }
    // Zoomed in: the curve is joined to the samples just outside the plot.
    const TQXAxisMapping map = MakeAxisMapping(atLinear, 10.5, 12.5, 0, 99);
    const double ramp[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14};
    DecimateCurve(ramp, 15, 0, 1, map, 0, 100, false, out);
    EXPECT_TRUE(out.LeftEdge.Valid && out.RightEdge.Valid);
    EXPECT_EQ(out.LeftEdge.Value, 10);
    EXPECT_EQ(out.RightEdge.Value, 13);
    EXPECT_LT(out.LeftEdge.Pixel, 0);
    EXPECT_GT(out.RightEdge.Pixel, 99);
    DecimateCurve(ramp, 15, 0, -1, map, 0, 100, false, out);
    EXPECT_EQ(out.Columns[50].Count + out.Columns[0].Count, 0u) << "DX must be positive";
}

TEST(ChartCursor, NearestSampleAtTheEdgesTiesAndGaps)
{
    struct Row {
        double X0, DX;
        std::size_t Count;
        double X;
        std::ptrdiff_t Sample;
    };
    const Row rows[] = {
        {0, 1, 0, 3, -1},    {0, 1, 10, -5, 0},  {0, 1, 10, 50, 9},   {0, 1, 10, 2.5, 2},  {0, 1, 10, 2.51, 3},
        {10, -1, 10, 7.5, 2}, {10, -1, 10, 3.9, 6}, {5, 0, 10, 9, 0},  {0, 1, 10, NaN, -1}, {0, 1, 10, -Inf, -1},
    };
    for (const Row& row : rows)
        EXPECT_EQ(NearestSample(row.X0, row.DX, row.Count, row.X), row.Sample) << row.X0 << " " << row.DX << " " << row.X;

    const double samples[] = {1, NaN, NaN, NaN, 5, NoValueMarker, 7};
    EXPECT_EQ(NearestDrawableSample(samples, 7, 0, 1, 1.4), 0);
    EXPECT_EQ(NearestDrawableSample(samples, 7, 0, 1, 2.6), 4);
    EXPECT_EQ(NearestDrawableSample(samples, 7, 0, 1, 2.0), 0) << "a tie goes to the lower index";
    EXPECT_EQ(NearestDrawableSample(samples, 7, 0, 1, 5.0), 4);
    EXPECT_EQ(NearestDrawableSample(samples + 1, 3, 0, 1, 1.0), -1);
}
