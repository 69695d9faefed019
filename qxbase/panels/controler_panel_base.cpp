#include "qxbase/panels/controler_panel_base.h"

#include <QFont>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

#include "qxbase/panels/panel_base.h"
#include "qxbase/panels/panel_geometry.h"

namespace qx {

namespace {

bool ToMouseButton(Qt::MouseButton button, TMouseButton& result)
{
    switch (button) {
    case Qt::LeftButton: result = mbLeft; return true;
    case Qt::RightButton: result = mbRight; return true;
    case Qt::MiddleButton: result = mbMiddle; return true;
    default: return false;
    }
}

QRect PinnerRect(const QRect& client)
{
    return QRect(QPoint(client.x() + client.width() - 16, client.y() + 2),
                 QPoint(client.x() + client.width() - 3, client.y() + 10));
}

}  // namespace

bool IsInGrabberArea(const QPoint& point, const QSize& size)
{
    return point.x() >= size.width() - 7 && point.x() <= size.width() && point.y() >= size.height() - 7 &&
           point.y() <= size.height();
}

bool IsInPinnerArea(const QPoint& point, const QRect& client) { return PinnerRect(client).contains(point); }

TKSControlerPanelBase::TKSControlerPanelBase(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setCursor(Qt::PointingHandCursor);
    QFont font(QStringLiteral("Small Fonts"));
    font.setPointSize(6);
    setFont(font);

    FSelectionTimer = new QTimer(this);
    FSelectionTimer->setInterval(100);
    connect(FSelectionTimer, &QTimer::timeout, this, [this] { DoOnSelectionTimer(); });
}

TKSControlerPanelBase::~TKSControlerPanelBase()
{
    // Listeners still meet a whole panel when they are told it goes away.
    BeginDestruction();
}

QString TKSControlerPanelBase::GetDescription(const QMetaObject& Class) { return TKSMSSink::GetDescription(Class); }

QImage TKSControlerPanelBase::GetClassIcon() { return TKSMSSink::GetClassIcon(); }

QString TKSControlerPanelBase::GetDependencies() { return TKSMSSink::GetDependencies(); }

void TKSControlerPanelBase::SetCaption(const QString& Value)
{
    FCaption = Value;
    update();
}

void TKSControlerPanelBase::SetColor(TColor Value)
{
    FColor = Value;
    update();
}

void TKSControlerPanelBase::SetIsPinned(bool Value)
{
    FIsPinned = Value;
    update();
}

void TKSControlerPanelBase::SetEnableRunTimePropPage(bool Value) { FEnableRunTimePropPage = Value; }

void TKSControlerPanelBase::SetDesignMode(bool Value)
{
    FDesignMode = Value;
    if (!Value) {
        SetIsSelected(false);
        FMoving = false;
        FResizing = false;
    }
    update();
}

void TKSControlerPanelBase::SetIsSelected(bool Value)
{
    if (Value == FIsSelected)
        return;
    FIsSelected = Value;
    FBlinkLevel = 1.0F;
    FBlinkStep = 0.2F;
    if (Value)
        FSelectionTimer->start();
    else
        FSelectionTimer->stop();
    update();
}

void TKSControlerPanelBase::SetGridSpacingX(int Value)
{
    if (Value > 0)
        FGridSpacingX = Value;
}

void TKSControlerPanelBase::SetGridSpacingY(int Value)
{
    if (Value > 0)
        FGridSpacingY = Value;
}

bool TKSControlerPanelBase::IsInGrabber(const QPoint& Point) const { return IsInGrabberArea(Point, size()); }

bool TKSControlerPanelBase::IsInPinner(const QPoint& Point) const { return IsInPinnerArea(Point, rect()); }

void TKSControlerPanelBase::SetBounds(int Left, int Top, int Width, int Height)
{
    // A refused size keeps the place too (a snapped resize moves the corner it does not drag).
    if (!GetIsLoading() && !CanResize(Width, Height))
        return;
    setGeometry(Left, Top, Width, Height);
}

bool TKSControlerPanelBase::CanResize(int& NewWidth, int& NewHeight)
{
    return NewWidth >= ControlerPanelMinSize.width() && NewHeight >= ControlerPanelMinSize.height();
}

void TKSControlerPanelBase::CallSetup() {}

void TKSControlerPanelBase::DoOnSelectionTimer()
{
    if (!FDesignMode || !FIsSelected)
        return;
    FBlinkLevel -= FBlinkStep;
    if (!(FBlinkLevel > 0.1F && FBlinkLevel < 1.0F))
        FBlinkStep = -FBlinkStep;
    update();
}

void TKSControlerPanelBase::MouseDown(TMouseButton Button, TShiftState Shift, int X, int Y)
{
    if (!FDesignMode || Button != mbLeft)
        return;
    SetIsSelected(Shift.Contains(ssCtrl) ? !FIsSelected : true);
    const QPoint at(X, Y);
    if (IsInPinner(at)) {
        SetIsPinned(!FIsPinned);
        return;
    }
    FDownScreen = mapToGlobal(at);
    FDownBounds = geometry();
    FResizing = IsInGrabber(at);
    FMoving = !FResizing;
}

void TKSControlerPanelBase::MouseMove(TShiftState Shift, int X, int Y)
{
    Q_UNUSED(Shift);
    if (!FDesignMode)
        return;
    if (FMoving || FResizing)
        DragTo(X, Y);
    else
        setCursor(IsInGrabber(QPoint(X, Y)) ? Qt::SizeFDiagCursor : Qt::PointingHandCursor);
}

void TKSControlerPanelBase::MouseUp(TMouseButton Button, TShiftState Shift, int X, int Y)
{
    Q_UNUSED(Shift);
    if (!FDesignMode || Button != mbLeft)
        return;
    if (FMoving || FResizing)
        DragTo(X, Y);
    FMoving = false;
    FResizing = false;
}

// Moves or resizes by the mouse's travel on the screen since the press, snapped as the full
// panels snap (truncating for moves, rounding for resizes).
void TKSControlerPanelBase::DragTo(int X, int Y)
{
    const QPoint delta = mapToGlobal(QPoint(X, Y)) - FDownScreen;
    if (FResizing) {
        QRect bounds = ResizedBounds(7, FDownBounds, delta.x(), delta.y());
        if (FSnapToGrid)
            bounds = SnapResizedBounds(bounds, FGridSpacingX, FGridSpacingY);
        SetBounds(bounds.x(), bounds.y(), bounds.width(), bounds.height());
        return;
    }
    QPoint topLeft = FDownBounds.topLeft() + delta;
    if (FSnapToGrid)
        topLeft = SnapMovedPosition(topLeft, FGridSpacingX, FGridSpacingY);
    if (topLeft != pos())
        move(topLeft);
}

void TKSControlerPanelBase::Paint(QPainter& Canvas)
{
    Canvas.fillRect(rect(), ColorToQColor(FColor));
    if (!FDesignMode)
        return;
    const QColor mark = ColorToQColor(clBtnShadow);
    Canvas.setPen(ColorToQColor(clBtnText));
    Canvas.drawText(QRect(3, 1, width() - 22, 12), Qt::AlignLeft | Qt::AlignTop, FCaption);
    Canvas.setPen(mark);
    Canvas.drawRect(rect().adjusted(0, 0, -1, -1));
    const QRect pinner = PinnerRect(rect());
    Canvas.setBrush(FIsPinned ? mark : ColorToQColor(FColor));
    Canvas.drawRect(pinner.adjusted(0, 0, -1, -1));
    Canvas.fillRect(QRect(width() - 7, height() - 7, 7, 7), mark);
}

void TKSControlerPanelBase::DrawSelectionBlink(QPainter& Canvas) const
{
    const QRect frame = rect().adjusted(0, 0, -1, -1);
    Canvas.setBrush(Qt::NoBrush);
    // The gaps of the dashes show the complementary shade, as an opaque dashed pen would.
    Canvas.setPen(QPen(ColorToQColor(ChangeLight(clWhite, 1.0 - FBlinkLevel)), 0));
    Canvas.drawRect(frame);
    Canvas.setPen(QPen(ColorToQColor(ChangeLight(clWhite, FBlinkLevel)), 0, Qt::DashLine));
    Canvas.drawRect(frame);
}

void TKSControlerPanelBase::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event);
    QPainter canvas(this);
    canvas.save();
    Paint(canvas);
    canvas.restore();
    if (FDesignMode && FIsSelected)
        DrawSelectionBlink(canvas);
}

void TKSControlerPanelBase::mousePressEvent(QMouseEvent* event)
{
    TMouseButton button = mbLeft;
    if (!FDesignMode || !ToMouseButton(event->button(), button)) {
        QWidget::mousePressEvent(event);
        return;
    }
    const QPoint at = event->position().toPoint();
    MouseDown(button, ShiftStateFromQt(event->buttons(), event->modifiers()), at.x(), at.y());
    event->accept();
}

void TKSControlerPanelBase::mouseMoveEvent(QMouseEvent* event)
{
    if (!FDesignMode) {
        QWidget::mouseMoveEvent(event);
        return;
    }
    const QPoint at = event->position().toPoint();
    MouseMove(ShiftStateFromQt(event->buttons(), event->modifiers()), at.x(), at.y());
    event->accept();
}

void TKSControlerPanelBase::mouseReleaseEvent(QMouseEvent* event)
{
    TMouseButton button = mbLeft;
    if (!FDesignMode || !ToMouseButton(event->button(), button)) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    const QPoint at = event->position().toPoint();
    MouseUp(button, ShiftStateFromQt(event->buttons(), event->modifiers()), at.x(), at.y());
    event->accept();
}

}  // namespace qx
