// Drawing of the panel frame: the classic caption strip with its gradient, hatch, grip and raised
// frame; the themed look of the new design; the selection blink.
#include <QFontMetrics>
#include <QImage>
#include <QPaintEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>

#include "qxbase/panels/panel_base.h"
#include "qxbase/panels/panel_geometry.h"

namespace qx {
namespace {

// Single pixels, so that every line lands where the system's line drawing puts it.
void DrawPixels(QPainter& canvas, const QPolygon& pixels, TColor color)
{
    if (pixels.isEmpty())
        return;
    canvas.setPen(QPen(ColorToQColor(color), 1));
    canvas.drawPoints(pixels);
}

void DrawLine(QPainter& canvas, const QPoint& from, const QPoint& to, TColor color)
{
    DrawPixels(canvas, LinePixels(from, to), color);
}

// A dashed cosmetic pen: 18 pixels on, 6 off; the gaps take the brush colour as an opaque
// background does.
void DrawDashed(QPainter& canvas, const QPolygon& pixels, TColor pen, TColor brush)
{
    QPolygon dashes;
    QPolygon gaps;
    for (int i = 0; i < pixels.size(); ++i)
        (i % 24 < 18 ? dashes : gaps) << pixels[i];
    DrawPixels(canvas, dashes, pen);
    DrawPixels(canvas, gaps, brush);
}

}  // namespace

void TKSMSSink::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event);
    QPainter canvas(this);
    canvas.setRenderHint(QPainter::Antialiasing, false);
    // The panel is opaque: its colour fills what the frame leaves.
    canvas.fillRect(rect(), ColorToQColor(FColor));
    canvas.save();
    Paint(canvas);
    canvas.restore();
    if (FDesignMode && FIsSelected)
        DrawSelectionBlink(canvas);
}

void TKSMSSink::Paint(QPainter& Canvas)
{
    if (!FDesignMode)
        return;
    Canvas.save();
    if (CNewDesign)
        PaintThemed(Canvas);
    else
        PaintClassic(Canvas);
    Canvas.restore();
}

void TKSMSSink::PaintClassic(QPainter& Canvas)
{
    const QRect client = rect();
    const int l = client.x();
    const int t = client.y();
    const int r = client.x() + client.width();
    const int b = client.y() + client.height();
    const bool gradient = GetGradientCaptions();
    const TColor caption = FIsSelected ? clActiveCaption : clInactiveCaption;
    const TColor gradientEnd = FIsSelected ? clGradientActiveCaption : clGradientInactiveCaption;

    QImage strip(256, 1, QImage::Format_RGB32);
    for (int i = 0; i < 256; ++i) {
        const TColor column = gradient ? BlendColors(caption, gradientEnd, i / 255.0) : caption;
        strip.setPixelColor(i, 0, ColorToQColor(column));
    }
    Canvas.setRenderHint(QPainter::SmoothPixmapTransform, false);
    Canvas.drawImage(QRect(l, t, r - l, 11), strip);

    TColor light = cl3DLight;
    TColor dark = clBtnShadow;
    if (!gradient)
        light = dark = FIsSelected ? clActiveBorder : clInactiveBorder;

    Canvas.fillRect(QRect(l, b - 10, r - l, 10), ColorToQColor(clSilver));

    Canvas.setFont(font());
    Canvas.setPen(ColorToQColor(clCaptionText));
    Canvas.drawText(QPoint(12, 1 + QFontMetrics(font()).ascent()), FCaption);

    // The hatch marks the popup button.
    const int w = width();
    const TColor darker = ChangeBrightness(caption, -40);
    const TColor lighter = ChangeBrightness(caption, 40);
    for (int y = 3; y <= 9; ++y) {
        if (y % 2 == 0)
            DrawLine(Canvas, QPoint(w - 18, y), QPoint(w - 10, y), darker);
        else
            DrawLine(Canvas, QPoint(w - 19, y), QPoint(w - 11, y), lighter);
    }

    if (FResizable) {
        if (FCutOutDownEnabled) {
            for (const int start : {r - 11, r - 13, r - 17})
                DrawLine(Canvas, QPoint(start, b - 3), QPoint(start + 12, b - 15), clSilver);
            for (const int start : {r - 12, r - 14, r - 16})
                DrawLine(Canvas, QPoint(start, b - 3), QPoint(start + 12, b - 15), clGray);
        } else {
            const auto stroke = [&](int start, TColor color) {
                DrawLine(Canvas, QPoint(start, b - 3), QPoint(r - 2, b - 3 - (r - 2 - start)), color);
            };
            for (const int start : {r - 9, r - 6, r - 3})
                stroke(start, clSilver);
            for (const int start : {r - 8, r - 5})
                stroke(start, clGray);
        }
    }

    CutOutFrame3D(Canvas, client, light, dark, 1);
}

// The themed parts: header sections for the caption and bottom strips, bevelled button panels
// for the two bottom corners and the style's down arrow for the popup button.
void TKSMSSink::PaintThemed(QPainter& Canvas)
{
    QStyle* style = this->style();
    const QRect client = rect();
    const int l = client.x();
    const int t = client.y();
    const int r = client.x() + client.width();
    const int b = client.y() + client.height();

    QStyleOptionHeader strip;
    strip.initFrom(this);
    strip.state |= FIsSelected ? QStyle::State_On | QStyle::State_Sunken : QStyle::State_Raised;
    strip.rect = QRect(l, t, r - l, 12);
    style->drawControl(QStyle::CE_HeaderSection, &strip, &Canvas, this);
    strip.rect = QRect(l, b - 10, r - l, 10);
    style->drawControl(QStyle::CE_HeaderSection, &strip, &Canvas, this);

    if (width() > 30) {
        const int pw = GetPartWidth();
        QStyleOptionButton corner;
        corner.initFrom(this);
        corner.state |= QStyle::State_Raised;
        corner.rect = QRect(l, b - 10, pw, 10);
        style->drawPrimitive(QStyle::PE_PanelButtonBevel, &corner, &Canvas, this);
        corner.rect = QRect(r - pw, b - 10, pw, 10);
        style->drawPrimitive(QStyle::PE_PanelButtonBevel, &corner, &Canvas, this);
    }

    Canvas.setFont(font());
    Canvas.setPen(ColorToQColor(clCaptionText));
    Canvas.drawText(QPoint(3, 1 + QFontMetrics(font()).ascent()), FCaption);

    QStyleOption arrow;
    arrow.initFrom(this);
    arrow.rect = QRect(r - 20, t + 2, 8, 9);
    style->drawPrimitive(QStyle::PE_IndicatorArrowDown, &arrow, &Canvas, this);
}

void TKSMSSink::CutOutFrame3D(QPainter& Canvas, const QRect& Rect, TColor LightColor, TColor DarkColor, int Width)
{
    for (int i = Width; i >= 1; --i) {
        QPolygon points;
        const int count = PolyFrameIn(Rect, points, false, i, i, false);
        DrawPixels(Canvas, PolylinePixels(points), DarkColor);
        // The left side and the top in the light colour raise the frame.
        DrawPixels(Canvas, PolylinePixels(points.mid(0, count / 2)), LightColor);
    }
}

void TKSMSSink::DrawSelectionBlink(QPainter& Canvas)
{
    QPolygon points;
    GetPolyFrame(points, false, 0, 0, false);
    if (points.isEmpty())
        return;
    const TColor pen = ChangeLight(clWhite, FBlinkLevel);
    const TColor brush = ChangeLight(clWhite, 1.0 - FBlinkLevel);
    DrawDashed(Canvas, PolylinePixels(points), pen, brush);
    DrawDashed(Canvas, LinePixels(points.last(), points.first()), pen, brush);
}

}  // namespace qx
