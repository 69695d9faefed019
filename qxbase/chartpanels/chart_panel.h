#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "qxbase/chart/chart_types.h"
#include "qxbase/chartpanels/dcf_file.h"
#include "qxbase/framework/export.h"
#include "qxbase/panels/histo_types.h"
#include "qxbase/panels/panel_base.h"
#include "qxbase/sources/measure_link_select.h"

class QLabel;
class QPrinter;

namespace qx {

class TKSHistoCursorPanel;
class TKSHistoToolbar;
class TKSHistoUI;

// What the recorder, the scope and the spectrum display share: a chart surface with toolbar and
// cursor read-out inside the panel frame, a link to one data source whose channels the user
// selects (one curve and one band per channel), the toolbar's work (axis and visibility dialogs,
// autoscale, capture and default scale, cursors, print, hold), "Save buffer" to a data file, and
// the common properties on the bus and in the worksheet file.
//
// The source is stored by component name ("SourceName") and attached when the worksheet has been
// read; "Channels" holds source channel numbers separated by blanks (none: no curves). The
// channel picker edits the panel's channel list, which ChannelListChanged turns into "Channels".
// Channels of different data kinds (time, frequency, single values) are refused with
// "Error: the channels contain different types of data." shown on the chart; nothing is drawn
// until the selection is consistent again.
//
// Bus writes: an enumeration takes its ordinal or one of its texts and ignores anything else; a
// value that does not convert to the property's type (a text that is not a number, NaN for an
// integer) raises EVariantError from the write and changes nothing; the rest follows the setters.
//
// A listener told of a property change during a bus write may delete the panel; one told from
// the panel's own widgets (toolbar, menu, dialogs) removes it with deleteLater(), as the widgets
// are still at work.
class QXBASE_EXPORT TKSChartPanel : public TKSMSSink {
    Q_OBJECT
    Q_PROPERTY(QString SourceName READ GetSourceName WRITE SetSourceName)
    Q_PROPERTY(QString Channels READ GetChannels WRITE SetChannels)
    Q_PROPERTY(qint32 LegendPosition READ GetLegendPosition WRITE SetLegendPosition)
    Q_PROPERTY(qint32 DisplayStyle READ GetDisplayStyle WRITE SetDisplayStyle)
    Q_PROPERTY(qint32 XAxisScale READ GetXAxisScale WRITE SetXAxisScale)
    Q_PROPERTY(qint32 YAxisScale READ GetYAxisScale WRITE SetYAxisScale)
    Q_PROPERTY(bool AutoScale READ GetAutoScale WRITE SetAutoScale)
    Q_PROPERTY(qint32 BandColor READ GetBandColor WRITE SetBandColor)
    Q_PROPERTY(qint32 BackgroundColor READ GetBackgroundColor WRITE SetBackgroundColor)
    Q_PROPERTY(qint32 CursorPanelPosition READ GetCursorPanelPosition WRITE SetCursorPanelPosition)
    Q_PROPERTY(bool ShowCursor READ GetShowCursor WRITE SetShowCursor)
    Q_PROPERTY(qint32 SaveMethod READ GetSaveMethod WRITE SetSaveMethod)
    Q_PROPERTY(QString FileName READ GetFileName WRITE SetFileName)
    Q_PROPERTY(bool UseEngineeringUnits READ GetUseEngineeringUnits WRITE SetUseEngineeringUnits)
    Q_PROPERTY(qint32 CursorDecimals READ GetCursorDecimals WRITE SetCursorDecimals)
    Q_PROPERTY(double XAxisMin READ GetXAxisMin WRITE SetXAxisMin)
    Q_PROPERTY(double XAxisMax READ GetXAxisMax WRITE SetXAxisMax)
    // Whether "Change X-Axis" holds the x axis at XAxisMin .. XAxisMax.
    Q_PROPERTY(bool XAxisChanged READ GetXAxisFixed WRITE SetXAxisFixed)
    Q_PROPERTY(bool YAxisVisible READ GetYAxisVisible WRITE SetYAxisVisible)
    Q_PROPERTY(qint32 ActiveBand READ GetActiveBand WRITE SetActiveBand)
    // Per band "min max" pairs separated by ";", in the general float format.
    Q_PROPERTY(QString YAxisLimits READ GetYAxisLimits WRITE SetYAxisLimits)
    // Numbers of the hidden curves, separated by blanks.
    Q_PROPERTY(QString HiddenCurves READ GetHiddenCurves WRITE SetHiddenCurves)

public:
    ~TKSChartPanel() override;

    TKSHistoUI& GetChart() const { return *FChart; }
    TKSHistoToolbar& GetToolbar() const { return *FToolbar; }
    TKSHistoCursorPanel& GetCursorPanel() const { return *FCursorPanel; }
    TQXMeasureLinkSelectEx& GetLink() const { return *FLink; }

    // The persisted data source: attaching stores the source's name; null detaches.
    TQXMeasureSourceEx* GetMeasureSource() const override;
    void SetMeasureSource(TQXMeasureSourceEx* Value) override;
    const QString& GetSourceName() const { return FSourceName; }
    // Attaches to the source of that name once the panel stands in a worksheet.
    void SetSourceName(const QString& Value);
    const QString& GetChannels() const { return FChannels; }
    void SetChannels(const QString& Value);

    std::int32_t GetLegendPosition() const;
    void SetLegendPosition(std::int32_t Value);
    std::int32_t GetDisplayStyle() const;
    void SetDisplayStyle(std::int32_t Value);
    std::int32_t GetXAxisScale() const;
    void SetXAxisScale(std::int32_t Value);
    std::int32_t GetYAxisScale() const { return FYAxisScale; }
    // Applies to every band.
    void SetYAxisScale(std::int32_t Value);
    bool GetAutoScale() const { return FAutoScale; }
    void SetAutoScale(bool Value);
    TColor GetBandColor() const;
    void SetBandColor(TColor Value);
    TColor GetBackgroundColor() const;
    void SetBackgroundColor(TColor Value);
    std::int32_t GetCursorPanelPosition() const { return FCursorPanelPosition; }
    void SetCursorPanelPosition(std::int32_t Value);
    bool GetShowCursor() const;
    void SetShowCursor(bool Value);
    std::int32_t GetSaveMethod() const { return FSaveMethod; }
    void SetSaveMethod(std::int32_t Value);
    const QString& GetFileName() const { return FFileName; }
    void SetFileName(const QString& Value);
    bool GetUseEngineeringUnits() const { return FUseEngineeringUnits; }
    void SetUseEngineeringUnits(bool Value);
    std::int32_t GetCursorDecimals() const { return FCursorDecimals; }
    // Clamped to 0..9.
    void SetCursorDecimals(std::int32_t Value);
    // The limits "Change X-Axis" applies; reading gives the axis's limits.
    double GetXAxisMin() const;
    void SetXAxisMin(double Value);
    double GetXAxisMax() const;
    void SetXAxisMax(double Value);
    bool GetYAxisVisible() const { return FYAxisVisible; }
    void SetYAxisVisible(bool Value);
    // The band the "active band" properties act on; an index outside the bands is ignored.
    std::int32_t GetActiveBand() const;
    void SetActiveBand(std::int32_t Value);
    QString GetYAxisLimits() const;
    // Pairs that are not two numbers with min < max are skipped, leaving that band as it was.
    void SetYAxisLimits(const QString& Value);
    QString GetHiddenCurves() const;
    void SetHiddenCurves(const QString& Value);

    // Offset and scale of a band's y axis: its minimum and its span. The plain forms write every
    // band and read the first; a span of 0 or less, or a value that is not finite, is ignored.
    double GetYAxisOffset(int Band) const;
    double GetYAxisScaleValue(int Band) const;
    void SetYAxisOffset(int Band, double Value);
    void SetYAxisScaleValue(int Band, double Value);

    // The toolbar's work, also reachable from code. The dialogs (and Print's) run their own event
    // loop, which may remove the panel: they then return without touching it.
    void ShowAxisSetup();
    void ShowChannelVisibilities();
    // Fits every band to what it shows now.
    void CaptureScale();
    // The channels' ranges on the y axes, and the panel's own x axis.
    void DefaultScale();
    bool GetHold() const { return FHold; }
    virtual void SetHold(bool Value);
    // Opens the print dialog and prints the chart; PrintTo prints without asking.
    void Print();
    void PrintTo(QPrinter& Printer) const;
    // Clears what the panel shows and keeps.
    virtual void ResetDisplay();
    // Asked before the menu's "Reset display" clears (the bus command does not ask); true, the
    // base asks nothing.
    virtual bool ConfirmResetDisplay() { return true; }
    // Applies the stored x limits ("Change X-Axis") or goes back to the panel's own x axis
    // ("Reset X-Axis").
    void ChangeXAxis();
    void ResetXAxis();
    bool GetXAxisFixed() const { return FXAxisFixed; }
    // ChangeXAxis or ResetXAxis; while a worksheet is read, only stored (LoadFinished applies it).
    void SetXAxisFixed(bool Value);

    // Writes what the panel keeps to a data file by the save method. Returns the file written,
    // empty when the user cancelled, a warning was declined or there was nothing to save. Raises
    // EDcfFileError when the file cannot be written.
    QString SaveBuffer();
    // SaveBuffer for the menu and the bus: a failure is shown to the user instead of raised.
    void SaveBufferReporting();
    // The curves as data file channels, in curve order.
    virtual std::vector<TQXDcfChannel> GetBufferForSave() const;
    // Shows a data file's channels (kept data of a recorder, a capture of a scope, spectra)
    // instead of live data, and holds. Raises EDcfFileError for a file that cannot be read.
    void LoadBuffer(const QString& Path);
    // Whether the curves come from a data file until live data returns.
    bool GetShowingFile() const { return FShowingFile; }

    // The error shown on the chart; empty while there is none.
    const QString& GetErrorText() const { return FErrorText; }

    void LoadFinished() override;
    // The channel list was edited (the picker): it becomes the selection.
    void ChannelListChanged() override;
    void SetDesignMode(bool Value) override;
    void ClearProperties() override;

protected:
    explicit TKSChartPanel(QWidget* parent = nullptr);

    // The selected channels changed: the curves are rebuilt before this is called.
    virtual void ChannelsChanged() {}
    // One cycle of the selected channels; only called while the kinds agree and not on hold
    // (the recorder overrides OnHold to keep recording).
    virtual void TakeData(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                          const TRVDataDoubleArray& TimeChannel, double StartTime) = 0;
    // Whether data keeps arriving in TakeData while the display is held.
    virtual bool TakesDataOnHold() const { return false; }
    // The x axis the panel returns to ("Default scale", "Reset X-Axis").
    virtual void DefaultXAxis() = 0;
    // DefaultXAxis, unless "Change X-Axis" holds the x axis: for what moves the panel's own axis
    // (new data, channels, sizes).
    void FollowDefaultXAxis();
    // The band's y axis as "Default scale" sets it: the channel's range on a linear axis, else
    // fitted to what the band shows. Info is null for curves read from a data file.
    virtual void DefaultYAxis(int Band, const TQXMSExChannelInformation* Info);
    // "Time [s]", "Frequency [Hz]", or none for single values.
    static QString XAxisTitle(TQXDcfDataKind Kind);
    // After new data: autoscale when on, cursors, repaint.
    void DataChanged();
    // Registers a bus property backed by the Q_PROPERTY of the same name: reads and writes go
    // through it, and the write is announced by the bus only once.
    void RegisterBusProperty(const QString& Description, const char* Name, std::uint16_t DataType,
                             const QString& TypeInfo = QString(), const QStringList& Choices = QStringList());
    // A bus property read and written through the two functions; Choices make it an enumeration.
    void RegisterBusAccess(const QString& Description, const QString& Name, std::uint16_t DataType,
                           const QString& TypeInfo, const QStringList& Choices, std::function<Variant()> Get,
                           std::function<void(const Variant&)> Set);
    // A command on the bus: enumeration ("True", "Unknown"); writing 0 or "True" runs it.
    void RegisterBusCommand(const QString& Description, const QString& Name, std::function<void()> Command);
    // Tells the bus that a Q_PROPERTY changed, unless the bus itself is writing it or the
    // panel is being read. False when a listener deleted the panel meanwhile: the caller must
    // not touch it then.
    bool Changed(const char* Name);
    void Resize() override;
    void Paint(QPainter& Canvas) override;

private:
    void Attach();
    void ShowError(const QString& Text);
    // Each band's y axis titled "name [unit]" after its curve ("[dBunit]" on a dB axis), as the
    // axis labels carry plain numbers.
    void UpdateYAxisTitles();
    void UpdateSelection();
    void RebuildCurves();
    void Deliver(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                 const TRVDataDoubleArray& TimeChannel, double StartTime);
    void LayoutChildren();
    void ApplyCursorPanel();
    void ConnectToolbar();
    void AddMenuActions();

    std::unique_ptr<TQXMeasureLinkSelectEx> FLink;
    TKSHistoUI* FChart = nullptr;              // child
    TKSHistoToolbar* FToolbar = nullptr;       // child
    TKSHistoCursorPanel* FCursorPanel = nullptr;  // child
    QLabel* FErrorLabel = nullptr;             // child
    QString FSourceName;
    QString FChannels;
    QString FFileName;
    QString FErrorText;
    QString FBusWriting;
    std::int32_t FYAxisScale = yasLinear;
    std::int32_t FCursorPanelPosition = cppBottom;
    std::int32_t FSaveMethod = smShowDialog;
    std::int32_t FCursorDecimals = 3;
    std::int32_t FActiveBand = 0;
    double FXAxisMin = 0.0;
    double FXAxisMax = 1.0;
    bool FAutoScale = false;
    bool FUseEngineeringUnits = true;
    bool FYAxisVisible = true;
    bool FHold = false;
    // Curves shown from a data file instead of the source.
    bool FShowingFile = false;
    TQXDcfDataKind FFileKind = dkTime;
    // Set by "Change X-Axis": the panel leaves the x axis alone until "Reset X-Axis".
    bool FXAxisFixed = false;
    std::vector<int> FHiddenCurves;
    // Per band (min, max) as last seen or read; (0, 0) where none is known.
    std::vector<std::pair<double, double>> FYLimits;
};

}  // namespace qx
