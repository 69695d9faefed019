#pragma once

#include "qxbase/chartpanels/chart_panel.h"
#include "qxbase/measure/trigger.h"

class QLabel;

namespace qx {

// A scope: buffers of "Trigger buffer size" samples captured around the trigger sample by the
// library's trigger engine, the trigger sample at x = 0 ("Pre-trigger" samples before it). The
// trigger channel counts among the selected channels. "Off" runs free: each new stretch of a
// buffer's length is shown as it completes. "Rearm trigger" starts over and re-arms a finished
// single shot; "Show trigger state" writes the engine's state over the chart.
//
// Bus and worksheet: the chart panels' properties, "TriggerType" (enumeration "Positive",
// "Negative", "Off"), "TriggerBufferSize", "TriggerLevel", "TriggerSingleShot", "TriggerChannel",
// "PreTrigger", "ShowTriggerState" and the command "RearmTrigger".
class QXBASE_EXPORT TKSScopePanel : public TKSChartPanel {
    Q_OBJECT
    Q_PROPERTY(qint32 TriggerType READ GetTriggerType WRITE SetTriggerType)
    Q_PROPERTY(qint32 TriggerBufferSize READ GetTriggerBufferSize WRITE SetTriggerBufferSize)
    Q_PROPERTY(double TriggerLevel READ GetTriggerLevel WRITE SetTriggerLevel)
    Q_PROPERTY(bool TriggerSingleShot READ GetTriggerSingleShot WRITE SetTriggerSingleShot)
    Q_PROPERTY(qint32 TriggerChannel READ GetTriggerChannel WRITE SetTriggerChannel)
    Q_PROPERTY(qint32 PreTrigger READ GetPreTrigger WRITE SetPreTrigger)
    Q_PROPERTY(bool ShowTriggerState READ GetShowTriggerState WRITE SetShowTriggerState)

public:
    explicit TKSScopePanel(QWidget* parent = nullptr);
    ~TKSScopePanel() override;
    static QString GetDescription(const QMetaObject& Class);

    // TKSTriggerType ordinals; others are ignored.
    std::int32_t GetTriggerType() const { return FTriggerType; }
    void SetTriggerType(std::int32_t Value);
    std::int32_t GetTriggerBufferSize() const { return FTrigger.GetBufferSize(); }
    // The engine's rules: 3 .. MaxBlockSamples; a pre-trigger that no longer fits shrinks.
    void SetTriggerBufferSize(std::int32_t Value);
    double GetTriggerLevel() const { return FTrigger.GetLevel(); }
    void SetTriggerLevel(double Value);
    bool GetTriggerSingleShot() const { return FTrigger.GetSingleShot(); }
    void SetTriggerSingleShot(bool Value);
    std::int32_t GetTriggerChannel() const { return FTrigger.GetTriggerChannel(); }
    void SetTriggerChannel(std::int32_t Value);
    std::int32_t GetPreTrigger() const { return FTrigger.GetPreTrigger(); }
    void SetPreTrigger(std::int32_t Value);
    bool GetShowTriggerState() const { return FShowTriggerState; }
    void SetShowTriggerState(bool Value);
    // Raises TRVTriggerException "TriggerChannel is invalid" when the trigger channel does not
    // fit the selected channels.
    void RearmTrigger();

    // "Waiting for trigger", "Capturing" (triggered, the buffer filling), "Triggered" (a capture
    // finished since the state was last shown), "Single shot done" or "Free run".
    QString GetTriggerStateText() const;
    // Buffers shown so far.
    int GetCaptureCount() const { return FCaptureCount; }

    void ClearProperties() override;
    void ResetDisplay() override;

protected:
    void TakeData(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                  const TRVDataDoubleArray& TimeChannel, double StartTime) override;
    void DefaultXAxis() override;
    void ChannelsChanged() override;
    void Resize() override;

private:
    void Show(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data);
    void FreeRun(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data);
    void UpdateStateLabel();

    TRVTrigger FTrigger;
    std::int32_t FTriggerType = kttPositive;
    bool FShowTriggerState = true;
    bool FDone = false;
    TRVTriggerState FState = qxtsFillPreTrigger;
    int FCaptureCount = 0;
    int FShownCaptures = 0;
    // Free run: samples gathered towards the next buffer, per channel.
    std::vector<std::vector<double>> FGathered;
    QLabel* FStateLabel = nullptr;  // child
};

}  // namespace qx
