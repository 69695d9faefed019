#pragma once

#include <QTextStream>

namespace qxsheet {

// Runs the console walk-through of the bus and the channel model; returns the exit code.
int RunConsoleDemo(QTextStream& out);

}  // namespace qxsheet
