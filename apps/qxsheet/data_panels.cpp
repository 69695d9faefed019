#include "apps/qxsheet/data_panels.h"

#include <QPainter>
#include <QPainterPath>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>
#include <limits>

#include "qxbase/framework/exception.h"
#include "qxbase/panels/panel_registry.h"
#include "qxbase/sources/math_channel_processor.h"
#include "qxbase/sources/simulated_source.h"

namespace qxsheet {
namespace {

qx::TQXMeasureSourceEx* FindIn(const QObject& Parent, const QString& Name)
{
    for (QObject* child : Parent.children()) {
        if (auto* source = qobject_cast<qx::TQXMeasureSourceEx*>(child); source && child->objectName() == Name)
            return source;
        if (qx::TQXMeasureSourceEx* found = FindIn(*child, Name))
            return found;
    }
    return nullptr;
}

// The curve's own range when the channel's is empty or not finite.
void FitRange(TKeptCurve& Curve)
{
    if (std::isfinite(Curve.Low) && std::isfinite(Curve.High) && Curve.High > Curve.Low)
        return;
    const auto [low, high] = std::minmax_element(Curve.Samples.begin(), Curve.Samples.end());
    Curve.Low = low == Curve.Samples.end() ? -1.0 : *low - 1.0;
    Curve.High = high == Curve.Samples.end() ? 1.0 : *high + 1.0;
}

void ApplyChannel(TKeptCurve& Curve, const qx::TQXMSExChannelInformation* Info)
{
    if (Info == nullptr)
        return;
    Curve.Color = Info->Color;
    Curve.Low = Info->RangeLow;
    Curve.High = Info->RangeHigh;
}

// Every curve across the whole area, scaled to its channel's range; `Samples` wide.
void PaintCurves(QPainter& Canvas, const QRectF& Area, const std::vector<TKeptCurve>& Curves, std::size_t Samples)
{
    Canvas.setRenderHint(QPainter::Antialiasing);
    const double step = Samples > 1 ? Area.width() / static_cast<double>(Samples - 1) : 0.0;
    for (TKeptCurve curve : Curves) {
        FitRange(curve);
        QPainterPath path;
        for (std::size_t i = 0; i < curve.Samples.size(); ++i) {
            const double v = std::clamp(curve.Samples[i], curve.Low, curve.High);
            const QPointF p(Area.left() + step * static_cast<double>(i),
                            Area.bottom() - (v - curve.Low) / (curve.High - curve.Low) * Area.height());
            if (i == 0) path.moveTo(p); else path.lineTo(p);
        }
        Canvas.setPen(QPen(qx::ColorToQColor(curve.Color), 1.5));
        Canvas.drawPath(path);
    }
}

QRectF PlotArea(QPainter& Canvas, const qx::TKSMSSink& Panel)
{
    const QRect area = FillPanelContent(Canvas, Panel, qx::clBlack);
    Canvas.setPen(QColor(60, 60, 60));
    Canvas.drawLine(area.left(), area.center().y(), area.right(), area.center().y());
    return QRectF(area).adjusted(4, 4, -4, -4);
}

}  // namespace

qx::TQXMeasureSourceEx* FindMeasureSource(const QWidget& Panel, const QString& Name)
{
    if (Panel.parent() == nullptr || Name.isEmpty())
        return nullptr;
    const QObject* top = &Panel;
    while (top->parent() != nullptr)
        top = top->parent();
    return FindIn(*top, Name);
}

TDataPanel::TDataPanel(std::unique_ptr<qx::TQXMeasureLinkEx> Link, QWidget* parent)
    : TDemoPanel(parent), FLink(std::move(Link))
{
    SetColor(qx::clBlack);
    FLink->SetOwner(this);
    FLink->OnUpdateSettings = [this](qx::TQXMeasureLinkEx*) { SettingsChanged(); };
}

TDataPanel::~TDataPanel()
{
    // The detach tells the owner, whose own part is gone by now.
    FLink->OnUpdateSettings = nullptr;
    FLink->SetQXMeasureSourceEx(nullptr);
}

bool TDataPanel::Attach()
{
    qx::TQXMeasureSourceEx* source = FindMeasureSource(*this, FSourceName);
    FLink->SetQXMeasureSourceEx(source);
    SettingsChanged();
    return source != nullptr && FLink->GetSource() == source;
}

void TDataPanel::LoadFinished()
{
    TDemoPanel::LoadFinished();
    Attach();
}

void TDataPanel::Delivered()
{
    ++FReceived;
    update();
}

TDemoMeterPanel::TDemoMeterPanel(QWidget* parent) : TDataPanel(std::make_unique<qx::TQXMeasureLinkSingleEx>(), parent)
{
    SetChannelMode(1);
    GetSingleLink().OnNewValue = [this](qx::TQXMeasureLinkEx*, const qx::TRVShortdefs&, double, double Time,
                                        double Value) {
        FHasValue = true;
        FValue = Value;
        FValueTime = Time;
        Delivered();
    };
}

QString TDemoMeterPanel::GetDescription(const QMetaObject&)
{
    return QStringLiteral("Meter: one channel reduced to one value per cycle");
}

qx::TQXMeasureLinkSingleEx& TDemoMeterPanel::GetSingleLink() const
{
    return static_cast<qx::TQXMeasureLinkSingleEx&>(GetLink());
}

void TDemoMeterPanel::SetChannelName(const QString& Value)
{
    FChannelName = Value;
    FollowChannel();
}

void TDemoMeterPanel::SetChannel(int Value)
{
    FChannel = Value;
    FollowChannel();
}

void TDemoMeterPanel::SetCompressionMethod(int Value)
{
    if (Value < 0 || Value >= qx::TKSRVLinkSingleCompressionMethodCount)
        return;
    GetSingleLink().SetCompressionMethod(static_cast<qx::TKSRVLinkSingleCompressionMethod>(Value));
    update();
}

QString TDemoMeterPanel::GetMethodText() const
{
    qx::Variant list;
    GetSingleLink().GetCompressionList(list);
    return list.ArrayElement(GetCompressionMethod()).ToString();
}

void TDemoMeterPanel::FollowChannel()
{
    qx::TQXMeasureLinkSingleEx& link = GetSingleLink();
    const int byName = link.OrigNameToChannel(FChannelName);
    link.SetChannel(byName >= 0 ? byName : FChannel);
    ChannelClear();
    const int channel = link.GetChannel();
    ChannelAdd(channel >= 0 && channel < link.GetChannelListCount() ? channel : -1);
    update();
}

void TDemoMeterPanel::SettingsChanged()
{
    FollowChannel();
}

void TDemoMeterPanel::Paint(QPainter& Canvas)
{
    TKSMSSink::Paint(Canvas);
    const QRect area = FillPanelContent(Canvas, *this, qx::clBlack);
    const qx::TQXMSExChannelInformation* info = GetLink().GetChannelList(GetSingleLink().GetChannel());
    const QString unit = info != nullptr ? info->SecondText : QString();
    const QString name = info != nullptr ? info->Name : FChannelName;
    QFont font = Canvas.font();
    font.setPixelSize(std::max(8, area.height() / 6));
    Canvas.setFont(font);
    Canvas.setPen(QColor(160, 160, 160));
    Canvas.drawText(area.adjusted(6, 2, -6, 0), Qt::AlignTop | Qt::AlignLeft,
                    QStringLiteral("%1 of %2").arg(GetMethodText(), name));
    font.setPixelSize(std::max(8, area.height() * 2 / 5));
    font.setBold(true);
    Canvas.setFont(font);
    Canvas.setPen(qx::ColorToQColor(qx::clLime));
    const QString value = FHasValue ? QString::number(FValue, 'f', 3) : QStringLiteral("---");
    Canvas.drawText(area.adjusted(0, area.height() / 5, 0, 0), Qt::AlignCenter,
                    unit.isEmpty() ? value : value + QLatin1Char(' ') + unit);
    PaintDisabledVeil(Canvas, area, *this);
}

TDemoCurvePanel::TDemoCurvePanel(QWidget* parent) : TDataPanel(std::make_unique<qx::TQXMeasureLinkSelectEx>(), parent)
{
    SetChannelMode(3);
    GetSelectLink().OnSelectedData = [this](qx::TQXMeasureLinkEx*, const qx::TRVShortdefs& Shortdefs,
                                            const qx::TRVDataDoubleArray& Data, const qx::TRVDataDoubleArray&,
                                            double) { Take(Shortdefs, Data); };
}

QString TDemoCurvePanel::GetDescription(const QMetaObject&)
{
    return QStringLiteral("Curve: the last blocks of chosen channels");
}

qx::TQXMeasureLinkSelectEx& TDemoCurvePanel::GetSelectLink() const
{
    return static_cast<qx::TQXMeasureLinkSelectEx&>(GetLink());
}

void TDemoCurvePanel::SetChannels(const QString& Value)
{
    FChannels = Value;
    const QStringList parts = Value.split(QRegularExpression(QStringLiteral("[\\s,]+")), Qt::SkipEmptyParts);
    qx::Variant list = qx::Variant::CreateArray(0, static_cast<int>(parts.size()) - 1, qx::varVariant);
    for (int i = 0; i < parts.size(); ++i) {
        bool ok = false;
        const int number = parts[i].toInt(&ok);
        list.SetArrayElement(i, ok ? qx::Variant(std::int32_t{number}) : qx::Variant(parts[i]));
    }
    GetSelectLink().SetChannels(list);
    SettingsChanged();
}

void TDemoCurvePanel::SettingsChanged()
{
    qx::TQXMeasureLinkSelectEx& link = GetSelectLink();
    ChannelClear();
    FCurves.assign(static_cast<std::size_t>(link.GetChannelListCount()), TKeptCurve());
    for (int i = 0; i < link.GetChannelListCount(); ++i) {
        ChannelAdd(link.GetMSChannelIndex(i));
        ApplyChannel(FCurves[static_cast<std::size_t>(i)], link.GetChannelList(i));
    }
    FLastCounts.clear();
    update();
}

void TDemoCurvePanel::Take(const qx::TRVShortdefs& Shortdefs, const qx::TRVDataDoubleArray& Data)
{
    // A cycle may leave out a selected channel: curves follow the delivery, not the selection.
    if (FCurves.size() != Data.size())
        FCurves.assign(Data.size(), TKeptCurve());
    FLastCounts.clear();
    for (std::size_t c = 0; c < Data.size(); ++c) {
        TKeptCurve& curve = FCurves[c];
        const qx::TRVDataDouble& block = Data[c];
        curve.Samples.insert(curve.Samples.end(), block.data, block.data + block.count);
        if (curve.Samples.size() > KeptSamples)
            curve.Samples.erase(curve.Samples.begin(),
                                curve.Samples.end() - static_cast<std::ptrdiff_t>(KeptSamples));
        curve.Color = c < Shortdefs.size() ? Shortdefs[c].Color : curve.Color;
        FLastCounts.push_back(block.count);
    }
    Delivered();
}

void TDemoCurvePanel::Paint(QPainter& Canvas)
{
    TKSMSSink::Paint(Canvas);
    const QRectF area = PlotArea(Canvas, *this);
    PaintCurves(Canvas, area, FCurves, KeptSamples);
    PaintDisabledVeil(Canvas, AdjustClientRect(), *this);
}

TDemoCapturePanel::TDemoCapturePanel(QWidget* parent) : TDataPanel(std::make_unique<qx::TQXMeasureLinkEx>(), parent)
{
    SetChannelMode(3);
    GetLink().OnNewData = [this](qx::TQXMeasureLinkEx*, const qx::TRVShortdefs& Shortdefs,
                                 const qx::TRVDataDoubleArray& Data, const qx::TRVDataDoubleArray& TimeChannel,
                                 double StartTime) { Take(Shortdefs, Data, TimeChannel, StartTime); };
}

QString TDemoCapturePanel::GetDescription(const QMetaObject&)
{
    return QStringLiteral("Capture: the last buffer of a trigger processor");
}

void TDemoCapturePanel::SettingsChanged()
{
    ChannelClear();
    for (int i = 0; i < GetLink().GetChannelListCount(); ++i) ChannelAdd(i);
    update();
}

void TDemoCapturePanel::Take(const qx::TRVShortdefs& Shortdefs, const qx::TRVDataDoubleArray& Data,
                             const qx::TRVDataDoubleArray& TimeChannel, double StartTime)
{
    FCurves.assign(Data.size(), TKeptCurve());
    for (std::size_t c = 0; c < Data.size(); ++c) {
        FCurves[c].Samples.assign(Data[c].data, Data[c].data + Data[c].count);
        ApplyChannel(FCurves[c], GetLink().GetChannelList(static_cast<int>(c)));
        if (c < Shortdefs.size()) FCurves[c].Color = Shortdefs[c].Color;
    }
    FStartTime = StartTime;
    const auto* trigger = dynamic_cast<const qx::TKSTriggerProcessor*>(GetLink().GetSource());
    FTriggerPosition = trigger != nullptr ? trigger->GetPreTrigger() : -1;
    FTriggerTime = std::numeric_limits<double>::quiet_NaN();
    if (trigger != nullptr) {
        const int channel = trigger->GetTriggerChannel();
        if (channel >= 0 && static_cast<std::size_t>(channel) < TimeChannel.size()
            && FTriggerPosition < TimeChannel[static_cast<std::size_t>(channel)].count)
            FTriggerTime = TimeChannel[static_cast<std::size_t>(channel)].data[FTriggerPosition];
    }
    Delivered();
}

void TDemoCapturePanel::Paint(QPainter& Canvas)
{
    TKSMSSink::Paint(Canvas);
    const QRectF area = PlotArea(Canvas, *this);
    const auto count = static_cast<std::size_t>(GetCount());
    if (FTriggerPosition >= 0 && count > 1) {
        const double x = area.left() + area.width() * FTriggerPosition / static_cast<double>(count - 1);
        Canvas.setPen(QPen(QColor(200, 200, 0), 1, Qt::DashLine));
        Canvas.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
    }
    PaintCurves(Canvas, area, FCurves, count);
    PaintDisabledVeil(Canvas, AdjustClientRect(), *this);
}

TDemoTriggerProcessor::TDemoTriggerProcessor(QWidget* parent) : TKSTriggerProcessor(parent) {}

QString TDemoTriggerProcessor::GetDescription(const QMetaObject&)
{
    return QStringLiteral("Trigger processor fed by a named source");
}

void TDemoTriggerProcessor::LoadFinished()
{
    TKSTriggerProcessor::LoadFinished();
    SetQXMeasureSource(FindMeasureSource(*this, FInputSource));
}

void RegisterDataPanels()
{
    static const bool registered = [] {
        qx::RegisterSimulatedSource();
        qx::RegisterMathChannelProcessor();
        qx::RegisterKSPanels<TDemoMeterPanel, TDemoCurvePanel, TDemoCapturePanel>();
        qx::RegisterKSSources<TDemoTriggerProcessor>();
        return true;
    }();
    (void)registered;
}

}  // namespace qxsheet
