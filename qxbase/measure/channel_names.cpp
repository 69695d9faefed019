#include "qxbase/measure/channel_names.h"

#include <QSet>
#include <QStringView>
#include <limits>

namespace qx {
namespace {

constexpr qsizetype kMaxPostfixLength = 255;

bool IsDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

int Sign(int value)
{
    return (value > 0) - (value < 0);
}

// Runs of digits compare by value (length without leading zeros, then digit by digit), so
// numbers of any length order correctly; everything else compares case-folded, code unit by
// code unit.
int NaturalCompare(QStringView a, QStringView b)
{
    qsizetype i = 0;
    qsizetype j = 0;
    while (i < a.size() && j < b.size()) {
        if (IsDigit(a[i]) && IsDigit(b[j])) {
            qsizetype endA = i;
            while (endA < a.size() && IsDigit(a[endA])) ++endA;
            qsizetype endB = j;
            while (endB < b.size() && IsDigit(b[endB])) ++endB;
            while (i < endA - 1 && a[i] == QLatin1Char('0')) ++i;
            while (j < endB - 1 && b[j] == QLatin1Char('0')) ++j;
            if (endA - i != endB - j) return endA - i < endB - j ? -1 : 1;
            for (; i < endA; ++i, ++j)
                if (a[i] != b[j]) return a[i] < b[j] ? -1 : 1;
            continue;
        }
        const char16_t ca = a[i].toCaseFolded().unicode();
        const char16_t cb = b[j].toCaseFolded().unicode();
        if (ca != cb) return ca < cb ? -1 : 1;
        ++i;
        ++j;
    }
    if (i < a.size()) return 1;
    if (j < b.size()) return -1;
    return 0;
}

}  // namespace

std::int32_t GetPostfixNumberFromName(const QString& name)
{
    qsizetype start = name.size();
    while (start > 0 && IsDigit(name[start - 1])) --start;
    if (start == name.size()) return -1;
    std::int64_t value = 0;
    for (qsizetype k = start; k < name.size(); ++k) {
        value = value * 10 + (name[k].unicode() - u'0');
        if (value > std::numeric_limits<std::int32_t>::max()) return -1;
    }
    return static_cast<std::int32_t>(value);
}

QString GetPostfixStringFromName(const QString& name)
{
    qsizetype start = name.size();
    while (start > 0 && (IsDigit(name[start - 1]) || name[start - 1] == QLatin1Char('_'))) --start;
    return name.mid(start, kMaxPostfixLength);
}

QString GetChannelPartFromChannelName(const QString& name)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot < 0 || dot == name.size() - 1) return name;
    return name.mid(dot + 1);
}

bool ExistDoubleChannelPartEntries(const QStringList& names)
{
    QSet<QString> seen;
    seen.reserve(names.size());
    for (const QString& name : names) {
        const QString part = GetChannelPartFromChannelName(name);
        if (seen.contains(part)) return true;
        seen.insert(part);
    }
    return false;
}

bool FindChannelPartOriginIndex(const QStringList& names, const QString& name, int& index,
                                bool exact)
{
    index = -1;
    const QString part = exact ? name : GetChannelPartFromChannelName(name);
    for (qsizetype k = 0; k < names.size(); ++k) {
        const bool match =
            exact ? names[k] == name : GetChannelPartFromChannelName(names[k]) == part;
        if (match) {
            index = static_cast<int>(k);
            return true;
        }
    }
    return false;
}

int theCompare(const QString& a, const QString& b)
{
    const int natural = NaturalCompare(a, b);
    if (natural != 0) return natural;
    return Sign(QString::compare(a, b, Qt::CaseSensitive));
}

int theTargetCompare(const QString& a, const QString& b)
{
    const int byPart =
        theCompare(GetChannelPartFromChannelName(a), GetChannelPartFromChannelName(b));
    if (byPart != 0) return byPart;
    return theCompare(a, b);
}

QString ExtendFilename(const QString& fileName)
{
    const qsizetype fileStart =
        qMax(fileName.lastIndexOf(QLatin1Char('/')), fileName.lastIndexOf(QLatin1Char('\\'))) + 1;
    const QStringView file = QStringView(fileName).mid(fileStart);
    // Nothing to complete: no name, a directory, or the "." and ".." entries.
    if (file.isEmpty() || file == u"." || file == u"..") return fileName;
    const qsizetype dot = file.lastIndexOf(QLatin1Char('.'));
    if (dot > 0 && dot < file.size() - 1) return fileName;
    if (dot > 0) return fileName + DataFileExtension.mid(1);
    return fileName + DataFileExtension;
}

}  // namespace qx
