#include "apps/qxsheet/demo_clients.h"

#include <QFont>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <algorithm>

#include "apps/qxsheet/demo_panels.h"
#include "qxbase/framework/exception.h"

namespace qxsheet {
namespace {

bool IsNumber(const qx::Variant& Value)
{
    switch (Value.VarType()) {
    case qx::varSmallint:
    case qx::varInteger:
    case qx::varSingle:
    case qx::varDouble:
    case qx::varByte:
    case qx::varLongWord:
    case qx::varInt64:
        return true;
    default:
        return false;
    }
}

bool IsRunTimeLeftClick(const qx::TKSMSSink& Panel, const QMouseEvent& Event)
{
    return !Panel.GetDesignMode() && Event.button() == Qt::LeftButton;
}

}  // namespace

bool SameBindingValue(const qx::Variant& A, const qx::Variant& B)
{
    if (A == B)
        return true;
    return IsNumber(A) && IsNumber(B) && A.ToDouble() == B.ToDouble();
}

TDemoClientPanel::TDemoClientPanel(QWidget* parent) : TKSSourceControlClient(parent) {}

bool TDemoClientPanel::CanClientHandle(qx::TKSControlSourcePropListItem* Item, qx::TQXPropertyHandle Handle,
                                       const QString& Name)
{
    Q_UNUSED(Handle);
    if (Name == QLatin1String("ShowPropertypage"))
        return false;
    // A panel acting on itself would write into its own clicks.
    const qx::TQXControlSource* self = this;
    return Item == nullptr || (Item->FSource != self && GetPanelByName(Item->FPanelName) != self);
}

bool TDemoClientPanel::CanClientAdd(qx::TKSControlSourcePropListItem* Item, qx::TQXPropertyHandle Handle,
                                    const QString& Name)
{
    return CanClientHandle(Item, Handle, Name);
}

void TDemoClientPanel::SetPanelEnable(bool Value)
{
    TKSSourceControlClient::SetPanelEnable(Value);
    update();
}

void TDemoClientPanel::SetCaption(const QString& Value)
{
    TKSSourceControlClient::SetCaption(Value);
    TQXControlSource::SetObjectDescription(Value);
}

int TDemoClientPanel::WriteBindings(bool Active)
{
    int taken = 0;
    qx::TKSControlSourcePropList& bindings = GetPropInputList();
    // A write may make a source drop properties, and the client its bindings: index afresh.
    for (std::size_t i = 0; i < bindings.size(); ++i) {
        qx::TKSControlSourcePropListItem& item = *bindings[i];
        if (item.FSource == nullptr || item.FPropertyHandle == 0)
            continue;
        const qx::Variant value = Active ? item.FActiveValue : item.FPassiveValue;
        const QString target = item.FPanelName + QStringLiteral("->") + item.FPropertyName;
        try {
            if (item.FSource->SetPropertyValue(this, item.FPropertyHandle, value))
                ++taken;
        } catch (const qx::Exception& e) {
            EventFire(0, qx::qxecErrorWarningLevel,
                      QStringLiteral("Cannot write %1: %2").arg(target, e.Message()));
        }
    }
    return taken;
}

QRect TDemoClientPanel::PaintFace(QPainter& Canvas)
{
    const QRect area = FillPanelContent(Canvas, *this, qx::clBtnFace);
    const int captionHeight = std::min(area.height() / 3, 18);
    const QRect caption(area.left(), area.top() + 2, area.width(), captionHeight);
    Canvas.setPen(qx::ColorToQColor(qx::clBlack));
    Canvas.drawText(caption, Qt::AlignCenter, GetCaption());
    return area.adjusted(0, captionHeight + 2, 0, 0);
}

TDemoSwitchPanel::TDemoSwitchPanel(QWidget* parent) : TDemoClientPanel(parent) {}

QString TDemoSwitchPanel::GetDescription(const QMetaObject&)
{
    return QStringLiteral("Switch: sets its properties to their active or passive values");
}

bool TDemoSwitchPanel::Toggle()
{
    if (!GetPanelEnabled())
        return false;
    FOn = !FOn;
    update();
    WriteBindings(FOn);
    return true;
}

void TDemoSwitchPanel::LoadFinished()
{
    TDemoClientPanel::LoadFinished();
    FollowFirstBinding();
}

void TDemoSwitchPanel::CallSetup()
{
    TDemoClientPanel::CallSetup();
    FollowFirstBinding();
}

void TDemoSwitchPanel::ShowPropertyPage()
{
    // The page is modal: what runs meanwhile may delete the switch.
    const QPointer<TDemoSwitchPanel> self(this);
    TDemoClientPanel::ShowPropertyPage();
    if (self)
        FollowFirstBinding();
}

void TDemoSwitchPanel::DoOnEventlinkValueUpdated(qx::TQXEventLink* Sender, std::uint32_t Handle)
{
    TDemoClientPanel::DoOnEventlinkValueUpdated(Sender, Handle);
    FollowFirstBinding();
}

void TDemoSwitchPanel::FollowFirstBinding()
{
    const qx::TKSControlSourcePropList& bindings = GetPropInputList();
    if (bindings.empty() || bindings.front()->FSource == nullptr)
        return;
    const qx::TKSControlSourcePropListItem& first = *bindings.front();
    // Active wins where both values are the same.
    if (SameBindingValue(first.FActualValue, first.FActiveValue))
        FOn = true;
    else if (SameBindingValue(first.FActualValue, first.FPassiveValue))
        FOn = false;
    update();
}

void TDemoSwitchPanel::mousePressEvent(QMouseEvent* event)
{
    if (!IsRunTimeLeftClick(*this, *event)) {
        TDemoClientPanel::mousePressEvent(event);
        return;
    }
    Toggle();
    event->accept();
}

void TDemoSwitchPanel::Paint(QPainter& Canvas)
{
    TDemoClientPanel::Paint(Canvas);
    const QRect below = PaintFace(Canvas);
    const int height = std::clamp(below.height() - 8, 8, 28);
    QRect track(0, 0, std::min(below.width() - 8, height * 2), height);
    track.moveCenter(below.center());
    const QColor on = qx::ColorToQColor(qx::clLime);
    const QColor off = qx::ColorToQColor(qx::clGray);
    Canvas.setRenderHint(QPainter::Antialiasing, true);
    Canvas.setPen(QPen(qx::ColorToQColor(qx::clBlack), 1));
    Canvas.setBrush(FOn ? on : off);
    Canvas.drawRoundedRect(track, height / 2.0, height / 2.0);
    QRect knob(0, 0, height - 4, height - 4);
    knob.moveCenter(FOn ? QPoint(track.right() - height / 2, track.center().y())
                        : QPoint(track.left() + height / 2, track.center().y()));
    Canvas.setBrush(qx::ColorToQColor(qx::clWhite));
    Canvas.drawEllipse(knob);
    Canvas.setRenderHint(QPainter::Antialiasing, false);
    PaintDisabledVeil(Canvas, AdjustClientRect(), *this);
}

TDemoButtonPanel::TDemoButtonPanel(QWidget* parent) : TDemoClientPanel(parent) {}

QString TDemoButtonPanel::GetDescription(const QMetaObject&)
{
    return QStringLiteral("Button: sets its properties to their active values");
}

bool TDemoButtonPanel::Press()
{
    if (!GetPanelEnabled())
        return false;
    WriteBindings(true);
    return true;
}

void TDemoButtonPanel::mousePressEvent(QMouseEvent* event)
{
    if (!IsRunTimeLeftClick(*this, *event)) {
        TDemoClientPanel::mousePressEvent(event);
        return;
    }
    FDown = GetPanelEnabled();
    update();
    Press();
    event->accept();
}

void TDemoButtonPanel::mouseReleaseEvent(QMouseEvent* event)
{
    if (!IsRunTimeLeftClick(*this, *event)) {
        TDemoClientPanel::mouseReleaseEvent(event);
        return;
    }
    FDown = false;
    update();
    event->accept();
}

void TDemoButtonPanel::Paint(QPainter& Canvas)
{
    TDemoClientPanel::Paint(Canvas);
    const QRect area = FillPanelContent(Canvas, *this, qx::clBtnFace);
    const QRect face = area.adjusted(4, 4, -5, -5);
    if (face.width() > 0 && face.height() > 0) {
        const QColor light = qx::ColorToQColor(qx::clWhite);
        const QColor dark = qx::ColorToQColor(qx::clGray);
        Canvas.setPen(FDown ? dark : light);
        Canvas.drawLine(face.topLeft(), face.topRight());
        Canvas.drawLine(face.topLeft(), face.bottomLeft());
        Canvas.setPen(FDown ? light : dark);
        Canvas.drawLine(face.bottomLeft(), face.bottomRight());
        Canvas.drawLine(face.topRight(), face.bottomRight());
        QFont font = Canvas.font();
        font.setBold(true);
        Canvas.setFont(font);
        Canvas.setPen(qx::ColorToQColor(qx::clBlack));
        Canvas.drawText(face.translated(FDown ? 1 : 0, FDown ? 1 : 0), Qt::AlignCenter | Qt::TextWordWrap,
                        GetCaption());
    }
    PaintDisabledVeil(Canvas, area, *this);
}

}  // namespace qxsheet
