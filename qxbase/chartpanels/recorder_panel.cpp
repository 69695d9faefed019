#include "qxbase/chartpanels/recorder_panel.h"

#include <QLabel>
#include <QPointer>
#include <QToolButton>
#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

#include "qxbase/config/line_recorder_confirm_dialog.h"
#include "qxbase/panels/histo_toolbar.h"
#include "qxbase/panels/histo_ui.h"
#include "qxbase/resources/chart_texts.h"

namespace qx {
namespace {

// The sample spacing a definition gives for a block of Count samples; 0 when it gives none.
double Spacing(const TRVShortdef& Def, std::int32_t Count)
{
    const double dx = Count > 0 ? (Def.XEnd - Def.XStart) / Count : 0.0;
    return std::isfinite(dx) && dx > 0.0 ? dx : 0.0;
}

double CurveEnd(const TQXChartCurve& Curve)
{
    return Curve.X0 + Curve.DX * static_cast<double>(Curve.Samples.size());
}

}  // namespace

TKSRecorderPanel::TKSRecorderPanel(QWidget* parent) : TKSChartPanel(parent)
{
    SetObjectDescription(res::_rsRecorderCaption);
    TKSRecorderPanel::ClearProperties();
    connect(GetToolbar().BBackward(), &QToolButton::clicked, this, [this] { ScrollBackward(); });
    connect(GetToolbar().BForward(), &QToolButton::clicked, this, [this] { ScrollForward(); });
    DefaultXAxis();
}

QString TKSRecorderPanel::GetDescription(const QMetaObject&)
{
    return res::_rsRecorderDescription;
}

void TKSRecorderPanel::ClearProperties()
{
    TKSChartPanel::ClearProperties();
    RegisterBusProperty(res::_rsPropTimeSpan, "TimeSpan", varDouble);
    RegisterBusProperty(res::_rsPropKeptTime, "KeptTime", varDouble);
}

void TKSRecorderPanel::SetTimeSpan(double Value)
{
    if (!std::isfinite(Value) || Value <= 0.0)
        return;
    FTimeSpan = Value;
    const double kept = FKeptTime;
    FKeptTime = std::max(FKeptTime, FTimeSpan);
    if (!GetHold())
        FollowDefaultXAxis();
    if (Changed("TimeSpan") && FKeptTime != kept)
        Changed("KeptTime");
}

void TKSRecorderPanel::SetKeptTime(double Value)
{
    if (!std::isfinite(Value))
        return;
    FKeptTime = std::max(Value, FTimeSpan);
    Changed("KeptTime");
}

double TKSRecorderPanel::GetKeptEnd() const
{
    double end = std::numeric_limits<double>::quiet_NaN();
    const TKSHistoUI& chart = GetChart();
    for (int c = 0; c < chart.GetCurveCount(); ++c) {
        const TQXChartCurve& curve = *chart.GetCurve(c);
        if (!curve.Samples.empty() && !(CurveEnd(curve) <= end))
            end = CurveEnd(curve);
    }
    return end;
}

double TKSRecorderPanel::GetKeptStart() const
{
    double start = std::numeric_limits<double>::quiet_NaN();
    const TKSHistoUI& chart = GetChart();
    for (int c = 0; c < chart.GetCurveCount(); ++c) {
        const TQXChartCurve& curve = *chart.GetCurve(c);
        if (!curve.Samples.empty() && !(curve.X0 >= start))
            start = curve.X0;
    }
    return start;
}

void TKSRecorderPanel::ShowRange(double End)
{
    TQXXAxisDataObject& axis = GetChart().GetXAxis();
    axis.Min = End - FTimeSpan;
    axis.Max = End;
}

void TKSRecorderPanel::DefaultXAxis()
{
    const double end = GetKeptEnd();
    ShowRange(std::isnan(end) ? FTimeSpan : std::max(end, FTimeSpan));
}

void TKSRecorderPanel::TakeData(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                                const TRVDataDoubleArray&, double)
{
    TKSHistoUI& chart = GetChart();
    for (int c = 0; c < chart.GetCurveCount() && static_cast<std::size_t>(c) < Data.size(); ++c) {
        const TRVDataDouble& block = Data[static_cast<std::size_t>(c)];
        if (!HasSamples(block) || static_cast<std::size_t>(c) >= Shortdefs.size())
            continue;
        const TRVShortdef& def = Shortdefs[static_cast<std::size_t>(c)];
        const double dx = Spacing(def, block.count);
        if (dx == 0.0)
            continue;
        TQXChartCurve& curve = *chart.GetCurve(c);
        const bool continues = !curve.Samples.empty() && std::fabs(curve.DX - dx) <= dx * 1e-9 &&
                               std::fabs(CurveEnd(curve) - def.XStart) <= dx * 0.5;
        if (!continues) {
            curve.Samples.clear();
            curve.X0 = def.XStart;
            curve.DX = dx;
        }
        curve.Samples.insert(curve.Samples.end(), block.data, block.data + block.count);
        const auto kept = static_cast<std::size_t>(std::min<double>(FKeptTime / dx, MaxKeptSamples));
        // Trimmed in steps of half the kept length, so each sample moves a bounded number of times.
        if (curve.Samples.size() > kept + kept / 2) {
            const std::size_t drop = curve.Samples.size() - kept;
            curve.Samples.erase(curve.Samples.begin(), curve.Samples.begin() + static_cast<std::ptrdiff_t>(drop));
            curve.X0 += static_cast<double>(drop) * dx;
        }
    }
    if (!GetHold())
        FollowDefaultXAxis();
    DataChanged();
}

void TKSRecorderPanel::ChannelsChanged()
{
    FollowDefaultXAxis();
}

bool TKSRecorderPanel::ConfirmResetDisplay()
{
    const double start = GetKeptStart();
    if (std::isnan(start))
        return true;
    const QPointer<TKSRecorderPanel> self(this);
    auto dialog = std::make_unique<TLineRecorderConfirmDlg>(window());
    dialog->Label1()->setText(res::_rsRecorderClearQuestion.Text().arg(GetCaption()));
    dialog->Label2()->setText(res::_rsRecorderClearDetail.Text().arg(GetKeptEnd() - start, 0, 'g', 4));
    // The dialog's event loop may remove the panel, and the dialog with it as its parent's child.
    const QPointer<TLineRecorderConfirmDlg> guard(dialog.get());
    const int result = dialog->exec();
    if (!guard)
        (void)dialog.release();
    return self && result == TLineRecorderConfirmDlg::mrOk;
}

void TKSRecorderPanel::SetHold(bool Value)
{
    TKSChartPanel::SetHold(Value);
    GetToolbar().BBackward()->setVisible(Value);
    GetToolbar().BForward()->setVisible(Value);
    if (!Value)
        FollowDefaultXAxis();
    GetChart().CurvesChanged();
}

bool TKSRecorderPanel::ScrollBackward()
{
    const double start = GetKeptStart();
    TQXXAxisDataObject& axis = GetChart().GetXAxis();
    if (std::isnan(start) || axis.Min <= start)
        return false;
    if (!GetHold())
        SetHold(true);
    ShowRange(std::max(axis.Max - FTimeSpan / 2, start + FTimeSpan));
    GetChart().CurvesChanged();
    return true;
}

bool TKSRecorderPanel::ScrollForward()
{
    const double end = GetKeptEnd();
    TQXXAxisDataObject& axis = GetChart().GetXAxis();
    if (std::isnan(end) || axis.Max >= end)
        return false;
    ShowRange(std::min(axis.Max + FTimeSpan / 2, end));
    GetChart().CurvesChanged();
    return true;
}

}  // namespace qx
