#pragma once

#include <QObject>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "qxbase/config/dewe_scan.h"
#include "qxbase/framework/export.h"

class QThread;

namespace qx {

// Runs ScanDeweModules on a worker thread, since the serial driver blocks its caller for
// seconds, and reports on the thread the runner lives in (which needs an event loop): progress
// before each address, finished once with the result. The worker hands its reports over under
// a mutex and wakes the runner with a queued call; the result travels by value. The worker is a
// QThread, as the serial port's socket notifiers need one.
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
    struct TStep {
        bool Pad;
        int Address;
    };

    // Called on the worker.
    void Report(std::optional<TStep> Step, std::optional<TDeweScanResult> Result);
    // Called through the queued wake-up: emits what the worker reported since the last call.
    Q_INVOKABLE void DeliverReports();
    void JoinWorker();

    std::unique_ptr<QThread> FWorker;
    std::atomic<bool> FStop{false};
    bool FRunning = false;
    std::mutex FReportsLock;  // guards FSteps and FResult
    std::vector<TStep> FSteps;
    std::optional<TDeweScanResult> FResult;
};

}  // namespace qx
