#pragma once

#include <QDialog>

#include "qxbase/framework/export.h"

class QLabel;
class QPushButton;

namespace qx {

class THVKDialogBackground;

// The line recorder's yes/no question: the caller writes the question into Label1 and Label2.
// "Yes" closes with 1, "No" with 2; the image, the close icon and Escape only close (2). When
// shown, the form and its panel are captioned "   Confirm".
class QXBASE_EXPORT TLineRecorderConfirmDlg : public QDialog {
    Q_OBJECT

public:
    static constexpr int mrOk = 1;
    static constexpr int mrCancel = 2;

    explicit TLineRecorderConfirmDlg(QWidget* parent = nullptr);
    ~TLineRecorderConfirmDlg() override;

    QLabel* Label1() const { return FLabel1; }
    QLabel* Label2() const { return FLabel2; }
    QLabel* Image1() const { return FImage1; }
    QPushButton* OkButton() const { return FOkButton; }
    QPushButton* CancelButton() const { return FCancelButton; }
    THVKDialogBackground* GetBackground() const { return FBackground; }

    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    THVKDialogBackground* FBackground = nullptr;
    QLabel* FImage1 = nullptr;
    QLabel* FLabel1 = nullptr;
    QLabel* FLabel2 = nullptr;
    QPushButton* FOkButton = nullptr;
    QPushButton* FCancelButton = nullptr;
};

}  // namespace qx
