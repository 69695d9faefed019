#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "qxbase/control/destruction_watch.h"
#include "qxbase/framework/export.h"
#include "qxbase/measure/channel_information.h"
#include "qxbase/measure/channel_types.h"
#include "qxbase/panels/source_control_client.h"
#include "qxbase/sources/measure_link.h"

namespace qx {

using TQXSourceNotifyEvent = std::function<void(TQXMeasureSourceEx* Sender)>;

// A data source: it publishes a channel list and, once per acquisition cycle, one block set to
// every attached link. It is a binding client, so it is also a panel with properties and events.
class QXBASE_EXPORT TQXMeasureSourceEx : public TKSSourceControlClient {
    Q_OBJECT

public:
    explicit TQXMeasureSourceEx(QWidget* parent = nullptr);
    // Calls OnDestruction, then tells every link in order (Source none, UpdateSettingsEx,
    // OnSourceDestroyed), then frees the channel list. A link listed twice is told once; links
    // freed or detached by a handler meanwhile are skipped. Handler exceptions are reported on
    // the debug output and swallowed.
    ~TQXMeasureSourceEx() override;

    // Appends the link (no duplicate check), sets its source and calls its UpdateSettingsEx. A
    // link listed by another source is removed there first; a source being destroyed takes no
    // links (the link is left detached).
    virtual void MeasureLinkExAdd(TQXMeasureLinkEx* Link);
    // Detaches the link in every case; if it was listed, removes every entry of it and calls its
    // UpdateSettingsEx once. A link attached to another source is detached from that one.
    virtual void MeasureLinkExRemove(TQXMeasureLinkEx* Link);
    // The attached links in order of attachment (a copy: handlers may change the list).
    std::vector<TQXMeasureLinkEx*> GetLinks() const;
    int GetLinkCount() const;

    // 1, 2, 3, ...: never reused during the source's life.
    std::uint32_t GetNewChannelHandle();
    // Calls UpdateSettingsEx of every link, in order.
    void ChannelChangeUpdate();

    void ChannelListAdd(const QString& Name, const QString& SecondText, const QString& ThirdText,
                        double RangeLow, double RangeHigh, TQXMSChannelFlags Flags, TColor Color,
                        std::uint32_t Handle, bool OptionFlag);
    void ChannelListAdd(const QString& Name, const QString& SecondText, const QString& ThirdText,
                        double RangeLow, double RangeHigh, TQXMSChannelFlags Flags, TColor Color,
                        double X1, double X2, double Y1, double Y2, bool OptionFlag, std::uint32_t Handle);
    void ChannelListAdd(const QString& Name, const QString& SecondText, const QString& ThirdText,
                        double RangeLow, double RangeHigh, TQXMSChannelFlags Flags, TColor Color,
                        double X1, double X2, double Y1, double Y2, bool OptionFlag,
                        const TQXCoefficients& Coefficients, TQXVTOperation Operation,
                        std::int32_t OperationParameter, std::int32_t FirstOperandIndex,
                        std::int32_t SecondOperandIndex, std::uint32_t Handle);
    void ChannelListAdd(const QString& Name, const QString& SecondText, const QString& ThirdText,
                        double RangeLow, double RangeHigh, TQXMSChannelFlags Flags, TColor Color,
                        double X1, double X2, double Y1, double Y2, bool OptionFlag,
                        const TQXCoefficients& Coefficients, TQXVTOperation Operation,
                        std::int32_t OperationParameter, std::int32_t FirstOperandIndex,
                        std::int32_t SecondOperandIndex, const QString& FirstOperandName,
                        const QString& SecondOperandName, std::uint32_t Handle);
    // Appends a copy of every field of `Info` (handle included), as a processor mirroring its
    // input's channels needs.
    void ChannelListAddCopy(const TQXMSExChannelInformation& Info);
    void ChannelListClear();
    // Null for an index at or beyond the count; a negative index raises ERangeError. The record
    // stays valid until it is removed (ChannelListClear, destruction).
    const TQXMSExChannelInformation* GetChannelList(int Index) const;
    int GetChannelListCount() const;
    // Copies every field of `Info` into the record at `Index`; an index beyond the list is
    // ignored, a negative one raises ERangeError.
    void UpdateChannelInformation(int Index, const TQXMSExChannelInformation& Info);

    // Delivers one block set to every link in order, then frees every buffer of Data and
    // TimeChannel (each block left {nullptr, 0}) and fires the data event. The caller gives up
    // the buffers; consumers copy what they keep. Links attached during the delivery get the
    // next set; an exception of a link's handler is reported on the debug output and the
    // delivery goes on. When a handler destroys the source, the buffers are still freed and
    // nothing else happens.
    void SendData(const TRVShortdefs& Shortdefs, TRVDataDoubleArray& Data, TRVDataDoubleArray& TimeChannel,
                  double StartTime);
    // SendData for a processor that passes on blocks it received: the first `BorrowedBlocks`
    // data blocks and every time-channel block belong to the upstream source and are neither
    // freed nor changed; the data blocks after them are freed as SendData frees them.
    void ForwardData(const TRVShortdefs& Shortdefs, TRVDataDoubleArray& Data, const TRVDataDoubleArray& TimeChannel,
                     double StartTime, std::size_t BorrowedBlocks);

    TQXSourceNotifyEvent OnDestruction;

private:
    class TLinkWalk;

    // Hands the set to every link in order; false when a handler destroyed the source.
    bool Deliver(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                 const TRVDataDoubleArray& TimeChannel, double StartTime);
    // Drops the gaps that removals during a walk left behind.
    void CompactLinks();
    // The debug trace of one delivery: "4", this source, the link's owner.
    void TraceDelivery(const QObject* Owner);

    std::vector<std::unique_ptr<TQXMSExChannelInformation>> FChannels;
    // Not owned. While a walk runs, a removed link leaves nullptr so that the walk keeps its
    // place; the outermost walk closes the gaps.
    std::vector<TQXMeasureLinkEx*> FLinks;
    int FWalkDepth = 0;
    bool FLinksDestroying = false;
    std::uint32_t FLastChannelHandle = 0;
    TQXDestructionWatch FLinkWatch;
};

enum TKSSynchonizerMode : std::uint8_t { syncWait, syncTriggered, syncAsync, syncBuffered };

// A source of one channel with a synchronizer mode, which the base class only stores.
class QXBASE_EXPORT TQXMeasureSourceExSingle : public TQXMeasureSourceEx {
    Q_OBJECT

public:
    explicit TQXMeasureSourceExSingle(QWidget* parent = nullptr);
    TKSSynchonizerMode GetSynchonizerMode() const { return FSynchonizerMode; }
    virtual void SetSynchonizerMode(TKSSynchonizerMode Value);

private:
    TKSSynchonizerMode FSynchonizerMode = syncWait;
};

// A processor: a source with one input link, which it owns. MLSOnUpdateSettings and
// MLSOnNewData receive from the input link; descendants override them.
class QXBASE_EXPORT TQXMLSBaseEx : public TQXMeasureSourceEx {
    Q_OBJECT

public:
    explicit TQXMLSBaseEx(QWidget* parent = nullptr);
    ~TQXMLSBaseEx() override;

    TQXMeasureLinkEx& GetInputLink() const { return *FInputLink; }
    TQXMeasureSourceEx* GetQXMeasureSource() const;
    // Attaches the input link unless `Source` is the current one or this processor itself; the
    // link refuses a source that has this processor upstream.
    void SetQXMeasureSource(TQXMeasureSourceEx* Source);
    // The panel's data source is the input link's.
    TQXMeasureSourceEx* GetMeasureSource() const override;
    void SetMeasureSource(TQXMeasureSourceEx* Value) override;

protected:
    virtual void MLSOnUpdateSettings(TQXMeasureLinkEx* Sender);
    virtual void MLSOnNewData(TQXMeasureLinkEx* Link, const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                              const TRVDataDoubleArray& TimeChannel, double StartTime);

private:
    std::unique_ptr<TQXMeasureLinkEx> FInputLink;
};

}  // namespace qx
