#include "qxbase/panels/color_panel.h"

#include <QMouseEvent>
#include <QPainter>

namespace qx {

THVKColorPanel::THVKColorPanel(QWidget* parent) : QFrame(parent)
{
    setFrameStyle(QFrame::Panel | QFrame::Sunken);
    setCursor(Qt::PointingHandCursor);
    setMinimumHeight(20);
}

void THVKColorPanel::SetColor(TColor Value)
{
    if (Value == FColor) return;
    FColor = Value;
    update();
}

void THVKColorPanel::paintEvent(QPaintEvent* event)
{
    {
        QPainter painter(this);
        painter.fillRect(contentsRect(), ColorToQColor(FColor));
    }
    QFrame::paintEvent(event);
}

void THVKColorPanel::mouseReleaseEvent(QMouseEvent* event)
{
    // Only a release inside the swatch counts, as with a button.
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        emit Clicked();
    QFrame::mouseReleaseEvent(event);
}

}  // namespace qx
