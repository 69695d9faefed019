#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>
#include <utility>

#include "qxbase/config/thermocouple.h"

using namespace qx;

namespace {

const auto kOutsideEnum = static_cast<TThermoCoupleTypes>(42);

}  // namespace

TEST(ThermocoupleLinearization, NoneTypePassesValuesThroughAndClearsState)
{
    for (TThermoCoupleTypes type : {tctNONE, kOutsideEnum}) {
        TThermoErrorStates state = tesHighViolation;
        EXPECT_EQ(DoLinearization(type, 1.5, state), 1.5);
        EXPECT_EQ(state, tesOk);
        state = tesLowViolation;
        EXPECT_EQ(DoInverseLinearization(type, 1.5, state), 0.0015);
        EXPECT_EQ(state, tesOk);
        EXPECT_EQ(DoLinearizationExact(type, 1.5, state), 1.5);
        EXPECT_EQ(DoInverseLinearizationExact(type, 1.5, state), 0.0015);
    }
}

// Out-of-limit values are extrapolated, not clamped; the exact inverse instead stops at the
// end of the reference function (see ExactInverseEndsOnAnyInput).
TEST(ThermocoupleLinearization, ValuesBeyondTheLimitsAreStillConvertedAndFlagged)
{
    TThermoErrorStates state = tesOk;
    const double hot = DoLinearization(tctB, 0.014, state);
    EXPECT_EQ(state, tesHighViolation);
    EXPECT_TRUE(hot > 1820 && hot < 1900) << hot;
    EXPECT_NEAR(DoInverseLinearizationExact(tctK, 1400, state), 0.0558, 0.0005);
    EXPECT_EQ(state, tesHighViolation);
    // The cold-junction voltage is added before linearization.
    TThermoErrorStates sumState;
    EXPECT_EQ(DoLinearizationCJC(tctJ, 0.069, 0.001, state), DoLinearization(tctJ, 0.070, sumState));
    EXPECT_EQ(state, tesHighViolation);
}

TEST(ThermocoupleLinearization, PlainTypeKOmitsOnlyTheExponentialTerm)
{
    TThermoErrorStates state;
    const double peak = 126.9686;  // where the term is its full amplitude
    EXPECT_NEAR(DoInverseLinearizationExact(tctK, peak, state) - DoInverseLinearization(tctK, peak, state),
                0.1185976e-3, 1e-15);
    EXPECT_EQ(DoInverseLinearizationExact(tctK, -100, state), DoInverseLinearization(tctK, -100, state));
}

TEST(ThermocoupleLinearization, ExactInverseEndsOnAnyInput)
{
    TThermoErrorStates state;
    EXPECT_EQ(DoLinearizationExact(tctJ, 1.0, state), 1200);
    EXPECT_EQ(state, tesHighViolation);
    EXPECT_EQ(DoLinearizationExact(tctT, -std::numeric_limits<double>::infinity(), state), -270);
    EXPECT_EQ(state, tesLowViolation);
    EXPECT_TRUE(std::isnan(DoLinearizationExact(tctK, std::nan(""), state)));
    // Type B's reference function falls below 21 C, so small inputs give its minimum.
    const double low = DoLinearizationExact(tctB, -0.0001, state);
    EXPECT_EQ(state, tesOk);
    EXPECT_NEAR(low, 21.02, 0.01);
    const double zero = DoLinearizationExact(tctB, 0, state);
    EXPECT_GT(zero, 40);
    EXPECT_NEAR(DoInverseLinearization(tctB, zero, state), 0, 1e-15);
}

TEST(ThermocoupleRange, SuggestedRangesPerType)
{
    for (const auto& [type, low, high] : {std::tuple(tctB, 250, 1800), std::tuple(tctT, -160, 400),
                                          std::tuple(kOutsideEnum, -10, 10)}) {
        double gotLow = 1, gotHigh = 2;
        GetThermocoupleRange(type, gotLow, gotHigh);
        EXPECT_EQ(std::pair(gotLow, gotHigh), std::pair(double(low), double(high))) << int(type);
    }
}

TEST(ThermocoupleColdJunction, SensorOutputScaledBySensitivityAndUnit)
{
    EXPECT_DOUBLE_EQ(CJCVoltToTemperature(0.25, duKelvin, cjcUSB, 7), 298.16);
    EXPECT_DOUBLE_EQ(CJCVoltToTemperature(0.25, duFahrenheit, cjcUSB, 7), 77);
    EXPECT_DOUBLE_EQ(CJCVoltToTemperature(0.0125, duCelsius, cjcPCI, 7), 25);
    EXPECT_DOUBLE_EQ(CJCVoltToTemperature(0.25, duCelsius, cjcCustom, 0.001), 250);
    EXPECT_DOUBLE_EQ(CJCVoltToTemperature(0.25, duKelvin, cjcCustom, 0), 298.16);
    EXPECT_EQ(CJCVoltToTemperature(0.25, duKelvin, static_cast<TCJCType>(9), 0.001), 0.25);
}

TEST(ThermocoupleUnits, ConversionsUseKelvinOffset27316)
{
    const std::tuple<double, TDegreesUnit, TDegreesUnit, double> rows[] = {
        {100, duCelsius, duFahrenheit, 212}, {212, duFahrenheit, duCelsius, 100}, {0, duKelvin, duCelsius, -273.16},
        {0, duCelsius, duKelvin, 273.16},    {32, duFahrenheit, duKelvin, 273.16},
        {-40, duFahrenheit, duFahrenheit, -40}, {5, static_cast<TDegreesUnit>(7), duKelvin, 5},
    };
    for (const auto& [value, from, to, expected] : rows)
        EXPECT_DOUBLE_EQ(TempUnitConversion(value, from, to), expected) << value << " " << int(from) << "->" << int(to);
}
