#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/export.h"

namespace qx {

// A section or key name that a line of the store cannot hold.
class QXBASE_EXPORT EKSPropIniFileError : public Exception {
public:
    using Exception::Exception;
};

// An ini-style key/value store kept as a list of lines: "[Section]" lines and "Key=Value"
// lines. Section and key names compare case-insensitively; sections and keys keep the order
// in which they were first written, and rewriting a key replaces its value in place. Other
// lines (comments, blank lines, garbage) are kept as they are and never disturb a read.
//
// A value is everything after the first "=" of its line, verbatim. A value that contains a
// line break, or that begins with the marker "\e:", is written as "\e:" followed by the value
// with "\" as "\\", CR as "\r" and LF as "\n"; every other value is written unchanged. So
// whatever is written reads back unchanged.
class QXBASE_EXPORT TKSPropIniFile {
public:
    TKSPropIniFile() = default;
    // Builds the store from lines; an element holding line breaks counts as several lines.
    explicit TKSPropIniFile(const QStringList& lines);

    void SetStrings(const QStringList& lines);
    // Replaces the content of lines with the store's lines.
    void WriteToStringlist(QStringList& lines) const;
    void Clear();

    // Reads give the default when the key is missing; number reads also when the text is not
    // a number. Names that cannot be stored simply are not found.
    QString ReadString(const QString& section, const QString& key, const QString& defaultValue) const;
    // Decimal, or hexadecimal with "$" or "0x"; blanks around the number are allowed.
    std::int32_t ReadInteger(const QString& section, const QString& key, std::int32_t defaultValue) const;
    // An integer; non-zero is true. "true" and other words give the default.
    bool ReadBool(const QString& section, const QString& key, bool defaultValue) const;
    double ReadFloat(const QString& section, const QString& key, double defaultValue) const;

    // Writes raise EKSPropIniFileError for a section name that is not trimmed or holds "]" or a
    // line break, and for a key that is empty, not trimmed, holds "=" or a line break, or
    // starts with ";" or "[". The store is unchanged then.
    void WriteString(const QString& section, const QString& key, const QString& value);
    void WriteInteger(const QString& section, const QString& key, std::int32_t value);
    void WriteBool(const QString& section, const QString& key, bool value);  // "1" or "0"
    // The general float format with "."; 16 or 17 digits only where 15 would not read back
    // the same double.
    void WriteFloat(const QString& section, const QString& key, double value);

    bool SectionExists(const QString& section) const;
    bool ValueExists(const QString& section, const QString& key) const;
    QStringList ReadSection(const QString& section) const;  // its keys, in order
    QStringList ReadSections() const;
    // Removes the section's header and every line up to the next section.
    void EraseSection(const QString& section);
    void DeleteKey(const QString& section, const QString& key);

    // The escaping rule of values, for whoever writes such text by other means.
    static QString EncodeValue(const QString& value);
    static QString DecodeValue(const QString& text);

private:
    enum TLineKind : std::uint8_t { lkOther, lkSection, lkEntry };
    struct TLine {
        TLineKind FKind = lkOther;
        QString FText;   // the line as it is written out
        QString FName;   // section or key name
        QString FValue;  // entries: the encoded text after the first "="
    };

    void AddLine(const QString& text, bool& inSection);
    int FindEntry(const QString& section, const QString& key) const;
    int InsertPosition(const QString& section) const;
    // Drops the lines inside sections for which drop(section name, line) is true.
    template <typename TPredicate>
    void RemoveLines(TPredicate drop);

    std::vector<TLine> FLines;
};

}  // namespace qx
