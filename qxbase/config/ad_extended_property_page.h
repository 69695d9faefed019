#pragma once

#include <QDialog>

#include "qxbase/framework/export.h"
#include "qxbase/sources/ad_conversion.h"

class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;

namespace qx {

class THVKDialogBackground;
class THVKSmartEdit;
class TComboBox;
class TUpDown;

// The modal page of an A/D converter's extended settings. It neither reads nor writes settings:
// the caller fills the twelve controls, shows the page and afterwards reads the controls and the
// changed-set, which names the settings the user touched. Each control's tag (ControlTag) is its
// bit in the set.
//
// Which senders count is decided by class name without the C++ namespace (StreamClassName):
// SenderChanged takes a "TComboBox" (qx::TComboBox) or a "THVKSmartEdit" (qx::THVKSmartEdit), not
// a plain QComboBox or QLineEdit; UDMultiscancountChanging takes a "TUpDown" (qx::TUpDown). The
// edits report text the user edits (textEdited) and the combos a choice the user makes
// (activated), so filling the controls from code marks nothing. EMultiscancount has no handler:
// only the arrows of UDMultiscancount mark the multiscan count.
//
// "Ok" and Enter close with 1 and keep the set; "Cancel", Escape and the close icon clear the
// bits of the twelve controls and close with 2.
class QXBASE_EXPORT TADExtendedPropertyPage : public QDialog {
    Q_OBJECT

public:
    static constexpr int mrOk = 1;
    static constexpr int mrCancel = 2;

    explicit TADExtendedPropertyPage(QWidget* parent = nullptr);
    ~TADExtendedPropertyPage() override;

    TADChangedSet GetChanged() const { return FChanged; }
    void SetChanged(TADChangedSet Value) { FChanged = Value; }

    // Sets the sender's tag bit when its class is "TComboBox" or "THVKSmartEdit"; anything
    // else, and a tag outside 0..31, leaves the set alone.
    void SenderChanged(QObject* Sender);
    // The same for a "TUpDown" sender; always lets the step happen.
    void UDMultiscancountChanging(QObject* Sender, bool& AllowChange);

    THVKSmartEdit* ExternalClockDivEdit() const { return FExternalClockDivEdit; }
    TComboBox* ResolutionComboBox() const { return FResolutionComboBox; }
    TComboBox* EncodingComboBox() const { return FEncodingComboBox; }
    THVKSmartEdit* DMAUsageEdit() const { return FDMAUsageEdit; }
    THVKSmartEdit* BufferCountEdit() const { return FBufferCountEdit; }
    TComboBox* ClockSourceComboBox() const { return FClockSourceComboBox; }
    TComboBox* CutOffFilterComboBox() const { return FCutOffFilterComboBox; }
    TComboBox* TriggerModeCombo() const { return FTriggerModeCombo; }
    TComboBox* TriggerScanCombo() const { return FTriggerScanCombo; }
    TComboBox* ReTriggerCombo() const { return FReTriggerCombo; }
    THVKSmartEdit* ReTriggerFreqEdit() const { return FReTriggerFreqEdit; }
    TUpDown* UDMultiscancount() const { return FUDMultiscancount; }
    QLineEdit* EMultiscancount() const { return FEMultiscancount; }
    // The label in front of one of the twelve controls; null for any other widget.
    QLabel* LabelOf(const QWidget* Control) const;
    QFrame* GetGroupBox() const { return FGroupBox; }
    QPushButton* OkButton() const { return FOkButton; }
    QPushButton* CancelButton() const { return FCancelButton; }
    THVKDialogBackground* GetBackground() const { return FBackground; }

    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    THVKDialogBackground* FBackground = nullptr;
    QFrame* FGroupBox = nullptr;
    THVKSmartEdit* FExternalClockDivEdit = nullptr;
    TComboBox* FResolutionComboBox = nullptr;
    TComboBox* FEncodingComboBox = nullptr;
    THVKSmartEdit* FDMAUsageEdit = nullptr;
    THVKSmartEdit* FBufferCountEdit = nullptr;
    TComboBox* FClockSourceComboBox = nullptr;
    TComboBox* FCutOffFilterComboBox = nullptr;
    TComboBox* FTriggerModeCombo = nullptr;
    TComboBox* FTriggerScanCombo = nullptr;
    TComboBox* FReTriggerCombo = nullptr;
    THVKSmartEdit* FReTriggerFreqEdit = nullptr;
    TUpDown* FUDMultiscancount = nullptr;
    QLineEdit* FEMultiscancount = nullptr;
    QPushButton* FOkButton = nullptr;
    QPushButton* FCancelButton = nullptr;
    TADChangedSet FChanged;
};

}  // namespace qx
