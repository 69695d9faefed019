#include "apps/qxsheet/datapath_demo.h"

#include <cmath>
#include <vector>

#include "apps/qxsheet/data_panels.h"
#include "apps/qxsheet/worksheet_app.h"
#include "qxbase/framework/stream_registry.h"
#include "qxbase/panels/panel_tab_page.h"
#include "qxbase/panels/worksheet_file.h"
#include "qxbase/sources/connection_collector.h"
#include "qxbase/sources/simulated_source.h"

namespace qxsheet {
namespace {

QString Number(double Value)
{
    return QString::number(Value, 'g', 6);
}

QString Name(const qx::TKSMSSink& Panel)
{
    return qx::StreamClassName(*Panel.metaObject()) + QLatin1Char(' ') + Panel.objectName();
}

QString MeterLine(const TDemoMeterPanel& Meter)
{
    const qx::TQXMSExChannelInformation* info = Meter.GetLink().GetChannelList(Meter.GetSingleLink().GetChannel());
    return QStringLiteral("%1 of %2 = %3 %4 at t = %5 s")
        .arg(Meter.GetMethodText(), info != nullptr ? info->Name : Meter.GetChannelName(), Number(Meter.GetValue()),
             info != nullptr ? info->SecondText : QString(), Number(Meter.GetValueTime()));
}

QString CurveLine(const TDemoCurvePanel& Curve)
{
    QStringList counts;
    for (int count : Curve.GetLastCounts()) counts << QString::number(count);
    return QStringLiteral("%1 channels, samples %2").arg(counts.size()).arg(counts.join(QLatin1Char(' ')));
}

QString CaptureLine(const TDemoCapturePanel& Capture)
{
    return QStringLiteral("capture %1: %2 channels of %3 samples from t = %4 s, trigger at sample %5 (t = %6 s)")
        .arg(Capture.GetReceived())
        .arg(Capture.GetCurves().size())
        .arg(Capture.GetCount())
        .arg(Number(Capture.GetStartTime()))
        .arg(Capture.GetTriggerPosition())
        .arg(std::isnan(Capture.GetTriggerTime()) ? QStringLiteral("unknown") : Number(Capture.GetTriggerTime()));
}

QString DeliveryLine(const TDataPanel& Panel)
{
    if (const auto* meter = qobject_cast<const TDemoMeterPanel*>(&Panel)) return MeterLine(*meter);
    if (const auto* curve = qobject_cast<const TDemoCurvePanel*>(&Panel)) return CurveLine(*curve);
    if (const auto* capture = qobject_cast<const TDemoCapturePanel*>(&Panel)) return CaptureLine(*capture);
    return QStringLiteral("data");
}

void PrintRoots(QTextStream& out, const QString& Title, int Count,
                const std::function<qx::TQXConnectionRoot*(int)>& Root)
{
    out << Title << ": " << Count << Qt::endl;
    for (int i = 0; i < Count; ++i) {
        const qx::TQXConnectionRoot& root = *Root(i);
        out << "  \"" << root.GetDescription() << "\" (" << root.GetClassName() << " " << root.GetComponentName()
            << ")" << Qt::endl;
        for (int t = 0; t < root.GetConnectionTargetCount(); ++t) {
            const qx::TQXConnectionTarget& target = *root.GetConnectionTarget(t);
            out << "    -> \"" << target.GetDescription() << "\" (" << target.GetClassName() << " "
                << target.GetComponentName() << ")" << Qt::endl;
            for (int l = 0; l < target.GetConnectionCount(); ++l)
                out << "         " << target.GetConnection(l) << Qt::endl;
        }
    }
}

}  // namespace

int RunDatapathDemo(const QString& Path, int Cycles, QTextStream& out, QTextStream& err)
{
    const std::unique_ptr<TWorksheetWindow> window = OpenWorksheetWindowOrReport(Path, err);
    if (!window)
        return 1;
    qx::TKSSimulatedSource* source = nullptr;
    std::vector<TDataPanel*> panels;
    for (qx::TKSPanelTabPage* page : window->GetPages())
        for (qx::TKSMSSink* panel : qx::GetAllPagePanels(*page)) {
            if (auto* data = qobject_cast<TDataPanel*>(panel)) panels.push_back(data);
            if (auto* simulated = qobject_cast<qx::TKSSimulatedSource*>(panel); simulated && !source)
                source = simulated;
        }
    if (source == nullptr) {
        err << "qxsheet: " << window->GetPath() << " has no simulated source to step" << Qt::endl;
        return 1;
    }

    out << "qxsheet - data path: the simulated source stepped by hand and what each consumer took" << Qt::endl
        << Qt::endl << "source " << Name(*source) << ": " << source->GetNrOfCGLChannels() << " channels, "
        << source->GetBlockSize() << " samples per block at " << Number(source->GetClockFrequencyReal()) << " Hz"
        << Qt::endl;
    for (const TDataPanel* panel : panels)
        out << "  " << Name(*panel) << " reads " << (panel->GetLink().GetSource() ? panel->GetSourceName()
                                                                                  : QStringLiteral("nothing"))
            << Qt::endl;

    for (int cycle = 1; cycle <= Cycles; ++cycle) {
        const std::uint64_t first = source->GetStreamPosition();
        std::vector<int> before;
        for (const TDataPanel* panel : panels) before.push_back(panel->GetReceived());
        source->Step();
        out << Qt::endl << "cycle " << cycle << ", samples " << first << ".." << source->GetStreamPosition() - 1
            << Qt::endl;
        for (std::size_t i = 0; i < panels.size(); ++i)
            out << "  " << Name(*panels[i]) << ": "
                << (panels[i]->GetReceived() != before[i] ? DeliveryLine(*panels[i]) : QStringLiteral("nothing"))
                << Qt::endl;
    }

    out << Qt::endl << "connections" << Qt::endl;
    qx::TQXConnectionCollector collector;
    collector.ScanRoot(window.get());
    PrintRoots(out, QStringLiteral("data sources"), collector.GetDataSourceRootCount(),
               [&](int i) { return collector.GetDataSourceRoot(i); });
    PrintRoots(out, QStringLiteral("event sources"), collector.GetEventSourceRootCount(),
               [&](int i) { return collector.GetEventSourceRoot(i); });
    PrintRoots(out, QStringLiteral("control sources"), collector.GetControlSourceRootCount(),
               [&](int i) { return collector.GetControlSourceRoot(i); });
    return 0;
}

}  // namespace qxsheet
