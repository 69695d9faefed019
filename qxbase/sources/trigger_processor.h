#pragma once

#include <QString>
#include <cstdint>

#include "qxbase/framework/export.h"
#include "qxbase/measure/trigger.h"
#include "qxbase/sources/measure_source.h"

namespace qx {

// A processor that runs a trigger on the block sets of its input and sends each captured
// buffer on from its own source side, with the input's channels.
//
// On the bus: "TriggerType" (enumeration "Positive", "Negative", "Positive slope",
// "Range slope", "Negative slope", "Off", "Time": the TRVTriggerType ordinals),
// "TriggerBufferSize", "TriggerLevel", "TriggerSingleShot", "TriggerChannel", "PreTrigger",
// and the command "RearmTrigger" (enumeration "True", "Unknown": writing 0 or "True" rearms).
// Stored in the worksheet as Q_PROPERTYs of the same names, plus the mode, the stop trigger
// channel, the slope tolerances and the post-trigger; pre-trigger and buffer size read back
// as the pair they were, also where the pre-trigger rule made it unusual.
class QXBASE_EXPORT TKSTriggerProcessor : public TQXMLSBaseEx {
    Q_OBJECT
    Q_PROPERTY(qint32 TriggerType READ GetTriggerType WRITE SetTriggerType)
    Q_PROPERTY(qint32 TriggerBufferSize READ GetTriggerBufferSize WRITE SetTriggerBufferSize)
    Q_PROPERTY(double TriggerLevel READ GetTriggerLevel WRITE SetTriggerLevel)
    Q_PROPERTY(bool TriggerSingleShot READ GetTriggerSingleShot WRITE SetTriggerSingleShot)
    Q_PROPERTY(qint32 TriggerChannel READ GetTriggerChannel WRITE SetTriggerChannel)
    Q_PROPERTY(qint32 PreTrigger READ GetPreTrigger WRITE SetPreTrigger)
    Q_PROPERTY(qint32 TriggerMode READ GetTriggerMode WRITE SetTriggerMode)
    Q_PROPERTY(qint32 StopTriggerChannel READ GetStopTriggerChannel WRITE SetStopTriggerChannel)
    Q_PROPERTY(double LowSlopeTolerance READ GetLowSlopeTolerance WRITE SetLowSlopeTolerance)
    Q_PROPERTY(double HighSlopeTolerance READ GetHighSlopeTolerance WRITE SetHighSlopeTolerance)
    Q_PROPERTY(qint32 PostTrigger READ GetPostTrigger WRITE SetPostTrigger)

public:
    explicit TKSTriggerProcessor(QWidget* parent = nullptr);
    ~TKSTriggerProcessor() override;

    static QString GetDescription(const QMetaObject& Class);

    // The base properties, then the trigger's (see above).
    void ClearProperties() override;

    // The engine; settings changed here directly are not announced on the bus.
    TRVTrigger& GetTrigger() { return FTrigger; }

    // The setters below follow TRVTrigger's rules and announce every property that changed.
    // Ordinals outside the enumeration are ignored.
    std::int32_t GetTriggerType() const { return FTrigger.GetTriggerType(); }
    void SetTriggerType(std::int32_t Value);
    std::int32_t GetTriggerBufferSize() const { return FTrigger.GetBufferSize(); }
    void SetTriggerBufferSize(std::int32_t Value);
    double GetTriggerLevel() const { return FTrigger.GetLevel(); }
    void SetTriggerLevel(double Value);
    bool GetTriggerSingleShot() const { return FTrigger.GetSingleShot(); }
    void SetTriggerSingleShot(bool Value);
    std::int32_t GetTriggerChannel() const { return FTrigger.GetTriggerChannel(); }
    void SetTriggerChannel(std::int32_t Value);
    std::int32_t GetPreTrigger() const { return FTrigger.GetPreTrigger(); }
    void SetPreTrigger(std::int32_t Value);
    std::int32_t GetTriggerMode() const { return FTrigger.GetTriggerMode(); }
    void SetTriggerMode(std::int32_t Value);
    std::int32_t GetStopTriggerChannel() const { return FTrigger.GetStopTriggerChannel(); }
    void SetStopTriggerChannel(std::int32_t Value);
    double GetLowSlopeTolerance() const { return FTrigger.GetLowSlopeTolerance(); }
    void SetLowSlopeTolerance(double Value);
    double GetHighSlopeTolerance() const { return FTrigger.GetHighSlopeTolerance(); }
    void SetHighSlopeTolerance(double Value);
    std::int32_t GetPostTrigger() const { return FTrigger.GetPostTrigger(); }
    void SetPostTrigger(std::int32_t Value);

    // Starts over: drops a capture or run under way (the trigger's stop event), re-arms a
    // finished single shot and waits for the next trigger. Raises TRVTriggerException
    // "TriggerChannel is invalid" when the trigger channel does not fit the channels of the
    // last block set; nothing changes then.
    void RearmTrigger();

protected:
    // Mirrors the input's channel list and tells the links downstream.
    void MLSOnUpdateSettings(TQXMeasureLinkEx* Sender) override;
    // Feeds the trigger; captures leave through SendData. The trigger's exceptions pass to the
    // sending source, which reports them on the debug output.
    void MLSOnNewData(TQXMeasureLinkEx* Link, const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                      const TRVDataDoubleArray& TimeChannel, double StartTime) override;

private:
    // Applies a change and announces every bus property it changed, except Skip (the one the
    // bus is writing, which the bus announces itself).
    template <class F>
    void ChangeSettings(F&& Change, const QString& Skip);
    HRESULT OnProperty(TQXPropertyItem* Item, bool Get, Variant& Value);

    TRVTrigger FTrigger;
};

// Registers TKSTriggerProcessor as a data-source class; later calls do nothing. Raises
// EPanelRegistryError while the registries do not exist.
QXBASE_EXPORT void RegisterTriggerProcessor();

}  // namespace qx
