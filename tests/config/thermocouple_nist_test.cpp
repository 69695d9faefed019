// The coefficient tables checked against NIST's published tables and stated errors: the checks
// that catch a mistyped digit.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "qxbase/config/thermocouple.h"

using namespace qx;

namespace {

// One NIST inverse piece: the upper end of its voltage range and its stated error in degrees C.
struct InversePiece {
    double upperMv, minError, maxError;
};

struct TypeRow {
    TThermoCoupleTypes type;
    const char* name;
    double lowMv, highMv;          // limits of DoLinearization
    double lowT, highT;            // limits of DoInverseLinearization
    double inverseLowT, inverseHighT;  // range of the inverse polynomials
    std::vector<InversePiece> pieces;
};

const double kLast = std::numeric_limits<double>::infinity();

const TypeRow kTypes[] = {
    {tctB, "B", -0.291, 13.820, 0, 1820, 250, 1820, {{2.431, -0.02, 0.03}, {kLast, -0.01, 0.02}}},
    {tctE, "E", -8.825, 76.373, -270, 1000, -200, 1000,
     {{0, -0.01, 0.03}, {kLast, -0.02, 0.02}}},
    {tctJ, "J", -8.095, 69.553, -210, 1200, -210, 1200,
     {{0, -0.05, 0.03}, {42.919, -0.04, 0.04}, {kLast, -0.04, 0.03}}},
    {tctK, "K", -5.891, 54.886, -270, 1372, -200, 1372,
     {{0, -0.02, 0.04}, {20.644, -0.05, 0.04}, {kLast, -0.05, 0.06}}},
    {tctN, "N", -3.990, 47.513, -270, 1300, -200, 1300,
     {{0, -0.02, 0.03}, {20.613, -0.02, 0.03}, {kLast, -0.04, 0.02}}},
    {tctR, "R", -0.226, 21.103, -50, 1768.1, -50, 1768.1,
     {{1.923, -0.02, 0.02}, {13.228, -0.005, 0.005}, {19.739, -0.0005, 0.001},
      {kLast, -0.001, 0.002}}},
    {tctS, "S", -0.235, 18.693, -50, 1768.1, -50, 1768.1,
     {{1.874, -0.02, 0.02}, {11.950, -0.01, 0.01}, {17.536, -0.0002, 0.0002},
      {kLast, -0.002, 0.002}}},
    {tctT, "T", -5.603, 20.872, -270, 400, -200, 400, {{0, -0.02, 0.04}, {kLast, -0.03, 0.03}}},
};

const char* Name(TThermoCoupleTypes type)
{
    return kTypes[type - 1].name;
}

// Reference voltage in mV, type K with its exponential term.
double ReferenceMv(TThermoCoupleTypes type, double t)
{
    TThermoErrorStates state;
    return DoInverseLinearizationExact(type, t, state) * 1000;
}

// Calls f at n + 1 evenly spaced points from low to high, both ends included.
template <class F>
void Sweep(double low, double high, double step, F f)
{
    const int n = static_cast<int>((high - low) / step);
    for (int i = 0; i <= n; ++i) f(low + (high - low) * i / n);
}

}  // namespace

// Table values in mV, rounded by NIST to 1 uV.
TEST(ThermocoupleNist, ReferenceFunctionsReproduceTableValues)
{
    // Both ends and a point inside each piece of the reference function.
    const std::pair<TThermoCoupleTypes, std::vector<std::pair<double, double>>> rows[] = {
        {tctB, {{250, 0.291}, {600, 1.792}, {1000, 4.834}, {1820, 13.820}}},
        {tctE, {{-270, -9.835}, {-260, -9.797}, {-100, -5.237}, {400, 28.946}, {1000, 76.373}}},
        {tctJ, {{-210, -8.095}, {400, 21.848}, {800, 45.494}, {1200, 69.553}}},
        {tctK, {{-270, -6.458}, {-100, -3.554}, {150, 6.138}, {1372, 54.886}}},
        {tctN, {{-270, -4.345}, {-100, -2.407}, {600, 20.613}, {1300, 47.513}}},
        {tctR, {{-50, -0.226}, {500, 4.471}, {1400, 16.040}, {1768.1, 21.103}}},
        {tctS, {{-50, -0.236}, {500, 4.233}, {1400, 14.373}, {1768, 18.693}}},
        {tctT, {{-270, -6.258}, {-100, -3.379}, {200, 9.288}, {400, 20.872}}},
    };
    for (const auto& [type, values] : rows)
        for (const auto& [t, mv] : values)
            EXPECT_NEAR(ReferenceMv(type, t), mv, 0.0005) << Name(type) << " " << t;
}

TEST(ThermocoupleNist, ReferencePiecesJoinAtTheirSplits)
{
    const std::pair<TThermoCoupleTypes, double> splits[] = {
        {tctB, 630.615}, {tctE, 0}, {tctJ, 760}, {tctK, 0}, {tctN, 0},
        {tctR, 1064.18}, {tctR, 1664.5}, {tctS, 1064.18}, {tctS, 1664.5}, {tctT, 0},
    };
    for (const auto& [type, t] : splits) {
        const double above = std::nextafter(t, kLast);
        EXPECT_NEAR(ReferenceMv(type, t), ReferenceMv(type, above), 1e-6) << Name(type) << " " << t;
    }
}

// Each inverse piece, reached through the voltage splits, stays within the error NIST states
// for it (rounded by NIST to its last digit) against the reference function.
TEST(ThermocoupleNist, InversePolynomialsStayWithinStatedErrors)
{
    const auto rounding = [](double bound) {
        return 0.5 * std::pow(10.0, std::floor(std::log10(std::abs(bound))));
    };
    for (const TypeRow& row : kTypes) {
        Sweep(row.inverseLowT, row.inverseHighT, 0.05, [&](double t) {
            const double mv = ReferenceMv(row.type, t);
            std::size_t k = 0;
            while (mv > row.pieces[k].upperMv) ++k;
            const InversePiece& piece = row.pieces[k];
            TThermoErrorStates state;
            const double error = DoLinearization(row.type, mv / 1000, state) - t;
            EXPECT_GE(error, piece.minError - rounding(piece.minError)) << row.name << " " << t;
            EXPECT_LE(error, piece.maxError + rounding(piece.maxError)) << row.name << " " << t;
        });
    }
}

// Neighbouring pieces differ by 0.0008 to 0.07 C at their common end, so the switch from one
// to the next shows as a step right at the split voltage.
TEST(ThermocoupleNist, InversePiecesSwitchAtTheSplitVoltages)
{
    for (const TypeRow& row : kTypes) {
        for (const InversePiece& piece : row.pieces) {
            if (piece.upperMv == kLast || piece.upperMv == 0) continue;  // no step at 0 mV
            TThermoErrorStates state;
            const double below = DoLinearization(row.type, (piece.upperMv - 1e-7) / 1000, state);
            const double above = DoLinearization(row.type, (piece.upperMv + 1e-7) / 1000, state);
            EXPECT_GT(std::abs(above - below), 5e-4) << row.name << " " << piece.upperMv;
        }
    }
}

TEST(ThermocoupleNist, LimitsOfEachTypeAreInclusive)
{
    const double e = 1e-6;
    for (const TypeRow& row : kTypes) {
        std::vector<TThermoErrorStates> got;
        for (double mv : {row.lowMv - e, row.lowMv + e, row.highMv - e, row.highMv + e})
            DoLinearization(row.type, mv / 1000, got.emplace_back());
        for (double t : {row.lowT - e, row.lowT, row.highT, row.highT + e})
            DoInverseLinearization(row.type, t, got.emplace_back());
        EXPECT_EQ(got, std::vector({tesLowViolation, tesOk, tesOk, tesHighViolation, tesLowViolation, tesOk, tesOk,
                                    tesHighViolation}))
            << row.name;
    }
}

// The exact inverse recovers the temperature over the whole reference range, including the
// parts the inverse polynomials leave out (below -200 C; type B from its minimum near 21 C).
TEST(ThermocoupleNist, ExactInverseRecoversTemperatureAcrossTheReferenceRange)
{
    for (const TypeRow& row : kTypes) {
        double worst = 0;
        Sweep(row.type == tctB ? 21.03 : row.lowT, row.highT, 0.01, [&](double t) {
            TThermoErrorStates state;
            const double volts = DoInverseLinearizationExact(row.type, t, state);
            worst = std::max(worst, std::abs(DoLinearizationExact(row.type, volts, state) - t));
        });
        EXPECT_LT(worst, 1e-6) << row.name;
    }
}
