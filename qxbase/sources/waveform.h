#pragma once

#include <QString>
#include <cstdint>

#include "qxbase/framework/export.h"

namespace qx {

// The signal shapes of the simulated source. Every shape is a function of the sample position k
// in the stream, so blocks join without a seam whatever their size.
enum TKSWaveformKind : std::uint8_t {
    kswSine,      // Offset + Amplitude * sin(2 pi p)
    kswSquare,    // Offset + Amplitude for p < 0.5, Offset - Amplitude otherwise
    kswTriangle,  // in phase with the sine: 0 at p = 0, +Amplitude at 0.25, -Amplitude at 0.75
    kswSawtooth,  // 0 at p = 0 rising to +Amplitude just below p = 0.5, then from -Amplitude
    kswNoise,     // Offset + Amplitude * u, u in [-1, 1) from SplitMix64 seeded with the channel
    kswCounter,   // Offset + Amplitude * (whole periods passed mod 65536): a 16-bit counter
};
inline constexpr int KSWaveformKindCount = 6;

// The position within the period, p = frac(Frequency * k / SampleRate + Phase / 360), is what
// the periodic shapes are drawn from. Phase is in degrees.
struct TKSWaveform {
    TKSWaveformKind Kind = kswSine;
    double Amplitude = 1.0;
    double Frequency = 1.0;  // Hz
    double Offset = 0.0;
    double Phase = 0.0;      // degrees

    friend bool operator==(const TKSWaveform&, const TKSWaveform&) = default;
};

// Largest |Frequency| a waveform takes.
inline constexpr double KSMaxWaveformFrequency = 1e9;

// Raises ERangeError when the kind is unknown, a number is not finite or |Frequency| exceeds
// KSMaxWaveformFrequency.
QXBASE_EXPORT void CheckWaveform(const TKSWaveform& Wave);

// Writes samples k = FirstSample .. FirstSample + Count - 1 of the waveform at SampleRate (> 0)
// into Out. Seed picks the noise sequence (the channel's position in the simulated source).
QXBASE_EXPORT void FillWaveform(const TKSWaveform& Wave, double SampleRate, std::uint64_t FirstSample,
                                std::uint64_t Seed, double* Out, std::int32_t Count) noexcept;
// Out[n] = (FirstSample + n) / SampleRate: seconds from the stream start.
QXBASE_EXPORT void FillTimeBlock(double SampleRate, std::uint64_t FirstSample, double* Out,
                                 std::int32_t Count) noexcept;
// The k-th output (k from 0) of the SplitMix64 generator started with Seed.
QXBASE_EXPORT std::uint64_t SplitMix64At(std::uint64_t Seed, std::uint64_t K) noexcept;

// Stored form of a waveform: "<kind> <amplitude> <frequency> <offset> <phase>", kinds "sine",
// "square", "triangle", "sawtooth", "noise", "counter", numbers with "." whatever the locale.
QXBASE_EXPORT QString WaveformToText(const TKSWaveform& Wave);
// Reads the stored form (blanks between fields may repeat). Raises EConvertError for a wrong
// field count, an unknown kind or a number that does not convert, and ERangeError for values
// CheckWaveform refuses.
QXBASE_EXPORT TKSWaveform WaveformFromText(const QString& Text);
QXBASE_EXPORT QString WaveformKindName(TKSWaveformKind Kind);

}  // namespace qx
