#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/number_text.h"

using namespace qx;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

// Rows at precision 15 go through FloatToStr itself.
TEST(FloatToStr, GeneralFormatRoundsToThePrecisionAndPicksFixedOrExponent)
{
    constexpr double kInf = std::numeric_limits<double>::infinity();
    constexpr double kMax = std::numeric_limits<double>::max();
    const std::tuple<double, int, const char*> rows[] = {
        {0.5, 15, "0.5"}, {-1.25, 15, "-1.25"}, {2, 15, "2"}, {-0.0, 15, "0"}, {123456.789, 15, "123456.789"},
        {1e-5, 15, "0.00001"}, {1e-6, 15, "1E-6"}, {-2.5e-7, 15, "-2.5E-7"}, {1.7e30, 15, "1.7E30"},
        {999999999999999.0, 15, "999999999999999"}, {1e15, 15, "1E15"}, {9.999999999999999e14, 15, "1E15"},
        {0.1 + 0.2, 15, "0.3"}, {2.0 / 3.0, 15, "0.666666666666667"},
        {kInf, 15, "INF"}, {-kInf, 15, "-INF"}, {std::nan(""), 15, "NAN"},
        // Rounding up would leave the double range: the shortest exact digits instead.
        {kMax, 15, "1.7976931348623157E308"}, {-kMax, 15, "-1.7976931348623157E308"}, {1.5e308, 1, "1.5E308"},
        {1.4e308, 1, "1E308"},
        {1234567.0, 7, "1234567"}, {12345678.0, 7, "1.234568E7"}, {0.1f, 7, "0.1"}, {2.6, 0, "3"}};
    for (const auto& [value, precision, text] : rows)
        EXPECT_EQ(precision == 15 ? FloatToStr(value) : FloatToStrGeneral(value, precision), text) << value;
}

TEST(StrToFloat, ReadsWhatFloatToStrWritesAndRefusesTheRest)
{
    for (double v : {1e-3, -9.87654321e-12, 1.7e30, 4.9e-300, 123456.789})
        EXPECT_NEAR(StrToFloat(FloatToStr(v)), v, std::fabs(v) * 1e-14) << v;
    for (double v : {std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest()})
        EXPECT_EQ(StrToFloat(FloatToStr(v)), v);
    EXPECT_DOUBLE_EQ(StrToFloat(" +2.5e+3 "), 2500.0);
    EXPECT_DOUBLE_EQ(StrToFloat("1."), 1.0);
    EXPECT_DOUBLE_EQ(StrToFloat(".25"), 0.25);
    EXPECT_EQ(StrToFloat("-inf"), -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(StrToFloat("NaN")));
    for (const char* bad : {"", " ", "abc", "1,5", "1.5x", "e5", ".", "--1", "0x10", "1e999", "1 2"}) {
        double v = 0;
        EXPECT_FALSE(TryStrToFloat(QString::fromLatin1(bad), v)) << bad;
    }
    EXPECT_THAT([] { StrToFloat("1,5"); },
                ThrowsMessage<EConvertError>(StrEq("'1,5' is not a valid floating point value")));
}

TEST(StrToInt, DecimalAndHexWithRangeChecks)
{
    EXPECT_EQ(StrToInt("  -7"), -7);
    EXPECT_EQ(StrToInt("$FF"), 255);
    EXPECT_EQ(StrToInt("0x10"), 16);
    EXPECT_EQ(StrToInt("-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(StrToInt64("4294967301"), 4294967301LL);
    EXPECT_EQ(StrToInt64("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    for (const char* bad : {"", "x", "1.5", "2147483648", "12 ", "+-1", "$"})
        EXPECT_THROW(StrToInt(QString::fromLatin1(bad)), EConvertError) << bad;
    EXPECT_THAT([] { StrToInt64("9223372036854775808"); },
                ThrowsMessage<EConvertError>(StrEq("'9223372036854775808' is not a valid integer value")));
}
