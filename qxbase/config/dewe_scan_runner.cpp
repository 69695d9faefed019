#include "qxbase/config/dewe_scan_runner.h"

#include <QMetaObject>
#include <QThread>

namespace qx {

TDeweScanRunner::TDeweScanRunner(QObject* parent) : QObject(parent) {}

TDeweScanRunner::~TDeweScanRunner()
{
    FStop = true;
    // Reports the worker posted before it ended die with this object.
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
            QMetaObject::invokeMethod(this, [this, pad, address] { emit progress(pad, address); }, Qt::QueuedConnection);
            return true;
        });
        QMetaObject::invokeMethod(this, [this, result = std::move(result)] { Finish(result); }, Qt::QueuedConnection);
    }));
    FWorker->start();
    return true;
}

void TDeweScanRunner::Stop()
{
    FStop = true;
}

void TDeweScanRunner::Finish(const TDeweScanResult& result)
{
    // The worker's last act was to post this call: it has ended or is about to.
    JoinWorker();
    FRunning = false;
    emit finished(result);
}

}  // namespace qx
