#pragma once

#include <QByteArray>
#include <QTextStream>

#include "qxbase/config/dewe_bus_simulator.h"
#include "qxbase/config/dewe_scan.h"

namespace qxsheet {

// The demo's simulated bus (PopulateDemoBus) on a pseudo-terminal, and COM GetPort() pointed at
// it through QX_COM<n> while this lives; the variable's old value comes back afterwards. Raises
// EDeweBusSimulatorError when no pseudo-terminal opens.
class TSimulatedBusPort {
public:
    TSimulatedBusPort();
    ~TSimulatedBusPort();
    TSimulatedBusPort(const TSimulatedBusPort&) = delete;
    TSimulatedBusPort& operator=(const TSimulatedBusPort&) = delete;

    // High enough to be free on any machine.
    static constexpr int Port = 64;
    QString GetDevicePath() const { return FBus.GetDevicePath(); }

private:
    qx::TDeweBusSimulator FBus;
    QByteArray FPrevious;
    bool FHadPrevious = false;
};

// Prints the modules of a bus search, one line each.
void PrintScanResult(QTextStream& out, int portNumber, const qx::TDeweScanResult& result);

// Searches the amplifier-module bus on "COM"+portNumber and prints what it found; 0 when the
// port opened, 1 when it did not.
int RunModuleScan(QTextStream& out, int portNumber);

// Starts a simulated bus on a pseudo-terminal, points a COM port at it and scans it.
void ShowSimulatedBusScan(QTextStream& out);

}  // namespace qxsheet
