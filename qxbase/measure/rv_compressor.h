#pragma once

#include <QString>
#include <cstdint>

#include "qxbase/framework/export.h"
#include "qxbase/measure/channel_types.h"

namespace qx {

// How a block is reduced to one value.
enum TKSRVLinkSingleCompressionMethod : std::uint8_t {
    rvcompFirst,
    rvcompLast,
    rvcompAverage,
    rvcompMin,
    rvcompMax,
    rvcompRMS,
    rvcompSDev,
};

inline constexpr int TKSRVLinkSingleCompressionMethodCount = rvcompSDev + 1;

// The text shown for a method; an empty text for a value outside the enumeration.
QXBASE_EXPORT QString GetCompressionMethodText(TKSRVLinkSingleCompressionMethod Method);

// Reduces a block of samples to one value. Every Compress operation returns either the empty
// block (no buffer, count 0) or a fresh one-value block that the caller frees with
// FreeDataDouble. The empty block comes back for a block without samples (count <= 0 or no
// buffer) and when the arithmetic fails: a non-finite result from finite samples, factor and
// offset (an overflow, or a variance that is not a number). Non-finite samples are not an
// error; they pass into the result as the arithmetic carries them.
// Sums are kept in long double (80-bit on x86-64 Linux). Stateless; never raises except
// std::bad_alloc.
class QXBASE_EXPORT TQXRVCompressorEx {
public:
    // first sample x factor + offset
    static TRVDataDouble CompressFirst(const TRVDataDouble& Block, double Factor, double Offset);
    // last sample x factor + offset
    static TRVDataDouble CompressLast(const TRVDataDouble& Block, double Factor, double Offset);
    // (sum / count) x factor + offset
    static TRVDataDouble CompressAverage(const TRVDataDouble& Block, double Factor, double Offset);
    // Min and Max start from the first sample and move only on a strictly smaller (larger)
    // sample, so a NaN first sample stays and later NaNs are passed over.
    static TRVDataDouble CompressMin(const TRVDataDouble& Block, double Factor, double Offset);
    static TRVDataDouble CompressMax(const TRVDataDouble& Block, double Factor, double Offset);
    // sqrt(sum of squares / count) x factor + offset
    static TRVDataDouble CompressRMS(const TRVDataDouble& Block, double Factor, double Offset);
    // Sample standard deviation sqrt((sum of squares - sum^2 / n) / (n - 1)); factor and offset
    // are ignored. One sample gives NoValueMarker. A variance that rounding pushes below zero
    // (a constant block) counts as 0.
    static TRVDataDouble CompressDev(const TRVDataDouble& Block, double Factor, double Offset);

    // The operation of a method as a block; a method outside the enumeration gives the empty
    // block.
    static TRVDataDouble Compress(TKSRVLinkSingleCompressionMethod Method, const TRVDataDouble& Block,
                                  double Factor, double Offset);
    // The same reduction without a buffer: true with the value, false where Compress gives the
    // empty block.
    static bool CompressValue(TKSRVLinkSingleCompressionMethod Method, const TRVDataDouble& Block,
                              double Factor, double Offset, double& Value);
};

}  // namespace qx
