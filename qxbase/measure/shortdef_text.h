#pragma once

#include <QString>
#include <cstdint>

#include "qxbase/framework/export.h"
#include "qxbase/measure/channel_types.h"

// The text form of a channel definition: eight fields separated by single spaces,
//   value1 value2 value3 (value5 * 2^32 + value4) value6 value7 value8 value9
// integers in decimal, floats in the general format with "." whatever the locale (15
// significant digits, 1.7E30 for large and small magnitudes).
namespace qx {

// Writes the eight fields. Fields 1, 4 and 5 are written as the unsigned values they are
// given (4294967295, not -1); ParseShortItemDef reads them back bit for bit.
QXBASE_EXPORT QString CreateShortDef(std::uint32_t value1, double value2, double value3,
                                     std::uint32_t value4, std::uint32_t value5,
                                     std::uint32_t value6, double value7, double value8,
                                     std::int32_t value9);

// The text form of a definition: ChannelNo, XStart, XEnd, FirstSample, Flags, YMin, YMax,
// Color. Handle and the reserved fields are not part of it.
QXBASE_EXPORT QString CreateShortDef(const TRVShortdef& def);

// Reads the eight fields back. Fields are separated by one or more spaces (code 32 only);
// text after the eighth field is ignored. Raises EConvertError, whose message names the
// field, leaving every output as it was, when a field is missing, empty, not a number or out
// of range:
//   fields 1 and 5: -2^31 .. 2^32-1 (above 2^31-1 read as the unsigned value's bits),
//   field 4:        -2^63 .. 2^64-1 (likewise for 64 bits),
//   field 8:        -2^31 .. 2^31-1,
//   fields 2, 3, 6, 7: any double, "INF" and "NAN" included.
// Integers may also be written in hexadecimal ("$1F", "0x1F").
QXBASE_EXPORT void ParseShortItemDef(const QString& text, std::int32_t& value1, double& value2,
                                     double& value3, std::int32_t& value4, std::int32_t& value5,
                                     std::int32_t& value6, double& value7, double& value8,
                                     std::int32_t& value9);

// Reads the text form into the fields it carries (see CreateShortDef above); Handle and the
// reserved fields keep their values. Raises as the form above, leaving def unchanged.
QXBASE_EXPORT void ParseShortItemDef(const QString& text, TRVShortdef& def);

}  // namespace qx
