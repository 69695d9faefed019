#include "qxbase/sources/measure_link_single.h"

#include <cstddef>

namespace qx {
namespace {

// The sample at Position of the block, or 0 where the block does not reach it.
double SampleOrZero(const TRVDataDouble& Block, std::int64_t Position)
{
    if (!Block.data || Position < 0 || Position >= Block.count) return 0;
    return Block.data[Position];
}

}  // namespace

TQXMeasureLinkSingleEx::TQXMeasureLinkSingleEx(QObject* Owner)
    : TQXMeasureLinkEx(Owner), FCompressionList(Variant::CreateArray(0, TKSRVLinkSingleCompressionMethodCount - 1, varVariant))
{
    for (int m = 0; m < TKSRVLinkSingleCompressionMethodCount; ++m)
        FCompressionList.SetArrayElement(m, GetCompressionMethodText(static_cast<TKSRVLinkSingleCompressionMethod>(m)));
}

void TQXMeasureLinkSingleEx::SetChannel(int Index)
{
    FChannelIndex = Index;
    if (Index < 0) return;
    const TQXMSExChannelInformation* info = GetChannelList(Index);
    if (info)
        FChannelName = info->Name;
    else
        FChannelName.clear();
}

void TQXMeasureLinkSingleEx::UpdateSettingsEx()
{
    const int index = FChannelName.isEmpty() ? FChannelIndex : OrigNameToChannel(FChannelName);
    if (index != -1) SetChannel(index);
    TQXMeasureLinkEx::UpdateSettingsEx();
}

void TQXMeasureLinkSingleEx::NewData(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                                     const TRVDataDoubleArray& TimeChannel, double StartTime)
{
    if (!FActive) return;
    constexpr double factor = 1;
    constexpr double offset = 0;
    if (Shortdefs.empty() || Data.empty() || FChannelIndex < 0) return;
    const auto channel = static_cast<std::size_t>(FChannelIndex);
    if (channel >= Shortdefs.size() || channel >= Data.size()) return;

    double value = NoValueMarker;
    double time = 0;
    bool produced = true;
    if (FCompressionMethod < TKSRVLinkSingleCompressionMethodCount) {
        produced = FCompressor.CompressValue(FCompressionMethod, Data[channel], factor, offset, value);
        if (!TimeChannel.empty()) {
            // The last value's time takes its position from the followed channel's time block
            // but reads it from the first one: the two match whenever all channels share one
            // time base, which is what the consumers of this link rely on.
            const std::int64_t position =
                FCompressionMethod == rvcompLast
                    ? (channel < TimeChannel.size() ? std::int64_t{TimeChannel[channel].count} - 1 : -1)
                    : 0;
            time = SampleOrZero(TimeChannel[0], position);
        }
    }
    if (produced && OnNewValue && GetSource()) OnNewValue(this, Shortdefs, StartTime, time, value);
}

}  // namespace qx
