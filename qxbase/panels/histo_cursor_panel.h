#pragma once

#include <QString>
#include <QWidget>
#include <cstdint>
#include <functional>
#include <memory>

#include "qxbase/chart/chart_types.h"
#include "qxbase/framework/export.h"
#include "qxbase/panels/histo_types.h"

class QLabel;
class QLineEdit;
class QRadioButton;
class QToolButton;

namespace qx {

class TKSHistoCursorPanel;

// The buttons of the up-down control: next curve (up) and previous curve (down).
enum TUDBtnType : std::uint8_t { btNext, btPrev };

// The up-down control chose `Curve` for cursor `Cursor` (1 or 2).
using THVKCurveChangeEvent = std::function<void(TKSHistoCursorPanel* Sender, int Cursor, int Curve)>;
// The radio buttons selected cursor `Cursor` (1 or 2).
using THVKCursorSelectEvent = std::function<void(TKSHistoCursorPanel* Sender, int Cursor)>;

// The cursor read-out of a chart panel: for each of the two cursors a radio button
// ("Cursor 1: ", "Cursor 2: "), "x = " and "y = " labels and a read-only field with the name of
// the cursor's curve; the differences "dx = ", "dy = " and the frequency 1 / |dx|; an up-down
// control that steps the selected cursor through the curves. Cursors are numbered 1 and 2
// throughout; other numbers are ignored.
//
// Numbers: each value is written by FormatCursorNumber (histo_common.h) with the panel's
// decimals for its axis: rounded once, to 7 significant digits or to the decimals, whichever
// keeps fewer digits, with exactly that many places; then a blank and the prefix of its
// exponent. y values and dy carry the unit after the prefix.
class QXBASE_EXPORT TKSHistoCursorPanel : public QWidget {
    Q_OBJECT

public:
    explicit TKSHistoCursorPanel(QWidget* parent = nullptr);
    ~TKSHistoCursorPanel() override;

    // Shows both cursors. The values come scaled to their exponents (the true x is
    // X1 * 10^XExponent1). On a date-time axis (xasDateTime) the x values are written as UTC
    // date-time with GetTimeFormat(), their true values read as seconds since 1970; dx as a
    // span in the same format, signed. dx and dy are the differences of the true values,
    // written with the exponent EngineeringExponent picks for them. The frequency
    // 1 / |x2 - x1| (true values, in "Hz") reads "? Hz" when the cursors share their x or it is
    // not finite.
    void SetValues(double X1, double Y1, int XExponent1, int YExponent1, double X2, double Y2,
                   int XExponent2, int YExponent2, TQXXAxisScale AxisScale, const QString& Unit);
    // Only the labels' prefixes: for cursors that stand on no sample.
    void ClearValues();

    // Whether dx, dy and the frequency get the prefix EngineeringExponent picks (the start) or
    // are written plain; x and y come with the exponents their caller chose.
    bool GetUseEngineeringUnits() const;
    void SetUseEngineeringUnits(bool Value);
    // Places for x values (and dx, frequency) and for y values (and dy); clamped to 0..15.
    int GetDecimalsX() const;
    void SetDecimalsX(int Value);
    int GetDecimalsY() const;
    void SetDecimalsY(int Value);
    // QDateTime format of x on a date-time axis; "hh:mm:ss.zzz" at the start.
    QString GetTimeFormat() const;
    void SetTimeFormat(const QString& Value);

    // Lays the panel out for the position; cppHide hides the panel, the others show it when it
    // has a parent widget (a panel without one would become a window).
    TKSCursorPanelPosition GetCursorPanelPosition() const;
    void SetCursorPanelPosition(TKSCursorPanelPosition Value);
    // Space around and between the blocks, and between lines, in pixels; negative values are 0.
    int GetMargin() const;
    void SetMargin(int Value);
    int GetLineSpacing() const;
    void SetLineSpacing(int Value);
    // FormatChannelEdit widens the channel fields only below this width (200 at the start).
    int GetChannelEditMaxWidth() const;
    void SetChannelEditMaxWidth(int Value);

    // The cursor the radio buttons select; setting it fires nothing.
    int GetSelectedCursorIndex() const;
    void SetSelectedCursorIndex(int Cursor);
    // The curves the up-down control steps through (0..Count-1), and each cursor's curve
    // (-1: none); the chart keeps them current.
    int GetCurveCount() const;
    void SetCurveCount(int Count);
    int GetCursorCurve(int Cursor) const;
    void SetCursorCurve(int Cursor, int Curve);

    // Top and Bottom: two rows, cursor 1 above cursor 2, each "Cursor n", "x =", "y =" and the
    // channel field, the up-down control left of both rows; the differences hidden. Left and
    // Right: one column with cursor 1's lines, half a margin, cursor 2's lines, half a margin,
    // "dx =", "dy =", the frequency and the up-down control. sizeHint() gives the extent.
    void FormatCursorPanel();
    // Widens both channel fields to the longer name's text width + 8 when that is wider than
    // now and narrower than the limit; they never narrow. Fields start 30 pixels wide.
    void FormatChannelEdit();
    // Shows `Name` in the cursor's channel field, then FormatChannelEdit.
    void UpdateCurveLabel(int Cursor, const QString& Name);

    // The radio buttons' handler: takes the checked one as the selected cursor and fires
    // OnCursorSelect / cursorSelected when that changed.
    void DoOnRBSelectChanged();
    // The up-down control's handler: the selected cursor's next or previous curve, wrapping
    // round; nothing without curves. A cursor without a curve starts at curve 0.
    void UpDownClick(TUDBtnType Button);
    // Gives the selected cursor `Curve` and fires OnCurveChange / curveChanged; a curve outside
    // 0..CurveCount-1 is ignored.
    void OnUpDownChange(int Curve);

    THVKCurveChangeEvent OnCurveChange;
    THVKCursorSelectEvent OnCursorSelect;

    // The parts, for the chart panels and for tests. nullptr for a cursor other than 1 and 2.
    QRadioButton* GetCursorRadio(int Cursor) const;
    QLabel* GetLabelX(int Cursor) const;
    QLabel* GetLabelY(int Cursor) const;
    QLineEdit* GetChannelEdit(int Cursor) const;
    QLabel* GetLabelDX() const;
    QLabel* GetLabelDY() const;
    QLabel* GetLabelFrequency() const;
    QToolButton* GetUpButton() const;
    QToolButton* GetDownButton() const;

    QSize sizeHint() const override;

signals:
    void curveChanged(int Cursor, int Curve);
    void cursorSelected(int Cursor);

protected:
    void changeEvent(QEvent* event) override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

}  // namespace qx
