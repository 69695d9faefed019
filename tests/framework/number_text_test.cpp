#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/number_text.h"

using namespace qx;

TEST(FloatToStr, GeneralFormatPicksFixedOrExponent)
{
    EXPECT_EQ(FloatToStr(0.5), "0.5");
    EXPECT_EQ(FloatToStr(1e-3), "0.001");
    EXPECT_EQ(FloatToStr(-1.25), "-1.25");
    EXPECT_EQ(FloatToStr(2), "2");
    EXPECT_EQ(FloatToStr(1.7e30), "1.7E30");
    EXPECT_EQ(FloatToStr(1e-5), "0.00001");
    EXPECT_EQ(FloatToStr(1e-6), "1E-6");
    EXPECT_EQ(FloatToStr(-2.5e-7), "-2.5E-7");
    EXPECT_EQ(FloatToStr(999999999999999.0), "999999999999999");
    EXPECT_EQ(FloatToStr(1e15), "1E15");
    EXPECT_EQ(FloatToStr(123456.789), "123456.789");
    EXPECT_EQ(FloatToStr(-0.0), "0");
}

TEST(FloatToStr, RoundsToFifteenSignificantDigits)
{
    EXPECT_EQ(FloatToStr(0.1 + 0.2), "0.3");
    EXPECT_EQ(FloatToStr(1.0 / 3.0), "0.333333333333333");
    EXPECT_EQ(FloatToStr(2.0 / 3.0), "0.666666666666667");
    EXPECT_EQ(FloatToStr(9.999999999999999e14), "1E15");
}

TEST(FloatToStr, NonFiniteValuesHaveNames)
{
    EXPECT_EQ(FloatToStr(std::numeric_limits<double>::infinity()), "INF");
    EXPECT_EQ(FloatToStr(-std::numeric_limits<double>::infinity()), "-INF");
    EXPECT_EQ(FloatToStr(std::nan("")), "NAN");
    EXPECT_TRUE(std::isinf(StrToFloat("-inf")));
    EXPECT_TRUE(std::isnan(StrToFloat("NaN")));
}

TEST(StrToFloat, ReadsWhatFloatToStrWrites)
{
    for (double v : {0.5, 1e-3, -1.25, 1.7e30, 1e-6, 123456.789, -9.87654321e-12, 4.9e-300}) {
        SCOPED_TRACE(v);
        const double back = StrToFloat(FloatToStr(v));
        EXPECT_NEAR(back, v, std::fabs(v) * 1e-14);
    }
    EXPECT_DOUBLE_EQ(StrToFloat(" +2.5e+3 "), 2500.0);
    EXPECT_DOUBLE_EQ(StrToFloat("1."), 1.0);
    EXPECT_DOUBLE_EQ(StrToFloat(".25"), 0.25);
}

TEST(StrToFloat, RefusesWhatIsNotANumber)
{
    for (const char* bad : {"", " ", "abc", "1,5", "1.5x", "e5", ".", "--1", "0x10", "1e999", "1 2"}) {
        SCOPED_TRACE(bad);
        double v = 0;
        EXPECT_FALSE(TryStrToFloat(QString::fromLatin1(bad), v));
        EXPECT_THROW(StrToFloat(QString::fromLatin1(bad)), EConvertError);
    }
    try {
        StrToFloat("1,5");
        FAIL();
    } catch (const EConvertError& e) {
        EXPECT_EQ(e.Message(), "'1,5' is not a valid floating point value");
    }
}

TEST(StrToInt, DecimalAndHexWithRangeChecks)
{
    EXPECT_EQ(StrToInt("42"), 42);
    EXPECT_EQ(StrToInt("  -7"), -7);
    EXPECT_EQ(StrToInt("$FF"), 255);
    EXPECT_EQ(StrToInt("0x10"), 16);
    EXPECT_EQ(StrToInt("-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(StrToInt64("4294967301"), 4294967301LL);
    EXPECT_EQ(StrToInt64("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    for (const char* bad : {"", "x", "1.5", "2147483648", "12 ", "+-1", "$", "9223372036854775808"}) {
        SCOPED_TRACE(bad);
        EXPECT_THROW(StrToInt(QString::fromLatin1(bad)), EConvertError);
    }
    EXPECT_THROW(StrToInt64("9223372036854775808"), EConvertError);
    try {
        StrToInt("abc");
        FAIL();
    } catch (const EConvertError& e) {
        EXPECT_EQ(e.Message(), "'abc' is not a valid integer value");
    }
}

TEST(FloatToStr, OtherPrecisionsMoveTheExponentSwitch)
{
    EXPECT_EQ(FloatToStrGeneral(1234567.0, 7), "1234567");
    EXPECT_EQ(FloatToStrGeneral(12345678.0, 7), "1.234568E7");
    EXPECT_EQ(FloatToStrGeneral(0.1f, 7), "0.1");
    EXPECT_EQ(FloatToStrGeneral(0.1f, 15), "0.100000001490116");
    EXPECT_EQ(FloatToStrGeneral(2.6, 0), "3");
}
