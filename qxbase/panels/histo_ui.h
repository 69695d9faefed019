#pragma once

#include <QMetaObject>
#include <QPointer>

#include "qxbase/chart/chart_surface.h"
#include "qxbase/framework/export.h"
#include "qxbase/panels/histo_cursor_panel.h"

namespace qx {

// The drawing surface of a chart panel: a chart surface that keeps an attached cursor read-out
// current. When a cursor moves it writes both readings into the read-out (SetValues with the
// exponents EngineeringExponent picks, 0 on a date-time axis whose values are seconds anyway),
// the x axis's scale and time format, and the curves' unit when both cursors' curves share it
// (none otherwise); the names of the cursors' curves go to UpdateCurveLabel. The other way
// round, the read-out's up-down control sets the selected cursor's curve and its radio buttons
// select the cursor a click moves.
class QXBASE_EXPORT TKSHistoUI : public TQXChartSurface {
    Q_OBJECT

public:
    explicit TKSHistoUI(QWidget* parent = nullptr);
    ~TKSHistoUI() override;

    // Not owned; nullptr detaches. A read-out that is destroyed is detached by itself.
    TKSHistoCursorPanel* GetCursorPanel() const { return FCursorPanel; }
    void SetCursorPanel(TKSHistoCursorPanel* Panel);
    // With engineering units (the start) the read-out writes values with prefixes ("12.5 m");
    // without, plain ("0.0125"). The axes keep their prefixes.
    bool GetUseEngineeringUnits() const { return FUseEngineeringUnits; }
    void SetUseEngineeringUnits(bool Value);
    // Writes readings, curves and selection into the read-out now; cursors that stand on no
    // sample clear its values.
    void UpdateCursorPanel();

private:
    QPointer<TKSHistoCursorPanel> FCursorPanel;
    bool FUseEngineeringUnits = true;
    QMetaObject::Connection FCurveConnection;
    QMetaObject::Connection FSelectConnection;
};

// The y axis of band `Index`; nullptr for a null surface or an index outside its bands.
QXBASE_EXPORT TQXYAxisDataObject* YAxisDataObjectGet(int Index, TKSHistoUI* UI);

}  // namespace qx
