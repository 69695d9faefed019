#include "qxbase/chart/chart_layout.h"

#include <algorithm>
#include <cmath>

namespace qx {

namespace {

int TextWidth(const QFontMetricsF& Metrics, const QString& Text)
{
    return static_cast<int>(std::ceil(Metrics.horizontalAdvance(Text)));
}

int WidestLabel(const QFontMetricsF& Metrics, const QStringList& Labels)
{
    int widest = 0;
    for (const QString& label : Labels) widest = std::max(widest, TextWidth(Metrics, label));
    return widest;
}

void LayYAxisTicks(const TQXYAxisDataObject& Axis, const QRect& Plot, double LineHeight, TQXAxisLayout& Out)
{
    Out.Shown = Axis.Visible;
    Out.Kind = Axis.Scale == yasLogarithmic ? tkLogarithmic : tkLinear;
    Out.Mapping = YAxisMapping(Axis, Plot);
    // Labels stand one and a half lines apart at the closest.
    ComputeTicks(Out.Kind, Axis.Min, Axis.Max, Plot.height(), 2.0 * LineHeight, Out.Ticks);
    FormatTickLabels(Out.Kind, Out.Ticks, {}, Out.Labels);
}

int YAxisWidth(const TQXYAxisDataObject& Axis, const TQXAxisLayout& Layout, const QFontMetricsF& Metrics)
{
    if (!Axis.Visible) return 0;
    const int title = Axis.Title.isEmpty() ? 0 : static_cast<int>(std::ceil(Metrics.height())) + ChartPadding;
    return ChartPadding + title + WidestLabel(Metrics, Layout.Labels) + ChartPadding + TickLength;
}

void LayXAxisTicks(const TQXXAxisDataObject& Axis, const QRect& Plot, const QFontMetricsF& Metrics,
                   TQXAxisLayout& Out)
{
    Out.Shown = true;
    Out.Kind = Axis.Scale == xasLogarithmic ? tkLogarithmic : Axis.Scale == xasDateTime ? tkDateTime : tkLinear;
    Out.Mapping = XAxisMapping(Axis, Plot);
    // Labels need their own width plus a gap: widen the spacing until the widest label fits.
    const double gap = 1.5 * Metrics.height();
    double spacing = 4.0 * Metrics.height();
    for (int attempt = 0; attempt < 3; ++attempt) {
        ComputeTicks(Out.Kind, Axis.Min, Axis.Max, Plot.width(), spacing, Out.Ticks);
        FormatTickLabels(Out.Kind, Out.Ticks, Axis.TimeFormat, Out.Labels);
        const double needed = WidestLabel(Metrics, Out.Labels) + gap;
        if (needed <= spacing) break;
        spacing = needed;
    }
}

// Legend entries flow in rows under the plot, or stack in one column right of it. Returns the
// size the legend takes.
QSize LayLegendEntries(const TQXChartLayoutInput& Input, const QFontMetricsF& Metrics, TQXChartLayout& Out)
{
    Out.LegendEntries.clear();
    if (!Input.LegendVisible || Input.LegendTexts.isEmpty()) return {0, 0};
    const int lineHeight = static_cast<int>(std::ceil(Metrics.height()));
    const QRect& area = Input.Area;
    const auto count = std::min<qsizetype>(Input.LegendTexts.size(), static_cast<qsizetype>(Input.LegendCurves.size()));
    if (Input.LegendPosition == lpVertical) {
        int widest = 0;
        for (qsizetype i = 0; i < count; ++i) widest = std::max(widest, TextWidth(Metrics, Input.LegendTexts[i]));
        const int width = LegendLineLength + ChartPadding + widest;
        const int left = area.right() - ChartPadding - width + 1;
        for (qsizetype i = 0; i < count; ++i) {
            const QRect rect(left, area.top() + ChartPadding + static_cast<int>(i) * lineHeight, width, lineHeight);
            Out.LegendEntries.push_back({Input.LegendCurves[static_cast<std::size_t>(i)], rect});
        }
        return {width + 3 * ChartPadding, static_cast<int>(count) * lineHeight};
    }
    const int rowWidth = area.width() - 2 * ChartPadding;
    const int entryGap = 3 * ChartPadding;
    int x = 0;
    int row = 0;
    for (qsizetype i = 0; i < count; ++i) {
        const int width = LegendLineLength + ChartPadding + TextWidth(Metrics, Input.LegendTexts[i]);
        if (x > 0 && x + width > rowWidth) {
            x = 0;
            ++row;
        }
        Out.LegendEntries.push_back({Input.LegendCurves[static_cast<std::size_t>(i)],
                                     QRect(x, row * lineHeight, width, lineHeight)});
        x += width + entryGap;
    }
    const int height = (row + 1) * lineHeight;
    const QPoint origin(area.left() + ChartPadding, area.bottom() - ChartPadding - height + 1);
    for (TQXLegendEntry& entry : Out.LegendEntries) entry.Rect.translate(origin);
    return {rowWidth, height + ChartPadding};
}

QRect BoundingRect(const std::vector<TQXLegendEntry>& Entries)
{
    QRect bounds;
    for (const TQXLegendEntry& entry : Entries) bounds = bounds.united(entry.Rect);
    return bounds;
}

}  // namespace

TQXAxisMapping YAxisMapping(const TQXYAxisDataObject& Axis, const QRect& Plot)
{
    const TQXAxisTransform transform =
        Axis.Scale == yasLogarithmic ? atLogarithmic : Axis.Scale == yasDB ? atDB : atLinear;
    return MakeAxisMapping(transform, Axis.Min, Axis.Max, Plot.bottom(), Plot.top());
}

TQXAxisMapping XAxisMapping(const TQXXAxisDataObject& Axis, const QRect& Plot)
{
    return MakeAxisMapping(Axis.Scale == xasLogarithmic ? atLogarithmic : atLinear, Axis.Min, Axis.Max, Plot.left(),
                           Plot.right());
}

void LayoutChart(const TQXChartLayoutInput& Input, const QFontMetricsF& Metrics, TQXChartLayout& Out)
{
    const std::vector<TQXYAxisDataObject>& axes = *Input.YAxes;
    const int bands = static_cast<int>(axes.size());
    const int lineHeight = static_cast<int>(std::ceil(Metrics.height()));
    const QRect& area = Input.Area;
    Out.Area = area;

    const QSize legend = LayLegendEntries(Input, Metrics, Out);
    const bool vertical = Input.LegendPosition == lpVertical;
    const int legendRight = vertical ? legend.width() : 0;
    const int legendBottom = vertical ? 0 : legend.height();
    const int xAxisHeight =
        TickLength + 2 + lineHeight + (Input.XAxis->Title.isEmpty() ? 0 : lineHeight + 2);

    // Half a line above the top keeps the highest y label inside the area.
    const int top = area.top() + ChartPadding + lineHeight / 2;
    const int bottom = std::max(top, area.bottom() - ChartPadding - legendBottom - xAxisHeight);
    const bool multiple = Input.Style == dsMultipleBands && bands > 1;
    // A line between strips keeps the labels of neighbouring strips apart.
    const int stripGap = lineHeight;
    const int stripHeight =
        multiple ? std::max(1, (bottom - top + 1 - (bands - 1) * stripGap) / bands) : bottom - top + 1;

    Out.Plots.resize(static_cast<std::size_t>(bands));
    Out.YAxes.resize(static_cast<std::size_t>(bands));
    int axesWidth = 0;
    for (int band = 0; band < bands; ++band) {
        const auto b = static_cast<std::size_t>(band);
        const int stripTop = multiple ? top + band * (stripHeight + stripGap) : top;
        // Ticks depend only on the height; the left edge follows once every width is known.
        Out.Plots[b] = QRect(0, stripTop, 1, stripHeight);
        LayYAxisTicks(axes[b], Out.Plots[b], Metrics.height(), Out.YAxes[b]);
        const int width = YAxisWidth(axes[b], Out.YAxes[b], Metrics);
        axesWidth = multiple ? std::max(axesWidth, width) : axesWidth + width;
    }
    const int left = area.left() + ChartPadding + axesWidth;
    int right = std::max(left, area.right() - ChartPadding - legendRight);

    // The last x label is centred on the right edge: keep half of it inside the area.
    QRect plot(left, top, right - left + 1, stripHeight);
    LayXAxisTicks(*Input.XAxis, plot, Metrics, Out.XAxis);
    right = std::max(left, right - WidestLabel(Metrics, Out.XAxis.Labels) / 2);
    plot.setRight(right);
    LayXAxisTicks(*Input.XAxis, plot, Metrics, Out.XAxis);

    int axisRight = left - 1;
    for (int band = 0; band < bands; ++band) {
        const auto b = static_cast<std::size_t>(band);
        QRect& bandPlot = Out.Plots[b];
        bandPlot.setLeft(left);
        bandPlot.setRight(right);
        TQXAxisLayout& yAxis = Out.YAxes[b];
        yAxis.Mapping = YAxisMapping(axes[b], bandPlot);
        const int width = multiple ? axesWidth : YAxisWidth(axes[b], yAxis, Metrics);
        yAxis.Rect = QRect(axisRight - width + 1, bandPlot.top() - lineHeight / 2, width,
                           bandPlot.height() + lineHeight);
        if (!multiple) axisRight -= width;
    }
    const QRect& lowest = Out.Plots.back();
    Out.XAxis.Rect = QRect(left, lowest.bottom() + 1, right - left + 1, xAxisHeight);
    Out.Legend = BoundingRect(Out.LegendEntries);
    if (vertical && !Out.LegendEntries.empty()) {
        // Level with the plot's top.
        const int shift = top - Out.Legend.top();
        for (TQXLegendEntry& entry : Out.LegendEntries) entry.Rect.translate(0, shift);
        Out.Legend.translate(0, shift);
    }
}

}  // namespace qx
