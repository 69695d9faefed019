#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <tuple>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/variant.h"
#include "tests/framework/print_qstring.h"

using namespace qx;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

namespace {

// What each conversion gives; nullopt means it raises EVariantError.
struct ConversionRow {
    std::string name;
    Variant value;
    std::optional<QString> text;
    std::optional<std::int32_t> integer;
    std::optional<double> real;
    std::optional<bool> boolean;
};

const std::nullopt_t kRaises = std::nullopt;

Variant ArrayOf(std::initializer_list<Variant> items, int low = 0)
{
    Variant a = Variant::CreateArray(low, low + static_cast<int>(items.size()) - 1, varVariant);
    int i = low;
    for (const Variant& v : items) a.SetArrayElement(i++, v);
    return a;
}

class VariantConversion : public ::testing::TestWithParam<ConversionRow> {};

TEST_P(VariantConversion, FollowsOleRules)
{
    const ConversionRow& row = GetParam();
    if (row.text)
        EXPECT_EQ(row.value.ToString(), *row.text);
    else
        EXPECT_THROW(row.value.ToString(), EVariantError);
    if (row.integer)
        EXPECT_EQ(row.value.ToInteger(), *row.integer);
    else
        EXPECT_THROW(row.value.ToInteger(), EVariantError);
    if (row.real)
        EXPECT_THAT(row.value.ToDouble(), ::testing::NanSensitiveDoubleEq(*row.real));
    else
        EXPECT_THROW(row.value.ToDouble(), EVariantError);
    if (row.boolean)
        EXPECT_EQ(row.value.ToBoolean(), *row.boolean);
    else
        EXPECT_THROW(row.value.ToBoolean(), EVariantError);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, VariantConversion,
    ::testing::Values(
        ConversionRow{"Empty", Variant(), QString(), 0, 0.0, false},
        ConversionRow{"Null", Variant::Null(), kRaises, kRaises, kRaises, kRaises},
        ConversionRow{"Array", ArrayOf({1, 2}), kRaises, kRaises, kRaises, kRaises},
        ConversionRow{"LongWordAboveInteger", Variant::FromLongWord(4294967295u), "4294967295", kRaises,
                      4294967295.0, true},
        ConversionRow{"HalfToEvenDown", Variant(2.5), "2.5", 2, 2.5, true},
        ConversionRow{"HalfToEvenUp", Variant(3.5), "3.5", 4, 3.5, true},
        ConversionRow{"NegativeHalf", Variant(-3.5), "-3.5", -4, -3.5, true},
        ConversionRow{"DoubleLargest", Variant(DBL_MAX), "1.7976931348623157E308", kRaises, DBL_MAX, true},
        ConversionRow{"DoubleNaN", Variant(std::nan("")), "NAN", kRaises, std::nan(""), true},
        ConversionRow{"SingleSevenDigits", Variant(0.1f), "0.1", 0, static_cast<double>(0.1f), true},
        ConversionRow{"BooleanTrue", Variant(true), "True", -1, -1.0, true},
        ConversionRow{"StringWithBlanks", Variant(" 2.5 "), " 2.5 ", 2, 2.5, true},
        ConversionRow{"StringHex", Variant("0x10"), "0x10", 16, 16.0, true},
        ConversionRow{"StringTrueAnyCase", Variant("tRuE"), "tRuE", -1, -1.0, true},
        ConversionRow{"StringNotANumber", Variant("abc"), "abc", kRaises, kRaises, kRaises},
        ConversionRow{"StringBeyondInteger", Variant("3000000000"), "3000000000", kRaises, 3e9, true},
        ConversionRow{"DateWithTime", Variant::FromDate(43831.5), "2020-01-01 12:00:00", 43832, 43831.5, true},
        ConversionRow{"DateBeforeDayZero", Variant::FromDate(-1.25), "1899-12-29 06:00:00", -1, -1.25, true},
        ConversionRow{"DateRoundsToNextDay", Variant::FromDate(1.0 - 1e-9), "1899-12-31", 1, 1.0 - 1e-9, true}),
    [](const ::testing::TestParamInfo<ConversionRow>& row) { return row.param.name; });

TEST(VariantConversion, Int64KeepsFullRange)
{
    EXPECT_EQ(Variant("9223372036854775807").ToInt64(), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(Variant(-9223372036854775808.0).ToInt64(), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(Variant(-4.5).ToInt64(), -4);
    EXPECT_THROW(Variant(9223372036854775808.0).ToInt64(), EVariantError);
    EXPECT_THROW(Variant("1e19").ToInt64(), EVariantError);
}

TEST(VariantChangeType, NarrowTypesAreRangeCheckedAndArraysStayArrays)
{
    EXPECT_EQ(Variant(32767).ChangeType(varSmallint), Variant::FromSmallint(32767));
    EXPECT_THROW(Variant(32768).ChangeType(varSmallint), EVariantError);
    EXPECT_EQ(Variant("255").ChangeType(varByte), Variant::FromByte(255));
    EXPECT_THROW(Variant(-1).ChangeType(varByte), EVariantError);
    EXPECT_EQ(Variant(4294967295.0).ChangeType(varLongWord), Variant::FromLongWord(4294967295u));
    EXPECT_THROW(Variant(4294967296.0).ChangeType(varLongWord), EVariantError);
    EXPECT_EQ(Variant(1.5).ChangeType(varSingle), Variant(1.5f));
    EXPECT_THROW(Variant(1e39).ChangeType(varSingle), EVariantError);
    EXPECT_TRUE(std::isinf(Variant(HUGE_VAL).ChangeType(varSingle).ToDouble()));
    EXPECT_TRUE(Variant(5).ChangeType(varNull).IsNull());
    EXPECT_THROW(Variant::Null().ChangeType(varInteger), EVariantError);
    EXPECT_THROW(Variant(5).ChangeType(0x55), EVariantError);
    EXPECT_THROW(ArrayOf({1}).ChangeType(varOleStr), EVariantError);
    EXPECT_EQ(ArrayOf({1}).ChangeType(varArray | varVariant), ArrayOf({1}));
}

TEST(VariantChangeType, DatesReadTheTextTheyWrite)
{
    for (double d : {0.0, -1.25, -657434.0, 2958465.75, 36526.0 + 45296.0 / 86400.0}) {
        const Variant back = Variant(Variant::FromDate(d).ToString()).ChangeType(varDate);
        EXPECT_EQ(back.VarType(), varDate);
        EXPECT_NEAR(back.ToDouble(), d, 1e-9);
    }
    EXPECT_DOUBLE_EQ(Variant("2020-01-01 06:30").ChangeType(varDate).ToDouble(), 43831.0 + 6.5 / 24);
    EXPECT_DOUBLE_EQ(Variant("2.5").ChangeType(varDate).ToDouble(), 2.5);
    EXPECT_THROW(Variant("2020-13-01").ChangeType(varDate), EVariantError);
    for (double outside : {1e12, std::nan("")}) EXPECT_THROW(Variant::FromDate(outside).ToString(), EVariantError);
    // The last half second of the range does not round into the year 10000.
    const QString last = Variant::FromDate(2958466.0 - 0.2 / 86400).ToString();
    EXPECT_EQ(last, "9999-12-31 23:59:59");
    EXPECT_EQ(Variant(last).ChangeType(varDate).ToString(), last);
}

TEST(VariantErrors, MessagesNameBothTypes)
{
    const auto raises = [](const char* message) { return ThrowsMessage<EVariantError>(StrEq(message)); };
    EXPECT_THAT([] { Variant("abc").ToDouble(); },
                raises("Could not convert variant of type (String) into type (Double)"));
    EXPECT_THAT([] { Variant(1e10).ToInteger(); },
                raises("Overflow while converting variant of type (Double) into type (Integer)"));
    EXPECT_THAT([] { Variant::Null().ToString(); },
                raises("Could not convert variant of type (Null) into type (String)"));
    EXPECT_THAT([] { Variant(70000).ChangeType(varSmallint); },
                raises("Overflow while converting variant of type (Integer) into type (Smallint)"));
    EXPECT_THAT([] { Variant::CreateArray(0, 1, varInteger).ToInt64(); },
                raises("Could not convert variant of type (Array Integer) into type (Int64)"));
    EXPECT_THAT([] { Variant(1).ArrayElement(0); }, raises("Variant is not an array"));
    EXPECT_THAT([] { Variant::CreateArray(1, 2, varVariant).ArrayElement(0); },
                raises("Variant array index out of bounds"));
}

TEST(VariantArray, BoundsAreCheckedOnBothSidesOfANonZeroLow)
{
    Variant a = Variant::CreateArray(-2, 2, varVariant);
    a.SetArrayElement(2, Variant(2.5));
    EXPECT_EQ(a.ArrayElement(2), Variant(2.5));
    for (int bad : {-3, 3, INT_MIN, INT_MAX}) {
        EXPECT_THROW(a.ArrayElement(bad), EVariantError) << bad;
        EXPECT_THROW(a.SetArrayElement(bad, Variant(1)), EVariantError) << bad;
    }
    EXPECT_EQ(Variant::CreateArray(INT_MAX - 1, INT_MAX, varInteger).ArrayElement(INT_MAX), Variant(0));
    EXPECT_EQ(Variant::CreateArray(5, 4, varVariant).ArrayCount(), 0);
    EXPECT_THROW(Variant::CreateArray(5, 3, varVariant), EVariantError);
    EXPECT_THROW(Variant::CreateArray(0, 1, varEmpty), EVariantError);
    EXPECT_THROW(Variant::CreateArray(0, 1, varArray | varInteger), EVariantError);
    EXPECT_THROW(Variant::CreateArray(INT_MIN, INT_MAX, varVariant), EVariantError);
}

TEST(VariantArray, TypedElementsConvertOnStore)
{
    Variant ints = Variant::CreateArray(1, 3, varInteger);
    ints.SetArrayElement(2, Variant("7"));
    EXPECT_EQ(ints.ArrayElement(2), Variant(7));
    EXPECT_THROW(ints.SetArrayElement(3, Variant("x")), EVariantError);
    EXPECT_EQ(ints.ArrayElement(3), Variant(0));
    Variant texts = Variant::CreateArray(0, 1, varOleStr);
    texts.SetArrayElement(1, Variant(1.5));
    EXPECT_EQ(texts.ArrayElement(1), Variant("1.5"));
}

TEST(VariantCopy, ArraysAreDeepAndSelfStoreIsSafe)
{
    const Variant inner = ArrayOf({1, 2});
    Variant outer = ArrayOf({inner, "x"}, 3);
    Variant copy = outer;
    Variant changedInner = copy.ArrayElement(3);
    changedInner.SetArrayElement(0, Variant(99));
    copy.SetArrayElement(3, changedInner);
    EXPECT_EQ(outer.ArrayElement(3), inner);
    EXPECT_EQ(copy.ArrayElement(3).ArrayElement(0), Variant(99));
    Variant moved = std::move(outer);
    EXPECT_TRUE(outer.IsEmpty());  // NOLINT(bugprone-use-after-move): moved-from state is defined
    moved.SetArrayElement(3, moved);
    EXPECT_EQ(moved.ArrayElement(3), ArrayOf({inner, "x"}, 3));
}

TEST(VariantEquality, TypeCodeAndValue)
{
    EXPECT_NE(Variant(1), Variant(std::int64_t{1}));
    EXPECT_NE(Variant(std::nan("")), Variant(std::nan("")));
    EXPECT_NE(Variant(), Variant::Null());
    EXPECT_NE(ArrayOf({1, 2}, 0), ArrayOf({1, 2}, 1));
    EXPECT_NE(ArrayOf({1, 2}), ArrayOf({1, 3}));
}

// Enumeration lookups compare a stored value with a text.
TEST(VariantEquality, EqualsText)
{
    const std::int64_t big = 9007199254740993;  // not representable as a double
    const std::tuple<Variant, const char*, bool> rows[] = {
        {Variant("Auto"), "Auto", true}, {Variant("Auto"), "auto", false}, {Variant(3), "3.0", true},
        {Variant(3), "3.4", false}, {Variant(big), "9007199254740993", true},
        {Variant(big), "9007199254740992", false}, {Variant(0.5), "0.5", true}, {Variant(0.1f), "0.1", true},
        {Variant(true), "true", true}, {Variant(false), "0", true}, {Variant(), "", true},
        {Variant(), "0", false}, {Variant::Null(), "", false}, {ArrayOf({"a"}), "a", false},
        {Variant::FromDate(43831.5), "2020-01-01 12:00:00", true}};
    for (const auto& [value, text, equal] : rows)
        EXPECT_EQ(value.EqualsText(QString::fromLatin1(text)), equal) << text << " / type " << value.VarType();
}

}  // namespace
