#pragma once

#include <QString>
#include <QWidget>

#include "qxbase/framework/color.h"
#include "qxbase/panels/panel_base.h"

// The panels the demo worksheet is made of. Each draws inside AdjustClientRect() on its Color.
namespace qxsheet {

// A number with its unit, in large digits.
class TDemoValueDisplay : public qx::TKSMSSink {
    Q_OBJECT
    Q_PROPERTY(double Value READ GetValue WRITE SetValue)
    Q_PROPERTY(QString Unit READ GetUnit WRITE SetUnit)
    Q_PROPERTY(qint32 Decimals READ GetDecimals WRITE SetDecimals)

public:
    explicit TDemoValueDisplay(QWidget* parent = nullptr);
    static QString GetDescription(const QMetaObject& Class);

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

// A round lamp, lit in its colour or dimmed.
class TDemoLamp : public qx::TKSMSSink {
    Q_OBJECT
    Q_PROPERTY(bool On READ GetOn WRITE SetOn)
    Q_PROPERTY(qint32 LampColor READ GetLampColor WRITE SetLampColor)

public:
    explicit TDemoLamp(QWidget* parent = nullptr);
    static QString GetDescription(const QMetaObject& Class);

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

// A horizontal bar filled in proportion to where Value lies between Minimum and Maximum.
class TDemoBarMeter : public qx::TKSMSSink {
    Q_OBJECT
    Q_PROPERTY(double Value READ GetValue WRITE SetValue)
    Q_PROPERTY(double Minimum READ GetMinimum WRITE SetMinimum)
    Q_PROPERTY(double Maximum READ GetMaximum WRITE SetMaximum)
    Q_PROPERTY(qint32 BarColor READ GetBarColor WRITE SetBarColor)

public:
    explicit TDemoBarMeter(QWidget* parent = nullptr);
    static QString GetDescription(const QMetaObject& Class);

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

// Registers the demo panels with the panel registry; later calls do nothing.
void RegisterDemoPanels();

}  // namespace qxsheet
