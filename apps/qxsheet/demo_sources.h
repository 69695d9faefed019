#pragma once

#include <QString>

#include "qxbase/control/control_source.h"

namespace qxsheet {

// A data-free control source of the demo: a thermometer with a temperature, a unit to choose
// and an alarm flag, and a user event for over-temperature.
class DemoThermometer : public qx::TQXControlSource {
public:
    explicit DemoThermometer(const QString& description);

    void FireOverTemperature();

    double FTemperature = 21.5;
    int FUnit = 0;
    bool FAlarm = false;

private:
    qx::HRESULT GetSet(qx::TQXPropertyItem* item, bool get, qx::Variant& value);
};

// A switch with one enumeration property "State" ("Off", "On").
class DemoSwitch : public qx::TQXControlSource {
public:
    explicit DemoSwitch(const QString& description);

    int FState = 0;
};

}  // namespace qxsheet
