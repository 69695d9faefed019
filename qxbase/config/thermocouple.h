#pragma once

#include <cstdint>

#include "qxbase/framework/export.h"

// Thermocouple maths: voltage to temperature and back with the NIST ITS-90 polynomials, the
// cold-junction sensor and temperature units. Nothing here throws or keeps state; every
// function may be called from any thread. Voltages are in volts, temperatures in degrees
// Celsius unless a unit is given.

namespace qx {

enum TThermoCoupleTypes : std::uint8_t { tctNONE, tctB, tctE, tctJ, tctK, tctN, tctR, tctS, tctT };

enum TThermoErrorStates : std::uint8_t { tesOk, tesLowViolation, tesHighViolation };

enum TDegreesUnit : std::uint8_t { duCelsius, duFahrenheit, duKelvin };

enum TCJCType : std::uint8_t { cjcUSB, cjcPCI, cjcCustom, cjcNone };

// The suggested measuring range of a type in degrees C; -10 and 10 for tctNONE and for a
// value outside the enumeration.
QXBASE_EXPORT void GetThermocoupleRange(TThermoCoupleTypes type, double& low, double& high);

// Temperature of a thermocouple voltage by the NIST inverse polynomial. A voltage outside the
// type's limits still gets the polynomial of the nearest range (extrapolated) and sets state to
// tesLowViolation or tesHighViolation; otherwise state is tesOk. tctNONE (and a value outside
// the enumeration) returns the voltage unchanged.
QXBASE_EXPORT double DoLinearization(TThermoCoupleTypes type, double voltage,
                                     TThermoErrorStates& state);

// Voltage of a temperature by the NIST reference polynomial, for type K without its
// exponential term. Out-of-limit temperatures are extrapolated and flagged in state as above.
// tctNONE (and a value outside the enumeration) returns the temperature divided by 1000.
QXBASE_EXPORT double DoInverseLinearization(TThermoCoupleTypes type, double temperature,
                                            TThermoErrorStates& state);

// DoLinearization of the sum of the thermocouple and cold-junction voltages.
QXBASE_EXPORT double DoLinearizationCJC(TThermoCoupleTypes type, double voltage,
                                        double cjcVoltage, TThermoErrorStates& state);

// The full NIST reference function E(t), type K with its exponential term, in volts. Limits,
// extrapolation and state as DoInverseLinearization.
QXBASE_EXPORT double DoInverseLinearizationExact(TThermoCoupleTypes type, double temperature,
                                                 TThermoErrorStates& state);

// The temperature whose full NIST reference voltage (DoInverseLinearizationExact) equals the
// given voltage: Newton iteration on the reference function, started from the inverse
// polynomial and kept inside a bracket (bisection where a step would leave it), at most 100
// steps; within 1e-6 degrees C of the exact solution. State as DoLinearization. A voltage
// beyond the reference function's range gives the temperature at that end (type B: the
// function's minimum near 21 degrees C, below which it is not monotonic); NaN gives NaN.
// tctNONE (and a value outside the enumeration) returns the voltage unchanged.
QXBASE_EXPORT double DoLinearizationExact(TThermoCoupleTypes type, double voltage,
                                          TThermoErrorStates& state);

// Cold-junction temperature in the requested unit from the sensor output (V) and its
// sensitivity (V per degree) given by the CJC type; cjcCustom with a sensitivity of exactly 0
// uses the cjcUSB one. cjcNone (or a value outside the enumeration) returns the sensor output
// unchanged.
QXBASE_EXPORT double CJCVoltToTemperature(double sensorOutput, TDegreesUnit unit,
                                          TCJCType cjcType, double customSensitivity);

// Converts a temperature between units (Kelvin offset 273.16). A unit outside the enumeration
// leaves the value unchanged.
QXBASE_EXPORT double TempUnitConversion(double value, TDegreesUnit fromUnit,
                                        TDegreesUnit toUnit);

}  // namespace qx
