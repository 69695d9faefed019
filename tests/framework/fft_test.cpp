#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <random>

#include "qxbase/framework/fft.h"

using namespace qx;

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

// A sine of Amplitude on bin Bin of N samples, plus a constant part.
TQXVector Sine(std::int32_t N, int Bin, double Amplitude, double Dc = 0)
{
    TQXVector v(N);
    for (int i = 0; i < N; ++i) v.Data()[i] = static_cast<float>(Dc + Amplitude * std::sin(kTwoPi * Bin * i / N + 0.3));
    return v;
}

}  // namespace

TEST(RealFFT, AmplitudesReadTheSinesAndKeptBinsAreTheWindowedNaiveDFT)
{
    TQXVector sines = Sine(256, 20, 3.0, 1.5);
    const TQXVector high = Sine(256, 125, 0.5);  // lands past the last group of four bins
    for (int i = 0; i < 256; ++i) sines.Data()[i] += high.Data()[i];
    constexpr int N = 16;
    std::mt19937 rng(7);
    std::uniform_real_distribution<float> dist(-1, 1);
    TQXVector noise(N);
    for (int i = 0; i < N; ++i) noise.Data()[i] = dist(rng);
    // The periodic windows over N, written out here rather than taken from the code under test.
    const auto window = [](TQXFFTLeakType type, int i) {
        const double c = std::cos(kTwoPi * i / N);
        switch (type) {
        case qxltHanning: return 0.5 - 0.5 * c;
        case qxltHamming: return 0.54 - 0.46 * c;
        case qxltBlackman: return 0.42 - 0.5 * c + 0.08 * std::cos(2 * kTwoPi * i / N);
        default: return 1.0;
        }
    };
    for (TQXFFTLeakType type : {qxltRectangle, qxltHanning, qxltHamming, qxltBlackman}) {
        SCOPED_TRACE(type);
        TQXFFT fft;
        fft.SetLeakType(type);
        TQXComplexVector out(200);
        std::fill(out.FloatData(), out.FloatData() + out.GetFloatCount(), 7.0f);  // what was there must go
        fft.RealFFT(sines, out, false);
        EXPECT_NEAR(out.FloatData()[20], 3.0, 1e-4);
        EXPECT_NEAR(out.FloatData()[125], 0.5, 1e-4);
        EXPECT_NEAR(out.FloatData()[0], 1.5, 1e-4);
        for (int k = 128; k < out.GetFloatCount(); ++k) ASSERT_EQ(out.FloatData()[k], 0.0f) << k;

        // Kept bins, over the amplitudes: bin N/2, which is real, rides in bin 0's imaginary part.
        fft.RealFFT(noise, out, true);
        for (int k = 0; k <= N / 2; ++k) {
            std::complex<double> x;
            for (int i = 0; i < N; ++i) x += noise.Data()[i] * window(type, i) * std::polar(1.0, -kTwoPi * k * i / N);
            const std::complex<float> got = k == 0 ? out.Data()[0].real() : k == N / 2 ? out.Data()[0].imag() : out.Data()[k];
            EXPECT_NEAR(std::abs(std::complex<double>(got) - x), 0.0, 1e-5) << k;
        }
        for (int k = N / 2; k < out.GetCount(); ++k) ASSERT_EQ(out.Data()[k], std::complex<float>{}) << k;
    }
}

TEST(PowerSpectrum, SineReadsHalfItsSquaredAmplitudeAndTheEdgesTheirSquares)
{
    // 128 samples are one segment; 256 are three (Welch), whose average must read the same.
    for (TQXFFTLeakType window : {qxltRectangle, qxltHanning})
        for (int count : {128, 256}) {
            TQXFFT fft;
            fft.SetLeakType(window);
            TQXComplexVector v(128);
            TQXVector sine = Sine(count, 10 * count / 128, 2.0, 0.5);
            for (int i = 0; i < count; ++i) v.FloatData()[i] = sine.Data()[i] + (i % 2 ? -0.5f : 0.5f);
            fft.PowerSpectrum(v, count);
            EXPECT_NEAR(v.FloatData()[10], 2.0, 1e-4) << count;
            EXPECT_NEAR(v.FloatData()[0], 0.25, 1e-4) << count;
            EXPECT_NEAR(v.FloatData()[64], 0.25, 1e-4) << count;  // the alternating 0.5 on bin C/2
            EXPECT_EQ(v.FloatData()[65], 0.0f);
        }
}

TEST(AutoCorrelation, IsTheLinearMeanOfLaggedProductsWithoutWrapAround)
{
    std::mt19937 rng(3);
    std::uniform_real_distribution<float> dist(-1, 1);
    // (points, samples): transforms of 2C, 3C and 4C points.
    for (auto [c, count] : {std::pair{36, 20}, std::pair{36, 37}, std::pair{36, 72}, std::pair{37, 74}}) {
        TQXComplexVector v(c);
        for (int i = 0; i < 2 * c; ++i) v.FloatData()[i] = i < count ? dist(rng) : 9.0f;
        const std::vector<float> x(v.FloatData(), v.FloatData() + count);
        TQXFFT fft;
        fft.SetLeakType(qxltBlackman);  // no window on an autocorrelation
        fft.AutoCorrelation(v, count);
        for (int k = 0; k < c; ++k) {
            double sum = 0;
            for (int i = 0; i + k < count; ++i) sum += double(x[i]) * x[i + k];
            EXPECT_NEAR(v.FloatData()[k], sum / count, 1e-5) << count << " " << k;
        }
        for (int k = c; k < 2 * c; ++k) ASSERT_EQ(v.FloatData()[k], 0.0f);
    }
}

TEST(TQXFFT, SizesTheTransformCannotTakeRaise)
{
    TQXFFT fft;
    TQXComplexVector big(64), odd(5), none(0);
    EXPECT_THROW(fft.RealFFT(TQXVector(7), big, false), EFFTError);
    EXPECT_THROW(fft.RealFFT(TQXVector(130), big, false), EFFTError);  // needs 65 elements
    EXPECT_THROW(fft.PowerSpectrum(odd, 5), EFFTError);
    EXPECT_THROW(fft.PowerSpectrum(none, 1), EFFTError);
    EXPECT_THROW(fft.PowerSpectrum(big, 129), EFFTError);  // more than the storage's 2C floats
    EXPECT_THROW(fft.AutoCorrelation(none, 1), EFFTError);
    EXPECT_THROW(fft.AutoCorrelation(big, 0), EFFTError);
    EXPECT_THROW(CreateKissRealFFTPlan(9), EFFTError);
    EXPECT_THROW(fft.SetBits(28), ERangeError);
    EXPECT_THROW(TQXVector(-1), ERangeError);
}

TEST(TQXFFT, MakesOnePlanPerSize)
{
    std::map<std::int32_t, int> made;
    TQXFFT fft([&made](std::int32_t size) {
        ++made[size];
        return CreateKissRealFFTPlan(size);
    });
    TQXComplexVector v(32), w(64);
    fft.RealFFT(TQXVector(64), v, false);
    fft.RealFFT(TQXVector(64), v, true);
    fft.AutoCorrelation(v, 32);  // pads 32 to 64
    fft.PowerSpectrum(w, 128);
    fft.RealFFT(TQXVector(16), v, false);
    EXPECT_EQ(made, (std::map<std::int32_t, int>{{16, 1}, {64, 1}}));
}
