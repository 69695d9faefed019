#pragma once

#include <QTextStream>

namespace qxsheet {

// Converts a few thermocouple voltages to temperatures and back, and shows the cold-junction
// and unit conversions.
void ShowThermocouples(QTextStream& out);

}  // namespace qxsheet
