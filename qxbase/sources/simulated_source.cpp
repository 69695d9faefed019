#include "qxbase/sources/simulated_source.h"

#include <QTimer>
#include <algorithm>
#include <cmath>

#include "qxbase/framework/debug_output.h"
#include "qxbase/framework/exception.h"
#include "qxbase/framework/stream_registry.h"
#include "qxbase/measure/block_buffer.h"
#include "qxbase/panels/panel_registry.h"

namespace qx {

namespace {

enum : std::uint32_t { PropClockFrequency = 101, PropChannelCount, PropBlockSize, PropAcquisition, PropSampleRate };

const QString NameSampleRate = QStringLiteral("SampleRate");
const QString NameClock = QStringLiteral("ClockFrequencyReal");
const QString NameChannelCount = QStringLiteral("NrOfCGLChannels");

constexpr int DefaultChannelCount = 4;
constexpr TColor ChannelColors[] = {clRed, clLime, clBlue, clYellow, clFuchsia, clAqua, clMaroon, clGreen};

void CheckChannel(int Channel, int Count)
{
    if (Channel < 0 || Channel >= Count)
        throw ERangeError(QStringLiteral("Channel index out of bounds (%1)").arg(Channel));
}

// The value range a channel can reach, for the channel list and the block definitions.
void WaveRange(const TKSWaveform& Wave, double& Low, double& High)
{
    const double reach = Wave.Kind == kswCounter ? std::fabs(Wave.Amplitude) * 65535.0 : std::fabs(Wave.Amplitude);
    if (Wave.Kind == kswCounter) {
        Low = Wave.Amplitude < 0 ? Wave.Offset - reach : Wave.Offset;
        High = Wave.Amplitude < 0 ? Wave.Offset : Wave.Offset + reach;
    } else {
        Low = Wave.Offset - reach;
        High = Wave.Offset + reach;
    }
}

TColor ChannelColor(int Channel)
{
    return ChannelColors[static_cast<std::size_t>(Channel) % std::size(ChannelColors)];
}

// Owns the blocks of one cycle until SendData takes them.
class TCycleBlocks {
public:
    explicit TCycleBlocks(std::size_t Channels) : Data(Channels), Time(Channels) {}
    ~TCycleBlocks()
    {
        FreeDataDoubleArray(Data);
        FreeDataDoubleArray(Time);
    }
    TCycleBlocks(const TCycleBlocks&) = delete;
    TCycleBlocks& operator=(const TCycleBlocks&) = delete;

    TRVDataDoubleArray Data;
    TRVDataDoubleArray Time;
};

}  // namespace

TKSSimulatedSource::TKSSimulatedSource(QWidget* parent)
    : TQXMeasureSourceEx(parent)
{
    FTimer = new QTimer(this);
    FTimer->setTimerType(Qt::PreciseTimer);
    connect(FTimer, &QTimer::timeout, this, [this] {
        try {
            Step();
        } catch (const std::exception& e) {
            // Nothing above a timer slot can take the error; stopping keeps it from repeating.
            Stop();
            KSDebugOutputString(QStringLiteral("%1: acquisition stopped: %2")
                                    .arg(GetObjectDescription(), QString::fromUtf8(e.what())));
        }
    });
    ApplyChannelCount(DefaultChannelCount);
    RebuildChannelList();
    FTimer->setInterval(GetCycleInterval());
    SetObjectDescription(QStringLiteral("Simulated source"));
    TKSSimulatedSource::ClearProperties();
}

TKSSimulatedSource::~TKSSimulatedSource()
{
    FTimer->stop();
}

QString TKSSimulatedSource::GetDescription(const QMetaObject& Class)
{
    Q_UNUSED(Class);
    return QStringLiteral("Simulated acquisition source");
}

void TKSSimulatedSource::ClearProperties()
{
    TQXMeasureSourceEx::ClearProperties();
    auto getSet = [this](TQXPropertyItem* Item, bool Get, bool, Variant& Value) { return OnProperty(Item, Get, Value); };
    RegisterProperty(QStringLiteral("Sample rate per channel"), NameSampleRate, getSet, varDouble,
                     QStringLiteral("Hz"), true, MinSampleRate, MaxSampleRate, PropSampleRate);
    RegisterProperty(QStringLiteral("Converter clock"), NameClock, getSet, varDouble, QStringLiteral("Hz"), true,
                     MinSampleRate, MaxSampleRate * MaxChannels, PropClockFrequency);
    RegisterProperty(QStringLiteral("Number of channels"), NameChannelCount, getSet, varInteger,
                     QString(), true, 1, MaxChannels, PropChannelCount);
    RegisterProperty(QStringLiteral("Samples per block"), QStringLiteral("BlockSize"), getSet, varInteger,
                     QString(), true, 1, MaxBlockSize, PropBlockSize);
    RegisterProperty(QStringLiteral("Acquisition"), QStringLiteral("Acquisition"), getSet, varQXEnumeration,
                     EnumerationTexts({QStringLiteral("Stopped"), QStringLiteral("Running")}), PropAcquisition);
}

HRESULT TKSSimulatedSource::OnProperty(TQXPropertyItem* Item, bool Get, Variant& Value)
{
    switch (Item->FIdentifier) {
    case PropSampleRate:
        if (Get) Value = FSampleRate;
        else if (ApplySampleRate(Value.ToDouble())) {
            SettingsChanged();
            EventFirePropertyUpdated(NameClock);
        }
        return S_OK;
    case PropClockFrequency:
        if (Get) Value = GetClockFrequencyReal();
        else if (ApplySampleRate(Value.ToDouble() * FAD.ExternalClockDiv / GetNrOfCGLChannels())) {
            SettingsChanged();
            EventFirePropertyUpdated(NameSampleRate);
        }
        return S_OK;
    case PropChannelCount:
        if (Get) Value = Variant(GetNrOfCGLChannels());
        else if (ApplyChannelCount(Value.ToInteger())) {
            SettingsChanged();
            EventFirePropertyUpdated(NameClock);
        }
        return S_OK;
    case PropBlockSize:
        if (Get) Value = Variant(FBlockSize);
        else if (ApplyBlockSize(Value.ToInteger())) SettingsChanged();
        return S_OK;
    case PropAcquisition:
        if (Get) Value = Variant(std::int32_t{IsRunning() ? 1 : 0});
        else ApplyRunning(Value.ToInteger() != 0);
        return S_OK;
    default:
        return E_FAIL;
    }
}

bool TKSSimulatedSource::ApplySampleRate(double Value)
{
    if (std::isnan(Value))
        return false;
    Value = std::clamp(Value, MinSampleRate, MaxSampleRate);
    if (Value == FSampleRate)
        return false;
    FSampleRate = Value;
    FStreamPosition = 0;
    RestartFilters();
    FTimer->setInterval(GetCycleInterval());
    return true;
}

bool TKSSimulatedSource::ApplyChannelCount(std::int32_t Value)
{
    const auto count = static_cast<std::size_t>(std::clamp(Value, 1, MaxChannels));
    if (count == FWaves.size())
        return false;
    for (std::size_t i = FWaves.size(); i < count; ++i) {
        FWaves.push_back(DefaultWaveform(static_cast<int>(i)));
        FHandles.push_back(GetNewChannelHandle());
    }
    FWaves.resize(count);
    FHandles.resize(count);
    FFilterStates.resize(count);
    return true;
}

bool TKSSimulatedSource::ApplyBlockSize(std::int32_t Value)
{
    Value = std::clamp(Value, 1, MaxBlockSize);
    if (Value == FBlockSize)
        return false;
    FBlockSize = Value;
    FTimer->setInterval(GetCycleInterval());
    return true;
}

bool TKSSimulatedSource::ApplyRunning(bool Value)
{
    if (Value == IsRunning())
        return false;
    if (Value) FTimer->start(GetCycleInterval());
    else FTimer->stop();
    return true;
}

void TKSSimulatedSource::SettingsChanged()
{
    RebuildChannelList();
    ChannelChangeUpdate();
}

void TKSSimulatedSource::SetSampleRate(double Value)
{
    if (!ApplySampleRate(Value))
        return;
    SettingsChanged();
    EventFirePropertyUpdated(NameSampleRate);
    EventFirePropertyUpdated(NameClock);
}

double TKSSimulatedSource::GetClockFrequencyReal() const
{
    return GetEffectiveSampleRate() * GetNrOfCGLChannels();
}

void TKSSimulatedSource::SetClockFrequencyReal(double Value)
{
    SetSampleRate(Value * FAD.ExternalClockDiv / GetNrOfCGLChannels());
}

TADChangedSet TKSSimulatedSource::ApplyADExtendedSettings(const TQXADExtendedSettings& Settings, TADChangedSet Changed)
{
    const TQXADExtendedSettings wanted = ClampADExtendedSettings(Settings, FAD.CutOffFrequency);
    TADChangedSet applied;
    if (Changed.Contains(adsResolution) && wanted.Resolution != FAD.Resolution) {
        FAD.Resolution = wanted.Resolution;
        applied.Include(adsResolution);
    }
    if (Changed.Contains(adsCutOffFilter) && wanted.CutOffFrequency != FAD.CutOffFrequency) {
        FAD.CutOffFrequency = wanted.CutOffFrequency;
        applied.Include(adsCutOffFilter);
        RestartFilters();
    }
    if (Changed.Contains(adsExternalClockDiv) && wanted.ExternalClockDiv != FAD.ExternalClockDiv) {
        FAD.ExternalClockDiv = wanted.ExternalClockDiv;
        applied.Include(adsExternalClockDiv);
        // Earlier sample times would no longer fit, as after a new rate.
        FStreamPosition = 0;
        RestartFilters();
        FTimer->setInterval(GetCycleInterval());
        SettingsChanged();
        EventFirePropertyUpdated(NameClock);
    }
    return applied;
}

void TKSSimulatedSource::SetADResolution(std::int32_t Value)
{
    TQXADExtendedSettings settings = FAD;
    settings.Resolution = Value;
    ApplyADExtendedSettings(settings, {adsResolution});
}

void TKSSimulatedSource::SetADCutOffFrequency(double Value)
{
    TQXADExtendedSettings settings = FAD;
    settings.CutOffFrequency = Value;
    ApplyADExtendedSettings(settings, {adsCutOffFilter});
}

void TKSSimulatedSource::SetADExternalClockDiv(std::int32_t Value)
{
    TQXADExtendedSettings settings = FAD;
    settings.ExternalClockDiv = Value;
    ApplyADExtendedSettings(settings, {adsExternalClockDiv});
}

void TKSSimulatedSource::ResetStream()
{
    FStreamPosition = 0;
    RestartFilters();
}

void TKSSimulatedSource::RestartFilters()
{
    FLowPass = DesignADLowPass(FAD.CutOffFrequency, GetEffectiveSampleRate());
    for (TADLowPassState& state : FFilterStates) state = {};
}

void TKSSimulatedSource::SetNrOfCGLChannels(std::int32_t Value)
{
    if (!ApplyChannelCount(Value))
        return;
    SettingsChanged();
    EventFirePropertyUpdated(NameChannelCount);
    EventFirePropertyUpdated(NameClock);
}

void TKSSimulatedSource::SetBlockSize(std::int32_t Value)
{
    if (!ApplyBlockSize(Value))
        return;
    SettingsChanged();
    EventFirePropertyUpdated(QStringLiteral("BlockSize"));
}

TKSWaveform TKSSimulatedSource::GetWaveform(int Channel) const
{
    CheckChannel(Channel, GetNrOfCGLChannels());
    return FWaves[static_cast<std::size_t>(Channel)];
}

void TKSSimulatedSource::SetWaveform(int Channel, const TKSWaveform& Wave)
{
    CheckChannel(Channel, GetNrOfCGLChannels());
    CheckWaveform(Wave);
    TKSWaveform& stored = FWaves[static_cast<std::size_t>(Channel)];
    if (stored == Wave)
        return;
    stored = Wave;
    SettingsChanged();
}

TKSWaveform TKSSimulatedSource::DefaultWaveform(int Channel)
{
    TKSWaveform wave;
    wave.Frequency = Channel + 1.0;
    return wave;
}

QStringList TKSSimulatedSource::GetWaveformLines() const
{
    QStringList lines;
    lines.reserve(static_cast<qsizetype>(FWaves.size()));
    for (const TKSWaveform& wave : FWaves) lines << WaveformToText(wave);
    return lines;
}

void TKSSimulatedSource::SetWaveformLines(const QStringList& Lines)
{
    if (Lines.isEmpty())
        return;
    const bool countChanged = ApplyChannelCount(static_cast<std::int32_t>(std::min<qsizetype>(Lines.size(), MaxChannels)));
    for (std::size_t i = 0; i < FWaves.size(); ++i) {
        try {
            FWaves[i] = WaveformFromText(Lines[static_cast<qsizetype>(i)]);
        } catch (const Exception& e) {
            FWaves[i] = DefaultWaveform(static_cast<int>(i));
            KSDebugOutputString(QStringLiteral("%1: waveform of channel %2 replaced by the default: %3")
                                    .arg(GetObjectDescription())
                                    .arg(i + 1)
                                    .arg(e.Message()));
        }
    }
    SettingsChanged();
    if (countChanged) {
        EventFirePropertyUpdated(NameChannelCount);
        EventFirePropertyUpdated(NameClock);
    }
}

void TKSSimulatedSource::Start()
{
    if (ApplyRunning(true))
        EventFirePropertyUpdated(QStringLiteral("Acquisition"));
}

void TKSSimulatedSource::Stop()
{
    if (ApplyRunning(false))
        EventFirePropertyUpdated(QStringLiteral("Acquisition"));
}

bool TKSSimulatedSource::IsRunning() const
{
    return FTimer->isActive();
}

int TKSSimulatedSource::GetCycleInterval() const
{
    const double ms = 1000.0 * FBlockSize / GetEffectiveSampleRate();
    return static_cast<int>(std::lround(std::clamp(ms, double{MinCycleMs}, double{MaxCycleMs})));
}

void TKSSimulatedSource::RebuildChannelList()
{
    ChannelListClear();
    const TQXMSChannelFlags flags{msexArrayData, msexTimeData, msexADChannel};
    for (std::size_t i = 0; i < FWaves.size(); ++i) {
        const TKSWaveform& wave = FWaves[i];
        double low = 0;
        double high = 0;
        WaveRange(wave, low, high);
        ChannelListAdd(QStringLiteral("AI %1").arg(i + 1), QStringLiteral("V"), WaveformKindName(wave.Kind), low, high,
                       flags, ChannelColor(static_cast<int>(i)), FHandles[i], true);
    }
}

void TKSSimulatedSource::Step()
{
    const std::size_t channels = FWaves.size();
    const std::int32_t count = FBlockSize;
    const std::uint64_t first = FStreamPosition;
    const double rate = GetEffectiveSampleRate();
    const TQXMSChannelFlags flags{msexArrayData, msexTimeData, msexADChannel};

    TRVShortdefs defs(channels);
    TCycleBlocks blocks(channels);
    for (std::size_t c = 0; c < channels; ++c) {
        blocks.Data[c] = NewDataDouble(count);
        blocks.Time[c] = NewDataDouble(count);
        TRVShortdef& def = defs[c];
        WaveRange(FWaves[c], def.YMin, def.YMax);
        double* data = blocks.Data[c].data;
        FillWaveform(FWaves[c], rate, first, c, data, count);
        // The filter sits before the converter, so its overshoot is clipped like a real input's.
        ADLowPassBlock(FLowPass, FFilterStates[c], data, count);
        ADQuantizeBlock(MakeADQuantizer(FAD.Resolution, def.YMin, def.YMax), data, count);
        FillTimeBlock(rate, first, blocks.Time[c].data, count);
        def.ChannelNo = static_cast<std::int32_t>(c);
        def.XStart = static_cast<double>(first) / rate;
        def.XEnd = static_cast<double>(first + static_cast<std::uint64_t>(count)) / rate;
        def.FirstSample = first;
        def.Flags = flags.Bits();
        def.Color = ChannelColor(static_cast<int>(c));
        def.Handle = FHandles[c];
    }
    // Advanced before sending: a consumer may stop, step or even destroy this source.
    FStreamPosition = first + static_cast<std::uint64_t>(count);
    SendData(defs, blocks.Data, blocks.Time, static_cast<double>(first) / rate);
}

void RegisterSimulatedSource()
{
    if (FindStreamClass(StreamClassName(TKSSimulatedSource::staticMetaObject)) != nullptr)
        return;
    RegisterKSSources<TKSSimulatedSource>();
}

}  // namespace qx
