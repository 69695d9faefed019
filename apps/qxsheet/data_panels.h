#pragma once

#include <QString>
#include <memory>
#include <vector>

#include "apps/qxsheet/demo_panels.h"
#include "qxbase/sources/measure_link_single.h"
#include "qxbase/sources/trigger_processor.h"

// The demo's consumers of measured data. Each owns one link and stores the name of the source
// it reads; the link is attached when the worksheet has finished loading, so the source may
// stand anywhere in the worksheet, and detached when the panel goes.
namespace qxsheet {

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
    // The picker's choice: the source's name is stored and the link attached.
    qx::TQXMeasureSourceEx* GetMeasureSource() const override { return FLink->GetSource(); }
    void SetMeasureSource(qx::TQXMeasureSourceEx* Value) override;

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
    // The picker chose a channel: the meter follows it by name from now on.
    void ChannelListChanged() override;
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

// Registers the data panels, the chart panels, the simulated source, the math channel processor
// and the trigger processor; later calls do nothing.
void RegisterDataPanels();

}  // namespace qxsheet
