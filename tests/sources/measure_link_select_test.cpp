#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "qxbase/sources/measure_link_select.h"
#include "tests/framework/print_qstring.h"
#include "tests/sources/block_set_support.h"

using namespace qx;
using Names = std::vector<QString>;

namespace {

Variant Numbers(std::initializer_list<Variant> Values)
{
    Variant array = Variant::CreateArray(0, static_cast<int>(Values.size()) - 1, varVariant);
    int i = 0;
    for (const Variant& v : Values) array.SetArrayElement(i++, v);
    return array;
}

class SelectLink : public ::testing::Test {
public:
    void SetUp() override
    {
        qxtest::SetChannels(Source, {"AI 0", "AI 1", "AI 2", "AI 3"});
        Link->OnSelectedData = [this](TQXMeasureLinkEx*, const TRVShortdefs& defs, const TRVDataDoubleArray& data,
                                      const TRVDataDoubleArray& time, double) { Calls.push_back({defs, data, time}); };
        Link->SetQXMeasureSourceEx(&Source);
    }
    Names Selected() const
    {
        Names names;
        for (int i = 0; i < Link->GetChannelListCount(); ++i) names.push_back(Link->GetChannelList(i)->Name);
        return names;
    }

    struct Call {
        TRVShortdefs Defs;
        TRVDataDoubleArray Data, Time;
    };
    TQXMeasureSourceEx Source;
    std::unique_ptr<TQXMeasureLinkSelectEx> Link = std::make_unique<TQXMeasureLinkSelectEx>();
    std::vector<Call> Calls;
};

}  // namespace

// [3, 1, 3] selects 1 and 3 in source order; the handler gets their definitions, the source's
// own buffers and the time channel as sent.
TEST_F(SelectLink, PassesTheSelectedChannelsOverTheSourcesBuffers)
{
    Link->SetChannels(Numbers({3, 1, 3}));
    EXPECT_EQ(Selected(), (Names{"AI 1", "AI 3"}));
    EXPECT_EQ(Link->GetMSChannelIndex(1), 3);
    EXPECT_EQ(Link->GetChannelList(2), nullptr);

    qxtest::BlockSet next({{0}, {1, 1}, {2}, {3, 3, 3}}, {{9}});
    const TRVDataDoubleArray sent = next.Data;
    const double* time = next.Time[0].data;
    next.Send(Source);
    ASSERT_EQ(Calls.size(), 1u);
    ASSERT_EQ(Calls[0].Defs.size(), 2u);
    EXPECT_EQ(Calls[0].Defs[1].ChannelNo, 3);
    EXPECT_EQ(Calls[0].Data[0].data, sent[1].data);
    EXPECT_EQ(Calls[0].Data[1].data, sent[3].data);
    EXPECT_EQ(Calls[0].Data[1].count, 3);
    EXPECT_EQ(Calls[0].Time[0].data, time);

    // Numbers the source does not have, and things that are not numbers, select nothing.
    Link->SetChannels(Numbers({7, "x", -1}));
    qxtest::BlockSet last({{0}, {1}, {2}, {3}}, {});
    last.Send(Source);
    EXPECT_EQ(Calls.size(), 1u);
}

TEST_F(SelectLink, FollowsItsChannelsByNameAcrossListsAndSources)
{
    Link->SetChannels(Numbers({1, 3}));
    qxtest::SetChannels(Source, {"AI 3", "AI 0", "AI 2", "AI 1", "AI 4"});
    EXPECT_EQ(Selected(), (Names{"AI 3", "AI 1"}));
    // A name that is gone selects nothing until it comes back.
    qxtest::SetChannels(Source, {"AI 0", "AI 1"});
    EXPECT_EQ(Selected(), (Names{"AI 1"}));
    qxtest::SetChannels(Source, {"AI 3", "AI 1"});
    EXPECT_EQ(Selected(), (Names{"AI 3", "AI 1"}));

    // A source going away leaves the stored channels, names included, for the next one.
    {
        TQXMeasureSourceEx other;
        qxtest::SetChannels(other, {"X", "AI 1", "AI 3"});
        Link->SetQXMeasureSourceEx(&other);
        EXPECT_EQ(Selected(), (Names{"AI 1", "AI 3"}));
    }
    EXPECT_EQ(Link->GetChannelListCount(), 0);
    Link->SetQXMeasureSourceEx(&Source);
    EXPECT_EQ(Selected(), (Names{"AI 3", "AI 1"}));
}

TEST_F(SelectLink, HandlerMayDestroyTheLink)
{
    Link->SetChannels(Numbers({0}));
    Link->OnSelectedData = [this](TQXMeasureLinkEx*, const TRVShortdefs&, const TRVDataDoubleArray&,
                                  const TRVDataDoubleArray&, double) { Link.reset(); };
    qxtest::BlockSet set({{0}, {1}, {2}, {3}}, {});
    set.Send(Source);
    EXPECT_EQ(Source.GetLinkCount(), 0);
}
