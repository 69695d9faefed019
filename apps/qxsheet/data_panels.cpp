#include "apps/qxsheet/data_panels.h"

#include <QPainter>
#include <algorithm>

#include "qxbase/chartpanels/chart_panel_registration.h"
#include "qxbase/panels/panel_registry.h"
#include "qxbase/sources/math_channel_processor.h"
#include "qxbase/sources/measure_source_lookup.h"
#include "qxbase/sources/simulated_source.h"

namespace qxsheet {

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
    qx::TQXMeasureSourceEx* source = qx::FindMeasureSourceByName(*this, FSourceName);
    FLink->SetQXMeasureSourceEx(source);
    SettingsChanged();
    return source != nullptr && FLink->GetSource() == source;
}

void TDataPanel::SetMeasureSource(qx::TQXMeasureSourceEx* Value)
{
    FSourceName = Value != nullptr ? Value->objectName() : QString();
    FLink->SetQXMeasureSourceEx(Value);
    SettingsChanged();
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

void TDemoMeterPanel::ChannelListChanged()
{
    const int channel = GetChannelArray(0);
    const qx::TQXMSExChannelInformation* info = GetLink().GetChannelList(channel);
    FChannelName = info != nullptr ? info->Name : QString();
    SetChannel(channel);
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

TDemoTriggerProcessor::TDemoTriggerProcessor(QWidget* parent) : TKSTriggerProcessor(parent) {}

QString TDemoTriggerProcessor::GetDescription(const QMetaObject&)
{
    return QStringLiteral("Trigger processor fed by a named source");
}

void TDemoTriggerProcessor::LoadFinished()
{
    TKSTriggerProcessor::LoadFinished();
    SetQXMeasureSource(qx::FindMeasureSourceByName(*this, FInputSource));
}

void RegisterDataPanels()
{
    static const bool registered = [] {
        qx::RegisterSimulatedSource();
        qx::RegisterMathChannelProcessor();
        qx::RegisterKSPanels<TDemoMeterPanel>();
        qx::RegisterChartPanels();
        qx::RegisterKSSources<TDemoTriggerProcessor>();
        return true;
    }();
    (void)registered;
}

}  // namespace qxsheet
