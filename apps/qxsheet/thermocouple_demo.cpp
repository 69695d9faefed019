#include "apps/qxsheet/thermocouple_demo.h"

#include <QString>

#include "qxbase/config/thermocouple.h"

namespace qxsheet {
namespace {

QString StateText(qx::TThermoErrorStates state)
{
    switch (state) {
    case qx::tesOk: return QStringLiteral("ok");
    case qx::tesLowViolation: return QStringLiteral("below the type's range");
    case qx::tesHighViolation: return QStringLiteral("above the type's range");
    }
    return QStringLiteral("?");
}

QString Fixed(double value, int decimals) { return QString::number(value, 'f', decimals); }

}  // namespace

void ShowThermocouples(QTextStream& out)
{
    out << Qt::endl << "== Thermocouples ==" << Qt::endl;
    struct Reading {
        qx::TThermoCoupleTypes type;
        const char* name;
        double volts;
    };
    const Reading readings[] = {
        {qx::tctK, "K", 0.004096}, {qx::tctK, "K", 0.020644}, {qx::tctJ, "J", 0.042919},
        {qx::tctT, "T", -0.005}, {qx::tctS, "S", 0.010757}, {qx::tctB, "B", 0.014},
    };
    for (const Reading& r : readings) {
        qx::TThermoErrorStates state = qx::tesOk;
        const double t = qx::DoLinearization(r.type, r.volts, state);
        qx::TThermoErrorStates exactState = qx::tesOk;
        const double exact = qx::DoLinearizationExact(r.type, r.volts, exactState);
        qx::TThermoErrorStates backState = qx::tesOk;
        const double back = qx::DoInverseLinearization(r.type, t, backState);
        out << "type " << r.name << "  " << Fixed(r.volts * 1000, 3) << " mV -> " << Fixed(t, 3)
            << " degC (" << StateText(state) << "), exact " << Fixed(exact, 3) << " degC, reference polynomial back "
            << Fixed(back * 1000, 4) << " mV" << Qt::endl;
    }
    qx::TThermoErrorStates state = qx::tesOk;
    const double withCjc = qx::DoLinearizationCJC(qx::tctK, 0.020644 - 0.000798, 0.000798, state);
    out << "type K with cold junction 0.798 mV added: " << Fixed(withCjc, 3) << " degC" << Qt::endl;
    out << "USB cold-junction sensor at 0.25 V: "
        << Fixed(qx::CJCVoltToTemperature(0.25, qx::duCelsius, qx::cjcUSB, 0), 2) << " degC, "
        << Fixed(qx::CJCVoltToTemperature(0.25, qx::duKelvin, qx::cjcUSB, 0), 2) << " K" << Qt::endl;
    out << "100 degC = " << Fixed(qx::TempUnitConversion(100, qx::duCelsius, qx::duFahrenheit), 1)
        << " degF" << Qt::endl;
}

}  // namespace qxsheet
