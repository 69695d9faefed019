#pragma once

#include <QString>
#include <cstdint>
#include <vector>

#include "qxbase/control/destruction_watch.h"
#include "qxbase/framework/export.h"
#include "qxbase/framework/variant.h"
#include "qxbase/sources/measure_link.h"

namespace qx {

// A link that passes on a chosen subset of its source's channels, in source order. The sample
// buffers are shared with the source, not copied, so the handler must not keep them. Channels
// are remembered by name as well as by number and found again after the source's channel list
// changed. It answers to its own Active switch; the base class's Enabled switch and OnNewData
// handler play no part. The channel list it shows (GetChannelList, GetChannelListCount) is the
// selection.
class QXBASE_EXPORT TQXMeasureLinkSelectEx : public TQXMeasureLinkEx {
public:
    explicit TQXMeasureLinkSelectEx(QObject* Owner = nullptr);

    // Selects the channels whose numbers the array holds (any low bound, any element type;
    // duplicates and order do not matter). An element that is not a number, or names no channel
    // of the source, is kept and selects nothing. A value that is not an array selects nothing.
    void SetChannels(const Variant& Channels);
    // The channels array as last given, with the numbers that settings updates found again.
    const Variant& GetChannels() const { return FChannels; }
    // The Name of each stored channel that existed when it was stored or found again (up to
    // the source's channel count); empty for the others.
    const std::vector<QString>& GetChannelNames() const { return FChannelNames; }
    // Rebuilds the selection from the stored numbers and the source's current channel count.
    void UpdateSelectMask();

    bool GetActive() const { return FActive; }
    void SetActive(bool Value) { FActive = Value; }
    // Whether source channel i is selected; false outside the source's channels.
    bool IsSelected(int Index) const;

    // Finds every stored channel again (by name where one is stored, else by number), rebuilds
    // the selection and then tells the owner as the base class does. A stored name that is gone
    // selects nothing until a channel of that name comes back.
    void UpdateSettingsEx() override;
    // Attaches as the base class does, then stores the channels anew for the new source.
    void SetQXMeasureSourceEx(TQXMeasureSourceEx* Source) override;
    // The source's record of the i-th selected channel; null without a source or selection and
    // for i outside the selection.
    const TQXMSExChannelInformation* GetChannelList(int Index) const override;
    int GetChannelListCount() const override { return FSelectedCount; }
    // The source position of the i-th selected channel; -1 for i outside the selection.
    int GetMSChannelIndex(int Index) const;

    // Hands the selected channels' definitions and blocks to OnSelectedData, with the time
    // channel unchanged. No call while inactive, without a source or with nothing selected; a
    // selected channel that the block set does not reach is left out of that cycle.
    void NewData(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data, const TRVDataDoubleArray& TimeChannel,
                 double StartTime) override;

    TQXNotifyDataEx OnSelectedData;

private:
    // The stored numbers, converted once (-1 for elements that are not numbers).
    void ReadNumbers();
    // Position of the source channel called exactly Name; -1 when none or without a source.
    int SourceChannelOfName(const QString& Name) const;
    const TQXMSExChannelInformation* SourceChannel(int Index) const;
    int SourceChannelCount() const;

    Variant FChannels;
    std::vector<int> FNumbers;
    std::vector<QString> FChannelNames;
    std::vector<bool> FSelectMask;
    std::vector<std::int32_t> FIndexMap;
    std::int32_t FSelectedCount = 0;
    bool FActive = true;
    // Reused each cycle; a nested cycle from inside the handler builds its own.
    TRVShortdefs FShortdefs;
    TRVDataDoubleArray FBlocks;
    TQXDestructionWatch FWatch;
};

}  // namespace qx
