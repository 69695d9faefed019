#include "qxbase/config/dialog_controls.h"

#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "qxbase/framework/color.h"
#include "qxbase/framework/number_text.h"

namespace qx {

namespace {

constexpr const char* TagProperty = "Tag";

QToolButton* NewArrow(Qt::ArrowType Arrow, QWidget* parent)
{
    auto* button = new QToolButton(parent);
    button->setArrowType(Arrow);
    button->setFocusPolicy(Qt::NoFocus);
    // Two halves of the control's height, however tall the buddy edit is.
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Ignored);
    button->setFixedWidth(16);
    button->setIconSize(QSize(8, 8));
    return button;
}

}  // namespace

TComboBox::TComboBox(QWidget* parent) : QComboBox(parent) {}

TUpDown::TUpDown(QWidget* parent) : QWidget(parent)
{
    FUpButton = NewArrow(Qt::UpArrow, this);
    FUpButton->setObjectName(QStringLiteral("UpButton"));
    FDownButton = NewArrow(Qt::DownArrow, this);
    FDownButton->setObjectName(QStringLiteral("DownButton"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(FUpButton);
    layout->addWidget(FDownButton);
    connect(FUpButton, &QToolButton::clicked, this, [this] { Click(true); });
    connect(FDownButton, &QToolButton::clicked, this, [this] { Click(false); });
}

void TUpDown::SetAssociate(QLineEdit* Edit)
{
    FAssociate = Edit;
    ShowPosition();
}

void TUpDown::SetRange(int Min, int Max)
{
    FMin = Min;
    FMax = std::max(Min, Max);
    SetPosition(FPosition);
}

void TUpDown::SetPosition(int Value)
{
    FPosition = std::clamp(Value, FMin, FMax);
    ShowPosition();
}

void TUpDown::Click(bool Up)
{
    // The user may have typed into the edit since the last step.
    std::int32_t typed = 0;
    if (FAssociate && TryStrToInt(FAssociate->text().trimmed(), typed)) FPosition = std::clamp(int{typed}, FMin, FMax);
    bool allow = true;
    if (OnChanging) OnChanging(this, allow);
    if (!allow) return;
    const int before = FPosition;
    const long long next = static_cast<long long>(FPosition) + (Up ? FIncrement : -FIncrement);
    FPosition = static_cast<int>(std::clamp<long long>(next, FMin, FMax));
    ShowPosition();
    if (FPosition != before) emit positionChanged(FPosition);
}

void TUpDown::ShowPosition()
{
    if (FAssociate) FAssociate->setText(QString::number(FPosition));
}

int ControlTag(const QObject* Control)
{
    if (!Control) return -1;
    bool ok = false;
    const int tag = Control->property(TagProperty).toInt(&ok);
    return ok ? tag : -1;
}

void SetControlTag(QObject* Control, int Tag)
{
    if (Control) Control->setProperty(TagProperty, Tag);
}

void UseWindowTextColor(QWidget& Dialog, QWidget& Background)
{
    QPalette palette = Dialog.palette();
    palette.setColor(QPalette::WindowText, ColorToQColor(clWindowText));
    Dialog.setPalette(palette);
    Background.setPalette(palette);
}

}  // namespace qx
