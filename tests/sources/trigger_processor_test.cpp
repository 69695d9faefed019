#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

#include "qxbase/control/event_link.h"
#include "qxbase/framework/component_stream.h"
#include "qxbase/sources/math_channel_processor.h"
#include "qxbase/sources/trigger_processor.h"
#include "tests/measure/trigger_support.h"

using namespace qx;
using namespace qx::test;

namespace {

// A source of two channels, a trigger processor behind it and a consumer behind that.
// Channel 0 arms on three samples of -1 in every eight and rises at k % 8 == 3.
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
            Received.push_back(CopyCapture(Defs, Data, Time, StartTime));
        };
        Consumer.SetQXMeasureSourceEx(&Processor);
        Stream.Data.resize(2);
        for (int k = 0; k < 40; ++k) {
            Stream.Data[0].push_back(k % 8 < 3 ? -1 : k);
            Stream.Data[1].push_back(100 + k);
            Stream.Time.push_back(0.25 * k);
        }
    }
    void SendAll(int Block)
    {
        for (int from = 0; from < Stream.Size(); from += Block) {
            TBlockSet set(Stream, from, std::min(from + Block, Stream.Size()));
            Source.SendData(set.Defs, set.Data, set.Time, Stream.Time[static_cast<std::size_t>(from)]);
        }
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
        const int start = 1 + 8 * static_cast<int>(i);  // two samples before the trigger at 3 + 8 i
        EXPECT_EQ(c.Received[i].StartTime, 0.25 * start);  // not the time of the block it ends in
        EXPECT_EQ(c.Received[i].Data[1], std::vector<double>(c.Stream.Data[1].begin() + start,
                                                              c.Stream.Data[1].begin() + start + 5));
    }
}

TEST(TriggerProcessor, CapturesBehindAMathChannelProcessor)
{
    // A spectrum, and a channel whose operand comes later in the list, arrive without times.
    TChain c;
    TKSMathChannelProcessor math;
    math.SetQXMeasureSource(&c.Source);
    const TQXCoefficients none{};
    math.GetTable().AddChannel("Inverted", "V", "", -200, 0, 0, qxvtInverse, 0, 3, -1, 0, 1, 0, 1, none);
    math.GetTable().AddChannel("Scaled", "V", "", 0, 200, 0, qxvtTwoPoint, 0, 1, -1, 0, 1, 0, 1, none);
    math.GetTable().AddChannel("Spectrum", "V", "", 0, 1, 0, qxvtFFT, 0, 0, -1, 0, 1, 0, 1, none);
    c.Processor.SetQXMeasureSource(&math);
    c.Processor.SetTriggerType(trtPos);
    c.Processor.SetTriggerBufferSize(5);
    c.Processor.SetPreTrigger(2);
    c.SendAll(7);
    ASSERT_EQ(c.Received.size(), 5u);
    const TCapture& cap = c.Received[0];  // samples 1 to 5
    ASSERT_EQ(cap.Data.size(), 5u);
    EXPECT_EQ(cap.Data[2], (std::vector<double>{-101, -102, -103, -104, -105}));
    EXPECT_EQ(cap.Data[4], std::vector<double>(5, NoValueMarker));  // of another length
    EXPECT_EQ(cap.Time[3], (std::vector<double>{0.25, 0.5, 0.75, 1, 1.25}));
    EXPECT_TRUE(cap.Time[2].empty() && cap.Time[4].empty());
}

TEST(TriggerProcessor, SettingsAndRearmOnTheBus)
{
    TChain c;
    TKSTriggerProcessor& p = c.Processor;
    TQXPropertyHandle size = 0, pre = 0, type = 0, rearm = 0;
    ASSERT_TRUE(p.GetPropertyHandleFromDescription("Trigger buffer size", size) &&
                p.GetPropertyHandleFromDescription("Pre-trigger", pre) &&
                p.GetPropertyHandleFromDescription("Trigger type", type) &&
                p.GetPropertyHandleFromDescription("Rearm trigger", rearm));
    std::vector<TQXPropertyHandle> updated;
    TQXEventLink listener;
    listener.OnValueUpdated = [&](TQXEventLink*, std::uint32_t h) { updated.push_back(h); };
    listener.SetEventSource(&p);

    p.SetPreTrigger(150);
    updated.clear();
    ASSERT_TRUE(p.SetPropertyValue(nullptr, size, Variant(std::int32_t{100})));
    EXPECT_EQ(p.GetPreTrigger(), 99);
    EXPECT_EQ(updated, (std::vector<TQXPropertyHandle>{pre, size}));  // each announced once
    p.SetPropertyValue(nullptr, type, Variant(std::int32_t{1}));
    p.SetPropertyValue(nullptr, type, Variant(std::int32_t{7}));  // no such type
    EXPECT_EQ(p.GetTrigger().GetTriggerType(), trtNeg);

    p.SetTriggerType(trtPos);
    p.SetPreTrigger(0);
    p.SetTriggerBufferSize(3);
    p.SetTriggerSingleShot(true);
    c.SendAll(40);
    p.SetPropertyValue(nullptr, rearm, Variant(QStringLiteral("Unknown")));  // not the command
    c.SendAll(40);
    EXPECT_EQ(c.Received.size(), 1u);
    p.SetPropertyValue(nullptr, rearm, Variant(QStringLiteral("True")));
    c.SendAll(40);
    EXPECT_EQ(c.Received.size(), 2u);
    p.SetTriggerChannel(2);
    EXPECT_THROW(p.RearmTrigger(), TRVTriggerException);
}

// A file is read into the setters and written back from the getters, so a setting that is
// not stored, not taken or read from elsewhere changes the text. Buffer size 11 with
// pre-trigger 2000 is what SetPreTrigger(2000) leaves after SetPreTrigger(10).
TEST(TriggerProcessor, WorksheetKeepsEverySettingAndAnUnusualSizePair)
{
    const QJsonObject stored = QJsonDocument::fromJson(R"({"TriggerType": 6, "TriggerBufferSize": 11,
        "TriggerLevel": {"float": "0.5"}, "TriggerSingleShot": true, "TriggerChannel": 3, "PreTrigger": 2000,
        "TriggerMode": 1, "StopTriggerChannel": 2, "LowSlopeTolerance": {"float": "0.125"},
        "HighSlopeTolerance": {"float": "0.75"}, "PostTrigger": 7})").object();
    TKSTriggerProcessor q;
    ReadComponentData(q, QJsonObject{{"properties", stored}});
    const QJsonObject written = WriteStoredProperties(q);
    for (auto it = stored.begin(); it != stored.end(); ++it)
        EXPECT_EQ(written.value(it.key()), it.value()) << it.key().toStdString();
    q.SetPreTrigger(20);  // outside a worksheet the setter rules apply again
    EXPECT_EQ(q.GetTriggerBufferSize(), 2001);
    q.SetTriggerBufferSize(10);
    EXPECT_EQ(q.GetPreTrigger(), 9);
}

}  // namespace
