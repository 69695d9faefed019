#include "apps/qxsheet/chart_readout.h"

#include <QLabel>
#include <QLineEdit>
#include <algorithm>

#include "qxbase/chartpanels/recorder_panel.h"
#include "qxbase/chartpanels/scope_panel.h"
#include "qxbase/chartpanels/amplitude_spectrum_panel.h"
#include "qxbase/panels/histo_cursor_panel.h"
#include "qxbase/panels/histo_ui.h"
#include "qxbase/resources/chart_texts.h"

namespace qxsheet {
namespace {

QString Number(double Value)
{
    return QString::number(Value, 'g', 6);
}

QString RecorderLine(const qx::TKSRecorderPanel& Recorder)
{
    const qx::TKSHistoUI& chart = Recorder.GetChart();
    const qx::TQXChartCurve* first = chart.GetCurveCount() > 0 ? chart.GetCurve(0) : nullptr;
    return QStringLiteral("%1 curves, %2 samples kept each (t = %3 .. %4 s), view %5 .. %6 s")
        .arg(chart.GetCurveCount())
        .arg(first != nullptr ? first->Samples.size() : 0)
        .arg(Number(Recorder.GetKeptStart()), Number(Recorder.GetKeptEnd()), Number(chart.GetXAxis().Min),
             Number(chart.GetXAxis().Max));
}

QString ScopeLine(const qx::TKSScopePanel& Scope)
{
    const qx::TKSHistoUI& chart = Scope.GetChart();
    const qx::TQXChartCurve* first = chart.GetCurveCount() > 0 ? chart.GetCurve(0) : nullptr;
    return QStringLiteral("capture %1: %2 curves of %3 samples, trigger at x = 0 (%4 samples in), %5")
        .arg(Scope.GetCaptureCount())
        .arg(chart.GetCurveCount())
        .arg(first != nullptr ? first->Samples.size() : 0)
        .arg(Scope.GetPreTrigger())
        .arg(Scope.GetTriggerStateText());
}

QString SpectrumLine(const qx::TKSSpectrumPanel& Spectrum)
{
    const qx::TKSHistoUI& chart = Spectrum.GetChart();
    QStringList peaks;
    for (int c = 0; c < chart.GetCurveCount(); ++c) {
        const qx::TQXChartCurve& curve = *chart.GetCurve(c);
        if (curve.Samples.empty())
            continue;
        const auto peak = std::max_element(curve.Samples.begin(), curve.Samples.end());
        const double x = curve.X0 + curve.DX * static_cast<double>(peak - curve.Samples.begin());
        peaks << QStringLiteral("%1 peak at %2 Hz, %3 %4").arg(curve.Name, Number(x), Number(*peak), curve.Unit);
    }
    return QStringLiteral("spectrum %1: %2").arg(Spectrum.GetSpectrumCount()).arg(
        peaks.isEmpty() ? QStringLiteral("none yet") : peaks.join(QStringLiteral("; ")));
}

}  // namespace

QString ChartCycleLine(const qx::TKSChartPanel& Chart)
{
    if (!Chart.GetErrorText().isEmpty())
        return Chart.GetErrorText();
    if (const auto* recorder = qobject_cast<const qx::TKSRecorderPanel*>(&Chart)) return RecorderLine(*recorder);
    if (const auto* scope = qobject_cast<const qx::TKSScopePanel*>(&Chart)) return ScopeLine(*scope);
    if (const auto* spectrum = qobject_cast<const qx::TKSSpectrumPanel*>(&Chart)) return SpectrumLine(*spectrum);
    return QStringLiteral("chart");
}

void PrintCursorReadout(QTextStream& out, qx::TKSChartPanel& Chart)
{
    qx::TKSHistoUI& chart = Chart.GetChart();
    const qx::TQXXAxisDataObject& axis = chart.GetXAxis();
    chart.SetCursorCurve(0, 0);
    chart.SetCursorCurve(1, 0);
    chart.SetCursorX(0, axis.Min + (axis.Max - axis.Min) / 4);
    chart.SetCursorX(1, axis.Min + (axis.Max - axis.Min) * 3 / 4);
    const qx::TKSHistoCursorPanel& panel = Chart.GetCursorPanel();
    out << "  " << Chart.objectName() << " (" << panel.GetChannelEdit(1)->text() << "): "
        << qx::res::_rsCursor1.Text() << panel.GetLabelX(1)->text() << ", " << panel.GetLabelY(1)->text() << "; "
        << qx::res::_rsCursor2.Text() << panel.GetLabelX(2)->text() << ", " << panel.GetLabelY(2)->text() << "; "
        << panel.GetLabelDX()->text() << ", " << panel.GetLabelDY()->text() << ", "
        << panel.GetLabelFrequency()->text() << Qt::endl;
}

}  // namespace qxsheet
