#pragma once

#include <QString>
#include <cstdint>

#include "qxbase/framework/export.h"

// Number text that never depends on the process locale: "." is always the decimal separator.
namespace qx {

// The general float format: the shorter of fixed and exponent form with up to 15 significant
// digits. Fixed form is used while the integer part has at most 15 digits and |value| >= 1E-5;
// otherwise exponent form with "E", a sign only when negative and no leading zeros
// (1.7E30, 1E-6). NaN and infinities give "NAN", "INF" and "-INF"; -0 gives "0". A value
// that the rounding would carry past the largest double gets the shortest digits that read
// back exactly instead (1.7976931348623157E308), so StrToFloat reads every text written here.
QXBASE_EXPORT QString FloatToStr(double value);
// The same format with another number of significant digits (clamped to 1..17); fixed form
// is used while the integer part has at most that many digits. Singles use 7.
QXBASE_EXPORT QString FloatToStrGeneral(double value, int precision);

// Parses a decimal float: optional blanks, sign, digits with an optional "." and exponent
// ("E" or "e", optional sign), optional trailing blanks; also "INF", "-INF" and "NAN" in any
// letter case. Raises EConvertError ("'<text>' is not a valid floating point value") for
// anything else, including an empty text and values out of the double range.
QXBASE_EXPORT double StrToFloat(const QString& text);
// As StrToFloat, but returns false instead of raising.
QXBASE_EXPORT bool TryStrToFloat(const QString& text, double& value);

// Decimal integers with optional leading blanks and sign, or hexadecimal with "$" or "0x".
// Raises EConvertError ("'<text>' is not a valid integer value") for anything else and for
// values outside the target range.
QXBASE_EXPORT std::int32_t StrToInt(const QString& text);
QXBASE_EXPORT std::int64_t StrToInt64(const QString& text);
QXBASE_EXPORT bool TryStrToInt(const QString& text, std::int32_t& value);
QXBASE_EXPORT bool TryStrToInt64(const QString& text, std::int64_t& value);

QXBASE_EXPORT QString IntToStr(std::int64_t value);

}  // namespace qx
