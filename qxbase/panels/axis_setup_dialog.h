#pragma once

#include <QDialog>
#include <QStringList>
#include <vector>

#include "qxbase/framework/export.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace qx {

class THVKDialogBackground;

// The modal dialog in which a user edits the minimum and maximum of each channel's axis, one
// channel at a time. The caller fills the three parallel arrays, shows the dialog and reads the
// arrays back according to the result: mrOk use them, mrCancel ignore them, mrIgnore ("Set
// defaults") restore the default limits. Enter means OK, Escape and the close icon Cancel.
//
// Showing fills the channel list ("<index>: <name>") and selects the second channel when there
// are several, else the first; the fields show the selected channel's limits. Changing the
// channel stores the fields into the channel left and loads the new one. Every close stores
// the fields first, whichever button closed. Storing reads both fields before it writes either;
// a text that is not a number raises EConvertError there, and where the user caused it (a
// close, a change of channel) the message is shown through HostServices().MessageBox with the
// caption "Error", nothing is stored, the dialog stays open (on the channel it was on) and the
// bad field gets the focus.
class QXBASE_EXPORT TFormAxisSetup : public QDialog {
    Q_OBJECT

public:
    // Dialog results; Ignore is the value the desktop's modal results give it.
    static constexpr int mrOk = 1;
    static constexpr int mrCancel = 2;
    static constexpr int mrIgnore = 5;

    explicit TFormAxisSetup(QWidget* parent = nullptr);
    ~TFormAxisSetup() override;

    const QStringList& GetNames() const { return FNames; }
    void SetNames(const QStringList& Value) { FNames = Value; }
    const std::vector<double>& GetMinValues() const { return FMinValues; }
    void SetMinValues(const std::vector<double>& Value) { FMinValues = Value; }
    const std::vector<double>& GetMaxValues() const { return FMaxValues; }
    void SetMaxValues(const std::vector<double>& Value) { FMaxValues = Value; }
    // The channel the fields belong to; -1 before the dialog was shown or without channels.
    int GetIndex() const { return FIndex; }

    // Shows the limits of the channel selected in the list in the fields, when both arrays
    // hold it; otherwise the fields keep their texts.
    void LoadFields();
    // Stores the fields at GetIndex() when both arrays hold it. Raises EConvertError
    // ("'<text>' is not a valid floating point value") for a text that is not a number, and then
    // stores nothing.
    void StoreFields();

    QComboBox* CBNames() const { return FCBNames; }
    QLineEdit* EMin() const { return FEMin; }
    QLineEdit* EMax() const { return FEMax; }
    QLabel* Label1() const { return FLabel1; }
    QLabel* Label2() const { return FLabel2; }
    QPushButton* Button1() const { return FButton1; }
    QPushButton* Button2() const { return FButton2; }
    QPushButton* Button3() const { return FButton3; }
    THVKDialogBackground* GetBackground() const { return FBackground; }

    void done(int Result) override;
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void NamesChanged(int Index);
    // Stores the fields; on a bad number shows the message and returns false.
    bool TryStoreFields();

    QStringList FNames;
    std::vector<double> FMinValues;
    std::vector<double> FMaxValues;
    int FIndex = -1;

    THVKDialogBackground* FBackground = nullptr;
    QComboBox* FCBNames = nullptr;
    QLineEdit* FEMin = nullptr;
    QLineEdit* FEMax = nullptr;
    QLabel* FLabel1 = nullptr;
    QLabel* FLabel2 = nullptr;
    QPushButton* FButton1 = nullptr;
    QPushButton* FButton2 = nullptr;
    QPushButton* FButton3 = nullptr;
};

}  // namespace qx
