#include "qxbase/panels/dialog_background.h"

#include <QDialog>
#include <QKeyEvent>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include "qxbase/framework/color.h"

namespace qx {

THVKDialogBackground::THVKDialogBackground(QWidget* parent) : QWidget(parent)
{
    FClientArea = new QWidget(this);
    FClientArea->setObjectName(QStringLiteral("ClientArea"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(BorderWidth, BorderWidth + CaptionHeight, BorderWidth, BorderWidth);
    layout->addWidget(FClientArea);

    FCloseButton = new QToolButton(this);
    FCloseButton->setObjectName(QStringLiteral("CloseButton"));
    FCloseButton->setAutoRaise(true);
    FCloseButton->setFocusPolicy(Qt::NoFocus);
    FCloseButton->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    FCloseButton->setIconSize(QSize(12, 12));
    connect(FCloseButton, &QToolButton::clicked, this, &THVKDialogBackground::closeClicked);
}

THVKDialogBackground::~THVKDialogBackground() = default;

void THVKDialogBackground::SetCaption(const QString& Value)
{
    FCaption = Value;
    update();
}

void THVKDialogBackground::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), ColorToQColor(clBtnFace));
    const QRect band(BorderWidth, BorderWidth, width() - 2 * BorderWidth, CaptionHeight);
    QLinearGradient gradient(band.topLeft(), band.topRight());
    gradient.setColorAt(0, ColorToQColor(clActiveCaption));
    gradient.setColorAt(1, ColorToQColor(clGradientActiveCaption));
    painter.fillRect(band, gradient);
    QFont captionFont = font();
    captionFont.setBold(true);
    painter.setFont(captionFont);
    painter.setPen(ColorToQColor(clCaptionText));
    painter.drawText(band.adjusted(6, 0, -CaptionHeight, 0), Qt::AlignVCenter | Qt::AlignLeft, FCaption);
    // Two rings: light outside, shadow inside, as a raised window edge.
    painter.setPen(ColorToQColor(clBtnShadow));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    painter.setPen(ColorToQColor(clActiveBorder));
    painter.drawRect(rect().adjusted(1, 1, -2, -2));
}

void THVKDialogBackground::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    // The close icon follows the right edge; the layout manages only the client area.
    const int side = CaptionHeight - 4;
    FCloseButton->setGeometry(width() - BorderWidth - side - 2, BorderWidth + 2, side, side);
}

void THVKDialogBackground::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && event->position().y() < BorderWidth + CaptionHeight) {
        FDragging = true;
        FDragOffset = event->globalPosition().toPoint() - window()->pos();
        return;
    }
    QWidget::mousePressEvent(event);
}

void THVKDialogBackground::mouseMoveEvent(QMouseEvent* event)
{
    if (FDragging) window()->move(event->globalPosition().toPoint() - FDragOffset);
    else QWidget::mouseMoveEvent(event);
}

void THVKDialogBackground::mouseReleaseEvent(QMouseEvent* event)
{
    FDragging = false;
    QWidget::mouseReleaseEvent(event);
}

void CenterOnOwner(QWidget* Dialog)
{
    if (!Dialog) return;
    QRect area;
    if (const QWidget* owner = Dialog->parentWidget())
        area = owner->window()->frameGeometry();
    else if (const QScreen* screen = Dialog->screen())
        area = screen->availableGeometry();
    if (area.isValid()) Dialog->move(area.center() - QPoint(Dialog->width() / 2, Dialog->height() / 2));
}

THVKDialogBackground* InstallDialogBackground(QDialog& Dialog, const QString& Caption)
{
    auto* background = new THVKDialogBackground(&Dialog);
    background->SetCaption(Caption);
    QObject::connect(background, &THVKDialogBackground::closeClicked, &Dialog, &QDialog::reject);
    auto* outer = new QVBoxLayout(&Dialog);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(background);
    return background;
}

bool CloseOnEnterOrEscape(QDialog& Dialog, const QKeyEvent& Event, int OkResult)
{
    switch (Event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter: Dialog.done(OkResult); return true;
    case Qt::Key_Escape: Dialog.reject(); return true;
    default: return false;
    }
}

}  // namespace qx
