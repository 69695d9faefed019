#include <QDateTime>
#include <QPainter>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <algorithm>
#include <memory>

#include "qxbase/chartpanels/chart_panel.h"
#include "qxbase/chartpanels/chart_kinds.h"
#include "qxbase/chartpanels/dcf_save_path.h"
#include "qxbase/framework/exception.h"
#include "qxbase/framework/host_services.h"
#include "qxbase/panels/axis_setup_dialog.h"
#include "qxbase/panels/channel_visibilities_dialog.h"
#include "qxbase/panels/histo_common.h"
#include "qxbase/panels/histo_ui.h"
#include "qxbase/resources/chart_texts.h"

// The chart panels' dialogs, printing and data files.
namespace qx {
namespace {

TQXDcfDataKind DcfKind(TQXChannelKind Kind)
{
    switch (Kind) {
    case ckTime: return dkTime;
    case ckFrequency: return dkFrequency;
    default: return dkOther;
    }
}

}  // namespace

void TKSChartPanel::ShowAxisSetup()
{
    TKSHistoUI& chart = GetChart();
    const QPointer<TKSChartPanel> self(this);
    const QPointer<TFormAxisSetup> running = new TFormAxisSetup(window());
    QStringList names;
    std::vector<double> mins;
    std::vector<double> maxs;
    for (int b = 0; b < chart.GetBandCount() && b < chart.GetCurveCount(); ++b) {
        names << chart.GetCurve(b)->Name;
        mins.push_back(chart.GetYAxis(b)->Min);
        maxs.push_back(chart.GetYAxis(b)->Max);
    }
    running->SetNames(names);
    running->SetMinValues(mins);
    running->SetMaxValues(maxs);
    const int result = running->exec();
    // The dialog's event loop may remove the panel (a handler's deleteLater, a closed worksheet)
    // and, with the panel's window, the dialog.
    const std::unique_ptr<TFormAxisSetup> dialog(running.data());
    if (!self || !dialog)
        return;
    if (result == TFormAxisSetup::mrIgnore) {
        DefaultScale();
        return;
    }
    if (result != TFormAxisSetup::mrOk)
        return;
    for (int b = 0; b < names.size(); ++b) {
        TQXYAxisDataObject* axis = chart.GetYAxis(b);
        const double low = dialog->GetMinValues()[static_cast<std::size_t>(b)];
        const double high = dialog->GetMaxValues()[static_cast<std::size_t>(b)];
        // A reversed or empty range would fold the band flat.
        if (axis == nullptr || !(high > low))
            continue;
        axis->Min = low;
        axis->Max = high;
    }
    chart.CurvesChanged();
    SetAutoScale(false);
}

void TKSChartPanel::ShowChannelVisibilities()
{
    TKSHistoUI& chart = GetChart();
    const QPointer<TKSChartPanel> self(this);
    const QPointer<TFChannelVisibilities> running = new TFChannelVisibilities(window());
    QStringList names;
    std::vector<bool> shown;
    for (int c = 0; c < chart.GetCurveCount(); ++c) {
        names << chart.GetCurve(c)->Name;
        shown.push_back(chart.GetCurve(c)->Visible);
    }
    running->SetChannels(names, shown);
    const int result = running->exec();
    const std::unique_ptr<TFChannelVisibilities> dialog(running.data());
    if (!self || !dialog || result != TFChannelVisibilities::mrOk)
        return;
    const std::vector<bool> visible = dialog->GetVisibilities();
    for (int c = 0; c < chart.GetCurveCount() && static_cast<std::size_t>(c) < visible.size(); ++c)
        chart.GetCurve(c)->Visible = visible[static_cast<std::size_t>(c)];
    chart.CurvesChanged();
}

void TKSChartPanel::Print()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(GetCaption());
    const QPointer<TKSChartPanel> self(this);
    const QPointer<QPrintDialog> running = new QPrintDialog(&printer, window());
    const int result = running->exec();
    const std::unique_ptr<QPrintDialog> dialog(running.data());
    if (self && dialog && result == QDialog::Accepted)
        PrintTo(printer);
}

void TKSChartPanel::PrintTo(QPrinter& Printer) const
{
    QPainter painter;
    if (!painter.begin(&Printer))
        throw Exception(res::_rsCannotPrint);
    const QRect page = painter.viewport();
    painter.setFont(font());
    const int titleHeight = painter.fontMetrics().height() * 2;
    painter.drawText(QRect(page.left(), page.top(), page.width(), titleHeight), Qt::AlignLeft | Qt::AlignVCenter,
                     GetCaption());
    GetChart().Render(painter, QRect(page.left(), page.top() + titleHeight, page.width(),
                                     std::min(page.height() - titleHeight, page.width() * 2 / 3)));
    painter.end();
}

std::vector<TQXDcfChannel> TKSChartPanel::GetBufferForSave() const
{
    std::vector<TQXDcfChannel> channels;
    const TKSHistoUI& chart = GetChart();
    for (int c = 0; c < chart.GetCurveCount(); ++c) {
        const TQXChartCurve& curve = *chart.GetCurve(c);
        TQXDcfChannel channel;
        channel.Name = curve.Name;
        channel.Unit = curve.Unit;
        channel.X0 = curve.X0;
        channel.DX = curve.DX;
        channel.Samples = curve.Samples;
        const TQXMSExChannelInformation* info = FShowingFile ? nullptr : GetLink().GetChannelList(c);
        channel.Kind = info == nullptr ? FFileKind : DcfKind(ChannelKind(info->Flags));
        TRVShortdef& def = channel.Definition;
        def.ChannelNo = c;
        def.XStart = curve.X0;
        def.XEnd = curve.X0 + curve.DX * static_cast<double>(curve.Samples.size());
        def.Color = curve.Color;
        def.Flags = info != nullptr ? info->Flags.Bits() : TQXMSChannelFlags{msexArrayData, msexTimeData}.Bits();
        const TQXYAxisDataObject* axis = chart.GetYAxis(std::min(c, chart.GetBandCount() - 1));
        def.YMin = info != nullptr ? info->RangeLow : axis->Min;
        def.YMax = info != nullptr ? info->RangeHigh : axis->Max;
        channels.push_back(std::move(channel));
    }
    return channels;
}

QString TKSChartPanel::SaveBuffer()
{
    const std::vector<TQXDcfChannel> channels = GetBufferForSave();
    if (channels.empty())
        return QString();
    QString fileName = FFileName;
    const QString path = GetDcfSavePath(
        static_cast<THVKSaveMethod>(FSaveMethod), fileName, QDateTime::currentDateTime(),
        [this](QString& Name) { return SelectDCFSaveFileName(window(), QString(Name), Name); }, window());
    if (path.isEmpty())
        return QString();
    WriteDcfFile(path, channels);
    if (fileName != FFileName)
        SetFileName(fileName);
    return path;
}

void TKSChartPanel::SaveBufferReporting()
{
    try {
        SaveBuffer();
    } catch (const Exception& error) {
        HostServices().MessageBox(window(), error.Message(), res::_rsErrorCaption, 1);
    }
}

void TKSChartPanel::LoadBuffer(const QString& Path)
{
    const std::vector<TQXDcfChannel> channels = ReadDcfFile(Path);
    TKSHistoUI& chart = GetChart();
    chart.ClearCurves();
    const bool mixed = std::adjacent_find(channels.begin(), channels.end(), [](const auto& A, const auto& B) {
                           return A.Kind != B.Kind;
                       }) != channels.end();
    ShowError(mixed ? res::_rsDifferentDataTypes.Text() : QString());
    FFileKind = channels.empty() ? dkTime : channels.front().Kind;
    chart.SetBandCount(std::max<int>(1, static_cast<int>(channels.size())));
    for (std::size_t c = 0; c < channels.size() && !mixed; ++c) {
        const TQXDcfChannel& channel = channels[c];
        const int band = static_cast<int>(c);
        const int index = chart.AddCurve(channel.Name, channel.Unit, channel.Definition.Color, band);
        TQXChartCurve& curve = *chart.GetCurve(index);
        curve.X0 = channel.X0;
        curve.DX = channel.DX;
        curve.Samples = channel.Samples;
        TQXYAxisDataObject& axis = *chart.GetYAxis(band);
        axis.Color = channel.Definition.Color;
        axis.Scale = static_cast<TQXYAxisScale>(GetYAxisScale());
        chart.AutoscaleBand(band);
    }
    chart.AutoscaleX();
    UpdateYAxisTitles();
    chart.GetXAxis().Title = XAxisTitle(FFileKind);
    FShowingFile = true;
    SetHold(true);
    chart.CurvesChanged();
}

}  // namespace qx
