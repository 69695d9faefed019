#pragma once

#include <QDialog>

#include "qxbase/framework/export.h"

namespace qx {

class TCtrlClientPropSelector;
class TKSSourceControlClient;

// The modal dialog in which a user edits the bindings of a client: the selector controls on a
// tab "Control source". exec() gives 1 for OK and 2 for Cancel.
class QXBASE_EXPORT TKSSourceControlPropertyPage : public QDialog {
    Q_OBJECT

public:
    explicit TKSSourceControlPropertyPage(QWidget* parent = nullptr);
    ~TKSSourceControlPropertyPage() override;

    // Shows the client's bindings and the control sources of its worksheet.
    void SetTheComponent(TKSSourceControlClient* Client);
    TCtrlClientPropSelector* GetSelector() const;
};

}  // namespace qx
