#pragma once

#include "qxbase/chartpanels/chart_panel.h"

namespace qx {

// A strip chart: the selected channels' samples as they arrive, the last TimeSpan seconds in
// view. It keeps KeptTime seconds (at most MaxKeptSamples per channel); while held it goes on
// recording, and "Scroll backward" / "Scroll forward" move the view by half a span through what
// it kept. A block that does not continue the kept samples (a gap, a restarted source, another
// sample rate) starts the channel over.
//
// Bus and worksheet: the chart panels' properties, "TimeSpan" ("Time span") and "KeptTime"
// ("Kept time"), both in seconds.
class QXBASE_EXPORT TKSRecorderPanel : public TKSChartPanel {
    Q_OBJECT
    Q_PROPERTY(double TimeSpan READ GetTimeSpan WRITE SetTimeSpan)
    Q_PROPERTY(double KeptTime READ GetKeptTime WRITE SetKeptTime)

public:
    static constexpr std::size_t MaxKeptSamples = std::size_t{1} << 24;

    explicit TKSRecorderPanel(QWidget* parent = nullptr);
    static QString GetDescription(const QMetaObject& Class);

    double GetTimeSpan() const { return FTimeSpan; }
    // Values that are not finite and positive are ignored.
    void SetTimeSpan(double Value);
    double GetKeptTime() const { return FKeptTime; }
    // Below the time span the time span is kept.
    void SetKeptTime(double Value);

    // The x range in view while held; false when nothing is kept or the view stands at the end.
    bool ScrollBackward();
    bool ScrollForward();
    // The end of the kept samples (x of the sample after the last one); NaN while none is kept.
    double GetKeptEnd() const;
    double GetKeptStart() const;

    void SetHold(bool Value) override;
    // What the recorder kept is gone once cleared: TLineRecorderConfirmDlg asks first.
    bool ConfirmResetDisplay() override;
    void ClearProperties() override;

protected:
    void TakeData(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                  const TRVDataDoubleArray& TimeChannel, double StartTime) override;
    bool TakesDataOnHold() const override { return true; }
    void DefaultXAxis() override;
    void ChannelsChanged() override;

private:
    void ShowRange(double End);

    double FTimeSpan = 10.0;
    double FKeptTime = 60.0;
};

}  // namespace qx
