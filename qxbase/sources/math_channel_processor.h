#pragma once

#include <QString>
#include <cstdint>
#include <vector>

#include "qxbase/framework/export.h"
#include "qxbase/measure/channel_information.h"
#include "qxbase/sources/measure_source.h"
#include "qxbase/sources/virtual_channel_table.h"

namespace qx {

class TReader;
class TWriter;

// A processor that extends every block set of its input by math channels (sums, reductions,
// spectra, scalings, ...) through its TQXVirtualChannelTable and sends the extended set on.
//
// On the bus: "FFTSpecType" (enumeration "Spectrum analyzer", "Autocorrelation",
// "Power spectrum") and "FFTWindow" (enumeration "Rectangle", "Hanning", "Hamming",
// "Blackman"), which apply to every FFT channel.
// Stored in the worksheet: "InputSource" (the input's component name), "FFTSpecType" and
// "FFTWindow" as Q_PROPERTYs, and the channels as the defined property "MathChannels".
class QXBASE_EXPORT TKSMathChannelProcessor : public TQXMLSBaseEx {
    Q_OBJECT
    Q_PROPERTY(QString InputSource READ GetInputSource WRITE SetInputSource)
    Q_PROPERTY(qint32 FFTSpecType READ GetFFTSpecType WRITE SetFFTSpecType)
    Q_PROPERTY(qint32 FFTWindow READ GetFFTWindow WRITE SetFFTWindow)

public:
    explicit TKSMathChannelProcessor(QWidget* parent = nullptr);
    ~TKSMathChannelProcessor() override;

    static QString GetDescription(const QMetaObject& Class);

    // The base properties, then "FFTSpecType" and "FFTWindow".
    void ClearProperties() override;

    // The math channels. Channels changed here directly reach the output's channel list (the
    // table rebuilds it), but nothing is announced on the bus.
    TQXVirtualChannelTable& GetTable() { return FTable; }
    const TQXVirtualChannelTable& GetTable() const { return FTable; }

    // The attached input's component name; while nothing is attached, the name last set (for
    // example read from a worksheet whose source has not been found yet).
    QString GetInputSource() const;
    // Keeps the name; outside loading also attaches to the data source of that name
    // (GetPanelByName, so across pages), or detaches when there is none or the name is empty.
    // An attachment that would close a cycle is refused and leaves the input detached.
    void SetInputSource(const QString& Value);

    // Ordinals outside the enumerations are ignored; a change is announced on the bus.
    std::int32_t GetFFTSpecType() const;
    void SetFFTSpecType(std::int32_t Value);
    std::int32_t GetFFTWindow() const;
    void SetFFTWindow(std::int32_t Value);

    // The stored form of the channels: one list per channel (see the design notes).
    void WriteMathChannels(TWriter& Writer) const;
    // Replaces every channel by those read. Raises EStreamError naming the place for a value of
    // the wrong kind, a list of the wrong length or an operation outside the enumeration; the
    // channels are then left as they were.
    void ReadMathChannels(TReader& Reader);

    // Attaches the input named by InputSource, then the base's work (bindings).
    void LoadFinished() override;
    // The base's, then "MathChannels" (written when there are channels).
    void DefineProperties(TFiler& Filer) override;

protected:
    // The output's channels become the input's followed by the math channels.
    void MLSOnUpdateSettings(TQXMeasureLinkEx* Sender) override;
    // Computes and sends the extended block set.
    void MLSOnNewData(TQXMeasureLinkEx* Link, const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                      const TRVDataDoubleArray& TimeChannel, double StartTime) override;

private:
    HRESULT OnProperty(TQXPropertyItem* Item, bool Get, Variant& Value);
    bool ApplySpecType(std::int32_t Value);
    bool ApplyWindow(std::int32_t Value);
    void AttachByName();

    QString FInputSourceName;
    TQXVirtualChannelTable FTable;
};

// Registers TKSMathChannelProcessor as a data-source class; later calls do nothing. Raises
// EPanelRegistryError while the registries do not exist.
QXBASE_EXPORT void RegisterMathChannelProcessor();

}  // namespace qx
