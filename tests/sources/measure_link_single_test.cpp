#include <gtest/gtest.h>

#include <vector>

#include "qxbase/sources/measure_link_single.h"
#include "tests/framework/print_qstring.h"
#include "tests/sources/block_set_support.h"

using namespace qx;

namespace {

class SingleLink : public ::testing::Test {
public:
    void SetUp() override
    {
        qxtest::SetChannels(Source, {"AI 0", "AI 1", "AI 2", "AI 3"});
        Link.OnNewValue = [this](TQXMeasureLinkEx* link, const TRVShortdefs&, double start, double time, double value) {
            EXPECT_EQ(link, &Link);
            EXPECT_EQ(start, 5);
            Got.push_back({time, value});
        };
        Link.SetQXMeasureSourceEx(&Source);
    }
    // Channel 2 holds {2, 4, 6, 8}; the time blocks differ in length per channel.
    void SendCycle()
    {
        qxtest::BlockSet set({{0}, {1}, {2, 4, 6, 8}, {}}, {{10, 11, 12, 13, 14}, {20}, {30, 31, 32}, {}});
        set.Send(Source, 5);
    }

    TQXMeasureSourceEx Source;
    TQXMeasureLinkSingleEx Link;
    std::vector<std::pair<double, double>> Got;  // time, value
};

using Values = std::vector<std::pair<double, double>>;

}  // namespace

TEST_F(SingleLink, ReducesItsChannelWithTheTimeOfTheFirstTimeBlock)
{
    SendCycle();  // channel -1 after construction: nothing
    Link.SetChannel(2);
    for (auto method : {rvcompFirst, rvcompLast, rvcompAverage, static_cast<TKSRVLinkSingleCompressionMethod>(9)}) {
        Link.SetCompressionMethod(method);
        SendCycle();
    }
    // The last value takes its position from channel 2's time block (3 times) and its time
    // from the first one; an unknown method delivers the no-value marker at time 0.
    EXPECT_EQ(Got, (Values{{10, 2}, {12, 8}, {10, 5}, {0, NoValueMarker}}));

    Got.clear();
    Link.SetCompressionMethod(rvcompLast);
    Link.SetChannel(3);  // no samples: nothing
    SendCycle();
    Link.SetChannel(2);
    Link.SetActive(false);
    SendCycle();
    EXPECT_TRUE(Got.empty());

    Variant list;
    Link.GetCompressionList(list);
    EXPECT_EQ(list.ArrayElement(6).ToString(), "Standard deviation");
}

TEST_F(SingleLink, FollowsItsChannelByNameWhenTheListChanges)
{
    Link.SetChannel(1);
    qxtest::SetChannels(Source, {"AI 3", "AI 2", "AI 1", "AI 0"});
    EXPECT_EQ(Link.GetChannel(), 2);
    // A name that is gone keeps the last position, and the name for its return.
    qxtest::SetChannels(Source, {"AI 7", "AI 8", "AI 9"});
    EXPECT_EQ(Link.GetChannel(), 2);
    qxtest::SetChannels(Source, {"AI 1"});
    EXPECT_EQ(Link.GetChannel(), 0);
    // A position the source does not have clears the name.
    Link.SetChannel(5);
    EXPECT_EQ(Link.GetChannelName(), "");
}
