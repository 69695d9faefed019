#pragma once

#include <QString>

#include "qxbase/control/control_source.h"

namespace qxsheet {

// Turns a debug trace line (fields joined by the character with code 8) into readable
// "name=value" fields, named by the line's kind. Unknown kinds show their fields numbered.
QString FormatTraceLine(const QString& line);

// A property's current value as a person reads it: the choice's text for an enumeration,
// otherwise the value as text; "<no value>" when the source gives none.
QString PropertyValueText(qx::TQXControlSource& source, qx::TQXPropertyHandle handle);

}  // namespace qxsheet
