#include "qxbase/control/debug_event_source.h"

namespace qx {

bool DoDebug = false;

namespace {

// Set when the debug source has been destroyed at exit. Constant-initialised, so it is valid
// for every static destructor, also those that run after the debug source's.
bool GDebugSourceGone = false;

struct TDebugSourceHolder {
    TQXDebugEventSource Source;

    ~TDebugSourceHolder()
    {
        GDebugSourceGone = true;
        DoDebug = false;
    }
};

}  // namespace

TQXDebugEventSource::TQXDebugEventSource()
{
    DoDebug = false;
}

void TQXDebugEventSource::EventLinksChanged()
{
    DoDebug = GetEventLinkCount() > 0;
}

void TQXDebugEventSource::FireDebugEvent(const QString& Text)
{
    EventFire(0, qxecDebugClientMessage, Text);
}

TQXDebugEventSource* FDebugEventSource()
{
    if (GDebugSourceGone) return nullptr;
    static TDebugSourceHolder holder;
    return &holder.Source;
}

}  // namespace qx
