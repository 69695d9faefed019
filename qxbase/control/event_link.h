#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <cstdint>
#include <functional>

#include "qxbase/control/control_types.h"
#include "qxbase/control/destruction_watch.h"
#include "qxbase/framework/export.h"

namespace qx {

class TQXControlSource;
class TQXEventLink;

using TQXEventLinkEvent = std::function<void(TQXEventLink* Sender, std::uint32_t Handle,
                                             TQXEventClass EventClass, const QString& Text)>;
using TQXEventLinkNotify = std::function<void(TQXEventLink* Sender)>;
using TQXEventLinkValueUpdated = std::function<void(TQXEventLink* Sender, std::uint32_t Handle)>;

// A listener on one control source. Its owner creates it, attaches it with SetEventSource and
// frees it; freeing detaches it. Handlers may detach, re-attach or delete this link, or
// replace the handlers, while they run.
class QXBASE_EXPORT TQXEventLink {
public:
    // Owner is the object that created the link (normally a binding client); not owned.
    explicit TQXEventLink(QObject* Owner = nullptr);
    virtual ~TQXEventLink();
    TQXEventLink(const TQXEventLink&) = delete;
    TQXEventLink& operator=(const TQXEventLink&) = delete;

    // Called by the source for each delivered event; dispatches to the handlers below. An
    // exception of a handler is swallowed so that the other listeners still get the event.
    virtual void EventReceiver(std::uint32_t Handle, TQXEventClass EventClass,
                               const QString& Text);

    // Detaches from the current source (if any), then attaches to Source (if not nullptr).
    void SetEventSource(TQXControlSource* Source);
    TQXControlSource* GetEventSource() const noexcept { return FSource; }

    // nullptr once the owner has been destroyed.
    QObject* GetOwner() const noexcept { return FOwner.data(); }
    bool GetFlag() const noexcept { return FFlag; }
    void SetFlag(bool Flag) noexcept { FFlag = Flag; }
    const QString& GetName() const noexcept { return FName; }
    void SetName(const QString& Name) { FName = Name; }

    TQXEventLinkEvent OnEvent;                  // every event but qxecControlSourceRemoved
    TQXEventLinkNotify OnSourceDestroyed;       // qxecControlSourceRemoved
    TQXEventLinkValueUpdated OnValueUpdated;    // qxecControlSourceUpdated, before OnEvent
    TQXEventLinkNotify OnPropertiesChanged;     // qxecControlPropertiesChanged, before OnEvent

private:
    friend class TQXControlSource;  // keeps FSource in step with its link list

    TQXControlSource* FSource = nullptr;
    QPointer<QObject> FOwner;
    bool FFlag = false;
    QString FName;
    TQXDestructionWatch FWatch;
};

}  // namespace qx
