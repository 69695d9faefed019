#pragma once

#include <QString>
#include <memory>
#include <vector>

#include "apps/qxsheet/demo_panels.h"
#include "qxbase/sources/measure_link_select.h"
#include "qxbase/sources/measure_link_single.h"
#include "qxbase/sources/trigger_processor.h"

// The demo's consumers of measured data. Each owns one link and stores the name of the source
// it reads; the link is attached when the worksheet has finished loading, so the source may
// stand anywhere in the worksheet, and detached when the panel goes.
namespace qxsheet {

// The data source called exactly `Name` among the descendants of `Panel`'s topmost ancestor,
// depth first in child order; null when there is none (or `Panel` has no parent).
qx::TQXMeasureSourceEx* FindMeasureSource(const QWidget& Panel, const QString& Name);

// What the data panels share: the source's name, the link and a count of deliveries.
class TDataPanel : public TDemoPanel {
    Q_OBJECT
    Q_PROPERTY(QString SourceName READ GetSourceName WRITE SetSourceName)

public:
    ~TDataPanel() override;

    const QString& GetSourceName() const { return FSourceName; }
    // Stored only; Attach uses it.
    void SetSourceName(const QString& Value) { FSourceName = Value; }
    // Attaches the link to the source called SourceName; false, and detached, when there is none.
    bool Attach();
    qx::TQXMeasureLinkEx& GetLink() const { return *FLink; }
    // Cycles this panel has taken something from.
    int GetReceived() const { return FReceived; }

    void LoadFinished() override;

protected:
    TDataPanel(std::unique_ptr<qx::TQXMeasureLinkEx> Link, QWidget* parent);
    // The source's channel set changed: take the channels again (for the overview) and repaint.
    virtual void SettingsChanged() = 0;
    void Delivered();

private:
    QString FSourceName;
    std::unique_ptr<qx::TQXMeasureLinkEx> FLink;
    int FReceived = 0;
};

// One channel reduced to one value per cycle (RMS, mean, ...), shown in large digits.
class TDemoMeterPanel : public TDataPanel {
    Q_OBJECT
    Q_PROPERTY(QString ChannelName READ GetChannelName WRITE SetChannelName)
    Q_PROPERTY(qint32 Channel READ GetChannel WRITE SetChannel)
    Q_PROPERTY(qint32 CompressionMethod READ GetCompressionMethod WRITE SetCompressionMethod)

public:
    explicit TDemoMeterPanel(QWidget* parent = nullptr);
    static QString GetDescription(const QMetaObject& Class);

    qx::TQXMeasureLinkSingleEx& GetSingleLink() const;
    // The channel is looked for by name first, then by position.
    const QString& GetChannelName() const { return FChannelName; }
    void SetChannelName(const QString& Value);
    int GetChannel() const { return FChannel; }
    void SetChannel(int Value);
    int GetCompressionMethod() const { return GetSingleLink().GetCompressionMethod(); }
    // A method outside the enumeration is ignored.
    void SetCompressionMethod(int Value);
    // The method's own text ("RMS", ...).
    QString GetMethodText() const;

    bool HasValue() const { return FHasValue; }
    double GetValue() const { return FValue; }
    double GetValueTime() const { return FValueTime; }

protected:
    void SettingsChanged() override;
    void Paint(QPainter& Canvas) override;

private:
    void FollowChannel();

    QString FChannelName;
    int FChannel = 0;
    bool FHasValue = false;
    double FValue = 0.0;
    double FValueTime = 0.0;
};

// The samples one panel keeps of one channel.
struct TKeptCurve {
    std::vector<double> Samples;
    qx::TColor Color = qx::clLime;
    double Low = -1.0;
    double High = 1.0;
};

// A small scope: the selected channels' last blocks as curves.
class TDemoCurvePanel : public TDataPanel {
    Q_OBJECT
    Q_PROPERTY(QString Channels READ GetChannels WRITE SetChannels)

public:
    explicit TDemoCurvePanel(QWidget* parent = nullptr);
    static QString GetDescription(const QMetaObject& Class);

    qx::TQXMeasureLinkSelectEx& GetSelectLink() const;
    // Source channel positions separated by blanks or commas ("0 3 4"); what is no number
    // selects nothing.
    const QString& GetChannels() const { return FChannels; }
    void SetChannels(const QString& Value);
    // This many samples at most are kept per channel, the latest ones: a whole block of the
    // bundled worksheet, so that a spectrum keeps its low bins.
    static constexpr std::size_t KeptSamples = 1024;

    const std::vector<TKeptCurve>& GetCurves() const { return FCurves; }
    // The sample count of each channel in the last delivery.
    const std::vector<int>& GetLastCounts() const { return FLastCounts; }

protected:
    void SettingsChanged() override;
    void Paint(QPainter& Canvas) override;

private:
    void Take(const qx::TRVShortdefs& Shortdefs, const qx::TRVDataDoubleArray& Data);

    QString FChannels;
    std::vector<TKeptCurve> FCurves;
    std::vector<int> FLastCounts;
};

// The last capture of a trigger processor, with a mark at its trigger sample.
class TDemoCapturePanel : public TDataPanel {
    Q_OBJECT

public:
    explicit TDemoCapturePanel(QWidget* parent = nullptr);
    static QString GetDescription(const QMetaObject& Class);

    const std::vector<TKeptCurve>& GetCurves() const { return FCurves; }
    // Samples per channel of the last capture.
    int GetCount() const { return FCurves.empty() ? 0 : static_cast<int>(FCurves.front().Samples.size()); }
    double GetStartTime() const { return FStartTime; }
    // The trigger sample's index in the capture: the processor's pre-trigger; -1 when the source
    // is not a trigger processor.
    int GetTriggerPosition() const { return FTriggerPosition; }
    // The trigger sample's time; NaN when it is not in the capture's time channel.
    double GetTriggerTime() const { return FTriggerTime; }

protected:
    void SettingsChanged() override;
    void Paint(QPainter& Canvas) override;

private:
    void Take(const qx::TRVShortdefs& Shortdefs, const qx::TRVDataDoubleArray& Data,
              const qx::TRVDataDoubleArray& TimeChannel, double StartTime);

    std::vector<TKeptCurve> FCurves;
    double FStartTime = 0.0;
    double FTriggerTime = 0.0;
    int FTriggerPosition = -1;
};

// The trigger processor as the worksheet keeps it: it also stores which source feeds it and
// attaches to it after load.
class TDemoTriggerProcessor : public qx::TKSTriggerProcessor {
    Q_OBJECT
    Q_PROPERTY(QString InputSource READ GetInputSource WRITE SetInputSource)

public:
    explicit TDemoTriggerProcessor(QWidget* parent = nullptr);
    static QString GetDescription(const QMetaObject& Class);

    const QString& GetInputSource() const { return FInputSource; }
    // Stored only; LoadFinished attaches.
    void SetInputSource(const QString& Value) { FInputSource = Value; }
    void LoadFinished() override;

private:
    QString FInputSource;
};

// Registers the data panels, the simulated source, the math channel processor and the trigger
// processor; later calls do nothing.
void RegisterDataPanels();

}  // namespace qxsheet
