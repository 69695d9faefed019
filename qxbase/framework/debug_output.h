#pragma once

#include <QLoggingCategory>
#include <QString>

#include "qxbase/framework/export.h"

namespace qx {

// The operating system's debug output of this system: the Qt logging category "qx.debug".
// Hosts and tests route or silence it with Qt's message handler and logging rules; as a rule
// ending in ".debug" names a message type, silencing takes "qx.debug.debug=false".
QXBASE_EXPORT Q_DECLARE_LOGGING_CATEGORY(lcQxDebug)

// Writes one line to "qx.debug" at debug level, unquoted. Never raises.
QXBASE_EXPORT void KSDebugOutputString(const QString& text);

}  // namespace qx
