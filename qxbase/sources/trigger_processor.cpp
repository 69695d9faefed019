#include "qxbase/sources/trigger_processor.h"

#include <QStringList>

#include "qxbase/framework/stream_registry.h"
#include "qxbase/measure/block_buffer.h"
#include "qxbase/panels/panel_registry.h"

namespace qx {

namespace {

enum : std::uint32_t {
    PropTriggerType = 201,
    PropBufferSize,
    PropLevel,
    PropSingleShot,
    PropTriggerChannel,
    PropPreTrigger,
    PropRearm,
};

const QString NameType = QStringLiteral("TriggerType");
const QString NameBufferSize = QStringLiteral("TriggerBufferSize");
const QString NameLevel = QStringLiteral("TriggerLevel");
const QString NameSingleShot = QStringLiteral("TriggerSingleShot");
const QString NameChannel = QStringLiteral("TriggerChannel");
const QString NamePreTrigger = QStringLiteral("PreTrigger");

// The settings the bus shows, to announce those that a change touched.
struct TBusValues {
    std::int32_t Type, BufferSize, Channel, PreTrigger;
    double Level;
    bool SingleShot;
};

TBusValues Snapshot(const TRVTrigger& t)
{
    return {t.GetTriggerType(), t.GetBufferSize(), t.GetTriggerChannel(), t.GetPreTrigger(), t.GetLevel(),
            t.GetSingleShot()};
}

}  // namespace

TKSTriggerProcessor::TKSTriggerProcessor(QWidget* parent)
    : TQXMLSBaseEx(parent)
{
    FTrigger.OnCapture = [this](const TRVShortdefs& Shortdefs, TRVDataDoubleArray& Data,
                                TRVDataDoubleArray& TimeChannel, double StartTime) {
        SendData(Shortdefs, Data, TimeChannel, StartTime);
    };
    SetObjectDescription(QStringLiteral("Trigger"));
    TKSTriggerProcessor::ClearProperties();
}

TKSTriggerProcessor::~TKSTriggerProcessor()
{
    // The trigger goes before the base class; no block set may reach it after that.
    GetInputLink().SetQXMeasureSourceEx(nullptr);
}

QString TKSTriggerProcessor::GetDescription(const QMetaObject& Class)
{
    Q_UNUSED(Class);
    return QStringLiteral("Trigger: captures buffers around level crossings");
}

void TKSTriggerProcessor::ClearProperties()
{
    TQXMLSBaseEx::ClearProperties();
    auto getSet = [this](TQXPropertyItem* Item, bool Get, bool, Variant& Value) { return OnProperty(Item, Get, Value); };
    RegisterProperty(QStringLiteral("Trigger type"), NameType, getSet, varQXEnumeration,
                     EnumerationTexts({QStringLiteral("Positive"), QStringLiteral("Negative"), QStringLiteral("Positive slope"),
                               QStringLiteral("Range slope"), QStringLiteral("Negative slope"), QStringLiteral("Off"),
                               QStringLiteral("Time")}),
                     PropTriggerType);
    RegisterProperty(QStringLiteral("Trigger buffer size"), NameBufferSize, getSet, varInteger, QString(), true, 3,
                     MaxBlockSamples, PropBufferSize);
    RegisterProperty(QStringLiteral("Trigger level"), NameLevel, getSet, varDouble, QString(), false, 0, 0, PropLevel);
    RegisterProperty(QStringLiteral("Trigger single shot"), NameSingleShot, getSet, varBoolean, QString(), false, 0, 0,
                     PropSingleShot);
    RegisterProperty(QStringLiteral("Trigger channel"), NameChannel, getSet, varInteger, QString(), false, 0, 0,
                     PropTriggerChannel);
    RegisterProperty(QStringLiteral("Pre-trigger"), NamePreTrigger, getSet, varInteger, QString(), true, 0,
                     MaxBlockSamples - 1, PropPreTrigger);
    RegisterProperty(QStringLiteral("Rearm trigger"), QStringLiteral("RearmTrigger"), getSet, varQXEnumeration,
                     EnumerationTexts({QStringLiteral("True"), QStringLiteral("Unknown")}), PropRearm);
}

template <class F>
void TKSTriggerProcessor::ChangeSettings(F&& Change, const QString& Skip)
{
    const TBusValues before = Snapshot(FTrigger);
    Change();
    const TBusValues after = Snapshot(FTrigger);
    const auto announce = [&](bool Changed, const QString& Name) {
        if (Changed && Name != Skip) EventFirePropertyUpdated(Name);
    };
    announce(before.Type != after.Type, NameType);
    announce(before.BufferSize != after.BufferSize, NameBufferSize);
    announce(before.Level != after.Level, NameLevel);
    announce(before.SingleShot != after.SingleShot, NameSingleShot);
    announce(before.Channel != after.Channel, NameChannel);
    announce(before.PreTrigger != after.PreTrigger, NamePreTrigger);
}

HRESULT TKSTriggerProcessor::OnProperty(TQXPropertyItem* Item, bool Get, Variant& Value)
{
    const QString& name = Item->FName;
    switch (Item->FIdentifier) {
    case PropTriggerType:
        if (Get) Value = Variant(GetTriggerType());
        else {
            const std::int32_t type = Value.ToInteger();
            if (type >= trtPos && type <= trtTime)
                ChangeSettings([&] { FTrigger.SetTriggerType(static_cast<TRVTriggerType>(type)); }, name);
        }
        return S_OK;
    case PropBufferSize:
        if (Get) Value = Variant(GetTriggerBufferSize());
        else ChangeSettings([&] { FTrigger.SetBufferSize(Value.ToInteger()); }, name);
        return S_OK;
    case PropLevel:
        if (Get) Value = Variant(GetTriggerLevel());
        else ChangeSettings([&] { FTrigger.SetLevel(Value.ToDouble()); }, name);
        return S_OK;
    case PropSingleShot:
        if (Get) Value = Variant(GetTriggerSingleShot());
        else ChangeSettings([&] { FTrigger.SetSingleShot(Value.ToBoolean()); }, name);
        return S_OK;
    case PropTriggerChannel:
        if (Get) Value = Variant(GetTriggerChannel());
        else ChangeSettings([&] { FTrigger.SetTriggerChannel(Value.ToInteger()); }, name);
        return S_OK;
    case PropPreTrigger:
        if (Get) Value = Variant(GetPreTrigger());
        else ChangeSettings([&] { FTrigger.SetPreTrigger(Value.ToInteger()); }, name);
        return S_OK;
    case PropRearm:
        if (Get) {
            Value = Variant(std::int32_t{1});
        } else {
            const TVarType type = Value.VarType();
            if ((IsIntegerVarType(type) && Value.ToInt64() == 0) ||
                (type == varOleStr && Value.ToString() == QLatin1String("True")))
                RearmTrigger();
        }
        return S_OK;
    default:
        return E_FAIL;
    }
}

void TKSTriggerProcessor::SetTriggerType(std::int32_t Value)
{
    if (Value < trtPos || Value > trtTime) return;
    ChangeSettings([&] { FTrigger.SetTriggerType(static_cast<TRVTriggerType>(Value)); }, {});
}

void TKSTriggerProcessor::SetTriggerBufferSize(std::int32_t Value)
{
    // A worksheet holds the pair as it was; the setter rules could not always rebuild it.
    if (GetIsLoading())
        ChangeSettings([&] { FTrigger.RestoreSizes(FTrigger.GetPreTrigger(), Value); }, {});
    else
        ChangeSettings([&] { FTrigger.SetBufferSize(Value); }, {});
}

void TKSTriggerProcessor::SetPreTrigger(std::int32_t Value)
{
    if (GetIsLoading())
        ChangeSettings([&] { FTrigger.RestoreSizes(Value, FTrigger.GetBufferSize()); }, {});
    else
        ChangeSettings([&] { FTrigger.SetPreTrigger(Value); }, {});
}

void TKSTriggerProcessor::SetTriggerLevel(double Value)
{
    ChangeSettings([&] { FTrigger.SetLevel(Value); }, {});
}

void TKSTriggerProcessor::SetTriggerSingleShot(bool Value)
{
    ChangeSettings([&] { FTrigger.SetSingleShot(Value); }, {});
}

void TKSTriggerProcessor::SetTriggerChannel(std::int32_t Value)
{
    ChangeSettings([&] { FTrigger.SetTriggerChannel(Value); }, {});
}

void TKSTriggerProcessor::SetTriggerMode(std::int32_t Value)
{
    if (Value == tmNormal || Value == tmChartRecorder) FTrigger.SetTriggerMode(static_cast<TKSTriggerMode>(Value));
}

void TKSTriggerProcessor::SetStopTriggerChannel(std::int32_t Value)
{
    FTrigger.SetStopTriggerChannel(Value);
}

void TKSTriggerProcessor::SetLowSlopeTolerance(double Value)
{
    FTrigger.SetLowSlopeTolerance(static_cast<float>(Value));
}

void TKSTriggerProcessor::SetHighSlopeTolerance(double Value)
{
    FTrigger.SetHighSlopeTolerance(static_cast<float>(Value));
}

void TKSTriggerProcessor::SetPostTrigger(std::int32_t Value)
{
    FTrigger.SetPostTrigger(Value);
}

void TKSTriggerProcessor::RearmTrigger()
{
    FTrigger.StartSingleShot();  // raises for a trigger channel that does not fit
    FTrigger.Reset();
}

void TKSTriggerProcessor::MLSOnUpdateSettings(TQXMeasureLinkEx* Sender)
{
    Q_UNUSED(Sender);
    ChannelListClear();
    const TQXMeasureLinkEx& input = GetInputLink();
    for (int i = 0; i < input.GetChannelListCount(); ++i) {
        const TQXMSExChannelInformation* info = input.GetChannelList(i);
        if (info == nullptr) continue;
        ChannelListAddCopy(*info);
    }
    ChannelChangeUpdate();
}

void TKSTriggerProcessor::MLSOnNewData(TQXMeasureLinkEx* Link, const TRVShortdefs& Shortdefs,
                                       const TRVDataDoubleArray& Data, const TRVDataDoubleArray& TimeChannel,
                                       double StartTime)
{
    Q_UNUSED(Link);
    Q_UNUSED(StartTime);  // a capture's start is the time of its own first sample
    FTrigger.ProcessData(Shortdefs, Data, TimeChannel);
}

void RegisterTriggerProcessor()
{
    if (FindStreamClass(StreamClassName(TKSTriggerProcessor::staticMetaObject)) != nullptr) return;
    RegisterKSSources<TKSTriggerProcessor>();
}

}  // namespace qx
