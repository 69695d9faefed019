#include "qxbase/panels/histo_cursor_panel.h"

#include <QEvent>
#include <QFontMetrics>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QToolButton>
#include <algorithm>
#include <array>
#include <cmath>

#include "qxbase/chart/eng_units.h"
#include "qxbase/panels/histo_common.h"
#include "qxbase/resources/chart_texts.h"

namespace qx {

namespace {

constexpr int ChannelEditStartWidth = 30;
constexpr int UpDownWidth = 16;

bool IsCursor(int Cursor) { return Cursor == 1 || Cursor == 2; }

QString NumberText(double Value, int Exponent, int Decimals, const QString& Unit)
{
    return FormatCursorNumber(Value, Decimals) + QLatin1Char(' ') + GetEngUnitString(Exponent) + Unit;
}

// A true value written with the exponent the chart would pick for it, or plain.
QString EngineeringText(double Value, int Decimals, const QString& Unit, bool Prefix)
{
    const int exponent = Prefix ? EngineeringExponent(Value) : 0;
    return NumberText(Value / std::pow(10.0, exponent), exponent, Decimals, Unit);
}

}  // namespace

struct TKSHistoCursorPanel::Private {
    struct Cursor {
        QRadioButton* Radio = nullptr;
        QLabel* X = nullptr;
        QLabel* Y = nullptr;
        QLineEdit* Channel = nullptr;
        int Curve = -1;
    };
    std::array<Cursor, 2> Cursors;
    QLabel* DX = nullptr;
    QLabel* DY = nullptr;
    QLabel* Frequency = nullptr;
    QToolButton* Up = nullptr;
    QToolButton* Down = nullptr;

    bool UseEngineeringUnits = true;
    int DecimalsX = 6;
    int DecimalsY = 6;
    QString TimeFormat = QStringLiteral("hh:mm:ss.zzz");
    // Of the last SetValues: the widths the value labels reserve follow them.
    TQXXAxisScale AxisScale = xasLinear;
    QString Unit;
    TKSCursorPanelPosition Position = cppTop;
    int Margin = 6;
    int LineSpacing = 2;
    int ChannelEditWidth = ChannelEditStartWidth;
    int ChannelEditMaxWidth = 200;
    int SelectedCursor = 1;
    int CurveCount = 0;
    QSize Extent;
    bool Formatting = false;

    Cursor* At(int Number) { return IsCursor(Number) ? &Cursors[static_cast<std::size_t>(Number - 1)] : nullptr; }
};

TKSHistoCursorPanel::TKSHistoCursorPanel(QWidget* parent) : QWidget(parent), d(std::make_unique<Private>())
{
    const QString radioTexts[2] = {res::_rsCursor1, res::_rsCursor2};
    for (int i = 0; i < 2; ++i) {
        Private::Cursor& c = d->Cursors[static_cast<std::size_t>(i)];
        c.Radio = new QRadioButton(radioTexts[i], this);
        c.X = new QLabel(this);
        c.Y = new QLabel(this);
        c.Channel = new QLineEdit(this);
        c.Channel->setReadOnly(true);
        c.Channel->setFocusPolicy(Qt::NoFocus);
        // Radio buttons of one parent are exclusive already.
        connect(c.Radio, &QRadioButton::toggled, this, [this](bool checked) {
            if (checked) DoOnRBSelectChanged();
        });
    }
    d->Cursors[0].Radio->setChecked(true);
    d->DX = new QLabel(this);
    d->DY = new QLabel(this);
    d->Frequency = new QLabel(this);
    d->Up = new QToolButton(this);
    d->Up->setArrowType(Qt::UpArrow);
    d->Down = new QToolButton(this);
    d->Down->setArrowType(Qt::DownArrow);
    for (QToolButton* button : {d->Up, d->Down}) {
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::NoFocus);
    }
    connect(d->Up, &QToolButton::clicked, this, [this] { UpDownClick(btNext); });
    connect(d->Down, &QToolButton::clicked, this, [this] { UpDownClick(btPrev); });
    ClearValues();
    FormatCursorPanel();
}

TKSHistoCursorPanel::~TKSHistoCursorPanel() = default;

void TKSHistoCursorPanel::SetValues(double X1, double Y1, int XExponent1, int YExponent1, double X2,
                                    double Y2, int XExponent2, int YExponent2, TQXXAxisScale AxisScale,
                                    const QString& Unit)
{
    d->AxisScale = AxisScale;
    d->Unit = Unit;
    const double x1 = X1 * std::pow(10.0, XExponent1);
    const double x2 = X2 * std::pow(10.0, XExponent2);
    const double dx = x2 - x1;
    const double dy = Y2 * std::pow(10.0, YExponent2) - Y1 * std::pow(10.0, YExponent1);
    const bool time = AxisScale == xasDateTime;
    const auto xText = [&](double Scaled, double True, int Exponent) {
        return time ? FormatCursorTime(True, d->TimeFormat) : NumberText(Scaled, Exponent, d->DecimalsX, QString());
    };
    d->Cursors[0].X->setText(res::_rsCursorX.Text() + xText(X1, x1, XExponent1));
    d->Cursors[1].X->setText(res::_rsCursorX.Text() + xText(X2, x2, XExponent2));
    d->Cursors[0].Y->setText(res::_rsCursorY.Text() + NumberText(Y1, YExponent1, d->DecimalsY, Unit));
    d->Cursors[1].Y->setText(res::_rsCursorY.Text() + NumberText(Y2, YExponent2, d->DecimalsY, Unit));
    const QString dxText = time ? (dx < 0 ? QStringLiteral("-") : QString()) + FormatCursorTime(std::fabs(dx), d->TimeFormat)
                                : EngineeringText(dx, d->DecimalsX, QString(), d->UseEngineeringUnits);
    d->DX->setText(res::_rsCursorDX.Text() + dxText);
    d->DY->setText(res::_rsCursorDY.Text() + EngineeringText(dy, d->DecimalsY, Unit, d->UseEngineeringUnits));
    const double frequency = 1.0 / std::fabs(dx);
    const QString hz = QStringLiteral("Hz");
    d->Frequency->setText(std::isfinite(frequency) ? EngineeringText(frequency, d->DecimalsX, hz, d->UseEngineeringUnits)
                                                   : QStringLiteral("? ") + hz);
    // A text wider than its place moves the labels after it.
    for (const QLabel* label : {d->Cursors[0].X, d->Cursors[0].Y, d->Cursors[1].X, d->Cursors[1].Y, d->DX, d->DY,
                                d->Frequency})
        if (label->isVisibleTo(this) && label->sizeHint().width() > label->width()) {
            FormatCursorPanel();
            break;
        }
}

void TKSHistoCursorPanel::ClearValues()
{
    for (Private::Cursor& c : d->Cursors) {
        c.X->setText(res::_rsCursorX);
        c.Y->setText(res::_rsCursorY);
    }
    d->DX->setText(res::_rsCursorDX);
    d->DY->setText(res::_rsCursorDY);
    d->Frequency->clear();
}

int TKSHistoCursorPanel::GetDecimalsX() const { return d->DecimalsX; }
bool TKSHistoCursorPanel::GetUseEngineeringUnits() const { return d->UseEngineeringUnits; }
void TKSHistoCursorPanel::SetUseEngineeringUnits(bool Value) { d->UseEngineeringUnits = Value; }

void TKSHistoCursorPanel::SetDecimalsX(int Value) { d->DecimalsX = std::clamp(Value, 0, 15); }
int TKSHistoCursorPanel::GetDecimalsY() const { return d->DecimalsY; }
void TKSHistoCursorPanel::SetDecimalsY(int Value) { d->DecimalsY = std::clamp(Value, 0, 15); }
QString TKSHistoCursorPanel::GetTimeFormat() const { return d->TimeFormat; }
void TKSHistoCursorPanel::SetTimeFormat(const QString& Value) { d->TimeFormat = Value; }

TKSCursorPanelPosition TKSHistoCursorPanel::GetCursorPanelPosition() const { return d->Position; }

void TKSHistoCursorPanel::SetCursorPanelPosition(TKSCursorPanelPosition Value)
{
    if (Value > cppRight) return;
    d->Position = Value;
    FormatCursorPanel();
    if (Value == cppHide) hide();
    else if (parentWidget()) show();
}

int TKSHistoCursorPanel::GetMargin() const { return d->Margin; }
void TKSHistoCursorPanel::SetMargin(int Value)
{
    d->Margin = std::max(Value, 0);
    FormatCursorPanel();
}
int TKSHistoCursorPanel::GetLineSpacing() const { return d->LineSpacing; }
void TKSHistoCursorPanel::SetLineSpacing(int Value)
{
    d->LineSpacing = std::max(Value, 0);
    FormatCursorPanel();
}
int TKSHistoCursorPanel::GetChannelEditMaxWidth() const { return d->ChannelEditMaxWidth; }
void TKSHistoCursorPanel::SetChannelEditMaxWidth(int Value) { d->ChannelEditMaxWidth = Value; }

int TKSHistoCursorPanel::GetSelectedCursorIndex() const { return d->SelectedCursor; }

void TKSHistoCursorPanel::SetSelectedCursorIndex(int Cursor)
{
    Private::Cursor* c = d->At(Cursor);
    if (!c) return;
    d->SelectedCursor = Cursor;
    const QSignalBlocker block(c->Radio);
    // The other radio button unchecks itself without telling anyone either: its toggled(false)
    // is ignored by the handler.
    c->Radio->setChecked(true);
}

int TKSHistoCursorPanel::GetCurveCount() const { return d->CurveCount; }
void TKSHistoCursorPanel::SetCurveCount(int Count) { d->CurveCount = std::max(Count, 0); }

int TKSHistoCursorPanel::GetCursorCurve(int Cursor) const
{
    const Private::Cursor* c = d->At(Cursor);
    return c ? c->Curve : -1;
}

void TKSHistoCursorPanel::SetCursorCurve(int Cursor, int Curve)
{
    if (Private::Cursor* c = d->At(Cursor)) c->Curve = Curve;
}

void TKSHistoCursorPanel::FormatCursorPanel()
{
    if (d->Formatting) return;
    d->Formatting = true;
    const QFontMetrics fm(font());
    const int margin = d->Margin;
    const int spacing = d->LineSpacing;
    const int rowHeight = std::max(fm.height() + 6, d->Cursors[0].Radio->sizeHint().height());
    const bool time = d->AxisScale == xasDateTime;

    // Value labels keep the width of a long value, so that moving a cursor does not shift them.
    const QString number = QStringLiteral("-000.") + QString(std::max(d->DecimalsX, d->DecimalsY), QLatin1Char('0'));
    const QString mu(QChar(0xB5));
    const int xWidth = fm.horizontalAdvance(res::_rsCursorDX.Text() + QLatin1Char('-') +
                                            (time ? FormatCursorTime(0, d->TimeFormat) : number + QLatin1Char(' ') + mu));
    const int yWidth = fm.horizontalAdvance(res::_rsCursorDY.Text() + number + QLatin1Char(' ') + mu + d->Unit);
    const auto widthOf = [&](const QLabel* label, int least) { return std::max(least, label->sizeHint().width()); };
    int radioWidth = 0, labelXWidth = xWidth, labelYWidth = yWidth;
    for (const Private::Cursor& c : d->Cursors) {
        radioWidth = std::max(radioWidth, c.Radio->sizeHint().width());
        labelXWidth = widthOf(c.X, labelXWidth);
        labelYWidth = widthOf(c.Y, labelYWidth);
    }
    const bool rows = d->Position == cppTop || d->Position == cppBottom || d->Position == cppHide;
    d->DX->setVisible(!rows);
    d->DY->setVisible(!rows);
    d->Frequency->setVisible(!rows);

    int right = 0, bottom = 0;
    const auto place = [&](QWidget* w, int x, int y, int width, int height) {
        w->setGeometry(x, y, width, height);
        right = std::max(right, x + width);
        bottom = std::max(bottom, y + height);
    };
    if (rows) {
        place(d->Up, margin, margin, UpDownWidth, rowHeight + spacing / 2);
        place(d->Down, margin, margin + rowHeight + spacing / 2, UpDownWidth, rowHeight + spacing - spacing / 2);
        for (int i = 0; i < 2; ++i) {
            const Private::Cursor& c = d->Cursors[static_cast<std::size_t>(i)];
            const int y = margin + i * (rowHeight + spacing);
            int x = margin + UpDownWidth + margin / 2;
            place(c.Radio, x, y, radioWidth, rowHeight);
            x += radioWidth + margin;
            place(c.X, x, y, labelXWidth, rowHeight);
            x += labelXWidth + margin;
            place(c.Y, x, y, labelYWidth, rowHeight);
            x += labelYWidth + margin;
            place(c.Channel, x, y + 1, d->ChannelEditWidth, rowHeight - 2);
        }
    } else {
        const int width = std::max({radioWidth, labelXWidth, labelYWidth, d->ChannelEditWidth,
                                    widthOf(d->DX, xWidth), widthOf(d->DY, yWidth), widthOf(d->Frequency, 0)});
        int y = margin;
        const auto line = [&](QWidget* w, int lineWidth) {
            place(w, margin, y, lineWidth, rowHeight);
            y += rowHeight + spacing;
        };
        for (const Private::Cursor& c : d->Cursors) {
            line(c.Radio, width);
            line(c.X, width);
            line(c.Y, width);
            line(c.Channel, d->ChannelEditWidth);
            y += margin / 2;
        }
        line(d->DX, width);
        line(d->DY, width);
        line(d->Frequency, width);
        place(d->Up, margin, y, UpDownWidth, rowHeight);
        place(d->Down, margin + UpDownWidth, y, UpDownWidth, rowHeight);
    }
    d->Extent = QSize(right + margin, bottom + margin);
    updateGeometry();
    d->Formatting = false;
}

void TKSHistoCursorPanel::FormatChannelEdit()
{
    const QFontMetrics fm(d->Cursors[0].Channel->font());
    const int width = std::max(fm.horizontalAdvance(d->Cursors[0].Channel->text()),
                               fm.horizontalAdvance(d->Cursors[1].Channel->text())) + 8;
    if (width > d->ChannelEditWidth && width < d->ChannelEditMaxWidth) {
        d->ChannelEditWidth = width;
        FormatCursorPanel();
    }
}

void TKSHistoCursorPanel::UpdateCurveLabel(int Cursor, const QString& Name)
{
    Private::Cursor* c = d->At(Cursor);
    if (!c) return;
    c->Channel->setText(Name);
    c->Channel->setCursorPosition(0);
    FormatChannelEdit();
}

void TKSHistoCursorPanel::DoOnRBSelectChanged()
{
    const int selected = d->Cursors[1].Radio->isChecked() ? 2 : 1;
    if (selected == d->SelectedCursor) return;
    d->SelectedCursor = selected;
    if (OnCursorSelect) OnCursorSelect(this, selected);
    emit cursorSelected(selected);
}

void TKSHistoCursorPanel::UpDownClick(TUDBtnType Button)
{
    const int count = d->CurveCount;
    if (count <= 0) return;
    const int current = d->At(d->SelectedCursor)->Curve;
    int next = 0;
    if (current >= 0 && current < count)
        next = (current + (Button == btNext ? 1 : count - 1)) % count;
    OnUpDownChange(next);
}

void TKSHistoCursorPanel::OnUpDownChange(int Curve)
{
    if (Curve < 0 || Curve >= d->CurveCount) return;
    const int cursor = d->SelectedCursor;
    d->At(cursor)->Curve = Curve;
    if (OnCurveChange) OnCurveChange(this, cursor, Curve);
    emit curveChanged(cursor, Curve);
}

QRadioButton* TKSHistoCursorPanel::GetCursorRadio(int Cursor) const
{
    const Private::Cursor* c = d->At(Cursor);
    return c ? c->Radio : nullptr;
}
QLabel* TKSHistoCursorPanel::GetLabelX(int Cursor) const
{
    const Private::Cursor* c = d->At(Cursor);
    return c ? c->X : nullptr;
}
QLabel* TKSHistoCursorPanel::GetLabelY(int Cursor) const
{
    const Private::Cursor* c = d->At(Cursor);
    return c ? c->Y : nullptr;
}
QLineEdit* TKSHistoCursorPanel::GetChannelEdit(int Cursor) const
{
    const Private::Cursor* c = d->At(Cursor);
    return c ? c->Channel : nullptr;
}
QLabel* TKSHistoCursorPanel::GetLabelDX() const { return d->DX; }
QLabel* TKSHistoCursorPanel::GetLabelDY() const { return d->DY; }
QLabel* TKSHistoCursorPanel::GetLabelFrequency() const { return d->Frequency; }
QToolButton* TKSHistoCursorPanel::GetUpButton() const { return d->Up; }
QToolButton* TKSHistoCursorPanel::GetDownButton() const { return d->Down; }

QSize TKSHistoCursorPanel::sizeHint() const { return d->Extent; }

void TKSHistoCursorPanel::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) FormatCursorPanel();
}

}  // namespace qx
