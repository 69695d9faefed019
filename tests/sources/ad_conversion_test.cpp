#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "qxbase/sources/simulated_source.h"
#include "tests/sources/source_test_support.h"

using namespace qx;
using namespace qxtest;

namespace {

// The blocks of `Steps` cycles of the source, joined per channel.
std::vector<std::vector<double>> Samples(TKSSimulatedSource& Source, int Steps)
{
    QStringList log;
    TConsumer consumer("c", log);
    consumer.Link.SetQXMeasureSourceEx(&Source);
    for (int i = 0; i < Steps; ++i) Source.Step();
    std::vector<std::vector<double>> joined(consumer.Received.at(0).size());
    for (const auto& cycle : consumer.Received)
        for (std::size_t c = 0; c < cycle.size(); ++c) joined[c].insert(joined[c].end(), cycle[c].begin(), cycle[c].end());
    return joined;
}

double PeakOfLast(const std::vector<double>& Samples, std::size_t Count)
{
    double peak = 0;
    for (std::size_t n = Samples.size() - Count; n < Samples.size(); ++n) peak = std::max(peak, std::fabs(Samples[n]));
    return peak;
}

}  // namespace

TEST(ADSettings, ResolutionQuantizesOverTheChannelRange)
{
    TKSSimulatedSource ideal, converter;
    for (TKSSimulatedSource* s : {&ideal, &converter}) s->SetWaveformLines({"sine 1 3 0 0", "triangle 2 5 1 0"});
    converter.SetADResolution(4);
    const auto x = Samples(ideal, 2), y = Samples(converter, 2);
    const double lows[] = {-1, -1}, steps[] = {2.0 / 16, 4.0 / 16};
    for (std::size_t c = 0; c < 2; ++c) {
        const double top = lows[c] + 15 * steps[c];
        for (std::size_t n = 0; n < y[c].size(); ++n) {
            const double code = (y[c][n] - lows[c]) / steps[c];
            ASSERT_NEAR(code, std::round(code), 1e-9) << c << ", " << n;
            ASSERT_LE(code, 15.0);
            if (x[c][n] < top) {
                ASSERT_LE(std::fabs(y[c][n] - x[c][n]), steps[c] / 2 + 1e-12) << c << ", " << n;
            }
        }
    }
}

// 10 Hz second-order low-pass at 1 kHz: a decade above the cut-off is 40 dB down, a decade below
// passes; the filter's state runs on from block to block.
TEST(ADSettings, CutOffFilterAttenuatesAboveAndPassesBelow)
{
    TKSSimulatedSource split, whole;
    for (TKSSimulatedSource* s : {&split, &whole}) {
        s->SetSampleRate(1000);
        s->SetWaveformLines({"sine 1 1 0 0", "sine 1 100 0 0"});
        s->SetADCutOffFrequency(10);
    }
    split.SetBlockSize(500);
    whole.SetBlockSize(1000);
    const auto y = Samples(whole, 3);
    EXPECT_GT(PeakOfLast(y[0], 1000), 0.99);
    EXPECT_LT(PeakOfLast(y[1], 1000), 0.0105);
    EXPECT_GT(PeakOfLast(y[1], 1000), 0.008);  // second order, not more
    EXPECT_EQ(Samples(split, 6), y);
}

TEST(ADSettings, ExternalClockDividerDividesTheRate)
{
    TKSSimulatedSource source;
    source.SetSampleRate(1000);
    source.SetBlockSize(100);
    source.Step();
    EXPECT_EQ(source.ApplyADExtendedSettings({.ExternalClockDiv = 2}, {adsExternalClockDiv}),
              TADChangedSet{adsExternalClockDiv});
    EXPECT_EQ(source.GetStreamPosition(), 0u);
    EXPECT_EQ(source.GetSampleRate(), 1000);
    EXPECT_EQ(source.GetClockFrequencyReal(), 500 * 4);
    EXPECT_EQ(source.GetCycleInterval(), 200);
    QStringList log;
    TConsumer consumer("c", log);
    consumer.Link.SetQXMeasureSourceEx(&source);
    TRVShortdefs defs;
    consumer.Link.OnNewData = [&](TQXMeasureLinkEx*, const TRVShortdefs& Defs, const TRVDataDoubleArray&,
                                  const TRVDataDoubleArray& Time, double) {
        defs = Defs;
        EXPECT_DOUBLE_EQ(Time[0].data[1] - Time[0].data[0], 1.0 / 500);
    };
    source.Step();
    EXPECT_DOUBLE_EQ(defs.at(0).XEnd, 100.0 / 500);
    source.SetClockFrequencyReal(8000);  // written as the divided clock
    EXPECT_EQ(source.GetSampleRate(), 4000);
}

// Settings whose bit is not set, and settings the simulated converter has not, change nothing;
// values out of range are brought into it.
TEST(ADSettings, OnlySetBitsApplyAndValuesAreClamped)
{
    TKSSimulatedSource fresh, source;
    const TQXADExtendedSettings wanted{.Resolution = 8, .CutOffFrequency = 5, .ExternalClockDiv = 3};
    EXPECT_TRUE(source.ApplyADExtendedSettings(wanted, {}).Empty());
    EXPECT_TRUE(source.ApplyADExtendedSettings(wanted, ADExtendedSettingsAll - TADChangedSet{adsResolution, adsCutOffFilter,
                                                                                            adsExternalClockDiv})
                    .Empty());
    EXPECT_EQ(Samples(source, 2), Samples(fresh, 2));

    source.ApplyADExtendedSettings({.Resolution = 99, .CutOffFrequency = -5, .ExternalClockDiv = 0}, ADExtendedSettingsAll);
    EXPECT_EQ(source.GetADExtendedSettings(), (TQXADExtendedSettings{32, 0, 1}));
    source.SetADCutOffFrequency(50);
    source.SetADCutOffFrequency(std::nan(""));
    EXPECT_EQ(source.GetADCutOffFrequency(), 50);
    source.SetADExternalClockDiv(1 << 20);
    EXPECT_EQ(source.GetADExternalClockDiv(), ADMaxClockDiv);
}
