#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <tuple>

#include "qxbase/chartpanels/dcf_file.h"
#include "tests/framework/print_qstring.h"

using namespace qx;
using ::testing::HasSubstr;

namespace {

// Bit for bit, except that every NaN reads back as the one NaN.
bool SameBits(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}

void ExpectSame(const std::vector<TQXDcfChannel>& back, const std::vector<TQXDcfChannel>& written)
{
    ASSERT_EQ(back.size(), written.size());
    for (std::size_t c = 0; c < written.size(); ++c) {
        const TQXDcfChannel &b = back[c], &w = written[c];
        EXPECT_EQ(std::tie(b.Name, b.Unit, b.Kind), std::tie(w.Name, w.Unit, w.Kind));
        EXPECT_TRUE(SameBits(b.X0, w.X0) && SameBits(b.DX, w.DX)) << c;
        const TRVShortdef &bd = b.Definition, &wd = w.Definition;
        EXPECT_EQ(std::tie(bd.ChannelNo, bd.FirstSample, bd.Flags, bd.Color, bd.Handle),
                  std::tuple(wd.ChannelNo, wd.FirstSample, wd.Flags, wd.Color, 0u));
        EXPECT_TRUE(SameBits(bd.XStart, wd.XStart) && SameBits(bd.XEnd, wd.XEnd) &&
                    SameBits(bd.YMin, wd.YMin) && SameBits(bd.YMax, wd.YMax)) << c;
        ASSERT_EQ(b.Samples.size(), w.Samples.size()) << c;
        for (std::size_t i = 0; i < w.Samples.size(); ++i)
            ASSERT_TRUE(SameBits(b.Samples[i], w.Samples[i])) << c << ":" << i;
    }
}

std::vector<TQXDcfChannel> RandomChannels()
{
    std::mt19937_64 rng(7);
    constexpr double inf = std::numeric_limits<double>::infinity();
    const double specials[] = {std::nan(""), inf,          -inf,         NoValueMarker, DBL_MAX,
                               -DBL_MAX,     DBL_TRUE_MIN, -DBL_MIN / 3, -0.0,          0.1};
    auto any = [&] {
        const std::uint64_t bits = rng();
        double v;
        std::memcpy(&v, &bits, sizeof v);
        return rng() % 4 == 0 ? specials[rng() % std::size(specials)] : v;
    };
    std::vector<TQXDcfChannel> channels;
    const QString names[] = {"Tab\there", "Quote \"q\" \\ back\\t", "Üñï 温度 \U0001F600",
                             "line\nbreak\r", "\"", "\\"};
    const std::size_t lengths[] = {1000, 0, 999, 3, 1000, 1};
    for (int c = 0; c < 6; ++c) {
        TQXDcfChannel ch{names[c], names[5 - c], TQXDcfDataKind(c % 3), {}, any(), any(), {}};
        ch.Definition = {.ChannelNo = c - 1, .XStart = any(), .XEnd = any(), .FirstSample = rng(),
                         .Flags = std::uint32_t(rng()), .Color = TColor(rng()),
                         .YMin = any(), .YMax = any(), .Handle = 5};
        for (std::size_t i = 0; i < lengths[c]; ++i) ch.Samples.push_back(any());
        channels.push_back(ch);
    }
    return channels;
}

}  // namespace

TEST(DcfFile, ChannelsReadBackBitForBitFromTextAndFile)
{
    const std::vector<TQXDcfChannel> channels = RandomChannels();
    ExpectSame(ReadDcfText(WriteDcfText(channels)), channels);
    ExpectSame(ReadDcfText(WriteDcfText({})), {});
    ExpectSame(ReadDcfText(WriteDcfText({channels[1]})), {channels[1]});

    QTemporaryDir dir;
    const QString path = dir.filePath("run.dcf");
    WriteDcfFile(path, channels);
    ExpectSame(ReadDcfFile(path), channels);
}

// What a spreadsheet shows: each channel's column from its attributes down to its samples.
TEST(DcfFile, WritesAlignedColumnsAndReadsThemWithWindowsLineEnds)
{
    TQXDcfChannel u{"U \"in\"", "V", dkTime, {.XEnd = 0.003, .Flags = 4, .YMin = -10, .YMax = 10},
                    0, 0.001, {1.5, -INFINITY, NoValueMarker}};
    TQXDcfChannel i{"I\t2", "mA", dkTime, {.ChannelNo = 1, .Color = 255}, 0.5, 0.002, {2}};
    const QByteArray text = WriteDcfText({u, i});
    EXPECT_EQ(text, "\xEF\xBB\xBF" "DCF\t1\n"
                    "Kind\ttime\ttime\n"
                    "Unit\tV\tmA\n"
                    "X0\t0\t0.5\n"
                    "DX\t0.001\t0.002\n"
                    "Samples\t3\t1\n"
                    "Definition\t0 0 0.003 0 4 -10 10 0\t1 0 0 0 0 0 0 255\n"
                    "Time [s]\tU \\\"in\\\"\tI\\t2\n"
                    "0\t1.5\t2\n"
                    "0.001\t-INF\t\n"
                    "0.002\t1.7e+30\t\n");
    QByteArray windows = text.mid(3);
    windows.replace("\n", "\r\n");
    ExpectSame(ReadDcfText(windows), {u, i});
}

TEST(DcfFile, BadTextRaisesNamingTheLine)
{
    const auto head = [](const char* samples, const char* definition = "0 0 0 0 0 0 0 0") {
        return "DCF\t1\nKind\ttime\nUnit\tV\nX0\t0\nDX\t1\nSamples\t" + QByteArray(samples) +
               "\nDefinition\t" + definition + "\nx\tU\n";
    };
    const QByteArray two = head("2");
    const struct {
        const char* Fault;
        QByteArray Text;
        const char* Message;
    } rows[] = {
        {"empty file", "", "line 1: the file is empty"},
        {"other format", "time\tU\n", "line 1: not a data file"},
        {"later version", "DCF\t2\n", "line 1: version 1 expected but \"2\" found"},
        {"missing header line", "DCF\t1\nKind\ttime\nX0\t0\n", "line 3: the \"Unit\" line expected but \"X0\""},
        {"header ends early", "DCF\t1\nKind\ttime\n", "line 3: the file ends before the \"Unit\" line"},
        {"too many channels", "DCF\t1\nKind" + QByteArray("\ttime").repeated(65537) + "\n", "line 2: more than 65536"},
        {"unknown kind", "DCF\t1\nKind\tvolts\n", "line 2: channel 1: \"volts\" is not a data kind"},
        {"cell too many in header", "DCF\t1\nKind\ttime\nUnit\tV\tA\n", "line 3: 3 cells found where the x"},
        {"bad escape", "DCF\t1\nKind\ttime\nUnit\tV\\x\n", "line 3: channel 1: \"V\\x\" holds an unknown escape"},
        {"not UTF-8", "DCF\t1\nKind\ttime\nUnit\t\xFF\n", "line 3: channel 1: the text is not UTF-8"},
        {"huge count", head("2147483648"), "line 6: channel 1: \"2147483648\" is not a sample count"},
        {"count cut short", head("2147483647") + "0\t1\n", "line 10: the file is cut after 1 of 2147483647"},
        {"bad definition", head("2", "0 0 0"), "line 7: channel 1: '' is not a valid integer value in field 4"},
        {"non-number sample", two + "0\t1\n1\t1,5\n", "line 10: channel 1 (\"U\"): \"1,5\" is not a number"},
        {"non-number x", two + "0\t1\nt\t1\n", "line 10: x value \"t\" is not a number"},
        {"more cells than channels", two + "0\t1\t2\n", "line 9: 3 cells found"},
        {"fewer cells than channels", two + "0\n", "line 9: 1 cells found"},
        {"sample missing", two + "0\t1\n1\t\n", "line 10: channel 1 (\"U\"): \"\" is not a number"},
        {"sample past the count", two + "0\t1\n1\t2\n2\t3\n", "line 11: more rows than the 2 samples"},
        {"value past a short channel",
         "DCF\t1\nKind\ttime\ttime\nUnit\t\t\nX0\t0\t0\nDX\t1\t1\nSamples\t2\t1\n"
         "Definition\t0 0 0 0 0 0 0 0\t0 0 0 0 0 0 0 0\nx\tU\tI\n0\t1\t1\n1\t1\t1\n",
         "line 10: channel 2 (\"I\"): \"1\" past the channel's 1 samples"},
        {"last line cut", two + "0\t1\n1\t2", "line 10: the line has no line end"},
    };
    for (const auto& row : rows) {
        try {
            ReadDcfText(row.Text, "cut.dcf");
            ADD_FAILURE() << row.Fault;
        } catch (const EDcfFileError& e) {
            EXPECT_THAT(e.Message().toStdString(), HasSubstr(std::string("cut.dcf, ") + row.Message))
                << row.Fault;
        }
    }
}

TEST(DcfFile, FailedSaveKeepsTheOldFileAndBadPathsRaise)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("old.dcf");
    WriteDcfFile(path, {{"A", "V", dkFrequency, {}, 0, 1, {1, 2}}});
    EXPECT_THROW(WriteDcfFile(path, {{"B", "V", TQXDcfDataKind(9), {}, 0, 1, {3}}}), EDcfFileError);
    ASSERT_EQ(ReadDcfFile(path).size(), 1u);
    EXPECT_EQ(ReadDcfFile(path)[0].Name, "A");

    for (const QString& bad : {dir.filePath("no/such/dir/x.dcf"), dir.path()}) {
        EXPECT_THROW(WriteDcfFile(bad, {}), EDcfFileError) << bad.toStdString();
        EXPECT_THROW(ReadDcfFile(bad), EDcfFileError) << bad.toStdString();
    }
}
