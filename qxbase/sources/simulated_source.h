#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

#include "qxbase/framework/export.h"
#include "qxbase/sources/ad_conversion.h"
#include "qxbase/sources/measure_source.h"
#include "qxbase/sources/waveform.h"

class QTimer;

namespace qx {

// An acquisition source without hardware: each cycle it sends one block of BlockSize samples per
// channel, computed from the channel's waveform, with a time block per channel. A QTimer runs
// the cycles while started (Start, Stop); Step runs one by hand.
//
// The channels are sampled like a multiplexed converter: each at SampleRate (divided by the
// external clock divider, below), so the converter clock "ClockFrequencyReal" is that rate x
// NrOfCGLChannels (what math channels divide back).
//
// Settings are published on the bus ("SampleRate", "ClockFrequencyReal", "NrOfCGLChannels",
// "BlockSize", "Acquisition") and stored in the worksheet as Q_PROPERTYs "SampleRate",
// "NrOfCGLChannels", "BlockSize" plus "Waveforms", one stored waveform line per channel; the
// clock follows from the others and is not stored. Values out of range are clamped.
//
// The converter's extended settings (TQXADExtendedSettings) act on every block, in the order a
// converter meets them: the external clock divider divides SampleRate (the rate the samples are
// taken at, and that the time blocks and "ClockFrequencyReal" show), the cut-off low-pass filters
// each channel (its state carried from block to block), and the resolution quantizes each
// channel over its range. They are stored as "ADResolution", "ADCutOffFrequency" and
// "ADExternalClockDiv".
class QXBASE_EXPORT TKSSimulatedSource : public TQXMeasureSourceEx {
    Q_OBJECT
    Q_PROPERTY(double SampleRate READ GetSampleRate WRITE SetSampleRate)
    Q_PROPERTY(qint32 NrOfCGLChannels READ GetNrOfCGLChannels WRITE SetNrOfCGLChannels)
    Q_PROPERTY(qint32 BlockSize READ GetBlockSize WRITE SetBlockSize)
    Q_PROPERTY(QStringList Waveforms READ GetWaveformLines WRITE SetWaveformLines)
    Q_PROPERTY(qint32 ADResolution READ GetADResolution WRITE SetADResolution)
    Q_PROPERTY(double ADCutOffFrequency READ GetADCutOffFrequency WRITE SetADCutOffFrequency)
    Q_PROPERTY(qint32 ADExternalClockDiv READ GetADExternalClockDiv WRITE SetADExternalClockDiv)

public:
    static constexpr int MaxChannels = 256;
    static constexpr double MinSampleRate = 0.001;
    static constexpr double MaxSampleRate = 10e6;
    static constexpr std::int32_t MaxBlockSize = 1 << 20;
    // The timer interval is BlockSize / rate, kept within these bounds (milliseconds).
    static constexpr int MinCycleMs = 5;
    static constexpr int MaxCycleMs = 10000;

    explicit TKSSimulatedSource(QWidget* parent = nullptr);
    ~TKSSimulatedSource() override;

    static QString GetDescription(const QMetaObject& Class);

    // The base properties, then "SampleRate" (double, Hz per channel), "ClockFrequencyReal"
    // (double, Hz), "NrOfCGLChannels" (integer), "BlockSize" (integer) and "Acquisition"
    // (enumeration "Stopped", "Running").
    void ClearProperties() override;

    // Samples per second of each channel before the external clock divider.
    double GetSampleRate() const { return FSampleRate; }
    // SampleRate / ExternalClockDiv: the rate the samples are taken at.
    double GetEffectiveSampleRate() const { return FSampleRate / FAD.ExternalClockDiv; }
    // Clamped to MinSampleRate..MaxSampleRate; a value that is not a number is ignored. A new
    // rate restarts the stream at sample 0, since earlier times would no longer fit.
    void SetSampleRate(double Value);
    // EffectiveSampleRate x NrOfCGLChannels: the clock the converter really runs at.
    double GetClockFrequencyReal() const;
    // Sets SampleRate to Value x ExternalClockDiv / NrOfCGLChannels (clamped as SetSampleRate
    // clamps).
    void SetClockFrequencyReal(double Value);
    std::int32_t GetNrOfCGLChannels() const { return static_cast<std::int32_t>(FWaves.size()); }
    // Clamped to 1..MaxChannels; the clock follows. New channels get the default waveform of their position;
    // channels that stay keep their waveform and channel handle.
    void SetNrOfCGLChannels(std::int32_t Value);
    std::int32_t GetBlockSize() const { return FBlockSize; }
    // Clamped to 1..MaxBlockSize.
    void SetBlockSize(std::int32_t Value);

    // Raises ERangeError for a channel outside 0..NrOfCGLChannels-1 (and, for the setter, for
    // a waveform CheckWaveform refuses; nothing changes then).
    TKSWaveform GetWaveform(int Channel) const;
    void SetWaveform(int Channel, const TKSWaveform& Wave);
    // The default waveform of a channel position: a 1 V sine of (Channel + 1) Hz.
    static TKSWaveform DefaultWaveform(int Channel);

    // One stored waveform line per channel.
    QStringList GetWaveformLines() const;
    // Sets the channel count to the number of lines (an empty list is ignored) and reads each
    // line; a damaged line gives its channel the default waveform and a line on the debug
    // output. Never raises, so a damaged worksheet still loads.
    void SetWaveformLines(const QStringList& Lines);

    const TQXADExtendedSettings& GetADExtendedSettings() const { return FAD; }
    // Takes the settings whose bits are set in `Changed` (clamped as ClampADExtendedSettings
    // does) and returns the bits whose setting really changed. A new divider restarts the stream
    // like a new rate and announces "ClockFrequencyReal"; a new cut-off restarts the filters.
    TADChangedSet ApplyADExtendedSettings(const TQXADExtendedSettings& Settings, TADChangedSet Changed);
    std::int32_t GetADResolution() const { return FAD.Resolution; }
    void SetADResolution(std::int32_t Value);
    double GetADCutOffFrequency() const { return FAD.CutOffFrequency; }
    void SetADCutOffFrequency(double Value);
    std::int32_t GetADExternalClockDiv() const { return FAD.ExternalClockDiv; }
    void SetADExternalClockDiv(std::int32_t Value);

    // The timer-driven cycles. Start continues the stream where it stood.
    void Start();
    void Stop();
    bool IsRunning() const;
    int GetCycleInterval() const;
    // Runs one cycle: builds and sends the next block set. Raises std::bad_alloc when the
    // blocks cannot be allocated (nothing is sent then, the stream stays where it was).
    void Step();
    // The position of the next block's first sample in the stream.
    std::uint64_t GetStreamPosition() const { return FStreamPosition; }
    // Back to sample 0, the filters unprimed.
    void ResetStream();

private:
    // Each returns whether the value changed; the bus writes through them without a second
    // property-updated event.
    bool ApplySampleRate(double Value);
    bool ApplyChannelCount(std::int32_t Value);
    bool ApplyBlockSize(std::int32_t Value);
    bool ApplyRunning(bool Value);
    void SettingsChanged();
    void RebuildChannelList();
    void RestartFilters();
    HRESULT OnProperty(TQXPropertyItem* Item, bool Get, Variant& Value);

    double FSampleRate = 1000.0;
    std::int32_t FBlockSize = 100;
    std::vector<TKSWaveform> FWaves;
    std::vector<std::uint32_t> FHandles;  // channel handle of each position
    std::uint64_t FStreamPosition = 0;
    TQXADExtendedSettings FAD;
    TADLowPass FLowPass;                         // designed when the cut-off or the rate changes
    std::vector<TADLowPassState> FFilterStates;  // one per channel
    QTimer* FTimer = nullptr;  // child of the source
};

// Registers TKSSimulatedSource as a data-source class; later calls do nothing. Raises
// EPanelRegistryError while the registries do not exist.
QXBASE_EXPORT void RegisterSimulatedSource();

}  // namespace qx
