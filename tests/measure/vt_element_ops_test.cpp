#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "qxbase/measure/block_buffer.h"
#include "qxbase/measure/vt_element_ops.h"

using namespace qx;

namespace {

constexpr double kNone = NoValueMarker;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// A block holding a copy of Values, freed with the guard.
struct TBlock {
    explicit TBlock(const std::vector<double>& Values) : Block(NewDataDouble(static_cast<int>(Values.size())))
    {
        std::copy(Values.begin(), Values.end(), Block.data);
    }
    ~TBlock() { FreeDataDouble(Block); }
    TBlock(const TBlock&) = delete;
    TBlock& operator=(const TBlock&) = delete;
    TRVDataDouble Block;
};

// Takes the result: its samples, and frees it. An empty block gives an empty vector.
std::vector<double> Take(TRVDataDouble Result)
{
    std::vector<double> values(Result.data, Result.data + Result.count);
    EXPECT_EQ(Result.data == nullptr, Result.count == 0);
    FreeDataDouble(Result);
    return values;
}

}  // namespace

TEST(VTElementOps, TwoOperandOperationsNeedTwoBlocksOfOneNonZeroCount)
{
    TBlock a({6, -3, 1.5}), b({2, 0, -0.5}), short50(std::vector<double>(50, 1)), long100(std::vector<double>(100, 1));
    EXPECT_EQ(Take(DoSum(a.Block, b.Block)), (std::vector<double>{8, -3, 1}));
    EXPECT_EQ(Take(DoSubtract(a.Block, b.Block)), (std::vector<double>{4, -3, 2}));
    EXPECT_EQ(Take(DoProduct(a.Block, b.Block)), (std::vector<double>{12, -0.0, -0.75}));
    EXPECT_EQ(Take(DoDivision(a.Block, b.Block)), (std::vector<double>{3, kNone, -3}));  // 0 only at one sample

    const TRVDataDouble empty;
    using Binary = TRVDataDouble (*)(const TRVDataDouble&, const TRVDataDouble&);
    for (Binary op : {&DoSum, &DoSubtract, &DoProduct, &DoDivision}) {
        EXPECT_TRUE(Take(op(long100.Block, short50.Block)).empty());
        EXPECT_TRUE(Take(op(empty, empty)).empty());
        EXPECT_TRUE(Take(op(a.Block, empty)).empty());
    }
    // Every lane of a vectorised loop, including the tail after the last full vector.
    std::vector<double> x(37), y(37);
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = static_cast<double>(i) + 1;
        y[i] = i % 5 == 0 ? 0.0 : 2.0;
    }
    TBlock bx(x), by(y);
    const std::vector<double> q = Take(DoDivision(bx.Block, by.Block));
    ASSERT_EQ(q.size(), 37u);
    for (std::size_t i = 0; i < q.size(); ++i) EXPECT_EQ(q[i], i % 5 == 0 ? kNone : x[i] / 2) << i;
}

TEST(VTElementOps, OneOperandOperations)
{
    TBlock a({2, -4, 0});
    const TRVDataDouble empty;
    EXPECT_EQ(Take(DoDuplicate(a.Block)), (std::vector<double>{2, -4, 0}));
    EXPECT_EQ(Take(DoInverse(a.Block)), (std::vector<double>{-2, 4, -0.0}));
    EXPECT_TRUE(Take(DoInverse(empty)).empty());
    EXPECT_TRUE(Take(DoDuplicate(empty)).empty());

    // Through (1, 10) and (3, 20): factor 5, offset 5.
    EXPECT_EQ(Take(DoTwoPoint(a.Block, {1, 3, 10, 20, 0, 0})), (std::vector<double>{15, -15, 5}));
    // x1 = x2: factor 1, and the offset y1 - x1 remains.
    EXPECT_EQ(Take(DoTwoPoint(a.Block, {4, 4, 1, 99, 0, 0})), (std::vector<double>{-1, -7, -3}));
    EXPECT_TRUE(Take(DoTwoPoint(empty, {0, 1, 0, 1, 0, 0})).empty());
}

TEST(VTElementOps, PolynomialCoefficientsMultiplyAscendingPowers)
{
    TBlock x({0, 1, 2, -1});
    // 1 + 2x + 3x^2 + 4x^6
    EXPECT_EQ(Take(DoPolyLin(x.Block, {1, 2, 3, 0, 0, 0, 4})), (std::vector<double>{1, 10, 273, 6}));
    // x^5 alone tells the fifth coefficient from the others.
    EXPECT_EQ(Take(DoPolyLin(x.Block, {0, 0, 0, 0, 0, 1, 0})), (std::vector<double>{0, 1, 32, -1}));
    EXPECT_TRUE(Take(DoPolyLin(TRVDataDouble{}, {1, 1, 1, 1, 1, 1, 1})).empty());
}

TEST(VTElementOps, SplitTakesOneBitOfTheRoundedTwosComplementWord)
{
    const double big = 9223372036854774784.0;  // the largest double below 2^63
    TBlock x({5, 4.5, -4.5, 2.4999, -1, kNaN, 9.3e18, -9.3e18, -9223372036854775808.0, big});
    struct Row {
        int Bit;
        std::vector<double> Expected;
    };
    const Row rows[] = {
        // 5 -> 101, 4.5 -> 5 (ties away from zero), -4.5 -> -5 = ...1011, 2.4999 -> 2, -1 -> all ones
        {0, {1, 1, 1, 0, 1, kNone, kNone, kNone, 0, 0}},
        {1, {0, 0, 1, 1, 1, kNone, kNone, kNone, 0, 0}},
        {2, {1, 1, 0, 0, 1, kNone, kNone, kNone, 0, 0}},
        {63, {0, 0, 1, 0, 1, kNone, kNone, kNone, 1, 0}},
        {10, {0, 0, 1, 0, 1, kNone, kNone, kNone, 0, 1}},
    };
    for (const Row& row : rows) {
        const std::vector<double> bits = Take(DoSplitChannels(x.Block, row.Bit));
        ASSERT_EQ(bits.size(), row.Expected.size()) << row.Bit;
        for (std::size_t i = 0; i < bits.size(); ++i) EXPECT_EQ(bits[i], row.Expected[i]) << row.Bit << " @" << i;
    }
    for (int bit : {-1, 64}) EXPECT_TRUE(Take(DoSplitChannels(x.Block, bit)).empty()) << bit;

    TBlock inf({std::numeric_limits<double>::infinity()});
    EXPECT_EQ(Take(DoSplitChannels(inf.Block, 0)), std::vector<double>{kNone});
}
