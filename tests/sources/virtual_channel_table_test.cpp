#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <stdexcept>

#include "qxbase/framework/variant.h"
#include "qxbase/sources/virtual_channel_table.h"
#include "tests/sources/block_set_support.h"

using namespace qx;
using namespace qxtest;

namespace {

using V = std::vector<double>;
constexpr double kNone = NoValueMarker;

// A source with the bus properties in Values; the one named Throwing fails to read.
struct TBusSource : TQXMeasureSourceEx {
    std::map<QString, Variant> Values;
    QString Throwing;
    void Publish()
    {
        for (const auto& [name, value] : Values)
            RegisterProperty(name, name, [this](TQXPropertyItem* Item, bool Get, bool, Variant& Value) -> HRESULT {
                if (Item->FName == Throwing) throw std::runtime_error("unreadable");
                if (Get) Value = Values[Item->FName];
                return S_OK;
            }, varDouble, QString(), false, 0, 0, 500 + static_cast<std::uint32_t>(GetPropertyCount()));
    }
};

// Input A, B, C -> table -> output -> a link keeping copies of every set it gets.
struct TChain {
    TBusSource Input;
    TQXMeasureSourceEx Output;
    TQXVirtualChannelTable Table{Output};
    TQXMeasureLinkEx Downstream;
    std::vector<TRVShortdefs> Defs;
    std::vector<std::vector<V>> Values;       // per set, per position
    std::vector<TRVDataDoubleArray> Blocks;  // the descriptors as received
    TRVDataDoubleArray Sent;

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
    void Add(TQXVTOperation Op, int First, int Second = 0, const QString& FirstName = {})
    {
        Table.AddChannel("M" + QString::number(Table.GetChannelListCount()), "V", "", -1, 1, 0, Op, 0, First, Second,
                         0, 1, 0, 1, {}, FirstName, {});
    }
    // Sends A, B, C; their definitions differ in XStart.
    void Send(const V& A, const V& B, const V& C = {})
    {
        BlockSet set({A, B, C}, {{0.5}});
        for (std::size_t c = 0; c < 3; ++c) set.Shortdefs[c].XStart = 10.0 + c;
        Sent = set.Data;
        set.Send(Input);
    }
};

TRVShortdef Renumbered(TRVShortdef Def, int Position)
{
    Def.ChannelNo = Position;
    return Def;
}

}  // namespace

TEST(VirtualChannelTable, ComputesInDependencyOrderAndLeavesCyclesEmpty)
{
    TChain c;
    c.Send({1, 2}, {3});  // nothing computed yet: passed through
    ASSERT_EQ(c.Blocks.at(0).size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(c.Blocks[0][i].data, c.Sent[i].data);

    c.Add(qxvtSum, 4, 0);        // 3: needs 4, listed after it
    c.Add(qxvtProduct, 0, 1);    // 4
    c.Add(qxvtInverse, 6);       // 5 and 6 wait for each other
    c.Add(qxvtNone, 5);          // 6
    c.Add(qxvtDivision, 0, 99);  // 7: the divisor is missing
    c.Send({1, 2, 3}, {10, 20, 30}, {7});
    const auto& v = c.Values.at(1);
    const auto& d = c.Defs[1];
    ASSERT_EQ(v.size(), 8u);
    EXPECT_EQ(v[4], (V{10, 40, 90}));
    EXPECT_EQ(v[3], (V{11, 42, 93}));
    EXPECT_EQ(d[4], Renumbered(d[0], 4));
    EXPECT_EQ(d[3], Renumbered(d[0], 3));  // through position 4, whose record is A's
    for (std::size_t p : {5u, 6u}) {
        EXPECT_EQ(c.Blocks[1][p].data, nullptr) << p;
        EXPECT_EQ(d[p], TRVShortdef{}) << p;
    }
    EXPECT_TRUE(v[7].empty());
    EXPECT_EQ(d[7], Renumbered(d[0], 7));
    // The inputs arrive as the source sent them; the source frees them once (ASan).
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(c.Blocks[1][i].data, c.Sent[i].data);

    c.Send({2}, {5});  // the next cycle, in the same arrays
    EXPECT_EQ(c.Values[2][3], V{12});
}

TEST(VirtualChannelTable, OutputListFlagsAndOperandNames)
{
    TChain c;
    c.Add(qxvtInverse, 0, 0, "B");
    c.Add(qxvtAverage, 2, 0, "gone");
    c.Add(qxvtNone, 0, 0, "M0");
    c.Add(qxvtFFT, 0);
    c.Add(qxvtDigitalSplit, 0);
    EXPECT_EQ(c.Table.GetChannelList(0)->FirstOperandIndex, 1);
    EXPECT_EQ(c.Table.GetChannelList(1)->FirstOperandIndex, 2);  // not found: kept
    EXPECT_EQ(c.Table.GetChannelList(2)->FirstOperandIndex, 3);  // a computed channel
    const std::pair<TQXMSChannelFlag, int> counts[] = {{msexVirtualChannel, 5}, {msexArrayData, 2},
                                                       {msexSingleValue, 1},    {msexFFTArrayData, 1},
                                                       {msexDIGINData, 1},      {msexADChannel, 0}};
    for (const auto& [flag, count] : counts) EXPECT_EQ(c.Table.CountNumberOfChannelType(flag), count) << flag;

    SetChannels(c.Input, {"B", "X", "Y", "Z"});  // B moves, the input grows
    EXPECT_EQ(c.Table.GetChannelList(0)->FirstOperandIndex, 0);
    EXPECT_EQ(c.Table.GetChannelList(2)->FirstOperandIndex, 4);
    ASSERT_EQ(c.Output.GetChannelListCount(), 9);
    EXPECT_EQ(c.Output.GetChannelList(3)->Name, "Z");
    EXPECT_EQ(*c.Output.GetChannelList(6), *c.Table.GetChannelList(2));

    c.Table.DeleteChannel(0);
    EXPECT_EQ(c.Output.GetChannelList(4)->Operation, qxvtAverage);
}

TEST(VirtualChannelTable, HeldValuesAreStretchedAndGoStaleFromTheFourthMiss)
{
    TChain c;
    c.Add(qxvtExtended, 1);   // 0 holds B
    c.Add(qxvtExtended, 2);   // 1 holds C, with its own value and count
    c.Add(qxvtExtended, 50);  // 2: missing operand
    std::vector<std::vector<int>> stale;
    c.Table.OnStaleValue = [&](TQXVirtualChannelTable*, int Index) { stale.back().push_back(Index); };
    const auto send = [&](const V& B, const V& C) {
        stale.emplace_back();
        c.Send({1, 2}, B, C);
    };
    send({}, {8});
    EXPECT_EQ(c.Values[0][3], V(2, kNone));  // nothing held yet
    EXPECT_EQ(c.Values[0][4], V(2, 8));
    EXPECT_EQ(c.Values[0][5], V(2, kNone));
    EXPECT_EQ(c.Defs[0][3], Renumbered(c.Defs[0][0], 3));  // A is the longest input
    send({4, 9, 9}, {});
    EXPECT_EQ(c.Values[1][3], V(3, 4));
    EXPECT_EQ(c.Values[1][4], V(3, 8));
    EXPECT_EQ(c.Defs[1][3], Renumbered(c.Defs[1][1], 3));  // now B is
    for (int i = 0; i < 5; ++i) send({}, {});
    send({6}, {});
    send({}, {5});
    EXPECT_EQ(c.Values[2][3], V(2, 4));
    EXPECT_EQ(c.Values[8][4], V(2, 5));
    // Channel 1 misses from set 1 on: stale in sets 4..7; channel 0 misses in sets 2..6 and 8.
    EXPECT_EQ(stale, (std::vector<std::vector<int>>{{}, {}, {}, {}, {1}, {0, 1}, {0, 1}, {1}, {}}));
}

TEST(VirtualChannelTable, FFTTakesItsSampleRateFromTheInputsBus)
{
    struct Row {
        Variant Clock, Channels;
        double Rate;
    };
    for (const Row& row : {Row{Variant(2048.0), Variant(std::int32_t{2}), 1024}, Row{Variant(512.0), Variant(), 512},
                           Row{Variant(QString("fast")), Variant(std::int32_t{4}), 0.25},
                           Row{Variant(-5.0), Variant(std::int32_t{0}), 1}}) {
        TChain c;
        c.Input.Values["ClockFrequencyReal"] = row.Clock;
        if (!row.Channels.IsEmpty()) c.Input.Values["NrOfCGLChannels"] = row.Channels;
        c.Input.Publish();
        c.Add(qxvtFFT, 0);
        c.Send(V(1024, 1.0), {});
        EXPECT_EQ(c.Table.GetFFT().GetFrequency(), row.Rate) << row.Rate;
        EXPECT_EQ(c.Values[0][3].size(), 510u);  // the spectrum, its first two bins dropped
    }
}

TEST(VirtualChannelTable, AFailedComputationFreesItsBlocksAndSendsNothing)
{
    auto c = std::make_unique<TChain>();
    c->Input.Values["ClockFrequencyReal"] = Variant(100.0);
    c->Input.Throwing = "ClockFrequencyReal";
    c->Input.Publish();
    c->Add(qxvtNone, 0);
    c->Add(qxvtFFT, 0);
    c->Send({1, 2, 3, 4}, {});  // the source reports it; a leak would show in ASan
    EXPECT_TRUE(c->Values.empty());
    c->Input.Throwing.clear();
    c->Send({1, 2, 3, 4}, {});
    EXPECT_EQ(c->Values.at(0)[3], (V{1, 2, 3, 4}));

    TBusSource other;  // the table's own input link leaves with it
    c->Table.SetQXMeasureSource(&other);
    c.reset();
    EXPECT_EQ(other.GetLinkCount(), 0);
}

TEST(VirtualChannelTable, ComputedChannelsCarryTheirOperandsTimes)
{
    TChain c;
    std::vector<TRVDataDoubleArray> times;
    c.Downstream.OnNewData = [&](TQXMeasureLinkEx*, const TRVShortdefs&, const TRVDataDoubleArray&,
                                 const TRVDataDoubleArray& Time, double) { times.push_back(Time); };
    c.Add(qxvtSum, 1, 0);       // 3: B's times
    c.Add(qxvtRMS, 3);          // 4: one value at the first time of 3
    c.Add(qxvtFFT, 0);          // 5: no time axis
    c.Add(qxvtExtended, 2);     // 6: the longest input's times
    c.Add(qxvtInverse, 99);     // 7: missing operand
    BlockSet set({{1, 2, 3, 4}, {5, 6, 7, 8}, {9}}, {{0, 1, 2, 3}, {10, 11, 12, 13}, {20}});
    const TRVDataDoubleArray sent = set.Time;  // the source frees them after the delivery
    set.Send(c.Input);
    ASSERT_EQ(times.size(), 1u);
    const TRVDataDoubleArray& t = times[0];
    ASSERT_EQ(t.size(), 8u);
    EXPECT_EQ(t[3].data, sent[1].data);
    EXPECT_EQ(t[3].count, 4);
    ASSERT_EQ(t[4].count, 1);
    EXPECT_EQ(t[4].data[0], 10);
    EXPECT_EQ(t[5].data, nullptr);
    EXPECT_EQ(t[6].data, sent[0].data);
    EXPECT_EQ(t[7].data, nullptr);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(t[i].data, sent[i].data);
}
