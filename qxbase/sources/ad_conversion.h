#pragma once

#include <cstdint>

#include "qxbase/framework/export.h"
#include "qxbase/framework/set.h"

namespace qx {

// The settings of an A/D converter's extended property page, numbered by the bit each stands for
// in the page's changed-set.
enum TADExtendedSetting : std::uint8_t {
    adsBufferCount = 2,
    adsClockSource = 6,
    adsTriggeredScanMode = 8,
    adsExternalClockDiv = 9,
    adsCutOffFilter = 10,
    adsReTriggerMode = 11,
    adsResolution = 13,
    adsEncoding = 14,
    adsDMAUsage = 15,
    adsTriggerMode = 19,
    adsReTriggerFrequency = 20,
    adsMultiscanCount = 21,
};

// The settings a user touched on the page.
using TADChangedSet = Set<TADExtendedSetting>;

inline constexpr TADChangedSet ADExtendedSettingsAll{
    adsBufferCount,  adsClockSource, adsTriggeredScanMode, adsExternalClockDiv, adsCutOffFilter,
    adsReTriggerMode, adsResolution, adsEncoding,          adsDMAUsage,         adsTriggerMode,
    adsReTriggerFrequency, adsMultiscanCount};

// What a simulated converter takes from the page. The defaults change nothing: an ideal
// converter without a filter at the undivided rate.
struct TQXADExtendedSettings {
    std::int32_t Resolution = 0;         // bits, 1..ADMaxResolution; 0: no quantization
    double CutOffFrequency = 0;          // Hz; 0: no filter
    std::int32_t ExternalClockDiv = 1;   // the sample rate is divided by it, 1..ADMaxClockDiv

    friend bool operator==(const TQXADExtendedSettings&, const TQXADExtendedSettings&) = default;
};

inline constexpr std::int32_t ADMaxResolution = 32;
inline constexpr std::int32_t ADMaxClockDiv = 65535;  // a 16-bit divider register
inline constexpr double ADMaxCutOffFrequency = 1e9;

// The settings brought into range: resolution 0..ADMaxResolution, divider 1..ADMaxClockDiv,
// cut-off 0 (off) for a negative value, else at most ADMaxCutOffFrequency; a cut-off that is
// not a number is taken as `Previous`.
QXBASE_EXPORT TQXADExtendedSettings ClampADExtendedSettings(TQXADExtendedSettings Settings, double Previous = 0);

// A second-order Butterworth low-pass (bilinear transform with the cut-off pre-warped), run as a
// transposed direct form II biquad. Not active (samples pass untouched) for a cut-off of 0 or
// at or above half the sample rate, where the converter's band ends anyway.
struct TADLowPass {
    double B0 = 1, B1 = 0, B2 = 0, A1 = 0, A2 = 0;
    bool Active = false;
};
QXBASE_EXPORT TADLowPass DesignADLowPass(double CutOff, double SampleRate) noexcept;

// The state a channel's filter keeps from block to block. An unprimed state starts as if the
// block's first sample had been applied forever, so a stream does not begin with a step from 0.
struct TADLowPassState {
    double S1 = 0, S2 = 0;
    bool Primed = false;
};
QXBASE_EXPORT void ADLowPassBlock(const TADLowPass& Filter, TADLowPassState& State, double* Data,
                                  std::int32_t Count) noexcept;

// An ideal converter of `Bits` bits over Low..High: 2^Bits codes Step = (High - Low) / 2^Bits
// apart from Low up; a sample becomes the nearest code (ties to even), clipped to the codes.
// Not active for 0 bits or an empty or non-finite range.
struct TADQuantizer {
    double Low = 0, Step = 0, InvStep = 0, MaxCode = 0;
    bool Active = false;
};
QXBASE_EXPORT TADQuantizer MakeADQuantizer(std::int32_t Bits, double Low, double High) noexcept;
QXBASE_EXPORT void ADQuantizeBlock(const TADQuantizer& Quantizer, double* Data, std::int32_t Count) noexcept;

}  // namespace qx
