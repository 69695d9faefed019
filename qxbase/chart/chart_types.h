#pragma once

#include <QString>
#include <cstdint>

#include "qxbase/framework/color.h"

// The settings of a chart surface's axes and layout, as plain data the chart panels and their
// dialogs read and write.
namespace qx {

// "One band": every band's curves over the whole plot, the bands' y axes side by side on the
// left. "Multiple bands": the plot split into one strip per band, top to bottom.
enum THVKDisplayStyle : std::uint8_t { dsOneBand, dsMultipleBands };

// "Horizontal": one row of entries under the plot; "Vertical": one column right of it.
enum TQXLegendPosition : std::uint8_t { lpHorizontal, lpVertical };

// "linear", "logarithmic", "dB". Minimum and maximum of a dB axis are in dB (20 log10 |v|
// of the samples); those of the other two in the samples' own unit.
enum TQXYAxisScale : std::uint8_t { yasLinear, yasLogarithmic, yasDB };

// "linear", "logarithmic", and the date-time axis, whose values are seconds since
// 1970-01-01T00:00:00 UTC written with the axis's time format.
enum TQXXAxisScale : std::uint8_t { xasLinear, xasLogarithmic, xasDateTime };

// The y axis of one band.
struct TQXYAxisDataObject {
    double Min = -1.0;
    double Max = 1.0;
    TQXYAxisScale Scale = yasLinear;
    bool Visible = true;
    TColor Color = clWhite;
    // Written along the axis: the channel's name and unit.
    QString Title;
};

struct TQXXAxisDataObject {
    double Min = 0.0;
    double Max = 1.0;
    TQXXAxisScale Scale = xasLinear;
    QString Title;
    // QDateTime format of the tick labels and cursor values of a date-time axis.
    QString TimeFormat = QStringLiteral("hh:mm:ss.zzz");
};

}  // namespace qx
