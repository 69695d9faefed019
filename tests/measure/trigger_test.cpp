#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

#include "tests/measure/trigger_support.h"

using namespace qx;
using namespace qx::test;

namespace {

TStream OneChannel(std::vector<double> Samples)
{
    TStream s;
    for (std::size_t k = 0; k < Samples.size(); ++k) s.Time.push_back(10.0 + k);
    s.Data.push_back(std::move(Samples));
    return s;
}

// A trigger without pre-trigger and a buffer of three, so a capture starts at the trigger.
struct TriggerFixture : ::testing::Test {
    TRVTrigger T;
    TCaptureLog Log;
    void SetUp() override
    {
        T.SetBufferSize(3);
        Log.Attach(T);
    }
    std::vector<double> Firsts() const
    {
        std::vector<double> firsts;
        for (const TCapture& c : Log.Captures) firsts.push_back(c.Data[0][0]);
        return firsts;
    }
};

TEST(TriggerSettings, InitialValuesAndSetterRules)
{
    TRVTrigger t;
    EXPECT_EQ(t.GetTriggerChannel(), 0);
    EXPECT_EQ(t.GetTriggerType(), trtRangeSlope);
    EXPECT_EQ(t.GetLevel(), 0);
    EXPECT_FLOAT_EQ(t.GetLowSlopeTolerance(), 0.01f);
    EXPECT_FLOAT_EQ(t.GetHighSlopeTolerance(), 0.01f);
    EXPECT_FALSE(t.GetSingleShot());
    EXPECT_EQ(t.GetPreTrigger(), 0);
    EXPECT_EQ(t.GetBufferSize(), 1024);
    EXPECT_EQ(t.GetPostTrigger(), 0);
    EXPECT_EQ(t.GetTriggerMode(), tmNormal);
    EXPECT_EQ(t.GetStopTriggerChannel(), -1);

    t.SetBufferSize(2);
    EXPECT_EQ(t.GetBufferSize(), 1024);
    t.SetBufferSize(MaxBlockSamples + 1);
    EXPECT_EQ(t.GetBufferSize(), 1024);

    t.SetPreTrigger(10);
    t.SetPreTrigger(2000);  // the new size comes from the previous pre-trigger
    EXPECT_EQ(t.GetBufferSize(), 11);
    EXPECT_EQ(t.GetPreTrigger(), 2000);

    t.SetPreTrigger(150);
    t.SetBufferSize(100);
    EXPECT_EQ(t.GetPreTrigger(), 99);
    t.SetPreTrigger(-5);
    t.SetPreTrigger(400);  // a negative previous pre-trigger still leaves one sample
    EXPECT_EQ(t.GetBufferSize(), 1);

    t.SetHighSlopeTolerance(-0.5f);
    t.SetLowSlopeTolerance(std::numeric_limits<float>::infinity());
    t.SetLevel(std::nan(""));
    EXPECT_FLOAT_EQ(t.GetHighSlopeTolerance(), 0.01f);
    EXPECT_FLOAT_EQ(t.GetLowSlopeTolerance(), 0.01f);
    EXPECT_EQ(t.GetLevel(), 0);
}

TEST_F(TriggerFixture, ANewTriggerFindsNoCrossingUntilATypeIsSet)
{
    Feed(T, OneChannel({-1, 0, 1, 1, 1, -1, 1, 1, 1}), 0, 9);
    EXPECT_TRUE(Log.Captures.empty());
}

TEST_F(TriggerFixture, LevelCrossings)
{
    T.SetTriggerType(trtPos);
    Feed(T, OneChannel({-1, 0, 1, 5, 6}), 0, 5);
    EXPECT_EQ(Firsts(), std::vector<double>{1});
    EXPECT_EQ(Log.Captures[0].StartTime, 12);  // time of the third sample

    Log.Captures.clear();
    T.Reset();
    Feed(T, OneChannel({1, 2, 3, 4, 5, 6}), 0, 6);  // never armed
    EXPECT_TRUE(Log.Captures.empty());

    T.SetTriggerType(trtNeg);
    T.SetLevel(2);
    Feed(T, OneChannel({3, 1, 0, 2, 2, 5, 1.5, 7, 8}), 0, 9);
    EXPECT_EQ(Firsts(), (std::vector<double>{1, 1.5}));
}

TEST_F(TriggerFixture, ArmingAtTheEndOfABlockTriggersOnTheFirstSampleOfTheNext)
{
    T.SetTriggerType(trtPos);
    const TStream s = OneChannel({5, 5, -1, 4, 6, 7});
    Feed(T, s, 0, 3);
    EXPECT_EQ(T.GetTriggerState(), qxtsWaitForTrigger);
    Feed(T, s, 3, 6);
    EXPECT_EQ(Firsts(), std::vector<double>{4});
}

TEST_F(TriggerFixture, SlopesCompareWithThePreviousSampleAcrossBlocks)
{
    // Range 2 (YMin -1, YMax 1): the tolerances 0.25 and 0.5 are steps of 0.5 and 1.0.
    T.SetLowSlopeTolerance(0.25f);
    T.SetHighSlopeTolerance(0.5f);
    const TStream s = OneChannel({0, 0.5, 1.1, 1.2, 1.3, 1.4, 0.3, 0.2, -0.6, -0.6, -0.6});

    T.SetTriggerType(trtPosSlope);  // a rise of 0.5 is not more than 0.5; 0.6 is
    FeedCut(T, s, {2});
    EXPECT_EQ(Firsts(), std::vector<double>{1.1});

    Log.Captures.clear();
    T.SetTriggerType(trtNegSlope);
    FeedCut(T, s, {6});
    EXPECT_EQ(Firsts(), std::vector<double>{0.3});

    Log.Captures.clear();
    T.SetTriggerType(trtRangeSlope);  // the fall of 1.1 is too steep, that of 0.8 is not
    FeedCut(T, s, {3, 4});
    EXPECT_EQ(Firsts(), (std::vector<double>{1.1, -0.6}));
}

TEST_F(TriggerFixture, TimeTypeTriggersWhenTheTimeReachesTheLevel)
{
    T.SetTriggerType(trtTime);
    T.SetLevel(13);
    const TStream s = OneChannel({7, 6, 5, 4, 3, 2, 1});  // times 10 .. 16
    FeedCut(T, s, {1, 2, 3});
    ASSERT_EQ(Log.Captures.size(), 1u);
    EXPECT_EQ(Log.Captures[0].StartTime, 13);
    EXPECT_EQ(Log.Captures[0].Data[0], (std::vector<double>{4, 3, 2}));

    Log.Captures.clear();
    T.SetLevel(5);  // the time never comes from below the level
    T.Reset();
    Feed(T, s, 0, 7);
    EXPECT_TRUE(Log.Captures.empty());
}

TEST_F(TriggerFixture, DefinitionsDescribeTheCapturedBuffer)
{
    T.SetTriggerType(trtPos);
    TBlockSet set;
    MakeSet(set, OneChannel({-1, 1, 2, 3, 4}), 0, 5);
    set.Defs[0].XStart = 2;
    set.Defs[0].XEnd = 4.5;  // spacing 0.5
    set.Defs[0].Handle = 7;
    T.ProcessData(set.Defs, set.Data, set.Time);
    ASSERT_EQ(Log.Captures.size(), 1u);
    EXPECT_EQ(Log.Captures[0].Defs[0].XEnd, 2 + 3 * 0.5);
    EXPECT_EQ(Log.Captures[0].Defs[0].Handle, 7u);

    FreeDataDoubleArray(set.Data);
    FreeDataDoubleArray(set.Time);
    set.Defs[0].Handle = 9;
    T.ProcessData(set.Defs, set.Data, set.Time);  // empty block: only the axis end changes
    EXPECT_EQ(T.GetShortdefs()[0].XEnd, 0);
    EXPECT_EQ(T.GetShortdefs()[0].Handle, 7u);
}

TEST_F(TriggerFixture, AChannelOfAnotherLengthIsCapturedAsNoValue)
{
    T.SetTriggerType(trtPos);
    TBlockSet set;
    MakeSet(set, OneChannel({-1, 1, 2, 3}), 0, 4);
    set.Defs.push_back(set.Defs[0]);
    set.Data.push_back(NewDataDouble(1));
    set.Data[1].data[0] = 42;
    set.Time.push_back(NewDataDouble(1));
    set.Time[1].data[0] = 0;
    T.ProcessData(set.Defs, set.Data, set.Time);
    ASSERT_EQ(Log.Captures.size(), 1u);
    EXPECT_EQ(Log.Captures[0].Data[0], (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(Log.Captures[0].Data[1], std::vector<double>(3, NoValueMarker));
    EXPECT_EQ(Log.Captures[0].Time[1], std::vector<double>(3, NoValueMarker));
}

TEST(TriggerErrors, BadBlockSetsRaiseBeforeAnythingChanges)
{
    TRVTrigger t;
    t.SetTriggerType(trtPos);
    t.SetPreTrigger(1);
    auto expectInvalid = [&](auto&& damage) {
        TBlockSet set;
        MakeSet(set, OneChannel({-1, 1, 2}), 0, 3);
        damage(set);
        EXPECT_THAT([&] { t.ProcessData(set.Defs, set.Data, set.Time); },
                    ::testing::ThrowsMessage<TRVTriggerException>(
                        ::testing::StrEq("Data format is invalid")));
        EXPECT_EQ(t.GetTriggerState(), qxtsFillPreTrigger);
    };
    expectInvalid([](TBlockSet& s) { s.Defs.push_back(s.Defs[0]); s.Defs.push_back(s.Defs[0]); });
    expectInvalid([](TBlockSet& s) { FreeDataDoubleArray(s.Time); s.Time.clear(); });
    expectInvalid([](TBlockSet& s) { s.Time[0].count = 2; });
    expectInvalid([](TBlockSet& s) {
        s.Defs.push_back(s.Defs[0]);
        s.Data.push_back({nullptr, 4});
        s.Time.push_back(NewDataDouble(4));
    });
    expectInvalid([](TBlockSet& s) { s.Data[0].count = -1; });

    TBlockSet set;
    MakeSet(set, OneChannel({-1, 1, 2}), 0, 3);
    t.SetTriggerChannel(1);  // one past the last channel: no effect, no error
    t.ProcessData(set.Defs, set.Data, set.Time);
    EXPECT_EQ(t.GetTriggerState(), qxtsFillPreTrigger);
    t.SetTriggerChannel(-1);
    t.ProcessData(set.Defs, set.Data, set.Time);
    EXPECT_EQ(t.GetTriggerState(), qxtsFillPreTrigger);
}

TEST(TriggerErrors, InvalidTriggerChannels)
{
    TRVTrigger t;
    t.SetSingleShot(true);
    t.SetTriggerChannel(-1);
    EXPECT_THROW(t.StartSingleShot(), TRVTriggerException);
    t.SetTriggerChannel(0);
    t.StartSingleShot();  // no channel count yet
    Feed(t, OneChannel({1, 2}), 0, 2);
    t.SetTriggerChannel(1);
    EXPECT_THAT([&] { t.StartSingleShot(); },
                ::testing::ThrowsMessage<TRVTriggerException>(
                    ::testing::StrEq("TriggerChannel is invalid")));

    t.SetTriggerChannel(0);
    t.SetStopTriggerChannel(1);
    Feed(t, OneChannel({1, 2}), 0, 2);  // the stop channel counts in chart-recorder mode only
    t.SetTriggerMode(tmChartRecorder);
    EXPECT_THROW(Feed(t, OneChannel({1, 2}), 0, 2), TRVTriggerException);
}

TEST(TriggerState, FromPreFillToDoneAndSingleShots)
{
    TRVTrigger t;
    t.SetTriggerType(trtPos);
    t.SetBufferSize(4);
    t.SetPreTrigger(2);
    TCaptureLog log;
    log.Attach(t);
    const TStream s = OneChannel({-1, -2, -3, 1, 2, 3, 4, 5, 6, 7, -4, -5, -6, 8, 9, 10});
    EXPECT_EQ(t.GetTriggerState(), qxtsFillPreTrigger);
    Feed(t, s, 0, 1);
    EXPECT_EQ(t.GetTriggerState(), qxtsFillPreTrigger);
    Feed(t, s, 1, 3);
    EXPECT_EQ(t.GetTriggerState(), qxtsWaitForTrigger);
    Feed(t, s, 3, 4);
    EXPECT_EQ(t.GetTriggerState(), qxtsFillTrigger);
    Feed(t, s, 4, 6);
    EXPECT_EQ(t.GetTriggerState(), qxtsTriggerDone);
    EXPECT_EQ(t.GetTriggerState(), qxtsWaitForTrigger);  // reported once
    ASSERT_EQ(log.Captures.size(), 1u);
    EXPECT_EQ(log.Captures[0].Data[0], (std::vector<double>{-2, -3, 1, 2}));

    t.SetSingleShot(true);
    Feed(t, s, 6, 16);
    ASSERT_EQ(log.Captures.size(), 2u);
    EXPECT_EQ(log.Captures[1].Data[0], (std::vector<double>{-5, -6, 8, 9}));
    EXPECT_EQ(t.GetTriggerState(), qxtsTriggerDone);
    EXPECT_EQ(t.GetTriggerState(), qxtsTriggerDone);  // stays until re-armed
    Feed(t, OneChannel({-7, 11, 12, 13}), 0, 4);
    EXPECT_EQ(log.Captures.size(), 2u);

    // After the pause the pre-trigger part comes from new samples only.
    t.StartSingleShot();
    Feed(t, OneChannel({-8, 14, -9, 15, 16, 17}), 0, 6);
    ASSERT_EQ(log.Captures.size(), 3u);
    EXPECT_EQ(log.Captures[2].Data[0], (std::vector<double>{14, -9, 15, 16}));
}

TEST(TriggerEvents, StartAndStopAroundCapturesAndRuns)
{
    TRVTrigger t;
    std::vector<std::string> events;
    t.OnStart = [&](TRVTrigger* sender) { events.push_back(sender == &t ? "start" : "?"); };
    t.OnStop = [&](TRVTrigger*) { events.push_back("stop"); };
    t.OnCapture = [&](const TRVShortdefs&, TRVDataDoubleArray& d, TRVDataDoubleArray&, double) {
        events.push_back("capture");
        FreeDataDoubleArray(d);  // takes the data; the trigger frees the time blocks
    };
    t.SetTriggerType(trtPos);
    t.SetBufferSize(3);
    const TStream s = OneChannel({-1, 1, 2, 3, -1, 1, 2});
    Feed(t, s, 0, 7);
    EXPECT_EQ(events, (std::vector<std::string>{"start", "capture", "stop", "start"}));
    EXPECT_TRUE(t.GetStarted());
    t.Reset();
    EXPECT_EQ(events.back(), "stop");
    EXPECT_FALSE(t.GetStarted());
    t.SendStopEvent();
    EXPECT_EQ(events.size(), 5u);

    // A chart-recorder run without stop channel goes on buffer after buffer.
    events.clear();
    t.SetTriggerMode(tmChartRecorder);
    Feed(t, s, 0, 7);
    Feed(t, s, 0, 7);
    EXPECT_EQ(events, (std::vector<std::string>{"start", "capture", "capture", "capture", "capture"}));
}

TEST(TriggerHandlers, ResetsAndNestedCallsInsideTheCaptureHandler)
{
    TRVTrigger t;
    t.SetTriggerType(trtPos);
    t.SetBufferSize(3);
    int captures = 0;
    TBlockSet nested;
    MakeSet(nested, OneChannel({-1, 1, 2, 3}), 0, 4);
    t.OnCapture = [&](const TRVShortdefs&, TRVDataDoubleArray&, TRVDataDoubleArray&, double) {
        ++captures;
        t.ProcessData(nested.Defs, nested.Data, nested.Time);  // ignored
        t.SetPreTrigger(2);  // the rest of the block is dropped, the buffers are freed here
    };
    Feed(t, OneChannel({-1, 1, 2, 3, -1, 1, 2, 3, -1, 1, 2, 3}), 0, 12);
    EXPECT_EQ(captures, 1);
    EXPECT_EQ(t.GetTriggerState(), qxtsFillPreTrigger);

    t.OnCapture = [&](const TRVShortdefs&, TRVDataDoubleArray&, TRVDataDoubleArray&, double) {
        throw std::runtime_error("receiver failed");
    };
    EXPECT_THROW(Feed(t, OneChannel({0, 0, -1, 1, 2, 3}), 0, 6), std::runtime_error);
    EXPECT_EQ(t.GetTriggerState(), qxtsTriggerDone);
    t.OnCapture = nullptr;  // without a receiver the buffers are kept for the next capture
    Feed(t, OneChannel({0, 0, -1, 1, 2, 3}), 0, 6);
    EXPECT_EQ(t.GetTriggerState(), qxtsTriggerDone);
}

}  // namespace
