#include "qxbase/chart/chart_surface.h"

#include <QFontMetricsF>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "qxbase/chart/chart_cursor.h"
#include "qxbase/chart/chart_surface_p.h"

namespace qx {

namespace {

// How close to a cursor line, in pixels, a press grabs that cursor.
constexpr double CursorGrabDistance = 4.0;

bool SameReading(const TQXCursorReading& A, const TQXCursorReading& B)
{
    return A.Valid == B.Valid && A.Curve == B.Curve && A.Sample == B.Sample && A.X == B.X && A.Y == B.Y;
}

}  // namespace

int TQXChartSurface::Private::BandOf(const TQXChartCurve& Curve) const
{
    return Curve.Band >= 0 && Curve.Band < static_cast<int>(YAxes.size()) ? Curve.Band : 0;
}

const TQXChartCurve* TQXChartSurface::Private::CursorCurve(int Cursor) const
{
    const int curve = Cursors[static_cast<std::size_t>(Cursor)].Curve;
    return curve >= 0 && curve < static_cast<int>(Curves.size()) ? Curves[static_cast<std::size_t>(curve)].get()
                                                                  : nullptr;
}

TQXCursorReading TQXChartSurface::Private::ReadCursor(int Cursor) const
{
    const Private::Cursor& cursor = Cursors[static_cast<std::size_t>(Cursor)];
    TQXCursorReading reading;
    const TQXChartCurve* curve = CursorCurve(Cursor);
    if (curve == nullptr) return reading;
    reading.Curve = cursor.Curve;
    double x = cursor.WantedX;
    if (std::isnan(x)) {
        const double share = (Cursor + 1) / 3.0;
        x = XAxis.Scale == xasLogarithmic && XAxis.Min > 0.0 && XAxis.Max > 0.0
                ? XAxis.Min * std::pow(XAxis.Max / XAxis.Min, share)
                : XAxis.Min + (XAxis.Max - XAxis.Min) * share;
    }
    const std::ptrdiff_t sample =
        NearestDrawableSample(curve->Samples.data(), curve->Samples.size(), curve->X0, curve->DX, x);
    if (sample < 0) return reading;
    reading.Sample = static_cast<int>(sample);
    reading.X = curve->X0 + static_cast<double>(sample) * curve->DX;
    reading.Y = curve->Samples[static_cast<std::size_t>(sample)];
    reading.Valid = curve->Visible;
    return reading;
}

bool TQXChartSurface::Private::UpdateReadings()
{
    bool changed = false;
    for (int cursor = 0; cursor < 2; ++cursor) {
        const TQXCursorReading reading = ReadCursor(cursor);
        TQXCursorReading& stored = Cursors[static_cast<std::size_t>(cursor)].Reading;
        if (SameReading(reading, stored)) continue;
        stored = reading;
        changed = true;
    }
    return changed;
}

void TQXChartSurface::Private::DoLayout(const QRect& Area, const QFontMetricsF& Metrics)
{
    LayoutInput.Area = Area;
    LayoutInput.YAxes = &YAxes;
    LayoutInput.XAxis = &XAxis;
    LayoutInput.Style = DisplayStyle;
    LayoutInput.LegendVisible = LegendVisible;
    LayoutInput.LegendPosition = LegendPosition;
    LayoutInput.LegendCurves.clear();
    LayoutInput.LegendTexts.clear();
    if (LegendVisible) {
        for (std::size_t i = 0; i < Curves.size(); ++i) {
            const TQXChartCurve& curve = *Curves[i];
            if (!curve.Visible) continue;
            LayoutInput.LegendCurves.push_back(static_cast<int>(i));
            LayoutInput.LegendTexts.append(curve.Unit.isEmpty() ? curve.Name
                                                                : curve.Name + QStringLiteral(" [") + curve.Unit +
                                                                      QLatin1Char(']'));
        }
    }
    LayoutChart(LayoutInput, Metrics, Layout);
    Dirty = false;
    HasArea = true;
}

TQXChartSurface::TQXChartSurface(QWidget* parent) : QWidget(parent), d(std::make_unique<Private>())
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

TQXChartSurface::~TQXChartSurface() = default;

void TQXChartSurface::SetBandCount(int Count)
{
    d->YAxes.resize(static_cast<std::size_t>(std::max(Count, 1)));
    d->ActiveBand = std::min(d->ActiveBand, GetBandCount() - 1);
    d->Dirty = true;
    update();
}

int TQXChartSurface::GetBandCount() const
{
    return static_cast<int>(d->YAxes.size());
}

TQXYAxisDataObject* TQXChartSurface::GetYAxis(int Band)
{
    return Band >= 0 && Band < GetBandCount() ? &d->YAxes[static_cast<std::size_t>(Band)] : nullptr;
}

const TQXYAxisDataObject* TQXChartSurface::GetYAxis(int Band) const
{
    return Band >= 0 && Band < GetBandCount() ? &d->YAxes[static_cast<std::size_t>(Band)] : nullptr;
}

TQXXAxisDataObject& TQXChartSurface::GetXAxis()
{
    return d->XAxis;
}

const TQXXAxisDataObject& TQXChartSurface::GetXAxis() const
{
    return d->XAxis;
}

int TQXChartSurface::GetActiveBand() const
{
    return d->ActiveBand;
}

void TQXChartSurface::SetActiveBand(int Band)
{
    if (Band < 0 || Band >= GetBandCount()) return;
    d->ActiveBand = Band;
    update();
}

THVKDisplayStyle TQXChartSurface::GetDisplayStyle() const
{
    return d->DisplayStyle;
}

void TQXChartSurface::SetDisplayStyle(THVKDisplayStyle Value)
{
    d->DisplayStyle = Value;
    d->Dirty = true;
    update();
}

TQXLegendPosition TQXChartSurface::GetLegendPosition() const
{
    return d->LegendPosition;
}

void TQXChartSurface::SetLegendPosition(TQXLegendPosition Value)
{
    d->LegendPosition = Value;
    d->Dirty = true;
    update();
}

bool TQXChartSurface::GetLegendVisible() const
{
    return d->LegendVisible;
}

void TQXChartSurface::SetLegendVisible(bool Value)
{
    d->LegendVisible = Value;
    d->Dirty = true;
    update();
}

bool TQXChartSurface::GetGridVisible() const
{
    return d->GridVisible;
}

void TQXChartSurface::SetGridVisible(bool Value)
{
    d->GridVisible = Value;
    update();
}

TColor TQXChartSurface::GetBackgroundColor() const
{
    return d->BackgroundColor;
}

void TQXChartSurface::SetBackgroundColor(TColor Value)
{
    d->BackgroundColor = Value;
    update();
}

TColor TQXChartSurface::GetBandColor() const
{
    return d->BandColor;
}

void TQXChartSurface::SetBandColor(TColor Value)
{
    d->BandColor = Value;
    update();
}

int TQXChartSurface::AddCurve(const QString& Name, const QString& Unit, TColor Color, int Band)
{
    auto curve = std::make_unique<TQXChartCurve>();
    curve->Name = Name;
    curve->Unit = Unit;
    curve->Color = Color;
    curve->Band = Band;
    d->Curves.push_back(std::move(curve));
    d->Dirty = true;
    update();
    return GetCurveCount() - 1;
}

int TQXChartSurface::GetCurveCount() const
{
    return static_cast<int>(d->Curves.size());
}

TQXChartCurve* TQXChartSurface::GetCurve(int Index)
{
    return Index >= 0 && Index < GetCurveCount() ? d->Curves[static_cast<std::size_t>(Index)].get() : nullptr;
}

const TQXChartCurve* TQXChartSurface::GetCurve(int Index) const
{
    return Index >= 0 && Index < GetCurveCount() ? d->Curves[static_cast<std::size_t>(Index)].get() : nullptr;
}

void TQXChartSurface::ClearCurves()
{
    d->Curves.clear();
    CurvesChanged();
}

void TQXChartSurface::CurvesChanged()
{
    d->Dirty = true;
    update();
    if (!d->UpdateReadings()) return;
    if (OnCursorMoved) OnCursorMoved(this);
    emit cursorMoved();
}

void TQXChartSurface::AutoscaleBand(int Band)
{
    TQXYAxisDataObject* axis = GetYAxis(Band);
    if (axis == nullptr) return;
    const bool positiveOnly = axis->Scale != yasLinear;
    const bool magnitude = axis->Scale == yasDB;
    double lo = HUGE_VAL;
    double hi = -HUGE_VAL;
    for (const auto& curve : d->Curves) {
        double curveMin = 0.0;
        double curveMax = 0.0;
        if (!curve->Visible || d->BandOf(*curve) != Band ||
            !DrawableRange(curve->Samples.data(), curve->Samples.size(), magnitude, positiveOnly, curveMin, curveMax))
            continue;
        lo = std::min(lo, curveMin);
        hi = std::max(hi, curveMax);
    }
    if (lo > hi) return;
    if (axis->Scale == yasLogarithmic) {
        axis->Min = std::pow(10.0, std::floor(std::log10(lo)));
        axis->Max = std::pow(10.0, std::ceil(std::log10(hi)));
        if (axis->Max <= axis->Min) axis->Max = axis->Min * 10.0;
    } else {
        if (magnitude) {
            lo = 20.0 * std::log10(lo);
            hi = 20.0 * std::log10(hi);
        }
        if (lo == hi) {
            const double margin = lo != 0.0 ? std::fabs(lo) * 0.1 : 1.0;
            lo -= margin;
            hi += margin;
        }
        // The step the axis will tick with over its current height.
        const QRect plot = GetPlotRect(Band);
        std::vector<double> ticks;
        ComputeTicks(tkLinear, lo, hi, plot.height(), 2.0 * QFontMetricsF(font()).height(), ticks);
        const double step = ticks.size() > 1 ? ticks[1] - ticks[0] : 0.0;
        axis->Min = step > 0.0 ? std::floor(lo / step) * step : lo;
        axis->Max = step > 0.0 ? std::ceil(hi / step) * step : hi;
    }
    d->Dirty = true;
    update();
}

void TQXChartSurface::AutoscaleX()
{
    const TQXChartCurve* longest = nullptr;
    for (const auto& curve : d->Curves) {
        if (curve->Visible && (longest == nullptr || curve->Samples.size() > longest->Samples.size()))
            longest = curve.get();
    }
    if (longest == nullptr || longest->Samples.empty() || !(longest->DX > 0.0) || !std::isfinite(longest->X0)) return;
    double first = longest->X0;
    const double last = longest->X0 + static_cast<double>(longest->Samples.size() - 1) * longest->DX;
    if (d->XAxis.Scale == xasLogarithmic && first <= 0.0) {
        // A log axis starts at the first sample it can show.
        first = longest->X0 + (std::floor(-longest->X0 / longest->DX) + 1.0) * longest->DX;
    }
    d->XAxis.Min = first;
    d->XAxis.Max = last > first ? last : first + longest->DX;
    d->Dirty = true;
    update();
}

bool TQXChartSurface::GetCursorsVisible() const
{
    return d->CursorsVisible;
}

void TQXChartSurface::SetCursorsVisible(bool Value)
{
    d->CursorsVisible = Value;
    update();
}

int TQXChartSurface::GetCursorCurve(int Cursor) const
{
    return Cursor == 0 || Cursor == 1 ? d->Cursors[static_cast<std::size_t>(Cursor)].Curve : -1;
}

void TQXChartSurface::SetCursorCurve(int Cursor, int Curve)
{
    if ((Cursor != 0 && Cursor != 1) || Curve < 0 || Curve >= GetCurveCount()) return;
    d->Cursors[static_cast<std::size_t>(Cursor)].Curve = Curve;
    CurvesChanged();
}

bool TQXChartSurface::SetCursorX(int Cursor, double X)
{
    if ((Cursor != 0 && Cursor != 1) || !std::isfinite(X)) return false;
    const TQXChartCurve* curve = d->CursorCurve(Cursor);
    if (curve == nullptr) return false;
    const std::ptrdiff_t sample =
        NearestDrawableSample(curve->Samples.data(), curve->Samples.size(), curve->X0, curve->DX, X);
    if (sample < 0) return false;
    d->Cursors[static_cast<std::size_t>(Cursor)].WantedX = curve->X0 + static_cast<double>(sample) * curve->DX;
    update();
    if (d->UpdateReadings()) {
        if (OnCursorMoved) OnCursorMoved(this);
        emit cursorMoved();
    }
    return true;
}

TQXCursorReading TQXChartSurface::GetCursorReading(int Cursor) const
{
    return Cursor == 0 || Cursor == 1 ? d->Cursors[static_cast<std::size_t>(Cursor)].Reading : TQXCursorReading{};
}

int TQXChartSurface::GetSelectedCursor() const
{
    return d->SelectedCursor;
}

void TQXChartSurface::SetSelectedCursor(int Cursor)
{
    if (Cursor == 0 || Cursor == 1) d->SelectedCursor = Cursor;
}

QRect TQXChartSurface::GetPlotRect(int Band) const
{
    if (Band < 0 || Band >= GetBandCount()) return {};
    if (d->Dirty || !d->HasArea) d->DoLayout(d->HasArea ? d->Layout.Area : rect(), QFontMetricsF(font()));
    return d->Layout.Plots[static_cast<std::size_t>(Band)];
}

double TQXChartSurface::XToPixel(double X) const
{
    GetPlotRect(0);
    return d->Layout.XAxis.Mapping.ToPixel(X);
}

double TQXChartSurface::PixelToX(double Pixel) const
{
    GetPlotRect(0);
    return d->Layout.XAxis.Mapping.FromPixel(Pixel);
}

double TQXChartSurface::YToPixel(int Band, double Y) const
{
    if (Band < 0 || Band >= GetBandCount()) return std::nan("");
    GetPlotRect(Band);
    return d->Layout.YAxes[static_cast<std::size_t>(Band)].Mapping.ToPixel(Y);
}

void TQXChartSurface::Render(QPainter& Painter, const QRect& Area) const
{
    d->Paint(Painter, Area, font());
}

void TQXChartSurface::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    Render(painter, rect());
}

void TQXChartSurface::mousePressEvent(QMouseEvent* event)
{
    if (!d->CursorsVisible || event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    // Hit tests use the widget's own layout, whatever was rendered last.
    if (d->Dirty || !d->HasArea || d->Layout.Area != rect()) d->DoLayout(rect(), QFontMetricsF(font()));
    const QPointF position = event->position();
    const bool inPlot = std::any_of(d->Layout.Plots.begin(), d->Layout.Plots.end(),
                                    [&](const QRect& plot) { return plot.contains(position.toPoint()); });
    if (!inPlot) {
        QWidget::mousePressEvent(event);
        return;
    }
    int grabbed = -1;
    double nearest = CursorGrabDistance;
    for (int cursor = 0; cursor < 2; ++cursor) {
        const TQXCursorReading& reading = d->Cursors[static_cast<std::size_t>(cursor)].Reading;
        const double distance = std::fabs(XToPixel(reading.X) - position.x());
        if (reading.Valid && distance <= nearest) {
            grabbed = cursor;
            nearest = distance;
        }
    }
    if (grabbed < 0) {
        grabbed = d->SelectedCursor;
        SetCursorX(grabbed, PixelToX(position.x()));
    }
    d->DraggedCursor = grabbed;
    event->accept();
}

void TQXChartSurface::mouseMoveEvent(QMouseEvent* event)
{
    if (d->DraggedCursor < 0 || !(event->buttons() & Qt::LeftButton)) {
        QWidget::mouseMoveEvent(event);
        return;
    }
    SetCursorX(d->DraggedCursor, PixelToX(event->position().x()));
    event->accept();
}

void TQXChartSurface::mouseReleaseEvent(QMouseEvent* event)
{
    if (d->DraggedCursor < 0) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    d->DraggedCursor = -1;
    event->accept();
}

}  // namespace qx
