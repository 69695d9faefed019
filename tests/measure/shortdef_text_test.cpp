#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLocale>
#include <cfloat>
#include <clocale>
#include <cmath>
#include <string>
#include <tuple>

#include "qxbase/framework/exception.h"
#include "qxbase/measure/shortdef_text.h"
#include "tests/framework/print_qstring.h"

using namespace qx;
using ::testing::ThrowsMessage;

namespace {

struct Values {
    std::int32_t v1 = 11, v4 = 11, v5 = 11, v6 = 11, v9 = 11;
    double v2 = 11, v3 = 11, v7 = 11, v8 = 11;
    void Parse(const QString& text) { ParseShortItemDef(text, v1, v2, v3, v4, v5, v6, v7, v8, v9); }
};

TRVShortdef MakeDef(std::int32_t no, std::uint64_t first, std::uint32_t flags, TColor color)
{
    return {.ChannelNo = no, .XStart = -0.25, .XEnd = 1.5e-9, .FirstSample = first, .Flags = flags,
            .Color = color, .YMin = -NoValueMarker, .YMax = 123456.789, .Handle = 42};
}

// Restores Qt's default and the C runtime's locale when a test ends, however it ends.
struct LocaleGuard {
    QLocale FQt;
    std::string FC = std::setlocale(LC_ALL, nullptr);
    ~LocaleGuard()
    {
        std::setlocale(LC_ALL, FC.c_str());
        QLocale::setDefault(FQt);
    }
};

}  // namespace

TEST(ShortdefText, WritesTheEightFieldsAndReadsRunsOfSpacedFieldsBack)
{
    // Field 4 is value5 * 2^32 + value4.
    const QString text = CreateShortDef(3, 0.5, 1e-3, 5, 1, 7, 2, -1.25, -4);
    EXPECT_EQ(text, "3 0.5 0.001 4294967301 7 2 -1.25 -4");
    Values v;
    v.Parse(text);
    EXPECT_EQ(std::tuple(v.v1, v.v4, v.v5, v.v6, v.v9), std::tuple(3, 5, 1, 7, -4));
    EXPECT_EQ(std::tuple(v.v2, v.v3, v.v7, v.v8), std::tuple(0.5, 1e-3, 2.0, -1.25));

    v.Parse("   1  2.5   3 4 5 6 7 8 and more");
    EXPECT_EQ(std::tuple(v.v1, v.v3, v.v9), std::tuple(1, 3.0, 8));
    v.Parse("1 INF -INF 0x10 $F NAN 1E300 -0");
    EXPECT_TRUE(std::isinf(v.v3) && v.v3 < 0 && std::isnan(v.v7));
    EXPECT_EQ(std::tuple(v.v4, v.v6, v.v9), std::tuple(16, 15, 0));
    v.Parse("-1 0 0 -2 -1 0 0 0");  // negative texts are the signed reading of the same bits
    EXPECT_EQ(std::tuple(v.v1, v.v4, v.v5, v.v6), std::tuple(-1, -2, -1, -1));
    v.Parse(CreateShortDef(0, 0, 0, 0, 0, 0, -DBL_MAX, DBL_MAX, 0));  // "no limit" range
    EXPECT_EQ(std::tuple(v.v7, v.v8), std::tuple(-DBL_MAX, DBL_MAX));
}

TEST(ShortdefText, RecordSurvivesTheRoundTripExceptItsHandle)
{
    for (const TRVShortdef& def : {MakeDef(0, 0, 0, 0), MakeDef(7, 4294967301ull, 0x3FF, clSystemColor | 5),
                                   MakeDef(-1, ~0ull, 0xFFFFFFFFu, clNone), MakeDef(9, 1ull << 63, 0x12, clRed)}) {
        const QString text = CreateShortDef(def);
        TRVShortdef back;
        back.Handle = 99;
        ParseShortItemDef(text, back);
        TRVShortdef expected = def;
        expected.Handle = 99;
        EXPECT_EQ(back, expected) << text.toStdString();
    }
    // Unsigned fields are written as unsigned values.
    EXPECT_EQ(CreateShortDef(MakeDef(-1, ~0ull, ~0u, 0)),
              "4294967295 -0.25 1.5E-9 18446744073709551615 4294967295 -1.7E30 123456.789 0");
}

// One row per way a field fails: none left, a float (in each pair), a 64-bit field by syntax and by
// range, an unsigned 32-bit field above and below its range, the signed field, a tab.
TEST(ShortdefText, BadTextRaisesNamingTheFieldAndChangesNothing)
{
    const std::pair<const char*, int> rows[] = {
        {"1 2 3 4 5 6 7", 8}, {"1 2,5 3 4 5 6 7 8", 2}, {"1 2 3 4 5 6 1E999 8", 7}, {"1 2 3 4.0 5 6 7 8", 4},
        {"1 2 3 18446744073709551616 5 6 7 8", 4}, {"1 2 3 4 4294967296 6 7 8", 5}, {"-2147483649 2 3 4 5 6 7 8", 1},
        {"1 2 3 4 5 6 7 2147483648", 8}, {"1\t2 3 4 5 6 7 8 9", 1}};
    for (const auto& [text, field] : rows) {
        Values v;
        const QString where = QStringLiteral(" in field %1 of the channel definition \"%2\"").arg(field).arg(text);
        const auto message = ::testing::AllOf(::testing::HasSubstr("' is not a valid "),
                                              ::testing::EndsWith(where.toStdString()));
        EXPECT_THAT([&] { v.Parse(text); }, ThrowsMessage<EConvertError>(message)) << text;
        EXPECT_TRUE(v.v1 == 11 && v.v2 == 11 && v.v9 == 11) << text;
        TRVShortdef def = MakeDef(5, 6, 7, 8);
        EXPECT_THROW(ParseShortItemDef(text, def), EConvertError) << text;
        EXPECT_EQ(def, MakeDef(5, 6, 7, 8)) << text;
    }
}

// A German locale, in Qt and (where installed) in the C runtime, must not bring in ",".
TEST(ShortdefText, IgnoresTheLocale)
{
    const LocaleGuard guard;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    if (!std::setlocale(LC_ALL, "de_DE.UTF-8")) std::setlocale(LC_ALL, "de_DE");
    const QString text = CreateShortDef(1, 0.5, 1234.5678, 0, 0, 0, -2.5e-7, 1.7e30, 0);
    EXPECT_EQ(text, "1 0.5 1234.5678 0 0 -2.5E-7 1.7E30 0");
    Values v;
    v.Parse(text);
    EXPECT_EQ(std::tuple(v.v3, v.v8), std::tuple(1234.5678, 1.7e30));
    EXPECT_THROW(v.Parse("1 0,5 1 1 1 1 1 1"), EConvertError);
}
