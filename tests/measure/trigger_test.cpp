#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>

#include "tests/measure/trigger_support.h"

using namespace qx;
using namespace qx::test;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

namespace {

// One channel; the time of sample k is 10 + k.
TStream OneChannel(std::vector<double> Samples)
{
    TStream s;
    for (std::size_t k = 0; k < Samples.size(); ++k) s.Time.push_back(10.0 + k);
    s.Data.push_back(std::move(Samples));
    return s;
}

// The processor tests and the capture rows cover the rest of the size rules.
TEST(TriggerSettings, BufferSizeAndPreTriggerRules)
{
    TRVTrigger t;
    t.SetBufferSize(2);
    EXPECT_EQ(t.GetBufferSize(), 1024);
    t.SetPreTrigger(-5);
    t.SetPreTrigger(2000);  // the size comes from the previous pre-trigger, but is never 0
    EXPECT_EQ(t.GetBufferSize(), 1);
    EXPECT_EQ(t.GetPreTrigger(), 2000);
}

struct TCrossing {
    const char* Name;
    TRVTriggerType Type;
    double Level;
    std::vector<double> Samples;
    std::vector<int> Cuts;
    std::vector<int> Triggers;  // positions of the trigger samples
};

TEST(TriggerCrossings, TriggerSamplesWhereverTheBlocksEnd)
{
    // The slope rows: range 2 (YMin -1, YMax 1) and the tolerances 0.25 and 0.5 give steps of
    // 0.5 and 1.0. A rise of 0.5 is not more than 0.5; the fall of 1.1 is too steep for the
    // range slope's window, that of 0.8 is not.
    const std::vector<double> slope{0, 0.5, 1.1, 1.2, 1.3, 1.4, 0.3, 0.2, -0.6, -0.6, -0.6};
    const TCrossing rows[] = {
        {"positive", trtPos, 0, {-1, 0, 1, 5, 6}, {}, {2}},
        {"positive, never armed", trtPos, 0, {1, 2, 3, 4, 5, 6}, {}, {}},
        {"negative, twice", trtNeg, 2, {3, 1, 0, 2, 2, 5, 1.5, 7, 8}, {1, 6}, {1, 6}},
        {"positive slope", trtPosSlope, 0, slope, {2}, {2}},
        {"negative slope", trtNegSlope, 0, slope, {6}, {6}},
        {"range slope", trtRangeSlope, 0, slope, {3, 4}, {2, 8}},
        {"time", trtTime, 13, {7, 6, 5, 4, 3, 2, 1}, {1, 2, 3}, {3}},
        {"time never below the level", trtTime, 5, {7, 6, 5, 4}, {}, {}},
    };
    for (const TCrossing& row : rows) {
        TLoggedTrigger t(row.Type, 3);  // no pre-trigger: a capture starts at its trigger sample
        t.SetLevel(row.Level);
        t.SetLowSlopeTolerance(0.25f);
        t.SetHighSlopeTolerance(0.5f);
        FeedCut(t, OneChannel(row.Samples), row.Cuts);
        std::vector<int> found;
        for (const TCapture& c : t.Log) found.push_back(static_cast<int>(c.StartTime) - 10);
        EXPECT_EQ(found, row.Triggers) << row.Name;
    }

    TLoggedTrigger fresh;  // its range slope's window is empty until the tolerances differ
    fresh.SetBufferSize(3);
    FeedCut(fresh, OneChannel({-1, 0, 1, 1, 1, -1, 1, 1, 1}), {});
    EXPECT_TRUE(fresh.Log.empty());
}

// Channels of another length than the trigger channel's: see the processor behind math channels.
TEST(TriggerDefinitions, DescribeTheBufferAndAnEmptyBlockOnlyEndsTheAxis)
{
    TLoggedTrigger t(trtPos, 3);
    TBlockSet set(OneChannel({-1, 1, 2, 3, 4}), 0, 5);
    set.Defs[0].XStart = 2;
    set.Defs[0].XEnd = 4.5;  // spacing 0.5
    set.Defs[0].Handle = 7;
    t.ProcessData(set.Defs, set.Data, set.Time);
    ASSERT_EQ(t.Log.size(), 1u);
    EXPECT_EQ(t.Log[0].Defs[0].XEnd, 2 + 3 * 0.5);

    FreeDataDoubleArray(set.Data);
    FreeDataDoubleArray(set.Time);
    set.Defs[0].Handle = 9;
    t.ProcessData(set.Defs, set.Data, set.Time);  // empty blocks: only the axis end changes
    EXPECT_EQ(t.GetShortdefs()[0].XEnd, 0);
    EXPECT_EQ(t.GetShortdefs()[0].Handle, 7u);
}

TEST(TriggerDefinitions, ACaptureHasTimesOnlyWhenAllItsSamplesCameWithOne)
{
    TLoggedTrigger t(trtPos, 3, 2);
    // Triggers at 3, 8 and 11; the sets [0, 3) and [8, 9) have no time blocks.
    const TStream s = OneChannel({-1, -1, -1, 1, 2, -1, -1, -1, 1, 2, -1, 1, 2});
    int from = 0;
    for (const auto& [to, timed] : {std::pair{3, false}, {8, true}, {9, false}, {13, true}}) {
        TBlockSet set(s, from, to);
        if (!timed) {
            FreeDataDoubleArray(set.Time);
            set.Time.clear();
        }
        t.ProcessData(set.Defs, set.Data, set.Time);
        from = to;
    }
    ASSERT_EQ(t.Log.size(), 3u);
    EXPECT_EQ(t.Log[0].StartTime, NoValueMarker);
    EXPECT_TRUE(t.Log[0].Time[0].empty());  // pre-trigger samples without times
    EXPECT_EQ(t.Log[1].StartTime, 16);
    EXPECT_TRUE(t.Log[1].Time[0].empty());  // its last sample came without one
    EXPECT_EQ(t.Log[2].Time[0], (std::vector<double>{19, 20, 21}));
    EXPECT_EQ(t.Log[1].Data[0], (std::vector<double>{-1, -1, 1}));
}

TEST(TriggerErrors, BadBlockSetsAndChannels)
{
    TRVTrigger t;
    t.SetTriggerType(trtPos);
    t.SetPreTrigger(1);
    const TStream s = OneChannel({-1, 1, 2});
    auto expectInvalid = [&](auto&& damage) {
        TBlockSet set(s, 0, 3);
        damage(set);
        EXPECT_THAT([&] { t.ProcessData(set.Defs, set.Data, set.Time); },
                    ThrowsMessage<TRVTriggerException>(StrEq("Data format is invalid")));
        EXPECT_EQ(t.GetTriggerState(), qxtsFillPreTrigger);  // the set was not taken in part
    };
    expectInvalid([](TBlockSet& b) { b.Defs.push_back(b.Defs[0]); b.Defs.push_back(b.Defs[0]); });
    expectInvalid([](TBlockSet& b) { b.Time[0].count = -1; });
    expectInvalid([](TBlockSet& b) { b.Data[0].count = -1; });
    expectInvalid([](TBlockSet& b) {
        b.Defs.push_back(b.Defs[0]);
        b.Data.push_back({nullptr, 4});
        b.Time.push_back(NewDataDouble(4));
    });

    FeedCut(t, s, {});
    t.SetTriggerChannel(1);  // one past the last channel: no effect, no error
    FeedCut(t, OneChannel({-1, 5, 6}), {});
    EXPECT_EQ(t.GetTriggerState(), qxtsWaitForTrigger);
    EXPECT_THAT([&] { t.StartSingleShot(); },
                ThrowsMessage<TRVTriggerException>(StrEq("TriggerChannel is invalid")));
    t.SetTriggerChannel(0);
    t.SetStopTriggerChannel(1);
    FeedCut(t, s, {});  // the stop channel counts in chart-recorder mode only
    t.SetTriggerMode(tmChartRecorder);
    EXPECT_THAT([&] { FeedCut(t, s, {}); },
                ThrowsMessage<TRVTriggerException>(StrEq("TriggerChannel is invalid")));
}

TEST(TriggerState, FromPreFillToDoneAndSingleShots)
{
    TLoggedTrigger t(trtPos, 4, 2);
    const TStream s = OneChannel({-1, -2, -3, 1, 2, 3, 4, 5, 6, 7, -4, -5, -6, 8, 9, 10});
    std::vector<TRVTriggerState> states;
    for (const auto& [from, to] : {std::pair{0, 1}, {1, 3}, {3, 4}, {4, 6}}) {
        TBlockSet set(s, from, to);
        t.ProcessData(set.Defs, set.Data, set.Time);
        states.push_back(t.GetTriggerState());
    }
    EXPECT_EQ(states, (std::vector<TRVTriggerState>{qxtsFillPreTrigger, qxtsWaitForTrigger, qxtsFillTrigger,
                                                    qxtsTriggerDone}));
    EXPECT_EQ(t.GetTriggerState(), qxtsWaitForTrigger);  // done is reported once
    ASSERT_EQ(t.Log.size(), 1u);
    EXPECT_EQ(t.Log[0].Data[0], (std::vector<double>{-2, -3, 1, 2}));

    t.SetSingleShot(true);
    TBlockSet rest(s, 6, 16);
    t.ProcessData(rest.Defs, rest.Data, rest.Time);
    t.ProcessData(rest.Defs, rest.Data, rest.Time);  // done: ignored
    ASSERT_EQ(t.Log.size(), 2u);
    EXPECT_EQ(t.Log[1].Data[0], (std::vector<double>{-5, -6, 8, 9}));
    EXPECT_EQ(t.GetTriggerState(), qxtsTriggerDone);
    EXPECT_EQ(t.GetTriggerState(), qxtsTriggerDone);  // until re-armed
    t.StartSingleShot();  // the pre-trigger part comes from samples after the pause only
    FeedCut(t, OneChannel({-8, 14, -9, 15, 16, 17}), {});
    ASSERT_EQ(t.Log.size(), 3u);
    EXPECT_EQ(t.Log[2].Data[0], (std::vector<double>{14, -9, 15, 16}));

    TLoggedTrigger r(trtPos, 3, 2);  // re-armed from a handler, the shot scans on without a gap
    r.SetSingleShot(true);
    r.OnStop = [](TRVTrigger* Sender) { Sender->StartSingleShot(); };
    FeedCut(r, OneChannel({5, 5, -1, 1, 2, 3, -1, 1, 2, 9, 9, 9}), {7});
    ASSERT_EQ(r.Log.size(), 2u);
    EXPECT_EQ(r.Log[1].Data[0], (std::vector<double>{3, -1, 1}));
}

TEST(TriggerReceivers, EventsOrderNestedCallsResetsAndFailures)
{
    TRVTrigger t;
    std::vector<std::string> events;
    t.OnStart = [&](TRVTrigger* sender) { events.push_back(sender == &t ? "start" : "?"); };
    t.OnStop = [&](TRVTrigger*) { events.push_back("stop"); };
    t.OnCapture = [&](const TRVShortdefs&, TRVDataDoubleArray& data, TRVDataDoubleArray&, double) {
        events.push_back("capture");
        FreeDataDoubleArray(data);  // takes the data; the trigger frees the time blocks
    };
    t.SetTriggerType(trtPos);
    t.SetBufferSize(3);
    const TStream s = OneChannel({-1, 1, 2, 3, -1, 1, 2});
    FeedCut(t, s, {});
    t.Reset();
    t.SendStopEvent();  // nothing started
    EXPECT_EQ(events, (std::vector<std::string>{"start", "capture", "stop", "start", "stop"}));
    events.clear();  // a chart-recorder run without stop channel goes on buffer after buffer
    t.SetTriggerMode(tmChartRecorder);
    FeedCut(t, s, {});
    FeedCut(t, s, {});
    EXPECT_EQ(events, (std::vector<std::string>{"start", "capture", "capture", "capture", "capture"}));

    t.SetTriggerMode(tmNormal);
    int captures = 0;
    t.OnCapture = [&](const TRVShortdefs&, TRVDataDoubleArray&, TRVDataDoubleArray&, double) {
        ++captures;
        FeedCut(t, s, {});   // ignored
        t.SetPreTrigger(2);  // drops the rest of the block; the trigger frees the buffers
    };
    FeedCut(t, OneChannel({-1, 1, 2, 3, -1, 1, 2, 3}), {});
    EXPECT_EQ(captures, 1);
    EXPECT_EQ(t.GetTriggerState(), qxtsFillPreTrigger);
    t.OnCapture = [](const TRVShortdefs&, TRVDataDoubleArray&, TRVDataDoubleArray&, double) {
        throw std::runtime_error("receiver failed");
    };
    EXPECT_THROW(FeedCut(t, OneChannel({-1, 1, 2, 3, -1, 1, 2, 3}), {}), std::runtime_error);
    EXPECT_EQ(t.GetTriggerState(), qxtsTriggerDone);
}

// Its owner's receiver may destroy the owner; the trigger once went on using itself.
TEST(TriggerReceivers, AHandlerMayDestroyTheTrigger)
{
    for (int at : {0, 1, 2}) {
        auto* t = new TRVTrigger;
        t->SetTriggerType(trtPos);
        t->SetBufferSize(3);
        int calls = 0;
        const auto destroy = [&](TRVTrigger*) {
            ++calls;
            delete t;
        };
        (at == 0 ? t->OnStart : t->OnStop) = destroy;
        if (at == 1)
            t->OnCapture = [&](const TRVShortdefs&, TRVDataDoubleArray&, TRVDataDoubleArray&, double) { destroy(t); };
        FeedCut(*t, OneChannel({-1, 1, 2, 3, -1, 1, 2, 3}), {});
        EXPECT_EQ(calls, 1) << at;
    }
}

}  // namespace
