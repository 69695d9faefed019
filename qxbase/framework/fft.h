#pragma once

#include <complex>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/export.h"

// The host FFT: real vectors, complex vectors and the transforms the FFT processor and the
// math channels need. The transform itself comes from an FFT library behind TQXRealFFTPlan.
namespace qx {

// Vector sizes that a transform cannot take.
class QXBASE_EXPORT EFFTError : public Exception {
public:
    using Exception::Exception;
};

// The window applied before a spectrum is taken.
enum TQXFFTLeakType : std::uint8_t { qxltRectangle, qxltHanning, qxltHamming, qxltBlackman };

inline constexpr int TQXFFTLeakTypeCount = qxltBlackman + 1;

// Real samples as 32-bit floats, zero at creation.
class QXBASE_EXPORT TQXVector {
public:
    // Raises ERangeError for a negative length.
    explicit TQXVector(std::int32_t Length = 0);

    std::int32_t GetLength() const { return static_cast<std::int32_t>(FData.size()); }
    float* Data() { return FData.data(); }
    const float* Data() const { return FData.data(); }

private:
    std::vector<float> FData;
};

// Complex values as interleaved pairs of 32-bit floats (real, imaginary), zero at creation. The
// storage reads as 2 x GetCount() floats; transforms that produce real results leave them there.
class QXBASE_EXPORT TQXComplexVector {
public:
    // Raises ERangeError for a negative count.
    explicit TQXComplexVector(std::int32_t Count = 0);

    // The number of complex elements.
    std::int32_t GetCount() const { return static_cast<std::int32_t>(FData.size()); }
    std::complex<float>* Data() { return FData.data(); }
    const std::complex<float>* Data() const { return FData.data(); }
    float* FloatData() { return reinterpret_cast<float*>(FData.data()); }
    const float* FloatData() const { return reinterpret_cast<const float*>(FData.data()); }
    std::int32_t GetFloatCount() const { return 2 * GetCount(); }

private:
    std::vector<std::complex<float>> FData;
};

// One transform size of an FFT library. Forward takes GetSize() reals to GetSize() / 2 + 1
// bins; Inverse takes them back, unscaled (Inverse(Forward(x)) is GetSize() x). Neither
// allocates.
class QXBASE_EXPORT TQXRealFFTPlan {
public:
    virtual ~TQXRealFFTPlan() = default;
    virtual std::int32_t GetSize() const = 0;
    virtual void Forward(const float* Input, std::complex<float>* Output) = 0;
    virtual void Inverse(const std::complex<float>* Input, float* Output) = 0;
};

// Makes the plan of one size; raises EFFTError for a size the library cannot take.
using TQXRealFFTPlanFactory = std::function<std::unique_ptr<TQXRealFFTPlan>(std::int32_t Size)>;

// KissFFT (float): any even size of at least 2.
QXBASE_EXPORT std::unique_ptr<TQXRealFFTPlan> CreateKissRealFFTPlan(std::int32_t Size);

// The transforms on host vectors. Plans and scratch buffers are kept per size, so once the
// sizes settle no call allocates.
class QXBASE_EXPORT TQXFFT {
public:
    explicit TQXFFT(TQXRealFFTPlanFactory Factory = CreateKissRealFFTPlan);
    ~TQXFFT();
    TQXFFT(const TQXFFT&) = delete;
    TQXFFT& operator=(const TQXFFT&) = delete;

    // The point count is 2^Bits. Raises ERangeError for Bits outside 0..27.
    void SetBits(std::int32_t Bits);
    std::int32_t GetBits() const { return FBits; }
    std::int32_t GetPointCount() const { return std::int32_t{1} << FBits; }

    TQXFFTLeakType GetLeakType() const { return FLeakType; }
    // A value outside the enumeration is ignored.
    void SetLeakType(TQXFFTLeakType Value);

    // Spectrum of the N = Real.GetLength() samples of Real, windowed over all N, with bins k at
    // k x fs / N. Complex needs at least N / 2 elements; C = Complex.GetCount().
    // KeepComplex false: float k of Complex's storage is the amplitude of bin k, k = 0..N/2 - 1,
    // corrected for the window's gain so that a sine of amplitude A on a bin reads A (the
    // constant part reads as its value); the floats after them are zero.
    // KeepComplex true: element k is the windowed bin k unscaled, k = 0..N/2 - 1, except that
    // element 0's imaginary part holds the real bin N/2; elements after them are zero.
    // Raises EFFTError when N is odd or below 2 or Complex is too short.
    void RealFFT(const TQXVector& Real, TQXComplexVector& Complex, bool KeepComplex);
    // Power spectrum of the first Count floats of Complex's storage (C = element count, even, at
    // least 2; Count 1..2C), with bins k at k x fs / C: float k becomes the mean-square power of
    // bin k, k = 0..C/2 (a sine of amplitude A on a bin reads A² / 2, the constant part its
    // square), window-corrected as RealFFT; the floats after them are zero. Up to C samples are
    // one segment, zero-padded to C. More are averaged over segments of C samples (Welch): the
    // fewest segments whose starts are at most C / 2 apart, spread evenly from the first sample
    // to the last (Count = 2C: starts 0, C / 2, C), each windowed over its C samples. Raises
    // EFFTError for an odd element count, one below 2, or Count outside 1..2C.
    void PowerSpectrum(TQXComplexVector& Complex, std::int32_t Count);
    // Linear autocorrelation of the first Count floats x of Complex's storage (C = element count,
    // at least 1; Count 1..2C): float k becomes (1 / Count) x sum over i of x[i] x x[i + k],
    // k = 0..C - 1 (samples beyond the Count are taken as zero, so no lag wraps around); no
    // window. The other C floats are zero. Raises EFFTError for a C below 1 or Count outside
    // 1..2C.
    void AutoCorrelation(TQXComplexVector& Complex, std::int32_t Count);

private:
    struct TWindow {
        std::vector<float> Values;
        double Sum = 0;  // the coherent gain that the amplitudes are divided by
    };

    TQXRealFFTPlan& PlanFor(std::int32_t Size);
    const TWindow& WindowFor(std::int32_t Size);
    // Input itself for the rectangle, else the windowed copy in FRealScratch; Gain gets the
    // window's sum.
    const float* ApplyWindow(const float* Input, std::int32_t Size, double& Gain);
    // The Size / 2 + 1 bins of Input windowed, in the bin scratch buffer.
    const std::complex<float>* WindowedBins(const float* Input, std::int32_t Size, double& Gain);

    TQXRealFFTPlanFactory FFactory;
    std::map<std::int32_t, std::unique_ptr<TQXRealFFTPlan>> FPlans;
    std::int32_t FBits = 3;
    TQXFFTLeakType FLeakType = qxltRectangle;
    std::vector<float> FRealScratch;
    std::vector<std::complex<float>> FBinScratch;
    std::vector<float> FPowerScratch;  // the segments' summed powers
    std::map<std::pair<std::int32_t, TQXFFTLeakType>, TWindow> FWindows;
};

}  // namespace qx
