#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "qxbase/measure/block_buffer.h"
#include "qxbase/measure/rv_compressor.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// A block over a fresh buffer, freed at the end of the test.
struct OwnedBlock {
    explicit OwnedBlock(const std::vector<double>& values) : Block(NewDataDouble(static_cast<int>(values.size())))
    {
        for (std::size_t i = 0; i < values.size(); ++i) Block.data[i] = values[i];
    }
    ~OwnedBlock() { FreeDataDouble(Block); }
    OwnedBlock(const OwnedBlock&) = delete;
    OwnedBlock& operator=(const OwnedBlock&) = delete;
    TRVDataDouble Block;
};

using CompressFn = TRVDataDouble (*)(const TRVDataDouble&, double, double);
constexpr CompressFn kAll[] = {
    &TQXRVCompressorEx::CompressFirst, &TQXRVCompressorEx::CompressLast, &TQXRVCompressorEx::CompressAverage,
    &TQXRVCompressorEx::CompressMin,   &TQXRVCompressorEx::CompressMax,  &TQXRVCompressorEx::CompressRMS,
    &TQXRVCompressorEx::CompressDev,
};

// The result's single value; fails the test on an empty block or a count other than 1.
double ValueOf(TRVDataDouble result)
{
    EXPECT_EQ(result.count, 1);
    const double value = result.data ? result.data[0] : kNaN;
    FreeDataDouble(result);
    return value;
}

bool IsEmpty(TRVDataDouble result)
{
    const bool empty = result.data == nullptr && result.count == 0;
    FreeDataDouble(result);
    return empty;
}

}  // namespace

TEST(Compressor, HandComputedValues)
{
    const OwnedBlock dev({2, 4, 4, 4, 5, 5, 7, 9});
    EXPECT_NEAR(ValueOf(TQXRVCompressorEx::CompressDev(dev.Block, 1, 0)), std::sqrt(32.0 / 7.0), 1e-15);
    EXPECT_DOUBLE_EQ(ValueOf(TQXRVCompressorEx::CompressAverage(dev.Block, 1, 0)), 5);
    EXPECT_DOUBLE_EQ(ValueOf(TQXRVCompressorEx::CompressRMS(dev.Block, 1, 0)), std::sqrt(232.0 / 8.0));

    // Factor and offset scale every method but the deviation.
    const OwnedBlock small({1, 2, 3});
    EXPECT_DOUBLE_EQ(ValueOf(TQXRVCompressorEx::CompressAverage(small.Block, 2, 1)), 5);
    EXPECT_DOUBLE_EQ(ValueOf(TQXRVCompressorEx::CompressDev(small.Block, 2, 1)), 1);
    EXPECT_DOUBLE_EQ(ValueOf(TQXRVCompressorEx::CompressDev(small.Block, -7, 100)), 1);
    EXPECT_DOUBLE_EQ(ValueOf(TQXRVCompressorEx::CompressFirst(small.Block, 2, 1)), 3);
    EXPECT_DOUBLE_EQ(ValueOf(TQXRVCompressorEx::CompressLast(small.Block, 2, 1)), 7);
    EXPECT_DOUBLE_EQ(ValueOf(TQXRVCompressorEx::CompressMin(small.Block, -1, 0)), -1);
    EXPECT_DOUBLE_EQ(ValueOf(TQXRVCompressorEx::CompressMax(small.Block, 10, 0.5)), 30.5);
    EXPECT_DOUBLE_EQ(ValueOf(TQXRVCompressorEx::CompressRMS(small.Block, 3, 0)), 3 * std::sqrt(14.0 / 3.0));
}

// Every length from 1 to 40 with the minimum and maximum at every position, so each unrolled
// lane and each loop tail is exercised against a plain one-by-one walk.
TEST(Compressor, UnrolledLoopsAgreeWithAPlainWalkAtEveryLength)
{
    std::mt19937 rng(7);
    std::uniform_real_distribution<double> dist(-100, 100);
    for (int n = 1; n <= 40; ++n) {
        std::vector<double> v(static_cast<std::size_t>(n));
        for (double& x : v) x = dist(rng);
        for (int pos = 0; pos < n; ++pos) {
            std::vector<double> w = v;
            w[static_cast<std::size_t>(pos)] = 1000;
            const OwnedBlock hi(w);
            EXPECT_EQ(ValueOf(TQXRVCompressorEx::CompressMax(hi.Block, 1, 0)), 1000) << n << " " << pos;
            w[static_cast<std::size_t>(pos)] = -1000;
            const OwnedBlock lo(w);
            EXPECT_EQ(ValueOf(TQXRVCompressorEx::CompressMin(lo.Block, 1, 0)), -1000) << n << " " << pos;
        }
        long double sum = 0, squares = 0;
        for (double x : v) {
            sum += x;
            squares += static_cast<long double>(x) * x;
        }
        const OwnedBlock b(v);
        EXPECT_NEAR(ValueOf(TQXRVCompressorEx::CompressAverage(b.Block, 1, 0)), static_cast<double>(sum / n), 1e-12);
        EXPECT_NEAR(ValueOf(TQXRVCompressorEx::CompressRMS(b.Block, 1, 0)),
                    static_cast<double>(std::sqrt(squares / n)), 1e-12);
        if (n > 1) {
            const long double var = (squares - sum * sum / n) / (n - 1);
            EXPECT_NEAR(ValueOf(TQXRVCompressorEx::CompressDev(b.Block, 1, 0)), static_cast<double>(std::sqrt(var)),
                        1e-12);
        }
        EXPECT_EQ(ValueOf(TQXRVCompressorEx::CompressFirst(b.Block, 1, 0)), v.front());
        EXPECT_EQ(ValueOf(TQXRVCompressorEx::CompressLast(b.Block, 1, 0)), v.back());
    }
}

TEST(Compressor, BlocksWithoutSamplesAndSingleSamples)
{
    const TRVDataDouble none{};
    double sample = 4;
    const TRVDataDouble negative{&sample, -3};
    const TRVDataDouble noBuffer{nullptr, 5};
    for (CompressFn fn : kAll) {
        EXPECT_TRUE(IsEmpty(fn(none, 1, 0)));
        EXPECT_TRUE(IsEmpty(fn(negative, 1, 0)));
        EXPECT_TRUE(IsEmpty(fn(noBuffer, 1, 0)));
    }
    const OwnedBlock one({4});
    EXPECT_EQ(ValueOf(TQXRVCompressorEx::CompressDev(one.Block, 2, 1)), NoValueMarker);
    EXPECT_EQ(ValueOf(TQXRVCompressorEx::CompressRMS(one.Block, 2, 1)), 9);
    EXPECT_EQ(ValueOf(TQXRVCompressorEx::CompressMin(one.Block, 2, 1)), 9);

    // A constant block has deviation 0 even where the one-pass formula rounds below zero.
    const OwnedBlock constant(std::vector<double>(37, 0.1));
    EXPECT_EQ(ValueOf(TQXRVCompressorEx::CompressDev(constant.Block, 1, 0)), 0);
}

TEST(Compressor, ExtendedPrecisionSums)
{
    // In doubles 1e16 + 1 is 1e16 again; the long double sum keeps the 1.
    const OwnedBlock cancel({1e16, 1, -1e16});
    EXPECT_DOUBLE_EQ(ValueOf(TQXRVCompressorEx::CompressAverage(cancel.Block, 3, 0)), 1);

    // Sums and squares beyond the double range come back into it after the division.
    const double big = std::numeric_limits<double>::max();
    const OwnedBlock huge({big, big, big});
    EXPECT_EQ(ValueOf(TQXRVCompressorEx::CompressAverage(huge.Block, 1, 0)), big);
    EXPECT_EQ(ValueOf(TQXRVCompressorEx::CompressRMS(huge.Block, 1, 0)), big);
    const OwnedBlock wide({1e300, -1e300});
    EXPECT_DOUBLE_EQ(ValueOf(TQXRVCompressorEx::CompressDev(wide.Block, 1, 0)), std::sqrt(2.0) * 1e300);
}

// A non-finite result from finite numbers is an arithmetic failure: the empty block. Non-finite
// samples, factors and offsets are data, not a failure, and reach the result.
TEST(Compressor, OverflowGivesTheEmptyBlock)
{
    const OwnedBlock b({1e300, 2e300, 3e300});
    const OwnedBlock near({1e308, 1.5e308, 1.7e308});
    for (CompressFn fn : kAll) {
        if (fn == &TQXRVCompressorEx::CompressDev) continue;
        EXPECT_TRUE(IsEmpty(fn(b.Block, 1e10, 0)));
        EXPECT_TRUE(IsEmpty(fn(near.Block, 1, 1e308)));
    }
}

TEST(Compressor, NonFiniteInputsPassThrough)
{
    const OwnedBlock b({1e300, 2e300, 3e300});
    EXPECT_EQ(ValueOf(TQXRVCompressorEx::CompressFirst(b.Block, 1, -kInf)), -kInf);
    EXPECT_EQ(ValueOf(TQXRVCompressorEx::CompressAverage(b.Block, kInf, 0)), kInf);

    const OwnedBlock withInf({1, kInf, 3});
    EXPECT_EQ(ValueOf(TQXRVCompressorEx::CompressAverage(withInf.Block, 1, 0)), kInf);
    EXPECT_EQ(ValueOf(TQXRVCompressorEx::CompressMax(withInf.Block, 1, 0)), kInf);
    EXPECT_TRUE(std::isnan(ValueOf(TQXRVCompressorEx::CompressDev(withInf.Block, 1, 0))));
    // First reads only the first sample, so a later infinity does not excuse its overflow.
    EXPECT_TRUE(IsEmpty(TQXRVCompressorEx::CompressFirst(withInf.Block, 1e308, 1e308)));

    // Min and Max move only on strictly smaller or larger samples: a NaN at the start stays,
    // later NaNs are passed over.
    const OwnedBlock nanFirst({kNaN, 1, -5, 7, 2, 3});
    EXPECT_TRUE(std::isnan(ValueOf(TQXRVCompressorEx::CompressMin(nanFirst.Block, 1, 0))));
    EXPECT_TRUE(std::isnan(ValueOf(TQXRVCompressorEx::CompressMax(nanFirst.Block, 1, 0))));
    const OwnedBlock nanLater({1, kNaN, -5, kNaN, 7, kNaN, kNaN, 2});
    EXPECT_EQ(ValueOf(TQXRVCompressorEx::CompressMin(nanLater.Block, 1, 0)), -5);
    EXPECT_EQ(ValueOf(TQXRVCompressorEx::CompressMax(nanLater.Block, 1, 0)), 7);
}

TEST(Compressor, DispatchByMethodAndMethodTexts)
{
    const OwnedBlock b({3, 1, 2});
    const double expected[] = {3, 2, 2, 1, 3, std::sqrt(14.0 / 3.0), 1};
    for (int m = 0; m < TKSRVLinkSingleCompressionMethodCount; ++m) {
        const auto method = static_cast<TKSRVLinkSingleCompressionMethod>(m);
        EXPECT_DOUBLE_EQ(ValueOf(TQXRVCompressorEx::Compress(method, b.Block, 1, 0)), expected[m]) << m;
        EXPECT_DOUBLE_EQ(ValueOf(kAll[m](b.Block, 1, 0)), expected[m]) << m;
    }
    EXPECT_TRUE(IsEmpty(TQXRVCompressorEx::Compress(static_cast<TKSRVLinkSingleCompressionMethod>(7), b.Block, 1, 0)));
    double value = -1;
    EXPECT_FALSE(TQXRVCompressorEx::CompressValue(static_cast<TKSRVLinkSingleCompressionMethod>(9), b.Block, 1, 0, value));

    EXPECT_EQ(GetCompressionMethodText(rvcompFirst), "First value");
    EXPECT_EQ(GetCompressionMethodText(rvcompSDev), "Standard deviation");
    EXPECT_EQ(GetCompressionMethodText(static_cast<TKSRVLinkSingleCompressionMethod>(7)), QString());
}
