#pragma once

#include <QString>
#include <QTextStream>

namespace qxsheet {

// Loads the worksheet (the bundled one when `Path` is empty), steps its first simulated source
// `Cycles` times by hand and prints what each data panel took per cycle, then the worksheet's
// connection overview. Returns 0, or 1 after writing the reason to `err` when the worksheet does
// not load or holds no simulated source.
int RunDatapathDemo(const QString& Path, int Cycles, QTextStream& out, QTextStream& err);

}  // namespace qxsheet
