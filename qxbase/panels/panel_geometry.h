#pragma once

#include <QPoint>
#include <QPolygon>
#include <QRect>

#include "qxbase/framework/color.h"
#include "qxbase/framework/export.h"

// The arithmetic of the panel frame, free of any widget: ears, frame polygon, hit areas, resize
// areas, grid snapping and colour lightening. The panels call these; tests use plain numbers.
namespace qx {

// Width of each corner ear: min(width div 3, 30).
QXBASE_EXPORT int GetPartWidth(int width);

// The client rectangle a descendant draws in: left +1, right -1, top +12, bottom -10 outside
// design mode and -11 in design mode.
QXBASE_EXPORT QRect AdjustedClientRect(const QRect& client, bool designMode);

// The frame polygon within `rect` (right and bottom inclusive, as QRect::right()/bottom() give
// them) with ears of `partWidth`; the insets, the region rule (forRegion) and `closed` act as
// for the panel's GetPolyFrame.
QXBASE_EXPORT QPolygon PolyFramePoints(const QRect& rect, int partWidth, bool cutOut, bool cutOutDown,
                                       bool forRegion, int insetY, int insetX, bool closed);

// The popup button at the right end of the caption strip, for a panel `width` pixels wide.
QXBASE_EXPORT bool IsInPopupArea(const QPoint& point, int width);
// The page activator left of the popup button, in the client rectangle.
QXBASE_EXPORT bool IsInPageActivatorArea(const QPoint& point, const QRect& client);

// The resize area (0 none, 1..8) under a point; `width` is the panel's width and `borderWidth`
// its border width.
QXBASE_EXPORT int ResizeAreaAt(int x, int y, const QRect& client, int width, int borderWidth);
// Bounds after dragging resize `area` by (dx, dy) from `down` (left, top, width, height at
// mouse down), without snapping.
QXBASE_EXPORT QRect ResizedBounds(int area, const QRect& down, int dx, int dy);
// Resize snapping: rounds to the grid; caption and bottom strip offsets as the frame needs.
QXBASE_EXPORT QRect SnapResizedBounds(const QRect& bounds, int gridX, int gridY);
// Move snapping: truncates to the grid.
QXBASE_EXPORT QPoint SnapMovedPosition(const QPoint& topLeft, int gridX, int gridY);

// Each of red, green, blue times `factor`, rounded, capped at 255. Takes and gives 0x00BBGGRR.
QXBASE_EXPORT TColor ChangeLight(TColor rgb, double factor);
// round(c1 × factor + c2 × (1 - factor)) per component, capped at 255.
QXBASE_EXPORT TColor BlendColors(TColor rgb1, TColor rgb2, double factor);

}  // namespace qx
