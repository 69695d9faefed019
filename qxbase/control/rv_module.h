#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "qxbase/control/control_types.h"
#include "qxbase/control/destruction_watch.h"
#include "qxbase/framework/export.h"
#include "qxbase/framework/variant.h"
#include "qxbase/measure/channel_information.h"
#include "qxbase/measure/channel_types.h"

namespace qx {

// The kinds of input and output a module offers.
enum TKSRVSubSystemType : std::uint8_t {
    rvsusNone,
    rvsusAd,
    rvsusDa,
    rvsusDin,
    rvsusDout,
    rvsusSRL,
    rvsusCT,
    rvsusFrequency,
};

// How a module delivers its data.
enum TKSDataFlow : std::uint8_t {
    dafDefault,
    dafContinuous,
    dafSingleValue,
    dafConnectContinous,
    dafConnectBurst,
};

// Whether raw sample words are straight binary or two's complement.
enum TKSEncoding : std::uint8_t {
    encBinary,
    enc2scomp,
};

class TKSRVModule;
class TKSRVPropertyItem;

// Receives a module's block set. The buffers stay the sender's: copy what you keep.
using TKSRVOnDataMethod =
    std::function<void(TKSRVModule* Sender, const TRVShortdefs& Shortdefs,
                       const TRVDataDoubleArray& Data, const TRVDataDoubleArray& TimeChannel,
                       double StartTime)>;
using TKSRVOnErrorMethod = std::function<void(TKSRVModule* Sender, const QString& Error)>;
// Told that ChangedItems or UpdateRegistration has set its flag.
using TKSRVOnChangeMethod = std::function<void(TKSRVModule* Sender)>;
// Applies a value written to a module property; the item already holds it in FCurrentValue.
// False refuses the value, which then reverts.
using TKSRVPropertySetter = std::function<bool(TKSRVPropertyItem* Item)>;

// A property of a module. Unlike a control source's property, the item keeps the current value
// itself; FValue keeps its registry meaning (the choices of an enumeration property, Null
// otherwise), and FGetSet reads and writes FCurrentValue (see TKSRVModule::AddProperty).
class QXBASE_EXPORT TKSRVPropertyItem : public TQXPropertyItem {
public:
    using TQXPropertyItem::TQXPropertyItem;

    Variant FCurrentValue;
    TKSRVPropertySetter FSetter;
    bool FReadOnly = false;

private:
    friend class TKSRVModule;
    TQXDestructionWatch FWatch;  // a setter may free its own item
};

using TKSRVPropertyList = std::vector<std::unique_ptr<TKSRVPropertyItem>>;
using TKSRVChannelList = std::vector<std::unique_ptr<TQXMSExChannelInformation>>;

// The non-visual base of acquisition modules: the module's channel records, its own property
// list and one data handler. It lives on the user-interface thread; work done on a timer
// thread must be handed back before it reaches SendData or the notifications.
//
// Two state flags, false after construction, tell the host what to refresh: "items changed"
// (channel records or property values differ from what the host last read) and "registration
// changed" (the set of properties or channels itself changed, so names and handles the host
// holds are stale). Derived modules raise them through ChangedItems and UpdateRegistration
// once a batch of changes is complete; the list operations never raise them on their own.
// The host reads them, refreshes and calls ResetChangeFlags.
class QXBASE_EXPORT TKSRVModule {
public:
    TKSRVModule() = default;
    // Frees the properties (FreeProperties), then the channel records.
    virtual ~TKSRVModule();
    TKSRVModule(const TKSRVModule&) = delete;
    TKSRVModule& operator=(const TKSRVModule&) = delete;

    // Calls OnData, when assigned, with this module and the arguments; nothing else. The
    // buffers are neither freed nor kept. OnData may destroy the module.
    void SendData(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                  const TRVDataDoubleArray& TimeChannel, double StartTime);

    // Appends the record and takes it over. Raises qx::Exception for nullptr.
    void AddChannel(std::unique_ptr<TQXMSExChannelInformation> Record);
    // Raises ERangeError "List index out of bounds (<Index>)" unless 0 <= Index < count.
    TQXMSExChannelInformation& GetChannelList(int Index);
    const TQXMSExChannelInformation& GetChannelList(int Index) const;
    int GetChannelListCount() const noexcept { return static_cast<int>(FChannels.size()); }
    void ChannelListClear() noexcept { FChannels.clear(); }
    // Copies the settings a module may change on a channel it created: the second and third
    // texts, RangeLow, RangeHigh, Flags, Color, Handle, OptionFlag, FurtherValue,
    // FirstOperandIndex and ScalingValues. The name, operation, operation parameter, second
    // operand index, operand names and coefficients stay. An index outside the list is
    // ignored.
    void UpdateChannelInformation(int Index, const TQXMSExChannelInformation& Record);

    // Appends a property: FName, FDescription, FDataType = Type, FCurrentValue = Value, the
    // setter and the read-only flag as given; FValue is EnumerationList when Type is
    // varQXEnumeration, Null otherwise. The handle is process-unique (NewPropertyHandle).
    // Names are not checked for uniqueness; FindProperty finds the first.
    //
    // The item's FGetSet serves the bus convention for this item whatever item it is passed,
    // so it can back a control source's property while the item lives: a read yields
    // FCurrentValue; a write returns E_FAIL for a read-only item, else stores the value and
    // calls the setter, restoring the old value when the setter refuses (E_FAIL) or raises
    // (the exception propagates). Without a setter the value is simply stored.
    TKSRVPropertyItem* AddProperty(const QString& Name, const QString& Description,
                                   std::uint16_t Type, const Variant& Value,
                                   TKSRVPropertySetter Setter, bool ReadOnly,
                                   const Variant& EnumerationList);
    // The property list itself, not a copy.
    TKSRVPropertyList& GetProperties() noexcept { return FProperties; }
    const TKSRVPropertyList& GetProperties() const noexcept { return FProperties; }
    // The first property with exactly this name; nullptr when there is none.
    TKSRVPropertyItem* FindProperty(const QString& Name) const noexcept;
    void FreeProperties() noexcept { FProperties.clear(); }

    // Set "items changed", then call OnChanged when assigned.
    virtual void ChangedItems();
    // Set "registration changed", then call OnChanged when assigned.
    virtual void UpdateRegistration();
    bool GetItemsChanged() const noexcept { return FItemsChanged; }
    bool GetRegistrationChanged() const noexcept { return FRegistrationChanged; }
    void ResetChangeFlags() noexcept { FItemsChanged = FRegistrationChanged = false; }

    TKSRVOnDataMethod OnData;
    // Called after a flag was set; may destroy the module.
    TKSRVOnChangeMethod OnChanged;

private:
    void NotifyChanged();

    TKSRVPropertyList FProperties;
    TKSRVChannelList FChannels;
    bool FItemsChanged = false;
    bool FRegistrationChanged = false;
};

}  // namespace qx
