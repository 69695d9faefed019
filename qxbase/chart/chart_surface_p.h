#pragma once

#include <QFont>
#include <QLine>
#include <QPoint>
#include <array>
#include <limits>
#include <memory>
#include <vector>

#include "qxbase/chart/chart_decimation.h"
#include "qxbase/chart/chart_layout.h"
#include "qxbase/chart/chart_surface.h"

// The state behind TQXChartSurface, shared by its behaviour and its painting.
namespace qx {

struct TQXChartSurface::Private {
    struct Cursor {
        int Curve = 0;
        // Where the cursor was put; NaN until then, when it stands at a third (cursor 0) or two
        // thirds (cursor 1) of the x axis.
        double WantedX = std::numeric_limits<double>::quiet_NaN();
        TQXCursorReading Reading;
    };

    std::vector<TQXYAxisDataObject> YAxes = std::vector<TQXYAxisDataObject>(1);
    TQXXAxisDataObject XAxis;
    int ActiveBand = 0;
    THVKDisplayStyle DisplayStyle = dsOneBand;
    TQXLegendPosition LegendPosition = lpHorizontal;
    bool LegendVisible = true;
    bool GridVisible = true;
    TColor BackgroundColor = 0x303030;
    TColor BandColor = clBlack;
    // Held by pointer so GetCurve's pointers survive AddCurve.
    std::vector<std::unique_ptr<TQXChartCurve>> Curves;

    std::array<Cursor, 2> Cursors;
    bool CursorsVisible = false;
    int SelectedCursor = 0;
    int DraggedCursor = -1;

    // The last layout, redone when Dirty or for another area.
    TQXChartLayout Layout;
    TQXChartLayoutInput LayoutInput;
    bool Dirty = true;
    bool HasArea = false;
    // Work buffers of a frame, kept so that painting allocates nothing once they have grown.
    TQXDecimation Decimation;
    std::vector<QPoint> Points;
    std::vector<QLine> Lines;

    // The band a curve is drawn in.
    int BandOf(const TQXChartCurve& Curve) const;
    const TQXChartCurve* CursorCurve(int Cursor) const;
    TQXCursorReading ReadCursor(int Cursor) const;
    // Re-reads both cursors; true when a reading changed.
    bool UpdateReadings();
    void DoLayout(const QRect& Area, const QFontMetricsF& Metrics);

    // Painting, in chart_surface_paint.cpp.
    void Paint(QPainter& Painter, const QRect& Area, const QFont& Font);
    void PaintGrid(QPainter& Painter);
    void PaintCurve(QPainter& Painter, const TQXChartCurve& Curve);
    void PaintYAxis(QPainter& Painter, int Band, const QFontMetricsF& Metrics);
    void PaintXAxis(QPainter& Painter, const QFontMetricsF& Metrics);
    void PaintCursors(QPainter& Painter, const QFontMetricsF& Metrics);
    void PaintLegend(QPainter& Painter);
};

}  // namespace qx
