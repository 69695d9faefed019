#pragma once

#include <QDialog>
#include <QStringList>
#include <vector>

#include "qxbase/framework/export.h"

class QListWidget;
class QPushButton;

namespace qx {

class THVKDialogBackground;

// The modal dialog in which a user switches channels on and off in a chart: one checkable entry
// per channel (checked = visible), "All" checks every entry, "None" unchecks every entry, "OK"
// closes with 1. Escape and the close icon give 2. The caller fills the list before showing the
// dialog and reads the check marks back afterwards.
class QXBASE_EXPORT TFChannelVisibilities : public QDialog {
    Q_OBJECT

public:
    static constexpr int mrOk = 1;
    static constexpr int mrCancel = 2;

    explicit TFChannelVisibilities(QWidget* parent = nullptr);
    ~TFChannelVisibilities() override;

    // One entry per name, checked where `Visible` holds true (missing flags count as visible).
    void SetChannels(const QStringList& Names, const std::vector<bool>& Visible);
    // The check marks, in the order of the entries.
    std::vector<bool> GetVisibilities() const;

    QListWidget* CLBVisibilities() const { return FCLBVisibilities; }
    QPushButton* BTNAllChannelsVisible() const { return FBTNAllChannelsVisible; }
    QPushButton* BTNNoChannelVisible() const { return FBTNNoChannelVisible; }
    QPushButton* BTNOk() const { return FBTNOk; }
    THVKDialogBackground* GetBackground() const { return FBackground; }

    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void CheckAll(bool Checked);

    THVKDialogBackground* FBackground = nullptr;
    QListWidget* FCLBVisibilities = nullptr;
    QPushButton* FBTNAllChannelsVisible = nullptr;
    QPushButton* FBTNNoChannelVisible = nullptr;
    QPushButton* FBTNOk = nullptr;
};

}  // namespace qx
