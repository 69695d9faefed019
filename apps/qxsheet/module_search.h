#pragma once

#include <QObject>
#include <QString>
#include <memory>

#include "qxbase/config/dewe_scan.h"

class QWidget;

namespace qx {
class TDeweScanRunner;
class TFormPadSearchResult;
}  // namespace qx

namespace qxsheet {

class TSimulatedBusPort;

// A module search shown in the search result form: the form's text says which port is searched
// and which address is probed, then lists the modules found; "Ok" stays disabled until the end.
// The search runs on a worker thread, so the window behind keeps working. The search is a child
// of the form: closing the form early stops it.
class TModuleSearch : public QObject {
    Q_OBJECT

public:
    // Searches COM `Port`, or the simulated demo bus when Port is 0.
    TModuleSearch(qx::TFormPadSearchResult& Form, int Port);
    ~TModuleSearch() override;

    bool IsRunning() const;
    int GetPort() const { return FPort; }

private:
    void ShowProgress(bool Pad, int Address);
    void ShowResult(const qx::TDeweScanResult& Result);

    qx::TFormPadSearchResult& FForm;
    int FPort = 0;
    QString FHeading;
    // Declared before the runner: the bus must outlive the worker that talks to it.
    std::unique_ptr<TSimulatedBusPort> FBus;
    std::unique_ptr<qx::TDeweScanRunner> FRunner;
};

// Opens the search result form over `Parent` (window-modal, deleted when closed) with a
// TModuleSearch of `Port` running in it, and returns the form.
qx::TFormPadSearchResult* OpenModuleSearch(QWidget* Parent, int Port);

}  // namespace qxsheet
