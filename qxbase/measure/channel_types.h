#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "qxbase/framework/color.h"
#include "qxbase/framework/set.h"

namespace qx {

// Written where a value cannot be produced (standard deviation of one sample, a held value
// that never arrived).
inline constexpr double NoValueMarker = 1.7e30;

// One block of samples of one channel. The buffer comes from AllocBlockBuffer and is freed by
// whoever sends the block; an empty block is {nullptr, 0}.
struct TRVDataDouble {
    double* data = nullptr;
    std::int32_t count = 0;
};

// True when the block holds at least one sample.
inline bool HasSamples(const TRVDataDouble& Block)
{
    return Block.data != nullptr && Block.count > 0;
}

using TRVDataDoubleArray = std::vector<TRVDataDouble>;
// One reduced value per channel.
using TRVDataDoubleArraySingleValue = std::vector<double>;

enum TQXMSChannelFlag : std::uint8_t {
    msexSingleValue,
    msexArrayData,
    msexTimeData,
    msexFrequencyData,
    msexVirtualChannel,
    msexKORAXChannel,
    msexADChannel,
    msexFFTArrayData,
    msexDIGINData,
    msexControlData,
};

using TQXMSChannelFlags = Set<TQXMSChannelFlag, std::uint16_t>;

// The definition that travels with each block. A plain 72-byte record, copied whole when a
// processor derives the definition of a channel it creates. The comments give the value of
// the text form (CreateShortDef) that each field carries.
struct TRVShortdef {
    std::int32_t ChannelNo = 0;       // value1: position in the definition array being sent
    double XStart = 0;                // value2: horizontal axis at the first sample
    double XEnd = 0;                  // value3: (XEnd - XStart) / count is the sample spacing
    std::uint64_t FirstSample = 0;    // value4 (low half), value5 (high half): stream position
    std::uint32_t Flags = 0;          // value6: TQXMSChannelFlags bits
    TColor Color = 0;                 // value9
    double YMin = 0;                  // value7: value range of the channel
    double YMax = 0;                  // value8
    std::uint32_t Handle = 0;         // channel handle in its source; not part of the text form
    std::uint32_t Reserved[3] = {};   // zero; keeps the record at its fixed size

    friend bool operator==(const TRVShortdef&, const TRVShortdef&) = default;
};

static_assert(sizeof(TRVShortdef) == 72, "TRVShortdef has a fixed size of 72 bytes");
static_assert(std::is_trivially_copyable_v<TRVShortdef>, "TRVShortdef is copied as plain bytes");
static_assert(std::is_standard_layout_v<TRVShortdef>);
static_assert(offsetof(TRVShortdef, XStart) == 8 && offsetof(TRVShortdef, XEnd) == 16 &&
              offsetof(TRVShortdef, FirstSample) == 24 && offsetof(TRVShortdef, Flags) == 32 &&
              offsetof(TRVShortdef, Color) == 36 && offsetof(TRVShortdef, YMin) == 40 &&
              offsetof(TRVShortdef, YMax) == 48 && offsetof(TRVShortdef, Handle) == 56);

using TRVShortdefs = std::vector<TRVShortdef>;

}  // namespace qx
