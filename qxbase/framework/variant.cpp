#include "qxbase/framework/variant.h"

#include <QDate>
#include <QTime>
#include <cfloat>
#include <cmath>
#include <limits>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/number_text.h"

namespace qx {

struct Variant::TArray {
    int FLow = 0;
    TVarType FElementType = varVariant;
    std::vector<Variant> FItems;
};

namespace {

// OLE dates run from 0100-01-01 to 9999-12-31; day 0 is 1899-12-30.
constexpr double kOleDateMin = -657434.0;
constexpr double kOleDateEnd = 2958466.0;
constexpr qint64 kJulianDayOfOleZero = 2415019;
constexpr int kSecondsPerDay = 86400;
// Guards VarArrayCreate against bounds that would ask for gigabytes.
constexpr std::int64_t kMaxArrayCount = std::int64_t{1} << 26;
constexpr int kSinglePrecision = 7;

bool IsScalarType(TVarType type)
{
    return IsIntegerVarType(type) || type == varSingle || type == varDouble || type == varDate ||
           type == varOleStr || type == varBoolean;
}

[[noreturn]] void RaiseConvert(TVarType from, TVarType to)
{
    throw EVariantError(QStringLiteral("Could not convert variant of type (%1) into type (%2)")
                            .arg(VarTypeAsText(from), VarTypeAsText(to)));
}

[[noreturn]] void RaiseOverflow(TVarType from, TVarType to)
{
    throw EVariantError(QStringLiteral("Overflow while converting variant of type (%1) into type (%2)")
                            .arg(VarTypeAsText(from), VarTypeAsText(to)));
}

// OLE rounds to the nearest integer and halves to the even neighbour; done by hand so that
// the process rounding mode does not matter.
double RoundHalfEven(double x)
{
    const double low = std::floor(x);
    const double diff = x - low;
    if (diff < 0.5) return low;
    if (diff > 0.5) return low + 1;
    return std::fmod(low, 2.0) == 0 ? low : low + 1;
}

bool DoubleToInt64(double x, std::int64_t& out)
{
    if (!std::isfinite(x)) return false;
    const double r = RoundHalfEven(x);
    constexpr double kTwo63 = 9223372036854775808.0;
    if (r < -kTwo63 || r >= kTwo63) return false;
    out = static_cast<std::int64_t>(r);
    return true;
}

bool TextToBooleanName(const QString& text, bool& value)
{
    if (text.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0) {
        value = true;
        return true;
    }
    if (text.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0) {
        value = false;
        return true;
    }
    return false;
}

// A text as a number: a float, a decimal or hexadecimal integer, or True (-1) / False (0).
bool TextToDouble(const QString& text, double& value)
{
    if (TryStrToFloat(text, value)) return true;
    std::int64_t i = 0;
    if (TryStrToInt64(text, i)) {
        value = static_cast<double>(i);
        return true;
    }
    bool b = false;
    if (TextToBooleanName(text, b)) {
        value = b ? -1.0 : 0.0;
        return true;
    }
    return false;
}

QString Pad(int value, int width) { return QStringLiteral("%1").arg(value, width, 10, QLatin1Char('0')); }

QString DateToText(double oleDate)
{
    if (!(oleDate >= kOleDateMin && oleDate < kOleDateEnd)) RaiseConvert(varDate, varOleStr);
    // Before day 0 the integer part counts days backwards but the fraction still runs forward.
    qint64 day = static_cast<qint64>(std::trunc(oleDate));
    const double fraction = std::fabs(oleDate - static_cast<double>(day));
    qint64 seconds = std::llround(fraction * kSecondsPerDay);
    if (seconds >= kSecondsPerDay) {
        // The last half second of the range stays on its last day: 10000-01-01 does not read back.
        if (static_cast<double>(day + 1) < kOleDateEnd) {
            seconds -= kSecondsPerDay;
            ++day;
        } else {
            seconds = kSecondsPerDay - 1;
        }
    }
    const QDate date = QDate::fromJulianDay(kJulianDayOfOleZero + day);
    QString text = Pad(date.year(), 4) + QLatin1Char('-') + Pad(date.month(), 2) + QLatin1Char('-') +
                   Pad(date.day(), 2);
    if (seconds != 0) {
        const int s = static_cast<int>(seconds);
        text += QLatin1Char(' ') + Pad(s / 3600, 2) + QLatin1Char(':') + Pad(s / 60 % 60, 2) +
                QLatin1Char(':') + Pad(s % 60, 2);
    }
    return text;
}

// "yyyy-MM-dd" with an optional " hh:mm:ss" (or " hh:mm"), the form DateToText writes.
bool TextToDate(const QString& text, double& oleDate)
{
    const QStringList parts = text.trimmed().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (parts.isEmpty() || parts.size() > 2) return false;
    const QDate date = QDate::fromString(parts[0], QStringLiteral("yyyy-MM-dd"));
    if (!date.isValid()) return false;
    int seconds = 0;
    if (parts.size() == 2) {
        QTime time = QTime::fromString(parts[1], QStringLiteral("hh:mm:ss"));
        if (!time.isValid()) time = QTime::fromString(parts[1], QStringLiteral("hh:mm"));
        if (!time.isValid()) return false;
        seconds = time.msecsSinceStartOfDay() / 1000;
    }
    const double day = static_cast<double>(date.toJulianDay() - kJulianDayOfOleZero);
    const double fraction = static_cast<double>(seconds) / kSecondsPerDay;
    oleDate = day < 0 ? day - fraction : day + fraction;
    return oleDate >= kOleDateMin && oleDate < kOleDateEnd;
}

}  // namespace

QString VarTypeAsText(TVarType type)
{
    if (type & varArray) return QStringLiteral("Array ") + VarTypeAsText(type & varTypeMask);
    switch (type) {
    case varEmpty: return QStringLiteral("Empty");
    case varNull: return QStringLiteral("Null");
    case varSmallint: return QStringLiteral("Smallint");
    case varInteger: return QStringLiteral("Integer");
    case varSingle: return QStringLiteral("Single");
    case varDouble: return QStringLiteral("Double");
    case varDate: return QStringLiteral("Date");
    case varOleStr: return QStringLiteral("String");
    case varBoolean: return QStringLiteral("Boolean");
    case varVariant: return QStringLiteral("Variant");
    case varByte: return QStringLiteral("Byte");
    case varLongWord: return QStringLiteral("LongWord");
    case varInt64: return QStringLiteral("Int64");
    default: return QStringLiteral("$%1").arg(type, 4, 16, QLatin1Char('0')).toUpper();
    }
}

Variant::Variant() noexcept = default;
Variant::Variant(std::int32_t value) noexcept : FType(varInteger), FInt(value) {}
Variant::Variant(std::int64_t value) noexcept : FType(varInt64), FInt(value) {}
Variant::Variant(double value) noexcept : FType(varDouble), FFloat(value) {}
Variant::Variant(float value) noexcept : FType(varSingle), FFloat(value) {}
Variant::Variant(bool value) noexcept : FType(varBoolean), FInt(value ? 1 : 0) {}
Variant::Variant(const QString& value) : FType(varOleStr), FText(value) {}
Variant::Variant(const char* utf8) : FType(varOleStr), FText(QString::fromUtf8(utf8)) {}

Variant::Variant(const Variant& other)
    : FType(other.FType),
      FInt(other.FInt),
      FFloat(other.FFloat),
      FText(other.FText),
      FArray(other.FArray ? std::make_unique<TArray>(*other.FArray) : nullptr)
{
}

Variant::Variant(Variant&& other) noexcept
    : FType(std::exchange(other.FType, varEmpty)),
      FInt(std::exchange(other.FInt, 0)),
      FFloat(std::exchange(other.FFloat, 0.0)),
      FText(std::move(other.FText)),
      FArray(std::move(other.FArray))
{
}

Variant& Variant::operator=(const Variant& other)
{
    if (this != &other) {
        Variant copy(other);
        *this = std::move(copy);
    }
    return *this;
}

Variant& Variant::operator=(Variant&& other) noexcept
{
    if (this != &other) {
        FType = std::exchange(other.FType, varEmpty);
        FInt = std::exchange(other.FInt, 0);
        FFloat = std::exchange(other.FFloat, 0.0);
        FText = std::move(other.FText);
        other.FText.clear();
        FArray = std::move(other.FArray);
    }
    return *this;
}

Variant::~Variant() = default;

Variant Variant::Null() noexcept
{
    Variant v;
    v.FType = varNull;
    return v;
}

Variant Variant::FromSmallint(std::int16_t value) noexcept
{
    Variant v;
    v.FType = varSmallint;
    v.FInt = value;
    return v;
}

Variant Variant::FromByte(std::uint8_t value) noexcept
{
    Variant v;
    v.FType = varByte;
    v.FInt = value;
    return v;
}

Variant Variant::FromLongWord(std::uint32_t value) noexcept
{
    Variant v;
    v.FType = varLongWord;
    v.FInt = value;
    return v;
}

Variant Variant::FromDate(double oleDate) noexcept
{
    Variant v;
    v.FType = varDate;
    v.FFloat = oleDate;
    return v;
}

Variant Variant::CreateArray(int low, int high, TVarType elementType)
{
    if (!IsScalarType(elementType) && elementType != varVariant)
        throw EVariantError(QStringLiteral("Invalid variant array element type (%1)")
                                .arg(VarTypeAsText(elementType)));
    const std::int64_t count = std::int64_t{high} - low + 1;
    if (count < 0)
        throw EVariantError(QStringLiteral("Invalid variant array bounds (%1..%2)").arg(low).arg(high));
    if (count > kMaxArrayCount)
        throw EVariantError(QStringLiteral("Variant array too large (%1 elements)").arg(count));

    auto array = std::make_unique<TArray>();
    array->FLow = low;
    array->FElementType = elementType;
    const Variant initial = elementType == varVariant ? Variant() : Variant().ChangeType(elementType);
    try {
        array->FItems.assign(static_cast<std::size_t>(count), initial);
    } catch (const std::bad_alloc&) {
        throw EVariantError(QStringLiteral("Variant array too large (%1 elements)").arg(count));
    }
    Variant v;
    v.FType = varArray | elementType;
    v.FArray = std::move(array);
    return v;
}

TVarType Variant::VarType() const noexcept { return FType; }
bool Variant::IsEmpty() const noexcept { return FType == varEmpty; }
bool Variant::IsNull() const noexcept { return FType == varNull; }
bool Variant::IsArray() const noexcept { return FArray != nullptr; }

namespace {

[[noreturn]] void RaiseNotArray() { throw EVariantError(QStringLiteral("Variant is not an array")); }
[[noreturn]] void RaiseIndex() { throw EVariantError(QStringLiteral("Variant array index out of bounds")); }

}  // namespace

int Variant::ArrayLowBound() const
{
    if (!FArray) RaiseNotArray();
    return FArray->FLow;
}

int Variant::ArrayHighBound() const
{
    if (!FArray) RaiseNotArray();
    return static_cast<int>(FArray->FLow + static_cast<std::int64_t>(FArray->FItems.size()) - 1);
}

int Variant::ArrayCount() const
{
    if (!FArray) RaiseNotArray();
    return static_cast<int>(FArray->FItems.size());
}

Variant Variant::ArrayElement(int index) const
{
    if (!FArray) RaiseNotArray();
    const std::int64_t offset = std::int64_t{index} - FArray->FLow;
    if (offset < 0 || offset >= static_cast<std::int64_t>(FArray->FItems.size())) RaiseIndex();
    return FArray->FItems[static_cast<std::size_t>(offset)];
}

void Variant::SetArrayElement(int index, const Variant& value)
{
    if (!FArray) RaiseNotArray();
    const std::int64_t offset = std::int64_t{index} - FArray->FLow;
    if (offset < 0 || offset >= static_cast<std::int64_t>(FArray->FItems.size())) RaiseIndex();
    // Convert (or copy) before touching the slot: the value may be this very array.
    Variant stored = FArray->FElementType == varVariant ? value : value.ChangeType(FArray->FElementType);
    FArray->FItems[static_cast<std::size_t>(offset)] = std::move(stored);
}

std::int64_t Variant::IntegerValue(TVarType target, std::int64_t low, std::int64_t high) const
{
    std::int64_t v = 0;
    switch (FType) {
    case varEmpty: return 0;
    case varSmallint:
    case varInteger:
    case varByte:
    case varLongWord:
    case varInt64: v = FInt; break;
    case varBoolean: v = FInt ? -1 : 0; break;
    case varSingle:
    case varDouble:
    case varDate:
        if (!DoubleToInt64(FFloat, v)) RaiseOverflow(FType, target);
        break;
    case varOleStr:
        if (!TryStrToInt64(FText, v)) {
            double d = 0;
            if (!TextToDouble(FText, d)) RaiseConvert(FType, target);
            if (!DoubleToInt64(d, v)) RaiseOverflow(FType, target);
        }
        break;
    default: RaiseConvert(FType, target);
    }
    if (v < low || v > high) RaiseOverflow(FType, target);
    return v;
}

double Variant::FloatValue(TVarType target) const
{
    switch (FType) {
    case varEmpty: return 0.0;
    case varSmallint:
    case varInteger:
    case varByte:
    case varLongWord:
    case varInt64: return static_cast<double>(FInt);
    case varBoolean: return FInt ? -1.0 : 0.0;
    case varSingle:
    case varDouble:
    case varDate: return FFloat;
    case varOleStr: {
        double d = 0;
        if (!TextToDouble(FText, d)) RaiseConvert(FType, target);
        return d;
    }
    default: RaiseConvert(FType, target);
    }
}

QString Variant::ToString() const
{
    switch (FType) {
    case varEmpty: return QString();
    case varSmallint:
    case varInteger:
    case varByte:
    case varLongWord:
    case varInt64: return QString::number(FInt);
    case varSingle: return FloatToStrGeneral(FFloat, kSinglePrecision);
    case varDouble: return FloatToStr(FFloat);
    case varDate: return DateToText(FFloat);
    case varOleStr: return FText;
    case varBoolean: return FInt ? QStringLiteral("True") : QStringLiteral("False");
    default: RaiseConvert(FType, varOleStr);
    }
}

std::int32_t Variant::ToInteger() const
{
    return static_cast<std::int32_t>(IntegerValue(varInteger, std::numeric_limits<std::int32_t>::min(),
                                                  std::numeric_limits<std::int32_t>::max()));
}

std::int64_t Variant::ToInt64() const
{
    return IntegerValue(varInt64, std::numeric_limits<std::int64_t>::min(),
                        std::numeric_limits<std::int64_t>::max());
}

double Variant::ToDouble() const { return FloatValue(varDouble); }

bool Variant::ToBoolean() const
{
    switch (FType) {
    case varEmpty: return false;
    case varSmallint:
    case varInteger:
    case varByte:
    case varLongWord:
    case varInt64:
    case varBoolean: return FInt != 0;
    case varSingle:
    case varDouble:
    case varDate: return FFloat != 0.0;
    case varOleStr: {
        bool b = false;
        if (TextToBooleanName(FText, b)) return b;
        double d = 0;
        if (!TextToDouble(FText, d)) RaiseConvert(FType, varBoolean);
        return d != 0.0;
    }
    default: RaiseConvert(FType, varBoolean);
    }
}

Variant Variant::ChangeType(TVarType type) const
{
    if (type == FType) return *this;
    if (IsArray()) RaiseConvert(FType, type);
    if (type == varEmpty) return Variant();
    if (type == varNull) return Null();
    switch (type) {
    case varSmallint:
        return FromSmallint(static_cast<std::int16_t>(IntegerValue(type, -32768, 32767)));
    case varInteger: return Variant(ToInteger());
    case varByte: return FromByte(static_cast<std::uint8_t>(IntegerValue(type, 0, 255)));
    case varLongWord:
        return FromLongWord(static_cast<std::uint32_t>(
            IntegerValue(type, 0, std::numeric_limits<std::uint32_t>::max())));
    case varInt64: return Variant(ToInt64());
    case varSingle: {
        const double d = FloatValue(type);
        if (std::isfinite(d) && std::fabs(d) > FLT_MAX) RaiseOverflow(FType, type);
        return Variant(static_cast<float>(d));
    }
    case varDouble: return Variant(ToDouble());
    case varDate: {
        double d = 0;
        if (FType == varOleStr && TextToDate(FText, d)) return FromDate(d);
        return FromDate(FloatValue(type));
    }
    case varOleStr: return Variant(ToString());
    case varBoolean: return Variant(ToBoolean());
    default: RaiseConvert(FType, type);
    }
}

bool Variant::EqualsText(const QString& text) const noexcept
{
    try {
        switch (FType) {
        case varEmpty: return text.isEmpty();
        case varOleStr: return FText == text;
        case varBoolean: return Variant(text).ToBoolean() == (FInt != 0);
        case varSmallint:
        case varInteger:
        case varByte:
        case varLongWord:
        case varInt64: {
            std::int64_t i = 0;
            if (TryStrToInt64(text, i)) return i == FInt;
            double d = 0;
            return TextToDouble(text, d) && d == static_cast<double>(FInt);
        }
        case varSingle: {
            double d = 0;
            if (!TextToDouble(text, d) || (std::isfinite(d) && std::fabs(d) > FLT_MAX)) return false;
            return static_cast<float>(d) == static_cast<float>(FFloat);
        }
        case varDouble: {
            double d = 0;
            return TextToDouble(text, d) && d == FFloat;
        }
        case varDate: return Variant(text).ChangeType(varDate).ToString() == ToString();
        default: return false;
        }
    } catch (...) {
        return false;
    }
}

bool Variant::operator==(const Variant& other) const noexcept
{
    if (FType != other.FType) return false;
    if (FArray)
        return FArray->FLow == other.FArray->FLow && FArray->FItems == other.FArray->FItems;
    switch (FType) {
    case varEmpty:
    case varNull: return true;
    case varSingle:
    case varDouble:
    case varDate: return FFloat == other.FFloat;
    case varOleStr: return FText == other.FText;
    default: return FInt == other.FInt;
    }
}

}  // namespace qx
