#pragma once

#include <QString>
#include <QTextStream>

namespace qx {
class TKSChartPanel;
}

// What the data path demo prints of a chart panel.
namespace qxsheet {

// What the chart shows after a cycle: kept samples and view of a recorder, the capture and
// trigger state of a scope, the strongest bin of each spectrum.
QString ChartCycleLine(const qx::TKSChartPanel& Chart);

// Places the chart's two cursors on its first curve at a quarter and three quarters of the x
// axis and prints the cursor panel's read-out: x, y, dx, dy and the frequency 1/dx.
void PrintCursorReadout(QTextStream& out, qx::TKSChartPanel& Chart);

}  // namespace qxsheet
