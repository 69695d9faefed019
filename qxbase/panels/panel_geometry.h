#pragma once

#include <QPoint>
#include <QPolygon>
#include <QRect>

#include "qxbase/framework/color.h"
#include "qxbase/framework/export.h"

// The arithmetic of the panel frame, free of any widget: ears, frame polygon, hit areas, resize
// areas, grid snapping, line pixels and colour lightening. The panels call these; tests use
// plain numbers.
//
// Rectangle edges follow the drawing system's convention: R = x + width and B = y + height,
// one past the last pixel (not QRect::right()/bottom()). Hit tests compare against those edges.
namespace qx {

// Width of each corner ear: min(width div 3, 30).
QXBASE_EXPORT int GetPartWidth(int width);

// The client rectangle a descendant draws in: left +1, right -1, top +12, bottom -10 outside
// design mode and -11 in design mode.
QXBASE_EXPORT QRect AdjustedClientRect(const QRect& client, bool designMode);

// The frame polygon within `rect` with ears of `partWidth`; the insets, the region rule
// (forRegion: right and bottom stay on the outer edges, else one pixel inside) and `closed`
// (first point repeated) act as for the panel's GetPolyFrame.
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
// mouse down), without snapping. Area 0 or an unknown area leaves `down` as it is.
QXBASE_EXPORT QRect ResizedBounds(int area, const QRect& down, int dx, int dy);
// Resize snapping: rounds to the grid; caption and bottom strip offsets as the frame needs.
// A spacing of 0 or less leaves its axis unsnapped.
QXBASE_EXPORT QRect SnapResizedBounds(const QRect& bounds, int gridX, int gridY);
// Move snapping: truncates to the grid. A spacing of 0 or less leaves its axis unsnapped.
QXBASE_EXPORT QPoint SnapMovedPosition(const QPoint& topLeft, int gridX, int gridY);

// The pixels a line from `from` to `to` sets, without the end point, as the system's line
// drawing does (so a polyline draws every corner once and a closed one leaves no pixel out).
QXBASE_EXPORT QPolygon LinePixels(const QPoint& from, const QPoint& to);
// The pixels of a polyline through `points`, in drawing order; the last point is not drawn.
QXBASE_EXPORT QPolygon PolylinePixels(const QPolygon& points);

// Each of red, green, blue times `factor`, rounded, capped at 255 (and at 0 for a negative
// factor). Takes 0x00BBGGRR or a system colour, gives 0x00BBGGRR.
QXBASE_EXPORT TColor ChangeLight(TColor rgb, double factor);
// round(c1 × factor + c2 × (1 - factor)) per component, kept within 0..255.
QXBASE_EXPORT TColor BlendColors(TColor rgb1, TColor rgb2, double factor);
// Adds `delta` to each of red, green and blue, kept within 0..255: the brightness correction
// behind the hatch of the popup button (darker -40, lighter +40).
QXBASE_EXPORT TColor ChangeBrightness(TColor rgb, int delta);

}  // namespace qx
