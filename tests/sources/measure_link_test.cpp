#include <gtest/gtest.h>

#include "qxbase/framework/exception.h"
#include "tests/sources/source_test_support.h"

using namespace qx;
using namespace qxtest;

TEST(MeasureLink, ListingRules)
{
    QStringList log;
    TQXMeasureSourceEx source;
    TQXMeasureSourceEx other;
    TConsumer a("A", log);

    // Listed twice: every set twice; one removal drops both entries, so no entry outlives the link.
    source.MeasureLinkExAdd(&a.Link);
    source.MeasureLinkExAdd(&a.Link);
    TBlockSet(1, 2).SendFrom(source);
    EXPECT_EQ(log, QStringList({"A:settings", "A:settings", "A:data", "A:data"}));
    source.MeasureLinkExRemove(&a.Link);
    EXPECT_EQ(source.GetLinkCount(), 0);

    // Removing a link another source lists detaches it there; adding it moves it.
    a.Link.SetQXMeasureSourceEx(&source);
    log.clear();
    other.MeasureLinkExRemove(&a.Link);
    EXPECT_EQ(a.Link.GetSource(), nullptr);
    EXPECT_EQ(source.GetLinkCount(), 0);
    EXPECT_TRUE(log.isEmpty());
    a.Link.SetQXMeasureSourceEx(&source);
    other.MeasureLinkExAdd(&a.Link);
    EXPECT_EQ(source.GetLinkCount(), 0);
    EXPECT_EQ(other.GetLinks(), std::vector<TQXMeasureLinkEx*>{&a.Link});
}

TEST(MeasureLink, ChannelListThroughSourceAndLink)
{
    TQXMeasureSourceEx source;
    TQXMeasureLinkEx link;
    const TQXCoefficients k = {1, 2, 3, 4, 5, 6, 7};
    source.ChannelListAdd("AI 1", "V", "", -1, 1, {msexADChannel}, clRed, source.GetNewChannelHandle(), false);
    source.ChannelListAdd("ai 2", "V", "", -1, 1, {msexADChannel}, clRed, 0.5, 2, -3, 4, true, 2);
    source.ChannelListAdd("AI 2", "V", "", 0, 5, {msexVirtualChannel}, clBlue, 0, 1, 0, 1, true, k, qxvtSum, 4, 1, 0,
                          "ai 2", "AI 1", 3);
    EXPECT_EQ(link.OrigNameToChannel("AI 1"), -1);
    link.SetQXMeasureSourceEx(&source);
    EXPECT_EQ(link.OrigNameToChannel("AI 2"), 2);  // exact case

    // The plain forms mark "no operation" with -1, not the record's default 0.
    for (int i : {0, 1}) {
        const TQXMSExChannelInformation& c = *link.GetChannelList(i);
        EXPECT_EQ(std::tuple(c.OperationParameter, c.FirstOperandIndex, c.SecondOperandIndex), std::tuple(-1, -1, -1)) << i;
    }
    const TQXMSExChannelInformation& sum = *link.GetChannelList(2);
    EXPECT_EQ(sum.SecondOperandName, "AI 1");

    // Records stay where they are while others come; updates copy every field.
    const TQXMSExChannelInformation* first = source.GetChannelList(0);
    TQXMSExChannelInformation update = sum;
    update.FurtherValue = 42;
    for (int i = 0; i < 20; ++i) source.ChannelListAdd("x", "", "", 0, 1, {}, 0, 0, true);
    source.UpdateChannelInformation(0, update);
    EXPECT_EQ(*first, update);
    EXPECT_EQ(source.GetChannelList(23), nullptr);
    EXPECT_THROW(link.GetChannelList(-1), ERangeError);
    EXPECT_EQ(source.GetNewChannelHandle(), 2u);
}

TEST(MeasureLink, ProcessorsChainAndRefuseToCloseACycle)
{
    QStringList log;
    TQXMeasureSourceEx origin;
    TScaler a(2);
    TScaler b(10);
    TConsumer sink("sink", log);
    a.SetQXMeasureSource(&origin);
    b.SetQXMeasureSource(&a);
    sink.Link.SetQXMeasureSourceEx(&b);
    TBlockSet(2, 3).SendFrom(origin, 1.5);
    ASSERT_EQ(sink.Received.size(), 1u);
    EXPECT_EQ(sink.Received[0][1], (std::vector<double>{20000, 20020, 20040}));
    EXPECT_EQ(sink.LastStart, 1.5);

    // A behind B would feed B's output back into A: refused, and A is left without a source.
    a.SetQXMeasureSource(&b);
    EXPECT_EQ(a.GetQXMeasureSource(), nullptr);
    EXPECT_EQ(origin.GetLinkCount(), 0);
    EXPECT_EQ(b.GetLinkCount(), 1);

    // Fed by itself, directly or the long way round.
    a.GetInputLink().SetQXMeasureSourceEx(&a);
    EXPECT_EQ(a.GetQXMeasureSource(), nullptr);
    TScaler c(1);
    a.SetMeasureSource(&origin);
    c.SetQXMeasureSource(&b);
    a.SetQXMeasureSource(&c);
    EXPECT_EQ(a.GetMeasureSource(), nullptr);
}

TEST(MeasureSource, DestructionTellsEveryLinkOnceInOrder)
{
    QStringList log;
    auto source = std::make_unique<TQXMeasureSourceEx>();
    TQXMeasureSourceEx* raw = source.get();
    source->OnDestruction = [&](TQXMeasureSourceEx*) { log << "destruction"; };
    auto a = std::make_unique<TConsumer>("A", log);
    auto b = std::make_unique<TConsumer>("B", log);
    auto c = std::make_unique<TConsumer>("C", log);
    TConsumer d("D", log);
    for (TConsumer* x : {a.get(), b.get(), c.get(), &d}) x->Link.SetQXMeasureSourceEx(raw);
    source->MeasureLinkExAdd(&c->Link);  // listed twice
    // A frees B, still to be told; C frees itself; D re-attaches to the dying source.
    a->AfterGone = [&] { b.reset(); };
    c->AfterGone = [&] { c.reset(); };
    d.AfterGone = [&] { d.Link.SetQXMeasureSourceEx(raw); };
    log.clear();

    source.reset();
    EXPECT_EQ(log, QStringList({"destruction", "A:gone", "C:gone", "D:gone"}));
    EXPECT_EQ(d.GoneSource, raw);
    EXPECT_EQ(a->Link.GetSource(), nullptr);
    EXPECT_EQ(d.Link.GetSource(), nullptr);
}
