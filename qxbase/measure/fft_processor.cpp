#include "qxbase/measure/fft_processor.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "qxbase/measure/block_buffer.h"
#include "qxbase/resources/measure_texts.h"

namespace qx {
namespace {

constexpr std::array<ResourceText, TKSFFTSpecTypeCount> kSpecTypeTexts = {
    res::_rsFFT_TYPE1, res::_rsFFT_TYPE2, res::_rsFFT_TYPE3,
};

constexpr std::array<ResourceText, TQXFFTLeakTypeCount> kWindowTexts = {
    res::_rsFFT_WINDOW1, res::_rsFFT_WINDOW2, res::_rsFFT_WINDOW3, res::_rsFFT_WINDOW4,
};

// Below 2^2 samples the power spectrum would get an odd or empty transform.
constexpr std::int32_t MinPaddedBits = 2;

// Widens Count floats into a fresh block; the empty block when nothing is left.
TRVDataDouble Widen(const float* Values, std::int32_t Count)
{
    TRVDataDouble out = NewDataDouble(Count);
    for (std::int32_t i = 0; i < out.count; ++i) out.data[i] = Values[i];
    return out;
}

}  // namespace

QString GetFFTSpecTypeText(TKSFFTSpecType Type)
{
    const auto index = static_cast<std::size_t>(Type);
    return index < kSpecTypeTexts.size() ? kSpecTypeTexts[index].Text() : QString();
}

QString GetFFTWindowText(TQXFFTLeakType Window)
{
    const auto index = static_cast<std::size_t>(Window);
    return index < kWindowTexts.size() ? kWindowTexts[index].Text() : QString();
}

TKSZLFFT::TKSZLFFT()
{
    FFFT.SetBits(3);
}

void TKSZLFFT::SetSize(std::int32_t /*Value*/)
{
    // The size follows the data in ResizeFFTVector; a stored size would only go stale.
}

void TKSZLFFT::ResizeFFTVector(std::int32_t Count)
{
    if (Count <= 0 || FSpecType >= TKSFFTSpecTypeCount) return;
    if (Count > MaxBlockSamples)
        throw ERangeError(QStringLiteral("FFT of %1 samples: more than %2 samples in a block")
                              .arg(Count).arg(MaxBlockSamples));

    const std::int32_t l = FReal.GetLength();
    const std::int32_t c = FComplex.GetCount();
    const bool realFits = l / 2 < Count && Count <= l;
    const bool complexFits = FSpecType == ksfftSpec ? c < Count && Count <= 2 * c
                                                    : c / 2 < Count && Count <= c;
    if (realFits && complexFits) return;

    auto bits = static_cast<std::int32_t>(std::lround(std::log2(static_cast<double>(Count))));
    if ((std::int64_t{1} << bits) < Count) ++bits;
    bits = std::max(bits, MinPaddedBits);
    FFFT.SetBits(bits - 1);
    const std::int32_t points = FFFT.GetPointCount();
    // The autocorrelation and power spectrum fail the keep rule for most counts; recreating
    // vectors of the same size would only cost an allocation per block.
    if (FReal.GetLength() != 2 * points) FReal = TQXVector(2 * points);
    if (FComplex.GetCount() != points) FComplex = TQXComplexVector(points);
}

void TKSZLFFT::DoNewFFTOnChannel(const TRVDataDouble& In, TRVDataDouble& Out)
{
    if (!HasSamples(In) || FSpecType >= TKSFFTSpecTypeCount) {
        Out = {};
        return;
    }
    ResizeFFTVector(In.count);
    TRVDataDouble result;

    // The samples are narrowed straight into the vector the transform reads, so no float
    // buffer is needed per block.
    const std::int32_t c = FComplex.GetCount();
    switch (FSpecType) {
    case ksfftSpec: {
        float* samples = FReal.Data();
        ConvertToSingle(In, samples);
        std::fill(samples + In.count, samples + FReal.GetLength(), 0.0f);
        FFFT.RealFFT(FReal, FComplex, false);
        // Bins 0 and 1 are dropped: the constant part and the lowest frequency.
        result = Widen(FComplex.FloatData() + 2, c - 2);
        break;
    }
    // The other two take every sample of the block: up to 2C floats of the complex vector's
    // storage.
    case ksfftAutocorr:
        ConvertToSingle(In, FComplex.FloatData());
        FFFT.AutoCorrelation(FComplex, In.count);
        result = Widen(FComplex.FloatData(), c);
        break;
    case ksfftPowerSpec:
        ConvertToSingle(In, FComplex.FloatData());
        FFFT.PowerSpectrum(FComplex, In.count);
        result = Widen(FComplex.FloatData() + 1, c / 2 - 1);
        break;
    }
    // Assigned last, so that In may be Out.
    Out = result;
}

void TKSZLFFT::DoFFTOnChannel(TRVDataDouble& Block)
{
    TRVDataDouble result;
    DoNewFFTOnChannel(Block, result);
    FreeDataDouble(Block);
    Block = result;
}

void TKSZLFFT::ProcessData(const TRVShortdefs& Shortdefs, TRVDataDoubleArray& Data)
{
    FShortdefs = Shortdefs;
    if (!Data.empty() && HasSamples(Data.front())) ResizeFFTVector(Data.front().count);

    const double n = GetSize();
    const double df = FFrequency / n / 2;
    const bool validFrequency = std::isfinite(FFrequency) && FFrequency > 0;
    for (std::size_t i = 0; i < FShortdefs.size(); ++i) {
        TRVShortdef& def = FShortdefs[i];
        def.XStart = 0;
        def.XEnd = 0;
        if (i >= Data.size() || !HasSamples(Data[i]) || !validFrequency) continue;
        switch (FSpecType) {
        case ksfftSpec:
        case ksfftPowerSpec:
            def.XStart = 2 * df;
            def.XEnd = (n - 1) * df;
            break;
        case ksfftAutocorr:
            // A tiny positive start instead of 0 keeps logarithmic axes drawable.
            def.XStart = n / FFrequency * 1e-11;
            def.XEnd = n / FFrequency;
            break;
        }
    }

    for (TRVDataDouble& block : Data) DoFFTOnChannel(block);
}

void TKSZLFFT::ConvertToSingle(const TRVDataDouble& Block, float* Buffer)
{
    const double* in = Block.data;
    for (std::int32_t i = 0; i < Block.count; ++i) Buffer[i] = static_cast<float>(in[i]);
}

}  // namespace qx
