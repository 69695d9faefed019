#include "qxbase/panels/panel_geometry.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace qx {
namespace {

int RightOf(const QRect& r) { return r.x() + r.width(); }
int BottomOf(const QRect& r) { return r.y() + r.height(); }

QRect FromEdges(int left, int top, int right, int bottom)
{
    return QRect(left, top, right - left, bottom - top);
}

int Component(TColor rgb, int shift) { return (rgb >> shift) & 0xFF; }

// Halves round to even, as the system's Round does.
int ClampComponent(double value)
{
    return static_cast<int>(std::clamp(std::nearbyint(value), 0.0, 255.0));
}

TColor FromComponents(int red, int green, int blue)
{
    return static_cast<TColor>(red | (green << 8) | (blue << 16));
}

}  // namespace

int GetPartWidth(int width) { return std::min(width / 3, 30); }

QRect AdjustedClientRect(const QRect& client, bool designMode)
{
    return FromEdges(client.x() + 1, client.y() + 12, RightOf(client) - 1,
                     BottomOf(client) - (designMode ? 11 : 10));
}

QPolygon PolyFramePoints(const QRect& rect, int partWidth, bool cutOut, bool cutOutDown, bool forRegion,
                         int insetY, int insetX, bool closed)
{
    const int outer = forRegion ? 0 : 1;
    const int l = rect.x() + insetX;
    const int t = rect.y() + insetY;
    const int r = RightOf(rect) - outer - insetX;
    const int b = BottomOf(rect) - outer - insetY - (cutOutDown ? 6 : 0);
    const int pw = partWidth;

    QPolygon points;
    if (cutOut) {
        points << QPoint(l, b) << QPoint(l, t + 10) << QPoint(l, t) << QPoint(l + pw, t)
               << QPoint(l + pw, t + 10) << QPoint(r - pw, t + 10) << QPoint(r - pw, t) << QPoint(r, t)
               << QPoint(r, t + 10) << QPoint(r, b);
    } else {
        points << QPoint(l, b) << QPoint(l, t) << QPoint(r, t) << QPoint(r, b);
    }
    if (closed)
        points << points.first();
    return points;
}

bool IsInPopupArea(const QPoint& point, int width)
{
    return point.x() >= width - 21 && point.x() <= width - 11 && point.y() >= 0 && point.y() < 12;
}

bool IsInPageActivatorArea(const QPoint& point, const QRect& client)
{
    const int r = RightOf(client);
    const int t = client.y();
    return point.x() >= r - 26 && point.x() < r - 18 && point.y() >= t + 4 && point.y() < t + 9;
}

int ResizeAreaAt(int x, int y, const QRect& client, int width, int borderWidth)
{
    const int l = client.x();
    const int t = client.y();
    const int r = RightOf(client);
    const int b = BottomOf(client);
    const int e = borderWidth;
    if (x >= r - 11 && y >= b - 12)
        return 7;
    if (width > 28 && x >= r - 11 && y < t + 11)
        return 5;
    if (width > 28 && x < l + 11 && y < t + 11)
        return 1;
    if (x < l + 11 && y >= b - 12)
        return 3;
    if (x < l + e + 1)
        return 8;
    if (x >= r - e - 1)
        return 6;
    if (y < t + e + 1)
        return 2;
    if (y >= b - e - 1)
        return 4;
    return 0;
}

QRect ResizedBounds(int area, const QRect& down, int dx, int dy)
{
    int left = down.x();
    int top = down.y();
    int width = down.width();
    int height = down.height();
    switch (area) {
    case 1: width -= dx; height -= dy; left += dx; top += dy; break;
    case 2: height -= dy; top += dy; break;
    case 3: width -= dx; height += dy; left += dx; break;
    case 4: height += dy; break;
    case 5: width += dx; height -= dy; top += dy; break;
    case 6: width += dx; break;
    case 7: width += dx; height += dy; break;
    case 8: width -= dx; left += dx; break;
    default: break;
    }
    return QRect(left, top, width, height);
}

QRect SnapResizedBounds(const QRect& bounds, int gridX, int gridY)
{
    int left = bounds.x();
    int top = bounds.y();
    int width = bounds.width();
    int height = bounds.height();
    // The +1 on the left is not taken back: panels sit one pixel right of a grid line.
    if (gridX > 0) {
        left = (gridX / 2 + left + 1) / gridX * gridX;
        width = (gridX / 2 + width) / gridX * gridX;
    }
    // 11: caption strip above the grid line; 21: caption plus bottom strip.
    if (gridY > 0) {
        top = (gridY / 2 + top + 11) / gridY * gridY - 11;
        height = (gridY / 2 + height - 21) / gridY * gridY + 21;
    }
    return QRect(left, top, width, height);
}

QPoint SnapMovedPosition(const QPoint& topLeft, int gridX, int gridY)
{
    int left = topLeft.x();
    int top = topLeft.y();
    if (gridX > 0)
        left = left / gridX * gridX;
    if (gridY > 0)
        top = (top + 11) / gridY * gridY - 11;
    return QPoint(left, top);
}

QPolygon LinePixels(const QPoint& from, const QPoint& to)
{
    QPolygon pixels;
    const int dx = std::abs(to.x() - from.x());
    const int dy = std::abs(to.y() - from.y());
    const int sx = from.x() < to.x() ? 1 : -1;
    const int sy = from.y() < to.y() ? 1 : -1;
    int error = dx - dy;
    int x = from.x();
    int y = from.y();
    const int count = std::max(dx, dy);
    pixels.reserve(count);
    for (int i = 0; i < count; ++i) {
        pixels << QPoint(x, y);
        const int twice = 2 * error;
        if (twice > -dy) {
            error -= dy;
            x += sx;
        }
        if (twice < dx) {
            error += dx;
            y += sy;
        }
    }
    return pixels;
}

QPolygon PolylinePixels(const QPolygon& points)
{
    QPolygon pixels;
    for (int i = 0; i + 1 < points.size(); ++i)
        pixels << LinePixels(points[i], points[i + 1]);
    return pixels;
}

TColor ChangeLight(TColor rgb, double factor)
{
    const TColor c = ColorToRGB(rgb);
    return FromComponents(ClampComponent(Component(c, 0) * factor), ClampComponent(Component(c, 8) * factor),
                          ClampComponent(Component(c, 16) * factor));
}

TColor BlendColors(TColor rgb1, TColor rgb2, double factor)
{
    const TColor a = ColorToRGB(rgb1);
    const TColor b = ColorToRGB(rgb2);
    const auto mix = [&](int shift) {
        return ClampComponent(Component(a, shift) * factor + Component(b, shift) * (1.0 - factor));
    };
    return FromComponents(mix(0), mix(8), mix(16));
}

TColor ChangeBrightness(TColor rgb, int delta)
{
    const TColor c = ColorToRGB(rgb);
    const auto shifted = [&](int shift) { return std::clamp(Component(c, shift) + delta, 0, 255); };
    return FromComponents(shifted(0), shifted(8), shifted(16));
}

}  // namespace qx
