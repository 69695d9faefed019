#pragma once

#include <QLine>
#include <QRect>
#include <vector>

#include "qxbase/framework/export.h"

namespace qx {

// The most lines one paint of the design grid draws.
inline constexpr int DesignGridMaxLines = 500;

// The design grid lines that cover `clip`, as one batch: first the vertical lines at
// x = k × gridX for k from round(left / gridX) to round(right / gridX), each from the clip's top
// to its bottom, then the horizontal lines likewise; right and bottom are the exclusive edges
// (left + width, top + height), rounding is half away from zero. At most DesignGridMaxLines
// lines; none when either size is 0 or the clip is empty, none in the direction of a negative
// size.
QXBASE_EXPORT std::vector<QLine> DesignGridLines(const QRect& clip, int gridX, int gridY);

}  // namespace qx
