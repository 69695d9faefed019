#include "qxbase/sources/waveform.h"

#include <QStringList>
#include <cmath>
#include <numbers>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/number_text.h"

namespace qx {

namespace {

constexpr std::uint64_t SplitMixGamma = 0x9E3779B97F4A7C15ULL;
constexpr double CounterWrap = 65536.0;

const char* const KindNames[KSWaveformKindCount] = {"sine", "square", "triangle", "sawtooth", "noise", "counter"};

inline std::uint64_t SplitMixMix(std::uint64_t z) noexcept
{
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

}  // namespace

std::uint64_t SplitMix64At(std::uint64_t Seed, std::uint64_t K) noexcept
{
    return SplitMixMix(Seed + (K + 1) * SplitMixGamma);
}

void CheckWaveform(const TKSWaveform& Wave)
{
    if (static_cast<int>(Wave.Kind) >= KSWaveformKindCount)
        throw ERangeError(QStringLiteral("Unknown waveform kind %1").arg(static_cast<int>(Wave.Kind)));
    if (!std::isfinite(Wave.Amplitude) || !std::isfinite(Wave.Frequency) || !std::isfinite(Wave.Offset) ||
        !std::isfinite(Wave.Phase))
        throw ERangeError(QStringLiteral("Waveform values must be finite numbers"));
    if (std::fabs(Wave.Frequency) > KSMaxWaveformFrequency)
        throw ERangeError(QStringLiteral("Waveform frequency %1 Hz is out of range").arg(FloatToStr(Wave.Frequency)));
}

void FillWaveform(const TKSWaveform& Wave, double SampleRate, std::uint64_t FirstSample, std::uint64_t Seed,
                  double* Out, std::int32_t Count) noexcept
{
    const double a = Wave.Amplitude;
    const double o = Wave.Offset;
    const double step = Wave.Frequency / SampleRate;
    const double start = Wave.Phase / 360.0;
    const double k0 = static_cast<double>(FirstSample);
    // The position within the period of sample n.
    auto cycle = [=](std::int32_t n) {
        const double x = (k0 + n) * step + start;
        return x - std::floor(x);
    };
    constexpr double twoPi = 2.0 * std::numbers::pi;
    switch (Wave.Kind) {
    case kswSine:
        for (std::int32_t n = 0; n < Count; ++n) Out[n] = o + a * std::sin(twoPi * cycle(n));
        break;
    case kswSquare:
        for (std::int32_t n = 0; n < Count; ++n) Out[n] = cycle(n) < 0.5 ? o + a : o - a;
        break;
    case kswTriangle:
        for (std::int32_t n = 0; n < Count; ++n) {
            const double p = cycle(n);
            const double t = p < 0.25 ? 4.0 * p : (p < 0.75 ? 2.0 - 4.0 * p : 4.0 * p - 4.0);
            Out[n] = o + a * t;
        }
        break;
    case kswSawtooth:
        for (std::int32_t n = 0; n < Count; ++n) {
            const double p = cycle(n);
            Out[n] = o + a * (p < 0.5 ? 2.0 * p : 2.0 * p - 2.0);
        }
        break;
    case kswNoise: {
        constexpr double unit = 1.0 / 9007199254740992.0;  // 2^-53
        for (std::int32_t n = 0; n < Count; ++n) {
            const std::uint64_t z = SplitMix64At(Seed, FirstSample + static_cast<std::uint64_t>(n));
            Out[n] = o + a * (2.0 * static_cast<double>(z >> 11) * unit - 1.0);
        }
        break;
    }
    case kswCounter:
        for (std::int32_t n = 0; n < Count; ++n) {
            double periods = std::fmod(std::floor((k0 + n) * step + start), CounterWrap);
            if (periods < 0) periods += CounterWrap;
            Out[n] = o + a * periods;
        }
        break;
    default:
        for (std::int32_t n = 0; n < Count; ++n) Out[n] = o;
        break;
    }
}

void FillTimeBlock(double SampleRate, std::uint64_t FirstSample, double* Out, std::int32_t Count) noexcept
{
    const double k0 = static_cast<double>(FirstSample);
    for (std::int32_t n = 0; n < Count; ++n) Out[n] = (k0 + n) / SampleRate;
}

QString WaveformKindName(TKSWaveformKind Kind)
{
    if (static_cast<int>(Kind) >= KSWaveformKindCount)
        return {};
    return QLatin1String(KindNames[Kind]);
}

QString WaveformToText(const TKSWaveform& Wave)
{
    return WaveformKindName(Wave.Kind) + QLatin1Char(' ') + FloatToStr(Wave.Amplitude) + QLatin1Char(' ') +
           FloatToStr(Wave.Frequency) + QLatin1Char(' ') + FloatToStr(Wave.Offset) + QLatin1Char(' ') +
           FloatToStr(Wave.Phase);
}

TKSWaveform WaveformFromText(const QString& Text)
{
    const QStringList fields = Text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (fields.size() != 5)
        throw EConvertError(QStringLiteral("'%1' is not a waveform: kind, amplitude, frequency, offset, phase").arg(Text));
    TKSWaveform wave;
    int kind = 0;
    while (kind < KSWaveformKindCount && fields[0] != QLatin1String(KindNames[kind])) ++kind;
    if (kind == KSWaveformKindCount)
        throw EConvertError(QStringLiteral("'%1' is not a waveform kind").arg(fields[0]));
    wave.Kind = static_cast<TKSWaveformKind>(kind);
    wave.Amplitude = StrToFloat(fields[1]);
    wave.Frequency = StrToFloat(fields[2]);
    wave.Offset = StrToFloat(fields[3]);
    wave.Phase = StrToFloat(fields[4]);
    CheckWaveform(wave);
    return wave;
}

}  // namespace qx
