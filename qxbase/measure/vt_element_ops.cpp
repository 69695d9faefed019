#include "qxbase/measure/vt_element_ops.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "qxbase/measure/block_buffer.h"

// The finite-result select costs several SSE2 instructions per pair of samples but one blend with
// AVX2, so the loops are also built for AVX2 and the loader picks the build the processor runs.
// Without FMA in the clone, both builds give the same bits.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__SANITIZE_THREAD__)
#define QX_VECTOR_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define QX_VECTOR_CLONES
#endif
// What the clones call is inlined into each of them, so that it is built for their target too.
#define QX_INLINE [[gnu::always_inline]] inline

namespace qx {

namespace {

QX_INLINE bool SameNonEmpty(const TRVDataDouble& A, const TRVDataDouble& B)
{
    return HasSamples(A) && HasSamples(B) && A.count == B.count;
}

// Written as a compare on the magnitude (NaN fails it) so that the loops vectorise it.
QX_INLINE bool IsFinite(double x)
{
    return std::abs(x) <= std::numeric_limits<double>::max();
}

QX_INLINE bool NoMarker(double x)
{
    return x != NoValueMarker;
}

// R where the operands passed their test (Ok) and R is finite, else the marker: an overflow or
// an undefined result of finite operands gives the marker. Operands are tested only for the
// marker, since sums, products and polynomials of an infinity or a NaN are not finite either
// (x / inf = 0 is the exception; the division tests its divisor). The select is a blend, not a
// branch: the bool & keeps the compiler from splitting it.
QX_INLINE double Keep(bool Ok, double R)
{
    return (Ok & IsFinite(R)) ? R : NoValueMarker;
}

// One pass over A writing Op(a) into a fresh block; the empty block for an empty A.
template <class F>
QX_INLINE TRVDataDouble MapUnary(const TRVDataDouble& A, F Op)
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
QX_INLINE TRVDataDouble MapBinary(const TRVDataDouble& A, const TRVDataDouble& B, F Op)
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
    // A copy, not a computation: every sample passes unchanged.
    if (!HasSamples(A)) return {};
    TRVDataDouble result = NewDataDouble(A.count);
    std::copy(A.data, A.data + A.count, result.data);
    return result;
}

QX_VECTOR_CLONES TRVDataDouble DoSum(const TRVDataDouble& A, const TRVDataDouble& B)
{
    return MapBinary(A, B, [](double x, double y) { return Keep(NoMarker(x) & NoMarker(y), x + y); });
}

QX_VECTOR_CLONES TRVDataDouble DoSubtract(const TRVDataDouble& A, const TRVDataDouble& B)
{
    return MapBinary(A, B, [](double x, double y) { return Keep(NoMarker(x) & NoMarker(y), x - y); });
}

QX_VECTOR_CLONES TRVDataDouble DoProduct(const TRVDataDouble& A, const TRVDataDouble& B)
{
    return MapBinary(A, B, [](double x, double y) { return Keep(NoMarker(x) & NoMarker(y), x * y); });
}

QX_VECTOR_CLONES TRVDataDouble DoDivision(const TRVDataDouble& A, const TRVDataDouble& B)
{
    // x / 0 is an infinity and 0 / 0 a NaN, so a zero divisor needs no test of its own; an
    // infinite one does, or x / inf would become 0.
    return MapBinary(A, B, [](double x, double y) {
        return Keep(NoMarker(x) & NoMarker(y) & IsFinite(y), x / y);
    });
}

QX_VECTOR_CLONES TRVDataDouble DoInverse(const TRVDataDouble& A)
{
    return MapUnary(A, [](double x) { return Keep(NoMarker(x), -1.0 * x); });
}

QX_VECTOR_CLONES TRVDataDouble DoTwoPoint(const TRVDataDouble& A, const TQXScalingValues& Scaling)
{
    const double x1 = Scaling[0], x2 = Scaling[1], y1 = Scaling[2], y2 = Scaling[3];
    const double dx = x2 - x1;
    const double factor = dx == 0.0 ? 1.0 : (y2 - y1) / dx;
    const double offset = y1 - x1 * factor;
    return MapUnary(A, [factor, offset](double x) { return Keep(NoMarker(x), x * factor + offset); });
}

QX_VECTOR_CLONES TRVDataDouble DoPolyLin(const TRVDataDouble& A, const TQXCoefficients& Coefficients)
{
    const TQXCoefficients c = Coefficients;  // a local copy the loop can keep in registers
    return MapUnary(A, [c](double x) {
        const double y = (((((c[6] * x + c[5]) * x + c[4]) * x + c[3]) * x + c[2]) * x + c[1]) * x + c[0];
        return Keep(NoMarker(x), y);
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
