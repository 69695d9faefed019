#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "qxbase/framework/prop_ini_file.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

namespace {

QStringList Lines(const TKSPropIniFile& ini)
{
    QStringList lines{QStringLiteral("stale content")};
    ini.WriteToStringlist(lines);
    return lines;
}

TKSPropIniFile Reread(const TKSPropIniFile& ini) { return TKSPropIniFile(Lines(ini)); }

const QStringList kHandWritten = {
    QStringLiteral("; written by hand"),
    QStringLiteral("orphan=before any section"),
    QStringLiteral(""),
    QStringLiteral("  [ Main ]  "),
    QStringLiteral("  Name = Pump 1"),
    QStringLiteral("Count=12"),
    QStringLiteral("; Count=99"),
    QStringLiteral("garbage without equals"),
    QStringLiteral("[broken=line"),
    QStringLiteral("=no key"),
    QStringLiteral("Path=a=b=c"),
    QStringLiteral("[Other]"),
    QStringLiteral("count=1"),
    QStringLiteral("[MAIN]"),
    QStringLiteral("Extra=second block"),
    QStringLiteral("count=shadowed"),
};

TEST(KSPropIniFileParsing, ReadsHandWrittenText)
{
    const TKSPropIniFile ini(kHandWritten);
    EXPECT_EQ(ini.ReadString("main", "name", "?"), " Pump 1");
    EXPECT_EQ(ini.ReadInteger("Main", "Count", -1), 12);
    EXPECT_EQ(ini.ReadString("Main", "Path", "?"), "a=b=c");
    EXPECT_EQ(ini.ReadString("Main", "Extra", "?"), "second block");
    EXPECT_EQ(ini.ReadInteger("Other", "COUNT", -1), 1);
    EXPECT_FALSE(ini.ValueExists("Main", "garbage without equals"));
    EXPECT_FALSE(ini.ValueExists("Main", "; Count"));
    EXPECT_FALSE(ini.ValueExists("Main", "[broken"));
    EXPECT_FALSE(ini.ValueExists("Main", ""));
    EXPECT_FALSE(ini.ValueExists("", "orphan"));
    EXPECT_EQ(ini.ReadSections(), QStringList({"Main", "Other"}));
    EXPECT_EQ(ini.ReadSection("MAIN"), QStringList({"Name", "Count", "Path", "Extra"}));
}

TEST(KSPropIniFileParsing, UnchangedStoreWritesItsInputBack)
{
    EXPECT_EQ(Lines(TKSPropIniFile(kHandWritten)), kHandWritten);
}

TEST(KSPropIniFileParsing, ElementsHoldingLineBreaksAreSplit)
{
    const TKSPropIniFile ini(QStringList{QStringLiteral("[A]\r\nx=1\ry=2\n\nz=3")});
    EXPECT_EQ(ini.ReadSection("A"), QStringList({"x", "y", "z"}));
    EXPECT_EQ(Lines(ini), QStringList({"[A]", "x=1", "y=2", "", "z=3"}));
}

TEST(KSPropIniFileWriting, ConventionalLines)
{
    TKSPropIniFile ini;
    ini.WriteString("Listitems", "listitem.0.panel", "Chart 1");
    ini.WriteInteger("Listitems", "count", -42);
    ini.WriteBool("Main", "PanelEnabled", true);
    ini.WriteBool("Main", "Off", false);
    ini.WriteFloat("Main", "Gain", 0.5);
    ini.WriteFloat("Main", "Marker", 1.7e30);
    EXPECT_EQ(Lines(ini), QStringList({"[Listitems]", "listitem.0.panel=Chart 1", "count=-42", "[Main]",
                                       "PanelEnabled=1", "Off=0", "Gain=0.5", "Marker=1.7E30"}));
}

TEST(KSPropIniFileWriting, RewriteReplacesInPlaceAndKeepsOrder)
{
    TKSPropIniFile ini;
    ini.WriteString("S", "A", "1");
    ini.WriteString("T", "X", "x");
    ini.WriteString("S", "B", "2");
    ini.WriteString("s", "b", "two");
    ini.WriteString("S", "C", "3");
    EXPECT_EQ(Lines(ini), QStringList({"[S]", "A=1", "B=two", "C=3", "[T]", "X=x"}));
}

TEST(KSPropIniFileWriting, NewKeysGoBeforeTheClosingComments)
{
    TKSPropIniFile ini(QStringList{"[A]", "x=1", "; about B", "", "[B]", "; empty"});
    ini.WriteString("a", "y", "2");
    ini.WriteString("B", "z", "3");
    EXPECT_EQ(Lines(ini), QStringList({"[A]", "x=1", "y=2", "; about B", "", "[B]", "z=3", "; empty"}));
}

TEST(KSPropIniFileReading, BadNumbersGiveTheDefault)
{
    const TKSPropIniFile ini(QStringList{"[N]", "blank=", "word=abc", "padded= 12 ", "hex=$10", "two=2",
                                         "zero=0", "yes=true", "comma=1,5", "exp=1.5E3", "big=3000000000"});
    EXPECT_EQ(ini.ReadInteger("N", "word", 7), 7);
    EXPECT_EQ(ini.ReadInteger("N", "blank", 7), 7);
    EXPECT_EQ(ini.ReadInteger("N", "padded", 7), 12);
    EXPECT_EQ(ini.ReadInteger("N", "hex", 7), 16);
    EXPECT_EQ(ini.ReadInteger("N", "big", 7), 7);
    EXPECT_EQ(ini.ReadInteger("N", "missing", 7), 7);
    EXPECT_TRUE(ini.ReadBool("N", "two", false));
    EXPECT_FALSE(ini.ReadBool("N", "zero", true));
    EXPECT_FALSE(ini.ReadBool("N", "yes", false));
    EXPECT_TRUE(ini.ReadBool("N", "yes", true));
    EXPECT_DOUBLE_EQ(ini.ReadFloat("N", "comma", -1), -1);
    EXPECT_DOUBLE_EQ(ini.ReadFloat("N", "exp", -1), 1500);
    EXPECT_DOUBLE_EQ(ini.ReadFloat("N", "padded", -1), 12);
    EXPECT_EQ(ini.ReadString("N", "blank", "default"), "");
    EXPECT_EQ(ini.ReadString("N", "missing", "default"), "default");
    EXPECT_EQ(ini.ReadString("Nope", "two", "default"), "default");
}

TEST(KSPropIniFileReading, FloatsComeBackAsTheSameDouble)
{
    const double values[] = {0.1 + 0.2, 1.0 / 3.0, -2.5e-7, 1.7e30, 5e-324, 1.7976931348623157e308,
                             std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
    TKSPropIniFile ini;
    for (int i = 0; i < static_cast<int>(std::size(values)); ++i) ini.WriteFloat("F", QString::number(i), values[i]);
    ini.WriteFloat("F", "nan", std::nan(""));
    const TKSPropIniFile back = Reread(ini);
    for (int i = 0; i < static_cast<int>(std::size(values)); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(back.ReadFloat("F", QString::number(i), 0), values[i]);
    }
    EXPECT_TRUE(std::isnan(back.ReadFloat("F", "nan", 0)));
    EXPECT_EQ(back.ReadString("F", "0", ""), "0.30000000000000004");
    EXPECT_EQ(back.ReadString("F", "3", ""), "1.7E30");
}

TEST(KSPropIniFileRoundTrip, AwkwardValuesReadBackUnchanged)
{
    QStringList values = {"", " ", "a=b=c", "  lead", "trail  ", "\t", "\\", "\\n", "\\e:", "\\e:x\\n",
                          "\\e", "line1\nline2", "\r\n", "\n", "end\r", "C:\\new\\raw", "\\\\server\\share",
                          "[x]", ";not a comment", "=", QString::fromUtf8("Grüße € 😀"), "\\\n\\"};
    // Random texts over an alphabet rich in the characters the format treats specially.
    const QString alphabet = QString::fromUtf8("ab =\\e:nr\r\n;[]\t\u00fc\u20ac");
    std::mt19937 random(20240611);
    for (int i = 0; i < 400; ++i) {
        QString value;
        const int length = static_cast<int>(random() % 12);
        for (int c = 0; c < length; ++c) value += alphabet[static_cast<qsizetype>(random() % alphabet.size())];
        if (i % 5 == 0) value.prepend(QStringLiteral("\\e:"));
        values.append(value);
    }

    TKSPropIniFile ini;
    for (qsizetype i = 0; i < values.size(); ++i) ini.WriteString("Values", QStringLiteral("k%1").arg(i), values[i]);
    const QStringList lines = Lines(ini);
    for (const QString& line : lines) EXPECT_FALSE(line.contains('\n') || line.contains('\r')) << line.toStdString();

    const TKSPropIniFile back(lines);
    const TKSPropIniFile joined(QStringList{lines.join('\n')});
    for (qsizetype i = 0; i < values.size(); ++i) {
        const QString key = QStringLiteral("k%1").arg(i);
        SCOPED_TRACE(key.toStdString());
        EXPECT_EQ(back.ReadString("Values", key, "<missing>"), values[i]);
        EXPECT_EQ(joined.ReadString("Values", key, "<missing>"), values[i]);
        // Values that need no escaping are stored byte for byte.
        const QString& v = values[i];
        if (!v.contains('\n') && !v.contains('\r') && !v.startsWith("\\e:")) {
            EXPECT_TRUE(lines.contains(key + '=' + v));
        }
    }
}

TEST(KSPropIniFileRoundTrip, EscapedFormIsMarkedAndReadable)
{
    EXPECT_EQ(TKSPropIniFile::EncodeValue("a\\b\r\nc"), "\\e:a\\\\b\\r\\nc");
    EXPECT_EQ(TKSPropIniFile::EncodeValue("a\\b"), "a\\b");
    // Hand-written escaped text with sequences the writer never makes keeps them.
    EXPECT_EQ(TKSPropIniFile::DecodeValue("\\e:tab\\there\\"), "tab\\there\\");
}

TEST(KSPropIniFileNames, UnstorableNamesRaiseAndChangeNothing)
{
    TKSPropIniFile ini;
    ini.WriteString("S", "k", "v");
    const QStringList before = Lines(ini);
    for (const QString key : {"", "a=b", "a\nb", "a\rb", " a", "a ", ";a", "[a"}) {
        SCOPED_TRACE(key.toStdString());
        EXPECT_THROW(ini.WriteString("S", key, "x"), EKSPropIniFileError);
        EXPECT_THROW(ini.WriteInteger("New", key, 1), EKSPropIniFileError);
    }
    for (const QString section : {"a]b", "a\nb", "a\r", " a", "a\t"}) {
        SCOPED_TRACE(section.toStdString());
        EXPECT_THROW(ini.WriteString(section, "k", "x"), EKSPropIniFileError);
    }
    EXPECT_EQ(Lines(ini), before);
    EXPECT_EQ(ini.ReadString("S", "a=b", "default"), "default");

    try {
        ini.WriteString("S", "a=b", "x");
    } catch (const EKSPropIniFileError& e) {
        EXPECT_EQ(e.Message(), "Invalid ini key name 'a=b' in section 'S'");
    }
}

TEST(KSPropIniFileNames, OddButStorableNamesRoundTrip)
{
    TKSPropIniFile ini;
    ini.WriteString("", "plain", "1");
    ini.WriteString("[x", "a[b]", "2");
    ini.WriteString(QString::fromUtf8("Größe"), QString::fromUtf8("Äpfel"), "3");
    ini.WriteString("a b", "x;y", "4");
    const TKSPropIniFile back = Reread(ini);
    EXPECT_EQ(back.ReadString("", "plain", ""), "1");
    EXPECT_EQ(back.ReadString("[x", "a[b]", ""), "2");
    EXPECT_EQ(back.ReadString(QString::fromUtf8("GRÖßE"), QString::fromUtf8("äpfel"), ""), "3");
    EXPECT_EQ(back.ReadString("A B", "X;Y", ""), "4");
}

TEST(KSPropIniFileSections, ListEraseAndDelete)
{
    TKSPropIniFile ini(QStringList{"[A]", "x=1", "; note", "[B]", "y=2", "[a]", "z=3", "X=shadow"});
    EXPECT_TRUE(ini.SectionExists("b"));
    EXPECT_FALSE(ini.SectionExists("C"));
    EXPECT_EQ(ini.ReadSection("A"), QStringList({"x", "z"}));

    ini.DeleteKey("A", "X");
    EXPECT_FALSE(ini.ValueExists("a", "x"));
    EXPECT_TRUE(ini.ValueExists("a", "z"));
    ini.DeleteKey("Missing", "x");

    ini.EraseSection("a");
    EXPECT_FALSE(ini.SectionExists("A"));
    EXPECT_EQ(Lines(ini), QStringList({"[B]", "y=2"}));

    ini.WriteString("Empty", "k", "v");
    ini.DeleteKey("Empty", "k");
    EXPECT_TRUE(ini.SectionExists("Empty"));
    EXPECT_TRUE(ini.ReadSection("Empty").isEmpty());
    ini.Clear();
    EXPECT_TRUE(Lines(ini).isEmpty());
}

}  // namespace
