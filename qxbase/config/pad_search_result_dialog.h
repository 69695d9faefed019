#pragma once

#include <QDialog>
#include <QMetaObject>

#include "qxbase/framework/export.h"

class QPlainTextEdit;
class QPushButton;

namespace qx {

class THVKDialogBackground;

// The modal form that lists what a PAD module search found: the caller writes into Memo1 and
// keeps "Ok" disabled (Disable) while the search runs, enabling it (Enable) at the end. A click
// on an enabled "Ok" closes with 1. Enter closes with 1 and Escape (or the close icon) with 2
// whether or not a search runs, so a user can always leave; the caller then stops its search.
class QXBASE_EXPORT TFormPadSearchResult : public QDialog {
    Q_OBJECT

public:
    static constexpr int mrOk = 1;
    static constexpr int mrCancel = 2;

    explicit TFormPadSearchResult(QWidget* parent = nullptr);
    ~TFormPadSearchResult() override;

    // Hooks the click of "Ok" to closing the form and enables the button.
    void Enable();
    // Unhooks the click and disables the button.
    void Disable();

    QPlainTextEdit* Memo1() const { return FMemo1; }
    QPushButton* SBAllVisible() const { return FSBAllVisible; }
    THVKDialogBackground* GetBackground() const { return FBackground; }

    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    THVKDialogBackground* FBackground = nullptr;
    QPlainTextEdit* FMemo1 = nullptr;
    QPushButton* FSBAllVisible = nullptr;
    QMetaObject::Connection FClickHook;
};

}  // namespace qx
