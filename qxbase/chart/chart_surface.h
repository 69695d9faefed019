#pragma once

#include <QRect>
#include <QString>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "qxbase/chart/chart_types.h"
#include "qxbase/framework/color.h"
#include "qxbase/framework/export.h"

class QPainter;

namespace qx {

// One curve: equally spaced samples, sample i at x = X0 + i * DX. The surface owns the samples;
// the chart panels append to and trim `Samples` directly and call CurvesChanged().
struct TQXChartCurve {
    QString Name;
    QString Unit;
    TColor Color = clLime;
    int Band = 0;
    bool Visible = true;
    double X0 = 0.0;
    double DX = 1.0;
    std::vector<double> Samples;
};

// Where a cursor stands: on sample `Sample` of curve `Curve`, at (X, Y). Valid is false while
// the cursor's curve has no samples or is not visible.
struct TQXCursorReading {
    bool Valid = false;
    int Curve = -1;
    int Sample = -1;
    double X = 0.0;
    double Y = 0.0;
};

// A chart drawn with QPainter: bands with their y axes, one x axis, grid, legend, two cursors
// that snap to samples. Curves are drawn from one minimum and maximum per pixel column, so the
// cost of a frame follows the width in pixels, not the sample count.
class QXBASE_EXPORT TQXChartSurface : public QWidget {
    Q_OBJECT

public:
    explicit TQXChartSurface(QWidget* parent = nullptr);
    ~TQXChartSurface() override;

    // Bands. A count below 1 is taken as 1; new bands get default axes.
    void SetBandCount(int Count);
    int GetBandCount() const;
    // nullptr for an index outside 0..BandCount-1.
    TQXYAxisDataObject* GetYAxis(int Band);
    const TQXYAxisDataObject* GetYAxis(int Band) const;
    TQXXAxisDataObject& GetXAxis();
    const TQXXAxisDataObject& GetXAxis() const;
    // The band the "active band" properties act on; an index outside the bands is ignored.
    int GetActiveBand() const;
    void SetActiveBand(int Band);

    THVKDisplayStyle GetDisplayStyle() const;
    void SetDisplayStyle(THVKDisplayStyle Value);
    TQXLegendPosition GetLegendPosition() const;
    void SetLegendPosition(TQXLegendPosition Value);
    bool GetLegendVisible() const;
    void SetLegendVisible(bool Value);
    bool GetGridVisible() const;
    void SetGridVisible(bool Value);
    // Around the plot (axes, legend) and inside it.
    TColor GetBackgroundColor() const;
    void SetBackgroundColor(TColor Value);
    TColor GetBandColor() const;
    void SetBandColor(TColor Value);

    // Curves, in the order added. A band outside the bands is drawn in band 0.
    int AddCurve(const QString& Name, const QString& Unit, TColor Color, int Band);
    int GetCurveCount() const;
    // nullptr for an index outside the curves.
    TQXChartCurve* GetCurve(int Index);
    const TQXChartCurve* GetCurve(int Index) const;
    void ClearCurves();
    // Call after changing curves or axes: repaints and moves the cursors to their samples again.
    void CurvesChanged();

    // Fits the band's axis to the visible samples of its curves (on a dB axis, their dB values);
    // nothing when they hold no finite sample. The limits are widened to round tick values.
    void AutoscaleBand(int Band);
    // Fits the x axis to the longest visible curve.
    void AutoscaleX();

    // Cursors 0 and 1, hidden at the start.
    bool GetCursorsVisible() const;
    void SetCursorsVisible(bool Value);
    // The curve the cursor reads; an index outside the curves is ignored.
    int GetCursorCurve(int Cursor) const;
    void SetCursorCurve(int Cursor, int Curve);
    // Moves the cursor to the sample of its curve nearest to X. False, and nothing moved, for a
    // cursor other than 0 and 1 or a curve without samples.
    bool SetCursorX(int Cursor, double X);
    TQXCursorReading GetCursorReading(int Cursor) const;
    // The cursor a click in the plot moves (0 or 1).
    int GetSelectedCursor() const;
    void SetSelectedCursor(int Cursor);
    // Called after a cursor moved or its reading changed.
    std::function<void(TQXChartSurface* Sender)> OnCursorMoved;

    // Draws the whole chart into `Area` of any painter: the widget, an offscreen image, a
    // printer.
    void Render(QPainter& Painter, const QRect& Area) const;
    // Geometry of the last layout of `Area` (the widget's rectangle unless Render was given
    // another): the band's plot rectangle, and the pixel of a value on an axis. An empty
    // rectangle and NaN for a band outside the bands. YToPixel takes a sample value, on a dB
    // axis too.
    QRect GetPlotRect(int Band) const;
    double XToPixel(double X) const;
    double PixelToX(double Pixel) const;
    double YToPixel(int Band, double Y) const;

signals:
    void cursorMoved();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

}  // namespace qx
