// Mouse handling of the panel in design mode: selection, moving, resizing and the popup button,
// and the bounds changes they lead to.
#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QResizeEvent>

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

// The buttons held, without the keys.
TShiftState ButtonsOf(TShiftState shift) { return shift * TShiftState{ssLeft, ssRight, ssMiddle}; }

}  // namespace

void TKSMSSink::mousePressEvent(QMouseEvent* event)
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

void TKSMSSink::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint at = event->position().toPoint();
    MouseMove(ShiftStateFromQt(event->buttons(), event->modifiers()), at.x(), at.y());
    if (!FDesignMode)
        QWidget::mouseMoveEvent(event);
}

void TKSMSSink::mouseReleaseEvent(QMouseEvent* event)
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

void TKSMSSink::mouseDoubleClickEvent(QMouseEvent* event)
{
    TMouseButton button = mbLeft;
    if (!FDesignMode || !ToMouseButton(event->button(), button)) {
        QWidget::mouseDoubleClickEvent(event);
        return;
    }
    // Qt sends the second press of a double click as this event alone.
    const QPoint at = event->position().toPoint();
    MouseDown(button, ShiftStateFromQt(event->buttons(), event->modifiers()).Include(ssDouble), at.x(), at.y());
    if (button == mbLeft)
        DoDdlClickOnDesigneTime();
    event->accept();
}

void TKSMSSink::contextMenuEvent(QContextMenuEvent* event)
{
    // The classic look pops the menu up by itself; the new look leaves it to MouseDown.
    if (CNewDesign) {
        event->ignore();
        return;
    }
    FPopupMenu->popup(event->globalPos());
    event->accept();
}

void TKSMSSink::MouseDown(TMouseButton Button, TShiftState Shift, int X, int Y)
{
    if (!FDesignMode)
        return;
    FDownShift = Shift;
    if (OnSinkMouseDown)
        OnSinkMouseDown(this, Shift);
    if (Button == mbLeft && Shift.Contains(ssCtrl))
        SetIsSelected(!FIsSelected);
    else if (Button == mbLeft)
        SetIsSelected(true);
    if (OnSelectClick)
        OnSelectClick(this);

    FDownClient = QPoint(X, Y);
    FDownScreen = mapToGlobal(FDownClient);
    FDownLeft = x();
    FDownTop = y();
    FDownWidth = width();
    FDownHeight = height();
    if (Shift.Contains(ssLeft) && FResizable) {
        FResizeArea = static_cast<std::uint8_t>(CheckResizeArea(X, Y));
        if (FResizeArea != 0 && OnStartResize)
            OnStartResize(this);
    }
    if (FResizeArea != 0)
        return;

    const TShiftState buttons = ButtonsOf(Shift);
    if (CNewDesign && buttons == TShiftState{ssRight}) {
        FPopupMenu->popup(mapToGlobal(QPoint(X, Y)));
        return;
    }
    if (buttons != TShiftState{ssLeft})
        return;
    if (IsInPopup(QPoint(X, Y))) {
        FPopupMenu->popup(mapToGlobal(QPoint(width(), 12)));
        return;
    }
    FMoving = true;
    if (OnStartMove) {
        // The ears show while the panel travels over the page.
        if (!CNewDesign)
            SetCutOutEnabled(true);
        OnStartMove(this);
    }
    SetColor(clBtnShadow);
}

void TKSMSSink::MouseMove(TShiftState Shift, int X, int Y)
{
    Q_UNUSED(Shift);
    if (!FDesignMode) {
        if (testAttribute(Qt::WA_SetCursor))
            unsetCursor();
        return;
    }
    if (FResizeArea != 0) {
        if (QPoint(X, Y) != FDownClient) {
            DoResize(X, Y);
            if (OnResizing)
                OnResizing(this);
        }
    } else if (!FResizable) {
        setCursor(Qt::PointingHandCursor);
    } else {
        DoResizeCursor(X, Y);
    }
    if (IsInPopup(QPoint(X, Y)))
        setCursor(Qt::WhatsThisCursor);
    if (FMoving && FResizeArea == 0)
        MoveStep(X, Y);
}

void TKSMSSink::MouseUp(TMouseButton Button, TShiftState Shift, int X, int Y)
{
    Q_UNUSED(Button);
    Q_UNUSED(Shift);
    if (!FDesignMode)
        return;
    if (FResizeArea != 0) {
        DoResize(X, Y);
        FResizeArea = 0;
        if (OnEndResize)
            OnEndResize(this);
    }
    if (FMoving && OnEndMove) {
        if (!CNewDesign)
            SetCutOutEnabled(false);
        OnEndMove(this);
    }
    FMoving = false;
    SetColor(clBtnFace);
}

void TKSMSSink::MoveStep(int X, int Y)
{
    const QPoint screen = mapToGlobal(QPoint(X, Y));
    if (screen == FDownScreen)
        return;
    QPoint topLeft(screen.x() - FDownScreen.x() + FDownLeft, screen.y() - FDownScreen.y() + FDownTop);
    if (FSnapToGrid)
        topLeft = SnapMovedPosition(topLeft, FGridSpacingX, FGridSpacingY);
    if (topLeft == pos())
        return;
    if (OnMoving)
        OnMoving(this, topLeft.x(), topLeft.y(), topLeft.x() - x(), topLeft.y() - y());
    SetBounds(topLeft.x(), topLeft.y(), width(), height());
}

int TKSMSSink::CheckResizeArea(int X, int Y) const { return ResizeAreaAt(X, Y, rect(), width(), FBorderWidth); }

void TKSMSSink::DoResizeCursor(int X, int Y)
{
    switch (CheckResizeArea(X, Y)) {
    case 1:
    case 7: setCursor(Qt::SizeFDiagCursor); break;
    case 3:
    case 5: setCursor(Qt::SizeBDiagCursor); break;
    case 6:
    case 8: setCursor(Qt::SizeHorCursor); break;
    case 2:
    case 4: setCursor(Qt::SizeVerCursor); break;
    default: setCursor(Qt::PointingHandCursor); break;
    }
}

void TKSMSSink::DoResize(int X, int Y)
{
    const QPoint screen = mapToGlobal(QPoint(X, Y));
    QRect bounds = ResizedBounds(FResizeArea, QRect(FDownLeft, FDownTop, FDownWidth, FDownHeight),
                                 screen.x() - FDownScreen.x(), screen.y() - FDownScreen.y());
    if (FSnapToGrid)
        bounds = SnapResizedBounds(bounds, FGridSpacingX, FGridSpacingY);
    SetBounds(bounds.x(), bounds.y(), bounds.width(), bounds.height());
}

bool TKSMSSink::IsInPopup(const QPoint& Point) const { return IsInPopupArea(Point, width()); }

bool TKSMSSink::IsInPageActivator(const QPoint& Point) const { return IsInPageActivatorArea(Point, rect()); }

void TKSMSSink::SetBounds(int Left, int Top, int Width, int Height)
{
    // A refused size keeps the place too: a left or top grabber dragged past the minimum would
    // otherwise slide the panel. A stream sets the stored bounds as they are.
    if (!GetIsLoading() && !CanResize(Width, Height))
        return;
    setGeometry(Left, Top, Width, Height);
}

bool TKSMSSink::CanResize(int& NewWidth, int& NewHeight)
{
    if (NewWidth < FWindowMinSize.x() || NewHeight < FWindowMinSize.y())
        return false;
    if (NewWidth == width() && NewHeight == height()) {
        SetPanelChanged(true);
        return true;
    }
    // At run time only the inner part shows, the caption strip above it and the bottom strip
    // below it stay clipped.
    const QRegion runTimeClip(QRect(0, 11, NewWidth, NewHeight - 21));
    if (!FDesignMode) {
        SetIsSelected(false);
        setMask(runTimeClip);
    } else if (CNewDesign) {
        setMask(runTimeClip);
    } else {
        clearMask();
        SetCutOutDownEnabled(true);
    }
    update();
    SetPanelChanged(true);
    return true;
}

void TKSMSSink::Resize()
{
    SetPanelChanged(true);
    if (!CNewDesign)
        SetCutOutEnabled(false);
}

void TKSMSSink::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    UpdateContentsMargins();
    Resize();
}

}  // namespace qx
