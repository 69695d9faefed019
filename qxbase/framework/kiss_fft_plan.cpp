#include <kiss_fftr.h>

#include <new>

#include "qxbase/framework/fft.h"

namespace qx {
namespace {

static_assert(sizeof(kiss_fft_cpx) == sizeof(std::complex<float>),
              "bins are handed to KissFFT as std::complex<float>");

// Both directions are allocated up front so that Forward and Inverse never allocate.
class TKissRealFFTPlan final : public TQXRealFFTPlan {
public:
    explicit TKissRealFFTPlan(std::int32_t Size) : FSize(Size)
    {
        FForward = kiss_fftr_alloc(Size, 0, nullptr, nullptr);
        FInverse = kiss_fftr_alloc(Size, 1, nullptr, nullptr);
        if (!FForward || !FInverse) {
            Free();
            throw std::bad_alloc();
        }
    }
    ~TKissRealFFTPlan() override { Free(); }
    TKissRealFFTPlan(const TKissRealFFTPlan&) = delete;
    TKissRealFFTPlan& operator=(const TKissRealFFTPlan&) = delete;

    std::int32_t GetSize() const override { return FSize; }

    void Forward(const float* Input, std::complex<float>* Output) override
    {
        kiss_fftr(FForward, Input, reinterpret_cast<kiss_fft_cpx*>(Output));
    }

    void Inverse(const std::complex<float>* Input, float* Output) override
    {
        kiss_fftri(FInverse, reinterpret_cast<const kiss_fft_cpx*>(Input), Output);
    }

private:
    void Free() noexcept
    {
        if (FForward) kiss_fftr_free(FForward);
        if (FInverse) kiss_fftr_free(FInverse);
        FForward = nullptr;
        FInverse = nullptr;
    }

    std::int32_t FSize;
    kiss_fftr_cfg FForward = nullptr;
    kiss_fftr_cfg FInverse = nullptr;
};

}  // namespace

std::unique_ptr<TQXRealFFTPlan> CreateKissRealFFTPlan(std::int32_t Size)
{
    // KissFFT's real transform halves the size into a complex one; an odd size would be
    // refused with a message on stderr.
    if (Size < 2 || Size % 2 != 0)
        throw EFFTError(QStringLiteral("The FFT size %1 is not an even number of at least 2")
                            .arg(Size));
    return std::make_unique<TKissRealFFTPlan>(Size);
}

}  // namespace qx
