#include "qxbase/measure/shortdef_text.h"

#include <QStringView>
#include <array>
#include <charconv>
#include <limits>
#include <string>
#include <system_error>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/number_text.h"

namespace qx {
namespace {

constexpr int kFieldCount = 8;

[[noreturn]] void RaiseInteger(const QString& field)
{
    throw EConvertError(QStringLiteral("'%1' is not a valid integer value").arg(field));
}

// The unsigned 64-bit values above the signed range, in the integer syntax of StrToInt64.
bool TryStrToUInt64(const QString& text, std::uint64_t& value)
{
    std::string s;
    for (QChar ch : text) {
        if (ch.unicode() > 0x7F) return false;
        s.push_back(static_cast<char>(ch.unicode()));
    }
    std::string_view v = s;
    while (!v.empty() && (v.front() == ' ' || v.front() == '\t')) v.remove_prefix(1);
    if (!v.empty() && v.front() == '+') v.remove_prefix(1);
    int base = 10;
    if (!v.empty() && v.front() == '$') {
        base = 16;
        v.remove_prefix(1);
    } else if (v.size() > 1 && v[0] == '0' && (v[1] == 'x' || v[1] == 'X')) {
        base = 16;
        v.remove_prefix(2);
    }
    if (v.empty() || v.front() == '+' || v.front() == '-') return false;
    auto [ptr, ec] = std::from_chars(v.data(), v.data() + v.size(), value, base);
    return ec == std::errc() && ptr == v.data() + v.size();
}

// Fields written from unsigned values read back as their bits; negative texts are accepted
// too, as the signed reading of the same bits.
std::uint32_t ReadBits32(const QString& field)
{
    std::int64_t v = 0;
    if (!TryStrToInt64(field, v) || v < std::numeric_limits<std::int32_t>::min() ||
        v > static_cast<std::int64_t>(std::numeric_limits<std::uint32_t>::max()))
        RaiseInteger(field);
    return static_cast<std::uint32_t>(v);
}

std::uint64_t ReadBits64(const QString& field)
{
    std::int64_t v = 0;
    if (TryStrToInt64(field, v)) return static_cast<std::uint64_t>(v);
    std::uint64_t u = 0;
    if (TryStrToUInt64(field, u)) return u;
    RaiseInteger(field);
}

struct ParsedShortdef {
    std::uint32_t Value1;
    double Value2;
    double Value3;
    std::uint64_t Value45;
    std::uint32_t Value6;
    double Value7;
    double Value8;
    std::int32_t Value9;
};

ParsedShortdef Parse(const QString& text)
{
    std::array<QString, kFieldCount> fields;
    qsizetype pos = 0;
    for (QString& field : fields) {
        while (pos < text.size() && text[pos] == QLatin1Char(' ')) ++pos;
        const qsizetype start = pos;
        while (pos < text.size() && text[pos] != QLatin1Char(' ')) ++pos;
        field = text.mid(start, pos - start);
    }

    int current = 0;
    try {
        ParsedShortdef p{};
        p.Value1 = ReadBits32(fields[current]);
        p.Value2 = StrToFloat(fields[++current]);
        p.Value3 = StrToFloat(fields[++current]);
        p.Value45 = ReadBits64(fields[++current]);
        p.Value6 = ReadBits32(fields[++current]);
        p.Value7 = StrToFloat(fields[++current]);
        p.Value8 = StrToFloat(fields[++current]);
        p.Value9 = StrToInt(fields[++current]);
        return p;
    } catch (const EConvertError& e) {
        throw EConvertError(QStringLiteral("%1 in field %2 of the channel definition \"%3\"")
                                .arg(e.Message())
                                .arg(current + 1)
                                .arg(text));
    }
}

}  // namespace

QString CreateShortDef(std::uint32_t value1, double value2, double value3, std::uint32_t value4,
                       std::uint32_t value5, std::uint32_t value6, double value7, double value8,
                       std::int32_t value9)
{
    const std::uint64_t firstSample = (static_cast<std::uint64_t>(value5) << 32) | value4;
    const QChar sep(QLatin1Char(' '));
    QString s;
    s.reserve(96);
    s += QString::number(value1);
    s += sep;
    s += FloatToStr(value2);
    s += sep;
    s += FloatToStr(value3);
    s += sep;
    s += QString::number(firstSample);
    s += sep;
    s += QString::number(value6);
    s += sep;
    s += FloatToStr(value7);
    s += sep;
    s += FloatToStr(value8);
    s += sep;
    s += QString::number(value9);
    return s;
}

QString CreateShortDef(const TRVShortdef& def)
{
    return CreateShortDef(static_cast<std::uint32_t>(def.ChannelNo), def.XStart, def.XEnd,
                          static_cast<std::uint32_t>(def.FirstSample),
                          static_cast<std::uint32_t>(def.FirstSample >> 32), def.Flags, def.YMin,
                          def.YMax, def.Color);
}

void ParseShortItemDef(const QString& text, std::int32_t& value1, double& value2, double& value3,
                       std::int32_t& value4, std::int32_t& value5, std::int32_t& value6,
                       double& value7, double& value8, std::int32_t& value9)
{
    const ParsedShortdef p = Parse(text);
    value1 = static_cast<std::int32_t>(p.Value1);
    value2 = p.Value2;
    value3 = p.Value3;
    value4 = static_cast<std::int32_t>(static_cast<std::uint32_t>(p.Value45));
    value5 = static_cast<std::int32_t>(static_cast<std::uint32_t>(p.Value45 >> 32));
    value6 = static_cast<std::int32_t>(p.Value6);
    value7 = p.Value7;
    value8 = p.Value8;
    value9 = p.Value9;
}

void ParseShortItemDef(const QString& text, TRVShortdef& def)
{
    const ParsedShortdef p = Parse(text);
    def.ChannelNo = static_cast<std::int32_t>(p.Value1);
    def.XStart = p.Value2;
    def.XEnd = p.Value3;
    def.FirstSample = p.Value45;
    def.Flags = p.Value6;
    def.YMin = p.Value7;
    def.YMax = p.Value8;
    def.Color = p.Value9;
}

}  // namespace qx
