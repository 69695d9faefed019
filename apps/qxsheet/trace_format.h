#pragma once

#include <QString>

namespace qxsheet {

// Turns a debug trace line (fields joined by the character with code 8) into readable
// "name=value" fields, named by the line's kind. Unknown kinds show their fields numbered.
QString FormatTraceLine(const QString& line);

}  // namespace qxsheet
