#include "qxbase/config/thermocouple.h"

#include <algorithm>
#include <cmath>

#include "qxbase/config/thermocouple_tables.h"

namespace qx {
namespace {

using thermo::TPolynomialPiece;
using thermo::TTypeTables;

constexpr double KelvinOffset = 273.16;

// Power accumulation: the power of x is carried along rather than nested as in Horner's
// scheme, which would change results in the last bits.
double Evaluate(const TPolynomialPiece& piece, double x)
{
    double sum = piece.FC[0];
    double power = x;
    for (std::size_t k = 1; k < piece.FTerms; ++k) {
        sum += power * piece.FC[k];
        power *= x;
    }
    return sum;
}

double EvaluateDerivative(const TPolynomialPiece& piece, double x)
{
    double sum = 0;
    double power = 1;
    for (std::size_t k = 1; k < piece.FTerms; ++k) {
        sum += static_cast<double>(k) * power * piece.FC[k];
        power *= x;
    }
    return sum;
}

// The first piece whose upper end x does not exceed; the last piece beyond them all.
const TPolynomialPiece& SelectPiece(std::span<const TPolynomialPiece> pieces, double x)
{
    for (const TPolynomialPiece& piece : pieces)
        if (x <= piece.FUpper) return piece;
    return pieces.back();
}

TThermoErrorStates CheckLimits(double value, double low, double high)
{
    if (value < low) return tesLowViolation;
    if (value > high) return tesHighViolation;
    return tesOk;
}

// E(t) in mV including type K's exponential term, and its derivative in mV per degree.
double ReferenceVoltage(const TTypeTables& tables, double t)
{
    double e = Evaluate(SelectPiece(tables.FReference, t), t);
    if (tables.FHasExponential && t > 0) {
        const double d = t - tables.FA2;
        e += tables.FA0 * std::exp(tables.FA1 * d * d);
    }
    return e;
}

double ReferenceSlope(const TTypeTables& tables, double t)
{
    double slope = EvaluateDerivative(SelectPiece(tables.FReference, t), t);
    if (tables.FHasExponential && t > 0) {
        const double d = t - tables.FA2;
        slope += tables.FA0 * std::exp(tables.FA1 * d * d) * 2 * tables.FA1 * d;
    }
    return slope;
}

// Where the type B reference function has its minimum: below it E(t) falls with rising t, so
// the exact inverse is taken on the branch above.
constexpr double TypeBMonotonicFrom = 21.0202618772;

constexpr int MaxNewtonSteps = 100;
constexpr double NewtonTolerance = 1e-9;  // degrees C

// Solves E(t) = mv on the monotonic part of the reference function. The bracket [low, high]
// always holds the root; a Newton step that would leave it, or a flat slope, is replaced by
// bisection, so the loop converges and ends within MaxNewtonSteps.
double SolveReference(const TTypeTables& tables, double lowT, double mv, double start)
{
    double low = lowT;
    double high = tables.FHighTemperature;
    if (mv <= ReferenceVoltage(tables, low)) return low;
    if (mv >= ReferenceVoltage(tables, high)) return high;

    double t = std::clamp(start, low, high);
    for (int step = 0; step < MaxNewtonSteps; ++step) {
        const double residual = ReferenceVoltage(tables, t) - mv;
        if (residual == 0) return t;
        if (residual < 0)
            low = t;
        else
            high = t;
        const double slope = ReferenceSlope(tables, t);
        double next = 0.5 * (low + high);
        if (slope > 0) {
            const double newton = t - residual / slope;
            // Tested before the bracket: a converging Newton step may land on or just past
            // the end of the bracket that it approaches from one side.
            if (std::abs(newton - t) <= NewtonTolerance) return std::clamp(newton, low, high);
            if (newton > low && newton < high) next = newton;
        }
        if (high - low <= NewtonTolerance) return next;
        t = next;
    }
    return t;
}

}  // namespace

void GetThermocoupleRange(TThermoCoupleTypes type, double& low, double& high)
{
    struct TRange {
        double FLow;
        double FHigh;
    };
    static constexpr TRange kRanges[] = {
        {-10, 10}, {250, 1800}, {-100, 1000}, {0, 760}, {0, 1370},
        {-200, 600}, {0, 1000}, {0, 1750}, {-160, 400},
    };
    const auto index = static_cast<std::size_t>(type);
    const TRange range = index < std::size(kRanges) ? kRanges[index] : kRanges[tctNONE];
    low = range.FLow;
    high = range.FHigh;
}

double DoLinearization(TThermoCoupleTypes type, double voltage, TThermoErrorStates& state)
{
    state = tesOk;
    const TTypeTables* tables = thermo::GetTypeTables(type);
    if (!tables) return voltage;
    const double mv = voltage * 1000;
    state = CheckLimits(mv, tables->FLowVoltage, tables->FHighVoltage);
    return Evaluate(SelectPiece(tables->FInverse, mv), mv);
}

double DoInverseLinearization(TThermoCoupleTypes type, double temperature,
                              TThermoErrorStates& state)
{
    state = tesOk;
    const TTypeTables* tables = thermo::GetTypeTables(type);
    if (!tables) return temperature / 1000;
    state = CheckLimits(temperature, tables->FLowTemperature, tables->FHighTemperature);
    return Evaluate(SelectPiece(tables->FReference, temperature), temperature) / 1000;
}

double DoLinearizationCJC(TThermoCoupleTypes type, double voltage, double cjcVoltage,
                          TThermoErrorStates& state)
{
    return DoLinearization(type, voltage + cjcVoltage, state);
}

double DoInverseLinearizationExact(TThermoCoupleTypes type, double temperature,
                                   TThermoErrorStates& state)
{
    state = tesOk;
    const TTypeTables* tables = thermo::GetTypeTables(type);
    if (!tables) return temperature / 1000;
    state = CheckLimits(temperature, tables->FLowTemperature, tables->FHighTemperature);
    return ReferenceVoltage(*tables, temperature) / 1000;
}

double DoLinearizationExact(TThermoCoupleTypes type, double voltage, TThermoErrorStates& state)
{
    state = tesOk;
    const TTypeTables* tables = thermo::GetTypeTables(type);
    if (!tables) return voltage;
    const double mv = voltage * 1000;
    state = CheckLimits(mv, tables->FLowVoltage, tables->FHighVoltage);
    if (std::isnan(mv)) return mv;
    const double lowT = type == tctB ? TypeBMonotonicFrom : tables->FLowTemperature;
    const double start = Evaluate(SelectPiece(tables->FInverse, mv), mv);
    return SolveReference(*tables, lowT, mv, start);
}

double CJCVoltToTemperature(double sensorOutput, TDegreesUnit unit, TCJCType cjcType,
                            double customSensitivity)
{
    constexpr double UsbSensitivity = 0.01;
    constexpr double PciSensitivity = 0.0005;

    double sensitivity = 0;
    switch (cjcType) {
    case cjcUSB: sensitivity = UsbSensitivity; break;
    case cjcPCI: sensitivity = PciSensitivity; break;
    case cjcCustom:
        sensitivity = customSensitivity == 0 ? UsbSensitivity : customSensitivity;
        break;
    default: return sensorOutput;
    }

    double factor = 1;
    double offset = 0;
    if (unit == duFahrenheit) {
        factor = 1.8;
        offset = 32;
    } else if (unit == duKelvin) {
        offset = KelvinOffset;
    }
    return sensorOutput / sensitivity * factor + offset;
}

double TempUnitConversion(double value, TDegreesUnit fromUnit, TDegreesUnit toUnit)
{
    if (fromUnit == toUnit || fromUnit > duKelvin || toUnit > duKelvin) return value;

    double celsius = value;
    if (fromUnit == duFahrenheit) celsius = (value - 32) * 5 / 9;
    if (fromUnit == duKelvin) celsius = value - KelvinOffset;

    if (toUnit == duFahrenheit) return celsius * 9 / 5 + 32;
    if (toUnit == duKelvin) return celsius + KelvinOffset;
    return celsius;
}

}  // namespace qx
