#include "qxbase/chartpanels/amplitude_spectrum_panel.h"

#include <algorithm>
#include <cmath>

#include "qxbase/measure/block_buffer.h"
#include "qxbase/panels/histo_ui.h"
#include "qxbase/resources/chart_texts.h"

namespace qx {

TKSSpectrumPanel::TKSSpectrumPanel(QWidget* parent) : TKSChartPanel(parent)
{
    SetObjectDescription(res::_rsSpectrumCaption);
    FFFT.SetSpecType(ksfftSpec);
    FFFT.SetWindow(qxltHanning);
    GetChart().GetXAxis().Title = XAxisTitle(dkFrequency);
    TKSSpectrumPanel::ClearProperties();
    DefaultXAxis();
}

QString TKSSpectrumPanel::GetDescription(const QMetaObject&)
{
    return res::_rsSpectrumDescription;
}

void TKSSpectrumPanel::ClearProperties()
{
    TKSChartPanel::ClearProperties();
    RegisterBusProperty(res::_rsPropFFTBufferSize, "FFTBufferSize", varInteger);
}

void TKSSpectrumPanel::SetFFTBufferSize(std::int32_t Value)
{
    std::int32_t size = 16;
    while (size < Value && size < 65536) size *= 2;
    FBufferSize = size;
    for (std::vector<double>& gathered : FGathered) gathered.clear();
    Changed("FFTBufferSize");
}

void TKSSpectrumPanel::DefaultXAxis()
{
    TQXXAxisDataObject& axis = GetChart().GetXAxis();
    const double half = FSampleRate > 0.0 ? FSampleRate / 2 : 0.5;
    // A logarithmic axis cannot start at 0: it starts at the first bin shown.
    axis.Min = axis.Scale == xasLogarithmic ? 2 * (FSampleRate > 0.0 ? FSampleRate : 1.0) / FBufferSize : 0.0;
    axis.Max = half;
}

void TKSSpectrumPanel::ChannelsChanged()
{
    // The spectra's x is frequency, whatever the channels hold.
    GetChart().GetXAxis().Title = XAxisTitle(dkFrequency);
    FGathered.clear();
    FollowDefaultXAxis();
}

void TKSSpectrumPanel::DefaultYAxis(int Band, const TQXMSExChannelInformation* Info)
{
    TQXYAxisDataObject& axis = *GetChart().GetYAxis(Band);
    const double top = Info != nullptr ? std::max(std::fabs(Info->RangeLow), std::fabs(Info->RangeHigh)) : 0.0;
    if (!std::isfinite(top) || top <= 0.0) {
        TKSChartPanel::DefaultYAxis(Band, Info);
        return;
    }
    // Amplitudes lie between 0 and the largest magnitude of the channel's range; the other
    // scales show five decades (100 dB) below it.
    switch (axis.Scale) {
    case yasLinear: axis.Min = 0.0; axis.Max = top; break;
    case yasLogarithmic: axis.Min = top * 1e-5; axis.Max = top; break;
    case yasDB: axis.Max = std::ceil(20 * std::log10(top) / 10) * 10; axis.Min = axis.Max - 100; break;
    }
}

void TKSSpectrumPanel::ResetDisplay()
{
    TKSChartPanel::ResetDisplay();
    FGathered.clear();
    FSpectrumCount = 0;
}

std::vector<TQXDcfChannel> TKSSpectrumPanel::GetBufferForSave() const
{
    std::vector<TQXDcfChannel> channels = TKSChartPanel::GetBufferForSave();
    if (GetShowingFile())
        return channels;
    for (TQXDcfChannel& channel : channels) {
        channel.Kind = dkFrequency;
        const auto flags = TQXMSChannelFlags::FromBits(static_cast<std::uint16_t>(channel.Definition.Flags));
        channel.Definition.Flags =
            (flags - TQXMSChannelFlags{msexArrayData, msexTimeData} + TQXMSChannelFlags{msexFFTArrayData}).Bits();
    }
    return channels;
}

void TKSSpectrumPanel::TakeData(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                                const TRVDataDoubleArray&, double)
{
    TKSHistoUI& chart = GetChart();
    FGathered.resize(Data.size());
    bool shown = false;
    for (int c = 0; c < chart.GetCurveCount() && static_cast<std::size_t>(c) < Data.size(); ++c) {
        const TRVDataDouble& block = Data[static_cast<std::size_t>(c)];
        if (!HasSamples(block) || static_cast<std::size_t>(c) >= Shortdefs.size())
            continue;
        const TRVShortdef& def = Shortdefs[static_cast<std::size_t>(c)];
        const double rate = block.count / (def.XEnd - def.XStart);
        if (!std::isfinite(rate) || rate <= 0.0)
            continue;
        std::vector<double>& gathered = FGathered[static_cast<std::size_t>(c)];
        gathered.insert(gathered.end(), block.data, block.data + block.count);
        const auto size = static_cast<std::size_t>(FBufferSize);
        if (gathered.size() < size)
            continue;
        // The newest full buffer; what came before it is too old to show.
        TRVDataDouble in{gathered.data() + (gathered.size() - size), FBufferSize};
        TRVDataDouble out;
        FFFT.SetFrequency(rate);
        FFFT.DoNewFFTOnChannel(in, out);
        TQXChartCurve& curve = *chart.GetCurve(c);
        curve.Samples.assign(out.data, out.data + out.count);
        FreeBlockBuffer(out.data);
        // Bins 0 and 1 are left out of the transform's result.
        curve.DX = rate / FBufferSize;
        curve.X0 = 2 * curve.DX;
        gathered.clear();
        if (rate != FSampleRate) {
            FSampleRate = rate;
            FollowDefaultXAxis();
        }
        shown = true;
    }
    if (!shown)
        return;
    ++FSpectrumCount;
    DataChanged();
}

}  // namespace qx
