#include "apps/qxsheet/demo_panels.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "qxbase/panels/panel_geometry.h"
#include "qxbase/panels/panel_registry.h"

namespace qxsheet {
namespace {

// The content area, filled with the panel's colour.
QRect FillContent(QPainter& canvas, const qx::TKSMSSink& panel)
{
    const QRect area = panel.AdjustClientRect();
    canvas.fillRect(area, qx::ColorToQColor(panel.GetColor()));
    return area;
}

}  // namespace

TDemoValueDisplay::TDemoValueDisplay(QWidget* parent) : TKSMSSink(parent)
{
    SetColor(qx::clBlack);
}

QString TDemoValueDisplay::GetDescription(const QMetaObject&)
{
    return QStringLiteral("Value display: a number with its unit");
}

void TDemoValueDisplay::SetValue(double Value)
{
    FValue = Value;
    update();
}

void TDemoValueDisplay::SetUnit(const QString& Value)
{
    FUnit = Value;
    update();
}

void TDemoValueDisplay::SetDecimals(int Value)
{
    FDecimals = std::clamp(Value, 0, 9);
    update();
}

QString TDemoValueDisplay::GetDisplayText() const
{
    const QString number = QString::number(FValue, 'f', FDecimals);
    return FUnit.isEmpty() ? number : QStringLiteral("%1 %2").arg(number, FUnit);
}

void TDemoValueDisplay::Paint(QPainter& Canvas)
{
    TKSMSSink::Paint(Canvas);
    const QRect area = FillContent(Canvas, *this);
    const QString text = GetDisplayText();
    QFont font = Canvas.font();
    font.setBold(true);
    // As large as half the height allows, smaller when the text would not fit the width.
    for (int size = std::max(8, area.height() / 2); size >= 8; --size) {
        font.setPixelSize(size);
        if (QFontMetrics(font).horizontalAdvance(text) <= area.width() - 8) break;
    }
    Canvas.setFont(font);
    Canvas.setPen(qx::ColorToQColor(qx::clLime));
    Canvas.drawText(area, Qt::AlignCenter, text);
}

TDemoLamp::TDemoLamp(QWidget* parent) : TKSMSSink(parent)
{
    SetColor(qx::clGray);
}

QString TDemoLamp::GetDescription(const QMetaObject&)
{
    return QStringLiteral("Lamp: on or off in a colour");
}

void TDemoLamp::SetOn(bool Value)
{
    FOn = Value;
    update();
}

void TDemoLamp::SetLampColor(qx::TColor Value)
{
    FLampColor = Value;
    update();
}

qx::TColor TDemoLamp::GetShownColor() const
{
    const qx::TColor rgb = qx::ColorToRGB(FLampColor);
    return FOn ? rgb : qx::ChangeLight(rgb, 1.0 / 3.0);
}

void TDemoLamp::Paint(QPainter& Canvas)
{
    TKSMSSink::Paint(Canvas);
    const QRect area = FillContent(Canvas, *this);
    const int diameter = std::max(0, std::min(area.width(), area.height()) - 8);
    QRect lamp(0, 0, diameter, diameter);
    lamp.moveCenter(area.center());
    Canvas.setRenderHint(QPainter::Antialiasing, true);
    Canvas.setPen(QPen(qx::ColorToQColor(qx::clBlack), 2));
    Canvas.setBrush(qx::ColorToQColor(GetShownColor()));
    Canvas.drawEllipse(lamp);
    Canvas.setRenderHint(QPainter::Antialiasing, false);
}

TDemoBarMeter::TDemoBarMeter(QWidget* parent) : TKSMSSink(parent)
{
    SetColor(qx::clSilver);
}

QString TDemoBarMeter::GetDescription(const QMetaObject&)
{
    return QStringLiteral("Bar meter: a value between two limits");
}

void TDemoBarMeter::SetValue(double Value)
{
    FValue = Value;
    update();
}

void TDemoBarMeter::SetMinimum(double Value)
{
    FMinimum = Value;
    update();
}

void TDemoBarMeter::SetMaximum(double Value)
{
    FMaximum = Value;
    update();
}

void TDemoBarMeter::SetBarColor(qx::TColor Value)
{
    FBarColor = Value;
    update();
}

double TDemoBarMeter::GetFraction() const
{
    const double fraction = (FValue - FMinimum) / (FMaximum - FMinimum);
    return std::isfinite(fraction) ? std::clamp(fraction, 0.0, 1.0) : 0.0;
}

void TDemoBarMeter::Paint(QPainter& Canvas)
{
    TKSMSSink::Paint(Canvas);
    const QRect area = FillContent(Canvas, *this);
    const QRect track = area.adjusted(6, 6, -6, -6);
    if (track.width() <= 0 || track.height() <= 0) return;
    Canvas.fillRect(track, qx::ColorToQColor(qx::clWhite));
    QRect bar = track;
    bar.setWidth(static_cast<int>(std::lround(track.width() * GetFraction())));
    Canvas.fillRect(bar, qx::ColorToQColor(FBarColor));
    Canvas.setPen(qx::ColorToQColor(qx::clBlack));
    Canvas.drawRect(track.adjusted(0, 0, -1, -1));
    Canvas.drawText(track, Qt::AlignCenter, QString::number(FValue, 'g', 4));
}

void RegisterDemoPanels()
{
    static const bool registered = [] {
        qx::RegisterKSPanels<TDemoValueDisplay, TDemoLamp, TDemoBarMeter>();
        return true;
    }();
    (void)registered;
}

}  // namespace qxsheet
