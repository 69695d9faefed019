#pragma once

#include <QString>

#include "qxbase/framework/export.h"

namespace qx {

// The prefix of a power of ten: -18 "a", -15 "f", -12 "p", -9 "n", -6 "µ" (U+00B5), -3 "m",
// 0 "", 3 "k", 6 "M", 9 "G", 12 "T", 15 "P"; any other exponent gives "x".
QXBASE_EXPORT QString GetEngUnitString(int Exponent);

// The exponent a value is written with: the largest multiple of 3 in -18..15 whose power of
// ten does not exceed |Value|; 0 for 0 and for values that are not finite.
QXBASE_EXPORT int EngineeringExponent(double Value);

}  // namespace qx
