#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "qxbase/framework/export.h"

// Value to pixel and back for one axis, as plain numbers so the layout, the decimation and the
// tests share one definition.
namespace qx {

// How an axis spaces its values: linearly, by log10, or by 20 log10 |v| (the axis limits of a
// dB axis are already in dB).
enum TQXAxisTransform : std::uint8_t { atLinear, atLogarithmic, atDB };

// What a log or dB axis makes of a value it cannot show (v <= 0, |v| == 0): a transformed value
// far below any axis, so such samples fall off the bottom instead of producing infinities.
inline constexpr double LogAxisFloor = -400.0;
inline constexpr double DBAxisFloor = 20.0 * LogAxisFloor;
// Pixels are clamped to this magnitude: huge, yet safe to round to int and hand to QPainter.
inline constexpr double PixelLimit = 1.0e9;

// The position of a value along the axis in the axis's own units (log10 v, dB, or v).
inline double TransformValue(TQXAxisTransform Transform, double Value)
{
    switch (Transform) {
    case atLogarithmic: return Value > 0.0 ? std::log10(Value) : LogAxisFloor;
    case atDB: {
        const double magnitude = std::fabs(Value);
        return magnitude > 0.0 ? 20.0 * std::log10(magnitude) : DBAxisFloor;
    }
    case atLinear: break;
    }
    return Value;
}

struct QXBASE_EXPORT TQXAxisMapping {
    TQXAxisTransform Transform = atLinear;
    // Pixel = Pixel0 + (TransformValue(v) - T0) * Scale. Scale is 0 for an axis whose limits
    // coincide: every value sits at Pixel0, the middle of the axis.
    double T0 = 0.0;
    double Pixel0 = 0.0;
    double Scale = 0.0;

    // NaN gives NaN; everything else a pixel within +-PixelLimit.
    double ToPixel(double Value) const
    {
        // A degenerate axis must not turn an infinite value into inf * 0.
        if (Scale == 0.0) return std::isnan(Value) ? Value : Pixel0;
        const double pixel = Pixel0 + (TransformValue(Transform, Value) - T0) * Scale;
        return std::clamp(pixel, -PixelLimit, PixelLimit);
    }
    // The pixel of a value in the axis's units: dB on a dB axis (where ticks and limits are),
    // the samples' unit otherwise.
    double AxisUnitToPixel(double Value) const
    {
        if (Transform != atDB) return ToPixel(Value);
        if (Scale == 0.0) return Pixel0;
        return std::clamp(Pixel0 + (Value - T0) * Scale, -PixelLimit, PixelLimit);
    }
    // The value at a pixel: v on a linear axis, 10^t on a log axis, the magnitude 10^(dB/20) on
    // a dB axis. On a degenerate axis, the value at its middle.
    double FromPixel(double Pixel) const;
};

// The limits a logarithmic axis draws with: ordered, positive and finite. A maximum that is not
// positive gives 1..10; a minimum that is not positive gives six decades below the maximum.
QXBASE_EXPORT void SaneLogLimits(double& Min, double& Max);

// The mapping of an axis from Min (at PixelMin) to Max (at PixelMax); Min > Max mirrors the
// axis. Limits that are not finite give 0..1 (1..10 on a log axis); limits of a dB axis are in dB.
QXBASE_EXPORT TQXAxisMapping MakeAxisMapping(TQXAxisTransform Transform, double Min, double Max,
                                             double PixelMin, double PixelMax);

}  // namespace qx
