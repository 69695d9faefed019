#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "qxbase/framework/prop_ini_file.h"
#include "tests/framework/print_qstring.h"

using namespace qx;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

namespace {

QStringList Lines(const TKSPropIniFile& ini)
{
    QStringList lines{QStringLiteral("stale content")};
    ini.WriteToStringlist(lines);
    return lines;
}

TEST(KSPropIniFileParsing, ReadsHandWrittenTextAndWritesItBackUnchanged)
{
    const QStringList text = {"; written by hand", "orphan=before any section", "", "  [ Main ]  ",
                              "  Name = Pump 1", "Count=12", "; Count=99", "garbage without equals",
                              "[broken=line", "=no key", "Path=a=b=c", "[Other]", "count=1",
                              "[MAIN]", "Extra=second block", "count=shadowed"};
    const TKSPropIniFile ini(text);
    EXPECT_EQ(ini.ReadString("main", "name", "?"), " Pump 1");
    EXPECT_EQ(ini.ReadInteger("Main", "Count", -1), 12);
    EXPECT_EQ(ini.ReadString("Main", "Path", "?"), "a=b=c");
    EXPECT_EQ(ini.ReadInteger("Other", "COUNT", -1), 1);
    EXPECT_FALSE(ini.ValueExists("", "orphan"));
    EXPECT_EQ(ini.ReadSections(), QStringList({"Main", "Other"}));
    // Comments, garbage and "[broken" are no keys; the second [MAIN] block adds to the first.
    EXPECT_EQ(ini.ReadSection("MAIN"), QStringList({"Name", "Count", "Path", "Extra"}));
    EXPECT_EQ(Lines(ini), text);

    const TKSPropIniFile split(QStringList{QStringLiteral("[A]\r\nx=1\ry=2\n\nz=3")});
    EXPECT_EQ(Lines(split), QStringList({"[A]", "x=1", "y=2", "", "z=3"}));
    EXPECT_EQ(split.ReadSection("A"), QStringList({"x", "y", "z"}));
}

TEST(KSPropIniFileWriting, RewritesInPlaceAndAddsKeysBeforeClosingComments)
{
    TKSPropIniFile ini(QStringList{"[A]", "x=1", "; about B", "", "[B]", "; empty"});
    ini.WriteString("a", "y", "Chart 1");
    ini.WriteInteger("B", "z", -42);
    ini.WriteString("A", "X", "rewritten");
    ini.WriteBool("New", "On", true);
    ini.WriteBool("New", "Off", false);
    ini.WriteFloat("New", "Gain", 0.5);
    EXPECT_EQ(Lines(ini), QStringList({"[A]", "x=rewritten", "y=Chart 1", "; about B", "", "[B]", "z=-42",
                                       "; empty", "[New]", "On=1", "Off=0", "Gain=0.5"}));
}

TEST(KSPropIniFileReading, UnreadableNumbersGiveTheDefault)
{
    const TKSPropIniFile ini(QStringList{"[N]", "blank=", "word=abc", "padded= 12 ", "two=2", "yes=true",
                                         "comma=1,5", "exp=1.5E3", "big=3000000000"});
    for (const char* key : {"word", "big", "missing"}) EXPECT_EQ(ini.ReadInteger("N", key, 7), 7) << key;
    EXPECT_EQ(ini.ReadInteger("N", "padded", 7), 12);
    EXPECT_TRUE(ini.ReadBool("N", "two", false));
    EXPECT_TRUE(ini.ReadBool("N", "yes", true) && !ini.ReadBool("N", "yes", false));
    EXPECT_DOUBLE_EQ(ini.ReadFloat("N", "comma", -1), -1);
    EXPECT_DOUBLE_EQ(ini.ReadFloat("N", "exp", -1), 1500);
    EXPECT_EQ(ini.ReadString("N", "blank", "default"), "");
    EXPECT_EQ(ini.ReadString("Nope", "two", "default"), "default");
}

TEST(KSPropIniFileReading, FloatsComeBackAsTheSameDouble)
{
    constexpr double kInf = std::numeric_limits<double>::infinity();
    const double values[] = {0.1 + 0.2, 1.0 / 3.0, -2.5e-7, 1.7e30, 5e-324, 1.7976931348623157e308, kInf, -kInf};
    TKSPropIniFile ini;
    for (std::size_t i = 0; i < std::size(values); ++i) ini.WriteFloat("F", QString::number(i), values[i]);
    ini.WriteFloat("F", "nan", std::nan(""));
    const TKSPropIniFile back(Lines(ini));
    for (std::size_t i = 0; i < std::size(values); ++i)
        EXPECT_EQ(back.ReadFloat("F", QString::number(i), 0), values[i]);
    EXPECT_TRUE(std::isnan(back.ReadFloat("F", "nan", 0)));
    EXPECT_EQ(back.ReadString("F", "0", ""), "0.30000000000000004");
    EXPECT_EQ(back.ReadString("F", "3", ""), "1.7E30");
}

TEST(KSPropIniFileRoundTrip, AwkwardValuesReadBackUnchanged)
{
    const QStringList values = {"", " ", "  lead", "trail  ", "\\", "\\n", "\\e:", "\\e:x\\n", "\\e", "a\\e:b",
                                "line1\nline2", "\r\n", "end\r", "C:\\new\\raw", "[x]", ";not a comment", "=",
                                "Grüße € 😀", "\\\n\\"};
    TKSPropIniFile ini;
    for (qsizetype i = 0; i < values.size(); ++i) ini.WriteString("Values", QStringLiteral("k%1").arg(i), values[i]);
    const QStringList lines = Lines(ini);
    const TKSPropIniFile back(lines);
    for (qsizetype i = 0; i < values.size(); ++i) {
        const QString key = QStringLiteral("k%1").arg(i);
        EXPECT_EQ(back.ReadString("Values", key, "<missing>"), values[i]);
        // Values that need no escaping are stored as they are.
        const bool plain = !values[i].contains('\n') && !values[i].contains('\r') && !values[i].startsWith("\\e:");
        EXPECT_EQ(lines.contains(key + '=' + values[i]), plain) << key.toStdString();
    }
    EXPECT_EQ(TKSPropIniFile::EncodeValue("a\\b\r\nc"), "\\e:a\\\\b\\r\\nc");
    // Hand-written escaped text with sequences the writer never makes keeps them.
    EXPECT_EQ(TKSPropIniFile::DecodeValue("\\e:tab\\there\\"), "tab\\there\\");
}

TEST(KSPropIniFileNames, UnstorableNamesRaiseAndChangeNothingOddOnesRoundTrip)
{
    TKSPropIniFile ini;
    ini.WriteString("", "plain", "1");
    ini.WriteString("[x", "a[b]", "2");
    ini.WriteString("Größe", "Äpfel", "3");
    const QStringList before = Lines(ini);
    for (const QString key : {"", "a=b", "a\nb", "a\rb", " a", "a ", ";a", "[a"})
        EXPECT_THROW(ini.WriteString("New", key, "x"), EKSPropIniFileError) << key.toStdString();
    for (const QString section : {"a]b", "a\nb", "a\r", " a", "a\t"})
        EXPECT_THROW(ini.WriteString(section, "k", "x"), EKSPropIniFileError) << section.toStdString();
    EXPECT_THAT([&] { ini.WriteString("S", "a=b", "x"); },
                ThrowsMessage<EKSPropIniFileError>(StrEq("Invalid ini key name 'a=b' in section 'S'")));
    EXPECT_EQ(Lines(ini), before);

    const TKSPropIniFile back(before);
    EXPECT_EQ(back.ReadString("", "plain", ""), "1");
    EXPECT_EQ(back.ReadString("[x", "a[b]", ""), "2");
    EXPECT_EQ(back.ReadString("GRÖßE", "äpfel", ""), "3");
}

TEST(KSPropIniFileSections, EraseAndDeleteTouchOnlyTheirSection)
{
    TKSPropIniFile ini(QStringList{"[A]", "x=1", "; note", "[B]", "x=2", "[a]", "z=3", "X=shadow"});
    EXPECT_TRUE(ini.SectionExists("b"));
    EXPECT_FALSE(ini.SectionExists("C"));
    ini.DeleteKey("A", "X");
    EXPECT_EQ(Lines(ini), QStringList({"[A]", "; note", "[B]", "x=2", "[a]", "z=3"}));
    ini.EraseSection("a");
    EXPECT_EQ(Lines(ini), QStringList({"[B]", "x=2"}));
    ini.DeleteKey("B", "x");
    EXPECT_TRUE(ini.SectionExists("B"));
    EXPECT_TRUE(ini.ReadSection("B").isEmpty());
}

}  // namespace
