#include "qxbase/chart/chart_mapping.h"

#include <utility>

namespace qx {

double TQXAxisMapping::FromPixel(double Pixel) const
{
    const double t = Scale != 0.0 ? T0 + (Pixel - Pixel0) / Scale : T0;
    switch (Transform) {
    case atLogarithmic: return std::pow(10.0, t);
    case atDB: return std::pow(10.0, t / 20.0);
    case atLinear: break;
    }
    return t;
}

void SaneLogLimits(double& Min, double& Max)
{
    if (!std::isfinite(Min)) Min = 0.0;
    if (!std::isfinite(Max)) Max = 0.0;
    if (Min > Max) std::swap(Min, Max);
    if (Max <= 0.0) {
        Min = 1.0;
        Max = 10.0;
    } else if (Min <= 0.0) {
        Min = Max * 1e-6;
    }
}

TQXAxisMapping MakeAxisMapping(TQXAxisTransform Transform, double Min, double Max, double PixelMin,
                               double PixelMax)
{
    TQXAxisMapping mapping;
    mapping.Transform = Transform;
    double t0 = Min;
    double t1 = Max;
    if (Transform == atLogarithmic) {
        // Only limits that make sense ask for a mirrored axis.
        const bool mirrored = Min > Max && Max > 0.0 && std::isfinite(Min);
        double lo = Min, hi = Max;
        SaneLogLimits(lo, hi);
        t0 = std::log10(mirrored ? hi : lo);
        t1 = std::log10(mirrored ? lo : hi);
    } else if (!std::isfinite(t0) || !std::isfinite(t1)) {
        t0 = 0.0;
        t1 = 1.0;
    }
    if (!std::isfinite(PixelMin) || !std::isfinite(PixelMax)) PixelMin = PixelMax = 0.0;
    // Halves first, so that limits near +-DBL_MAX do not overflow the span.
    const double halfSpan = t1 / 2.0 - t0 / 2.0;
    mapping.T0 = t0;
    if (halfSpan == 0.0) {
        mapping.Pixel0 = (PixelMin + PixelMax) / 2.0;
        return mapping;
    }
    mapping.Pixel0 = PixelMin;
    mapping.Scale = (PixelMax - PixelMin) / 2.0 / halfSpan;
    return mapping;
}

}  // namespace qx
