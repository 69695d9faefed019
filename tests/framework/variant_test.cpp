#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <cmath>
#include <limits>
#include <optional>
#include <string>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/variant.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

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

QString ErrorOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const EVariantError& e) {
        return e.Message();
    }
    return QStringLiteral("<no error>");
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
        EXPECT_DOUBLE_EQ(row.value.ToDouble(), *row.real);
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
        ConversionRow{"SmallintNegative", Variant::FromSmallint(-5), "-5", -5, -5.0, true},
        ConversionRow{"Byte", Variant::FromByte(255), "255", 255, 255.0, true},
        ConversionRow{"LongWordAboveIntegerRange", Variant::FromLongWord(4294967295u), "4294967295",
                      kRaises, 4294967295.0, true},
        ConversionRow{"Int64", Variant(std::int64_t{1} << 40), "1099511627776", kRaises,
                      1099511627776.0, true},
        ConversionRow{"DoubleHalfRoundsToEvenDown", Variant(2.5), "2.5", 2, 2.5, true},
        ConversionRow{"DoubleHalfRoundsToEvenUp", Variant(3.5), "3.5", 4, 3.5, true},
        ConversionRow{"DoubleNegativeHalf", Variant(-2.5), "-2.5", -2, -2.5, true},
        ConversionRow{"DoubleHuge", Variant(1.7e30), "1.7E30", kRaises, 1.7e30, true},
        ConversionRow{"SingleSevenDigits", Variant(0.1f), "0.1", 0, static_cast<double>(0.1f), true},
        ConversionRow{"SingleExponentForm", Variant(12345678.0f), "1.234568E7", 12345678, 12345678.0, true},
        ConversionRow{"BooleanTrue", Variant(true), "True", -1, -1.0, true},
        ConversionRow{"BooleanFalse", Variant(false), "False", 0, 0.0, false},
        ConversionRow{"StringInteger", Variant("42"), "42", 42, 42.0, true},
        ConversionRow{"StringFloatWithBlanks", Variant(" 2.5 "), " 2.5 ", 2, 2.5, true},
        ConversionRow{"StringExponent", Variant("1e3"), "1e3", 1000, 1000.0, true},
        ConversionRow{"StringHex", Variant("0x10"), "0x10", 16, 16.0, true},
        ConversionRow{"StringTrueAnyCase", Variant("tRuE"), "tRuE", -1, -1.0, true},
        ConversionRow{"StringNotANumber", Variant("abc"), "abc", kRaises, kRaises, kRaises},
        ConversionRow{"StringDecimalComma", Variant("1,5"), "1,5", kRaises, kRaises, kRaises},
        ConversionRow{"StringBeyondInteger", Variant("3000000000"), "3000000000", kRaises, 3e9, true},
        ConversionRow{"StringNonAscii", Variant(QString::fromUtf8("Grüße")), QString::fromUtf8("Grüße"),
                      kRaises, kRaises, kRaises},
        ConversionRow{"DateWithTime", Variant::FromDate(43831.5), "2020-01-01 12:00:00", 43832, 43831.5, true},
        ConversionRow{"DateZeroHasNoTime", Variant::FromDate(0), "1899-12-30", 0, 0.0, false},
        ConversionRow{"DateBeforeDayZero", Variant::FromDate(-1.25), "1899-12-29 06:00:00", -1, -1.25, true},
        ConversionRow{"DateRoundsToTheNextDay", Variant::FromDate(1.0 - 1e-9), "1899-12-31", 1, 1.0 - 1e-9,
                      true}),
    [](const ::testing::TestParamInfo<ConversionRow>& row) { return row.param.name; });

TEST(VariantConversion, NaNConvertsExceptToIntegers)
{
    const Variant nan(std::nan(""));
    EXPECT_TRUE(std::isnan(nan.ToDouble()));
    EXPECT_EQ(nan.ToString(), "NAN");
    EXPECT_TRUE(nan.ToBoolean());
    EXPECT_THROW(nan.ToInteger(), EVariantError);
    EXPECT_THROW(Variant("NaN").ToInt64(), EVariantError);
}

TEST(VariantConversion, Int64KeepsFullRange)
{
    EXPECT_EQ(Variant("9223372036854775807").ToInt64(), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(Variant("-9223372036854775808").ToInt64(), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(Variant(-4.5).ToInt64(), -4);
    EXPECT_EQ(Variant::FromLongWord(4294967295u).ToInt64(), 4294967295LL);
    EXPECT_THROW(Variant(9.3e18).ToInt64(), EVariantError);
    EXPECT_THROW(Variant("1e19").ToInt64(), EVariantError);
    EXPECT_EQ(Variant(-9223372036854775808.0).ToInt64(), std::numeric_limits<std::int64_t>::min());
}

TEST(VariantChangeType, NarrowTypesAreRangeChecked)
{
    EXPECT_EQ(Variant(32767).ChangeType(varSmallint), Variant::FromSmallint(32767));
    EXPECT_THROW(Variant(32768).ChangeType(varSmallint), EVariantError);
    EXPECT_EQ(Variant("255").ChangeType(varByte), Variant::FromByte(255));
    EXPECT_THROW(Variant(-1).ChangeType(varByte), EVariantError);
    EXPECT_THROW(Variant(true).ChangeType(varByte), EVariantError);
    EXPECT_EQ(Variant(4294967295.0).ChangeType(varLongWord), Variant::FromLongWord(4294967295u));
    EXPECT_THROW(Variant(4294967296.0).ChangeType(varLongWord), EVariantError);
    EXPECT_EQ(Variant(1.5).ChangeType(varSingle), Variant(1.5f));
    EXPECT_THROW(Variant(1e39).ChangeType(varSingle), EVariantError);
    EXPECT_TRUE(std::isinf(Variant(HUGE_VAL).ChangeType(varSingle).ToDouble()));
}

TEST(VariantChangeType, NullAndArraysOnlyBecomeThemselves)
{
    EXPECT_TRUE(Variant(5).ChangeType(varNull).IsNull());
    EXPECT_TRUE(Variant::Null().ChangeType(varNull).IsNull());
    EXPECT_THROW(Variant::Null().ChangeType(varInteger), EVariantError);
    EXPECT_THROW(Variant(5).ChangeType(0x55), EVariantError);
    EXPECT_THROW(ArrayOf({1}).ChangeType(varOleStr), EVariantError);
    EXPECT_EQ(ArrayOf({1}).ChangeType(varArray | varVariant), ArrayOf({1}));
}

TEST(VariantChangeType, DatesReadTheTextTheyWrite)
{
    for (double d : {0.0, 43831.5, -1.25, -657434.0, 2958465.75, 36526.0 + 45296.0 / 86400.0}) {
        SCOPED_TRACE(d);
        const Variant date = Variant::FromDate(d);
        const Variant back = Variant(date.ToString()).ChangeType(varDate);
        EXPECT_EQ(back.VarType(), varDate);
        EXPECT_NEAR(back.ToDouble(), d, 1e-9);
    }
    EXPECT_DOUBLE_EQ(Variant("2020-01-01 06:30").ChangeType(varDate).ToDouble(), 43831.0 + 6.5 / 24);
    EXPECT_DOUBLE_EQ(Variant("2.5").ChangeType(varDate).ToDouble(), 2.5);
    EXPECT_THROW(Variant("2020-13-01").ChangeType(varDate), EVariantError);
    EXPECT_THROW(Variant::FromDate(1e12).ToString(), EVariantError);
    EXPECT_THROW(Variant::FromDate(std::nan("")).ToString(), EVariantError);
}

TEST(VariantErrors, MessagesNameBothTypes)
{
    EXPECT_EQ(ErrorOf([] { Variant("abc").ToDouble(); }),
              "Could not convert variant of type (String) into type (Double)");
    EXPECT_EQ(ErrorOf([] { Variant(1e10).ToInteger(); }),
              "Overflow while converting variant of type (Double) into type (Integer)");
    EXPECT_EQ(ErrorOf([] { Variant::Null().ToString(); }),
              "Could not convert variant of type (Null) into type (String)");
    EXPECT_EQ(ErrorOf([] { Variant("x").ToBoolean(); }),
              "Could not convert variant of type (String) into type (Boolean)");
    EXPECT_EQ(ErrorOf([] { Variant(70000).ChangeType(varSmallint); }),
              "Overflow while converting variant of type (Integer) into type (Smallint)");
    EXPECT_EQ(ErrorOf([] { Variant::CreateArray(0, 1, varInteger).ToInt64(); }),
              "Could not convert variant of type (Array Integer) into type (Int64)");
    EXPECT_EQ(ErrorOf([] { Variant(1).ArrayElement(0); }), "Variant is not an array");
    EXPECT_EQ(ErrorOf([] { Variant::CreateArray(1, 2, varVariant).ArrayElement(0); }),
              "Variant array index out of bounds");
}

TEST(VariantArray, NonZeroLowBound)
{
    Variant a = Variant::CreateArray(-2, 2, varVariant);
    EXPECT_TRUE(a.IsArray());
    EXPECT_EQ(a.VarType(), varArray | varVariant);
    EXPECT_EQ(a.ArrayLowBound(), -2);
    EXPECT_EQ(a.ArrayHighBound(), 2);
    EXPECT_EQ(a.ArrayCount(), 5);
    EXPECT_TRUE(a.ArrayElement(-2).IsEmpty());
    a.SetArrayElement(-2, Variant("first"));
    a.SetArrayElement(2, Variant(2.5));
    EXPECT_EQ(a.ArrayElement(-2), Variant("first"));
    EXPECT_EQ(a.ArrayElement(2), Variant(2.5));
    for (int bad : {-3, 3, INT_MIN, INT_MAX}) {
        SCOPED_TRACE(bad);
        EXPECT_THROW(a.ArrayElement(bad), EVariantError);
        EXPECT_THROW(a.SetArrayElement(bad, Variant(1)), EVariantError);
    }

    const Variant top = Variant::CreateArray(INT_MAX - 1, INT_MAX, varInteger);
    EXPECT_EQ(top.ArrayHighBound(), INT_MAX);
    EXPECT_EQ(top.ArrayElement(INT_MAX), Variant(0));
}

TEST(VariantArray, TypedElementsConvertOnStore)
{
    Variant ints = Variant::CreateArray(1, 3, varInteger);
    EXPECT_EQ(ints.ArrayElement(1), Variant(0));
    ints.SetArrayElement(2, Variant("7"));
    EXPECT_EQ(ints.ArrayElement(2), Variant(7));
    EXPECT_THROW(ints.SetArrayElement(3, Variant("x")), EVariantError);
    EXPECT_EQ(ints.ArrayElement(3), Variant(0));

    Variant texts = Variant::CreateArray(0, 1, varOleStr);
    EXPECT_EQ(texts.ArrayElement(0), Variant(""));
    texts.SetArrayElement(1, Variant(1.5));
    EXPECT_EQ(texts.ArrayElement(1), Variant("1.5"));
    EXPECT_THROW(texts.SetArrayElement(0, ArrayOf({1})), EVariantError);
}

TEST(VariantArray, BoundsAndElementTypesAreChecked)
{
    EXPECT_EQ(Variant::CreateArray(5, 4, varVariant).ArrayCount(), 0);
    EXPECT_THROW(Variant::CreateArray(5, 3, varVariant), EVariantError);
    EXPECT_THROW(Variant::CreateArray(0, 1, varEmpty), EVariantError);
    EXPECT_THROW(Variant::CreateArray(0, 1, varArray | varInteger), EVariantError);
    EXPECT_THROW(Variant::CreateArray(INT_MIN, INT_MAX, varVariant), EVariantError);
    EXPECT_THROW(Variant().ArrayCount(), EVariantError);
}

TEST(VariantCopy, ArraysAreDeep)
{
    Variant inner = ArrayOf({1, 2});
    Variant outer = ArrayOf({inner, "x"}, 3);
    Variant copy = outer;

    Variant changedInner = copy.ArrayElement(3);
    changedInner.SetArrayElement(0, Variant(99));
    copy.SetArrayElement(3, changedInner);
    copy.SetArrayElement(4, Variant("y"));

    EXPECT_EQ(outer.ArrayElement(3), inner);
    EXPECT_EQ(outer.ArrayElement(4), Variant("x"));
    EXPECT_EQ(copy.ArrayElement(3).ArrayElement(0), Variant(99));

    Variant assigned;
    assigned = outer;
    outer.SetArrayElement(4, Variant(0));
    EXPECT_EQ(assigned.ArrayElement(4), Variant("x"));
}

TEST(VariantCopy, MovesLeaveEmptyAndSelfStoreIsSafe)
{
    Variant a = ArrayOf({1, 2});
    Variant b = std::move(a);
    EXPECT_TRUE(a.IsEmpty());  // NOLINT(bugprone-use-after-move): moved-from state is defined
    EXPECT_EQ(b.ArrayCount(), 2);

    Variant& alias = b;
    b = alias;
    EXPECT_EQ(b.ArrayCount(), 2);

    b.SetArrayElement(0, b);
    EXPECT_EQ(b.ArrayElement(0), ArrayOf({1, 2}));
    EXPECT_EQ(b.ArrayElement(1), Variant(2));
}

TEST(VariantEquality, TypeCodeAndValue)
{
    EXPECT_EQ(Variant(1), Variant(1));
    EXPECT_NE(Variant(1), Variant(std::int64_t{1}));
    EXPECT_NE(Variant(1), Variant(1.0));
    EXPECT_NE(Variant(std::nan("")), Variant(std::nan("")));
    EXPECT_EQ(Variant::Null(), Variant::Null());
    EXPECT_NE(Variant(), Variant::Null());
    EXPECT_NE(ArrayOf({1, 2}, 0), ArrayOf({1, 2}, 1));
    EXPECT_NE(ArrayOf({1, 2}), ArrayOf({1, 3}));
}

struct TextRow {
    std::string name;
    Variant value;
    QString text;
    bool equal;
};

class VariantEqualsText : public ::testing::TestWithParam<TextRow> {};

TEST_P(VariantEqualsText, ComparesLikeEnumerationLookups)
{
    EXPECT_EQ(GetParam().value.EqualsText(GetParam().text), GetParam().equal);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, VariantEqualsText,
    ::testing::Values(TextRow{"StringExact", Variant("Auto"), "Auto", true},
                      TextRow{"StringIsCaseSensitive", Variant("Auto"), "auto", false},
                      TextRow{"IntegerAsText", Variant(3), "3", true},
                      TextRow{"IntegerAsFloatText", Variant(3), "3.0", true},
                      TextRow{"IntegerNotRounded", Variant(3), "3.4", false},
                      TextRow{"Int64Exact", Variant(std::int64_t{9007199254740993}), "9007199254740993", true},
                      TextRow{"Int64NeighbourDiffers", Variant(std::int64_t{9007199254740993}),
                              "9007199254740992", false},
                      TextRow{"DoubleAsText", Variant(0.5), "0.5", true},
                      TextRow{"SingleAsShortText", Variant(0.1f), "0.1", true},
                      TextRow{"BooleanName", Variant(true), "true", true},
                      TextRow{"BooleanNumber", Variant(false), "0", true},
                      TextRow{"EmptyEqualsEmptyText", Variant(), "", true},
                      TextRow{"EmptyIsNotZero", Variant(), "0", false},
                      TextRow{"NullEqualsNothing", Variant::Null(), "", false},
                      TextRow{"ArrayEqualsNothing", ArrayOf({"a"}), "a", false},
                      TextRow{"DateAsText", Variant::FromDate(43831.5), "2020-01-01 12:00:00", true}),
    [](const ::testing::TestParamInfo<TextRow>& row) { return row.param.name; });

}  // namespace
