#pragma once

#include <QLatin1String>
#include <QString>
#include <QStringList>
#include <cstdint>

#include "qxbase/framework/export.h"

// Channel names look like "AI 3", "AI_12" or, for channels derived by a processor, "Sum.AI 3":
// the channel part is the text after the last ".", the postfix the digits at the end.
namespace qx {

// Extension of the data files that chart panels write, completed by ExtendFilename.
inline constexpr QLatin1String DataFileExtension(".dcf");

// The number that the name ends in ("AI 12" gives 12); -1 when the name does not end in a
// digit or the number does not fit in 32 bits. Never raises.
QXBASE_EXPORT std::int32_t GetPostfixNumberFromName(const QString& name);

// The run of digits and "_" at the end of the name, as it stands ("AI_12" gives "_12"); empty
// when the name ends in neither. A run longer than 255 characters is cut to its first 255.
QXBASE_EXPORT QString GetPostfixStringFromName(const QString& name);

// The text after the last "." ("Sum.AI 3" gives "AI 3"); the whole name when it has no "."
// or ends in one.
QXBASE_EXPORT QString GetChannelPartFromChannelName(const QString& name);

// True when two entries of the list have the same channel part.
QXBASE_EXPORT bool ExistDoubleChannelPartEntries(const QStringList& names);

// Sets index to the first entry that matches the name and returns true; index -1 and false
// when none matches. With exact an entry must equal the name; otherwise it matches when its
// channel part equals the name's channel part.
QXBASE_EXPORT bool FindChannelPartOriginIndex(const QStringList& names, const QString& name,
                                              int& index, bool exact);

// Natural order of channel names: runs of digits compare by their value, other characters
// case-insensitively, so "AI 2" < "AI 10" < "ai 11" < "AI_1"; names that tie that way ("AI 7",
// "AI 07", "ai 7") fall back to exact character order. Returns < 0, 0 (only for equal names)
// or > 0. Sort with [](auto& a, auto& b) { return theCompare(a, b) < 0; }.
QXBASE_EXPORT int theCompare(const QString& a, const QString& b);

// Orders names by their channel part (theCompare's order), then by the whole name, so the
// channels that processors derive from "AI 2" sort together before those from "AI 10".
QXBASE_EXPORT int theTargetCompare(const QString& a, const QString& b);

// Completes a data file name: appends ".dcf" when the file name has no extension ("run"
// gives "run.dcf", "run." gives "run.dcf"); a name with an extension comes back unchanged, as
// do an empty name, one that ends in a path separator ("/" or "\") and the entries "." and
// "..". A leading "." of the file name does not start an extension (".run" gives ".run.dcf").
QXBASE_EXPORT QString ExtendFilename(const QString& fileName);

}  // namespace qx
