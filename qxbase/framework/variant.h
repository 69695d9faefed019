#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <memory>

#include "qxbase/framework/export.h"

namespace qx {

// OLE/COM variant type codes (VARTYPE). An array's type is varArray | element type.
using TVarType = std::uint16_t;
inline constexpr TVarType varEmpty = 0;
inline constexpr TVarType varNull = 1;
inline constexpr TVarType varSmallint = 2;
inline constexpr TVarType varInteger = 3;
inline constexpr TVarType varSingle = 4;
inline constexpr TVarType varDouble = 5;
inline constexpr TVarType varDate = 7;
inline constexpr TVarType varOleStr = 8;
inline constexpr TVarType varBoolean = 11;
inline constexpr TVarType varVariant = 12;  // element type of arrays of variants only
inline constexpr TVarType varByte = 17;
inline constexpr TVarType varLongWord = 19;
inline constexpr TVarType varInt64 = 20;
inline constexpr TVarType varTypeMask = 0x0FFF;
inline constexpr TVarType varArray = 0x2000;

inline constexpr bool IsIntegerVarType(TVarType Type)
{
    return Type == varSmallint || Type == varInteger || Type == varByte || Type == varLongWord || Type == varInt64;
}

// Integers and floating-point numbers (not dates, booleans or text).
inline constexpr bool IsNumericVarType(TVarType Type)
{
    return IsIntegerVarType(Type) || Type == varSingle || Type == varDouble;
}

// A value with OLE variant semantics: Empty, Null, one of the scalar type codes above, or a
// one-dimensional array with any low bound. Copies are deep (arrays included).
// Conversions follow OLE rules; an impossible one raises EVariantError.
class QXBASE_EXPORT Variant {
public:
    Variant() noexcept;  // Empty
    Variant(std::int32_t value) noexcept;  // varInteger
    Variant(std::int64_t value) noexcept;  // varInt64
    Variant(double value) noexcept;        // varDouble
    Variant(float value) noexcept;         // varSingle
    Variant(bool value) noexcept;          // varBoolean
    Variant(const QString& value);         // varOleStr
    Variant(const char* utf8);             // varOleStr
    Variant(const Variant& other);
    Variant(Variant&& other) noexcept;
    Variant& operator=(const Variant& other);
    Variant& operator=(Variant&& other) noexcept;
    ~Variant();

    static Variant Null() noexcept;
    static Variant FromSmallint(std::int16_t value) noexcept;
    static Variant FromByte(std::uint8_t value) noexcept;
    static Variant FromLongWord(std::uint32_t value) noexcept;
    // varDate: days since 1899-12-30, fraction = time of day (OLE automation date).
    static Variant FromDate(double oleDate) noexcept;

    // VarArrayCreate: elements low..high, each element an Empty variant (or the element type's
    // zero/empty string for scalar element types). Raises EVariantError when high < low - 1
    // or the element type is not one of the codes above (varVariant allowed).
    static Variant CreateArray(int low, int high, TVarType elementType);

    TVarType VarType() const noexcept;  // type code, with varArray set for arrays
    bool IsEmpty() const noexcept;
    bool IsNull() const noexcept;
    bool IsArray() const noexcept;

    // Array access; all raise EVariantError on a non-array or an index outside the bounds.
    // Storing converts the value to the element type (arrays of varVariant store it as is).
    int ArrayLowBound() const;
    int ArrayHighBound() const;
    int ArrayCount() const;
    Variant ArrayElement(int index) const;
    void SetArrayElement(int index, const Variant& value);

    // OLE conversions. Raise EVariantError when impossible: Null and arrays to anything, a text
    // that is not a number to a number, out-of-range values to integers.
    // Empty converts to "", 0, 0.0 and false. Booleans are -1 (true) and 0 as numbers, and
    // "True"/"False" as text; doubles become text in the general float format.
    QString ToString() const;
    std::int32_t ToInteger() const;
    std::int64_t ToInt64() const;
    double ToDouble() const;
    bool ToBoolean() const;
    // VarAsType: the value converted to another scalar type code; raises as above.
    Variant ChangeType(TVarType type) const;

    // The comparison enumeration look-ups make: a string variant equals the text exactly
    // (case-sensitively); a number or boolean equals a text that converts to the same value;
    // Empty equals the empty text; Null and arrays equal no text. Never raises.
    bool EqualsText(const QString& text) const noexcept;

    // Same type code and equal value, element by element for arrays.
    bool operator==(const Variant& other) const noexcept;
    bool operator!=(const Variant& other) const noexcept { return !(*this == other); }

private:
    struct TArray;

    std::int64_t IntegerValue(TVarType target, std::int64_t low, std::int64_t high) const;
    double FloatValue(TVarType target) const;

    TVarType FType = varEmpty;
    std::int64_t FInt = 0;  // integer kinds and booleans (0 or 1)
    double FFloat = 0;      // single, double and date
    QString FText;
    std::unique_ptr<TArray> FArray;
};

// The name a message uses for a type code: "Integer", "String", "Array Variant", ...
QXBASE_EXPORT QString VarTypeAsText(TVarType type);

}  // namespace qx
