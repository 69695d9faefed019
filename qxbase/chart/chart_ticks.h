#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

#include "qxbase/framework/export.h"

// Where an axis puts its ticks and what it writes at them.
namespace qx {

enum TQXTickKind : std::uint8_t { tkLinear, tkLogarithmic, tkDateTime };

// The smallest step of 1, 2 or 5 times a power of ten that is not below Raw; 0 when Raw is not
// a positive finite number.
QXBASE_EXPORT double RoundTickStep(double Raw);

// Ticks in ascending order within the limits (either order), at least MinSpacing pixels apart
// over an axis PixelLength pixels long:
// - linear: multiples of a round step (RoundTickStep);
// - logarithmic: decades, with 2 and 5 between them while a decade is wide enough, every n-th
//   decade when decades are narrow, and linear ticks when the range holds no decade; limits are
//   repaired as the log mapping does (SaneLogLimits);
// - date-time (seconds since 1970 UTC): multiples of round seconds, minutes, hours or days.
// Equal limits, or a range too narrow for the doubles around it, give one tick at the middle;
// limits that are not finite give no ticks.
QXBASE_EXPORT void ComputeTicks(TQXTickKind Kind, double Min, double Max, double PixelLength,
                                double MinSpacing, std::vector<double>& Ticks);

// Tick label texts, one per tick:
// - linear: one engineering prefix for the whole axis, chosen from the largest |tick|, and the
//   decimals the tick step needs: "2.5 m", "-500 µ", "0";
// - logarithmic: each tick with its own prefix: "1", "10", "100", "1 k", "20 µ";
// - date-time: the tick as a UTC date and time written with TimeFormat (QDateTime format).
QXBASE_EXPORT void FormatTickLabels(TQXTickKind Kind, const std::vector<double>& Ticks,
                                    const QString& TimeFormat, QStringList& Labels);

}  // namespace qx
