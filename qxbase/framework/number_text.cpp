#include "qxbase/framework/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <system_error>

#include "qxbase/framework/exception.h"

namespace qx {
namespace {

constexpr int kPrecision = 15;
constexpr int kMaxPrecision = 17;
// Below this no rounding to 1..17 digits can carry a double past the largest one (one digit
// takes 1.5E308 up to 2E308).
constexpr double kRoundingMayOverflow = 1e308;

[[noreturn]] void RaiseFloat(const QString& text)
{
    throw EConvertError(QStringLiteral("'%1' is not a valid floating point value").arg(text));
}

[[noreturn]] void RaiseInt(const QString& text)
{
    throw EConvertError(QStringLiteral("'%1' is not a valid integer value").arg(text));
}

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

// Number texts are plain ASCII; anything else cannot be a number.
bool ToAscii(const QString& text, std::string& out)
{
    out.clear();
    out.reserve(static_cast<std::size_t>(text.size()));
    for (QChar ch : text) {
        if (ch.unicode() > 0x7F) return false;
        out.push_back(static_cast<char>(ch.unicode()));
    }
    return true;
}

std::string_view Trimmed(std::string_view s)
{
    while (!s.empty() && IsBlank(s.front())) s.remove_prefix(1);
    while (!s.empty() && IsBlank(s.back())) s.remove_suffix(1);
    return s;
}

bool EqualsNoCase(std::string_view a, std::string_view b)
{
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        char x = a[i];
        if (x >= 'a' && x <= 'z') x = static_cast<char>(x - 'a' + 'A');
        if (x != b[i]) return false;
    }
    return true;
}

}  // namespace

QString FloatToStr(double value) { return FloatToStrGeneral(value, kPrecision); }

QString FloatToStrGeneral(double value, int precision)
{
    precision = std::clamp(precision, 1, kMaxPrecision);
    if (std::isnan(value)) return QStringLiteral("NAN");
    if (std::isinf(value)) return value > 0 ? QStringLiteral("INF") : QStringLiteral("-INF");
    if (value == 0.0) return QStringLiteral("0");

    // Round to 15 significant digits once; both forms are built from these digits.
    std::array<char, 64> buf{};
    auto res = std::to_chars(buf.data(), buf.data() + buf.size(), value,
                             std::chars_format::scientific, precision - 1);
    // Rounding the largest doubles up can leave the range (1.79769313486232E308 for the
    // largest), which no reader takes; they get the shortest digits that read back instead.
    if (std::fabs(value) > kRoundingMayOverflow) {
        double back = 0;
        if (std::from_chars(buf.data(), res.ptr, back).ec != std::errc())
            res = std::to_chars(buf.data(), buf.data() + buf.size(), value, std::chars_format::scientific);
    }
    std::string_view sci(buf.data(), static_cast<std::size_t>(res.ptr - buf.data()));
    const bool negative = sci.front() == '-';
    if (negative) sci.remove_prefix(1);
    const std::size_t ePos = sci.find('e');
    std::string digits;
    for (char c : sci.substr(0, ePos))
        if (c != '.') digits.push_back(c);
    int exponent = 0;
    std::from_chars(sci.data() + ePos + 1 + (sci[ePos + 1] == '+' ? 1 : 0), sci.data() + sci.size(),
                    exponent);
    while (digits.size() > 1 && digits.back() == '0') digits.pop_back();

    std::string out;
    if (negative) out.push_back('-');
    const bool fixed = exponent < precision && std::fabs(value) >= 1e-5;
    if (fixed) {
        if (exponent < 0) {
            out += "0.";
            out.append(static_cast<std::size_t>(-exponent - 1), '0');
            out += digits;
        } else {
            const auto intDigits = static_cast<std::size_t>(exponent) + 1;
            if (digits.size() <= intDigits) {
                out += digits;
                out.append(intDigits - digits.size(), '0');
            } else {
                out.append(digits, 0, intDigits);
                out.push_back('.');
                out.append(digits, intDigits, std::string::npos);
            }
        }
    } else {
        out.push_back(digits[0]);
        if (digits.size() > 1) {
            out.push_back('.');
            out.append(digits, 1, std::string::npos);
        }
        out.push_back('E');
        out += std::to_string(exponent);
    }
    return QString::fromLatin1(out.data(), static_cast<qsizetype>(out.size()));
}

bool TryStrToFloat(const QString& text, double& value)
{
    std::string ascii;
    if (!ToAscii(text, ascii)) return false;
    std::string_view s = Trimmed(ascii);
    if (s.empty()) return false;

    bool negative = false;
    std::string_view body = s;
    if (body.front() == '+' || body.front() == '-') {
        negative = body.front() == '-';
        body.remove_prefix(1);
    }
    if (EqualsNoCase(body, "INF")) {
        value = negative ? -std::numeric_limits<double>::infinity()
                         : std::numeric_limits<double>::infinity();
        return true;
    }
    if (EqualsNoCase(body, "NAN")) {
        value = std::numeric_limits<double>::quiet_NaN();
        return true;
    }
    // from_chars would accept "inf", "nan" and hex-free forms only; require a digit up front
    // so that texts like "e5" or "." are refused.
    if (body.empty() || !(std::isdigit(static_cast<unsigned char>(body.front())) || body.front() == '.'))
        return false;
    double parsed = 0;
    auto [ptr, ec] = std::from_chars(body.data(), body.data() + body.size(), parsed,
                                     std::chars_format::general);
    if (ec != std::errc() || ptr != body.data() + body.size()) return false;
    value = negative ? -parsed : parsed;
    return true;
}

double StrToFloat(const QString& text)
{
    double v = 0;
    if (!TryStrToFloat(text, v)) RaiseFloat(text);
    return v;
}

bool TryStrToInt64(const QString& text, std::int64_t& value)
{
    std::string ascii;
    if (!ToAscii(text, ascii)) return false;
    std::string_view s = ascii;
    while (!s.empty() && IsBlank(s.front())) s.remove_prefix(1);
    if (s.empty()) return false;

    bool negative = false;
    if (s.front() == '+' || s.front() == '-') {
        negative = s.front() == '-';
        s.remove_prefix(1);
    }
    int base = 10;
    if (!s.empty() && s.front() == '$') {
        base = 16;
        s.remove_prefix(1);
    } else if (s.size() > 1 && s[0] == '0' && (s[1] == 'x' || s[1] == 'X')) {
        base = 16;
        s.remove_prefix(2);
    }
    if (s.empty() || s.front() == '+' || s.front() == '-') return false;

    std::uint64_t magnitude = 0;
    auto [ptr, ec] = std::from_chars(s.data(), s.data() + s.size(), magnitude, base);
    if (ec != std::errc() || ptr != s.data() + s.size()) return false;
    constexpr auto kMaxPos = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (negative) {
        if (magnitude > kMaxPos + 1) return false;
        value = magnitude == kMaxPos + 1 ? std::numeric_limits<std::int64_t>::min()
                                         : -static_cast<std::int64_t>(magnitude);
    } else {
        if (magnitude > kMaxPos) return false;
        value = static_cast<std::int64_t>(magnitude);
    }
    return true;
}

bool TryStrToInt(const QString& text, std::int32_t& value)
{
    std::int64_t wide = 0;
    if (!TryStrToInt64(text, wide)) return false;
    if (wide < std::numeric_limits<std::int32_t>::min() || wide > std::numeric_limits<std::int32_t>::max())
        return false;
    value = static_cast<std::int32_t>(wide);
    return true;
}

std::int64_t StrToInt64(const QString& text)
{
    std::int64_t v = 0;
    if (!TryStrToInt64(text, v)) RaiseInt(text);
    return v;
}

std::int32_t StrToInt(const QString& text)
{
    std::int32_t v = 0;
    if (!TryStrToInt(text, v)) RaiseInt(text);
    return v;
}

QString IntToStr(std::int64_t value) { return QString::number(value); }

}  // namespace qx
