#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "qxbase/measure/block_buffer.h"
#include "qxbase/measure/fft_processor.h"

using namespace qx;

namespace {

// Count samples at Rate of a sine of Frequency and Amplitude, in a fresh buffer.
TRVDataDouble Sine(std::int32_t Count, double Rate = 1024, double Frequency = 64, double Amplitude = 2)
{
    TRVDataDouble block = NewDataDouble(Count);
    for (int i = 0; i < Count; ++i) block.data[i] = Amplitude * std::sin(2 * std::numbers::pi * Frequency * i / Rate);
    return block;
}

TRVDataDouble Transform(TKSZLFFT& fft, TRVDataDouble In)
{
    fft.DoFFTOnChannel(In);
    return In;
}

}  // namespace

TEST(FFTProcessorSize, PadsTheCountToAPowerOfTwoKeepsVectorsThatFitAndIgnoresSetSize)
{
    struct Row { std::int32_t Count, Length; };
    for (Row row : {Row{1000, 1024}, Row{1100, 2048}, Row{1024, 1024}, Row{1, 4}}) {
        TKSZLFFT fft;
        fft.ResizeFFTVector(row.Count);
        EXPECT_EQ(fft.GetRealVector().GetLength(), row.Length) << row.Count;
        EXPECT_EQ(fft.GetComplexVector().GetCount(), row.Length / 2) << row.Count;
        fft.SetSize(64);
        EXPECT_EQ(fft.GetSize(), row.Length / 2) << row.Count;
    }
    TKSZLFFT big;
    EXPECT_THROW(big.ResizeFFTVector(MaxBlockSamples + 1), ERangeError);
    EXPECT_EQ(big.GetRealVector().GetLength(), 16);

    // A block that fits (700, then 600) keeps the vectors; a shorter one (300) gets its own.
    for (TKSFFTSpecType type : {ksfftSpec, ksfftAutocorr, ksfftPowerSpec}) {
        TKSZLFFT fft;
        fft.SetSpecType(type);
        fft.ResizeFFTVector(700);
        const float* real = fft.GetRealVector().Data();
        const auto* complex = fft.GetComplexVector().Data();
        fft.ResizeFFTVector(600);
        EXPECT_EQ(fft.GetRealVector().Data(), real) << type;
        EXPECT_EQ(fft.GetComplexVector().Data(), complex) << type;
        fft.ResizeFFTVector(300);
        EXPECT_EQ(fft.GetRealVector().GetLength(), 512) << type;
    }
}

TEST(FFTProcessor, ASineLandsOnItsBinInEveryResult)
{
    TKSZLFFT fft;
    TRVDataDouble spec = Transform(fft, Sine(1024));
    ASSERT_EQ(spec.count, 510);  // bins are fs / 1024 = 1 Hz apart, the first two dropped
    EXPECT_NEAR(spec.data[64 - 2], 2.0, 1e-3);
    EXPECT_NEAR(spec.data[100], 0.0, 1e-3);

    fft.SetSpecType(ksfftPowerSpec);  // segments of 512 samples: bins 2 Hz apart
    TRVDataDouble power = Transform(fft, Sine(1024));
    ASSERT_EQ(power.count, 255);
    EXPECT_NEAR(power.data[32 - 1], 2.0, 1e-3);
    // Silence, then the sine: Welch's segments at 0, 256 and 512 read 0, 2 / 4 and 2 at the bin
    // (only the first 512 samples were once taken, reading 0).
    TRVDataDouble late = Sine(1024);
    std::fill(late.data, late.data + 512, 0.0);
    late = Transform(fft, late);
    EXPECT_NEAR(late.data[32 - 1], 2.5 / 3, 1e-4);

    fft.SetSpecType(ksfftAutocorr);
    TRVDataDouble autocorr = Transform(fft, Sine(1024));
    ASSERT_EQ(autocorr.count, 512);
    for (int k : {0, 3, 100, 301}) {  // the mean over all 1024 samples
        const double expected = 2.0 * (1024 - k) / 1024 * std::cos(2 * std::numbers::pi * 64 * k / 1024);
        EXPECT_NEAR(autocorr.data[k], expected, 0.02) << k;
    }
    for (TRVDataDouble* block : {&spec, &power, &late, &autocorr}) FreeDataDouble(*block);

    fft.SetSpecType(static_cast<TKSFFTSpecType>(7));
    TRVDataDouble unknown = Transform(fft, Sine(64));
    EXPECT_EQ(unknown.data, nullptr);
}

TEST(FFTProcessor, ProcessDataRewritesTheAxesAndTransformsEveryBlock)
{
    TRVShortdefs defs(3);
    for (int i = 0; i < 3; ++i) defs[i] = {.ChannelNo = i, .XStart = -1, .XEnd = 5, .Color = 0x123456u};
    for (TKSFFTSpecType type : {ksfftSpec, ksfftPowerSpec, ksfftAutocorr}) {
        SCOPED_TRACE(type);
        TKSZLFFT fft;
        fft.SetSpecType(type);
        fft.SetFrequency(2000);
        TRVDataDoubleArray data{Sine(1000), TRVDataDouble{}, Sine(1000)};
        fft.ProcessData(defs, data);

        // 512 points; the empty block gets the axis 0 .. 0.
        const double n = 512, df = 2000 / n / 2;
        TRVShortdefs expected = defs;
        expected[0].XStart = expected[2].XStart = type == ksfftAutocorr ? n / 2000 * 1e-11 : 2 * df;
        expected[0].XEnd = expected[2].XEnd = type == ksfftAutocorr ? n / 2000 : (n - 1) * df;
        expected[1].XStart = expected[1].XEnd = 0;
        EXPECT_EQ(fft.GetShortdefs(), expected);
        EXPECT_EQ(data[1].data, nullptr);
        EXPECT_EQ(data[0].count, type == ksfftSpec ? 510 : type == ksfftAutocorr ? 512 : 255);
        EXPECT_EQ(data[2].count, data[0].count);
        FreeDataDoubleArray(data);
    }
}
