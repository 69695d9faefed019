#include "apps/qxsheet/demo_panels.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "apps/qxsheet/data_panels.h"
#include "apps/qxsheet/demo_clients.h"
#include "qxbase/framework/exception.h"
#include "qxbase/panels/panel_geometry.h"
#include "qxbase/panels/panel_registry.h"

namespace qxsheet {
namespace {

// Far from the panel base's own identifiers, so a look at FIdentifier never confuses the two.
enum : std::uint32_t { PropValue = 100, PropOn, PropLampColor };

qx::Variant OffOnList()
{
    qx::Variant list = qx::Variant::CreateArray(0, 1, qx::varVariant);
    list.SetArrayElement(0, QStringLiteral("Off"));
    list.SetArrayElement(1, QStringLiteral("On"));
    return list;
}

// A written value as a number; false for one that has none (a text that is not a number, Null).
bool ToNumber(const qx::Variant& Value, double& Number)
{
    try {
        Number = Value.ToDouble();
        return std::isfinite(Number);
    } catch (const qx::Exception&) {
        return false;
    }
}

// "On" and "Off" by their texts, anything else with a number by that number not being 0.
bool ToOnOff(const qx::Variant& Value, bool& On)
{
    if (Value.VarType() == qx::varOleStr) {
        const QString text = Value.ToString();
        if (text != QLatin1String("On") && text != QLatin1String("Off"))
            return false;
        On = text == QLatin1String("On");
        return true;
    }
    double number = 0.0;
    if (!ToNumber(Value, number))
        return false;
    On = number != 0.0;
    return true;
}

// A bus property backed by a double field: reads give a double, writes take anything with a
// number and leave the field alone otherwise.
qx::TQXPropertyGetSet DoubleAccess(TDemoPanel* Panel, double* Field)
{
    return [Panel, Field](qx::TQXPropertyItem*, bool Get, bool, qx::Variant& Value) {
        if (Get) {
            Value = *Field;
            return qx::S_OK;
        }
        double number = 0.0;
        if (!ToNumber(Value, number))
            return qx::E_FAIL;
        *Field = number;
        Panel->update();
        return qx::S_OK;
    };
}

}  // namespace

QString ColorTypeInfo()
{
    return QStringLiteral("TColor");
}

TDemoPanel::TDemoPanel(QWidget* parent) : TKSMSSink(parent) {}

void TDemoPanel::SetPanelEnable(bool Value)
{
    TKSMSSink::SetPanelEnable(Value);
    update();
}

QRect FillPanelContent(QPainter& Canvas, const qx::TKSMSSink& Panel, qx::TColor Face)
{
    const QRect area = Panel.AdjustClientRect();
    Canvas.fillRect(area, qx::ColorToQColor(Face));
    return area;
}

void PaintDisabledVeil(QPainter& Canvas, const QRect& Area, const qx::TKSMSSink& Panel)
{
    if (Panel.GetPanelEnabled())
        return;
    Canvas.fillRect(Area, QColor(128, 128, 128, 170));
    Canvas.fillRect(Area, QBrush(QColor(64, 64, 64), Qt::BDiagPattern));
}

void TDemoPanel::SetCaption(const QString& Value)
{
    TKSMSSink::SetCaption(Value);
    TQXControlSource::SetObjectDescription(Value);
}

void TDemoPanel::ValueChanged(const QString& PropertyName)
{
    update();
    if (!GetIsLoaded())
        EventFirePropertyUpdated(PropertyName);
}

TDemoValueDisplay::TDemoValueDisplay(QWidget* parent) : TDemoPanel(parent)
{
    SetColor(qx::clBlack);
    // The base constructor could only register the base's properties.
    ClearProperties();
}

QString TDemoValueDisplay::GetDescription(const QMetaObject&)
{
    return QStringLiteral("Value display: a number with its unit");
}

void TDemoValueDisplay::ClearProperties()
{
    TDemoPanel::ClearProperties();
    RegisterProperty(QStringLiteral("Displayed value"), QStringLiteral("Value"), DoubleAccess(this, &FValue),
                     qx::varDouble, QString(), false, 0.0, 0.0, PropValue);
}

void TDemoValueDisplay::SetValue(double Value)
{
    if (Value == FValue)
        return;
    FValue = Value;
    ValueChanged(QStringLiteral("Value"));
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
    const QRect area = FillPanelContent(Canvas, *this, qx::clBlack);
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
    PaintDisabledVeil(Canvas, area, *this);
}

TDemoLamp::TDemoLamp(QWidget* parent) : TDemoPanel(parent)
{
    SetColor(qx::clGray);
    ClearProperties();
}

QString TDemoLamp::GetDescription(const QMetaObject&)
{
    return QStringLiteral("Lamp: on or off in a colour");
}

void TDemoLamp::ClearProperties()
{
    TDemoPanel::ClearProperties();
    RegisterProperty(
        QStringLiteral("Lamp on"), QStringLiteral("On"),
        [this](qx::TQXPropertyItem*, bool Get, bool, qx::Variant& Value) {
            if (Get) {
                Value = qx::Variant(std::int32_t{FOn ? 1 : 0});
                return qx::S_OK;
            }
            if (!ToOnOff(Value, FOn))
                return qx::E_FAIL;
            update();
            return qx::S_OK;
        },
        qx::varQXEnumeration, OffOnList(), PropOn);
    RegisterProperty(
        QStringLiteral("Lamp colour"), QStringLiteral("LampColor"),
        [this](qx::TQXPropertyItem*, bool Get, bool, qx::Variant& Value) {
            if (Get) {
                Value = qx::Variant(std::int32_t{FLampColor});
                return qx::S_OK;
            }
            try {
                FLampColor = Value.ToInteger();
            } catch (const qx::Exception&) {
                return qx::E_FAIL;
            }
            update();
            return qx::S_OK;
        },
        qx::varInteger, ColorTypeInfo(), false, 0.0, 0.0, PropLampColor);
}

void TDemoLamp::SetOn(bool Value)
{
    if (Value == FOn)
        return;
    FOn = Value;
    ValueChanged(QStringLiteral("On"));
}

void TDemoLamp::SetLampColor(qx::TColor Value)
{
    if (Value == FLampColor)
        return;
    FLampColor = Value;
    ValueChanged(QStringLiteral("LampColor"));
}

qx::TColor TDemoLamp::GetShownColor() const
{
    const qx::TColor rgb = qx::ColorToRGB(FLampColor);
    return FOn ? rgb : qx::ChangeLight(rgb, 1.0 / 3.0);
}

void TDemoLamp::Paint(QPainter& Canvas)
{
    TKSMSSink::Paint(Canvas);
    const QRect area = FillPanelContent(Canvas, *this, qx::clGray);
    const int diameter = std::max(0, std::min(area.width(), area.height()) - 8);
    QRect lamp(0, 0, diameter, diameter);
    lamp.moveCenter(area.center());
    Canvas.setRenderHint(QPainter::Antialiasing, true);
    Canvas.setPen(QPen(qx::ColorToQColor(qx::clBlack), 2));
    Canvas.setBrush(qx::ColorToQColor(GetShownColor()));
    Canvas.drawEllipse(lamp);
    Canvas.setRenderHint(QPainter::Antialiasing, false);
    PaintDisabledVeil(Canvas, area, *this);
}

TDemoBarMeter::TDemoBarMeter(QWidget* parent) : TDemoPanel(parent)
{
    SetColor(qx::clSilver);
    ClearProperties();
}

QString TDemoBarMeter::GetDescription(const QMetaObject&)
{
    return QStringLiteral("Bar meter: a value between two limits");
}

void TDemoBarMeter::ClearProperties()
{
    TDemoPanel::ClearProperties();
    RegisterProperty(QStringLiteral("Bar value"), QStringLiteral("Value"), DoubleAccess(this, &FValue),
                     qx::varDouble, QString(), false, 0.0, 0.0, PropValue);
}

void TDemoBarMeter::SetValue(double Value)
{
    if (Value == FValue)
        return;
    FValue = Value;
    ValueChanged(QStringLiteral("Value"));
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
    const QRect area = FillPanelContent(Canvas, *this, qx::clSilver);
    const QRect track = area.adjusted(6, 6, -6, -6);
    if (track.width() > 0 && track.height() > 0) {
        Canvas.fillRect(track, qx::ColorToQColor(qx::clWhite));
        QRect bar = track;
        bar.setWidth(static_cast<int>(std::lround(track.width() * GetFraction())));
        Canvas.fillRect(bar, qx::ColorToQColor(FBarColor));
        Canvas.setPen(qx::ColorToQColor(qx::clBlack));
        Canvas.drawRect(track.adjusted(0, 0, -1, -1));
        Canvas.drawText(track, Qt::AlignCenter, QString::number(FValue, 'g', 4));
    }
    PaintDisabledVeil(Canvas, area, *this);
}

TDemoNotePanel::TDemoNotePanel(QWidget* parent) : TKSControlerPanelBase(parent) {}

QString TDemoNotePanel::GetDescription(const QMetaObject&)
{
    return QStringLiteral("Note: a text on the page");
}

void TDemoNotePanel::SetText(const QString& Value)
{
    FText = Value;
    update();
}

void TDemoNotePanel::Paint(QPainter& Canvas)
{
    TKSControlerPanelBase::Paint(Canvas);
    QFont font = Canvas.font();
    font.setPixelSize(13);
    Canvas.setFont(font);
    Canvas.setPen(qx::ColorToQColor(qx::clBlack));
    // Below the caption in design mode, and clear of the grabber.
    const QRect area = rect().adjusted(6, GetDesignMode() ? 14 : 6, -8, -8);
    Canvas.drawText(area, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap, FText);
}

void RegisterDemoPanels()
{
    static const bool registered = [] {
        qx::RegisterKSPanels<TDemoValueDisplay, TDemoLamp, TDemoBarMeter, TDemoSwitchPanel, TDemoButtonPanel,
                             TDemoNotePanel>();
        RegisterDataPanels();
        return true;
    }();
    (void)registered;
}

}  // namespace qxsheet
