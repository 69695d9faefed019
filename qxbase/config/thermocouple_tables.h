#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <span>

#include "qxbase/config/thermocouple.h"

// Used inside the library only: the thermocouple functions are the public interface.
namespace qx::thermo {

inline constexpr std::size_t MaxTerms = 15;

// One piece of a piecewise polynomial: the coefficients c0..c(n-1) and the upper end of the
// input interval it serves (the last piece of a type ignores its upper end).
struct TPolynomialPiece {
    double FUpper = 0;
    std::size_t FTerms = 0;
    std::array<double, MaxTerms> FC{};
};

// Builds a piece from its coefficients so the number of terms is the number written.
consteval TPolynomialPiece Piece(double upper, std::initializer_list<double> coefficients)
{
    TPolynomialPiece piece;
    piece.FUpper = upper;
    piece.FTerms = coefficients.size();
    std::size_t k = 0;
    for (double c : coefficients) piece.FC[k++] = c;
    return piece;
}

// The NIST ITS-90 functions of one letter type. Voltages in mV, temperatures in degrees C.
struct TTypeTables {
    double FLowVoltage;
    double FHighVoltage;
    std::span<const TPolynomialPiece> FInverse;  // t(E)
    double FLowTemperature;
    double FHighTemperature;
    std::span<const TPolynomialPiece> FReference;  // E(t)
    // Type K only: the term a0 * exp(a1 * (t - a2)^2) added above 0 degrees C.
    bool FHasExponential;
    double FA0;
    double FA1;
    double FA2;
};

// The tables of a letter type; nullptr for tctNONE and values outside the enumeration.
const TTypeTables* GetTypeTables(TThermoCoupleTypes type);

}  // namespace qx::thermo
