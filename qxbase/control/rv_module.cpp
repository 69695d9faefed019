#include "qxbase/control/rv_module.h"

#include <utility>

#include "qxbase/control/control_source.h"
#include "qxbase/framework/com_types.h"
#include "qxbase/framework/exception.h"

namespace qx {

namespace {

// The FGetSet of a module property; bound to its item so that a control source may call it with
// an item of its own.
HRESULT ReadWriteModuleProperty(TKSRVPropertyItem* Item, TQXDestructionWatch& Watch, bool Get,
                                Variant& Value)
{
    if (Get) {
        Value = Item->FCurrentValue;
        return S_OK;
    }
    if (Item->FReadOnly) return E_FAIL;
    Variant previous = std::exchange(Item->FCurrentValue, Value);
    if (!Item->FSetter) return S_OK;
    // Through a copy: the setter may replace itself or free the item.
    const TKSRVPropertySetter setter = Item->FSetter;
    TQXDestructionWatch::Frame frame(Watch);
    bool accepted = false;
    try {
        accepted = setter(Item);
    } catch (...) {
        if (!frame.Gone()) Item->FCurrentValue = std::move(previous);
        throw;
    }
    if (accepted) return S_OK;
    if (!frame.Gone()) Item->FCurrentValue = std::move(previous);
    return E_FAIL;
}

}  // namespace

TKSRVModule::~TKSRVModule()
{
    FreeProperties();
    FChannels.clear();
}

void TKSRVModule::SendData(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                           const TRVDataDoubleArray& TimeChannel, double StartTime)
{
    if (!OnData) return;
    const TKSRVOnDataMethod handler = OnData;
    handler(this, Shortdefs, Data, TimeChannel, StartTime);
}

void TKSRVModule::AddChannel(std::unique_ptr<TQXMSExChannelInformation> Record)
{
    if (!Record) throw Exception(QStringLiteral("AddChannel: no channel record"));
    FChannels.push_back(std::move(Record));
}

TQXMSExChannelInformation& TKSRVModule::GetChannelList(int Index)
{
    return const_cast<TQXMSExChannelInformation&>(std::as_const(*this).GetChannelList(Index));
}

const TQXMSExChannelInformation& TKSRVModule::GetChannelList(int Index) const
{
    if (Index < 0 || Index >= GetChannelListCount())
        throw ERangeError(QStringLiteral("List index out of bounds (%1)").arg(Index));
    return *FChannels[static_cast<std::size_t>(Index)];
}

void TKSRVModule::UpdateChannelInformation(int Index, const TQXMSExChannelInformation& Record)
{
    if (Index < 0 || Index >= GetChannelListCount()) return;
    TQXMSExChannelInformation& target = *FChannels[static_cast<std::size_t>(Index)];
    target.SecondText = Record.SecondText;
    target.ThirdText = Record.ThirdText;
    target.RangeLow = Record.RangeLow;
    target.RangeHigh = Record.RangeHigh;
    target.Flags = Record.Flags;
    target.Color = Record.Color;
    target.Handle = Record.Handle;
    target.OptionFlag = Record.OptionFlag;
    target.FurtherValue = Record.FurtherValue;
    target.FirstOperandIndex = Record.FirstOperandIndex;
    target.ScalingValues = Record.ScalingValues;
}

TKSRVPropertyItem* TKSRVModule::AddProperty(const QString& Name, const QString& Description,
                                            std::uint16_t Type, const Variant& Value,
                                            TKSRVPropertySetter Setter, bool ReadOnly,
                                            const Variant& EnumerationList)
{
    auto item = std::make_unique<TKSRVPropertyItem>(NewPropertyHandle());
    TKSRVPropertyItem* raw = item.get();
    item->FName = Name;
    item->FDescription = Description;
    item->FDataType = Type;
    item->FValue = Type == varQXEnumeration ? EnumerationList : Variant::Null();
    item->FCurrentValue = Value;
    item->FSetter = std::move(Setter);
    item->FReadOnly = ReadOnly;
    item->FGetSet = [raw](TQXPropertyItem*, bool Get, bool, Variant& V) {
        return ReadWriteModuleProperty(raw, raw->FWatch, Get, V);
    };
    FProperties.push_back(std::move(item));
    return raw;
}

TKSRVPropertyItem* TKSRVModule::FindProperty(const QString& Name) const noexcept
{
    for (const auto& item : FProperties) {
        if (item->FName == Name) return item.get();
    }
    return nullptr;
}

void TKSRVModule::ChangedItems()
{
    FItemsChanged = true;
    NotifyChanged();
}

void TKSRVModule::UpdateRegistration()
{
    FRegistrationChanged = true;
    NotifyChanged();
}

void TKSRVModule::NotifyChanged()
{
    if (!OnChanged) return;
    const TKSRVOnChangeMethod handler = OnChanged;
    handler(this);
}

}  // namespace qx
