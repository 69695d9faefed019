#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QJsonDocument>
#include <bit>
#include <cmath>
#include <limits>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/value_stream.h"
#include "tests/framework/print_qstring.h"

using namespace qx;
using ::testing::HasSubstr;
using ::testing::Property;
using ::testing::Throws;

namespace {

// Through JSON text, as a file would carry it.
QJsonArray ThroughText(const QJsonArray& values)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(QJsonDocument(values).toJson(), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError);
    return document.array();
}

auto StreamErrorWith(const char* text)
{
    return Throws<EStreamError>(Property(&EStreamError::what, HasSubstr(text)));
}

TEST(ValueStream, AwkwardValuesReadBackExactly)
{
    const QStringList strings = {"", "say \"hi\"\\", "Grüße, 温度 °C", "line\nbreak\ttab", QString(QChar(0))};
    const std::int64_t integers[] = {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max(),
                                     0, -1, 9007199254740993};
    constexpr double kInf = std::numeric_limits<double>::infinity();
    const double floats[] = {-0.0, 0.0, std::numeric_limits<double>::denorm_min(), -2.2250738585072009e-308,
                             std::numeric_limits<double>::max(), 1.7e30, 0.1, 1.0, kInf, -kInf};
    // The integers in a list and the floats in a list inside it, so that nesting goes through text as well.
    TWriter writer(QStringLiteral("test"));
    for (const QString& s : strings) writer.WriteString(s);
    writer.WriteListBegin();
    for (const std::int64_t n : integers) writer.WriteInteger(n);
    writer.WriteListBegin();
    for (const double d : floats) writer.WriteFloat(d);
    writer.WriteFloat(std::nan(""));
    writer.WriteListEnd();
    writer.WriteListEnd();
    writer.WriteBoolean(true);
    writer.WriteBoolean(false);

    TReader reader(ThroughText(writer.GetValues()), QStringLiteral("test"));
    for (const QString& s : strings) EXPECT_EQ(reader.ReadString(), s);
    reader.ReadListBegin();
    for (const std::int64_t n : integers) EXPECT_EQ(reader.ReadInteger(), n);
    reader.ReadListBegin();
    for (const double d : floats) {
        ASSERT_EQ(reader.NextValue(), vaFloat);  // not an integer, which would read as a float too
        EXPECT_EQ(std::bit_cast<std::uint64_t>(reader.ReadFloat()), std::bit_cast<std::uint64_t>(d)) << d;
    }
    EXPECT_TRUE(std::isnan(reader.ReadFloat()));
    reader.ReadListEnd();
    reader.ReadListEnd();
    EXPECT_TRUE(reader.ReadBoolean());
    EXPECT_FALSE(reader.ReadBoolean());
    EXPECT_TRUE(reader.AtEnd());
}

TEST(ValueStream, NestedListsKeepTheirShape)
{
    TReader reader(QJsonDocument::fromJson(R"([["a", [], [7, [{"float": "2.5"}]]], 8])").array());
    reader.ReadListBegin();
    EXPECT_EQ(reader.ReadString(), "a");
    reader.ReadListBegin();
    EXPECT_TRUE(reader.EndOfList());
    reader.ReadListEnd();
    reader.ReadListBegin();
    EXPECT_EQ(reader.ReadInteger(), 7);
    EXPECT_EQ(reader.GetItemPath(), "[0][2][1]");
    reader.SkipValue();
    EXPECT_TRUE(reader.EndOfList());
    reader.ReadListEnd();
    reader.ReadListEnd();
    EXPECT_FALSE(reader.AtEnd());
    EXPECT_EQ(reader.ReadFloat(), 8.0);  // an integer reads as a float
    EXPECT_TRUE(reader.AtEnd());
}

TEST(ValueStream, FailedReadsNameThePlaceAndKeepThePosition)
{
    TReader reader(QJsonDocument::fromJson(R"([["x"]])").array(), QStringLiteral("Gauge1.Bindings"));

    EXPECT_THAT([&] { reader.ReadString(); }, StreamErrorWith("Gauge1.Bindings, item [0]: string expected but list found"));
    reader.ReadListBegin();
    EXPECT_THAT([&] { reader.ReadInteger(); }, StreamErrorWith("item [0][0]: integer expected but string found"));
    EXPECT_THAT([&] { reader.ReadFloat(); }, StreamErrorWith("float expected but string found"));
    EXPECT_THAT([&] { reader.ReadListEnd(); }, StreamErrorWith("end of list expected but string found"));
    EXPECT_EQ(reader.ReadString(), "x");
    EXPECT_THAT([&] { reader.ReadBoolean(); }, StreamErrorWith("item [0][1]: boolean expected but end of list found"));
    EXPECT_THAT([&] { reader.SkipValue(); }, StreamErrorWith("value expected but end of list found"));
    reader.ReadListEnd();
    EXPECT_THAT([&] { reader.ReadListBegin(); }, StreamErrorWith("item [1]: list expected but end of data found"));
    EXPECT_THAT([&] { reader.ReadListEnd(); }, StreamErrorWith("end of list read outside a list"));
}

TEST(ValueStream, ItemsThatAreNoStreamValuesAreRejected)
{
    const char* bad[] = {"[null]", "[1.5]", "[{\"float\":\"abc\"}]", "[{\"float\":\"infinity\"}]", "[{\"float\":1.5}]",
                         "[{\"float\":\"1\",\"x\":1}]", "[{\"float\":\"\"}]", "[18446744073709551616]"};
    for (const char* text : bad) {
        const TReader reader(QJsonDocument::fromJson(text).array(), QStringLiteral("p"));
        EXPECT_THAT([&] { (void)reader.NextValue(); }, StreamErrorWith("p, item [0]: not a stream value")) << text;
    }
}

TEST(ValueStream, UnbalancedWritingIsAnError)
{
    TWriter writer(QStringLiteral("w"));
    EXPECT_THAT([&] { writer.WriteListEnd(); }, StreamErrorWith("w: list end written without a list begin"));
    writer.WriteListBegin();
    EXPECT_THAT([&] { (void)writer.GetValues(); }, StreamErrorWith("w: 1 list(s) written without a list end"));
    writer.WriteListEnd();
    EXPECT_EQ(writer.GetValues().size(), 1);
}

}  // namespace
