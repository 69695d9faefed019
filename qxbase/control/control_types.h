#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <functional>
#include <vector>

#include "qxbase/framework/com_types.h"
#include "qxbase/framework/exception.h"
#include "qxbase/framework/export.h"
#include "qxbase/framework/set.h"
#include "qxbase/framework/variant.h"

namespace qx {

// Identifies one registered property of one control source while the property lives; 0 is
// none. Never persisted: bindings store property names.
using TQXPropertyHandle = std::uint32_t;

// Data type of an enumeration property: its value is the list of choices (an array of texts)
// and the values written to it are indices into that list.
inline constexpr std::uint16_t varQXEnumeration = 0x0101;

enum TQXControlSourceCapability : std::uint8_t {
    qxcscSupportsProperties,  // the source offers properties to binding clients
};
using TQXControlSourceCapabilities = Set<TQXControlSourceCapability>;

enum TQXEventClass : std::uint8_t {
    qxecErrorWarningLevel = 0,
    qxecErrorSeriousLevel = 1,
    qxecErrorCriticalLevel = 2,
    qxecDebugMessage = 3,         // forwarded to the debug event source only
    qxecDebugClientMessage = 4,   // a debug text as the debug viewer receives it
    qxecControlSourceUpdated = 5, // the property with the given handle has a new value
    qxecControlSourceRemoved = 6, // the source is being destroyed
    qxecControlPropertiesChanged = 7,  // the property set changed; handles may be stale
    qxecDataEvent = 8,
    qxecUserEvent = 9,
};
using TQXEventClasses = Set<TQXEventClass>;

using TQXDynArrayString = QStringList;
using TQXDynArrayEventClass = std::vector<TQXEventClass>;

// Raised by a control source for a duplicate property or event name.
class QXBASE_EXPORT EQXControlSourceException : public Exception {
public:
    using Exception::Exception;
};

class TQXPropertyItem;

// Reads (Get true: store the current value into Value) or writes (Get false: take the new value
// from Value) a property in its owner. The registry always passes Enum false and never looks
// at the result.
using TQXPropertyGetSet =
    std::function<HRESULT(TQXPropertyItem* Handle, bool Get, bool Enum, Variant& Value)>;

// One registered property. The owner reads its fields (FIdentifier tells its properties apart);
// the handle is assigned by the registry and cannot change.
class QXBASE_EXPORT TQXPropertyItem {
public:
    explicit TQXPropertyItem(TQXPropertyHandle Handle) noexcept : FHandle(Handle) {}
    TQXPropertyItem(const TQXPropertyItem&) = delete;
    TQXPropertyItem& operator=(const TQXPropertyItem&) = delete;

    TQXPropertyHandle GetHandle() const noexcept { return FHandle; }

    QString FName;
    QString FDescription;
    std::uint16_t FDataType = 0;  // a variant type code, or varQXEnumeration
    Variant FValue;               // the choices of an enumeration property; Null otherwise
    QString FTypeInfo;
    bool FRange = false;
    double FRangeLow = 0.0;
    double FRangeHigh = 0.0;
    TQXPropertyGetSet FGetSet;
    std::uint32_t FIdentifier = 0;  // chosen by the owner, never interpreted here

private:
    TQXPropertyHandle FHandle;
};

// One named event of a control source. The system events all have handle 0.
struct TQXEventItem {
    std::uint32_t FHandle = 0;
    TQXEventClass FEventClass = qxecErrorWarningLevel;
    QString FName;  // internal name, unique within the source
    QString FDescription;
};

}  // namespace qx
