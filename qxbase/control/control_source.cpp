#include "qxbase/control/control_source.h"

#include <QChar>
#include <QStringList>
#include <atomic>
#include <utility>

namespace qx {

bool DisableProperyDelete = false;

namespace {

std::atomic<std::uint32_t> GLastPropertyHandle{0};

QString PlainTraceText(const Variant& Value)
{
    if (Value.IsArray()) return QStringLiteral("<array data>");
    if (Value.IsNull() || Value.IsEmpty()) return QString();
    try {
        return Value.ToString();
    } catch (const Exception&) {
        return QString();  // a trace must never stop the write it describes
    }
}

}  // namespace

Variant EnumerationTexts(const QStringList& Texts)
{
    Variant list = Variant::CreateArray(0, static_cast<std::int32_t>(Texts.size()) - 1, varVariant);
    for (qsizetype i = 0; i < Texts.size(); ++i) list.SetArrayElement(static_cast<std::int32_t>(i), Texts[i]);
    return list;
}

TQXPropertyHandle NewPropertyHandle() noexcept
{
    TQXPropertyHandle handle = 0;
    do {
        handle = GLastPropertyHandle.fetch_add(1, std::memory_order_relaxed) + 1;
    } while (handle == 0);
    return handle;
}

TQXControlSource::TQXControlSource()
{
    TQXControlSource::EventClear();
}

TQXControlSource::~TQXControlSource()
{
    BeginDestruction();
    FProperties.clear();
    FEvents.clear();
    FEventLinks.clear();
}

void TQXControlSource::SetObjectDescription(const QString& Description)
{
    FObjectDescription = Description;
}

void TQXControlSource::ClearProperties()
{
    FProperties.clear();
}

TQXControlSourceCapabilities TQXControlSource::GetControlSourceCapabilities() const
{
    return FCapabilities;
}

void TQXControlSource::GetPropertyList(Variant& List) const
{
    if (FProperties.empty()) {
        List = Variant::Null();
        return;
    }
    Variant list = Variant::CreateArray(0, static_cast<int>(FProperties.size()) - 1, varOleStr);
    for (std::size_t i = 0; i < FProperties.size(); ++i)
        list.SetArrayElement(static_cast<int>(i), Variant(FProperties[i]->FName));
    List = std::move(list);
}

bool TQXControlSource::FindHandleBy(QString TQXPropertyItem::*Field, const QString& Text,
                                    TQXPropertyHandle& Handle) const
{
    Handle = 0;
    for (const auto& item : FProperties) {
        if ((*item).*Field == Text) {
            Handle = item->GetHandle();
            return true;
        }
    }
    return false;
}

bool TQXControlSource::GetPropertyHandle(const QString& Name, TQXPropertyHandle& Handle) const
{
    return FindHandleBy(&TQXPropertyItem::FName, Name, Handle);
}

bool TQXControlSource::GetPropertyHandleFromDescription(const QString& Description,
                                                        TQXPropertyHandle& Handle) const
{
    return FindHandleBy(&TQXPropertyItem::FDescription, Description, Handle);
}

bool TQXControlSource::GetPropertyDescriptionFromHandle(TQXPropertyHandle Handle,
                                                        QString& Description) const
{
    Description.clear();
    const TQXPropertyItem* item = FindProperty(Handle);
    if (item == nullptr) return false;
    Description = item->FDescription;
    return true;
}

bool TQXControlSource::GetPropertyNameFromHandle(TQXPropertyHandle Handle, QString& Name) const
{
    Name.clear();
    const TQXPropertyItem* item = FindProperty(Handle);
    if (item == nullptr) return false;
    Name = item->FName;
    return true;
}

bool TQXControlSource::GetPropertyType(TQXPropertyHandle Handle, std::uint16_t& DataType,
                                       QString& TypeInfo) const
{
    DataType = 0;
    TypeInfo.clear();
    const TQXPropertyItem* item = FindProperty(Handle);
    if (item == nullptr) return false;
    DataType = item->FDataType;
    TypeInfo = item->FTypeInfo;
    return true;
}

bool TQXControlSource::GetEnumerationList(TQXPropertyHandle Handle, Variant& List) const
{
    List = Variant::Null();
    const TQXPropertyItem* item = FindProperty(Handle);
    if (item == nullptr) return false;
    List = item->FValue;
    return true;
}

bool TQXControlSource::GetEnumerationHandle(TQXPropertyHandle Handle, const QString& Text,
                                            std::uint32_t& Index) const
{
    Index = 0;
    const TQXPropertyItem* item = FindProperty(Handle);
    if (item == nullptr || !item->FValue.IsArray()) return false;
    const Variant& list = item->FValue;
    const int high = list.ArrayHighBound();
    for (int i = list.ArrayLowBound(); i <= high; ++i) {
        if (list.ArrayElement(i).EqualsText(Text)) {
            Index = static_cast<std::uint32_t>(i);
            return true;
        }
    }
    return false;
}

bool TQXControlSource::GetPropertyValue(TQXPropertyHandle Handle, Variant& Value)
{
    Value = Variant::Null();
    TQXPropertyItem* item = FindProperty(Handle);
    if (item == nullptr || !item->FGetSet) return false;
    // Called through a copy: the callback may remove its own property.
    const TQXPropertyGetSet getSet = item->FGetSet;
    getSet(item, true, false, Value);
    return true;
}

bool TQXControlSource::SetPropertyValue(TQXControlSource* Sender, TQXPropertyHandle Handle,
                                        const Variant& Value)
{
    TQXPropertyItem* item = FindProperty(Handle);
    if (item == nullptr || !item->FGetSet) return false;
    Variant value = Value;
    TQXDestructionWatch::Frame frame(FWatch);
    if (DoDebug) {
        const QString line = QStringList{QStringLiteral("1"),
                                         Sender != nullptr ? Sender->GetObjectDescription()
                                                           : QStringLiteral("---"),
                                         FObjectDescription, item->FDescription,
                                         TraceValueText(*item, value)}
                                 .join(QChar(8));
        EventFire(0, qxecDebugMessage, line);
        // The trace reached the debug viewer's handlers, which may have changed anything.
        if (frame.Gone()) return false;
        item = FindProperty(Handle);
        if (item == nullptr || !item->FGetSet) return false;
    }
    const TQXPropertyGetSet getSet = item->FGetSet;
    getSet(item, false, false, value);
    if (frame.Gone()) return true;
    EventFire(Handle, qxecControlSourceUpdated, QString());
    return true;
}

void TQXControlSource::RegisterProperty(const QString& Description, const QString& Name,
                                        TQXPropertyGetSet GetSet, std::uint16_t DataType,
                                        const QString& TypeInfo, bool Range, double RangeLow,
                                        double RangeHigh, std::uint32_t Identifier)
{
    std::unique_ptr<TQXPropertyItem> item =
        NewProperty(Name, QStringLiteral("PropertyName or is not unique: <"));
    item->FDescription = Description;
    item->FDataType = DataType;
    item->FValue = Variant::Null();
    item->FTypeInfo = TypeInfo;
    item->FRange = Range;
    item->FRangeLow = RangeLow;
    item->FRangeHigh = RangeHigh;
    item->FGetSet = std::move(GetSet);
    item->FIdentifier = Identifier;
    FProperties.push_back(std::move(item));
}

void TQXControlSource::RegisterProperty(const QString& Description, const QString& Name,
                                        TQXPropertyGetSet GetSet, std::uint16_t /*DataType*/,
                                        const Variant& EnumerationList, std::uint32_t Identifier)
{
    std::unique_ptr<TQXPropertyItem> item =
        NewProperty(Name, QStringLiteral("PropertyName or handle not unique: <"));
    item->FDescription = Description;
    item->FDataType = varQXEnumeration;
    item->FValue = EnumerationList;
    item->FGetSet = std::move(GetSet);
    item->FIdentifier = Identifier;
    FProperties.push_back(std::move(item));
}

bool TQXControlSource::IsUniqueProperty(const QString& Name) const
{
    for (const auto& item : FProperties) {
        if (item->FName == Name) return false;
    }
    return true;
}

bool TQXControlSource::RemovePropertyByName(const QString& Name)
{
    bool removed = false;
    for (std::size_t i = FProperties.size(); i-- > 0;) {
        if (FProperties[i]->FName == Name) {
            FProperties.erase(FProperties.begin() + static_cast<std::ptrdiff_t>(i));
            removed = true;
        }
    }
    return removed;
}

bool TQXControlSource::GetDescriptionFromName(const QString& Name, QString& Description) const
{
    Description.clear();
    TQXPropertyHandle handle = 0;
    if (!GetPropertyHandle(Name, handle)) return false;
    return GetPropertyDescriptionFromHandle(handle, Description);
}

bool TQXControlSource::GetNameFromDescription(const QString& Description, QString& Name) const
{
    Name.clear();
    TQXPropertyHandle handle = 0;
    if (!GetPropertyHandleFromDescription(Description, handle)) return false;
    return GetPropertyNameFromHandle(handle, Name);
}

const TQXPropertyItem* TQXControlSource::GetPropertyItem(TQXPropertyHandle Handle) const noexcept
{
    return FindProperty(Handle);
}

TQXPropertyItem* TQXControlSource::FindProperty(TQXPropertyHandle Handle) const noexcept
{
    if (Handle == 0) return nullptr;
    for (const auto& item : FProperties) {
        if (item->GetHandle() == Handle) return item.get();
    }
    return nullptr;
}

std::unique_ptr<TQXPropertyItem> TQXControlSource::NewProperty(const QString& Name,
                                                               const QString& Message)
{
    if (!IsUniqueProperty(Name)) throw EQXControlSourceException(Message + Name + u'>');
    // Ids come from one counter for the whole process, so a handle of another source never
    // matches here; after a wrap, ids still in use in this source are skipped.
    TQXPropertyHandle handle = 0;
    do {
        handle = NewPropertyHandle();
    } while (FindProperty(handle) != nullptr);
    auto item = std::make_unique<TQXPropertyItem>(handle);
    item->FName = Name;
    return item;
}

QString TQXControlSource::TraceValueText(const TQXPropertyItem& Item, const Variant& Value) const
{
    if (Item.FDataType != varQXEnumeration) return PlainTraceText(Value);
    if (Value.IsArray()) return QStringLiteral("<array data>");
    if (Value.VarType() != varInteger) return PlainTraceText(Value);
    // An index names its choice; an index outside the list traces as an empty text.
    const int index = Value.ToInteger();
    const Variant& list = Item.FValue;
    if (index < 0 || !list.IsArray() || index < list.ArrayLowBound() ||
        index > list.ArrayHighBound())
        return QString();
    return PlainTraceText(list.ArrayElement(index));
}

}  // namespace qx
