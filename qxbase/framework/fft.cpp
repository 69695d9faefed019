#include "qxbase/framework/fft.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace qx {
namespace {

// Scratch buffers only grow, so once the sizes settle no transform allocates.
template <typename T>
void Grow(std::vector<T>& Buffer, std::int32_t Size)
{
    if (Buffer.size() < static_cast<std::size_t>(Size)) Buffer.resize(static_cast<std::size_t>(Size));
}

float Norm(std::complex<float> Value)
{
    return Value.real() * Value.real() + Value.imag() * Value.imag();
}

// Out[k] = Scale x |Bins[k]| for k in [From, To). The square roots are the cost of a spectrum
// beside the transform; without -fno-math-errno the compiler keeps them scalar, so four go at
// once by hand where SSE2 is there.
void Amplitudes(const std::complex<float>* Bins, std::int32_t From, std::int32_t To, float Scale, float* Out)
{
    std::int32_t k = From;
#if defined(__SSE2__)
    const float* pairs = reinterpret_cast<const float*>(Bins);
    const __m128 scale = _mm_set1_ps(Scale);
    for (; k + 4 <= To; k += 4) {
        const __m128 lo = _mm_loadu_ps(pairs + 2 * k);
        const __m128 hi = _mm_loadu_ps(pairs + 2 * k + 4);
        const __m128 re = _mm_shuffle_ps(lo, hi, _MM_SHUFFLE(2, 0, 2, 0));
        const __m128 im = _mm_shuffle_ps(lo, hi, _MM_SHUFFLE(3, 1, 3, 1));
        const __m128 norm = _mm_add_ps(_mm_mul_ps(re, re), _mm_mul_ps(im, im));
        _mm_storeu_ps(Out + k, _mm_mul_ps(_mm_sqrt_ps(norm), scale));
    }
#endif
    for (; k < To; ++k) Out[k] = std::sqrt(Norm(Bins[k])) * Scale;
}

}  // namespace

TQXVector::TQXVector(std::int32_t Length)
{
    if (Length < 0) throw ERangeError(QStringLiteral("Vector length %1 is negative").arg(Length));
    FData.resize(static_cast<std::size_t>(Length));
}

TQXComplexVector::TQXComplexVector(std::int32_t Count)
{
    if (Count < 0) throw ERangeError(QStringLiteral("Vector count %1 is negative").arg(Count));
    FData.resize(static_cast<std::size_t>(Count));
}

TQXFFT::TQXFFT(TQXRealFFTPlanFactory Factory) : FFactory(std::move(Factory)) {}

TQXFFT::~TQXFFT() = default;

void TQXFFT::SetBits(std::int32_t Bits)
{
    if (Bits < 0 || Bits > 27)
        throw ERangeError(QStringLiteral("FFT bits %1 outside 0..27").arg(Bits));
    FBits = Bits;
}

void TQXFFT::SetLeakType(TQXFFTLeakType Value)
{
    if (static_cast<int>(Value) < TQXFFTLeakTypeCount) FLeakType = Value;
}

TQXRealFFTPlan& TQXFFT::PlanFor(std::int32_t Size)
{
    auto it = FPlans.find(Size);
    if (it != FPlans.end()) return *it->second;
    std::unique_ptr<TQXRealFFTPlan> plan = FFactory ? FFactory(Size) : nullptr;
    if (!plan) throw EFFTError(QStringLiteral("No FFT plan for size %1").arg(Size));
    return *FPlans.emplace(Size, std::move(plan)).first->second;
}

const TQXFFT::TWindow& TQXFFT::WindowFor(std::int32_t Size)
{
    const auto key = std::make_pair(Size, FLeakType);
    auto it = FWindows.find(key);
    if (it != FWindows.end()) return it->second;

    TWindow window;
    window.Values.resize(static_cast<std::size_t>(Size));
    const double step = 2 * std::numbers::pi / Size;
    for (std::int32_t i = 0; i < Size; ++i) {
        const double c1 = std::cos(step * i);
        double w = 1;
        switch (FLeakType) {
        case qxltRectangle: w = 1; break;
        case qxltHanning: w = 0.5 - 0.5 * c1; break;
        case qxltHamming: w = 0.54 - 0.46 * c1; break;
        case qxltBlackman: w = 0.42 - 0.5 * c1 + 0.08 * std::cos(2 * step * i); break;
        }
        window.Values[static_cast<std::size_t>(i)] = static_cast<float>(w);
    }
    // The gain is summed from the stored floats so that it matches what the transform sees.
    for (float w : window.Values) window.Sum += w;
    return FWindows.emplace(key, std::move(window)).first->second;
}

const float* TQXFFT::ApplyWindow(const float* Input, std::int32_t Size, double& Gain)
{
    if (FLeakType == qxltRectangle) {
        Gain = Size;
        return Input;
    }
    const TWindow& window = WindowFor(Size);
    Gain = window.Sum;
    Grow(FRealScratch, Size);
    float* out = FRealScratch.data();
    const float* w = window.Values.data();
    for (std::int32_t i = 0; i < Size; ++i) out[i] = Input[i] * w[i];
    return out;
}

const std::complex<float>* TQXFFT::WindowedBins(const float* Input, std::int32_t Size, double& Gain)
{
    TQXRealFFTPlan& plan = PlanFor(Size);
    const float* input = ApplyWindow(Input, Size, Gain);
    Grow(FBinScratch, Size / 2 + 1);
    plan.Forward(input, FBinScratch.data());
    return FBinScratch.data();
}

void TQXFFT::RealFFT(const TQXVector& Real, TQXComplexVector& Complex, bool KeepComplex)
{
    const std::int32_t n = Real.GetLength();
    if (n < 2 || n % 2 != 0)
        throw EFFTError(QStringLiteral("Real FFT of %1 samples: the length must be even and at least 2").arg(n));
    const std::int32_t half = n / 2;
    if (Complex.GetCount() < half)
        throw EFFTError(QStringLiteral("Real FFT of %1 samples needs %2 complex elements, not %3")
                            .arg(n).arg(half).arg(Complex.GetCount()));

    double gain = 0;
    const std::complex<float>* bins = WindowedBins(Real.Data(), n, gain);

    if (KeepComplex) {
        std::complex<float>* out = Complex.Data();
        std::copy(bins, bins + half, out);
        // Bin 0 and bin N/2 are real, so the Nyquist bin rides in bin 0's imaginary part.
        out[0] = {bins[0].real(), bins[half].real()};
        std::fill(out + half, out + Complex.GetCount(), std::complex<float>{});
        return;
    }

    float* out = Complex.FloatData();
    const float scale = static_cast<float>(2 / gain);
    out[0] = std::abs(bins[0].real()) * static_cast<float>(1 / gain);
    Amplitudes(bins, 1, half, scale, out);
    std::fill(out + half, out + Complex.GetFloatCount(), 0.0f);
}

void TQXFFT::PowerSpectrum(TQXComplexVector& Complex, std::int32_t Count)
{
    const std::int32_t c = Complex.GetCount();
    if (c < 2 || c % 2 != 0)
        throw EFFTError(QStringLiteral("Power spectrum of %1 points: the count must be even and at least 2").arg(c));
    if (Count < 1 || Count > Complex.GetFloatCount())
        throw EFFTError(
            QStringLiteral("Power spectrum of %1 samples over %2 points is not possible").arg(Count).arg(c));
    const std::int32_t half = c / 2;
    float* samples = Complex.FloatData();
    if (Count < c) std::fill(samples + Count, samples + c, 0.0f);

    // Segments of C samples, starts at most C / 2 apart and spread evenly up to the last sample,
    // so that every sample counts.
    const std::int32_t span = std::max(Count - c, 0);
    const std::int32_t segments = (span + half - 1) / half + 1;
    Grow(FPowerScratch, half + 1);
    float* power = FPowerScratch.data();
    std::fill(power, power + half + 1, 0.0f);
    double gain = 0;
    for (std::int32_t s = 0; s < segments; ++s) {
        const std::int64_t start =
            segments == 1 ? 0 : (std::int64_t{s} * span + (segments - 1) / 2) / (segments - 1);
        const std::complex<float>* bins = WindowedBins(samples + start, c, gain);
        for (std::int32_t k = 0; k <= half; ++k) power[k] += Norm(bins[k]);
    }

    // A sine of amplitude A has |X_k| = A x gain / 2, so its mean-square power A² / 2 is
    // 2 |X_k|² / gain²; bins 0 and N/2 have no mirror image and count once.
    const float inv = static_cast<float>(1 / (gain * gain * segments));
    const float inv2 = 2 * inv;
    samples[0] = power[0] * inv;
    for (std::int32_t k = 1; k < half; ++k) samples[k] = power[k] * inv2;
    samples[half] = power[half] * inv;
    std::fill(samples + half + 1, samples + Complex.GetFloatCount(), 0.0f);
}

void TQXFFT::AutoCorrelation(TQXComplexVector& Complex, std::int32_t Count)
{
    const std::int32_t c = Complex.GetCount();
    if (c < 1 || c > std::numeric_limits<std::int32_t>::max() / 4)
        throw EFFTError(QStringLiteral("Autocorrelation over %1 points is not possible").arg(c));
    if (Count < 1 || Count > Complex.GetFloatCount())
        throw EFFTError(
            QStringLiteral("Autocorrelation of %1 samples over %2 points is not possible").arg(Count).arg(c));
    // Zero-padding to at least Count + C - 1 keeps the circular correlation of the transform from
    // wrapping the lags up to C - 1; 2C, 3C or 4C (the transform needs an even size), so that
    // few sizes are planned.
    const std::int32_t m = Count <= c + 1 ? 2 * c : c % 2 == 0 ? 3 * c : 4 * c;

    TQXRealFFTPlan& plan = PlanFor(m);
    Grow(FRealScratch, m);
    Grow(FBinScratch, m / 2 + 1);
    float* padded = FRealScratch.data();
    float* out = Complex.FloatData();
    std::copy(out, out + Count, padded);
    std::fill(padded + Count, padded + m, 0.0f);

    std::complex<float>* bins = FBinScratch.data();
    plan.Forward(padded, bins);
    for (std::int32_t k = 0; k <= m / 2; ++k) bins[k] = {Norm(bins[k]), 0.0f};
    plan.Inverse(bins, padded);

    // The inverse is unscaled (factor m); the 1 / Count is the mean over the lags' products.
    const float scale = static_cast<float>(1.0 / (static_cast<double>(m) * Count));
    for (std::int32_t k = 0; k < c; ++k) out[k] = padded[k] * scale;
    std::fill(out + c, out + 2 * c, 0.0f);
}

}  // namespace qx
