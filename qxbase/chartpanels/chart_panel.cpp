#include "qxbase/chartpanels/chart_panel.h"

#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QRegularExpression>
#include <QToolButton>
#include <algorithm>
#include <cmath>

#include "qxbase/chartpanels/chart_kinds.h"
#include "qxbase/framework/number_text.h"
#include "qxbase/panels/histo_cursor_panel.h"
#include "qxbase/panels/histo_toolbar.h"
#include "qxbase/panels/histo_ui.h"
#include "qxbase/resources/chart_texts.h"
#include "qxbase/sources/measure_source.h"
#include "qxbase/sources/measure_source_lookup.h"

namespace qx {
namespace {

QStringList SplitNumbers(const QString& Text, const QString& Separators)
{
    return Text.split(QRegularExpression(Separators), Qt::SkipEmptyParts);
}

}  // namespace

TKSChartPanel::TKSChartPanel(QWidget* parent)
    : TKSMSSink(parent), FLink(std::make_unique<TQXMeasureLinkSelectEx>(this))
{
    SetChannelMode(3);
    SetWindowMinSize(QPoint(160, 120));
    FChart = new TKSHistoUI(this);
    FChart->GetXAxis().Title = XAxisTitle(dkTime);
    FToolbar = new TKSHistoToolbar(this);
    FCursorPanel = new TKSHistoCursorPanel(this);
    FChart->SetCursorPanel(FCursorPanel);
    FErrorLabel = new QLabel(this);
    FErrorLabel->setAlignment(Qt::AlignCenter);
    FErrorLabel->setWordWrap(true);
    FErrorLabel->setStyleSheet(QStringLiteral("QLabel { color: #ff4040; background: transparent; }"));
    FErrorLabel->hide();
    FCursorPanel->SetDecimalsX(FCursorDecimals);
    FCursorPanel->SetDecimalsY(FCursorDecimals);
    ApplyCursorPanel();

    FLink->OnUpdateSettings = [this](TQXMeasureLinkEx*) { UpdateSelection(); };
    FLink->OnSelectedData = [this](TQXMeasureLinkEx*, const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                                   const TRVDataDoubleArray& TimeChannel,
                                   double StartTime) { Deliver(Shortdefs, Data, TimeChannel, StartTime); };
    ConnectToolbar();
    AddMenuActions();
}

TKSChartPanel::~TKSChartPanel()
{
    // The detach tells the owner, whose own part is gone by now.
    FLink->OnUpdateSettings = nullptr;
    FLink->OnSelectedData = nullptr;
    FLink->SetQXMeasureSourceEx(nullptr);
}

void TKSChartPanel::ConnectToolbar()
{
    TKSHistoToolbar& bar = *FToolbar;
    connect(bar.BAxisSetup(), &QToolButton::clicked, this, [this] { ShowAxisSetup(); });
    connect(bar.BAutoscale(), &QToolButton::toggled, this, [this](bool On) { SetAutoScale(On); });
    connect(bar.BCaptureScale(), &QToolButton::clicked, this, [this] { CaptureScale(); });
    connect(bar.BDefault(), &QToolButton::clicked, this, [this] { DefaultScale(); });
    connect(bar.BCursorPanel(), &QToolButton::toggled, this, [this](bool On) { SetShowCursor(On); });
    connect(bar.BPrint(), &QToolButton::clicked, this, [this] { Print(); });
    connect(bar.BVisible(), &QToolButton::clicked, this, [this] { ShowChannelVisibilities(); });
    connect(bar.BHold(), &QToolButton::toggled, this, [this](bool On) { SetHold(On); });
}

void TKSChartPanel::AddMenuActions()
{
    QMenu* menu = GetPopupMenu();
    if (menu == nullptr)
        return;
    menu->addSeparator();
    menu->addAction(res::_rsActionSaveBuffer.Text(), this, [this] { SaveBufferReporting(); });
    menu->addAction(res::_rsActionCaptureScale.Text(), this, [this] { CaptureScale(); });
    menu->addAction(res::_rsActionResetDisplay.Text(), this, [this] {
        if (ConfirmResetDisplay())
            ResetDisplay();
    });
}

TQXMeasureSourceEx* TKSChartPanel::GetMeasureSource() const
{
    return FLink->GetSource();
}

void TKSChartPanel::SetMeasureSource(TQXMeasureSourceEx* Value)
{
    FSourceName = Value != nullptr ? Value->objectName() : QString();
    FLink->SetQXMeasureSourceEx(Value);
    UpdateSelection();
}

void TKSChartPanel::SetSourceName(const QString& Value)
{
    FSourceName = Value;
    if (!GetIsLoaded())
        Attach();
}

void TKSChartPanel::Attach()
{
    FLink->SetQXMeasureSourceEx(FindMeasureSourceByName(*this, FSourceName));
    UpdateSelection();
}

void TKSChartPanel::SetChannels(const QString& Value)
{
    FChannels = Value.simplified();
    if (!GetIsLoaded()) {
        FYLimits.clear();
        UpdateSelection();
    }
    Changed("Channels");
}

void TKSChartPanel::ChannelListChanged()
{
    QStringList numbers;
    for (int i = 0; i < GetChannelCount(); ++i) numbers << QString::number(GetChannelArray(i));
    SetChannels(numbers.join(QLatin1Char(' ')));
}

void TKSChartPanel::UpdateSelection()
{
    const QStringList parts = SplitNumbers(FChannels, QStringLiteral("[\\s,]+"));
    Variant list = Variant::CreateArray(0, static_cast<int>(parts.size()) - 1, varVariant);
    for (int i = 0; i < parts.size(); ++i) {
        bool ok = false;
        const int number = parts[i].toInt(&ok);
        list.SetArrayElement(i, ok ? Variant(std::int32_t{number}) : Variant(parts[i]));
    }
    // SetChannels only stores: the selection is built against the source's current list.
    FLink->SetChannels(list);
    FLink->UpdateSelectMask();
    RebuildCurves();
}

void TKSChartPanel::RebuildCurves()
{
    TKSHistoUI& chart = *FChart;
    const int count = FLink->GetChannelListCount();
    // Limits of bands and hidden curves the user has seen are kept over a change of the source's
    // channel list; the chart holds them as the user last set them (the dialogs write there).
    for (int b = 0; b < chart.GetBandCount() && chart.GetCurveCount() > 0; ++b) {
        if (static_cast<std::size_t>(b) >= FYLimits.size())
            FYLimits.resize(static_cast<std::size_t>(b) + 1, {0.0, 0.0});
        FYLimits[static_cast<std::size_t>(b)] = {chart.GetYAxis(b)->Min, chart.GetYAxis(b)->Max};
    }
    if (chart.GetCurveCount() > 0) {
        FHiddenCurves.clear();
        for (int c = 0; c < chart.GetCurveCount(); ++c)
            if (!chart.GetCurve(c)->Visible) FHiddenCurves.push_back(c);
    }
    chart.ClearCurves();
    chart.SetBandCount(std::max(1, count));
    ChannelClear();
    std::vector<TQXChannelKind> kinds;
    for (int i = 0; i < count; ++i) {
        const TQXMSExChannelInformation* info = FLink->GetChannelList(i);
        ChannelAdd(FLink->GetMSChannelIndex(i));
        kinds.push_back(info != nullptr ? ChannelKind(info->Flags) : ckTime);
        const int curve = chart.AddCurve(info != nullptr ? info->Name : QString(),
                                         info != nullptr ? info->SecondText : QString(),
                                         info != nullptr ? info->Color : clLime, i);
        TQXYAxisDataObject& axis = *chart.GetYAxis(i);
        axis.Color = info != nullptr ? info->Color : clWhite;
        axis.Scale = static_cast<TQXYAxisScale>(FYAxisScale);
        axis.Visible = FYAxisVisible;
        const auto kept = static_cast<std::size_t>(i) < FYLimits.size() ? FYLimits[static_cast<std::size_t>(i)]
                                                                       : std::pair<double, double>{0.0, 0.0};
        if (kept.second > kept.first) {
            axis.Min = kept.first;
            axis.Max = kept.second;
        } else {
            DefaultYAxis(i, info);
        }
        chart.GetCurve(curve)->Visible =
            std::find(FHiddenCurves.begin(), FHiddenCurves.end(), curve) == FHiddenCurves.end();
    }
    chart.SetActiveBand(FActiveBand);
    UpdateYAxisTitles();
    const TQXChannelKind kind = kinds.empty() ? ckTime : kinds.front();
    chart.GetXAxis().Title = XAxisTitle(kind == ckTime ? dkTime : kind == ckFrequency ? dkFrequency : dkOther);
    ShowError(MixedKinds(kinds) ? res::_rsDifferentDataTypes.Text() : QString());
    FShowingFile = false;
    ChannelsChanged();
    chart.CurvesChanged();
}

void TKSChartPanel::UpdateYAxisTitles()
{
    for (int b = 0; b < FChart->GetBandCount() && b < FChart->GetCurveCount(); ++b) {
        TQXYAxisDataObject& axis = *FChart->GetYAxis(b);
        const TQXChartCurve& curve = *FChart->GetCurve(b);
        const QString unit = axis.Scale == yasDB ? QStringLiteral("dB") + curve.Unit : curve.Unit;
        axis.Title = unit.isEmpty() ? curve.Name : curve.Name + QStringLiteral(" [") + unit + QLatin1Char(']');
    }
}

QString TKSChartPanel::XAxisTitle(TQXDcfDataKind Kind)
{
    switch (Kind) {
    case dkTime: return res::_rsXAxisTime;
    case dkFrequency: return res::_rsXAxisFrequency;
    default: return QString();
    }
}

void TKSChartPanel::ShowError(const QString& Text)
{
    FErrorText = Text;
    FErrorLabel->setText(Text);
    FErrorLabel->setVisible(!Text.isEmpty());
}

void TKSChartPanel::Deliver(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                            const TRVDataDoubleArray& TimeChannel, double StartTime)
{
    if (!FErrorText.isEmpty() || FShowingFile || (FHold && !TakesDataOnHold()))
        return;
    // A cycle that leaves out a selected channel would shift the curves.
    if (static_cast<int>(Data.size()) != FChart->GetCurveCount())
        return;
    TakeData(Shortdefs, Data, TimeChannel, StartTime);
}

void TKSChartPanel::DataChanged()
{
    if (FAutoScale && !FHold) {
        for (int b = 0; b < FChart->GetBandCount(); ++b) FChart->AutoscaleBand(b);
    }
    FChart->CurvesChanged();
}

void TKSChartPanel::LoadFinished()
{
    TKSMSSink::LoadFinished();
    Attach();
    SetXAxisFixed(FXAxisFixed);
}

void TKSChartPanel::SetDesignMode(bool Value)
{
    TKSMSSink::SetDesignMode(Value);
    // In design mode a click anywhere selects and moves the panel.
    for (QWidget* child : {static_cast<QWidget*>(FChart), static_cast<QWidget*>(FToolbar),
                           static_cast<QWidget*>(FCursorPanel)})
        child->setAttribute(Qt::WA_TransparentForMouseEvents, Value);
    LayoutChildren();
}

void TKSChartPanel::Resize()
{
    TKSMSSink::Resize();
    LayoutChildren();
}

void TKSChartPanel::LayoutChildren()
{
    QRect area = AdjustClientRect().adjusted(2, 2, -2, -2);
    if (area.width() <= 0 || area.height() <= 0)
        return;
    const int barHeight = FToolbar->sizeHint().height();
    FToolbar->setGeometry(area.left(), area.top(), area.width(), barHeight);
    area.setTop(area.top() + barHeight);
    const QSize cursorSize = FCursorPanel->sizeHint();
    switch (FCursorPanelPosition) {
    case cppTop:
        FCursorPanel->setGeometry(area.left(), area.top(), area.width(), cursorSize.height());
        area.setTop(area.top() + cursorSize.height());
        break;
    case cppBottom:
        FCursorPanel->setGeometry(area.left(), area.bottom() - cursorSize.height() + 1, area.width(),
                                  cursorSize.height());
        area.setBottom(area.bottom() - cursorSize.height());
        break;
    case cppLeft:
        FCursorPanel->setGeometry(area.left(), area.top(), cursorSize.width(), area.height());
        area.setLeft(area.left() + cursorSize.width());
        break;
    case cppRight:
        FCursorPanel->setGeometry(area.right() - cursorSize.width() + 1, area.top(), cursorSize.width(),
                                  area.height());
        area.setRight(area.right() - cursorSize.width());
        break;
    default:
        break;
    }
    FChart->setGeometry(area);
    FErrorLabel->setGeometry(area);
    FErrorLabel->raise();
}

void TKSChartPanel::ApplyCursorPanel()
{
    const bool shown = FCursorPanelPosition != cppHide && FChart->GetCursorsVisible();
    FCursorPanel->SetCursorPanelPosition(static_cast<TKSCursorPanelPosition>(FCursorPanelPosition));
    FCursorPanel->setVisible(shown);
    LayoutChildren();
}

void TKSChartPanel::Paint(QPainter& Canvas)
{
    TKSMSSink::Paint(Canvas);
    Canvas.fillRect(AdjustClientRect(), ColorToQColor(FChart->GetBackgroundColor()));
}

std::int32_t TKSChartPanel::GetLegendPosition() const { return FChart->GetLegendPosition(); }

void TKSChartPanel::SetLegendPosition(std::int32_t Value)
{
    if (Value != lpHorizontal && Value != lpVertical)
        return;
    FChart->SetLegendPosition(static_cast<TQXLegendPosition>(Value));
    Changed("LegendPosition");
}

std::int32_t TKSChartPanel::GetDisplayStyle() const { return FChart->GetDisplayStyle(); }

void TKSChartPanel::SetDisplayStyle(std::int32_t Value)
{
    if (Value != dsOneBand && Value != dsMultipleBands)
        return;
    FChart->SetDisplayStyle(static_cast<THVKDisplayStyle>(Value));
    Changed("DisplayStyle");
}

std::int32_t TKSChartPanel::GetXAxisScale() const { return FChart->GetXAxis().Scale; }

void TKSChartPanel::SetXAxisScale(std::int32_t Value)
{
    if (Value != xasLinear && Value != xasLogarithmic)
        return;
    FChart->GetXAxis().Scale = static_cast<TQXXAxisScale>(Value);
    FChart->CurvesChanged();
    Changed("XAxisScale");
}

void TKSChartPanel::SetYAxisScale(std::int32_t Value)
{
    if (Value < yasLinear || Value > yasDB)
        return;
    const bool changed = Value != FYAxisScale;
    FYAxisScale = Value;
    for (int b = 0; b < FChart->GetBandCount(); ++b) FChart->GetYAxis(b)->Scale = static_cast<TQXYAxisScale>(Value);
    // Limits in one scale mean nothing in another.
    if (changed && !GetIsLoaded()) {
        for (int b = 0; b < FChart->GetBandCount() && b < FChart->GetCurveCount(); ++b)
            DefaultYAxis(b, FShowingFile ? nullptr : FLink->GetChannelList(b));
    }
    UpdateYAxisTitles();
    FChart->CurvesChanged();
    Changed("YAxisScale");
}

void TKSChartPanel::SetAutoScale(bool Value)
{
    FAutoScale = Value;
    if (FToolbar->BAutoscale()->isChecked() != Value)
        FToolbar->BAutoscale()->setChecked(Value);
    if (Value)
        DataChanged();
    Changed("AutoScale");
}

TColor TKSChartPanel::GetBandColor() const { return FChart->GetBandColor(); }

void TKSChartPanel::SetBandColor(TColor Value)
{
    FChart->SetBandColor(Value);
    Changed("BandColor");
}

TColor TKSChartPanel::GetBackgroundColor() const { return FChart->GetBackgroundColor(); }

void TKSChartPanel::SetBackgroundColor(TColor Value)
{
    FChart->SetBackgroundColor(Value);
    update();
    Changed("BackgroundColor");
}

void TKSChartPanel::SetCursorPanelPosition(std::int32_t Value)
{
    if (Value < cppHide || Value > cppRight)
        return;
    FCursorPanelPosition = Value;
    ApplyCursorPanel();
    Changed("CursorPanelPosition");
}

bool TKSChartPanel::GetShowCursor() const { return FChart->GetCursorsVisible(); }

void TKSChartPanel::SetShowCursor(bool Value)
{
    FChart->SetCursorsVisible(Value);
    if (FToolbar->BCursorPanel()->isChecked() != Value)
        FToolbar->BCursorPanel()->setChecked(Value);
    ApplyCursorPanel();
    Changed("ShowCursor");
}

void TKSChartPanel::SetSaveMethod(std::int32_t Value)
{
    if (Value < smShowDialog || Value > smUseNameWithOverwriteWarning)
        return;
    FSaveMethod = Value;
    Changed("SaveMethod");
}

void TKSChartPanel::SetFileName(const QString& Value)
{
    FFileName = Value;
    Changed("FileName");
}

void TKSChartPanel::SetUseEngineeringUnits(bool Value)
{
    FUseEngineeringUnits = Value;
    FChart->SetUseEngineeringUnits(Value);
    Changed("UseEngineeringUnits");
}

void TKSChartPanel::SetCursorDecimals(std::int32_t Value)
{
    FCursorDecimals = std::clamp(Value, 0, 9);
    FCursorPanel->SetDecimalsX(FCursorDecimals);
    FCursorPanel->SetDecimalsY(FCursorDecimals);
    FChart->CurvesChanged();
    Changed("CursorDecimals");
}

double TKSChartPanel::GetXAxisMin() const { return FXAxisMin; }
double TKSChartPanel::GetXAxisMax() const { return FXAxisMax; }

void TKSChartPanel::SetXAxisMin(double Value)
{
    if (!std::isfinite(Value))
        return;
    FXAxisMin = Value;
    Changed("XAxisMin");
}

void TKSChartPanel::SetXAxisMax(double Value)
{
    if (!std::isfinite(Value))
        return;
    FXAxisMax = Value;
    Changed("XAxisMax");
}

void TKSChartPanel::ChangeXAxis()
{
    if (!(FXAxisMax > FXAxisMin))
        return;
    TQXXAxisDataObject& axis = FChart->GetXAxis();
    axis.Min = FXAxisMin;
    axis.Max = FXAxisMax;
    FXAxisFixed = true;
    FChart->CurvesChanged();
}

void TKSChartPanel::SetXAxisFixed(bool Value)
{
    if (GetIsLoaded())
        FXAxisFixed = Value;
    else if (Value)
        ChangeXAxis();
    else
        ResetXAxis();
}

void TKSChartPanel::FollowDefaultXAxis()
{
    if (!FXAxisFixed)
        DefaultXAxis();
}

void TKSChartPanel::ResetXAxis()
{
    FXAxisFixed = false;
    DefaultXAxis();
    FChart->CurvesChanged();
}

void TKSChartPanel::SetYAxisVisible(bool Value)
{
    FYAxisVisible = Value;
    for (int b = 0; b < FChart->GetBandCount(); ++b) FChart->GetYAxis(b)->Visible = Value;
    FChart->CurvesChanged();
    Changed("YAxisVisible");
}

std::int32_t TKSChartPanel::GetActiveBand() const { return FActiveBand; }

void TKSChartPanel::SetActiveBand(std::int32_t Value)
{
    // Kept while the bands are not there yet (a worksheet being read).
    if (Value < 0 || (Value >= FChart->GetBandCount() && FChart->GetCurveCount() > 0))
        return;
    FActiveBand = Value;
    FChart->SetActiveBand(Value);
    Changed("ActiveBand");
}

QString TKSChartPanel::GetYAxisLimits() const
{
    QStringList pairs;
    for (int b = 0; b < FChart->GetBandCount() && FChart->GetCurveCount() > 0; ++b)
        pairs << FloatToStr(FChart->GetYAxis(b)->Min) + QLatin1Char(' ') + FloatToStr(FChart->GetYAxis(b)->Max);
    if (pairs.isEmpty()) {
        for (const auto& [low, high] : FYLimits) pairs << FloatToStr(low) + QLatin1Char(' ') + FloatToStr(high);
    }
    return pairs.join(QLatin1Char(';'));
}

void TKSChartPanel::SetYAxisLimits(const QString& Value)
{
    const QStringList pairs = Value.split(QLatin1Char(';'));
    for (int b = 0; b < pairs.size(); ++b) {
        const QStringList parts = SplitNumbers(pairs[b], QStringLiteral("\\s+"));
        double low = 0.0;
        double high = 0.0;
        try {
            if (parts.size() != 2)
                continue;
            low = StrToFloat(parts[0]);
            high = StrToFloat(parts[1]);
        } catch (const EConvertError&) {
            continue;
        }
        if (!(high > low) || !std::isfinite(low) || !std::isfinite(high))
            continue;
        if (static_cast<std::size_t>(b) >= FYLimits.size())
            FYLimits.resize(static_cast<std::size_t>(b) + 1, {0.0, 0.0});
        FYLimits[static_cast<std::size_t>(b)] = {low, high};
        if (TQXYAxisDataObject* axis = FChart->GetCurveCount() > 0 ? FChart->GetYAxis(b) : nullptr) {
            axis->Min = low;
            axis->Max = high;
        }
    }
    FChart->CurvesChanged();
}

QString TKSChartPanel::GetHiddenCurves() const
{
    QStringList numbers;
    for (int c = 0; c < FChart->GetCurveCount(); ++c)
        if (!FChart->GetCurve(c)->Visible) numbers << QString::number(c);
    if (FChart->GetCurveCount() == 0)
        for (int c : FHiddenCurves) numbers << QString::number(c);
    return numbers.join(QLatin1Char(' '));
}

void TKSChartPanel::SetHiddenCurves(const QString& Value)
{
    FHiddenCurves.clear();
    for (const QString& part : SplitNumbers(Value, QStringLiteral("\\s+"))) {
        bool ok = false;
        const int curve = part.toInt(&ok);
        if (ok && curve >= 0) FHiddenCurves.push_back(curve);
    }
    for (int c = 0; c < FChart->GetCurveCount(); ++c)
        FChart->GetCurve(c)->Visible = std::find(FHiddenCurves.begin(), FHiddenCurves.end(), c) == FHiddenCurves.end();
    FChart->CurvesChanged();
}

double TKSChartPanel::GetYAxisOffset(int Band) const
{
    const TQXYAxisDataObject* axis = FChart->GetYAxis(Band);
    return axis != nullptr ? axis->Min : 0.0;
}

double TKSChartPanel::GetYAxisScaleValue(int Band) const
{
    const TQXYAxisDataObject* axis = FChart->GetYAxis(Band);
    return axis != nullptr ? axis->Max - axis->Min : 0.0;
}

void TKSChartPanel::SetYAxisOffset(int Band, double Value)
{
    TQXYAxisDataObject* axis = FChart->GetYAxis(Band);
    if (axis == nullptr || !std::isfinite(Value))
        return;
    const double span = axis->Max - axis->Min;
    axis->Min = Value;
    axis->Max = Value + span;
    FChart->CurvesChanged();
}

void TKSChartPanel::SetYAxisScaleValue(int Band, double Value)
{
    TQXYAxisDataObject* axis = FChart->GetYAxis(Band);
    if (axis == nullptr || !std::isfinite(Value) || Value <= 0.0)
        return;
    axis->Max = axis->Min + Value;
    FChart->CurvesChanged();
}

void TKSChartPanel::CaptureScale()
{
    for (int b = 0; b < FChart->GetBandCount(); ++b) FChart->AutoscaleBand(b);
    FChart->CurvesChanged();
}

void TKSChartPanel::DefaultScale()
{
    FYLimits.clear();
    for (int i = 0; i < FChart->GetCurveCount() && i < FChart->GetBandCount(); ++i)
        DefaultYAxis(i, FShowingFile ? nullptr : FLink->GetChannelList(i));
    ResetXAxis();
}

void TKSChartPanel::DefaultYAxis(int Band, const TQXMSExChannelInformation* Info)
{
    TQXYAxisDataObject& axis = *FChart->GetYAxis(Band);
    if (Info != nullptr && axis.Scale == yasLinear && std::isfinite(Info->RangeLow) && std::isfinite(Info->RangeHigh) &&
        Info->RangeHigh > Info->RangeLow) {
        axis.Min = Info->RangeLow;
        axis.Max = Info->RangeHigh;
    } else {
        FChart->AutoscaleBand(Band);
    }
}

void TKSChartPanel::SetHold(bool Value)
{
    FHold = Value;
    if (FToolbar->BHold()->isChecked() != Value)
        FToolbar->BHold()->setChecked(Value);
    if (!Value && FShowingFile)
        UpdateSelection();
}

void TKSChartPanel::ResetDisplay()
{
    for (int c = 0; c < FChart->GetCurveCount(); ++c) FChart->GetCurve(c)->Samples.clear();
    FChart->CurvesChanged();
}

bool TKSChartPanel::Changed(const char* Name)
{
    update();
    const QString name = QLatin1String(Name);
    if (GetIsLoaded() || name == FBusWriting)
        return true;
    const QPointer<TKSChartPanel> self(this);
    EventFirePropertyUpdated(name);
    return !self.isNull();
}

}  // namespace qx
