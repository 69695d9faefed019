#pragma once

#include <QObject>
#include <atomic>
#include <cstdint>
#include <memory>

#include "qxbase/config/dewe_scan.h"
#include "qxbase/framework/export.h"

class QThread;

namespace qx {

// Runs ScanDeweModules on a worker thread, since the serial driver blocks its caller for
// seconds, and reports back through queued calls on the thread the runner lives in (which needs
// an event loop): progress before each address, finished once with the result. The worker owns
// nothing the runner's thread touches; the result travels by value. The worker is a QThread, as
// the serial port's socket notifiers need one.
class QXBASE_EXPORT TDeweScanRunner : public QObject {
    Q_OBJECT

public:
    explicit TDeweScanRunner(QObject* parent = nullptr);
    // Stops a running search before its next address and waits for it (at most one probe, a few
    // hundred milliseconds); its reports are then not delivered.
    ~TDeweScanRunner() override;

    // Starts a search of "COM"+portNumber. False, and nothing started, while one runs.
    bool Start(std::int32_t portNumber);
    // Asks a running search to stop before its next address; finished still follows, with
    // Stopped set and what was found.
    void Stop();
    // From Start until finished is emitted.
    bool IsRunning() const { return FRunning; }

signals:
    void progress(bool pad, int address);
    void finished(const qx::TDeweScanResult& result);

private:
    void Finish(const TDeweScanResult& result);

    void JoinWorker();

    std::unique_ptr<QThread> FWorker;
    std::atomic<bool> FStop{false};
    bool FRunning = false;
};

}  // namespace qx
