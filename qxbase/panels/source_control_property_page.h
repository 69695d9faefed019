#pragma once

#include <QDialog>

#include "qxbase/framework/export.h"

class QPushButton;
class QTabWidget;

namespace qx {

class TCtrlClientPropSelector;
class TKSSourceControlClient;

// The modal dialog in which a user edits the bindings of a client: the selector controls on a
// tab "Control source". exec() gives 1 for OK and 2 for Cancel; Enter means OK and Escape
// Cancel. Edits go straight into the client's bindings, so Cancel does not undo them.
class QXBASE_EXPORT TKSSourceControlPropertyPage : public QDialog {
    Q_OBJECT

public:
    explicit TKSSourceControlPropertyPage(QWidget* parent = nullptr);
    ~TKSSourceControlPropertyPage() override;

    // Shows the client's bindings and the control sources of its worksheet, and names the
    // client in the caption ("   Properties of " and its caption, else its component name).
    void SetTheComponent(TKSSourceControlClient* Client);
    TCtrlClientPropSelector* GetSelector() const;
    QTabWidget* GetPageControl() const { return FPageControl; }
    QPushButton* GetOKButton() const { return FOKButton; }
    QPushButton* GetCancelButton() const { return FCancelButton; }

    // Closing with OK first stores a value still being typed; Cancel drops it.
    void done(int Result) override;
    void reject() override;

protected:
    // Selects the first binding when none is, so its values show at once.
    void showEvent(QShowEvent* event) override;

private:
    QTabWidget* FPageControl = nullptr;
    TCtrlClientPropSelector* FSelector = nullptr;
    QPushButton* FOKButton = nullptr;
    QPushButton* FCancelButton = nullptr;
};

}  // namespace qx
