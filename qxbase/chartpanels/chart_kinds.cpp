#include "qxbase/chartpanels/chart_kinds.h"

#include <algorithm>

namespace qx {

TQXChannelKind ChannelKind(TQXMSChannelFlags Flags)
{
    if (Flags.Contains(msexSingleValue))
        return ckSingleValue;
    if (Flags.Contains(msexFrequencyData) || Flags.Contains(msexFFTArrayData))
        return ckFrequency;
    return ckTime;
}

bool MixedKinds(const std::vector<TQXChannelKind>& Kinds)
{
    return std::adjacent_find(Kinds.begin(), Kinds.end(), std::not_equal_to<>()) != Kinds.end();
}

}  // namespace qx
