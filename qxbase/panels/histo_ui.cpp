#include "qxbase/panels/histo_ui.h"

#include <cmath>

#include "qxbase/chart/eng_units.h"

namespace qx {

TKSHistoUI::TKSHistoUI(QWidget* parent) : TQXChartSurface(parent)
{
    connect(this, &TQXChartSurface::cursorMoved, this, &TKSHistoUI::UpdateCursorPanel);
}

TKSHistoUI::~TKSHistoUI() = default;

void TKSHistoUI::SetCursorPanel(TKSHistoCursorPanel* Panel)
{
    disconnect(FCurveConnection);
    disconnect(FSelectConnection);
    FCursorPanel = Panel;
    if (!Panel) return;
    FCurveConnection = connect(Panel, &TKSHistoCursorPanel::curveChanged, this, [this](int Cursor, int Curve) {
        SetCursorCurve(Cursor - 1, Curve);
        UpdateCursorPanel();
    });
    FSelectConnection = connect(Panel, &TKSHistoCursorPanel::cursorSelected, this,
                                [this](int Cursor) { SetSelectedCursor(Cursor - 1); });
    UpdateCursorPanel();
}

void TKSHistoUI::UpdateCursorPanel()
{
    TKSHistoCursorPanel* panel = FCursorPanel;
    if (!panel) return;
    const TQXXAxisDataObject& xAxis = GetXAxis();
    panel->SetTimeFormat(xAxis.TimeFormat);
    panel->SetCurveCount(GetCurveCount());
    QString units[2];
    for (int cursor = 0; cursor < 2; ++cursor) {
        const int curve = GetCursorCurve(cursor);
        const TQXChartCurve* c = GetCurve(curve);
        panel->SetCursorCurve(cursor + 1, c ? curve : -1);
        panel->UpdateCurveLabel(cursor + 1, c ? c->Name : QString());
        units[cursor] = c ? c->Unit : QString();
    }
    panel->SetSelectedCursorIndex(GetSelectedCursor() + 1);

    const TQXCursorReading r1 = GetCursorReading(0);
    const TQXCursorReading r2 = GetCursorReading(1);
    if (!r1.Valid || !r2.Valid) {
        panel->ClearValues();
        return;
    }
    const bool plainX = xAxis.Scale == xasDateTime || !FUseEngineeringUnits;
    const int ex1 = plainX ? 0 : EngineeringExponent(r1.X);
    const int ex2 = plainX ? 0 : EngineeringExponent(r2.X);
    const int ey1 = FUseEngineeringUnits ? EngineeringExponent(r1.Y) : 0;
    const int ey2 = FUseEngineeringUnits ? EngineeringExponent(r2.Y) : 0;
    panel->SetUseEngineeringUnits(FUseEngineeringUnits);
    const auto scaled = [](double Value, int Exponent) { return Value / std::pow(10.0, Exponent); };
    panel->SetValues(scaled(r1.X, ex1), scaled(r1.Y, ey1), ex1, ey1, scaled(r2.X, ex2), scaled(r2.Y, ey2), ex2, ey2,
                     xAxis.Scale, units[0] == units[1] ? units[0] : QString());
}

void TKSHistoUI::SetUseEngineeringUnits(bool Value)
{
    FUseEngineeringUnits = Value;
    UpdateCursorPanel();
}

TQXYAxisDataObject* YAxisDataObjectGet(int Index, TKSHistoUI* UI) { return UI ? UI->GetYAxis(Index) : nullptr; }

}  // namespace qx
