#include "qxbase/control/event_link.h"

#include "qxbase/control/control_source.h"

namespace qx {

namespace {

// Calls a handler through a copy, so that a handler that replaces itself or frees the link
// does not destroy the function it is running in; its exceptions are discarded.
template <typename F, typename... A>
void CallGuarded(const F& Handler, const A&... Args) noexcept
{
    if (!Handler) return;
    try {
        F call = Handler;
        call(Args...);
    } catch (...) {
    }
}

}  // namespace

TQXEventLink::TQXEventLink(QObject* Owner) : FOwner(Owner) {}

TQXEventLink::~TQXEventLink()
{
    SetEventSource(nullptr);
}

void TQXEventLink::SetEventSource(TQXControlSource* Source)
{
    if (FSource != nullptr) {
        FSource->EventLinkRemove(this);
        FSource = nullptr;
    }
    if (Source != nullptr) Source->EventLinkAdd(this);
}

void TQXEventLink::EventReceiver(std::uint32_t Handle, TQXEventClass EventClass,
                                 const QString& Text)
{
    TQXDestructionWatch::Frame frame(FWatch);
    switch (EventClass) {
    case qxecControlSourceRemoved:
        CallGuarded(OnSourceDestroyed, this);
        return;
    case qxecControlSourceUpdated:
        CallGuarded(OnValueUpdated, this, Handle);
        break;
    case qxecControlPropertiesChanged:
        CallGuarded(OnPropertiesChanged, this);
        break;
    default:
        break;
    }
    if (frame.Gone()) return;
    CallGuarded(OnEvent, this, Handle, EventClass, Text);
}

}  // namespace qx
