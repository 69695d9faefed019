#include "apps/qxsheet/datapath_demo.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "apps/qxsheet/chart_readout.h"
#include "apps/qxsheet/data_panels.h"
#include "apps/qxsheet/worksheet_app.h"
#include "qxbase/chartpanels/chart_panel.h"
#include "qxbase/framework/stream_registry.h"
#include "qxbase/panels/panel_tab_page.h"
#include "qxbase/panels/worksheet_file.h"
#include "qxbase/measure/block_buffer.h"
#include "qxbase/sources/connection_collector.h"
#include "qxbase/sources/math_channel_processor.h"
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

QString DeliveryLine(const TDataPanel& Panel)
{
    if (const auto* meter = qobject_cast<const TDemoMeterPanel*>(&Panel)) return MeterLine(*meter);
    return QStringLiteral("data");
}

// Keeps a copy of the last block set a processor sent.
struct TProbe {
    explicit TProbe(qx::TQXMeasureSourceEx& Source)
    {
        Link.OnNewData = [this](qx::TQXMeasureLinkEx*, const qx::TRVShortdefs&, const qx::TRVDataDoubleArray& Data,
                                const qx::TRVDataDoubleArray&, double) {
            Blocks.clear();
            for (const qx::TRVDataDouble& block : Data) Blocks.emplace_back(block.data, block.data + block.count);
        };
        Link.SetQXMeasureSourceEx(&Source);
    }
    ~TProbe() { Link.SetQXMeasureSourceEx(nullptr); }
    TProbe(const TProbe&) = delete;
    TProbe& operator=(const TProbe&) = delete;

    qx::TQXMeasureLinkEx Link;
    std::vector<std::vector<double>> Blocks;
};

QString WaveText(const qx::TKSSimulatedSource& Source, int Channel)
{
    if (Channel < 0 || Channel >= Source.GetNrOfCGLChannels())
        return QStringLiteral("no waveform");
    const qx::TKSWaveform wave = Source.GetWaveform(Channel);
    if (wave.Kind != qx::kswSine)
        return QStringLiteral("not a sine");
    return QStringLiteral("sine of %1 Hz, amplitude %2").arg(Number(wave.Frequency), Number(std::fabs(wave.Amplitude)));
}

// The strongest bin of a spectrum block; result[k] is bin k + 2 of the FFT processor, whose bins
// are frequency / points / 2 apart.
QString SpectrumLine(const std::vector<double>& Spectrum, const qx::TKSZLFFT& FFT)
{
    if (Spectrum.empty() || FFT.GetSize() <= 0)
        return QStringLiteral("no spectrum");
    const auto peak = std::max_element(Spectrum.begin(), Spectrum.end());
    const double binWidth = FFT.GetFrequency() / FFT.GetSize() / 2;
    const auto bin = static_cast<double>(peak - Spectrum.begin()) + 2;
    return QStringLiteral("peak at %1 Hz, amplitude %2").arg(Number(bin * binWidth), Number(*peak));
}

void PrintMathChannels(QTextStream& out, qx::TKSMathChannelProcessor& Math, const TProbe& Probe,
                       const qx::TKSSimulatedSource& Source)
{
    qx::TQXVirtualChannelTable& table = Math.GetTable();
    const int inputs = Math.GetChannelListCount() - table.GetChannelListCount();
    const bool fedBySource = Math.GetQXMeasureSource() == &Source;
    out << Qt::endl << "math channels of " << Name(Math) << " in the last cycle" << Qt::endl;
    for (int i = 0; i < table.GetChannelListCount(); ++i) {
        const qx::TQXMSExChannelInformation& info = *table.GetChannelList(i);
        const std::size_t position = static_cast<std::size_t>(inputs + i);
        const std::vector<double> none;
        const std::vector<double>& block = position < Probe.Blocks.size() ? Probe.Blocks[position] : none;
        out << "  " << info.Name << " (" << qx::GetOperationText(info.Operation).trimmed() << "): ";
        if (info.Operation == qx::qxvtFFT) {
            out << SpectrumLine(block, table.GetFFT()) << "; the input is a "
                << (fedBySource ? WaveText(Source, info.FirstOperandIndex) : QStringLiteral("no waveform"));
        } else if (block.size() == 1) {
            out << "= " << Number(block[0]) << ' ' << info.SecondText;
        } else if (block.empty()) {
            out << "nothing";
        } else {
            out << block.size() << " samples, first " << Number(block[0]) << ", second " << Number(block[1]) << ' '
                << info.SecondText;
        }
        out << Qt::endl;
    }
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
    std::vector<qx::TKSMathChannelProcessor*> maths;
    std::vector<qx::TKSChartPanel*> charts;
    for (qx::TKSPanelTabPage* page : window->GetPages())
        for (qx::TKSMSSink* panel : qx::GetAllPagePanels(*page)) {
            if (auto* data = qobject_cast<TDataPanel*>(panel)) panels.push_back(data);
            if (auto* chart = qobject_cast<qx::TKSChartPanel*>(panel)) charts.push_back(chart);
            if (auto* math = qobject_cast<qx::TKSMathChannelProcessor*>(panel)) maths.push_back(math);
            if (auto* simulated = qobject_cast<qx::TKSSimulatedSource*>(panel); simulated && !source)
                source = simulated;
        }
    if (source == nullptr) {
        err << "qxsheet: " << window->GetPath() << " has no simulated source to step" << Qt::endl;
        return 1;
    }

    out << "qxsheet - data path: the simulated source stepped by hand and what each consumer took" << Qt::endl
        << Qt::endl << "source " << Name(*source) << ": " << source->GetNrOfCGLChannels() << " channels, "
        << source->GetBlockSize() << " samples per block at " << Number(source->GetSampleRate())
        << " Hz per channel (converter clock " << Number(source->GetClockFrequencyReal()) << " Hz)" << Qt::endl;
    for (const TDataPanel* panel : panels)
        out << "  " << Name(*panel) << " reads " << (panel->GetLink().GetSource() ? panel->GetSourceName()
                                                                                  : QStringLiteral("nothing"))
            << Qt::endl;
    for (const qx::TKSChartPanel* chart : charts)
        out << "  " << Name(*chart) << " reads "
            << (chart->GetLink().GetSource() ? chart->GetSourceName() : QStringLiteral("nothing")) << Qt::endl;

    std::vector<std::unique_ptr<TProbe>> probes;
    for (qx::TKSMathChannelProcessor* math : maths) probes.push_back(std::make_unique<TProbe>(*math));

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
        for (const qx::TKSChartPanel* chart : charts)
            out << "  " << Name(*chart) << ": " << ChartCycleLine(*chart) << Qt::endl;
    }

    for (std::size_t i = 0; i < maths.size(); ++i) PrintMathChannels(out, *maths[i], *probes[i], *source);
    if (!charts.empty()) {
        out << Qt::endl << "cursor read-outs (cursor 1 at a quarter, cursor 2 at three quarters of the x axis)"
            << Qt::endl;
        for (qx::TKSChartPanel* chart : charts) PrintCursorReadout(out, *chart);
    }
    probes.clear();  // the collector below lists the links that stay

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
