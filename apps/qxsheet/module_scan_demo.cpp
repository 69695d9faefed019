#include "apps/qxsheet/module_scan_demo.h"

#include <QByteArray>
#include <QString>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/number_text.h"
#include "qxbase/framework/serial_line.h"

namespace qxsheet {
namespace {

QByteArray PortVariable()
{
    return "QX_COM" + QByteArray::number(TSimulatedBusPort::Port);
}

}  // namespace

TSimulatedBusPort::TSimulatedBusPort()
    : FPrevious(qgetenv(PortVariable().constData())), FHadPrevious(qEnvironmentVariableIsSet(PortVariable().constData()))
{
    FBus.PopulateDemoBus();
    qputenv(PortVariable().constData(), FBus.GetDevicePath().toLocal8Bit());
}

TSimulatedBusPort::~TSimulatedBusPort()
{
    if (FHadPrevious)
        qputenv(PortVariable().constData(), FPrevious);
    else
        qunsetenv(PortVariable().constData());
}

void PrintScanResult(QTextStream& out, int portNumber, const qx::TDeweScanResult& result)
{
    if (!result.PortOpen) {
        out << "COM" << portNumber << " (" << qx::ComPortDevice(portNumber)
            << ") did not open: no module search" << Qt::endl;
        return;
    }
    out << "COM" << portNumber << ": " << result.Modules.size() << " module(s) found" << Qt::endl;
    if (result.Stopped)
        out << "the search was stopped before its end" << Qt::endl;
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
        const TSimulatedBusPort bus;
        out << "simulated bus on " << bus.GetDevicePath() << " as COM" << TSimulatedBusPort::Port << Qt::endl;
        RunModuleScan(out, TSimulatedBusPort::Port);
    } catch (const qx::Exception& e) {
        out << "no simulated bus: " << e.Message() << Qt::endl;
    }
}

}  // namespace qxsheet
