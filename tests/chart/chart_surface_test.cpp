#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>
#include <cmath>

#include "qxbase/chart/chart_surface.h"
#include "qxbase/measure/channel_types.h"

using namespace qx;

namespace {

QRgb Rgb(TColor Color)
{
    return ColorToQColor(Color).rgb();
}

// Two bands: a rising ramp 0..1 over x 0..100 in band 0, a constant -0.5 in band 1.
void FillTwoBands(TQXChartSurface& Chart, THVKDisplayStyle Style)
{
    Chart.SetDisplayStyle(Style);
    Chart.SetBandCount(2);
    Chart.SetGridVisible(false);
    Chart.SetBackgroundColor(clNavy);
    Chart.GetXAxis() = {0, 100, xasLinear, QStringLiteral("Time [s]"), {}};
    for (int band = 0; band < 2; ++band) {
        TQXYAxisDataObject& axis = *Chart.GetYAxis(band);
        axis.Min = -1;
        axis.Max = 1;
        axis.Color = band == 0 ? clYellow : clAqua;
        axis.Title = QStringLiteral("U%1 [V]").arg(band);
    }
    const int ramp = Chart.AddCurve(QStringLiteral("ramp"), QStringLiteral("V"), clLime, 0);
    const int flat = Chart.AddCurve(QStringLiteral("flat"), QStringLiteral("V"), clRed, 1);
    for (int i = 0; i <= 1000; ++i) {
        Chart.GetCurve(ramp)->Samples.push_back(i / 1000.0);
        Chart.GetCurve(flat)->Samples.push_back(-0.5);
    }
    Chart.GetCurve(ramp)->DX = Chart.GetCurve(flat)->DX = 0.1;
    Chart.CurvesChanged();
}

QImage RenderImage(const TQXChartSurface& Chart, QSize Size = {600, 400})
{
    QImage image(Size, QImage::Format_RGB32);
    QPainter painter(&image);
    Chart.Render(painter, image.rect());
    return image;
}

QPoint At(const TQXChartSurface& Chart, int Band, double X, double Y)
{
    return {static_cast<int>(std::lround(Chart.XToPixel(X))), static_cast<int>(std::lround(Chart.YToPixel(Band, Y)))};
}

}  // namespace

TEST(ChartSurface, CurvesAxesAndCursorsAppearWhereTheMappingSays)
{
    for (THVKDisplayStyle style : {dsOneBand, dsMultipleBands}) {
        SCOPED_TRACE(style);
        TQXChartSurface chart;
        FillTwoBands(chart, style);
        chart.SetCursorsVisible(true);
        ASSERT_TRUE(chart.SetCursorX(0, 62.04));
        const QImage image = RenderImage(chart);
        const QRect plot0 = chart.GetPlotRect(0);
        const QRect plot1 = chart.GetPlotRect(1);
        ASSERT_TRUE(QRect(0, 0, 600, 400).contains(plot0.united(plot1)));
        EXPECT_EQ(style == dsOneBand, plot0 == plot1);
        if (style == dsMultipleBands) {
            EXPECT_LT(plot0.bottom(), plot1.top());
        }

        EXPECT_EQ(image.pixel(At(chart, 0, 25, 0.25)), Rgb(clLime));
        EXPECT_EQ(image.pixel(At(chart, 1, 80, -0.5)), Rgb(clRed));
        EXPECT_TRUE(plot1.contains(At(chart, 1, 80, -0.5)));
        // Band 0's axis line hugs its plot; the x axis runs under the lowest plot.
        EXPECT_EQ(image.pixel(plot0.left() - 1, plot0.center().y()), Rgb(clYellow));
        const int between = At(chart, 1, 5, 0).x();  // no x tick here
        EXPECT_NE(image.pixel(between, plot1.bottom() + 1), Rgb(clNavy));
        EXPECT_EQ(image.pixel(between, plot1.bottom() + 3), Rgb(clNavy));
        // Band 1's axis: its own strip, or beside band 0's.
        const int axis1 = style == dsOneBand ? plot0.left() - 2 : plot1.left() - 1;
        bool found = false;
        for (int x = plot0.left() - 200; x <= axis1; ++x) found = found || image.pixel(std::max(x, 0), plot1.center().y()) == Rgb(clAqua);
        EXPECT_TRUE(found) << "no y axis of band 1";

        // Cursor 0 snapped to sample 620: its line over the plot, its marker on the curve.
        const TQXCursorReading reading = chart.GetCursorReading(0);
        EXPECT_TRUE(reading.Valid);
        EXPECT_EQ(reading.Sample, 620);
        const QPoint marker = At(chart, 0, reading.X, reading.Y);
        EXPECT_EQ(image.pixel(marker.x() + 2, marker.y() + 2), Rgb(clLime));
        EXPECT_NE(image.pixel(marker.x(), plot0.top() + plot0.height() / 8), Rgb(clBlack));
        EXPECT_EQ(image.pixel(marker.x() + 6, plot0.top() + plot0.height() / 8), Rgb(clBlack));
    }
}

TEST(ChartSurface, LegendPositionDecidesWhereThePlotEnds)
{
    TQXChartSurface chart;
    FillTwoBands(chart, dsOneBand);
    chart.resize(600, 400);
    chart.SetLegendVisible(false);
    const QRect bare = chart.GetPlotRect(0);
    chart.SetLegendVisible(true);
    chart.SetLegendPosition(lpHorizontal);
    const QRect under = chart.GetPlotRect(0);
    chart.SetLegendPosition(lpVertical);
    const QRect beside = chart.GetPlotRect(0);
    EXPECT_LT(under.bottom(), bare.bottom());
    EXPECT_EQ(under.right(), bare.right());
    EXPECT_LT(beside.right(), bare.right());
    EXPECT_EQ(beside.bottom(), bare.bottom());

    // The legend entry sits outside the plot: its colour line is found beside or under it.
    for (TQXLegendPosition position : {lpHorizontal, lpVertical}) {
        chart.SetLegendPosition(position);
        chart.SetCursorsVisible(false);
        const QImage image = RenderImage(chart);
        const QRect plot = chart.GetPlotRect(0);
        int outside = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                outside += image.pixel(x, y) == Rgb(clRed) && !plot.contains(x, y);
        EXPECT_GT(outside, 10) << position;
    }
}

TEST(ChartSurface, MouseMovesTheSelectedCursorAndDragsTheOneUnderIt)
{
    TQXChartSurface chart;
    FillTwoBands(chart, dsOneBand);
    chart.resize(600, 400);
    chart.SetCursorsVisible(true);
    chart.SetCursorCurve(1, 1);
    int calls = 0;
    chart.OnCursorMoved = [&](TQXChartSurface* sender) { calls += sender == &chart; };
    QSignalSpy moved(&chart, &TQXChartSurface::cursorMoved);
    chart.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&chart));
    ASSERT_TRUE(chart.SetCursorX(1, 80));

    const int y = chart.GetPlotRect(0).center().y();
    const int x30 = static_cast<int>(std::lround(chart.XToPixel(30)));
    chart.SetSelectedCursor(0);
    QTest::mouseClick(&chart, Qt::LeftButton, {}, QPoint(x30, y));
    EXPECT_NEAR(chart.GetCursorReading(0).X, chart.PixelToX(x30), 0.05);

    // A press beside cursor 2's line grabs it even though cursor 1 is selected.
    const int x80 = static_cast<int>(std::lround(chart.XToPixel(80)));
    const int x50 = static_cast<int>(std::lround(chart.XToPixel(50)));
    QTest::mousePress(&chart, Qt::LeftButton, {}, QPoint(x80 + 2, y));
    QMouseEvent drag(QEvent::MouseMove, QPointF(x50, y), chart.mapToGlobal(QPointF(x50, y)), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&chart, &drag);
    QTest::mouseRelease(&chart, Qt::LeftButton, {}, QPoint(x50, y));
    EXPECT_NEAR(chart.GetCursorReading(1).X, chart.PixelToX(x50), 0.05);
    EXPECT_NEAR(chart.GetCursorReading(0).X, chart.PixelToX(x30), 0.05);
    EXPECT_EQ(calls, 3);
    EXPECT_EQ(moved.count(), 3);

    // Trimming the front of the curve moves the reading of the same x to another sample.
    std::vector<double>& samples = chart.GetCurve(0)->Samples;
    samples.erase(samples.begin(), samples.begin() + 100);
    chart.GetCurve(0)->X0 = 10;
    chart.CurvesChanged();
    EXPECT_EQ(moved.count(), 4);
    EXPECT_EQ(chart.GetCursorReading(0).Y, samples[static_cast<std::size_t>(chart.GetCursorReading(0).Sample)]);
    chart.ClearCurves();
    EXPECT_FALSE(chart.GetCursorReading(0).Valid);
    EXPECT_FALSE(chart.SetCursorX(0, 10));
}

TEST(ChartSurface, AutoscaleFitsRoundLimitsAndIgnoresUndrawableSamples)
{
    // The step depends on the font, so a linear fit may land on either of two round limits.
    struct Row {
        TQXYAxisScale Scale;
        std::vector<double> Samples;
        double MinLow, MinHigh, MaxLow, MaxHigh;
    };
    const Row rows[] = {
        {yasLinear, {0.013, NoValueMarker, 0.087, NAN}, 0.0, 0.01, 0.09, 0.1},
        {yasDB, {-0.001, 0.0, 1.0}, -60, -60, 0, 0},
        {yasLogarithmic, {-4, 0.003, 200}, 0.001, 0.001, 1000, 1000},
        {yasLinear, {NAN, NoValueMarker}, -1, -1, 1, 1},
    };
    for (const Row& row : rows) {
        TQXChartSurface chart;
        chart.resize(400, 300);
        chart.GetYAxis(0)->Scale = row.Scale;
        chart.AddCurve(QStringLiteral("c"), {}, clLime, 7);  // band 7 does not exist: drawn in band 0
        chart.GetCurve(0)->Samples = row.Samples;
        chart.AutoscaleBand(0);
        const double min = chart.GetYAxis(0)->Min;
        const double max = chart.GetYAxis(0)->Max;
        SCOPED_TRACE(testing::Message() << row.Scale << " " << row.Samples.size() << ": " << min << ".." << max);
        EXPECT_TRUE((std::fabs(min - row.MinLow) < 1e-12) || (std::fabs(min - row.MinHigh) < 1e-12));
        EXPECT_TRUE((std::fabs(max - row.MaxLow) < 1e-12) || (std::fabs(max - row.MaxHigh) < 1e-12));
    }
    TQXChartSurface chart;
    chart.AddCurve(QStringLiteral("short"), {}, clLime, 0);
    chart.AddCurve(QStringLiteral("long"), {}, clLime, 0);
    chart.GetCurve(0)->Samples.assign(10, 1.0);
    chart.GetCurve(1)->Samples.assign(50, 1.0);
    chart.GetCurve(1)->X0 = 2;
    chart.GetCurve(1)->DX = 0.5;
    chart.AutoscaleX();
    EXPECT_EQ(chart.GetXAxis().Min, 2);
    EXPECT_EQ(chart.GetXAxis().Max, 26.5);

    // Out-of-range requests answer without touching anything.
    chart.SetBandCount(0);
    EXPECT_EQ(chart.GetBandCount(), 1);
    EXPECT_EQ(chart.GetYAxis(1), nullptr);
    EXPECT_TRUE(chart.GetPlotRect(1).isEmpty());
    EXPECT_TRUE(std::isnan(chart.YToPixel(-1, 0)));
    EXPECT_FALSE(chart.SetCursorX(2, 5));

    // Areas too small for the axes still paint without a crash or a NaN.
    chart.SetDisplayStyle(dsMultipleBands);
    chart.SetBandCount(6);
    for (QSize size : {QSize(1, 1), QSize(40, 30), QSize(90, 700)}) {
        RenderImage(chart, size);
        EXPECT_FALSE(std::isnan(chart.XToPixel(3)));
    }
}
