#pragma once

#include "qxbase/chartpanels/chart_panel.h"
#include "qxbase/measure/fft_processor.h"

namespace qx {

// A spectrum display: the amplitude spectrum of the last "FFT buffer size" samples of each
// selected channel, through the library's FFT processor, over 0 .. half the sample rate. The
// samples gather across blocks; each full buffer gives a new spectrum. The y axes follow
// "Y-axis scale": linear, logarithmic or dB.
//
// Bus and worksheet: the chart panels' properties and "FFTBufferSize" (a power of two, 16 ..
// 65536; other values are rounded up to one).
class QXBASE_EXPORT TKSSpectrumPanel : public TKSChartPanel {
    Q_OBJECT
    Q_PROPERTY(qint32 FFTBufferSize READ GetFFTBufferSize WRITE SetFFTBufferSize)

public:
    explicit TKSSpectrumPanel(QWidget* parent = nullptr);
    static QString GetDescription(const QMetaObject& Class);

    std::int32_t GetFFTBufferSize() const { return FBufferSize; }
    void SetFFTBufferSize(std::int32_t Value);
    // Spectra shown so far.
    int GetSpectrumCount() const { return FSpectrumCount; }

    void ClearProperties() override;
    void ResetDisplay() override;
    // The spectra as frequency data, whatever kind of channel they were computed from.
    std::vector<TQXDcfChannel> GetBufferForSave() const override;

protected:
    void TakeData(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                  const TRVDataDoubleArray& TimeChannel, double StartTime) override;
    void DefaultXAxis() override;
    void ChannelsChanged() override;
    // Amplitudes: 0 .. the range's largest magnitude, or the 100 dB (five decades) below it.
    void DefaultYAxis(int Band, const TQXMSExChannelInformation* Info) override;

private:
    TKSZLFFT FFFT;
    std::int32_t FBufferSize = 1024;
    double FSampleRate = 0.0;
    int FSpectrumCount = 0;
    std::vector<std::vector<double>> FGathered;
};

}  // namespace qx
