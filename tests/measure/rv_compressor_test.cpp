#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "qxbase/measure/block_buffer.h"
#include "qxbase/measure/rv_compressor.h"

using namespace qx;

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kEmpty = -7.7e77;  // stands for the empty block

using CompressFn = TRVDataDouble (*)(const TRVDataDouble&, double, double);
constexpr CompressFn kNamed[] = {
    &TQXRVCompressorEx::CompressFirst, &TQXRVCompressorEx::CompressLast, &TQXRVCompressorEx::CompressAverage,
    &TQXRVCompressorEx::CompressMin,   &TQXRVCompressorEx::CompressMax,  &TQXRVCompressorEx::CompressRMS,
    &TQXRVCompressorEx::CompressDev,
};

// Reduces a copy of Values in a fresh buffer with the method's operation.
double Reduce(TKSRVLinkSingleCompressionMethod Method, const std::vector<double>& Values, double Factor = 1,
              double Offset = 0)
{
    TRVDataDouble block = NewDataDouble(static_cast<int>(Values.size()));
    std::copy(Values.begin(), Values.end(), block.data);
    TRVDataDouble result = kNamed[Method](block, Factor, Offset);
    FreeDataDouble(block);
    EXPECT_EQ(result.count, result.data ? 1 : 0);
    const double value = result.data ? result.data[0] : kEmpty;
    FreeDataDouble(result);
    return value;
}

}  // namespace

TEST(Compressor, HandComputedValues)
{
    // {1, 2, 3} with factor 2 and offset 1; the deviation ignores both.
    const double expected[] = {3, 7, 5, 3, 7, 2 * std::sqrt(14.0 / 3.0) + 1, 1};
    for (int m = 0; m < TKSRVLinkSingleCompressionMethodCount; ++m)
        EXPECT_DOUBLE_EQ(Reduce(static_cast<TKSRVLinkSingleCompressionMethod>(m), {1, 2, 3}, 2, 1), expected[m]) << m;
    EXPECT_EQ(TQXRVCompressorEx::CompressMin(TRVDataDouble{nullptr, 3}, 1, 0).count, 0);
    EXPECT_EQ(Reduce(rvcompSDev, {4}, 2, 1), NoValueMarker);
    EXPECT_EQ(Reduce(rvcompAverage, {}), kEmpty);
    double one = 1;
    EXPECT_EQ(TQXRVCompressorEx::Compress(static_cast<TKSRVLinkSingleCompressionMethod>(7), {&one, 1}, 1, 0).count, 0);
}

// Every length up to 40 with the extreme at every position, so each unrolled lane and each
// loop tail is checked against a one-by-one walk.
TEST(Compressor, UnrolledLoopsAgreeWithAPlainWalkAtEveryLength)
{
    std::mt19937 rng(7);
    std::uniform_real_distribution<double> dist(-100, 100);
    for (int n = 1; n <= 40; ++n) {
        std::vector<double> v(static_cast<std::size_t>(n));
        long double sum = 0, squares = 0;
        for (double& x : v) {
            x = dist(rng);
            sum += x;
            squares += static_cast<long double>(x) * x;
        }
        EXPECT_NEAR(Reduce(rvcompAverage, v), static_cast<double>(sum / n), 1e-12) << n;
        EXPECT_NEAR(Reduce(rvcompRMS, v), static_cast<double>(std::sqrt(squares / n)), 1e-12) << n;
        if (n > 1) {
            const long double variance = (squares - sum * sum / n) / (n - 1);
            EXPECT_NEAR(Reduce(rvcompSDev, v), static_cast<double>(std::sqrt(variance)), 1e-12) << n;
        }
        for (std::size_t pos = 0; pos < v.size(); ++pos) {
            std::vector<double> w = v;
            w[pos] = 1000;
            EXPECT_EQ(Reduce(rvcompMax, w), 1000) << n << " " << pos;
            w[pos] = -1000;
            EXPECT_EQ(Reduce(rvcompMin, w), -1000) << n << " " << pos;
        }
    }
}

TEST(Compressor, ExtendedPrecisionAndRounding)
{
    // In doubles 1e16 + 1 is 1e16 again; the long double sum keeps the 1.
    EXPECT_DOUBLE_EQ(Reduce(rvcompAverage, {1e16, 1, -1e16}, 3), 1);
    const double big = std::numeric_limits<double>::max();
    EXPECT_EQ(Reduce(rvcompRMS, {big, big, big}), big);
    // A constant block on which the one-pass formula rounds below zero: 0, not a failure.
    EXPECT_EQ(Reduce(rvcompSDev, std::vector<double>(11, 0.1)), 0);
}

// Overflow from finite numbers gives the empty block; non-finite samples, factors and offsets
// are data and reach the result.
TEST(Compressor, OverflowAndNonFiniteValues)
{
    for (int m = 0; m < rvcompSDev; ++m) {
        const auto method = static_cast<TKSRVLinkSingleCompressionMethod>(m);
        EXPECT_EQ(Reduce(method, {1e300, 2e300, 3e300}, 1e10), kEmpty) << m;
        EXPECT_EQ(Reduce(method, {1e308, 1.5e308, 1.7e308}, 1, 1e308), kEmpty) << m;
    }
    EXPECT_EQ(Reduce(rvcompFirst, {1e300}, 1, -kInf), -kInf);
    EXPECT_EQ(Reduce(rvcompAverage, {1, kInf, 3}), kInf);
    // First reads only the first sample, so a later infinity does not excuse its overflow.
    EXPECT_EQ(Reduce(rvcompFirst, {1, kInf}, 1e308, 1e308), kEmpty);

    // Min and Max move only on strictly smaller or larger samples: a NaN at the start stays,
    // later NaNs are passed over.
    const double nan = std::nan("");
    EXPECT_TRUE(std::isnan(Reduce(rvcompMin, {nan, 1, -5, 7, 2, 3})));
    EXPECT_EQ(Reduce(rvcompMin, {1, nan, -5, nan, 7, nan, nan, 2}), -5);
    EXPECT_EQ(Reduce(rvcompMax, {1, nan, -5, nan, 7, nan, nan, 2}), 7);
}
