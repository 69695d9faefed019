#include "qxbase/chart/chart_cursor.h"

#include <cmath>

#include "qxbase/chart/chart_decimation.h"

namespace qx {

std::ptrdiff_t NearestSample(double X0, double DX, std::size_t Count, double X)
{
    if (Count == 0 || !std::isfinite(X) || !std::isfinite(X0) || !std::isfinite(DX)) return -1;
    if (DX == 0.0) return 0;
    // Half-way rounds down, to the lower index, whichever way DX points.
    const double index = std::ceil((X - X0) / DX - 0.5);
    const double last = static_cast<double>(Count - 1);
    if (!(index > 0.0)) return 0;
    if (index >= last) return static_cast<std::ptrdiff_t>(Count - 1);
    return static_cast<std::ptrdiff_t>(index);
}

std::ptrdiff_t NearestDrawableSample(const double* Samples, std::size_t Count, double X0, double DX, double X)
{
    const std::ptrdiff_t nearest = NearestSample(X0, DX, Count, X);
    if (nearest < 0 || Samples == nullptr) return -1;
    if (IsDrawableSample(Samples[nearest])) return nearest;
    // Walk outwards; the first drawable sample on each side is the candidate of that side.
    std::ptrdiff_t below = nearest - 1;
    while (below >= 0 && !IsDrawableSample(Samples[below])) --below;
    std::ptrdiff_t above = nearest + 1;
    const auto end = static_cast<std::ptrdiff_t>(Count);
    while (above < end && !IsDrawableSample(Samples[above])) ++above;
    if (below < 0) return above < end ? above : -1;
    if (above >= end) return below;
    const double distanceBelow = std::fabs(X - (X0 + static_cast<double>(below) * DX));
    const double distanceAbove = std::fabs(X - (X0 + static_cast<double>(above) * DX));
    return distanceAbove < distanceBelow ? above : below;
}

}  // namespace qx
