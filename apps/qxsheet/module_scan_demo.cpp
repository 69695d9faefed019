#include "apps/qxsheet/module_scan_demo.h"

#include <QByteArray>
#include <QString>

#include "qxbase/config/dewe_bus_simulator.h"
#include "qxbase/framework/exception.h"
#include "qxbase/framework/number_text.h"
#include "qxbase/framework/serial_line.h"

namespace qxsheet {
namespace {

// The COM number the demo maps onto the simulated bus; high enough to be free on any machine.
constexpr int kSimulatedPort = 64;

}  // namespace

void PrintScanResult(QTextStream& out, int portNumber, const qx::TDeweScanResult& result)
{
    if (!result.PortOpen) {
        out << "COM" << portNumber << " (" << qx::ComPortDevice(portNumber)
            << ") did not open: no module search" << Qt::endl;
        return;
    }
    out << "COM" << portNumber << ": " << result.Modules.size() << " module(s) found" << Qt::endl;
    for (const qx::TDeweModuleSummary& m : result.Modules) {
        out << "  address " << QString::number(m.Address).rightJustified(2) << "  "
            << (m.IsPAD ? "PAD " : "DAQP") << "  " << m.ModuleTypeText.leftJustified(11)
            << " range " << (m.InputRangeText.isEmpty() ? QStringLiteral("-") : m.InputRangeText);
        if (!m.IsPAD)
            out << ", filter "
                << (m.FilterRangeText.isEmpty() ? QStringLiteral("-") : m.FilterRangeText)
                << (m.Remote ? ", remote" : ", local");
        else
            out << ", " << m.ChannelCount << " channels";
        out << Qt::endl;
    }
}

int RunModuleScan(QTextStream& out, int portNumber)
{
    out << "searching the module bus on COM" << portNumber << " ("
        << qx::ComPortDevice(portNumber) << ") ..." << Qt::endl;
    const qx::TDeweScanResult result = qx::ScanDeweModules(portNumber);
    PrintScanResult(out, portNumber, result);
    return result.PortOpen ? 0 : 1;
}

void ShowSimulatedBusScan(QTextStream& out)
{
    out << Qt::endl << "== Amplifier modules on a simulated bus ==" << Qt::endl;
    try {
        qx::TDeweBusSimulator bus;
        bus.PopulateDemoBus();
        const QByteArray variable = "QX_COM" + QByteArray::number(kSimulatedPort);
        const QByteArray previous = qgetenv(variable.constData());
        const bool hadPrevious = qEnvironmentVariableIsSet(variable.constData());
        qputenv(variable.constData(), bus.GetDevicePath().toLocal8Bit());
        out << "simulated bus on " << bus.GetDevicePath() << " as COM" << kSimulatedPort << Qt::endl;
        RunModuleScan(out, kSimulatedPort);
        if (hadPrevious)
            qputenv(variable.constData(), previous);
        else
            qunsetenv(variable.constData());
    } catch (const qx::Exception& e) {
        out << "no simulated bus: " << e.Message() << Qt::endl;
    }
}

}  // namespace qxsheet
