#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QtTest/QTest>
#include <cmath>
#include <map>
#include <numbers>

#include "qxbase/framework/component_stream.h"
#include "qxbase/framework/exception.h"
#include "qxbase/panels/panel_registry.h"
#include "qxbase/sources/simulated_source.h"
#include "tests/sources/source_test_support.h"

using namespace qx;
using namespace qxtest;

// Sampled at 100 Hz: at 1 Hz sample n sits at n/100 of a period, a 100 Hz counter counts every sample.
TEST(SimulatedSource, WaveformShapes)
{
    // SplitMix64 started with 0 gives 0xE220A8397B1DCDAF first (the generator's reference output).
    const double u0 = static_cast<double>(0xE220A8397B1DCDAFULL >> 11) / 9007199254740992.0;
    const struct {
        const char* Line;
        std::uint64_t FirstSample;
        std::vector<std::pair<int, double>> Samples;  // sample, expected value
    } rows[] = {
        {"sine 2 1 0.5 0", 0, {{0, 0.5}, {25, 2.5}, {10, 0.5 + 2 * std::sin(0.2 * std::numbers::pi)}, {75, -1.5}}},
        {"sine 2 1 0.5 90", 0, {{0, 2.5}, {50, -1.5}}},
        {"square 2 1 0.5 0", 0, {{0, 2.5}, {49, 2.5}, {50, -1.5}, {99, -1.5}}},
        {"triangle 2 1 0.5 0", 0, {{0, 0.5}, {10, 1.3}, {25, 2.5}, {60, -0.3}, {75, -1.5}, {90, -0.3}}},
        {"sawtooth 2 1 0.5 0", 0, {{0, 0.5}, {10, 0.9}, {49, 2.46}, {50, -1.5}, {75, -0.5}}},
        {"counter 3 10 1 0", 0, {{0, 1}, {9, 1}, {10, 4}, {99, 28}}},
        {"counter 1 100 0 0", 65535, {{0, 65535}, {1, 0}, {2, 1}}},
        {"counter 1 -100 0 0", 0, {{1, 65535}}},
        {"noise 3 1 10 0", 0, {{0, 10 + 3 * (2 * u0 - 1)}}},
    };
    for (const auto& row : rows) {
        std::vector<double> values(100);
        FillWaveform(WaveformFromText(row.Line), 100, row.FirstSample, 0, values.data(), 100);
        for (const auto& [n, expected] : row.Samples)
            EXPECT_NEAR(values.at(static_cast<std::size_t>(n)), expected, 1e-12) << row.Line << ", sample " << n;
    }
}

// Blocks join without a seam: two steps of 256 samples equal one of 512.
TEST(SimulatedSource, StepsContinueTimeAndPhase)
{
    QStringList log;
    TKSSimulatedSource split;
    TKSSimulatedSource whole;
    for (TKSSimulatedSource* s : {&split, &whole}) {
        s->SetSampleRate(1234.5);
        s->SetWaveformLines({"sine 1 3.3 0 10", "noise 1 1 0 0", "triangle 2 7.7 1 0", "counter 1 50 0 0"});
    }
    split.SetBlockSize(256);
    whole.SetBlockSize(512);
    TConsumer wholeSink("whole", log);
    wholeSink.Link.SetQXMeasureSourceEx(&whole);
    std::vector<TRVShortdefs> defs;
    std::vector<std::vector<double>> joined(4), times;
    TQXMeasureLinkEx splitLink;
    splitLink.OnNewData = [&](TQXMeasureLinkEx*, const TRVShortdefs& Defs, const TRVDataDoubleArray& Data,
                              const TRVDataDoubleArray& Time, double Start) {
        defs.push_back(Defs);
        times.emplace_back(Time[3].data, Time[3].data + Time[3].count);
        for (std::size_t c = 0; c < 4; ++c) joined[c].insert(joined[c].end(), Data[c].data, Data[c].data + Data[c].count);
        EXPECT_EQ(Start, Defs[0].XStart);
    };
    splitLink.SetQXMeasureSourceEx(&split);
    split.Step();
    split.Step();
    whole.Step();
    for (std::size_t c = 0; c < 4; ++c) EXPECT_EQ(joined[c], wholeSink.Received[0][c]) << "channel " << c;

    const TRVShortdef& first = defs.at(0)[2];
    const TRVShortdef& second = defs.at(1)[2];
    EXPECT_EQ(second.ChannelNo, 2);
    EXPECT_EQ(second.FirstSample, 256u);
    EXPECT_EQ(first.XEnd, second.XStart);
    EXPECT_DOUBLE_EQ(second.XEnd, 512 / 1234.5);
    EXPECT_EQ(second.YMin, -1);
    EXPECT_EQ(second.YMax, 3);
    EXPECT_EQ(second.Handle, split.GetChannelList(2)->Handle);
    EXPECT_DOUBLE_EQ(times[1][0], 256 / 1234.5);
    EXPECT_DOUBLE_EQ(times[1][255], 511 / 1234.5);
}

TEST(SimulatedSource, ChannelListFollowsTheSettings)
{
    QStringList log;
    TKSSimulatedSource source;
    TConsumer consumer("c", log);
    consumer.Link.SetQXMeasureSourceEx(&source);
    ASSERT_EQ(source.GetChannelListCount(), 4);
    EXPECT_EQ(source.GetChannelList(3)->Name, "AI 4");
    const std::uint32_t handle1 = source.GetChannelList(1)->Handle;
    const std::uint32_t handle3 = source.GetChannelList(3)->Handle;

    log.clear();
    source.SetWaveform(1, {kswSquare, 5, 1, 2, 0});
    EXPECT_EQ(log, QStringList({"c:settings"}));
    EXPECT_EQ(source.GetChannelList(1)->RangeLow, -3);
    EXPECT_EQ(source.GetChannelList(1)->RangeHigh, 7);

    // Channels that stay keep waveform and handle; one that went and came back is new.
    source.SetNrOfCGLChannels(2);
    source.SetNrOfCGLChannels(3);
    EXPECT_EQ(source.GetChannelList(1)->Handle, handle1);
    EXPECT_EQ(source.GetWaveform(1).Kind, kswSquare);
    EXPECT_GT(source.GetChannelList(2)->Handle, handle3);
    EXPECT_EQ(source.GetWaveform(2), TKSSimulatedSource::DefaultWaveform(2));

    EXPECT_THROW(source.GetWaveform(3), ERangeError);
    EXPECT_THROW(source.SetWaveform(0, {kswSine, std::nan(""), 1, 0, 0}), ERangeError);
    EXPECT_EQ(source.GetWaveform(0), TKSSimulatedSource::DefaultWaveform(0));
}

// The clock is the converter's: each channel gets its share of it.
TEST(SimulatedSource, SettingsOnTheBusNotifyOnceAndTheTimerRunsTheCycles)
{
    QStringList log;
    TKSSimulatedSource source;
    std::map<TQXPropertyHandle, int> updates;
    TQXEventLink listener;
    listener.OnValueUpdated = [&](TQXEventLink*, std::uint32_t h) { ++updates[h]; };
    listener.SetEventSource(&source);
    TQXPropertyHandle rate = 0, clock = 0, channels = 0, block = 0, acquisition = 0;
    ASSERT_TRUE(source.GetPropertyHandle("SampleRate", rate));
    ASSERT_TRUE(source.GetPropertyHandle("ClockFrequencyReal", clock));
    ASSERT_TRUE(source.GetPropertyHandle("NrOfCGLChannels", channels));
    ASSERT_TRUE(source.GetPropertyHandle("BlockSize", block));
    ASSERT_TRUE(source.GetPropertyHandle("Acquisition", acquisition));

    source.Step();
    EXPECT_TRUE(source.SetPropertyValue(nullptr, clock, 8000.0));
    EXPECT_EQ(source.GetSampleRate(), 2000.0);
    EXPECT_EQ(source.GetStreamPosition(), 0u);  // a new rate restarts the stream
    EXPECT_TRUE(source.SetPropertyValue(nullptr, channels, std::int32_t{6}));
    EXPECT_EQ(source.GetChannelListCount(), 6);
    Variant value;
    ASSERT_TRUE(source.GetPropertyValue(clock, value));
    EXPECT_EQ(value.ToDouble(), 12000.0);
    EXPECT_TRUE(source.SetPropertyValue(nullptr, rate, 500.0));
    EXPECT_EQ(source.GetClockFrequencyReal(), 3000.0);
    source.SetBlockSize(10);
    source.SetBlockSize(10);
    EXPECT_EQ(updates, (std::map<TQXPropertyHandle, int>{{rate, 2}, {clock, 3}, {channels, 1}, {block, 1}}));

    TConsumer consumer("c", log);
    consumer.Link.SetQXMeasureSourceEx(&source);
    EXPECT_TRUE(source.SetPropertyValue(nullptr, acquisition, std::int32_t{1}));
    EXPECT_TRUE(QTest::qWaitFor([&] { return consumer.Received.size() >= 3; }, 5000));
    source.Stop();
    const std::size_t cycles = consumer.Received.size();
    EXPECT_EQ(source.GetStreamPosition(), 10 * cycles);
    QTest::qWait(60);
    EXPECT_EQ(consumer.Received.size(), cycles);
    ASSERT_TRUE(source.GetPropertyValue(acquisition, value));
    EXPECT_EQ(value.ToInteger(), 0);
    EXPECT_EQ(updates[acquisition], 2);

    source.SetSampleRate(1e6);
    source.SetBlockSize(1);
    EXPECT_EQ(source.GetCycleInterval(), TKSSimulatedSource::MinCycleMs);
    source.SetSampleRate(1);
    source.SetBlockSize(TKSSimulatedSource::MaxBlockSize);
    EXPECT_EQ(source.GetCycleInterval(), TKSSimulatedSource::MaxCycleMs);
}

TEST(SimulatedSource, StoredFormRoundTripAndDamagedLines)
{
    RegisterSimulatedSource();
    RegisterSimulatedSource();
    EXPECT_EQ(SourceClassNames().count("TKSSimulatedSource"), 1);

    TKSSimulatedSource original;
    original.SetSampleRate(2500.5);
    original.SetBlockSize(333);
    original.SetWaveformLines({"sine 1 2 3 4", "noise 0.25 0 -1 0", "counter 1 1000 0 45.5"});
    original.ApplyADExtendedSettings({12, 50.5, 3}, ADExtendedSettingsAll);
    std::unique_ptr<QObject> read = ReadComponent(WriteComponent(original), nullptr);
    auto* copy = qobject_cast<TKSSimulatedSource*>(read.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->GetSampleRate(), 2500.5);
    EXPECT_FALSE(WriteComponent(original)["properties"].toObject().contains("ClockFrequencyReal"));
    EXPECT_EQ(copy->GetBlockSize(), 333);
    EXPECT_EQ(copy->GetWaveformLines(), original.GetWaveformLines());
    EXPECT_EQ(copy->GetADExtendedSettings(), (TQXADExtendedSettings{12, 50.5, 3}));

    TKSSimulatedSource damaged;
    ReadStoredProperties(damaged, QJsonObject{{"Waveforms", QJsonArray{"square 1 2 3 4", "square 1 x 3 4", "wobble 1 1 1 1"}}});
    EXPECT_EQ(damaged.GetNrOfCGLChannels(), 3);
    EXPECT_EQ(damaged.GetWaveform(0).Kind, kswSquare);
    EXPECT_EQ(damaged.GetWaveform(1), TKSSimulatedSource::DefaultWaveform(1));
    EXPECT_EQ(damaged.GetWaveform(2), TKSSimulatedSource::DefaultWaveform(2));
}
