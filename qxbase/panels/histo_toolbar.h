#pragma once

#include <QList>
#include <QToolButton>
#include <QWidget>

#include "qxbase/framework/export.h"

namespace qx {

// The toolbar of a chart panel: a plain strip of flat tool buttons, left to right
// BAxisSetup, BAutoscale, BCaptureScale, BDefault, BCursorPanel, BPrint, BVisible, BHold,
// BBackward, BForward, each with its glyph from the bitmap resources ("TB_AXIS" ...) and its
// hint as tool tip (BForward has none). BAutoscale, BCursorPanel and BHold are checkable, each
// on its own (up is allowed); the others are push buttons. BBackward and BForward start hidden.
// The chart panel connects the buttons; the toolbar does nothing with them itself.
class QXBASE_EXPORT TKSHistoToolbar : public QWidget {
    Q_OBJECT

public:
    explicit TKSHistoToolbar(QWidget* parent = nullptr);
    ~TKSHistoToolbar() override;

    QToolButton* BAxisSetup() const { return FButtons[0]; }
    QToolButton* BAutoscale() const { return FButtons[1]; }
    QToolButton* BCaptureScale() const { return FButtons[2]; }
    QToolButton* BDefault() const { return FButtons[3]; }
    QToolButton* BCursorPanel() const { return FButtons[4]; }
    QToolButton* BPrint() const { return FButtons[5]; }
    QToolButton* BVisible() const { return FButtons[6]; }
    QToolButton* BHold() const { return FButtons[7]; }
    QToolButton* BBackward() const { return FButtons[8]; }
    QToolButton* BForward() const { return FButtons[9]; }
    // All ten, in order.
    const QList<QToolButton*>& GetButtons() const { return FButtons; }

private:
    QList<QToolButton*> FButtons;
};

}  // namespace qx
