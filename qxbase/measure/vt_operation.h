#pragma once

#include <QString>
#include <cstdint>

#include "qxbase/framework/export.h"

namespace qx {

// The operation that computes a math channel.
enum TQXVTOperation : std::uint8_t {
    qxvtNone,
    qxvtSum,
    qxvtSubtract,
    qxvtProduct,
    qxvtDivision,
    qxvtAverage,
    qxvtFirst,
    qxvtLast,
    qxvtMin,
    qxvtMax,
    qxvtRMS,
    qxvtDev,
    qxvtExtended,
    qxvtFFT,
    qxvtTwoPoint,
    qxvtPolyLin,
    qxvtDigitalSplit,
    qxvtInverse,
};

inline constexpr int TQXVTOperationCount = qxvtInverse + 1;

// The text shown for an operation (translated through the host's translator); an empty text
// for a value outside the enumeration, as a read beyond the end of a list gives nothing.
QXBASE_EXPORT QString GetOperationText(TQXVTOperation operation);

}  // namespace qx
