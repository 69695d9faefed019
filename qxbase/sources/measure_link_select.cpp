#include "qxbase/sources/measure_link_select.h"

#include <algorithm>
#include <cstddef>

#include "qxbase/framework/exception.h"
#include "qxbase/sources/measure_source.h"

namespace qx {

TQXMeasureLinkSelectEx::TQXMeasureLinkSelectEx(QObject* Owner) : TQXMeasureLinkEx(Owner), FChannels(QString()) {}

const TQXMSExChannelInformation* TQXMeasureLinkSelectEx::SourceChannel(int Index) const
{
    if (!GetSource() || Index < 0) return nullptr;
    return GetSource()->GetChannelList(Index);
}

int TQXMeasureLinkSelectEx::SourceChannelCount() const { return GetSource() ? GetSource()->GetChannelListCount() : 0; }

// The base class's name look-up walks the link's own channel list, which here is the
// selection; names are found again among all the source's channels.
int TQXMeasureLinkSelectEx::SourceChannelOfName(const QString& Name) const
{
    const int count = SourceChannelCount();
    for (int i = 0; i < count; ++i) {
        const TQXMSExChannelInformation* info = SourceChannel(i);
        if (info && info->Name == Name) return i;
    }
    return -1;
}

void TQXMeasureLinkSelectEx::ReadNumbers()
{
    FNumbers.clear();
    if (!FChannels.IsArray()) return;
    const int low = FChannels.ArrayLowBound();
    const int count = FChannels.ArrayCount();
    FNumbers.reserve(static_cast<std::size_t>(count));
    for (int k = 0; k < count; ++k) {
        int number = -1;
        try {
            number = FChannels.ArrayElement(low + k).ToInteger();
        } catch (const EVariantError&) {
        }
        FNumbers.push_back(number);
    }
}

void TQXMeasureLinkSelectEx::SetChannels(const Variant& Channels)
{
    FChannels = Channels;
    ReadNumbers();
    const auto n = std::min(FNumbers.size(), static_cast<std::size_t>(SourceChannelCount()));
    FChannelNames.assign(n, QString());
    for (std::size_t k = 0; k < n; ++k) {
        if (const TQXMSExChannelInformation* info = SourceChannel(FNumbers[k])) FChannelNames[k] = info->Name;
    }
    UpdateSelectMask();
}

void TQXMeasureLinkSelectEx::UpdateSelectMask()
{
    FSelectedCount = 0;
    if (!GetSource()) {
        FSelectMask.clear();
        FIndexMap.clear();
        return;
    }
    const int count = SourceChannelCount();
    FSelectMask.assign(static_cast<std::size_t>(count), false);
    FIndexMap.assign(static_cast<std::size_t>(count), 0);
    for (int number : FNumbers)
        if (number >= 0 && number < count) FSelectMask[static_cast<std::size_t>(number)] = true;
    for (int i = 0; i < count; ++i)
        if (FSelectMask[static_cast<std::size_t>(i)]) FIndexMap[static_cast<std::size_t>(FSelectedCount++)] = i;
}

bool TQXMeasureLinkSelectEx::IsSelected(int Index) const
{
    return Index >= 0 && static_cast<std::size_t>(Index) < FSelectMask.size() &&
           FSelectMask[static_cast<std::size_t>(Index)];
}

void TQXMeasureLinkSelectEx::UpdateSettingsEx()
{
    // Without a source there is nothing to find the channels in: they stay as stored until the
    // next source comes.
    if (GetSource()) {
        const int low = FChannels.IsArray() ? FChannels.ArrayLowBound() : 0;
        for (std::size_t k = 0; k < FChannelNames.size(); ++k) {
            if (FChannelNames[k].isEmpty()) continue;  // found by its number, which stays
            const int found = SourceChannelOfName(FChannelNames[k]);
            if (found == FNumbers[k]) continue;
            FNumbers[k] = found;
            try {
                FChannels.SetArrayElement(low + static_cast<int>(k), found);
            } catch (const EVariantError&) {
                // An element type that cannot hold the number (bytes and -1): the selection
                // still follows FNumbers.
            }
        }
    }
    UpdateSelectMask();
    TQXMeasureLinkEx::UpdateSettingsEx();
}

void TQXMeasureLinkSelectEx::SetQXMeasureSourceEx(TQXMeasureSourceEx* Source)
{
    TQXMeasureLinkEx::SetQXMeasureSourceEx(Source);
    const Variant channels = FChannels;
    SetChannels(channels);
}

const TQXMSExChannelInformation* TQXMeasureLinkSelectEx::GetChannelList(int Index) const
{
    if (Index < 0 || Index >= FSelectedCount) return nullptr;
    return SourceChannel(FIndexMap[static_cast<std::size_t>(Index)]);
}

int TQXMeasureLinkSelectEx::GetMSChannelIndex(int Index) const
{
    if (Index < 0 || Index >= FSelectedCount) return -1;
    return FIndexMap[static_cast<std::size_t>(Index)];
}

void TQXMeasureLinkSelectEx::NewData(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                                     const TRVDataDoubleArray& TimeChannel, double StartTime)
{
    if (!FActive || FSelectedCount <= 0) return;
    // Taken out of the members for the call, so that a cycle started from inside the handler
    // cannot resize the arrays the handler is reading.
    TRVShortdefs shortdefs = std::move(FShortdefs);
    TRVDataDoubleArray blocks = std::move(FBlocks);
    shortdefs.clear();
    blocks.clear();
    shortdefs.reserve(static_cast<std::size_t>(FSelectedCount));
    blocks.reserve(static_cast<std::size_t>(FSelectedCount));
    for (std::int32_t k = 0; k < FSelectedCount; ++k) {
        const auto i = static_cast<std::size_t>(FIndexMap[static_cast<std::size_t>(k)]);
        if (i >= Shortdefs.size() || i >= Data.size()) continue;
        shortdefs.push_back(Shortdefs[i]);
        blocks.push_back(Data[i]);  // the buffer stays the source's
    }
    if (!shortdefs.empty() && OnSelectedData && GetSource()) {
        TQXDestructionWatch::Frame frame(FWatch);
        OnSelectedData(this, shortdefs, blocks, TimeChannel, StartTime);
        if (frame.Gone()) return;
    }
    // Keep the capacity for the next cycle; no pointer into the source's buffers stays behind.
    shortdefs.clear();
    blocks.clear();
    FShortdefs = std::move(shortdefs);
    FBlocks = std::move(blocks);
}

}  // namespace qx
