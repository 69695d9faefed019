#pragma once

#include <QFontMetricsF>
#include <QRect>
#include <QStringList>
#include <vector>

#include "qxbase/chart/chart_mapping.h"
#include "qxbase/chart/chart_ticks.h"
#include "qxbase/chart/chart_types.h"

// Where a chart surface puts its plots, axes and legend inside an area, and the ticks each axis
// shows there. Used by the surface's painting and hit tests; no widget needed.
namespace qx {

struct TQXAxisLayout {
    bool Shown = false;
    // Ticks and labels go here: left of the plot for a y axis, under it for the x axis.
    QRect Rect;
    TQXAxisMapping Mapping;
    TQXTickKind Kind = tkLinear;
    // In the axis's units (dB on a dB axis); place them with Mapping.AxisUnitToPixel.
    std::vector<double> Ticks;
    QStringList Labels;
};

struct TQXLegendEntry {
    int Curve = -1;
    QRect Rect;
};

struct TQXChartLayout {
    QRect Area;
    // Per band: the plot rectangle (the same for every band in "One band" style) and its y axis.
    std::vector<QRect> Plots;
    std::vector<TQXAxisLayout> YAxes;
    TQXAxisLayout XAxis;
    QRect Legend;
    std::vector<TQXLegendEntry> LegendEntries;
};

struct TQXChartLayoutInput {
    QRect Area;
    const std::vector<TQXYAxisDataObject>* YAxes = nullptr;
    const TQXXAxisDataObject* XAxis = nullptr;
    THVKDisplayStyle Style = dsOneBand;
    bool LegendVisible = true;
    TQXLegendPosition LegendPosition = lpHorizontal;
    // Curve index and text of every legend entry, in order.
    std::vector<int> LegendCurves;
    QStringList LegendTexts;
};

// Layout sizes in pixels, besides those the font gives.
inline constexpr int ChartPadding = 4;
inline constexpr int TickLength = 4;
inline constexpr int LegendLineLength = 18;

// The axis mapping of a y axis or the x axis between the given pixels.
TQXAxisMapping YAxisMapping(const TQXYAxisDataObject& Axis, const QRect& Plot);
TQXAxisMapping XAxisMapping(const TQXXAxisDataObject& Axis, const QRect& Plot);

// Lays the chart out in Input.Area. Reuses the vectors of Out.
void LayoutChart(const TQXChartLayoutInput& Input, const QFontMetricsF& Metrics, TQXChartLayout& Out);

}  // namespace qx
