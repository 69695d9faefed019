#pragma once

#include <QString>
#include <QTextStream>

namespace qxsheet {

// The binding walk-through, headless: loads the worksheet at `Path` (the bundled one when empty),
// lists the bindings of its switch and button panels, then listens on the debug event source and
// on every panel they are bound to while the first switch is toggled twice and the first button
// is pressed, printing each trace line and each "SysPropertyUpdated" delivery (panel, property,
// new value); last it closes the worksheet, whose clients drop their bindings as the bound
// panels go (their debug output is printed too). Returns 0; 1 after writing the reason to `err` when the worksheet does not load
// or has no switch or no button.
int RunBindingsDemo(const QString& Path, QTextStream& out, QTextStream& err);

}  // namespace qxsheet
