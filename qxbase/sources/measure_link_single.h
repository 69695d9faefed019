#pragma once

#include <QString>
#include <functional>

#include "qxbase/framework/export.h"
#include "qxbase/framework/variant.h"
#include "qxbase/measure/rv_compressor.h"
#include "qxbase/sources/measure_link.h"

namespace qx {

// Receives one reduced value per cycle: the link, the cycle's definitions, its start time, the
// time of the value (from the time channel) and the value.
using TQXNotifySingleValue = std::function<void(TQXMeasureLinkEx* Link, const TRVShortdefs& Shortdefs,
                                                double StartTime, double ValueTime, double Value)>;

// A link that follows one channel of its source and reduces each of its blocks to one value.
// The channel is remembered by name as well as by position, so it is found again after the
// source's channel list changed. It answers to its own Active switch; the base class's
// Enabled switch and OnNewData handler play no part.
class QXBASE_EXPORT TQXMeasureLinkSingleEx : public TQXMeasureLinkEx {
public:
    explicit TQXMeasureLinkSingleEx(QObject* Owner = nullptr);

    int GetChannel() const { return FChannelIndex; }
    // Stores the position. For a position of 0 or more it also stores the channel's Name, or
    // clears the stored name when the source has no such channel. A negative position keeps the
    // stored name, so the next settings update finds that channel again.
    void SetChannel(int Index);
    const QString& GetChannelName() const { return FChannelName; }

    TKSRVLinkSingleCompressionMethod GetCompressionMethod() const { return FCompressionMethod; }
    // Any value is stored; one outside the enumeration makes each cycle deliver NoValueMarker
    // at time 0.
    void SetCompressionMethod(TKSRVLinkSingleCompressionMethod Value) { FCompressionMethod = Value; }
    // The seven method texts as a variant array with bounds 0 to 6, in method order.
    void GetCompressionList(Variant& List) const { List = FCompressionList; }
    bool GetActive() const { return FActive; }
    void SetActive(bool Value) { FActive = Value; }

    // Finds the followed channel again by its stored name (else keeps its position), then tells
    // the owner as the base class does. A name that is gone keeps the old position.
    void UpdateSettingsEx() override;
    // Reduces the followed channel's block and hands the value to OnNewValue. Nothing happens
    // while inactive, without a source, or when the channel is not in the block set. The value
    // time is 0 when the time channel does not reach the position it is read from.
    void NewData(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data, const TRVDataDoubleArray& TimeChannel,
                 double StartTime) override;

    TQXNotifySingleValue OnNewValue;

private:
    int FChannelIndex = -1;
    QString FChannelName;
    TKSRVLinkSingleCompressionMethod FCompressionMethod = rvcompFirst;
    TQXRVCompressorEx FCompressor;
    Variant FCompressionList;
    bool FActive = true;
};

}  // namespace qx
