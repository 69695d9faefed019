#include "qxbase/config/dewe_scan_runner.h"

#include <QMetaObject>
#include <QThread>

namespace qx {

TDeweScanRunner::TDeweScanRunner(QObject* parent) : QObject(parent) {}

TDeweScanRunner::~TDeweScanRunner()
{
    FStop = true;
    // Wake-ups the worker posted before it ended die with this object.
    JoinWorker();
}

void TDeweScanRunner::JoinWorker()
{
    if (!FWorker) return;
    FWorker->wait();
    FWorker.reset();
}

bool TDeweScanRunner::Start(std::int32_t portNumber)
{
    if (FRunning) return false;
    JoinWorker();
    FStop = false;
    FRunning = true;
    FWorker.reset(QThread::create([this, portNumber] {
        TDeweScanResult result = ScanDeweModules(portNumber, [this](bool pad, std::int32_t address) {
            if (FStop) return false;
            Report(TStep{pad, address}, std::nullopt);
            return true;
        });
        Report(std::nullopt, std::move(result));
    }));
    FWorker->start();
    return true;
}

void TDeweScanRunner::Stop()
{
    FStop = true;
}

void TDeweScanRunner::Report(std::optional<TStep> Step, std::optional<TDeweScanResult> Result)
{
    {
        const std::scoped_lock lock(FReportsLock);
        if (Step) FSteps.push_back(*Step);
        if (Result) FResult = std::move(Result);
    }
    // Posted by name, so the event carries nothing of ours: the reports cross under the lock.
    QMetaObject::invokeMethod(this, "DeliverReports", Qt::QueuedConnection);
}

void TDeweScanRunner::DeliverReports()
{
    std::vector<TStep> steps;
    std::optional<TDeweScanResult> result;
    {
        const std::scoped_lock lock(FReportsLock);
        steps.swap(FSteps);
        result.swap(FResult);
    }
    for (const TStep& step : steps) emit progress(step.Pad, step.Address);
    if (!result) return;
    // The result is the worker's last report: it has ended or is about to.
    JoinWorker();
    FRunning = false;
    emit finished(*result);
}

}  // namespace qx
