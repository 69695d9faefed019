#include <gtest/gtest.h>

#include <QStringList>
#include <algorithm>
#include <random>

#include "qxbase/measure/channel_names.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

using TextRows = std::initializer_list<std::pair<const char*, const char*>>;

TEST(ChannelNames, PostfixesAndChannelPart)
{
    const std::pair<const char*, int> numbers[] = {
        {"Temp", -1}, {"AI_7", 7}, {"AI_", -1}, {"", -1}, {"AI 007", 7}, {"12", 12}, {"AI-5", 5},
        {"AI 2147483647", 2147483647}, {"AI 2147483648", -1}, {"AI 000000000000000000001", 1},
        {"AI 99999999999999999999999", -1}, {"AI \u0663", -1} /* Arabic-Indic digit */};
    for (const auto& [name, number] : numbers)
        EXPECT_EQ(GetPostfixNumberFromName(QString::fromUtf8(name)), number) << name;

    for (const auto& [name, postfix] : TextRows{{"Temp", ""}, {"AI_7", "_7"}, {"AI_", "_"}, {"A1_2_3", "1_2_3"}})
        EXPECT_EQ(GetPostfixStringFromName(name), postfix) << name;
    const QString run = QString(200, QLatin1Char('1')) + QString(100, QLatin1Char('_'));
    EXPECT_EQ(GetPostfixStringFromName("X" + run), run.left(255));

    for (const auto& [name, part] : TextRows{{"Avg.Sum.AI 3", "AI 3"}, {"A.B.", "A.B."}, {"Temp", "Temp"}, {".x", "x"}})
        EXPECT_EQ(GetChannelPartFromChannelName(name), part) << name;
}

TEST(ChannelNames, ListLookUpsByChannelPart)
{
    EXPECT_FALSE(ExistDoubleChannelPartEntries({"AI 1", "AI 2", "ai 1", "AI 1."}));
    EXPECT_TRUE(ExistDoubleChannelPartEntries({"AI 1", "AI 2", "Sum.AI 1"}));

    int index = 5;
    const QStringList names{"Sum.AI 1", "AI 2", "AI 1", "Avg.AI 2"};
    EXPECT_TRUE(FindChannelPartOriginIndex(names, "AI 1", index, true));
    EXPECT_EQ(index, 2);
    EXPECT_TRUE(FindChannelPartOriginIndex(names, "AI 1", index, false));
    EXPECT_EQ(index, 0);
    EXPECT_TRUE(FindChannelPartOriginIndex(names, "Max.AI 2", index, false));
    EXPECT_EQ(index, 1);
    EXPECT_FALSE(FindChannelPartOriginIndex(names, "Max.AI 2", index, true));
    EXPECT_EQ(index, -1);
}

TEST(ChannelNames, TheCompareIsANaturalTotalOrder)
{
    const QStringList sorted{"AI",     "AI 1",  "AI 02", "AI 2",       "ai 2",        "AI 10",
                             "AI 10a", "ai 11", "AI_1",  "Slot2.AI 1", "Slot10.AI 1", "Temp"};
    QStringList list = sorted;
    std::shuffle(list.begin(), list.end(), std::mt19937(7));
    std::sort(list.begin(), list.end(), [](const QString& a, const QString& b) { return theCompare(a, b) < 0; });
    EXPECT_EQ(list, sorted);
    for (const QString& a : sorted)
        for (const QString& b : sorted) {
            EXPECT_EQ(theCompare(a, b) == 0, a == b) << a.toStdString() << " / " << b.toStdString();
            EXPECT_EQ(theCompare(a, b), -theCompare(b, a));
        }
    EXPECT_LT(theCompare("AI 99999999999999999998", "AI 99999999999999999999"), 0);

    list = {"Sum.AI 10", "AI 10", "Sum.AI 2", "Avg.AI 2", "AI 2", "Temp"};
    std::sort(list.begin(), list.end(), [](const QString& a, const QString& b) { return theTargetCompare(a, b) < 0; });
    EXPECT_EQ(list, QStringList({"AI 2", "Avg.AI 2", "Sum.AI 2", "AI 10", "Sum.AI 10", "Temp"}));
}

TEST(ChannelNames, ExtendFilenameAddsTheDataFileExtension)
{
    for (const auto& [in, out] :
         TextRows{{"run", "run.dcf"}, {"run.", "run.dcf"}, {"run.DCF", "run.DCF"}, {"run.txt", "run.txt"},
                  {"/data/v1.2/run", "/data/v1.2/run.dcf"}, {"C:\\v1.2\\run", "C:\\v1.2\\run.dcf"},
                  {".run", ".run.dcf"}, {"", ""}, {"/data/", "/data/"}, {"a/..", "a/.."}})
        EXPECT_EQ(ExtendFilename(in), out) << in;
}
