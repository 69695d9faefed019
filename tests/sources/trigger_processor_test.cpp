#include <gtest/gtest.h>

#include <QJsonObject>
#include <utility>

#include "qxbase/control/event_link.h"
#include "qxbase/framework/component_stream.h"
#include "qxbase/sources/trigger_processor.h"
#include "tests/measure/trigger_support.h"

using namespace qx;
using namespace qx::test;

namespace {

// A source of two channels, a trigger processor behind it and a consumer behind that.
struct TChain {
    TQXMeasureSourceEx Source;
    TKSTriggerProcessor Processor;
    TQXMeasureLinkEx Consumer;
    std::vector<TCapture> Received;
    TStream Stream;

    TChain()
    {
        Source.ChannelListAdd("AI 1", "V", "", -1, 1, {msexArrayData}, 0, Source.GetNewChannelHandle(), true);
        Source.ChannelListAdd("AI 2", "V", "", 0, 100, {msexArrayData}, 0, Source.GetNewChannelHandle(), true);
        Processor.SetQXMeasureSource(&Source);
        Consumer.OnNewData = [this](TQXMeasureLinkEx*, const TRVShortdefs& Defs, const TRVDataDoubleArray& Data,
                                    const TRVDataDoubleArray& Time, double StartTime) {
            TCapture c{Defs, {}, {}, StartTime};
            for (const TRVDataDouble& b : Data) c.Data.emplace_back(b.data, b.data + b.count);
            for (const TRVDataDouble& b : Time) c.Time.emplace_back(b.data, b.data + b.count);
            Received.push_back(std::move(c));
        };
        Consumer.SetQXMeasureSourceEx(&Processor);
        // Channel 0 arms on three samples of -1 in every eight, then rises at k % 8 == 3.
        Stream.Data.resize(2);
        for (int k = 0; k < 40; ++k) {
            Stream.Data[0].push_back(k % 8 < 3 ? -1 : k);
            Stream.Data[1].push_back(100 + k);
            Stream.Time.push_back(0.25 * k);
        }
    }

    void Send(int From, int To)
    {
        TBlockSet set;
        MakeSet(set, Stream, From, To);
        Source.SendData(set.Defs, set.Data, set.Time, Stream.Time[static_cast<std::size_t>(From)]);
    }
    void SendAll(int Block)
    {
        for (int from = 0; from < Stream.Size(); from += Block) Send(from, std::min(from + Block, Stream.Size()));
    }
};

TEST(TriggerProcessor, SendsEveryCaptureOnWithTheInputsChannels)
{
    TChain c;
    ASSERT_EQ(c.Processor.GetChannelListCount(), 2);
    EXPECT_EQ(c.Processor.GetChannelList(1)->Name, "AI 2");
    EXPECT_EQ(c.Processor.GetChannelList(1)->Handle, c.Source.GetChannelList(1)->Handle);

    c.Processor.SetTriggerType(trtPos);
    c.Processor.SetTriggerBufferSize(5);
    c.Processor.SetPreTrigger(2);
    c.SendAll(7);
    ASSERT_EQ(c.Received.size(), 5u);
    for (std::size_t i = 0; i < c.Received.size(); ++i) {
        const TCapture& cap = c.Received[i];
        const int start = 1 + 8 * static_cast<int>(i);  // trigger at 3 + 8 i, two samples before
        EXPECT_EQ(cap.StartTime, 0.25 * start);
        EXPECT_EQ(cap.Data[0], std::vector<double>(c.Stream.Data[0].begin() + start,
                                                   c.Stream.Data[0].begin() + start + 5));
        EXPECT_EQ(cap.Data[1][0], 100 + start);
        EXPECT_EQ(cap.Time[1][4], 0.25 * (start + 4));
        EXPECT_EQ(cap.Defs[1].XEnd - cap.Defs[1].XStart, 5);  // five samples of one axis unit
    }
}

TEST(TriggerProcessor, SettingsOnTheBus)
{
    TKSTriggerProcessor p;
    const std::pair<const char*, const char*> texts[] = {
        {"TriggerType", "Trigger type"},         {"TriggerBufferSize", "Trigger buffer size"},
        {"TriggerLevel", "Trigger level"},       {"TriggerSingleShot", "Trigger single shot"},
        {"TriggerChannel", "Trigger channel"},   {"PreTrigger", "Pre-trigger"},
        {"RearmTrigger", "Rearm trigger"}};
    for (const auto& [name, description] : texts) {
        QString text;
        EXPECT_TRUE(p.GetDescriptionFromName(name, text)) << name;
        EXPECT_EQ(text, description);
    }
    TQXPropertyHandle size = 0, pre = 0, type = 0;
    ASSERT_TRUE(p.GetPropertyHandle("TriggerBufferSize", size));
    ASSERT_TRUE(p.GetPropertyHandle("PreTrigger", pre));
    ASSERT_TRUE(p.GetPropertyHandle("TriggerType", type));

    std::vector<TQXPropertyHandle> updated;
    TQXEventLink listener;
    listener.OnValueUpdated = [&](TQXEventLink*, std::uint32_t h) { updated.push_back(h); };
    listener.SetEventSource(&p);

    p.SetPreTrigger(150);
    updated.clear();
    ASSERT_TRUE(p.SetPropertyValue(nullptr, size, Variant(std::int32_t{100})));
    EXPECT_EQ(p.GetPreTrigger(), 99);
    EXPECT_EQ(updated, (std::vector<TQXPropertyHandle>{pre, size}));  // each announced once

    ASSERT_TRUE(p.SetPropertyValue(nullptr, type, Variant(std::int32_t{1})));
    EXPECT_EQ(p.GetTrigger().GetTriggerType(), trtNeg);
    p.SetPropertyValue(nullptr, type, Variant(std::int32_t{7}));
    EXPECT_EQ(p.GetTrigger().GetTriggerType(), trtNeg);
    Variant value;
    ASSERT_TRUE(p.GetPropertyValue(pre, value));
    EXPECT_EQ(value.ToInteger(), 99);
}

TEST(TriggerProcessor, RearmRestartsASingleShot)
{
    TChain c;
    c.Processor.SetTriggerType(trtPos);
    c.Processor.SetTriggerBufferSize(3);
    c.Processor.SetTriggerSingleShot(true);
    c.SendAll(40);
    EXPECT_EQ(c.Received.size(), 1u);
    c.SendAll(40);
    EXPECT_EQ(c.Received.size(), 1u);

    TQXPropertyHandle rearm = 0;
    ASSERT_TRUE(c.Processor.GetPropertyHandle("RearmTrigger", rearm));
    c.Processor.SetPropertyValue(nullptr, rearm, Variant(QStringLiteral("Unknown")));
    c.SendAll(40);
    EXPECT_EQ(c.Received.size(), 1u);
    c.Processor.SetPropertyValue(nullptr, rearm, Variant(QStringLiteral("True")));
    c.SendAll(40);
    EXPECT_EQ(c.Received.size(), 2u);

    c.Processor.SetTriggerChannel(2);
    EXPECT_THROW(c.Processor.RearmTrigger(), TRVTriggerException);
}

TEST(TriggerProcessor, WorksheetKeepsEverySettingAndAnUnusualSizePair)
{
    TKSTriggerProcessor p;
    p.SetPreTrigger(10);
    p.SetPreTrigger(2000);  // buffer size 11 from the previous pre-trigger
    p.SetTriggerType(trtTime);
    p.SetTriggerLevel(0.5);
    p.SetTriggerSingleShot(true);
    p.SetTriggerChannel(3);
    p.SetTriggerMode(tmChartRecorder);
    p.SetStopTriggerChannel(2);
    p.SetLowSlopeTolerance(0.125);
    p.SetHighSlopeTolerance(0.75);
    p.SetPostTrigger(7);

    TKSTriggerProcessor q;
    ReadComponentData(q, QJsonObject{{"properties", WriteStoredProperties(p)}});
    EXPECT_EQ(q.GetPreTrigger(), 2000);
    EXPECT_EQ(q.GetTriggerBufferSize(), 11);
    EXPECT_EQ(q.GetTriggerType(), trtTime);
    EXPECT_EQ(q.GetTriggerLevel(), 0.5);
    EXPECT_TRUE(q.GetTriggerSingleShot());
    EXPECT_EQ(q.GetTriggerChannel(), 3);
    EXPECT_EQ(q.GetTriggerMode(), tmChartRecorder);
    EXPECT_EQ(q.GetStopTriggerChannel(), 2);
    EXPECT_EQ(q.GetLowSlopeTolerance(), 0.125);
    EXPECT_EQ(q.GetHighSlopeTolerance(), 0.75);
    EXPECT_EQ(q.GetPostTrigger(), 7);

    // Outside a worksheet the setter rules apply again.
    q.SetTriggerBufferSize(100);
    EXPECT_EQ(q.GetPreTrigger(), 99);
}

}  // namespace
