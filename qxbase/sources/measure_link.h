#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <functional>

#include "qxbase/control/destruction_watch.h"
#include "qxbase/framework/component_stream.h"
#include "qxbase/framework/export.h"
#include "qxbase/measure/channel_information.h"
#include "qxbase/measure/channel_types.h"

namespace qx {

class TQXMeasureLinkEx;
class TQXMeasureSourceEx;

// The data handler of a link: one cycle's definitions, blocks, time-channel blocks and start
// time. The buffers belong to the sending source and are freed after the call: copy what you keep.
using TQXNotifyDataEx = std::function<void(TQXMeasureLinkEx* Link, const TRVShortdefs& Shortdefs,
                                           const TRVDataDoubleArray& Data,
                                           const TRVDataDoubleArray& TimeChannel, double StartTime)>;
// How a processor reports its output (definitions, blocks, time-channel blocks).
using TZLOnProcessedData = std::function<void(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                                              const TRVDataDoubleArray& TimeChannel)>;
using TQXLinkNotifyEvent = std::function<void(TQXMeasureLinkEx* Sender)>;
using TQXSourceDestroyedEvent = std::function<void(TQXMeasureSourceEx* Source)>;

// What a consumer needs of its source.
enum TKSMeasureSourceNeeds : std::uint8_t { ksmsnNoChannels, ksmsnSingleChannel, ksmsnDualChannel, ksmsnChannelList };

// A consumer's connection to one data source. The consumer (Owner) creates and frees it; a link
// that is destroyed while attached detaches itself first. Handlers may detach or re-attach this
// link, or others, while they run.
class QXBASE_EXPORT TQXMeasureLinkEx : public TStreamable {
public:
    explicit TQXMeasureLinkEx(QObject* Owner = nullptr);
    ~TQXMeasureLinkEx() override;
    TQXMeasureLinkEx(const TQXMeasureLinkEx&) = delete;
    TQXMeasureLinkEx& operator=(const TQXMeasureLinkEx&) = delete;

    TQXMeasureSourceEx* GetSource() const { return FSource; }
    // Attaches to `Source` (null detaches). An attachment that would close a cycle of processors
    // (the owner itself, or the owner upstream of `Source`) is refused silently and leaves the
    // link detached from its previous source as well.
    virtual void SetQXMeasureSourceEx(TQXMeasureSourceEx* Source);
    QObject* GetOwner() const { return FOwner.data(); }
    void SetOwner(QObject* Owner) { FOwner = Owner; }
    bool GetEnabled() const { return FEnabled; }
    void SetEnabled(bool Value) { FEnabled = Value; }

    // Passes a block set on to OnNewData while attached and enabled.
    virtual void NewData(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                         const TRVDataDoubleArray& TimeChannel, double StartTime);
    // Tells the owner that the source's channel set may have changed (OnUpdateSettings).
    virtual void UpdateSettingsEx();

    // The attached source's channels; null and 0 without a source.
    virtual const TQXMSExChannelInformation* GetChannelList(int Index) const;
    virtual int GetChannelListCount() const;
    // The first channel whose Name is exactly `Name`; -1 when none.
    int OrigNameToChannel(const QString& Name) const;

    TQXLinkNotifyEvent OnUpdateSettings;
    TQXSourceDestroyedEvent OnSourceDestroyed;
    TQXNotifyDataEx OnNewData;

private:
    friend class TQXMeasureSourceEx;

    TQXMeasureSourceEx* FSource = nullptr;
    QPointer<QObject> FOwner;
    bool FEnabled = true;
    TQXDestructionWatch FWatch;  // a source telling this link of its end must see it go
};

}  // namespace qx
