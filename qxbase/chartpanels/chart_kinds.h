#pragma once

#include <cstdint>
#include <vector>

#include "qxbase/framework/export.h"
#include "qxbase/measure/channel_types.h"

namespace qx {

// What a channel's samples are along x; one chart shows one kind only.
enum TQXChannelKind : std::uint8_t { ckTime, ckFrequency, ckSingleValue };

// Single values where the flags say so, frequency data for spectra (msexFrequencyData,
// msexFFTArrayData), time data for everything else.
QXBASE_EXPORT TQXChannelKind ChannelKind(TQXMSChannelFlags Flags);
// Whether two of the kinds differ.
QXBASE_EXPORT bool MixedKinds(const std::vector<TQXChannelKind>& Kinds);

}  // namespace qx
