#pragma once

#include <QComboBox>
#include <QWidget>
#include <functional>

#include "qxbase/framework/export.h"

class QLineEdit;
class QToolButton;

namespace qx {

// The component package's drop-down list. A class of its own so that handlers which tell their
// senders apart by class name ("TComboBox") can tell it from a plain QComboBox.
class QXBASE_EXPORT TComboBox : public QComboBox {
    Q_OBJECT

public:
    explicit TComboBox(QWidget* parent = nullptr);
};

// The component package's up-down control: two arrow buttons stepping a number that an
// associated edit shows. Typing into the edit is the edit's business; only a step through the
// arrows (Click) asks OnChanging. Position stays within Min..Max.
class QXBASE_EXPORT TUpDown : public QWidget {
    Q_OBJECT

public:
    explicit TUpDown(QWidget* parent = nullptr);

    // The edit that shows the position; null for none. Not owned.
    QLineEdit* GetAssociate() const { return FAssociate; }
    // Shows the position in the edit.
    void SetAssociate(QLineEdit* Edit);
    int GetMin() const { return FMin; }
    int GetMax() const { return FMax; }
    // Sets both bounds (Max below Min is taken as Min) and clamps the position into them.
    void SetRange(int Min, int Max);
    int GetIncrement() const { return FIncrement; }
    void SetIncrement(int Value) { FIncrement = Value; }
    int GetPosition() const { return FPosition; }
    // Clamped; shown in the associated edit. Does not ask OnChanging.
    void SetPosition(int Value);

    // What a click on an arrow does: takes the associated edit's number as the position (a text
    // that is no number leaves the position), asks OnChanging, and steps by Increment within the
    // bounds, showing the result and emitting positionChanged when it moved.
    void Click(bool Up);

    QToolButton* GetUpButton() const { return FUpButton; }
    QToolButton* GetDownButton() const { return FDownButton; }

    // Asked before every step; clearing AllowChange refuses the step.
    std::function<void(QObject* Sender, bool& AllowChange)> OnChanging;

signals:
    void positionChanged(int Position);

private:
    void ShowPosition();

    QLineEdit* FAssociate = nullptr;
    QToolButton* FUpButton = nullptr;
    QToolButton* FDownButton = nullptr;
    int FMin = 0;
    int FMax = 100;
    int FIncrement = 1;
    int FPosition = 0;
};

// A control's tag: the integer its dynamic property "Tag" holds, or -1 without one.
QXBASE_EXPORT int ControlTag(const QObject* Control);
QXBASE_EXPORT void SetControlTag(QObject* Control, int Tag);

// Gives a dialog the window-text colour of the desktop palette and passes it to its background
// panel, as the small dialogs do when they are shown.
QXBASE_EXPORT void UseWindowTextColor(QWidget& Dialog, QWidget& Background);

}  // namespace qx
