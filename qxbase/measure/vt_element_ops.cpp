#include "qxbase/measure/vt_element_ops.h"

#include <cmath>

#include "qxbase/measure/block_buffer.h"

namespace qx {

namespace {

bool SameNonEmpty(const TRVDataDouble& A, const TRVDataDouble& B)
{
    return HasSamples(A) && HasSamples(B) && A.count == B.count;
}

// One pass over A writing Op(a) into a fresh block; the empty block for an empty A.
template <class F>
TRVDataDouble MapUnary(const TRVDataDouble& A, F Op)
{
    if (!HasSamples(A)) return {};
    TRVDataDouble result = NewDataDouble(A.count);
    const double* __restrict a = A.data;
    double* __restrict out = result.data;
    const std::int32_t n = A.count;
    for (std::int32_t i = 0; i < n; ++i) out[i] = Op(a[i]);
    return result;
}

template <class F>
TRVDataDouble MapBinary(const TRVDataDouble& A, const TRVDataDouble& B, F Op)
{
    if (!SameNonEmpty(A, B)) return {};
    TRVDataDouble result = NewDataDouble(A.count);
    const double* __restrict a = A.data;
    const double* __restrict b = B.data;
    double* __restrict out = result.data;
    const std::int32_t n = A.count;
    for (std::int32_t i = 0; i < n; ++i) out[i] = Op(a[i], b[i]);
    return result;
}

}  // namespace

TRVDataDouble DoDuplicate(const TRVDataDouble& A)
{
    return MapUnary(A, [](double x) { return x; });
}

TRVDataDouble DoSum(const TRVDataDouble& A, const TRVDataDouble& B)
{
    return MapBinary(A, B, [](double x, double y) { return x + y; });
}

TRVDataDouble DoSubtract(const TRVDataDouble& A, const TRVDataDouble& B)
{
    return MapBinary(A, B, [](double x, double y) { return x - y; });
}

TRVDataDouble DoProduct(const TRVDataDouble& A, const TRVDataDouble& B)
{
    return MapBinary(A, B, [](double x, double y) { return x * y; });
}

TRVDataDouble DoDivision(const TRVDataDouble& A, const TRVDataDouble& B)
{
    // The divisor is swapped for 1 where it is 0, so no lane divides by zero and both selects
    // stay branch-free.
    return MapBinary(A, B, [](double x, double y) {
        const bool zero = y == 0.0;
        const double q = x / (zero ? 1.0 : y);
        return zero ? NoValueMarker : q;
    });
}

TRVDataDouble DoInverse(const TRVDataDouble& A)
{
    return MapUnary(A, [](double x) { return -1.0 * x; });
}

TRVDataDouble DoTwoPoint(const TRVDataDouble& A, const TQXScalingValues& Scaling)
{
    const double x1 = Scaling[0], x2 = Scaling[1], y1 = Scaling[2], y2 = Scaling[3];
    const double dx = x2 - x1;
    const double factor = dx == 0.0 ? 1.0 : (y2 - y1) / dx;
    const double offset = y1 - x1 * factor;
    return MapUnary(A, [factor, offset](double x) { return x * factor + offset; });
}

TRVDataDouble DoPolyLin(const TRVDataDouble& A, const TQXCoefficients& Coefficients)
{
    const TQXCoefficients c = Coefficients;  // a local copy the loop can keep in registers
    return MapUnary(A, [c](double x) {
        return (((((c[6] * x + c[5]) * x + c[4]) * x + c[3]) * x + c[2]) * x + c[1]) * x + c[0];
    });
}

TRVDataDouble DoSplitChannels(const TRVDataDouble& A, std::int32_t Bit)
{
    if (Bit < 0 || Bit > 63) return {};
    const unsigned shift = static_cast<unsigned>(Bit);
    // Doubles below 2^63 are at most 2^63 - 1024 and those from -2^63 up round inside the range,
    // so the bounds test the sample itself; NaN fails both comparisons.
    constexpr double low = -9223372036854775808.0;
    constexpr double high = 9223372036854775808.0;
    return MapUnary(A, [shift](double x) {
        const bool inRange = x >= low && x < high;
        const double rounded = std::round(inRange ? x : 0.0);
        const auto word = static_cast<std::uint64_t>(static_cast<std::int64_t>(rounded));
        return inRange ? static_cast<double>((word >> shift) & 1u) : NoValueMarker;
    });
}

}  // namespace qx
