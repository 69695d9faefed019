#include "qxbase/measure/rv_compressor.h"

#include <array>
#include <cmath>

#include "qxbase/measure/block_buffer.h"
#include "qxbase/resources/measure_texts.h"

namespace qx {
namespace {

constexpr std::array<ResourceText, TKSRVLinkSingleCompressionMethodCount> kMethodTexts = {
    res::_rsCOMP_METHOD1, res::_rsCOMP_METHOD2, res::_rsCOMP_METHOD3, res::_rsCOMP_METHOD4,
    res::_rsCOMP_METHOD5, res::_rsCOMP_METHOD6, res::_rsCOMP_METHOD7,
};

// The sums run on the x87 unit, where one add takes several cycles before the next add on the
// same register may start. Independent accumulators keep the adder busy; the counts are what
// fits the eight-register stack with room for the loaded sample (measured in
// bench/compression.cpp). Named variables, not arrays: an array of accumulators is kept in
// memory by the compiler.
long double Sum(const double* p, std::int32_t n)
{
    long double s0 = 0, s1 = 0, s2 = 0, s3 = 0, s4 = 0, s5 = 0;
    std::int32_t i = 0;
    for (; i + 6 <= n; i += 6) {
        s0 += p[i];
        s1 += p[i + 1];
        s2 += p[i + 2];
        s3 += p[i + 3];
        s4 += p[i + 4];
        s5 += p[i + 5];
    }
    for (; i < n; ++i) s0 += p[i];
    return ((s0 + s1) + (s2 + s3)) + (s4 + s5);
}

long double SumOfSquares(const double* p, std::int32_t n)
{
    long double s0 = 0, s1 = 0, s2 = 0, s3 = 0;
    std::int32_t i = 0;
    for (; i + 4 <= n; i += 4) {
        const long double a = p[i], b = p[i + 1], c = p[i + 2], d = p[i + 3];
        s0 += a * a;
        s1 += b * b;
        s2 += c * c;
        s3 += d * d;
    }
    for (; i < n; ++i) {
        const long double a = p[i];
        s0 += a * a;
    }
    return (s0 + s1) + (s2 + s3);
}

void SumAndSquares(const double* p, std::int32_t n, long double& Sum, long double& Squares)
{
    long double s0 = 0, s1 = 0, q0 = 0, q1 = 0;
    std::int32_t i = 0;
    for (; i + 2 <= n; i += 2) {
        const long double a = p[i], b = p[i + 1];
        s0 += a;
        q0 += a * a;
        s1 += b;
        q1 += b * b;
    }
    for (; i < n; ++i) {
        const long double a = p[i];
        s0 += a;
        q0 += a * a;
    }
    Sum = s0 + s1;
    Squares = q0 + q1;
}

// Four lanes, each starting from the first sample and moving only on a strictly smaller (larger)
// sample, then merged by the same rule: the result equals the one-lane walk, NaNs included.
double Minimum(const double* p, std::int32_t n)
{
    double m0 = p[0], m1 = p[0], m2 = p[0], m3 = p[0];
    std::int32_t i = 1;
    for (; i + 4 <= n; i += 4) {
        m0 = p[i] < m0 ? p[i] : m0;
        m1 = p[i + 1] < m1 ? p[i + 1] : m1;
        m2 = p[i + 2] < m2 ? p[i + 2] : m2;
        m3 = p[i + 3] < m3 ? p[i + 3] : m3;
    }
    for (; i < n; ++i) m0 = p[i] < m0 ? p[i] : m0;
    if (m1 < m0) m0 = m1;
    if (m2 < m0) m0 = m2;
    if (m3 < m0) m0 = m3;
    return m0;
}

double Maximum(const double* p, std::int32_t n)
{
    double m0 = p[0], m1 = p[0], m2 = p[0], m3 = p[0];
    std::int32_t i = 1;
    for (; i + 4 <= n; i += 4) {
        m0 = p[i] > m0 ? p[i] : m0;
        m1 = p[i + 1] > m1 ? p[i + 1] : m1;
        m2 = p[i + 2] > m2 ? p[i + 2] : m2;
        m3 = p[i + 3] > m3 ? p[i + 3] : m3;
    }
    for (; i < n; ++i) m0 = p[i] > m0 ? p[i] : m0;
    if (m1 > m0) m0 = m1;
    if (m2 > m0) m0 = m2;
    if (m3 > m0) m0 = m3;
    return m0;
}

bool AllFinite(const double* p, std::int32_t n)
{
    for (std::int32_t i = 0; i < n; ++i)
        if (!std::isfinite(p[i])) return false;
    return true;
}

TRVDataDouble ToBlock(bool Ok, double Value)
{
    if (!Ok) return {};
    TRVDataDouble block = NewDataDouble(1);
    block.data[0] = Value;
    return block;
}

}  // namespace

QString GetCompressionMethodText(TKSRVLinkSingleCompressionMethod Method)
{
    const auto index = static_cast<std::size_t>(Method);
    if (index >= kMethodTexts.size()) return {};
    return kMethodTexts[index].Text();
}

bool TQXRVCompressorEx::CompressValue(TKSRVLinkSingleCompressionMethod Method, const TRVDataDouble& Block,
                                      double Factor, double Offset, double& Value)
{
    Value = 0;
    if (Block.count <= 0 || !Block.data) return false;
    const double* p = Block.data;
    const std::int32_t n = Block.count;

    // The samples a failure check has to look at: the one read, or the whole block.
    const double* read = p;
    std::int32_t readCount = n;
    bool scaled = true;
    long double raw = 0;
    switch (Method) {
    case rvcompFirst:
        raw = p[0];
        readCount = 1;
        break;
    case rvcompLast:
        raw = p[n - 1];
        read = p + n - 1;
        readCount = 1;
        break;
    case rvcompAverage:
        raw = Sum(p, n) / n;
        break;
    case rvcompMin:
        raw = Minimum(p, n);
        break;
    case rvcompMax:
        raw = Maximum(p, n);
        break;
    case rvcompRMS:
        raw = std::sqrt(SumOfSquares(p, n) / n);
        break;
    case rvcompSDev: {
        scaled = false;
        if (n == 1) {
            Value = NoValueMarker;
            return true;
        }
        long double sum = 0, squares = 0;
        SumAndSquares(p, n, sum, squares);
        long double variance = (squares - sum * sum / n) / (n - 1);
        // Rounding of the one-pass formula can leave a constant block slightly below zero.
        if (variance < 0) variance = 0;
        raw = std::sqrt(variance);
        break;
    }
    default:
        return false;
    }

    const double result = static_cast<double>(scaled ? raw * Factor + Offset : raw);
    if (!std::isfinite(result)) {
        const bool finiteInput = AllFinite(read, readCount) &&
                                 (!scaled || (std::isfinite(Factor) && std::isfinite(Offset)));
        if (finiteInput) return false;
    }
    Value = result;
    return true;
}

TRVDataDouble TQXRVCompressorEx::Compress(TKSRVLinkSingleCompressionMethod Method, const TRVDataDouble& Block,
                                          double Factor, double Offset)
{
    double value = 0;
    const bool ok = CompressValue(Method, Block, Factor, Offset, value);
    return ToBlock(ok, value);
}

TRVDataDouble TQXRVCompressorEx::CompressFirst(const TRVDataDouble& Block, double Factor, double Offset)
{
    return Compress(rvcompFirst, Block, Factor, Offset);
}

TRVDataDouble TQXRVCompressorEx::CompressLast(const TRVDataDouble& Block, double Factor, double Offset)
{
    return Compress(rvcompLast, Block, Factor, Offset);
}

TRVDataDouble TQXRVCompressorEx::CompressAverage(const TRVDataDouble& Block, double Factor, double Offset)
{
    return Compress(rvcompAverage, Block, Factor, Offset);
}

TRVDataDouble TQXRVCompressorEx::CompressMin(const TRVDataDouble& Block, double Factor, double Offset)
{
    return Compress(rvcompMin, Block, Factor, Offset);
}

TRVDataDouble TQXRVCompressorEx::CompressMax(const TRVDataDouble& Block, double Factor, double Offset)
{
    return Compress(rvcompMax, Block, Factor, Offset);
}

TRVDataDouble TQXRVCompressorEx::CompressRMS(const TRVDataDouble& Block, double Factor, double Offset)
{
    return Compress(rvcompRMS, Block, Factor, Offset);
}

TRVDataDouble TQXRVCompressorEx::CompressDev(const TRVDataDouble& Block, double Factor, double Offset)
{
    return Compress(rvcompSDev, Block, Factor, Offset);
}

}  // namespace qx
