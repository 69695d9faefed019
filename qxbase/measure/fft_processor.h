#pragma once

#include <QString>
#include <cstdint>
#include <vector>

#include "qxbase/framework/export.h"
#include "qxbase/framework/fft.h"
#include "qxbase/measure/channel_types.h"

namespace qx {

// What the FFT processor makes of a block.
enum TKSFFTSpecType : std::uint8_t { ksfftSpec, ksfftAutocorr, ksfftPowerSpec };

inline constexpr int TKSFFTSpecTypeCount = ksfftPowerSpec + 1;

// The texts shown for a spec type and a window; empty for a value outside the enumeration.
QXBASE_EXPORT QString GetFFTSpecTypeText(TKSFFTSpecType Type);
QXBASE_EXPORT QString GetFFTWindowText(TQXFFTLeakType Window);

// Turns blocks into spectra, power spectra or autocorrelations and rewrites the horizontal axis
// of their definitions to match. The vectors follow the block sizes (ResizeFFTVector); the
// owner sets the sample frequency before ProcessData.
class QXBASE_EXPORT TKSZLFFT {
public:
    TKSZLFFT();
    TKSZLFFT(const TKSZLFFT&) = delete;
    TKSZLFFT& operator=(const TKSZLFFT&) = delete;

    TQXFFTLeakType GetWindow() const { return FFFT.GetLeakType(); }
    void SetWindow(TQXFFTLeakType Value) { FFFT.SetLeakType(Value); }
    // Any value is stored; one outside the enumeration makes every result the empty block.
    TKSFFTSpecType GetSpecType() const { return FSpecType; }
    void SetSpecType(TKSFFTSpecType Value) { FSpecType = Value; }
    // The FFT's point count.
    std::int32_t GetSize() const { return FFFT.GetPointCount(); }
    // Does nothing: the size follows the data.
    void SetSize(std::int32_t Value);
    double GetFrequency() const { return FFrequency; }
    void SetFrequency(double Value) { FFrequency = Value; }

    const TQXVector& GetRealVector() const { return FReal; }
    const TQXComplexVector& GetComplexVector() const { return FComplex; }
    // The definitions rewritten by the last ProcessData.
    const TRVShortdefs& GetShortdefs() const { return FShortdefs; }

    // Keeps the vectors when a block of Count samples fits them, else pads Count to a power of
    // two 2^b (b at least 2) and sets the FFT to b - 1 bits, the real vector to 2^b and the
    // complex vector to 2^(b-1) elements. Counts <= 0 and unknown spec types do nothing; a
    // count above MaxBlockSamples raises ERangeError.
    void ResizeFFTVector(std::int32_t Count);
    // The result of one block into a new block (Out is overwritten, not freed; the caller owns
    // the new buffer). An empty input or an unknown spec type gives the empty block.
    void DoNewFFTOnChannel(const TRVDataDouble& In, TRVDataDouble& Out);
    // Replaces the block by its result and frees the old buffer.
    void DoFFTOnChannel(TRVDataDouble& Block);
    // Transforms every block in place and keeps the input definitions with their axes rewritten
    // (see GetShortdefs). Without a finite positive frequency every axis is 0 .. 0. Errors of
    // the transform propagate; blocks already done stay transformed.
    void ProcessData(const TRVShortdefs& Shortdefs, TRVDataDoubleArray& Data);
    // Block's samples narrowed to floats into Buffer, which holds at least Block.count floats.
    static void ConvertToSingle(const TRVDataDouble& Block, float* Buffer);

private:
    TKSFFTSpecType FSpecType = ksfftSpec;
    TQXFFT FFFT;
    TQXVector FReal{16};
    TQXComplexVector FComplex{8};
    double FFrequency = 1.0;
    TRVShortdefs FShortdefs;
};

}  // namespace qx
