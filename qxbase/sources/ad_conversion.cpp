#include "qxbase/sources/ad_conversion.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace qx {

TQXADExtendedSettings ClampADExtendedSettings(TQXADExtendedSettings Settings, double Previous)
{
    Settings.Resolution = std::clamp(Settings.Resolution, 0, ADMaxResolution);
    Settings.ExternalClockDiv = std::clamp(Settings.ExternalClockDiv, 1, ADMaxClockDiv);
    double& cutOff = Settings.CutOffFrequency;
    if (std::isnan(cutOff)) cutOff = Previous;
    cutOff = std::clamp(cutOff, 0.0, ADMaxCutOffFrequency);
    return Settings;
}

TADLowPass DesignADLowPass(double CutOff, double SampleRate) noexcept
{
    TADLowPass filter;
    if (!(CutOff > 0) || !(SampleRate > 0) || !(CutOff < SampleRate / 2)) return filter;
    const double k = std::tan(std::numbers::pi * CutOff / SampleRate);
    const double k2 = k * k;
    const double norm = 1 / (1 + std::numbers::sqrt2 * k + k2);
    filter.B0 = k2 * norm;
    filter.B1 = 2 * filter.B0;
    filter.B2 = filter.B0;
    filter.A1 = 2 * (k2 - 1) * norm;
    filter.A2 = (1 - std::numbers::sqrt2 * k + k2) * norm;
    filter.Active = true;
    return filter;
}

void ADLowPassBlock(const TADLowPass& Filter, TADLowPassState& State, double* Data, std::int32_t Count) noexcept
{
    if (!Filter.Active || Count <= 0) return;
    const double b0 = Filter.B0, b1 = Filter.B1, b2 = Filter.B2, a1 = Filter.A1, a2 = Filter.A2;
    if (!State.Primed) {
        // The steady state of a constant input x0 with output x0 (the DC gain is 1).
        const double x0 = Data[0];
        State.S2 = (b2 - a2) * x0;
        State.S1 = (b1 - a1) * x0 + State.S2;
        State.Primed = true;
    }
    double s1 = State.S1, s2 = State.S2;
    for (std::int32_t n = 0; n < Count; ++n) {
        const double x = Data[n];
        const double y = b0 * x + s1;
        s1 = b1 * x - a1 * y + s2;
        s2 = b2 * x - a2 * y;
        Data[n] = y;
    }
    State.S1 = s1;
    State.S2 = s2;
}

TADQuantizer MakeADQuantizer(std::int32_t Bits, double Low, double High) noexcept
{
    TADQuantizer quantizer;
    const double range = High - Low;
    if (Bits <= 0 || !std::isfinite(range) || !(range > 0)) return quantizer;
    const double codes = std::ldexp(1.0, std::min(Bits, ADMaxResolution));
    quantizer.Low = Low;
    quantizer.Step = range / codes;
    quantizer.InvStep = codes / range;
    quantizer.MaxCode = codes - 1;
    quantizer.Active = true;
    return quantizer;
}

void ADQuantizeBlock(const TADQuantizer& Quantizer, double* Data, std::int32_t Count) noexcept
{
    if (!Quantizer.Active) return;
    // Adding and taking away 1.5 * 2^52 rounds to the nearest integer (ties to even) for values
    // below 2^51 without a library call; the codes are clipped first, so they stay below 2^32.
    constexpr double RoundMagic = 6755399441055744.0;
    const double low = Quantizer.Low, step = Quantizer.Step, inv = Quantizer.InvStep, top = Quantizer.MaxCode;
    for (std::int32_t n = 0; n < Count; ++n) {
        const double clipped = std::min(std::max((Data[n] - low) * inv, 0.0), top);
        const double code = (clipped + RoundMagic) - RoundMagic;
        Data[n] = low + code * step;
    }
}

}  // namespace qx
