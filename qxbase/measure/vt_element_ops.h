#pragma once

#include <cstdint>

#include "qxbase/framework/export.h"
#include "qxbase/measure/channel_information.h"
#include "qxbase/measure/channel_types.h"

// The sample-by-sample operations of math channels. Each returns a fresh block that the caller
// frees (FreeDataDouble), or the empty block; none keeps state or raises except std::bad_alloc.
// All but DoDuplicate write NoValueMarker at a sample whose result is not finite (an overflow,
// x / 0, 0 / 0) and at a sample where an operand is already NoValueMarker, an infinity or NaN:
// no value in gives no value out.
namespace qx {

// First operand duplicated (qxvtNone), every sample unchanged.
QXBASE_EXPORT TRVDataDouble DoDuplicate(const TRVDataDouble& A);
// The two-operand operations give the empty block unless both blocks hold samples and the same
// count.
QXBASE_EXPORT TRVDataDouble DoSum(const TRVDataDouble& A, const TRVDataDouble& B);
QXBASE_EXPORT TRVDataDouble DoSubtract(const TRVDataDouble& A, const TRVDataDouble& B);
QXBASE_EXPORT TRVDataDouble DoProduct(const TRVDataDouble& A, const TRVDataDouble& B);
// NoValueMarker at the samples where B is 0 (among the others above).
QXBASE_EXPORT TRVDataDouble DoDivision(const TRVDataDouble& A, const TRVDataDouble& B);
// -1 x each sample.
QXBASE_EXPORT TRVDataDouble DoInverse(const TRVDataDouble& A);
// Scaling through (x1, y1) and (x2, y2), the first four scaling values; factor 1 when x1 = x2.
QXBASE_EXPORT TRVDataDouble DoTwoPoint(const TRVDataDouble& A, const TQXScalingValues& Scaling);
// The polynomial of the seven coefficients.
QXBASE_EXPORT TRVDataDouble DoPolyLin(const TRVDataDouble& A, const TQXCoefficients& Coefficients);
// One bit of each sample's integer word, as 0 or 1.
QXBASE_EXPORT TRVDataDouble DoSplitChannels(const TRVDataDouble& A, std::int32_t Bit);

}  // namespace qx
