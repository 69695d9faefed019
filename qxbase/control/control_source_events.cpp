#include "qxbase/control/control_source.h"

#include <QChar>
#include <QStringList>
#include <algorithm>

#include "qxbase/control/debug_event_source.h"
#include "qxbase/control/event_link.h"
#include "qxbase/resources/control_texts.h"

namespace qx {

// One walk over the link list. While any walk runs, removed links leave gaps instead of
// shifting the list; the outermost walk closes them, unless the source died meanwhile.
class TQXControlSource::TDelivery {
public:
    explicit TDelivery(TQXControlSource& Source) noexcept : FSource(Source), FFrame(Source.FWatch)
    {
        ++Source.FDeliveryDepth;
    }
    ~TDelivery()
    {
        if (FFrame.Gone()) return;
        if (--FSource.FDeliveryDepth == 0) FSource.CompactLinks();
    }
    TDelivery(const TDelivery&) = delete;
    TDelivery& operator=(const TDelivery&) = delete;

    bool Gone() const noexcept { return FFrame.Gone(); }

private:
    TQXControlSource& FSource;
    TQXDestructionWatch::Frame FFrame;
};

namespace {

void CallReceiver(TQXEventLink* Link, std::uint32_t Handle, TQXEventClass EventClass,
                  const QString& Text) noexcept
{
    try {
        Link->EventReceiver(Handle, EventClass, Text);
    } catch (...) {
        // one faulty listener must not stop the delivery to the others
    }
}

void FireDebugText(const QString& Text)
{
    if (TQXDebugEventSource* debug = FDebugEventSource()) debug->FireDebugEvent(Text);
}

}  // namespace

void TQXControlSource::EventClear()
{
    FEvents.clear();
    EventAdd(0, qxecDebugMessage, QStringLiteral("SysDebug"), res::_rsSysDebug);
    EventAdd(0, qxecControlSourceUpdated, QStringLiteral("SysPropertyUpdated"),
             res::_rsSysPropertyUpdated);
    EventAdd(0, qxecControlSourceRemoved, QStringLiteral("SysControlSourceRemoved"),
             res::_rsSysControlSourceRemoved);
    EventAdd(0, qxecControlPropertiesChanged, QStringLiteral("SysControlPropertiesChanged"),
             res::_rsSysControlPropertiesChanged);
}

void TQXControlSource::EventLinksChanged() {}

void TQXControlSource::EventAdd(std::uint32_t Handle, TQXEventClass EventClass,
                                const QString& Name, const QString& Description)
{
    if (!IsUniqueEvent(Name))
        throw EQXControlSourceException(QStringLiteral("Internal eventname not unique"));
    FEvents.push_back(TQXEventItem{Handle, EventClass, Name, Description});
}

bool TQXControlSource::IsUniqueEvent(const QString& Name) const
{
    return std::none_of(FEvents.begin(), FEvents.end(),
                        [&](const TQXEventItem& e) { return e.FName == Name; });
}

bool TQXControlSource::EventNameToHandle(const QString& Name, std::uint32_t& Handle,
                                         TQXEventClass& EventClass) const
{
    Handle = 0;
    EventClass = qxecErrorWarningLevel;
    for (const TQXEventItem& e : FEvents) {
        if (e.FName == Name) {
            Handle = e.FHandle;
            EventClass = e.FEventClass;
            return true;
        }
    }
    return false;
}

bool TQXControlSource::EventHandleToName(std::uint32_t Handle, QString& Name,
                                         QString& Description, TQXEventClass& EventClass) const
{
    Name.clear();
    Description.clear();
    EventClass = qxecErrorWarningLevel;
    for (const TQXEventItem& e : FEvents) {
        if (e.FHandle == Handle) {
            Name = e.FName;
            Description = e.FDescription;
            EventClass = e.FEventClass;
            return true;
        }
    }
    return false;
}

void TQXControlSource::EventGetEvents(TQXDynArrayString& Names, TQXDynArrayString& Descriptions,
                                      TQXDynArrayEventClass& Classes) const
{
    Names.clear();
    Descriptions.clear();
    Classes.clear();
    for (const TQXEventItem& e : FEvents) {
        Names.append(e.FName);
        Descriptions.append(e.FDescription);
        Classes.push_back(e.FEventClass);
    }
}

void TQXControlSource::EventFire(std::uint32_t Handle, TQXEventClass EventClass,
                                 const QString& Text)
{
    // A copy: a listener may change whatever the caller's text refers to.
    const QString text = Text;
    if (EventClass == qxecControlSourceRemoved) {
        DeliverBackward(Handle, EventClass, text);
        return;
    }
    if (EventClass == qxecDebugMessage) {
        FireDebugText(text);
        return;
    }
    const bool errorLevel = EventClass <= qxecErrorCriticalLevel;
    if (DoDebug && (errorLevel || EventClass == qxecUserEvent)) {
        QStringList fields;
        if (errorLevel) {
            fields << QStringLiteral("5") << FObjectDescription
                   << QString::number(static_cast<int>(EventClass)) << text;
        } else {
            QString description;
            for (const TQXEventItem& e : FEvents) {
                if (e.FEventClass == qxecUserEvent && e.FHandle == Handle) {
                    description = e.FDescription;
                    break;
                }
            }
            fields << QStringLiteral("3") << FObjectDescription << QStringLiteral("9")
                   << description << text;
        }
        TQXDestructionWatch::Frame frame(FWatch);
        FireDebugText(fields.join(QChar(8)));
        if (frame.Gone()) return;
    }
    if (EventClass == qxecControlPropertiesChanged)
        DeliverBackward(Handle, EventClass, text);
    else
        DeliverForward(Handle, EventClass, text);
}

void TQXControlSource::EventFirePropertyUpdated(const QString& PropertyName)
{
    if (DoDebug) {
        TQXDestructionWatch::Frame frame(FWatch);
        TraceUpdate();
        if (frame.Gone()) return;
    }
    TQXPropertyHandle handle = 0;
    if (GetPropertyHandle(PropertyName, handle))
        EventFire(handle, qxecControlSourceUpdated, QString());
}

void TQXControlSource::EventFireAllPropertiesUpdated()
{
    TQXDestructionWatch::Frame frame(FWatch);
    if (DoDebug) {
        TraceUpdate();
        if (frame.Gone()) return;
    }
    // Listeners may change the property set meanwhile: the properties registered now are
    // announced, minus those removed before their turn.
    std::vector<TQXPropertyHandle> handles;
    handles.reserve(FProperties.size());
    for (const auto& item : FProperties) handles.push_back(item->GetHandle());
    for (TQXPropertyHandle handle : handles) {
        if (FindProperty(handle) == nullptr) continue;
        EventFire(handle, qxecControlSourceUpdated, QString());
        if (frame.Gone()) return;
    }
}

void TQXControlSource::UpdatedProperties()
{
    EventFire(0, qxecControlPropertiesChanged, QString());
}

bool TQXControlSource::EventLinkAdd(TQXEventLink* Link)
{
    if (Link == nullptr || FDestroying) return true;
    if (std::find(FEventLinks.begin(), FEventLinks.end(), Link) != FEventLinks.end()) return true;
    if (Link->FSource != nullptr) {
        // A link listens to one source at a time.
        TQXDestructionWatch::Frame frame(FWatch);
        Link->FSource->EventLinkRemove(Link);
        if (frame.Gone() || FDestroying) return true;
        Link->FSource = nullptr;
    }
    FEventLinks.push_back(Link);
    ++FEventLinkCount;
    Link->FSource = this;
    EventLinksChanged();
    return true;
}

bool TQXControlSource::EventLinkRemove(TQXEventLink* Link)
{
    const auto it = std::find(FEventLinks.begin(), FEventLinks.end(), Link);
    const bool listed = Link != nullptr && it != FEventLinks.end();
    if (FDestroying) {
        // The list is about to be freed; the link only leaves the delivery in progress, so a
        // link deleted by a listener is not called afterwards.
        if (listed) {
            *it = nullptr;
            --FEventLinkCount;
        }
        if (Link != nullptr && Link->FSource == this) Link->FSource = nullptr;
        return true;
    }
    if (!listed) return false;
    if (FDeliveryDepth > 0)
        *it = nullptr;
    else
        FEventLinks.erase(it);
    --FEventLinkCount;
    Link->FSource = nullptr;
    EventLinksChanged();
    return true;
}

TQXControlSourceRef::TQXControlSourceRef(TQXControlSource* Source)
{
    if (Source == nullptr || Source->FDestroying) return;
    if (!Source->FLife) Source->FLife = std::make_shared<const bool>(true);
    FSource = Source;
    FLife = Source->FLife;
}

std::vector<TQXEventLink*> TQXControlSource::GetEventLinks() const
{
    std::vector<TQXEventLink*> links;
    links.reserve(FEventLinkCount);
    for (TQXEventLink* link : FEventLinks) {
        if (link != nullptr) links.push_back(link);
    }
    return links;
}

void TQXControlSource::BeginDestruction()
{
    if (FDestroying) return;
    FDestroying = true;
    DeliverBackward(0, qxecControlSourceRemoved, QString());
    FLife.reset();
    for (TQXEventLink*& link : FEventLinks) {
        if (link == nullptr) continue;
        if (link->FSource == this) link->FSource = nullptr;
        link = nullptr;
    }
    FEventLinkCount = 0;
    if (FDeliveryDepth == 0) FEventLinks.clear();
}

void TQXControlSource::DeliverForward(std::uint32_t Handle, TQXEventClass EventClass,
                                      const QString& Text)
{
    TDelivery delivery(*this);
    // Links added meanwhile lie beyond the end and do not get this event.
    const std::size_t end = FEventLinks.size();
    for (std::size_t i = 0; i < end; ++i) {
        TQXEventLink* link = FEventLinks[i];
        if (link == nullptr) continue;
        CallReceiver(link, Handle, EventClass, Text);
        if (delivery.Gone()) return;
    }
}

void TQXControlSource::DeliverBackward(std::uint32_t Handle, TQXEventClass EventClass,
                                       const QString& Text)
{
    TDelivery delivery(*this);
    for (std::size_t i = FEventLinks.size(); i-- > 0;) {
        TQXEventLink* link = FEventLinks[i];
        if (link == nullptr) continue;
        CallReceiver(link, Handle, EventClass, Text);
        if (delivery.Gone()) return;
    }
}

void TQXControlSource::TraceUpdate()
{
    EventFire(0, qxecDebugMessage, QStringLiteral("2") + QChar(8) + FObjectDescription);
}

void TQXControlSource::CompactLinks()
{
    if (FEventLinks.size() != FEventLinkCount) std::erase(FEventLinks, nullptr);
}

}  // namespace qx
