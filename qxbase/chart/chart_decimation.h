#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "qxbase/chart/chart_mapping.h"
#include "qxbase/framework/export.h"

// One minimum and maximum per pixel column: the cost of drawing a curve follows the plot's
// width, not its sample count.
namespace qx {

// The samples of one pixel column. Count counts every sample in the column; Min, Max, First and
// Last only the drawable ones (IsDrawableSample). A column whose samples are
// all undrawable has Min > Max and breaks the curve; a column without samples is bridged.
struct TQXColumnRange {
    double Min;
    double Max;
    double First;
    double Last;
    std::uint32_t Count;
};

// A drawable sample just outside the plot, to which the curve is joined at the plot's edge.
struct TQXEdgeSample {
    bool Valid = false;
    double Pixel = 0.0;
    double Value = 0.0;
};

struct TQXDecimation {
    // Column c is pixel Left + c; its samples are those whose x maps to a pixel rounding to it.
    std::vector<TQXColumnRange> Columns;
    TQXEdgeSample LeftEdge;
    TQXEdgeSample RightEdge;
};

// Decimates Count samples at X0 + i * DX (DX positive and finite, otherwise no column holds a
// sample) over Width columns starting at pixel Left of XMap. With Magnitude, the columns hold
// |v| (what a dB axis draws). Reuses the capacity of Out: no allocation once it has reached the
// width.
QXBASE_EXPORT void DecimateCurve(const double* Samples, std::size_t Count, double X0, double DX,
                                 const TQXAxisMapping& XMap, int Left, int Width, bool Magnitude,
                                 TQXDecimation& Out);

// Whether a sample is drawn: its magnitude is below the no-value marker (1.7e30), so NaN, the
// infinities and the marker are not; no measured value comes near it.
QXBASE_EXPORT bool IsDrawableSample(double Value);

// The smallest and largest drawable samples (with Magnitude, of |v|; with PositiveOnly, of those
// above 0). False, and Min and Max untouched, when there is none.
QXBASE_EXPORT bool DrawableRange(const double* Samples, std::size_t Count, bool Magnitude,
                                 bool PositiveOnly, double& Min, double& Max);

}  // namespace qx
