#pragma once

#include <QString>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "qxbase/control/control_types.h"
#include "qxbase/control/destruction_watch.h"
#include "qxbase/framework/export.h"
#include "qxbase/framework/variant.h"

namespace qx {

class TQXEventLink;

// The debug switch: on exactly while a listener is linked to the debug event source. Every
// trace line is built only while it is on.
extern QXBASE_EXPORT bool DoDebug;
// Program-wide switch that owners consult before deleting properties or bindings they cannot
// resolve; the registry itself never reads it.
extern QXBASE_EXPORT bool DisableProperyDelete;

// A new process-unique property handle, never 0. Control sources and other owners of property
// items (modules) draw from this one 32-bit counter, so until it wraps a handle of one owner
// never names an item of another. Thread-safe.
QXBASE_EXPORT TQXPropertyHandle NewPropertyHandle() noexcept;

// The list of an enumeration property: the texts as an array of variants from index 0.
QXBASE_EXPORT Variant EnumerationTexts(const QStringList& Texts);

// A provider of named properties and events. Listeners attach through TQXEventLink.
//
// Handles are process-unique ids looked up in this source's own list: a handle that is 0,
// stale or belongs to another source is treated as no property (false, cleared outputs).
// Handlers called during delivery may detach or delete links, add links, fire further events
// or destroy this source; delivery then goes on with the links still due, or stops if the
// source is gone.
class QXBASE_EXPORT TQXControlSource {
public:
    TQXControlSource();
    virtual ~TQXControlSource();
    TQXControlSource(const TQXControlSource&) = delete;
    TQXControlSource& operator=(const TQXControlSource&) = delete;

    virtual void SetObjectDescription(const QString& Description);
    // Removes and frees every property item.
    virtual void ClearProperties();
    virtual TQXControlSourceCapabilities GetControlSourceCapabilities() const;
    // The names of all properties, in registration order, as an array of strings indexed from
    // 0; Null when there are none.
    virtual void GetPropertyList(Variant& List) const;
    // The first property with exactly this name; false and handle 0 when there is none.
    virtual bool GetPropertyHandle(const QString& Name, TQXPropertyHandle& Handle) const;
    // The first property with exactly this description; false and handle 0 when none.
    virtual bool GetPropertyHandleFromDescription(const QString& Description,
                                                  TQXPropertyHandle& Handle) const;
    // False and an empty text for a handle that names no property of this source.
    virtual bool GetPropertyDescriptionFromHandle(TQXPropertyHandle Handle,
                                                  QString& Description) const;
    virtual bool GetPropertyNameFromHandle(TQXPropertyHandle Handle, QString& Name) const;
    // False with 0 and an empty text for an unknown handle.
    virtual bool GetPropertyType(TQXPropertyHandle Handle, std::uint16_t& DataType,
                                 QString& TypeInfo) const;
    // A copy of the property's choices (Null for a property that is not an enumeration); true
    // for every known handle. False and Null for an unknown handle.
    virtual bool GetEnumerationList(TQXPropertyHandle Handle, Variant& List) const;
    // The array index (not a zero-based position) of the first choice equal to Text. False and
    // 0 when no choice matches, the handle is unknown or the property has no list. A negative
    // array index is handed out as its 32-bit two's complement.
    virtual bool GetEnumerationHandle(TQXPropertyHandle Handle, const QString& Text,
                                      std::uint32_t& Index) const;
    // Value is Null first; true only when the property's callback was called to read it. An
    // exception of the callback propagates.
    virtual bool GetPropertyValue(TQXPropertyHandle Handle, Variant& Value);
    // Writes through the property's callback and then tells every link that the property has a
    // new value. Sender names who asks (nullptr: nobody) in the debug trace. False, and nothing
    // done, for an unknown handle or a property without callback; false as well when a trace
    // listener removes the property or destroys this source before the write. An exception of
    // the callback propagates, and then no event is fired.
    virtual bool SetPropertyValue(TQXControlSource* Sender, TQXPropertyHandle Handle,
                                  const Variant& Value);
    // Removes every event and registers the four system events again.
    virtual void EventClear();
    // Called after a link was added or removed; nothing in the base class.
    virtual void EventLinksChanged();

    // Raises EQXControlSourceException "PropertyName or is not unique: <Name>" when Name is
    // registered already; the list is then unchanged.
    void RegisterProperty(const QString& Description, const QString& Name,
                          TQXPropertyGetSet GetSet, std::uint16_t DataType,
                          const QString& TypeInfo, bool Range, double RangeLow,
                          double RangeHigh, std::uint32_t Identifier);
    // Always registers an enumeration property (DataType is ignored) whose choices are a copy
    // of EnumerationList. Raises EQXControlSourceException
    // "PropertyName or handle not unique: <Name>" when Name is registered already.
    void RegisterProperty(const QString& Description, const QString& Name,
                          TQXPropertyGetSet GetSet, std::uint16_t DataType,
                          const Variant& EnumerationList, std::uint32_t Identifier);
    bool IsUniqueProperty(const QString& Name) const;
    // Removes every property with exactly this name; false when there was none.
    bool RemovePropertyByName(const QString& Name);
    // Through the virtual lookups; false and an empty text when either step fails.
    bool GetDescriptionFromName(const QString& Name, QString& Description) const;
    bool GetNameFromDescription(const QString& Description, QString& Name) const;

    int GetPropertyCount() const noexcept { return static_cast<int>(FProperties.size()); }
    // The item behind a handle of this source; nullptr for 0, stale or foreign handles.
    const TQXPropertyItem* GetPropertyItem(TQXPropertyHandle Handle) const noexcept;

    void SetControlSourceCapabilities(TQXControlSourceCapabilities Capabilities) noexcept
    {
        FCapabilities = Capabilities;
    }
    const QString& GetObjectDescription() const noexcept { return FObjectDescription; }
    bool GetDestroying() const noexcept { return FDestroying; }

    // Raises EQXControlSourceException "Internal eventname not unique" when an event with this
    // internal name exists; the table is then unchanged.
    void EventAdd(std::uint32_t Handle, TQXEventClass EventClass, const QString& Name,
                  const QString& Description);
    bool IsUniqueEvent(const QString& Name) const;
    // The first event with this internal name; false, handle 0 and class 0 when none.
    bool EventNameToHandle(const QString& Name, std::uint32_t& Handle,
                           TQXEventClass& EventClass) const;
    // The first event with this handle; false, empty texts and class 0 when none.
    bool EventHandleToName(std::uint32_t Handle, QString& Name, QString& Description,
                           TQXEventClass& EventClass) const;
    void EventGetEvents(TQXDynArrayString& Names, TQXDynArrayString& Descriptions,
                        TQXDynArrayEventClass& Classes) const;
    // Delivers an event to the links (or, for qxecDebugMessage, to the debug event source).
    // Exceptions of listeners are swallowed; those of the trace building propagate.
    void EventFire(std::uint32_t Handle, TQXEventClass EventClass, const QString& Text);
    void EventFirePropertyUpdated(const QString& PropertyName);
    void EventFireAllPropertiesUpdated();
    void UpdatedProperties();
    // Attaches a link (detaching it from any other source first); a listed link stays as it
    // is, and a source that is being destroyed takes no new links. Always true.
    bool EventLinkAdd(TQXEventLink* Link);
    // Detaches a link; true only if it was listed. While the source is being destroyed the
    // link is only dropped from delivery, and the result is true.
    bool EventLinkRemove(TQXEventLink* Link);

    int GetEventCount() const noexcept { return static_cast<int>(FEvents.size()); }
    int GetEventLinkCount() const noexcept { return static_cast<int>(FEventLinkCount); }
    // The attached links, in order of attachment.
    std::vector<TQXEventLink*> GetEventLinks() const;

protected:
    // Marks the source as being destroyed and tells every link (last first) that it is going
    // away; afterwards no link points at it. The destructor does this itself; a derived class
    // may call it at the start of its own destructor so that listeners still meet the whole
    // object. Later calls do nothing.
    void BeginDestruction();

private:
    class TDelivery;

    TQXPropertyItem* FindProperty(TQXPropertyHandle Handle) const noexcept;
    // The first property whose Field equals Text; handle 0 and false when none.
    bool FindHandleBy(QString TQXPropertyItem::*Field, const QString& Text,
                      TQXPropertyHandle& Handle) const;
    std::unique_ptr<TQXPropertyItem> NewProperty(const QString& Name, const QString& Message);
    QString TraceValueText(const TQXPropertyItem& Item, const Variant& Value) const;
    void DeliverForward(std::uint32_t Handle, TQXEventClass EventClass, const QString& Text);
    void DeliverBackward(std::uint32_t Handle, TQXEventClass EventClass, const QString& Text);
    void TraceUpdate();
    void CompactLinks();

    std::vector<std::unique_ptr<TQXPropertyItem>> FProperties;
    std::vector<TQXEventItem> FEvents;
    // Not owned. A link removed during a delivery leaves nullptr behind so that the running
    // walks keep their places; the gaps close when the outermost delivery ends.
    std::vector<TQXEventLink*> FEventLinks;
    std::size_t FEventLinkCount = 0;
    int FDeliveryDepth = 0;
    TQXControlSourceCapabilities FCapabilities;
    QString FObjectDescription;
    bool FDestroying = false;
    TQXDestructionWatch FWatch;
    // Shared with the TQXControlSourceRef handed out; made on first demand, cut when the links
    // have been told of the destruction.
    std::shared_ptr<const bool> FLife;

    friend class TQXControlSourceRef;
};

// A pointer to a control source that reads as null once the source has been destroyed (from the
// moment its links have been told). For holders that keep a source beyond one call without an
// event link on it, such as a binding whose property could not be found. Set and read like the
// plain pointer it stands for; setting it to a source being destroyed gives null.
class QXBASE_EXPORT TQXControlSourceRef {
public:
    TQXControlSourceRef() noexcept = default;
    TQXControlSourceRef(TQXControlSource* Source);  // NOLINT(google-explicit-constructor)

    TQXControlSource* Get() const noexcept { return FLife.expired() ? nullptr : FSource; }
    operator TQXControlSource*() const noexcept { return Get(); }  // NOLINT(google-explicit-constructor)
    TQXControlSource* operator->() const noexcept { return Get(); }

private:
    TQXControlSource* FSource = nullptr;
    std::weak_ptr<const bool> FLife;
};

}  // namespace qx
