#include "qxbase/chartpanels/scope_panel.h"

#include <QLabel>
#include <cmath>

#include "qxbase/panels/histo_common.h"
#include "qxbase/panels/histo_ui.h"
#include "qxbase/panels/panel_registry.h"
#include "qxbase/resources/chart_texts.h"

namespace qx {
namespace {

TRVTriggerType EngineType(std::int32_t Type)
{
    switch (Type) {
    case kttPositive: return trtPos;
    case kttNegative: return trtNeg;
    default: return trtOff;
    }
}

double Spacing(const TRVShortdef& Def, std::int32_t Count)
{
    const double dx = Count > 0 ? (Def.XEnd - Def.XStart) / Count : 0.0;
    return std::isfinite(dx) && dx > 0.0 ? dx : 1.0;
}

}  // namespace

TKSScopePanel::TKSScopePanel(QWidget* parent) : TKSChartPanel(parent)
{
    SetObjectDescription(res::_rsScopeCaption);
    FTrigger.SetBufferSize(1000);
    FTrigger.SetPreTrigger(100);
    FTrigger.SetTriggerChannel(0);
    FTrigger.SetTriggerType(trtPos);
    FTrigger.OnCapture = [this](const TRVShortdefs& Shortdefs, TRVDataDoubleArray& Data, TRVDataDoubleArray&,
                                double) { Show(Shortdefs, Data); };
    FStateLabel = new QLabel(this);
    FStateLabel->setStyleSheet(QStringLiteral("QLabel { color: #e0e040; background: transparent; }"));
    FStateLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
    TKSScopePanel::ClearProperties();
    DefaultXAxis();
    UpdateStateLabel();
}

TKSScopePanel::~TKSScopePanel()
{
    // No capture may reach a half-destroyed panel.
    FTrigger.OnCapture = nullptr;
}

QString TKSScopePanel::GetDescription(const QMetaObject&)
{
    return res::_rsScopeDescription;
}

void TKSScopePanel::ClearProperties()
{
    TKSChartPanel::ClearProperties();
    QStringList types;
    OleVariantToStringList(TriggerTypeTexts(), types);
    RegisterBusProperty(res::_rsPropTriggerType, "TriggerType", varInteger, {}, types);
    RegisterBusProperty(res::_rsPropTriggerBufferSize, "TriggerBufferSize", varInteger);
    RegisterBusProperty(res::_rsPropTriggerLevel, "TriggerLevel", varDouble);
    RegisterBusProperty(res::_rsPropTriggerSingleShot, "TriggerSingleShot", varBoolean);
    RegisterBusProperty(res::_rsPropTriggerChannel, "TriggerChannel", varInteger);
    RegisterBusProperty(res::_rsPropPreTrigger, "PreTrigger", varInteger);
    RegisterBusProperty(res::_rsPropShowTriggerState, "ShowTriggerState", varBoolean);
    RegisterBusCommand(res::_rsActionRearmTrigger, QStringLiteral("RearmTrigger"), [this] { RearmTrigger(); });
}

void TKSScopePanel::SetTriggerType(std::int32_t Value)
{
    if (Value < kttPositive || Value > kttOff)
        return;
    FTriggerType = Value;
    FTrigger.SetTriggerType(EngineType(Value));
    FTrigger.Reset();
    FGathered.clear();
    UpdateStateLabel();
    Changed("TriggerType");
}

void TKSScopePanel::SetTriggerBufferSize(std::int32_t Value)
{
    const std::int32_t pre = FTrigger.GetPreTrigger();
    // A worksheet holds the pair as it was; the setter rules could not always rebuild it.
    if (GetIsLoaded())
        FTrigger.RestoreSizes(pre, Value);
    else
        FTrigger.SetBufferSize(Value);
    FGathered.clear();
    FollowDefaultXAxis();
    if (Changed("TriggerBufferSize") && FTrigger.GetPreTrigger() != pre)
        Changed("PreTrigger");
}

void TKSScopePanel::SetTriggerLevel(double Value)
{
    FTrigger.SetLevel(Value);
    Changed("TriggerLevel");
}

void TKSScopePanel::SetTriggerSingleShot(bool Value)
{
    FTrigger.SetSingleShot(Value);
    FDone = false;
    UpdateStateLabel();
    Changed("TriggerSingleShot");
}

void TKSScopePanel::SetTriggerChannel(std::int32_t Value)
{
    FTrigger.SetTriggerChannel(Value);
    FTrigger.Reset();
    Changed("TriggerChannel");
}

void TKSScopePanel::SetPreTrigger(std::int32_t Value)
{
    const std::int32_t size = FTrigger.GetBufferSize();
    if (GetIsLoaded())
        FTrigger.RestoreSizes(Value, size);
    else
        FTrigger.SetPreTrigger(Value);
    FollowDefaultXAxis();
    if (Changed("PreTrigger") && FTrigger.GetBufferSize() != size)
        Changed("TriggerBufferSize");
}

void TKSScopePanel::SetShowTriggerState(bool Value)
{
    FShowTriggerState = Value;
    UpdateStateLabel();
    Changed("ShowTriggerState");
}

void TKSScopePanel::RearmTrigger()
{
    if (FTrigger.GetSingleShot())
        FTrigger.StartSingleShot();
    else
        FTrigger.Reset();
    FDone = false;
    FGathered.clear();
    UpdateStateLabel();
}

QString TKSScopePanel::GetTriggerStateText() const
{
    if (FTriggerType == kttOff)
        return res::_rsTriggerStateFreeRun;
    if (FDone)
        return res::_rsTriggerStateSingleShotDone;
    switch (FState) {
    case qxtsFillTrigger: return res::_rsTriggerStateCapturing;
    case qxtsTriggerDone: return res::_rsTriggerStateTriggered;
    default: return res::_rsTriggerStateWaiting;
    }
}

void TKSScopePanel::UpdateStateLabel()
{
    // Reading the state also clears the engine's capture-finished flag: a capture is reported once.
    const TRVTriggerState state = FTrigger.GetTriggerState();
    FState = FCaptureCount != FShownCaptures ? qxtsTriggerDone : state;
    FShownCaptures = FCaptureCount;
    FStateLabel->setText(GetTriggerStateText());
    FStateLabel->adjustSize();
    FStateLabel->setVisible(FShowTriggerState);
    Resize();
}

void TKSScopePanel::Resize()
{
    TKSChartPanel::Resize();
    if (FStateLabel == nullptr)
        return;
    const QRect chart = GetChart().geometry();
    FStateLabel->move(chart.right() - FStateLabel->width() - 8, chart.top() + 4);
    FStateLabel->raise();
}

void TKSScopePanel::DefaultXAxis()
{
    const TKSHistoUI& chart = GetChart();
    const TQXChartCurve* curve = chart.GetCurveCount() > 0 ? chart.GetCurve(0) : nullptr;
    const double dx = curve != nullptr ? curve->DX : 1.0;
    TQXXAxisDataObject& axis = GetChart().GetXAxis();
    axis.Min = -FTrigger.GetPreTrigger() * dx;
    axis.Max = axis.Min + FTrigger.GetBufferSize() * dx;
}

void TKSScopePanel::ChannelsChanged()
{
    FTrigger.Reset();
    FGathered.clear();
    FollowDefaultXAxis();
}

void TKSScopePanel::ResetDisplay()
{
    TKSChartPanel::ResetDisplay();
    FCaptureCount = 0;
    RearmTrigger();
}

void TKSScopePanel::TakeData(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                             const TRVDataDoubleArray& TimeChannel, double)
{
    if (FDone)
        return;
    if (FTriggerType == kttOff) {
        FreeRun(Shortdefs, Data);
    } else {
        FTrigger.ProcessData(Shortdefs, Data, TimeChannel);
    }
    UpdateStateLabel();
}

void TKSScopePanel::FreeRun(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data)
{
    const auto size = static_cast<std::size_t>(FTrigger.GetBufferSize());
    FGathered.resize(Data.size());
    bool complete = !Data.empty();
    for (std::size_t c = 0; c < Data.size(); ++c) {
        std::vector<double>& gathered = FGathered[c];
        if (HasSamples(Data[c]))
            gathered.insert(gathered.end(), Data[c].data, Data[c].data + Data[c].count);
        // Only the newest buffer is shown: a channel that waits for another (one that runs slower
        // or gets nothing) keeps no more than that.
        if (gathered.size() > 2 * size)
            gathered.erase(gathered.begin(), gathered.end() - static_cast<std::ptrdiff_t>(size));
        complete = complete && gathered.size() >= size;
    }
    if (!complete)
        return;
    TKSHistoUI& chart = GetChart();
    for (int c = 0; c < chart.GetCurveCount() && static_cast<std::size_t>(c) < FGathered.size(); ++c) {
        std::vector<double>& gathered = FGathered[static_cast<std::size_t>(c)];
        TQXChartCurve& curve = *chart.GetCurve(c);
        // The newest full buffer; older samples are dropped.
        curve.Samples.assign(gathered.end() - static_cast<std::ptrdiff_t>(size), gathered.end());
        curve.DX = static_cast<std::size_t>(c) < Shortdefs.size()
                       ? Spacing(Shortdefs[static_cast<std::size_t>(c)], Data[static_cast<std::size_t>(c)].count)
                       : 1.0;
        curve.X0 = -FTrigger.GetPreTrigger() * curve.DX;
        gathered.clear();
    }
    ++FCaptureCount;
    FollowDefaultXAxis();
    DataChanged();
}

void TKSScopePanel::Show(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data)
{
    TKSHistoUI& chart = GetChart();
    for (int c = 0; c < chart.GetCurveCount() && static_cast<std::size_t>(c) < Data.size(); ++c) {
        const TRVDataDouble& block = Data[static_cast<std::size_t>(c)];
        TQXChartCurve& curve = *chart.GetCurve(c);
        curve.Samples.assign(block.data, block.data + (HasSamples(block) ? block.count : 0));
        curve.DX = static_cast<std::size_t>(c) < Shortdefs.size()
                       ? Spacing(Shortdefs[static_cast<std::size_t>(c)], block.count)
                       : 1.0;
        curve.X0 = -FTrigger.GetPreTrigger() * curve.DX;
    }
    ++FCaptureCount;
    // A single shot shows its capture until it is re-armed.
    FDone = FTrigger.GetSingleShot();
    FollowDefaultXAxis();
    DataChanged();
}

}  // namespace qx
