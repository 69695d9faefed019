#include <gtest/gtest.h>

#include <memory>

#include "qxbase/framework/exception.h"
#include "tests/framework/print_qstring.h"
#include "tests/sources/source_test_support.h"

using namespace qx;
using namespace qxtest;

TEST(MeasureLink, AttachDetachAndTheHandlersThatGoWithThem)
{
    QStringList log;
    TQXMeasureSourceEx source;
    TConsumer consumer("A", log);

    consumer.Link.SetQXMeasureSourceEx(&source);
    consumer.Link.SetQXMeasureSourceEx(&source);  // the same source again changes nothing
    EXPECT_EQ(consumer.Link.GetSource(), &source);
    EXPECT_EQ(log, QStringList({"A:settings"}));

    source.ChannelChangeUpdate();
    consumer.Link.SetEnabled(false);
    TBlockSet(1, 4).SendFrom(source);
    consumer.Link.SetEnabled(true);
    TBlockSet(1, 4).SendFrom(source);
    EXPECT_EQ(log, QStringList({"A:settings", "A:settings", "A:data"}));

    // Detaching tells nobody: the link has no source any more when it is told.
    log.clear();
    consumer.Link.SetQXMeasureSourceEx(nullptr);
    EXPECT_EQ(consumer.Link.GetSource(), nullptr);
    EXPECT_EQ(source.GetLinkCount(), 0);
    TBlockSet(1, 4).SendFrom(source);
    source.ChannelChangeUpdate();
    EXPECT_TRUE(log.isEmpty());
}

TEST(MeasureLink, SameLinkAddedTwiceGetsEverySetTwiceAndLeavesAtOnce)
{
    QStringList log;
    TQXMeasureSourceEx source;
    TConsumer consumer("A", log);
    source.MeasureLinkExAdd(&consumer.Link);
    source.MeasureLinkExAdd(&consumer.Link);
    EXPECT_EQ(source.GetLinkCount(), 2);

    TBlockSet(2, 3).SendFrom(source);
    EXPECT_EQ(log.count("A:data"), 2);

    // One removal drops both entries: a listed link whose source is none could outlive its
    // entry and be called after it is freed.
    source.MeasureLinkExRemove(&consumer.Link);
    EXPECT_EQ(source.GetLinkCount(), 0);
}

TEST(MeasureLink, RemovingALinkThatWasNotAddedOnlyDetachesIt)
{
    QStringList log;
    TQXMeasureSourceEx a;
    TQXMeasureSourceEx b;
    TConsumer loose("L", log);
    b.MeasureLinkExRemove(&loose.Link);
    EXPECT_EQ(loose.Link.GetSource(), nullptr);

    // A link attached elsewhere is detached from that source, which no longer lists it.
    TConsumer attached("A", log);
    attached.Link.SetQXMeasureSourceEx(&a);
    log.clear();
    b.MeasureLinkExRemove(&attached.Link);
    EXPECT_EQ(attached.Link.GetSource(), nullptr);
    EXPECT_EQ(a.GetLinkCount(), 0);
    EXPECT_TRUE(log.isEmpty());

    // Adding a link that another source lists moves it.
    attached.Link.SetQXMeasureSourceEx(&a);
    b.MeasureLinkExAdd(&attached.Link);
    EXPECT_EQ(a.GetLinkCount(), 0);
    EXPECT_EQ(b.GetLinks(), std::vector<TQXMeasureLinkEx*>{&attached.Link});
}

TEST(MeasureLink, ChannelLookUpThroughTheLink)
{
    TQXMeasureSourceEx source;
    TQXMeasureLinkEx link;
    EXPECT_EQ(link.GetChannelListCount(), 0);
    EXPECT_EQ(link.GetChannelList(0), nullptr);
    EXPECT_EQ(link.OrigNameToChannel("AI 1"), -1);

    source.ChannelListAdd("AI 1", "V", "", -10, 10, {msexADChannel}, clRed, source.GetNewChannelHandle(), true);
    source.ChannelListAdd("ai 2", "V", "", -10, 10, {msexADChannel}, clRed, source.GetNewChannelHandle(), true);
    source.ChannelListAdd("AI 2", "V", "", -10, 10, {msexADChannel}, clRed, source.GetNewChannelHandle(), true);
    source.ChannelListAdd("AI 2", "V", "", -10, 10, {msexADChannel}, clRed, source.GetNewChannelHandle(), true);
    link.SetQXMeasureSourceEx(&source);
    EXPECT_EQ(link.GetChannelListCount(), 4);
    EXPECT_EQ(link.GetChannelList(3)->Handle, 4u);
    EXPECT_EQ(link.OrigNameToChannel("AI 2"), 2);  // case-sensitive, first match
    EXPECT_EQ(link.OrigNameToChannel("AI"), -1);
    EXPECT_THROW(link.GetChannelList(-1), ERangeError);
}

TEST(MeasureSource, ChannelListForms)
{
    TQXMeasureSourceEx source;
    const TQXCoefficients coefficients = {1, 2, 3, 4, 5, 6, 7};

    source.ChannelListAdd("short", "u", "t", -1, 1, {msexADChannel}, clRed, 7, false);
    source.ChannelListAdd("plain", "u", "t", -1, 1, {msexADChannel}, clRed, 0.5, 2, -3, 4, true, 8);
    source.ChannelListAdd("computed", "u", "t", 0, 5, {msexVirtualChannel}, clBlue, 0, 1, 0, 1, true, coefficients,
                          qxvtSum, 3, 0, 1, 9);
    source.ChannelListAdd("named", "u", "t", 0, 5, {msexVirtualChannel}, clBlue, 0, 1, 0, 1, false, coefficients,
                          qxvtSum, 4, 1, 0, "plain", "short", 10);
    ASSERT_EQ(source.GetChannelListCount(), 4);

    for (int i : {0, 1}) {
        const TQXMSExChannelInformation& c = *source.GetChannelList(i);
        EXPECT_EQ(c.Operation, qxvtNone) << i;
        EXPECT_EQ(c.OperationParameter, -1) << i;
        EXPECT_EQ(c.FirstOperandIndex, -1) << i;
        EXPECT_EQ(c.SecondOperandIndex, -1) << i;
    }
    EXPECT_EQ(source.GetChannelList(0)->ScalingValues, (TQXScalingValues{0, 1, 0, 1, 0, 0}));
    EXPECT_FALSE(source.GetChannelList(0)->OptionFlag);
    EXPECT_EQ(source.GetChannelList(1)->ScalingValues, (TQXScalingValues{0.5, 2, -3, 4, 0, 0}));

    const TQXMSExChannelInformation& named = *source.GetChannelList(3);
    EXPECT_EQ(named.Coefficients, coefficients);
    EXPECT_EQ(named.Operation, qxvtSum);
    EXPECT_EQ(named.OperationParameter, 4);
    EXPECT_EQ(named.FirstOperandIndex, 1);
    EXPECT_EQ(named.SecondOperandIndex, 0);
    EXPECT_EQ(named.FirstOperandName, "plain");
    EXPECT_EQ(named.SecondOperandName, "short");
    EXPECT_EQ(named.Handle, 10u);
    EXPECT_TRUE(source.GetChannelList(2)->FirstOperandName.isEmpty());

    // Records keep their place while others are added, and updates copy every field.
    const TQXMSExChannelInformation* first = source.GetChannelList(0);
    TQXMSExChannelInformation replacement = named;
    replacement.FurtherValue = 42;
    source.UpdateChannelInformation(0, replacement);
    source.UpdateChannelInformation(4, replacement);
    EXPECT_EQ(source.GetChannelList(0), first);
    EXPECT_EQ(*first, replacement);
    EXPECT_EQ(source.GetChannelList(4), nullptr);
    EXPECT_THROW(source.GetChannelList(-1), ERangeError);
    EXPECT_THROW(source.UpdateChannelInformation(-1, replacement), ERangeError);

    source.ChannelListClear();
    EXPECT_EQ(source.GetChannelListCount(), 0);
    EXPECT_EQ(source.GetNewChannelHandle(), 1u);
    EXPECT_EQ(source.GetNewChannelHandle(), 2u);
}

TEST(MeasureLink, ProcessorsChainAndRefuseToCloseACycle)
{
    QStringList log;
    TQXMeasureSourceEx origin;
    TScaler a(2, "A");
    TScaler b(10, "B");
    TConsumer sink("sink", log);
    a.SetQXMeasureSource(&origin);
    b.SetQXMeasureSource(&a);
    sink.Link.SetQXMeasureSourceEx(&b);
    EXPECT_EQ(a.GetMeasureSource(), &origin);

    TBlockSet(2, 3).SendFrom(origin, 1.5);
    ASSERT_EQ(sink.Received.size(), 1u);
    EXPECT_EQ(sink.Received[0][1], (std::vector<double>{20000, 20020, 20040}));
    EXPECT_EQ(sink.LastStart, 1.5);

    // A behind B would feed B's output back into A: refused, and A's link is left detached.
    a.SetQXMeasureSource(&b);
    EXPECT_EQ(a.GetQXMeasureSource(), nullptr);
    EXPECT_EQ(origin.GetLinkCount(), 0);
    EXPECT_EQ(b.GetLinkCount(), 1);  // the sink only
    TBlockSet(2, 3).SendFrom(origin);
    EXPECT_EQ(sink.Received.size(), 1u);

    // A processor fed by itself, directly through its link or longer way round.
    a.GetInputLink().SetQXMeasureSourceEx(&a);
    EXPECT_EQ(a.GetQXMeasureSource(), nullptr);
    TScaler c(1, "C");
    a.SetQXMeasureSource(&origin);
    c.SetQXMeasureSource(&b);
    a.SetQXMeasureSource(&c);
    EXPECT_EQ(a.GetQXMeasureSource(), nullptr);

    // The chain works again once A is back on a plain source.
    a.SetMeasureSource(&origin);
    TBlockSet(1, 1).SendFrom(origin);
    EXPECT_EQ(sink.Received.size(), 2u);
}

TEST(MeasureLink, ALinkDestroyedWhileAttachedLeavesTheList)
{
    TQXMeasureSourceEx source;
    QStringList log;
    auto consumer = std::make_unique<TConsumer>("A", log);
    consumer->Link.SetQXMeasureSourceEx(&source);
    auto processor = std::make_unique<TScaler>(1);
    processor->SetQXMeasureSource(&source);
    EXPECT_EQ(processor->Updates, 1);
    EXPECT_EQ(source.GetLinkCount(), 2);
    consumer.reset();
    processor.reset();
    EXPECT_EQ(source.GetLinkCount(), 0);
    TBlockSet(1, 1).SendFrom(source);
}

TEST(MeasureSource, DestructionTellsTheNotificationThenEveryLinkInOrder)
{
    QStringList log;
    auto source = std::make_unique<TQXMeasureSourceEx>();
    TQXMeasureSourceEx* raw = source.get();
    source->OnDestruction = [&](TQXMeasureSourceEx* s) {
        log << "destruction";
        EXPECT_EQ(s, raw);
    };
    TConsumer a("A", log);
    TConsumer b("B", log);
    TConsumer c("C", log);
    TScaler processor(1);
    for (TConsumer* consumer : {&a, &b, &c}) consumer->Link.SetQXMeasureSourceEx(raw);
    processor.SetQXMeasureSource(raw);
    // A re-attaches to the dying source, which takes no links any more.
    a.AfterGone = [&] { a.Link.SetQXMeasureSourceEx(raw); };
    log.clear();

    source.reset();
    EXPECT_EQ(log, QStringList({"destruction", "A:gone", "B:gone", "C:gone"}));
    for (TConsumer* consumer : {&a, &b, &c}) {
        EXPECT_EQ(consumer->GoneSource, raw);
        EXPECT_EQ(consumer->Link.GetSource(), nullptr);
    }
    EXPECT_EQ(processor.GetQXMeasureSource(), nullptr);
}

TEST(MeasureSource, LinksFreedWhileTheSourceIsDestroyed)
{
    QStringList log;
    auto source = std::make_unique<TQXMeasureSourceEx>();
    auto a = std::make_unique<TConsumer>("A", log);
    auto b = std::make_unique<TConsumer>("B", log);
    auto c = std::make_unique<TConsumer>("C", log);
    for (auto* consumer : {a.get(), b.get(), c.get()}) consumer->Link.SetQXMeasureSourceEx(source.get());
    source->MeasureLinkExAdd(&c->Link);  // listed twice
    // A frees a consumer still to be told, C frees itself; neither may be called afterwards.
    a->AfterGone = [&] { b.reset(); };
    c->AfterGone = [&] { c.reset(); };
    log.clear();
    source.reset();
    EXPECT_EQ(log, QStringList({"A:gone", "C:gone"}));
    EXPECT_EQ(c, nullptr);
}
