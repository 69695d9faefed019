#include "qxbase/panels/design_grid.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

namespace qx {

namespace {

std::int64_t RoundedRatio(int edge, int grid)
{
    return std::llround(static_cast<double>(edge) / static_cast<double>(grid));
}

// Appends lines at k × grid for k over the rounded range of [low, high]; `make` turns a
// position into a line.
template <class MakeLine>
void AddLines(std::vector<QLine>& lines, int low, int high, int grid, MakeLine make)
{
    const std::int64_t last = RoundedRatio(high, grid);
    for (std::int64_t k = RoundedRatio(low, grid); k <= last; ++k) {
        if (lines.size() >= static_cast<std::size_t>(DesignGridMaxLines))
            return;
        lines.push_back(make(static_cast<int>(k * grid)));
    }
}

}  // namespace

std::vector<QLine> DesignGridLines(const QRect& clip, int gridX, int gridY)
{
    std::vector<QLine> lines;
    if (gridX == 0 || gridY == 0 || clip.isEmpty())
        return lines;
    const int right = clip.left() + clip.width();
    const int bottom = clip.top() + clip.height();
    AddLines(lines, clip.left(), right, gridX,
             [&](int x) { return QLine(x, clip.top(), x, clip.bottom()); });
    AddLines(lines, clip.top(), bottom, gridY,
             [&](int y) { return QLine(clip.left(), y, clip.right(), y); });
    return lines;
}

}  // namespace qx
