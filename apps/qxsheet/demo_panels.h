#pragma once

#include <QString>
#include <QWidget>

#include "qxbase/framework/color.h"
#include "qxbase/framework/variant.h"
#include "qxbase/panels/controler_panel_base.h"
#include "qxbase/panels/panel_base.h"

// The panels the demo worksheet is made of. Each draws inside AdjustClientRect() on a face of
// its own and publishes its values on the bus: a write through the bus changes the panel and repaints
// it, and a change made by other means (the setters) fires "SysPropertyUpdated".
namespace qxsheet {

// Fills the content area with the panel's face colour. The face is not the panel's Color: the
// panel base turns Color into the button colours while a panel is clicked in design mode.
QRect FillPanelContent(QPainter& Canvas, const qx::TKSMSSink& Panel, qx::TColor Face);
// Lays the grey veil of a disabled panel ("PanelEnable" written 0 or "Disabled") over `Area`;
// nothing while the panel is enabled.
void PaintDisabledVeil(QPainter& Canvas, const QRect& Area, const qx::TKSMSSink& Panel);

// What the demo's display panels share.
class TDemoPanel : public qx::TKSMSSink {
    Q_OBJECT

public:
    explicit TDemoPanel(QWidget* parent = nullptr);

    // Repaints, for the veil.
    void SetPanelEnable(bool Value) override;
    // The caption is the panel's description on the bus too, which property pages and traces
    // show.
    void SetCaption(const QString& Value) override;

protected:
    // Repaints, and tells the bus unless the panel is being read from a stream (nobody listens
    // yet, and LoadFinished announces every property anyway).
    void ValueChanged(const QString& PropertyName);
};

// A number with its unit, in large digits. Bus property "Value" (double).
class TDemoValueDisplay : public TDemoPanel {
    Q_OBJECT
    Q_PROPERTY(double Value READ GetValue WRITE SetValue)
    Q_PROPERTY(QString Unit READ GetUnit WRITE SetUnit)
    Q_PROPERTY(qint32 Decimals READ GetDecimals WRITE SetDecimals)

public:
    explicit TDemoValueDisplay(QWidget* parent = nullptr);
    static QString GetDescription(const QMetaObject& Class);

    void ClearProperties() override;

    double GetValue() const { return FValue; }
    void SetValue(double Value);
    const QString& GetUnit() const { return FUnit; }
    void SetUnit(const QString& Value);
    int GetDecimals() const { return FDecimals; }
    // Clamped to 0..9.
    void SetDecimals(int Value);
    // The text the panel shows, "487.3 °C".
    QString GetDisplayText() const;

protected:
    void Paint(QPainter& Canvas) override;

private:
    double FValue = 0.0;
    QString FUnit;
    int FDecimals = 1;
};

// A round lamp, lit in its colour or dimmed. Bus properties "On" (enumeration "Off", "On") and
// "LampColor" (a colour as an integer).
class TDemoLamp : public TDemoPanel {
    Q_OBJECT
    Q_PROPERTY(bool On READ GetOn WRITE SetOn)
    Q_PROPERTY(qint32 LampColor READ GetLampColor WRITE SetLampColor)

public:
    explicit TDemoLamp(QWidget* parent = nullptr);
    static QString GetDescription(const QMetaObject& Class);

    void ClearProperties() override;

    bool GetOn() const { return FOn; }
    void SetOn(bool Value);
    qx::TColor GetLampColor() const { return FLampColor; }
    void SetLampColor(qx::TColor Value);
    // The colour the lamp is drawn in: LampColor when on, a third of it when off.
    qx::TColor GetShownColor() const;

protected:
    void Paint(QPainter& Canvas) override;

private:
    bool FOn = false;
    qx::TColor FLampColor = qx::clLime;
};

// A horizontal bar filled in proportion to where Value lies between Minimum and Maximum. Bus
// property "Value" (double).
class TDemoBarMeter : public TDemoPanel {
    Q_OBJECT
    Q_PROPERTY(double Value READ GetValue WRITE SetValue)
    Q_PROPERTY(double Minimum READ GetMinimum WRITE SetMinimum)
    Q_PROPERTY(double Maximum READ GetMaximum WRITE SetMaximum)
    Q_PROPERTY(qint32 BarColor READ GetBarColor WRITE SetBarColor)

public:
    explicit TDemoBarMeter(QWidget* parent = nullptr);
    static QString GetDescription(const QMetaObject& Class);

    void ClearProperties() override;

    double GetValue() const { return FValue; }
    void SetValue(double Value);
    double GetMinimum() const { return FMinimum; }
    void SetMinimum(double Value);
    double GetMaximum() const { return FMaximum; }
    void SetMaximum(double Value);
    qx::TColor GetBarColor() const { return FBarColor; }
    void SetBarColor(qx::TColor Value);
    // The filled part, 0..1; 0 when the range is empty or not a number.
    double GetFraction() const;

protected:
    void Paint(QPainter& Canvas) override;

private:
    double FValue = 0.0;
    double FMinimum = 0.0;
    double FMaximum = 100.0;
    qx::TColor FBarColor = qx::clBlue;
};

// A note on the page, built on the controller panel base: its text, word-wrapped, on the
// panel's Color, with the base's caption, pinner and grabber over it in design mode.
class TDemoNotePanel : public qx::TKSControlerPanelBase {
    Q_OBJECT
    Q_PROPERTY(QString Text READ GetText WRITE SetText)

public:
    explicit TDemoNotePanel(QWidget* parent = nullptr);
    static QString GetDescription(const QMetaObject& Class);

    const QString& GetText() const { return FText; }
    void SetText(const QString& Value);

protected:
    void Paint(QPainter& Canvas) override;

private:
    QString FText;
};

// The type information of the demo's colour properties, "TColor".
QString ColorTypeInfo();

// Registers the demo panels (binding clients and the note included) with the panel registry;
// later calls do nothing.
void RegisterDemoPanels();

}  // namespace qxsheet
