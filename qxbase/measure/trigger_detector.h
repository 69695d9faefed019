#pragma once

#include <cstdint>

#include "qxbase/framework/export.h"

namespace qx {

enum TRVTriggerType : std::uint8_t {
    trtPos,         // rises through the level
    trtNeg,         // falls through the level
    trtPosSlope,    // rises by more than the low limit from one sample to the next
    trtRangeSlope,  // changes by more than the low and less than the high limit
    trtNegSlope,    // falls by more than the low limit from one sample to the next
    trtOff,         // never triggers
    trtTime,        // the time channel reaches the level
};

// Finds trigger samples in a stream that arrives block by block; the armed state carries
// over from one block to the next, so a crossing that spans two blocks is found.
//
//   trtPos    arms on a sample <= level, then triggers on the first sample > level
//   trtNeg    arms on a sample >= level, then triggers on the first sample < level
//   trtTime   arms on a time < level, then triggers on the first time >= level
//             (scan the time block of the trigger channel)
//   slopes    the first scanned sample arms (it becomes the predecessor); each later sample
//             x[k], with step d = x[k] - x[k-1], triggers when
//               trtPosSlope    d > low
//               trtNegSlope    -d > low
//               trtRangeSlope  low < |d| < high  (never when high <= low)
//   trtOff    never
//
// A trigger disarms, so the next trigger needs arming again. NaN samples neither arm nor
// trigger.
class QXBASE_EXPORT TRVTriggerDetector {
public:
    // Changes the rule; a new type disarms, a new level or limit keeps the armed state.
    void Setup(TRVTriggerType Type, double Level, double LowLimit, double HighLimit) noexcept;
    // The index of the trigger sample in [From, Count), or Count when there is none.
    std::int32_t ScanForTrigger(const double* Samples, std::int32_t From,
                                std::int32_t Count) noexcept;
    void Disarm() noexcept { FArmed = false; }
    bool GetArmed() const noexcept { return FArmed; }

private:
    std::int32_t ScanLevel(const double* x, std::int32_t i, std::int32_t n) noexcept;
    std::int32_t ScanSlope(const double* x, std::int32_t i, std::int32_t n) noexcept;

    TRVTriggerType FType = trtOff;
    double FLevel = 0;
    double FLowLimit = 0;
    double FHighLimit = 0;
    double FPrevious = 0;
    bool FArmed = false;
};

}  // namespace qx
