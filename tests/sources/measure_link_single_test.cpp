#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "qxbase/sources/measure_link_single.h"
#include "tests/framework/print_qstring.h"
#include "tests/sources/block_set_support.h"

using namespace qx;
using qxtest::BlockSet;

namespace {

struct Received {
    TQXMeasureLinkEx* Link;
    const TRVShortdefs* Shortdefs;
    double StartTime;
    double Time;
    double Value;
};

class SingleLink : public ::testing::Test {
public:
    void SetUp() override
    {
        qxtest::AddChannels(Source, {"AI 0", "AI 1", "AI 2", "AI 3"});
        Link.OnNewValue = [this](TQXMeasureLinkEx* link, const TRVShortdefs& defs, double start, double time,
                                 double value) { Got.push_back({link, &defs, start, time, value}); };
        Link.SetQXMeasureSourceEx(&Source);
    }
    void TearDown() override { Link.SetQXMeasureSourceEx(nullptr); }

    // Channel c holds {c, 2c, 3c, 4c}; the time blocks differ in length per channel.
    void SendCycle(double StartTime = 5)
    {
        BlockSet set({{0, 0, 0, 0}, {1, 2, 3, 4}, {2, 4, 6, 8}, {3, 6, 9, 12}},
                     {{10, 11, 12, 13, 14}, {20}, {30, 31, 32}, {}});
        set.Send(Source, StartTime);
    }

    TQXMeasureSourceEx Source;
    TQXMeasureLinkSingleEx Link;
    std::vector<Received> Got;
};

}  // namespace

TEST_F(SingleLink, ReducesTheFollowedChannelWithTheTimeOfTheFirstTimeBlock)
{
    Link.SetChannel(2);
    EXPECT_EQ(Link.GetChannelName(), "AI 2");
    const double expected[] = {2, 8, 5, 2, 8, std::sqrt(120.0 / 4), std::sqrt(20.0 / 3)};
    for (int m = 0; m < TKSRVLinkSingleCompressionMethodCount; ++m) {
        Got.clear();
        Link.SetCompressionMethod(static_cast<TKSRVLinkSingleCompressionMethod>(m));
        SendCycle(5);
        ASSERT_EQ(Got.size(), 1u) << m;
        EXPECT_EQ(Got[0].Link, &Link);
        EXPECT_EQ(Got[0].StartTime, 5);
        EXPECT_DOUBLE_EQ(Got[0].Value, expected[m]) << m;
        // The last value's position comes from channel 2's time block (3 times), its time from
        // the first time block; every other method takes the first time.
        EXPECT_EQ(Got[0].Time, m == rvcompLast ? 12 : 10) << m;
    }

    Link.SetCompressionMethod(static_cast<TKSRVLinkSingleCompressionMethod>(7));
    Got.clear();
    SendCycle();
    ASSERT_EQ(Got.size(), 1u);
    EXPECT_EQ(Got[0].Value, NoValueMarker);
    EXPECT_EQ(Got[0].Time, 0);
}

TEST_F(SingleLink, NothingWithoutAChannelSamplesOrSwitchedOff)
{
    SendCycle();  // channel -1 after construction
    Link.SetChannel(4);
    SendCycle();
    EXPECT_TRUE(Got.empty());

    // The last value of channel 3 would read position -1 of the first time block: time 0.
    Link.SetChannel(3);
    Link.SetCompressionMethod(rvcompLast);
    SendCycle();
    ASSERT_EQ(Got.size(), 1u);
    EXPECT_EQ(Got[0].Time, 0);

    Link.SetActive(false);
    SendCycle();
    Link.SetActive(true);
    BlockSet empty({{1}, {2}, {3}, {}}, {});
    empty.Send(Source);  // channel 3 without samples: the reduction gives nothing
    EXPECT_EQ(Got.size(), 1u);

    Link.SetQXMeasureSourceEx(nullptr);
    BlockSet detached({{1}, {2}, {3}, {4}}, {{0}});
    Link.NewData(detached.Shortdefs, detached.Data, detached.Time, 0);
    EXPECT_EQ(Got.size(), 1u);
}

TEST_F(SingleLink, FollowsItsChannelByNameWhenTheListChanges)
{
    Link.SetChannel(1);
    Source.ChannelListClear();
    qxtest::AddChannels(Source, {"AI 3", "AI 2", "AI 1", "AI 0"});
    Source.ChannelChangeUpdate();
    EXPECT_EQ(Link.GetChannel(), 2);

    // A name that disappeared keeps the last position, and the name, for its return.
    Source.ChannelListClear();
    qxtest::AddChannels(Source, {"AI 7", "AI 8", "AI 9"});
    Source.ChannelChangeUpdate();
    EXPECT_EQ(Link.GetChannel(), 2);
    EXPECT_EQ(Link.GetChannelName(), "AI 1");
    Source.ChannelListClear();
    qxtest::AddChannels(Source, {"AI 1"});
    Source.ChannelChangeUpdate();
    EXPECT_EQ(Link.GetChannel(), 0);

    // A position the source does not have clears the name; a negative one keeps it.
    Link.SetChannel(5);
    EXPECT_EQ(Link.GetChannelName(), "");
    Link.SetChannel(0);
    Link.SetChannel(-1);
    EXPECT_EQ(Link.GetChannelName(), "AI 1");
}

TEST_F(SingleLink, CompressionListHoldsTheSevenMethodTexts)
{
    Variant list;
    Link.GetCompressionList(list);
    ASSERT_TRUE(list.IsArray());
    EXPECT_EQ(list.ArrayLowBound(), 0);
    EXPECT_EQ(list.ArrayHighBound(), 6);
    EXPECT_EQ(list.ArrayElement(1).ToString(), "Last value");
    EXPECT_EQ(list.ArrayElement(6).ToString(), "Standard deviation");
}
