#include "qxbase/measure/trigger_detector.h"

#include <cmath>

namespace qx {

namespace {

// One loop to find the arming sample, one to find the trigger sample.
template <typename Arms, typename Fires>
std::int32_t ScanCrossing(const double* x, std::int32_t i, std::int32_t n, bool& armed, Arms arms,
                          Fires fires) noexcept
{
    if (!armed) {
        while (i < n && !arms(x[i])) ++i;
        if (i >= n) return n;
        armed = true;
        ++i;
    }
    while (i < n && !fires(x[i])) ++i;
    if (i >= n) return n;
    armed = false;
    return i;
}

}  // namespace

void TRVTriggerDetector::Setup(TRVTriggerType Type, double Level, double LowLimit,
                               double HighLimit) noexcept
{
    if (Type != FType) FArmed = false;
    FType = Type;
    FLevel = Level;
    FLowLimit = LowLimit;
    FHighLimit = HighLimit;
}

std::int32_t TRVTriggerDetector::ScanForTrigger(const double* Samples, std::int32_t From,
                                      std::int32_t Count) noexcept
{
    if (!Samples || From >= Count) return Count;
    if (From < 0) From = 0;
    switch (FType) {
    case trtPos:
    case trtNeg:
    case trtTime:
        return ScanLevel(Samples, From, Count);
    case trtPosSlope:
    case trtRangeSlope:
    case trtNegSlope:
        return ScanSlope(Samples, From, Count);
    case trtOff:
        break;
    }
    return Count;
}

std::int32_t TRVTriggerDetector::ScanLevel(const double* x, std::int32_t i, std::int32_t n) noexcept
{
    const double level = FLevel;
    switch (FType) {
    case trtPos:
        return ScanCrossing(x, i, n, FArmed, [level](double v) { return v <= level; },
                            [level](double v) { return v > level; });
    case trtNeg:
        return ScanCrossing(x, i, n, FArmed, [level](double v) { return v >= level; },
                            [level](double v) { return v < level; });
    default:
        return ScanCrossing(x, i, n, FArmed, [level](double v) { return v < level; },
                            [level](double v) { return v >= level; });
    }
}

std::int32_t TRVTriggerDetector::ScanSlope(const double* x, std::int32_t i, std::int32_t n) noexcept
{
    if (!FArmed) {
        FPrevious = x[i++];
        FArmed = true;
    }
    const double low = FLowLimit;
    const double high = FHighLimit;
    double previous = FPrevious;
    std::int32_t found = n;
    switch (FType) {
    case trtPosSlope:
        for (; i < n; ++i) {
            if (x[i] - previous > low) { found = i; break; }
            previous = x[i];
        }
        break;
    case trtNegSlope:
        for (; i < n; ++i) {
            if (previous - x[i] > low) { found = i; break; }
            previous = x[i];
        }
        break;
    default:
        for (; i < n; ++i) {
            const double step = std::fabs(x[i] - previous);
            if (step > low && step < high) { found = i; break; }
            previous = x[i];
        }
        break;
    }
    if (found < n) {
        FArmed = false;
        return found;
    }
    FPrevious = previous;
    return n;
}

}  // namespace qx
