#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numbers>
#include <stdexcept>

#include "qxbase/framework/variant.h"
#include "qxbase/sources/virtual_channel_table.h"
#include "tests/sources/block_set_support.h"

using namespace qx;
using namespace qxtest;

namespace {

constexpr double kNone = NoValueMarker;

// A source whose bus properties are the entries of Values; a property named in Throwing
// fails to read.
class TBusSource : public TQXMeasureSourceEx {
public:
    std::map<QString, Variant> Values;
    QString Throwing;

    void Publish()
    {
        std::uint32_t id = 500;
        for (const auto& [name, value] : Values)
            RegisterProperty(name, name, [this](TQXPropertyItem* Item, bool Get, bool, Variant& Value) -> HRESULT {
                if (Item->FName == Throwing) throw std::runtime_error("unreadable");
                if (Get) Value = Values[Item->FName];
                return S_OK;
            }, varDouble, QString(), false, 0, 0, id++);
    }
};

// Input A, B, C -> table -> output -> downstream link that keeps copies of every set.
struct TChain {
    TBusSource Input;
    TQXMeasureSourceEx Output;
    TQXVirtualChannelTable Table{Output};
    TQXMeasureLinkEx Downstream;
    std::vector<TRVShortdefs> Defs;
    std::vector<std::vector<std::vector<double>>> Values;  // per set, per position
    std::vector<TRVDataDoubleArray> Blocks;                 // the descriptors as received

    TChain()
    {
        SetChannels(Input, {"A", "B", "C"});
        Table.SetQXMeasureSource(&Input);
        Downstream.OnNewData = [this](TQXMeasureLinkEx*, const TRVShortdefs& d, const TRVDataDoubleArray& data,
                                      const TRVDataDoubleArray&, double) {
            Defs.push_back(d);
            Blocks.push_back(data);
            auto& set = Values.emplace_back();
            for (const TRVDataDouble& b : data) set.emplace_back(b.data, b.data + b.count);
        };
        Downstream.SetQXMeasureSourceEx(&Output);
    }
    int Add(TQXVTOperation Op, int First, int Second = 0, const QString& FirstName = {})
    {
        return Table.AddChannel("M" + QString::number(Table.GetChannelListCount()), "V", "", -1, 1, 0, Op, 0, First,
                                Second, 0, 1, 0, 1, {}, FirstName, {});
    }
    // Sends A, B, C with definitions told apart by XStart, Color and YMax.
    void Send(const std::vector<double>& A, const std::vector<double>& B, const std::vector<double>& C = {})
    {
        BlockSet set({A, B, C}, {{0.5}});
        for (std::size_t c = 0; c < set.Shortdefs.size(); ++c) {
            set.Shortdefs[c].XStart = 10.0 + c;
            set.Shortdefs[c].Color = 0x100 + static_cast<TColor>(c);
            set.Shortdefs[c].YMax = 5.0 * (c + 1);
        }
        Sent = set.Data;
        set.Send(Input, 3.0);
    }
    TRVDataDoubleArray Sent;
};

TRVShortdef Renumbered(TRVShortdef Def, int Position)
{
    Def.ChannelNo = Position;
    return Def;
}

}  // namespace

TEST(VirtualChannelTable, PassesTheSetThroughUnchangedWithoutComputedChannels)
{
    TChain c;
    ASSERT_EQ(c.Output.GetChannelListCount(), 3);
    c.Send({1, 2}, {3}, {});
    ASSERT_EQ(c.Blocks.size(), 1u);
    ASSERT_EQ(c.Blocks[0].size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(c.Blocks[0][i].data, c.Sent[i].data) << i;  // borrowed, not copied
        EXPECT_EQ(c.Defs[0][i].XStart, 10.0 + i);
    }
    EXPECT_EQ(c.Values[0][0], (std::vector<double>{1, 2}));
}

TEST(VirtualChannelTable, ComputesInDependencyOrderAndLeavesCyclesEmpty)
{
    TChain c;
    // Positions: inputs 0..2, computed 3..7.
    c.Add(qxvtSum, 4, 0);        // 3: needs 4, listed after it
    c.Add(qxvtProduct, 0, 1);    // 4
    c.Add(qxvtInverse, 6);       // 5 and 6 wait for each other
    c.Add(qxvtNone, 5);          // 6
    c.Add(qxvtDivision, 0, 99);  // 7: the divisor is missing
    c.Send({1, 2, 3}, {10, 20, 30}, {7});
    ASSERT_EQ(c.Values.size(), 1u);
    const auto& v = c.Values[0];
    const auto& d = c.Defs[0];
    ASSERT_EQ(v.size(), 8u);

    EXPECT_EQ(v[4], (std::vector<double>{10, 40, 90}));
    EXPECT_EQ(v[3], (std::vector<double>{11, 42, 93}));
    EXPECT_EQ(d[4], Renumbered(d[0], 4));
    EXPECT_EQ(d[3], Renumbered(d[0], 3));  // through position 4, whose record is A's
    for (int p : {5, 6}) {
        EXPECT_TRUE(v[static_cast<std::size_t>(p)].empty()) << p;
        EXPECT_EQ(c.Blocks[0][static_cast<std::size_t>(p)].data, nullptr) << p;
        EXPECT_EQ(d[static_cast<std::size_t>(p)], TRVShortdef{}) << p;
    }
    EXPECT_TRUE(v[7].empty());
    EXPECT_EQ(d[7], Renumbered(d[0], 7));

    // The input blocks reach the consumer as the source sent them.
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(c.Blocks[0][i].data, c.Sent[i].data);
    EXPECT_EQ(v[2], (std::vector<double>{7}));
    EXPECT_EQ(d[1].XStart, 11.0);

    // The next cycle works in the same arrays and computes the same.
    c.Send({2}, {5}, {});
    EXPECT_EQ(c.Values[1][3], (std::vector<double>{12}));
}

TEST(VirtualChannelTable, ReductionsFlagsAndOperandsInTheOutputList)
{
    TChain c;
    c.Add(qxvtAverage, 0);
    c.Add(qxvtDev, 1);
    c.Add(qxvtMax, 0);
    c.Add(qxvtFFT, 0);
    c.Add(qxvtDigitalSplit, 0);
    c.Add(qxvtTwoPoint, 1);
    EXPECT_EQ(c.Table.CountNumberOfChannelType(msexVirtualChannel), 6);
    EXPECT_EQ(c.Table.CountNumberOfChannelType(msexSingleValue), 3);
    EXPECT_EQ(c.Table.CountNumberOfChannelType(msexArrayData), 1);
    EXPECT_EQ(c.Table.CountNumberOfChannelType(msexFFTArrayData), 1);
    EXPECT_EQ(c.Table.CountNumberOfChannelType(msexDIGINData), 1);
    EXPECT_EQ(c.Table.CountNumberOfChannelType(msexADChannel), 0);

    ASSERT_EQ(c.Output.GetChannelListCount(), 9);
    EXPECT_EQ(c.Output.GetChannelList(1)->Name, "B");
    EXPECT_EQ(*c.Output.GetChannelList(5), *c.Table.GetChannelList(2));
    EXPECT_NE(c.Table.GetChannelList(0)->Handle, c.Table.GetChannelList(1)->Handle);
    EXPECT_EQ(c.Table.GetChannelList(6), nullptr);

    c.Send({1, 2, 6}, {5}, {});
    const auto& v = c.Values[0];
    EXPECT_EQ(v[3], std::vector<double>{3});
    EXPECT_EQ(v[4], std::vector<double>{kNone});  // deviation of one sample
    EXPECT_EQ(v[5], std::vector<double>{6});

    c.Table.DeleteChannel(0);
    c.Table.DeleteChannel(17);
    EXPECT_EQ(c.Output.GetChannelListCount(), 8);
    EXPECT_EQ(c.Output.GetChannelList(3)->Operation, qxvtDev);
    c.Table.ChannelListClear();
    EXPECT_EQ(c.Output.GetChannelListCount(), 3);
}

TEST(VirtualChannelTable, OperandNamesFollowTheInputsChannels)
{
    TChain c;
    c.Add(qxvtInverse, 0, 0, "B");
    c.Add(qxvtInverse, 2, 0, "gone");
    c.Add(qxvtNone, 0, 0, "M0");
    EXPECT_EQ(c.Table.GetChannelList(0)->FirstOperandIndex, 1);
    EXPECT_EQ(c.Table.GetChannelList(1)->FirstOperandIndex, 2);  // not found: kept
    EXPECT_EQ(c.Table.GetChannelList(2)->FirstOperandIndex, 3);  // a computed channel

    SetChannels(c.Input, {"X", "B"});  // B moves, the input shrinks
    EXPECT_EQ(c.Table.GetChannelList(0)->FirstOperandIndex, 1);
    EXPECT_EQ(c.Table.GetChannelList(2)->FirstOperandIndex, 2);
    SetChannels(c.Input, {"B", "X", "Y", "Z"});
    EXPECT_EQ(c.Table.GetChannelList(0)->FirstOperandIndex, 0);
    EXPECT_EQ(c.Table.GetChannelList(2)->FirstOperandIndex, 4);
    ASSERT_EQ(c.Output.GetChannelListCount(), 7);
    EXPECT_EQ(c.Output.GetChannelList(4)->Name, "M0");
    EXPECT_TRUE(c.Output.GetChannelList(4)->Flags.Contains(msexVirtualChannel));
    EXPECT_FALSE(c.Output.GetChannelList(3)->Flags.Contains(msexVirtualChannel));
}

TEST(VirtualChannelTable, HeldValueIsStretchedAndGoesStaleFromTheFourthMiss)
{
    TChain c;
    c.Add(qxvtExtended, 1);   // 3: holds B
    c.Add(qxvtExtended, 2);   // 4: holds C, its own value and count
    c.Add(qxvtExtended, 50);  // 5: missing operand
    std::vector<std::vector<int>> stale;
    c.Table.OnStaleValue = [&](TQXVirtualChannelTable* Sender, int Index) {
        EXPECT_EQ(Sender, &c.Table);
        stale.back().push_back(Index);
    };
    const auto send = [&](std::vector<double> B, std::vector<double> C) {
        stale.emplace_back();
        c.Send({1, 2}, B, C);
    };

    send({}, {8});  // nothing held yet for B
    EXPECT_EQ(c.Values[0][3], std::vector<double>(2, kNone));
    EXPECT_EQ(c.Values[0][4], std::vector<double>(2, 8));
    EXPECT_EQ(c.Values[0][5], std::vector<double>(2, kNone));
    EXPECT_EQ(c.Defs[0][3], Renumbered(c.Defs[0][0], 3));  // the longest input is A

    send({4, 9, 9}, {});  // B is now the longest input
    EXPECT_EQ(c.Values[1][3], std::vector<double>(3, 4));
    EXPECT_EQ(c.Values[1][4], std::vector<double>(3, 8));
    EXPECT_EQ(c.Defs[1][3], Renumbered(c.Defs[1][1], 3));
    for (int i = 0; i < 5; ++i) send({}, {});
    send({6}, {});
    send({}, {5});
    EXPECT_EQ(c.Values[2][3], std::vector<double>(2, 4));
    EXPECT_EQ(c.Values[8][4], std::vector<double>(2, 5));
    // Told by channel index. C (1) misses from set 1 on: stale in sets 4..7; B (0) misses in
    // sets 2..6 and 8: stale in 5 and 6.
    const std::vector<std::vector<int>> expected = {{}, {}, {}, {}, {1}, {0, 1}, {0, 1}, {1}, {}};
    EXPECT_EQ(stale, expected);
}

TEST(VirtualChannelTable, FFTTakesItsSampleRateFromTheInputsBus)
{
    struct Row {
        const char* Name;
        Variant Clock, Channels;
        double Rate;
    };
    const Row rows[] = {
        {"both", Variant(2048.0), Variant(std::int32_t{2}), 1024},
        {"channels missing", Variant(512.0), Variant(), 512},
        {"not numeric", Variant(QString("fast")), Variant(std::int32_t{4}), 0.25},
        {"not positive", Variant(-5.0), Variant(std::int32_t{0}), 1},
    };
    for (const Row& row : rows) {
        TChain c;
        if (!row.Clock.IsEmpty()) c.Input.Values["ClockFrequencyReal"] = row.Clock;
        if (!row.Channels.IsEmpty()) c.Input.Values["NrOfCGLChannels"] = row.Channels;
        c.Input.Publish();
        c.Add(qxvtFFT, 0);
        // 64 cycles in 1024 samples, amplitude 2: bin 64, first two bins dropped.
        std::vector<double> sine(1024);
        for (std::size_t i = 0; i < sine.size(); ++i) sine[i] = 2 * std::sin(2 * std::numbers::pi * 64 * i / 1024.0);
        c.Send(sine, {});
        EXPECT_EQ(c.Table.GetFFT().GetFrequency(), row.Rate) << row.Name;
        ASSERT_EQ(c.Values[0][3].size(), 510u) << row.Name;
        EXPECT_NEAR(c.Values[0][3][62], 2.0, 1e-3) << row.Name;
    }
}

TEST(VirtualChannelTable, AFailingComputationFreesWhatWasComputedAndSendsNothing)
{
    TChain c;
    c.Input.Values["ClockFrequencyReal"] = Variant(100.0);
    c.Input.Throwing = "ClockFrequencyReal";
    c.Input.Publish();
    c.Add(qxvtNone, 0);
    c.Add(qxvtFFT, 0);
    c.Send({1, 2, 3, 4}, {});  // the source reports the exception; ASan reports a leak
    EXPECT_TRUE(c.Values.empty());

    c.Input.Throwing.clear();
    c.Send({1, 2, 3, 4}, {});
    ASSERT_EQ(c.Values.size(), 1u);
    EXPECT_EQ(c.Values[0][3], (std::vector<double>{1, 2, 3, 4}));
    EXPECT_EQ(c.Table.GetFFT().GetFrequency(), 100.0);
}

TEST(VirtualChannelTable, DestructionDetachesTheOwnedInputLink)
{
    TBusSource input;
    TQXMeasureSourceEx output;
    {
        TQXVirtualChannelTable table(output);
        table.SetQXMeasureSource(&input);
        EXPECT_EQ(table.GetQXMeasureSource(), &input);
        EXPECT_EQ(input.GetLinkCount(), 1);
    }
    EXPECT_EQ(input.GetLinkCount(), 0);
    BlockSet({{1}}, {}).Send(input);
}
