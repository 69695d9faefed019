#include <gtest/gtest.h>

#include <limits>
#include <type_traits>
#include <vector>

#include "qxbase/measure/block_buffer.h"
#include "qxbase/measure/vt_element_ops.h"

using namespace qx;

namespace {

using V = std::vector<double>;
constexpr double kNone = NoValueMarker;

// Op (of one block, or of two) on fresh blocks holding A and B; the result's samples, none for
// the empty block.
template <class F>
V Apply(F Op, const V& A, const V& B = {})
{
    TRVDataDouble a = NewDataDouble(static_cast<int>(A.size())), b = NewDataDouble(static_cast<int>(B.size()));
    std::copy(A.begin(), A.end(), a.data);
    std::copy(B.begin(), B.end(), b.data);
    TRVDataDouble r;
    if constexpr (std::is_invocable_v<F, const TRVDataDouble&>) r = Op(a);
    else r = Op(a, b);
    V out(r.data, r.data + r.count);
    EXPECT_EQ(r.data == nullptr, r.count == 0);
    for (TRVDataDouble* block : {&a, &b, &r}) FreeDataDouble(*block);
    return out;
}

}  // namespace

TEST(VTElementOps, TwoOperandsNeedTheSameNonZeroCount)
{
    EXPECT_EQ(Apply(DoDivision, {6, -3, 1.5}, {2, 0, -0.5}), (V{3, kNone, -3}));
    for (auto* op : {&DoSum, &DoSubtract, &DoProduct, &DoDivision})
        for (const auto& [a, b] : {std::pair{V(100, 1), V(50, 1)}, std::pair{V{}, V{}}, std::pair{V{1}, V{}}})
            EXPECT_TRUE(Apply(op, a, b).empty()) << a.size() << " " << b.size();
}

TEST(VTElementOps, OneOperandScalings)
{
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(Apply(DoDuplicate, {2, -4, kNone, -inf}), (V{2, -4, kNone, -inf}));  // a copy, not a computation
    EXPECT_TRUE(Apply(DoInverse, {}).empty());
    // x1 = x2: the offset y1 - x1 alone (the ordinary scaling is a row of the test below).
    EXPECT_EQ(Apply([](const TRVDataDouble& a) { return DoTwoPoint(a, {4, 4, 1, 99, 0, 0}); }, {2, -4, 0}),
              (V{-1, -7, -3}));
    // 1 + 2x + 3x^2 + 4x^6: the coefficients multiply ascending powers.
    EXPECT_EQ(Apply([](const TRVDataDouble& a) { return DoPolyLin(a, {1, 2, 3, 0, 0, 0, 4}); }, {0, 1, 2, -1}),
              (V{1, 10, 273, 6}));
}

// 1e200 x 1e200 once gave infinity, and operands without a value gave numbers (marker x 2, 1 / inf).
TEST(VTElementOps, NoValueInOrNoFiniteResultGivesTheMarker)
{
    const double inf = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN();
    // Each row repeated, so that every case also meets the lanes of a vector loop and its tail.
    const auto rep = [](const V& v) {
        V out;
        for (int i = 0; i < 7; ++i) out.insert(out.end(), v.begin(), v.end());
        return out;
    };
    const auto row = [&](auto op, const V& a, const V& b, const V& expected) {
        EXPECT_EQ(Apply(op, rep(a), rep(b)), rep(expected));
    };
    row(DoSum, {1e308, 1, kNone, inf, nan}, {1e308, -2.5, 1, 1, 1}, {kNone, -1.5, kNone, kNone, kNone});
    row(DoSubtract, {-1e308, 5, inf, 1}, {1e308, 7, inf, kNone}, {kNone, -2, kNone, kNone});
    row(DoProduct, {1e200, 3, inf, kNone, nan}, {1e200, -2, 0, 2, 0}, {kNone, -6, kNone, kNone, kNone});
    row(DoDivision, {1e200, 6, 1, inf, kNone}, {1e-320, -4, inf, 1, 2}, {kNone, -1.5, kNone, kNone, kNone});
    row([](const TRVDataDouble& a) { return DoTwoPoint(a, {1, 3, 10, 20, 0, 0}); }, {1e308, 2, kNone, -inf, -4}, {},
        {kNone, 15, kNone, kNone, -15});  // factor 5, offset 5
    row([](const TRVDataDouble& a) { return DoPolyLin(a, {0, 0, 0, 0, 0, 1, 0}); }, {1e100, 2, kNone, nan, -1}, {},
        {kNone, 32, kNone, kNone, -1});  // x^5
    row(DoInverse, {kNone, 2, nan, -4, 1.5}, {}, {kNone, -2, kNone, 4, -1.5});
}

TEST(VTElementOps, SplitTakesABitOfTheRoundedTwosComplementWord)
{
    const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
    // 5 = 101; 4.5 -> 5 and -4.5 -> -5 = ...1011 (ties away from zero); 2.4999 -> 10; -1: all ones;
    // then NaN, infinity and two samples beyond int64; -2^63; 2^63 - 1024 = 0x7FFF...FC00.
    const V x = {5, 4.5, -4.5, 2.4999, -1, nan, inf, 9.3e18, -9.3e18, -9223372036854775808.0, 9223372036854774784.0};
    const V off(4, kNone);
    const std::pair<int, V> rows[] = {
        {0, {1, 1, 1, 0, 1}}, {1, {0, 0, 1, 1, 1}}, {2, {1, 1, 0, 0, 1}}, {10, {0, 0, 1, 0, 1}}, {63, {0, 0, 1, 0, 1}},
    };
    for (const auto& [bit, head] : rows) {
        V expected = head;
        expected.insert(expected.end(), off.begin(), off.end());
        expected.push_back(bit == 63 ? 1 : 0);
        expected.push_back(bit == 10 ? 1 : 0);
        EXPECT_EQ(Apply([bit](const TRVDataDouble& a) { return DoSplitChannels(a, bit); }, x), expected) << bit;
    }
    for (int bit : {-1, 64})
        EXPECT_TRUE(Apply([bit](const TRVDataDouble& a) { return DoSplitChannels(a, bit); }, x).empty()) << bit;
}
