#pragma once

#include <QTextStream>

#include "qxbase/config/dewe_scan.h"

namespace qxsheet {

// Prints the modules of a bus search, one line each.
void PrintScanResult(QTextStream& out, int portNumber, const qx::TDeweScanResult& result);

// Searches the amplifier-module bus on "COM"+portNumber and prints what it found; 0 when the
// port opened, 1 when it did not.
int RunModuleScan(QTextStream& out, int portNumber);

// Starts a simulated bus on a pseudo-terminal, points a COM port at it and scans it.
void ShowSimulatedBusScan(QTextStream& out);

}  // namespace qxsheet
