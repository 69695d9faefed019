#include "qxbase/framework/prop_ini_file.h"

#include <cmath>

#include "qxbase/framework/number_text.h"

namespace qx {
namespace {

const QString kEscapeMarker = QStringLiteral("\\e:");

bool SameName(const QString& a, const QString& b) { return a.compare(b, Qt::CaseInsensitive) == 0; }

bool HasLineBreak(const QString& text)
{
    return text.contains(QLatin1Char('\r')) || text.contains(QLatin1Char('\n'));
}

// The checks mirror the parser: a name that fails them would read back differently.
bool IsStorableSection(const QString& name)
{
    return name == name.trimmed() && !name.contains(QLatin1Char(']')) && !HasLineBreak(name);
}

bool IsStorableKey(const QString& key)
{
    return !key.isEmpty() && key == key.trimmed() && !key.contains(QLatin1Char('=')) && !HasLineBreak(key) &&
           !key.startsWith(QLatin1Char(';')) && !key.startsWith(QLatin1Char('['));
}

void CheckNames(const QString& section, const QString& key)
{
    if (!IsStorableSection(section))
        throw EKSPropIniFileError(QStringLiteral("Invalid ini section name '%1'").arg(section));
    if (!IsStorableKey(key))
        throw EKSPropIniFileError(QStringLiteral("Invalid ini key name '%1' in section '%2'").arg(key, section));
}

}  // namespace

QString TKSPropIniFile::EncodeValue(const QString& value)
{
    if (!HasLineBreak(value) && !value.startsWith(kEscapeMarker)) return value;
    QString out = kEscapeMarker;
    out.reserve(kEscapeMarker.size() + value.size() + 8);
    for (QChar ch : value) {
        if (ch == QLatin1Char('\\'))
            out += QLatin1String("\\\\");
        else if (ch == QLatin1Char('\r'))
            out += QLatin1String("\\r");
        else if (ch == QLatin1Char('\n'))
            out += QLatin1String("\\n");
        else
            out += ch;
    }
    return out;
}

QString TKSPropIniFile::DecodeValue(const QString& text)
{
    if (!text.startsWith(kEscapeMarker)) return text;
    QString out;
    out.reserve(text.size());
    for (qsizetype i = kEscapeMarker.size(); i < text.size(); ++i) {
        const QChar ch = text[i];
        if (ch != QLatin1Char('\\') || i + 1 == text.size()) {
            out += ch;
            continue;
        }
        const QChar next = text[i + 1];
        if (next == QLatin1Char('\\'))
            out += QLatin1Char('\\');
        else if (next == QLatin1Char('r'))
            out += QLatin1Char('\r');
        else if (next == QLatin1Char('n'))
            out += QLatin1Char('\n');
        else {
            // Hand-written text may hold other sequences; they stay as they are.
            out += ch;
            continue;
        }
        ++i;
    }
    return out;
}

TKSPropIniFile::TKSPropIniFile(const QStringList& lines) { SetStrings(lines); }

void TKSPropIniFile::SetStrings(const QStringList& lines)
{
    FLines.clear();
    bool inSection = false;
    for (const QString& element : lines) {
        if (!HasLineBreak(element)) {
            AddLine(element, inSection);
            continue;
        }
        qsizetype start = 0;
        for (qsizetype i = 0; i <= element.size(); ++i) {
            if (i < element.size() && element[i] != QLatin1Char('\r') && element[i] != QLatin1Char('\n')) continue;
            AddLine(element.mid(start, i - start), inSection);
            if (i + 1 < element.size() && element[i] == QLatin1Char('\r') && element[i + 1] == QLatin1Char('\n')) ++i;
            start = i + 1;
        }
    }
}

void TKSPropIniFile::AddLine(const QString& text, bool& inSection)
{
    TLine line;
    line.FText = text;
    const QString trimmed = text.trimmed();
    if (trimmed.size() >= 2 && trimmed.startsWith(QLatin1Char('[')) && trimmed.endsWith(QLatin1Char(']'))) {
        line.FKind = lkSection;
        line.FName = trimmed.mid(1, trimmed.size() - 2).trimmed();
        inSection = true;
    } else if (inSection) {
        const qsizetype eq = text.indexOf(QLatin1Char('='));
        if (eq > 0) {
            const QString key = text.left(eq).trimmed();
            if (IsStorableKey(key)) {
                line.FKind = lkEntry;
                line.FName = key;
                line.FValue = text.mid(eq + 1);
            }
        }
    }
    FLines.push_back(std::move(line));
}

void TKSPropIniFile::WriteToStringlist(QStringList& lines) const
{
    lines.clear();
    lines.reserve(static_cast<qsizetype>(FLines.size()));
    for (const TLine& line : FLines) lines.append(line.FText);
}

void TKSPropIniFile::Clear() { FLines.clear(); }

int TKSPropIniFile::FindEntry(const QString& section, const QString& key) const
{
    bool inSection = false;
    for (std::size_t i = 0; i < FLines.size(); ++i) {
        const TLine& line = FLines[i];
        if (line.FKind == lkSection)
            inSection = SameName(line.FName, section);
        else if (inSection && line.FKind == lkEntry && SameName(line.FName, key))
            return static_cast<int>(i);
    }
    return -1;
}

// After the section's last entry, so that comments and blank lines closing it stay behind the
// new key; -1 when the section does not exist.
int TKSPropIniFile::InsertPosition(const QString& section) const
{
    int position = -1;
    bool inSection = false;
    for (std::size_t i = 0; i < FLines.size(); ++i) {
        const TLine& line = FLines[i];
        if (line.FKind == lkSection) {
            inSection = SameName(line.FName, section);
            if (inSection && position < 0) position = static_cast<int>(i) + 1;
        } else if (inSection && line.FKind == lkEntry) {
            position = static_cast<int>(i) + 1;
        }
    }
    return position;
}

QString TKSPropIniFile::ReadString(const QString& section, const QString& key, const QString& defaultValue) const
{
    const int index = FindEntry(section, key);
    return index < 0 ? defaultValue : DecodeValue(FLines[static_cast<std::size_t>(index)].FValue);
}

std::int32_t TKSPropIniFile::ReadInteger(const QString& section, const QString& key, std::int32_t defaultValue) const
{
    const int index = FindEntry(section, key);
    std::int32_t value = 0;
    if (index < 0 || !TryStrToInt(DecodeValue(FLines[static_cast<std::size_t>(index)].FValue).trimmed(), value))
        return defaultValue;
    return value;
}

bool TKSPropIniFile::ReadBool(const QString& section, const QString& key, bool defaultValue) const
{
    return ReadInteger(section, key, defaultValue ? 1 : 0) != 0;
}

double TKSPropIniFile::ReadFloat(const QString& section, const QString& key, double defaultValue) const
{
    const int index = FindEntry(section, key);
    double value = 0;
    if (index < 0 || !TryStrToFloat(DecodeValue(FLines[static_cast<std::size_t>(index)].FValue).trimmed(), value))
        return defaultValue;
    return value;
}

void TKSPropIniFile::WriteString(const QString& section, const QString& key, const QString& value)
{
    CheckNames(section, key);
    TLine entry;
    entry.FKind = lkEntry;
    entry.FName = key;
    entry.FValue = EncodeValue(value);
    const int index = FindEntry(section, key);
    if (index >= 0) {
        // Keep the key as the line spells it; only the value changes.
        TLine& line = FLines[static_cast<std::size_t>(index)];
        line.FValue = entry.FValue;
        line.FText = line.FName + QLatin1Char('=') + line.FValue;
        return;
    }
    entry.FText = key + QLatin1Char('=') + entry.FValue;
    const int position = InsertPosition(section);
    if (position >= 0) {
        FLines.insert(FLines.begin() + position, std::move(entry));
        return;
    }
    TLine header;
    header.FKind = lkSection;
    header.FName = section;
    header.FText = QLatin1Char('[') + section + QLatin1Char(']');
    FLines.push_back(std::move(header));
    FLines.push_back(std::move(entry));
}

void TKSPropIniFile::WriteInteger(const QString& section, const QString& key, std::int32_t value)
{
    WriteString(section, key, IntToStr(value));
}

void TKSPropIniFile::WriteBool(const QString& section, const QString& key, bool value)
{
    WriteString(section, key, value ? QStringLiteral("1") : QStringLiteral("0"));
}

void TKSPropIniFile::WriteFloat(const QString& section, const QString& key, double value)
{
    // 15 digits can miss the double (0.1 + 0.2 reads back as 0.3); take up to 17.
    QString text = FloatToStr(value);
    double back = 0;
    for (int precision = 16; std::isfinite(value) && precision <= 17; ++precision) {
        if (TryStrToFloat(text, back) && back == value) break;
        text = FloatToStrGeneral(value, precision);
    }
    WriteString(section, key, text);
}

bool TKSPropIniFile::SectionExists(const QString& section) const
{
    for (const TLine& line : FLines)
        if (line.FKind == lkSection && SameName(line.FName, section)) return true;
    return false;
}

bool TKSPropIniFile::ValueExists(const QString& section, const QString& key) const
{
    return FindEntry(section, key) >= 0;
}

QStringList TKSPropIniFile::ReadSection(const QString& section) const
{
    QStringList keys;
    bool inSection = false;
    for (const TLine& line : FLines) {
        if (line.FKind == lkSection)
            inSection = SameName(line.FName, section);
        else if (inSection && line.FKind == lkEntry && !keys.contains(line.FName, Qt::CaseInsensitive))
            keys.append(line.FName);
    }
    return keys;
}

QStringList TKSPropIniFile::ReadSections() const
{
    QStringList names;
    for (const TLine& line : FLines)
        if (line.FKind == lkSection && !names.contains(line.FName, Qt::CaseInsensitive)) names.append(line.FName);
    return names;
}

template <typename TPredicate>
void TKSPropIniFile::RemoveLines(TPredicate drop)
{
    std::vector<TLine> kept;
    kept.reserve(FLines.size());
    QString section;
    bool inAnySection = false;
    for (TLine& line : FLines) {
        if (line.FKind == lkSection) {
            section = line.FName;
            inAnySection = true;
        }
        if (!(inAnySection && drop(section, line))) kept.push_back(std::move(line));
    }
    FLines = std::move(kept);
}

void TKSPropIniFile::EraseSection(const QString& section)
{
    RemoveLines([&](const QString& owner, const TLine&) { return SameName(owner, section); });
}

void TKSPropIniFile::DeleteKey(const QString& section, const QString& key)
{
    RemoveLines([&](const QString& owner, const TLine& line) {
        return line.FKind == lkEntry && SameName(owner, section) && SameName(line.FName, key);
    });
}

}  // namespace qx
