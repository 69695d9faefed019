#include "qxbase/sources/math_channel_processor.h"

#include <limits>

#include "qxbase/framework/component_stream.h"
#include "qxbase/framework/exception.h"
#include "qxbase/framework/stream_registry.h"
#include "qxbase/framework/value_stream.h"
#include "qxbase/panels/panel_registry.h"

namespace qx {

namespace {

enum : std::uint32_t { PropSpecType = 301, PropWindow };

const QString NameSpecType = QStringLiteral("FFTSpecType");
const QString NameWindow = QStringLiteral("FFTWindow");

template <class TText>
Variant TextList(int Count, TText Text)
{
    QStringList texts;
    for (int i = 0; i < Count; ++i) texts << Text(i);
    return EnumerationTexts(texts);
}

[[noreturn]] void FailAt(const TReader& Reader, const QString& Path, const QString& Problem)
{
    throw EStreamError(QStringLiteral("%1, item %2: %3").arg(Reader.GetPlace(), Path, Problem));
}

std::int32_t ReadInt32(TReader& Reader)
{
    const QString path = Reader.GetItemPath();
    const std::int64_t value = Reader.ReadInteger();
    if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
        FailAt(Reader, path, QStringLiteral("%1 is outside the 32-bit range").arg(value));
    return static_cast<std::int32_t>(value);
}

void WriteChannel(TWriter& Writer, const TQXMSExChannelInformation& Info)
{
    Writer.WriteListBegin();
    Writer.WriteString(Info.Name);
    Writer.WriteString(Info.SecondText);
    Writer.WriteString(Info.ThirdText);
    Writer.WriteFloat(Info.RangeLow);
    Writer.WriteFloat(Info.RangeHigh);
    Writer.WriteInteger(Info.Color);
    Writer.WriteInteger(Info.Operation);
    Writer.WriteInteger(Info.OperationParameter);
    Writer.WriteInteger(Info.FirstOperandIndex);
    Writer.WriteString(Info.FirstOperandName);
    Writer.WriteInteger(Info.SecondOperandIndex);
    Writer.WriteString(Info.SecondOperandName);
    for (double value : Info.ScalingValues) Writer.WriteFloat(value);
    for (double value : Info.Coefficients) Writer.WriteFloat(value);
    Writer.WriteBoolean(Info.OptionFlag);
    Writer.WriteListEnd();
}

TQXMSExChannelInformation ReadChannel(TReader& Reader)
{
    TQXMSExChannelInformation info;
    Reader.ReadListBegin();
    info.Name = Reader.ReadString();
    info.SecondText = Reader.ReadString();
    info.ThirdText = Reader.ReadString();
    info.RangeLow = Reader.ReadFloat();
    info.RangeHigh = Reader.ReadFloat();
    info.Color = ReadInt32(Reader);
    const QString operationPath = Reader.GetItemPath();
    const std::int64_t operation = Reader.ReadInteger();
    if (operation < 0 || operation >= TQXVTOperationCount)
        FailAt(Reader, operationPath,
               QStringLiteral("operation %1 outside 0..%2").arg(operation).arg(TQXVTOperationCount - 1));
    info.Operation = static_cast<TQXVTOperation>(operation);
    info.OperationParameter = ReadInt32(Reader);
    info.FirstOperandIndex = ReadInt32(Reader);
    info.FirstOperandName = Reader.ReadString();
    info.SecondOperandIndex = ReadInt32(Reader);
    info.SecondOperandName = Reader.ReadString();
    for (double& value : info.ScalingValues) value = Reader.ReadFloat();
    for (double& value : info.Coefficients) value = Reader.ReadFloat();
    info.OptionFlag = Reader.ReadBoolean();
    Reader.ReadListEnd();  // raises for values beyond the record
    return info;
}

}  // namespace

TKSMathChannelProcessor::TKSMathChannelProcessor(QWidget* parent)
    : TQXMLSBaseEx(parent)
    , FTable(*this, &GetInputLink())
{
    SetObjectDescription(QStringLiteral("Math channels"));
    TKSMathChannelProcessor::ClearProperties();
}

TKSMathChannelProcessor::~TKSMathChannelProcessor()
{
    // The table goes before the base class; no block set may reach it after that.
    GetInputLink().SetQXMeasureSourceEx(nullptr);
}

QString TKSMathChannelProcessor::GetDescription(const QMetaObject& Class)
{
    Q_UNUSED(Class);
    return QStringLiteral("Math channels: sums, reductions, spectra and scalings of the input's channels");
}

void TKSMathChannelProcessor::ClearProperties()
{
    TQXMLSBaseEx::ClearProperties();
    auto getSet = [this](TQXPropertyItem* Item, bool Get, bool, Variant& Value) { return OnProperty(Item, Get, Value); };
    RegisterProperty(QStringLiteral("FFT spectrum type"), NameSpecType, getSet, varQXEnumeration,
                     TextList(TKSFFTSpecTypeCount,
                              [](int i) { return GetFFTSpecTypeText(static_cast<TKSFFTSpecType>(i)); }),
                     PropSpecType);
    RegisterProperty(QStringLiteral("FFT window"), NameWindow, getSet, varQXEnumeration,
                     TextList(TQXFFTLeakTypeCount,
                              [](int i) { return GetFFTWindowText(static_cast<TQXFFTLeakType>(i)); }),
                     PropWindow);
}

HRESULT TKSMathChannelProcessor::OnProperty(TQXPropertyItem* Item, bool Get, Variant& Value)
{
    switch (Item->FIdentifier) {
    case PropSpecType:
        if (Get) Value = Variant(GetFFTSpecType());
        else ApplySpecType(Value.ToInteger());
        return S_OK;
    case PropWindow:
        if (Get) Value = Variant(GetFFTWindow());
        else ApplyWindow(Value.ToInteger());
        return S_OK;
    default:
        return E_FAIL;
    }
}

std::int32_t TKSMathChannelProcessor::GetFFTSpecType() const
{
    return FTable.GetFFT().GetSpecType();
}

std::int32_t TKSMathChannelProcessor::GetFFTWindow() const
{
    return FTable.GetFFT().GetWindow();
}

bool TKSMathChannelProcessor::ApplySpecType(std::int32_t Value)
{
    if (Value < 0 || Value >= TKSFFTSpecTypeCount || Value == GetFFTSpecType())
        return false;
    FTable.GetFFT().SetSpecType(static_cast<TKSFFTSpecType>(Value));
    return true;
}

bool TKSMathChannelProcessor::ApplyWindow(std::int32_t Value)
{
    if (Value < 0 || Value >= TQXFFTLeakTypeCount || Value == GetFFTWindow())
        return false;
    FTable.GetFFT().SetWindow(static_cast<TQXFFTLeakType>(Value));
    return true;
}

void TKSMathChannelProcessor::SetFFTSpecType(std::int32_t Value)
{
    if (ApplySpecType(Value))
        EventFirePropertyUpdated(NameSpecType);
}

void TKSMathChannelProcessor::SetFFTWindow(std::int32_t Value)
{
    if (ApplyWindow(Value))
        EventFirePropertyUpdated(NameWindow);
}

QString TKSMathChannelProcessor::GetInputSource() const
{
    const TQXMeasureSourceEx* source = GetQXMeasureSource();
    return source != nullptr ? source->objectName() : FInputSourceName;
}

void TKSMathChannelProcessor::SetInputSource(const QString& Value)
{
    FInputSourceName = Value;
    // While loading, the source may stand further on in the file; LoadFinished attaches.
    if (!GetIsLoading())
        AttachByName();
}

void TKSMathChannelProcessor::AttachByName()
{
    TQXMeasureSourceEx* source = nullptr;
    if (!FInputSourceName.isEmpty())
        source = dynamic_cast<TQXMeasureSourceEx*>(GetPanelByName(FInputSourceName));
    if (source == this)
        source = nullptr;
    SetQXMeasureSource(source);
}

void TKSMathChannelProcessor::LoadFinished()
{
    AttachByName();
    TQXMLSBaseEx::LoadFinished();
}

void TKSMathChannelProcessor::WriteMathChannels(TWriter& Writer) const
{
    Writer.WriteListBegin();
    for (int i = 0; i < FTable.GetChannelListCount(); ++i)
        WriteChannel(Writer, *FTable.GetChannelList(i));
    Writer.WriteListEnd();
}

void TKSMathChannelProcessor::ReadMathChannels(TReader& Reader)
{
    // Everything is read and checked before the table changes.
    std::vector<TQXMSExChannelInformation> channels;
    Reader.ReadListBegin();
    while (!Reader.EndOfList())
        channels.push_back(ReadChannel(Reader));
    Reader.ReadListEnd();

    FTable.ChannelListClear();
    for (const TQXMSExChannelInformation& c : channels) {
        const int index = FTable.AddChannel(c.Name, c.SecondText, c.ThirdText, c.RangeLow, c.RangeHigh, c.Color,
                                            c.Operation, c.OperationParameter, c.FirstOperandIndex,
                                            c.SecondOperandIndex, c.ScalingValues[0], c.ScalingValues[1],
                                            c.ScalingValues[2], c.ScalingValues[3], c.Coefficients,
                                            c.FirstOperandName, c.SecondOperandName);
        FTable.UpdateChannelInformation(index, c);  // the fields AddChannel does not take
    }
}

void TKSMathChannelProcessor::DefineProperties(TFiler& Filer)
{
    TQXMLSBaseEx::DefineProperties(Filer);
    Filer.DefineProperty(
        QStringLiteral("MathChannels"), [this](TReader& Reader) { ReadMathChannels(Reader); },
        [this](TWriter& Writer) { WriteMathChannels(Writer); }, FTable.GetChannelListCount() > 0);
}

void TKSMathChannelProcessor::MLSOnUpdateSettings(TQXMeasureLinkEx* Sender)
{
    Q_UNUSED(Sender);
    FTable.GetSourceSettings();
}

void TKSMathChannelProcessor::MLSOnNewData(TQXMeasureLinkEx* Link, const TRVShortdefs& Shortdefs,
                                           const TRVDataDoubleArray& Data, const TRVDataDoubleArray& TimeChannel,
                                           double StartTime)
{
    FTable.SendData(Link, Shortdefs, Data, TimeChannel, StartTime);
}

void RegisterMathChannelProcessor()
{
    if (FindStreamClass(StreamClassName(TKSMathChannelProcessor::staticMetaObject)) != nullptr)
        return;
    RegisterKSSources<TKSMathChannelProcessor>();
}

}  // namespace qx
