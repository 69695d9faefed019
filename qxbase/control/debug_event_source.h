#pragma once

#include <QString>

#include "qxbase/control/control_source.h"
#include "qxbase/framework/export.h"

namespace qx {

// The control source that carries the program's debug trace: every qxecDebugMessage of any
// source arrives here and is delivered to the debug viewer's links as qxecDebugClientMessage.
// Linking the first listener turns DoDebug on, unlinking the last turns it off.
class QXBASE_EXPORT TQXDebugEventSource : public TQXControlSource {
public:
    TQXDebugEventSource();

    void EventLinksChanged() override;
    // Fires qxecDebugClientMessage with handle 0 and Text on this source.
    void FireDebugEvent(const QString& Text);
};

// The program's debug event source, created on first use and kept until the process ends.
// Returns nullptr once it has been destroyed at exit, so sources that die later skip tracing.
QXBASE_EXPORT TQXDebugEventSource* FDebugEventSource();

}  // namespace qx
