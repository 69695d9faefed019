#include "qxbase/chart/eng_units.h"

#include <cmath>

namespace qx {

QString GetEngUnitString(int Exponent)
{
    switch (Exponent) {
    case -18: return QStringLiteral("a");
    case -15: return QStringLiteral("f");
    case -12: return QStringLiteral("p");
    case -9: return QStringLiteral("n");
    case -6: return QString(QChar(0xB5));
    case -3: return QStringLiteral("m");
    case 0: return QString();
    case 3: return QStringLiteral("k");
    case 6: return QStringLiteral("M");
    case 9: return QStringLiteral("G");
    case 12: return QStringLiteral("T");
    case 15: return QStringLiteral("P");
    default: return QStringLiteral("x");
    }
}

int EngineeringExponent(double Value)
{
    const double magnitude = std::fabs(Value);
    if (!std::isfinite(magnitude) || magnitude == 0.0)
        return 0;
    int exponent = 15;
    // Compared against exact powers so that 1000 is "1 k", not "1000 ".
    while (exponent > -18 && magnitude < std::pow(10.0, exponent))
        exponent -= 3;
    return exponent;
}

}  // namespace qx
