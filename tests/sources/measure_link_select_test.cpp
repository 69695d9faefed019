#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "qxbase/sources/measure_link_select.h"
#include "tests/framework/print_qstring.h"
#include "tests/sources/block_set_support.h"

using namespace qx;
using qxtest::BlockSet;

namespace {

Variant Numbers(std::initializer_list<Variant> Values, int Low = 0)
{
    Variant array = Variant::CreateArray(Low, Low + static_cast<int>(Values.size()) - 1, varVariant);
    int i = Low;
    for (const Variant& v : Values) array.SetArrayElement(i++, v);
    return array;
}

class SelectLink : public ::testing::Test {
public:
    void SetUp() override
    {
        qxtest::AddChannels(Source, {"AI 0", "AI 1", "AI 2", "AI 3"});
        Link->OnSelectedData = [this](TQXMeasureLinkEx*, const TRVShortdefs& defs, const TRVDataDoubleArray& data,
                                      const TRVDataDoubleArray& time, double) {
            Calls.push_back({defs, data, time});
        };
        Link->SetQXMeasureSourceEx(&Source);
    }

    std::vector<QString> SelectedNames() const
    {
        std::vector<QString> names;
        for (int i = 0; i < Link->GetChannelListCount(); ++i) names.push_back(Link->GetChannelList(i)->Name);
        return names;
    }

    struct Call {
        TRVShortdefs Defs;
        TRVDataDoubleArray Data;
        TRVDataDoubleArray Time;
    };

    TQXMeasureSourceEx Source;
    std::unique_ptr<TQXMeasureLinkSelectEx> Link = std::make_unique<TQXMeasureLinkSelectEx>();
    std::vector<Call> Calls;
};

using Names = std::vector<QString>;

}  // namespace

// [3, 1, 3] selects 1 and 3 in source order; the handler gets their definitions and the
// source's own buffers, and the time channel as sent.
TEST_F(SelectLink, PassesTheSelectedChannelsOverTheSourcesBuffers)
{
    Link->SetChannels(Numbers({3, 1, 3}));
    EXPECT_EQ(Link->GetChannelNames(), (Names{"AI 3", "AI 1", "AI 3"}));
    EXPECT_EQ(SelectedNames(), (Names{"AI 1", "AI 3"}));
    EXPECT_EQ(Link->GetMSChannelIndex(1), 3);
    EXPECT_EQ(Link->GetMSChannelIndex(2), -1);
    EXPECT_EQ(Link->GetChannelList(2), nullptr);
    EXPECT_EQ(Link->GetChannelList(-1), nullptr);

    for (int cycle = 0; cycle < 2; ++cycle) {
        BlockSet set({{0}, {1, 1}, {2}, {3, 3, 3}}, {{9}});
        const double* buffer1 = set.Data[1].data;
        const double* buffer3 = set.Data[3].data;
        const double* time0 = set.Time[0].data;
        Calls.clear();
        set.Send(Source);
        ASSERT_EQ(Calls.size(), 1u);
        const Call& call = Calls[0];
        ASSERT_EQ(call.Defs.size(), 2u);
        EXPECT_EQ(call.Defs[0].ChannelNo, 1);
        EXPECT_EQ(call.Defs[1].Handle, 103u);
        EXPECT_EQ(call.Data[0].data, buffer1);
        EXPECT_EQ(call.Data[1].data, buffer3);
        EXPECT_EQ(call.Data[1].count, 3);
        ASSERT_EQ(call.Time.size(), 1u);
        EXPECT_EQ(call.Time[0].data, time0);
    }
}

TEST_F(SelectLink, EmptyOrUnknownSelectionsCallNothing)
{
    BlockSet set({{0}, {1}, {2}, {3}}, {});
    set.Send(Source);  // an empty string after construction
    Link->SetChannels(Numbers({}));
    set.Send(Source);
    Link->SetChannels(Numbers({7, "x", -1}));
    EXPECT_EQ(Link->GetChannelNames(), (Names{"", "", ""}));
    set.Send(Source);
    EXPECT_TRUE(Calls.empty());

    // Typed arrays with another low bound select as well; switched off, nothing is passed.
    Variant typed = Variant::CreateArray(5, 6, varInteger);
    typed.SetArrayElement(5, 2);
    typed.SetArrayElement(6, 0);
    Link->SetChannels(typed);
    EXPECT_EQ(SelectedNames(), (Names{"AI 0", "AI 2"}));
    Link->SetActive(false);
    set.Send(Source);
    EXPECT_TRUE(Calls.empty());

    // A block set shorter than the channel list leaves the missing channels out.
    Link->SetActive(true);
    BlockSet shortSet({{0}, {1}}, {});
    shortSet.Send(Source);
    ASSERT_EQ(Calls.size(), 1u);
    EXPECT_EQ(Calls[0].Defs.size(), 1u);
}

TEST_F(SelectLink, FollowsItsChannelsByNameWhenTheListChanges)
{
    Link->SetChannels(Numbers({1, 3}));
    Source.ChannelListClear();
    qxtest::AddChannels(Source, {"AI 3", "AI 0", "AI 2", "AI 1", "AI 4"});
    Source.ChannelChangeUpdate();
    EXPECT_EQ(SelectedNames(), (Names{"AI 3", "AI 1"}));
    EXPECT_EQ(Link->GetChannels().ArrayElement(0).ToInteger(), 3);

    // "AI 3" goes: it selects nothing, but is found again when it comes back.
    Source.ChannelListClear();
    qxtest::AddChannels(Source, {"AI 0", "AI 1"});
    Source.ChannelChangeUpdate();
    EXPECT_EQ(SelectedNames(), (Names{"AI 1"}));
    Source.ChannelListClear();
    qxtest::AddChannels(Source, {"AI 3", "AI 1"});
    Source.ChannelChangeUpdate();
    EXPECT_EQ(SelectedNames(), (Names{"AI 3", "AI 1"}));
}

TEST_F(SelectLink, SelectionOfANewSourceAndWithoutSource)
{
    Link->SetChannels(Numbers({2, 0}));
    TQXMeasureSourceEx other;
    qxtest::AddChannels(other, {"X", "Y", "AI 0"});
    Link->SetQXMeasureSourceEx(&other);
    // "AI 2" is not there and "AI 0" moved to 2: the numbers follow the names, then the names
    // are taken from the new source.
    EXPECT_EQ(SelectedNames(), (Names{"AI 0"}));
    EXPECT_EQ(Link->GetChannelNames(), (Names{"", "AI 0"}));

    Link->SetQXMeasureSourceEx(nullptr);
    EXPECT_EQ(Link->GetChannelListCount(), 0);
    EXPECT_EQ(Link->GetChannelList(0), nullptr);
    EXPECT_FALSE(Link->IsSelected(2));

    // A source going away leaves the stored channels, names included, for the next one.
    {
        TQXMeasureSourceEx doomed;
        qxtest::AddChannels(doomed, {"A", "AI 3", "C"});
        Link->SetChannels(Numbers({1}));
        Link->SetQXMeasureSourceEx(&doomed);
        EXPECT_EQ(SelectedNames(), (Names{"AI 3"}));
    }
    EXPECT_EQ(Link->GetChannelListCount(), 0);
    Link->SetQXMeasureSourceEx(&Source);
    EXPECT_EQ(SelectedNames(), (Names{"AI 3"}));
}

TEST_F(SelectLink, HandlerMayDestroyTheLink)
{
    Link->SetChannels(Numbers({0}));
    Link->OnSelectedData = [this](TQXMeasureLinkEx*, const TRVShortdefs&, const TRVDataDoubleArray&,
                                  const TRVDataDoubleArray&, double) { Link.reset(); };
    BlockSet set({{0}, {1}, {2}, {3}}, {});
    set.Send(Source);
    EXPECT_EQ(Link, nullptr);
    EXPECT_EQ(Source.GetLinkCount(), 0);
}
