#include "qxbase/framework/debug_output.h"

namespace qx {

Q_LOGGING_CATEGORY(lcQxDebug, "qx.debug")

void KSDebugOutputString(const QString& text) { qCDebug(lcQxDebug).noquote() << text; }

}  // namespace qx
