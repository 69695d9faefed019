#include <QPainter>
#include <algorithm>
#include <cmath>

#include "qxbase/chart/chart_surface_p.h"

namespace qx {

namespace {

// How far outside the plot a point may lie before it is pulled in: far enough that the slope of
// a joining line is kept for any sensible zoom, near enough for int and QPainter.
constexpr double OutsideMargin = 1.0e5;
constexpr int CursorMarkerSize = 7;

QColor ContrastTo(const QColor& Color)
{
    return qGray(Color.rgb()) < 128 ? QColor(0xE0, 0xE0, 0xE0) : QColor(0x20, 0x20, 0x20);
}

QColor Mix(const QColor& A, const QColor& B, double Share)
{
    const auto mix = [Share](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * Share)); };
    return QColor(mix(A.red(), B.red()), mix(A.green(), B.green()), mix(A.blue(), B.blue()));
}

int ToInt(double Pixel, double Low, double High)
{
    return static_cast<int>(std::lround(std::clamp(Pixel, Low - OutsideMargin, High + OutsideMargin)));
}

}  // namespace

void TQXChartSurface::Private::Paint(QPainter& Painter, const QRect& Area, const QFont& Font)
{
    Painter.save();
    Painter.setFont(Font);
    const QFontMetricsF metrics(Font, Painter.device());
    DoLayout(Area, metrics);
    Painter.setRenderHint(QPainter::Antialiasing, false);
    Painter.setClipRect(Area, Qt::IntersectClip);
    Painter.fillRect(Area, ColorToQColor(BackgroundColor));
    const bool multiple = DisplayStyle == dsMultipleBands;
    const QColor bandColor = ColorToQColor(BandColor);
    for (std::size_t band = 0; band < (multiple ? Layout.Plots.size() : 1); ++band)
        Painter.fillRect(Layout.Plots[band], bandColor);
    if (GridVisible) PaintGrid(Painter);
    for (const auto& curve : Curves) {
        if (curve->Visible && !curve->Samples.empty()) PaintCurve(Painter, *curve);
    }
    for (int band = 0; band < static_cast<int>(YAxes.size()); ++band) {
        if (Layout.YAxes[static_cast<std::size_t>(band)].Shown) PaintYAxis(Painter, band, metrics);
    }
    PaintXAxis(Painter, metrics);
    PaintCursors(Painter, metrics);
    PaintLegend(Painter);
    Painter.restore();
}

void TQXChartSurface::Private::PaintGrid(QPainter& Painter)
{
    Lines.clear();
    const bool multiple = DisplayStyle == dsMultipleBands;
    // One plot shows the horizontal lines of the active band only: several bands' lines at once
    // would be noise.
    const std::size_t firstBand = multiple ? 0 : static_cast<std::size_t>(ActiveBand);
    const std::size_t endBand = multiple ? Layout.Plots.size() : firstBand + 1;
    for (std::size_t band = firstBand; band < endBand; ++band) {
        const QRect& plot = Layout.Plots[band];
        const TQXAxisLayout& axis = Layout.YAxes[band];
        for (double tick : axis.Ticks) {
            const double y = std::round(axis.Mapping.AxisUnitToPixel(tick));
            if (y > plot.top() && y < plot.bottom())
                Lines.emplace_back(plot.left(), static_cast<int>(y), plot.right(), static_cast<int>(y));
        }
        for (double tick : Layout.XAxis.Ticks) {
            const double x = std::round(Layout.XAxis.Mapping.ToPixel(tick));
            if (x > plot.left() && x < plot.right())
                Lines.emplace_back(static_cast<int>(x), plot.top(), static_cast<int>(x), plot.bottom());
        }
    }
    const QColor band = ColorToQColor(BandColor);
    Painter.setPen(QPen(Mix(band, ContrastTo(band), 0.25), 0));
    Painter.drawLines(Lines.data(), static_cast<int>(Lines.size()));
}

void TQXChartSurface::Private::PaintCurve(QPainter& Painter, const TQXChartCurve& Curve)
{
    const auto band = static_cast<std::size_t>(BandOf(Curve));
    const QRect& plot = Layout.Plots[band];
    const TQXAxisMapping& yMap = Layout.YAxes[band].Mapping;
    DecimateCurve(Curve.Samples.data(), Curve.Samples.size(), Curve.X0, Curve.DX, Layout.XAxis.Mapping, plot.left(),
                  plot.width(), YAxes[band].Scale == yasDB, Decimation);

    Painter.save();
    Painter.setClipRect(plot, Qt::IntersectClip);
    Painter.setPen(QPen(ColorToQColor(Curve.Color), 0));
    const auto y = [&](double Value) { return ToInt(yMap.ToPixel(Value), plot.top(), plot.bottom()); };
    const auto push = [this](int X, int Y) {
        if (Points.empty() || Points.back() != QPoint(X, Y)) Points.emplace_back(X, Y);
    };
    const auto flush = [&] {
        if (Points.size() == 1) Painter.drawPoint(Points.front());
        if (Points.size() > 1) Painter.drawPolyline(Points.data(), static_cast<int>(Points.size()));
        Points.clear();
    };
    Points.clear();
    if (Decimation.LeftEdge.Valid)
        push(ToInt(Decimation.LeftEdge.Pixel, plot.left(), plot.right()), y(Decimation.LeftEdge.Value));
    for (std::size_t c = 0; c < Decimation.Columns.size(); ++c) {
        const TQXColumnRange& column = Decimation.Columns[c];
        if (column.Count == 0) continue;
        if (column.Min > column.Max) {
            flush();  // nothing drawable here: a gap in the curve
            continue;
        }
        // First, extremes, last: the vertical run of the column and the joins to its neighbours.
        const int x = plot.left() + static_cast<int>(c);
        push(x, y(column.First));
        push(x, y(column.Min));
        push(x, y(column.Max));
        push(x, y(column.Last));
    }
    if (Decimation.RightEdge.Valid)
        push(ToInt(Decimation.RightEdge.Pixel, plot.left(), plot.right()), y(Decimation.RightEdge.Value));
    flush();
    Painter.restore();
}

void TQXChartSurface::Private::PaintYAxis(QPainter& Painter, int Band, const QFontMetricsF& Metrics)
{
    const auto band = static_cast<std::size_t>(Band);
    const TQXAxisLayout& axis = Layout.YAxes[band];
    const QRect& plot = Layout.Plots[band];
    const QRect& rect = axis.Rect;
    const double lineHeight = Metrics.height();
    Painter.setPen(QPen(ColorToQColor(YAxes[band].Color), 0));
    const int x = rect.right();
    Painter.drawLine(x, plot.top(), x, plot.bottom());
    const double labelRight = x - TickLength - ChartPadding;
    for (std::size_t i = 0; i < axis.Ticks.size(); ++i) {
        const double y = std::round(axis.Mapping.AxisUnitToPixel(axis.Ticks[i]));
        if (y < plot.top() || y > plot.bottom()) continue;
        Painter.drawLine(x - TickLength, static_cast<int>(y), x, static_cast<int>(y));
        Painter.drawText(QRectF(rect.left(), y - lineHeight / 2.0, labelRight - rect.left(), lineHeight),
                         Qt::AlignRight | Qt::AlignVCenter, axis.Labels.value(static_cast<qsizetype>(i)));
    }
    const QString& title = YAxes[band].Title;
    if (title.isEmpty()) return;
    // Written upwards along the left edge of the axis, centred on the plot.
    Painter.save();
    Painter.translate(rect.left() + ChartPadding, plot.center().y());
    Painter.rotate(-90.0);
    const double length = plot.height();
    Painter.drawText(QRectF(-length / 2.0, 0.0, length, lineHeight), Qt::AlignHCenter | Qt::AlignTop,
                     Metrics.elidedText(title, Qt::ElideRight, length));
    Painter.restore();
}

void TQXChartSurface::Private::PaintXAxis(QPainter& Painter, const QFontMetricsF& Metrics)
{
    const TQXAxisLayout& axis = Layout.XAxis;
    const QRect& plot = Layout.Plots.back();
    const double lineHeight = Metrics.height();
    Painter.setPen(QPen(ContrastTo(ColorToQColor(BackgroundColor)), 0));
    const int y = plot.bottom() + 1;
    Painter.drawLine(plot.left(), y, plot.right(), y);
    const double labelTop = y + TickLength + 2;
    for (std::size_t i = 0; i < axis.Ticks.size(); ++i) {
        const double x = std::round(axis.Mapping.ToPixel(axis.Ticks[i]));
        if (x < plot.left() || x > plot.right()) continue;
        Painter.drawLine(static_cast<int>(x), y, static_cast<int>(x), y + TickLength);
        const QString label = axis.Labels.value(static_cast<qsizetype>(i));
        const double width = Metrics.horizontalAdvance(label) + 1.0;
        // Centred under the tick, but kept inside the area.
        const double left = std::clamp(x - width / 2.0, static_cast<double>(Layout.Area.left()),
                                       std::max<double>(Layout.Area.left(), Layout.Area.right() + 1 - width));
        Painter.drawText(QRectF(left, labelTop, width, lineHeight), Qt::AlignCenter, label);
    }
    if (XAxis.Title.isEmpty()) return;
    Painter.drawText(QRectF(plot.left(), labelTop + lineHeight + 2, plot.width(), lineHeight),
                     Qt::AlignHCenter | Qt::AlignTop, Metrics.elidedText(XAxis.Title, Qt::ElideRight, plot.width()));
}

void TQXChartSurface::Private::PaintCursors(QPainter& Painter, const QFontMetricsF& Metrics)
{
    if (!CursorsVisible) return;
    const QColor color = ContrastTo(ColorToQColor(BandColor));
    const bool multiple = DisplayStyle == dsMultipleBands;
    const std::size_t plots = multiple ? Layout.Plots.size() : 1;
    for (int cursor = 0; cursor < 2; ++cursor) {
        const TQXCursorReading& reading = Cursors[static_cast<std::size_t>(cursor)].Reading;
        if (!reading.Valid) continue;
        const double x = std::round(Layout.XAxis.Mapping.ToPixel(reading.X));
        const QRect& first = Layout.Plots.front();
        if (x < first.left() || x > first.right()) continue;
        const int column = static_cast<int>(x);
        // Cursor 1 solid, cursor 2 dashed, each with its number at the top.
        Painter.setPen(QPen(color, 0, cursor == 0 ? Qt::SolidLine : Qt::DashLine));
        for (std::size_t band = 0; band < plots; ++band)
            Painter.drawLine(column, Layout.Plots[band].top(), column, Layout.Plots[band].bottom());
        Painter.setPen(QPen(color, 0));
        Painter.drawText(QRectF(column + 3, first.top() + 1, Metrics.horizontalAdvance(QStringLiteral("2")) + 2,
                                Metrics.height()),
                         Qt::AlignLeft | Qt::AlignTop, QString::number(cursor + 1));
        const TQXChartCurve& curve = *Curves[static_cast<std::size_t>(reading.Curve)];
        const auto band = static_cast<std::size_t>(BandOf(curve));
        const QRect& plot = Layout.Plots[band];
        const double y = std::round(Layout.YAxes[band].Mapping.ToPixel(reading.Y));
        if (y < plot.top() || y > plot.bottom()) continue;
        const int half = CursorMarkerSize / 2;
        Painter.setBrush(ColorToQColor(curve.Color));
        Painter.drawRect(column - half, static_cast<int>(y) - half, CursorMarkerSize - 1, CursorMarkerSize - 1);
        Painter.setBrush(Qt::NoBrush);
    }
}

void TQXChartSurface::Private::PaintLegend(QPainter& Painter)
{
    const QColor text = ContrastTo(ColorToQColor(BackgroundColor));
    for (std::size_t i = 0; i < Layout.LegendEntries.size(); ++i) {
        const TQXLegendEntry& entry = Layout.LegendEntries[i];
        const QRect& rect = entry.Rect;
        const int y = rect.center().y();
        Painter.setPen(QPen(ColorToQColor(Curves[static_cast<std::size_t>(entry.Curve)]->Color), 2));
        Painter.drawLine(rect.left(), y, rect.left() + LegendLineLength - 2, y);
        Painter.setPen(QPen(text, 0));
        const int textLeft = rect.left() + LegendLineLength + ChartPadding;
        Painter.drawText(QRect(textLeft, rect.top(), rect.right() - textLeft + 1, rect.height()),
                         Qt::AlignLeft | Qt::AlignVCenter, LayoutInput.LegendTexts.value(static_cast<qsizetype>(i)));
    }
}

}  // namespace qx
