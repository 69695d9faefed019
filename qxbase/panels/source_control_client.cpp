#include "qxbase/panels/source_control_client.h"

#include <QFont>
#include <cstdint>
#include <utility>

#include "qxbase/framework/host_services.h"
#include "qxbase/panels/source_control_property_page.h"

namespace qx {
namespace {

const QString KSubTempPrefix = QStringLiteral("SUBTEMP_");

// Depth first in child order, so the first match is the one a user sees first on the sheet.
TQXControlSource* FindSourceIn(const QObject& Container, const QString& Name)
{
    for (QObject* child : Container.children()) {
        if (child->objectName() == Name)
            if (auto* source = dynamic_cast<TQXControlSource*>(child))
                return source;
        if (TQXControlSource* found = FindSourceIn(*child, Name))
            return found;
    }
    return nullptr;
}

QString LinkIdentity(const TQXEventLink* Link)
{
    const auto low = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(Link));
    return QStringLiteral("%1").arg(low, 8, 16, QLatin1Char('0')).toUpper();
}

QString RemovalText(const QString& Client, const QString& Reason, const TKSControlSourcePropListItem& Item)
{
    return QStringLiteral("<%1>: %2, removing link to %3->%4")
        .arg(Client, Reason, Item.FSourceDescription, Item.FPropertyName);
}

}  // namespace

TKSControlSourcePropListItem::~TKSControlSourcePropListItem() = default;

int SortFunc_ControlSourcePropList(const TKSControlSourcePropListItem& Item1,
                                   const TKSControlSourcePropListItem& Item2)
{
    int result = QString::compare(Item1.FSourceDescription, Item2.FSourceDescription, Qt::CaseSensitive);
    if (result == 0)
        result = QString::compare(Item1.FPanelName, Item2.FPanelName, Qt::CaseSensitive);
    if (result == 0)
        result = QString::compare(Item1.FPropertyDescription, Item2.FPropertyDescription, Qt::CaseSensitive);
    return result;
}

TKSSourceControlClient::TKSSourceControlClient(QWidget* parent)
    : TKSMSSink(parent)
{
    // Every attribute of the font is the panel's own; none follows the parent.
    QFont own = font();
    own.setResolveMask(QFont::AllPropertiesResolved);
    setFont(own);
    resize(80, 80);
    SetControlSourceCapabilities(TQXControlSourceCapabilities{qxcscSupportsProperties});
    ClearProperties();
}

TKSSourceControlClient::~TKSSourceControlClient()
{
    // The links call back into this class; they must be gone before it is.
    FPropList.clear();
}

TQXControlSource* TKSSourceControlClient::GetPanelByName(const QString& PanelName) const
{
    const QObject* container = nullptr;
    if (parent() != nullptr) {
        container = this;
        while (container->parent() != nullptr)
            container = container->parent();
    } else {
        container = HostServices().GetContainer(this);
    }
    if (container == nullptr)
        return nullptr;
    if (TQXControlSource* source = FindSourceIn(*container, PanelName))
        return source;
    if (TQXControlSource* source = FindSourceIn(*container, KSubTempPrefix + PanelName))
        return source;
    if (objectName() == PanelName)
        return const_cast<TKSSourceControlClient*>(this);
    return nullptr;
}

bool TKSSourceControlClient::ResolveItem(TKSControlSourcePropListItem& Item)
{
    if (Item.FDataType != 0)
        return false;
    Item.FSource = GetPanelByName(Item.FPanelName);
    if (Item.FSource == nullptr)
        return false;
    Item.FSourceDescription = Item.FSource->GetObjectDescription();
    Item.FSource->GetPropertyHandle(Item.FPropertyName, Item.FPropertyHandle);
    if (Item.FPropertyHandle == 0)
        return false;
    // A link left on the panel that had this name before would report that panel's events.
    if (Item.FEventLink != nullptr && Item.FEventLink->GetEventSource() != Item.FSource)
        Item.FEventLink->SetEventSource(Item.FSource);
    Item.FSource->GetPropertyType(Item.FPropertyHandle, Item.FPropertyType, Item.FTypeInfo);
    Item.FSource->GetPropertyValue(Item.FPropertyHandle, Item.FActualValue);
    if (Item.FActiveValue.IsEmpty())
        Item.FActiveValue = Item.FActualValue;
    if (Item.FPassiveValue.IsEmpty())
        Item.FPassiveValue = Item.FActualValue;
    return true;
}

bool TKSSourceControlClient::SetupPropertyConnnection(TKSControlSourcePropListItem* Item)
{
    if (Item == nullptr || !ResolveItem(*Item))
        return false;
    auto link = std::make_unique<TQXEventLink>(this);
    link->SetEventSource(Item->FSource);
    link->SetFlag(true);
    link->SetName(Item->FPropertyName);
    link->OnSourceDestroyed = [this](TQXEventLink* Sender) { DoOnEventlinkSourceDestroied(Sender); };
    link->OnValueUpdated = [this](TQXEventLink* Sender, std::uint32_t Handle) {
        DoOnEventlinkValueUpdated(Sender, Handle);
    };
    link->OnPropertiesChanged = [this](TQXEventLink* Sender) { DoOnEventlinkPropertyChanged(Sender); };
    Item->FEventLink = std::move(link);
    return true;
}

bool TKSSourceControlClient::CheckPropertyConnnection(TKSControlSourcePropListItem* Item)
{
    return Item != nullptr && Item->FEventLink != nullptr && ResolveItem(*Item);
}

bool TKSSourceControlClient::CheckPropertyConnnectionNoEventLink(TKSControlSourcePropListItem* Item)
{
    return Item != nullptr && ResolveItem(*Item);
}

void TKSSourceControlClient::InstallControlSourceConnections()
{
    if (parent() == nullptr)
        return;
    for (std::size_t i = FPropList.size(); i-- > 0;) {
        // A property callback may have shrunk the list meanwhile.
        if (i >= FPropList.size())
            continue;
        TKSControlSourcePropListItem* item = FPropList[i].get();
        if (CheckPropertyConnnection(item) || SetupPropertyConnnection(item))
            continue;
        if (!FRemoveWholePanel && !DisableProperyDelete)
            RemoveItem(item);
    }
}

bool TKSSourceControlClient::GetValuesOfProperty(const QString& PanelName, const QString& PropertyName,
                                                 Variant& ActiveValue, Variant& PassiveValue) const
{
    ActiveValue = Variant();
    PassiveValue = Variant();
    for (const auto& item : FPropList) {
        if (item->FPanelName != PanelName || item->FPropertyName != PropertyName)
            continue;
        if (FDeliverActive)
            ActiveValue = item->FActiveValue;
        if (FDeliverPassive)
            PassiveValue = item->FPassiveValue;
        return true;
    }
    return false;
}

void TKSSourceControlClient::GetPanelStateList(Variant& List) const { List = FPanelStateList; }

TKSControlSourcePropList& TKSSourceControlClient::GetPropInputList() { return FPropList; }

bool TKSSourceControlClient::CanClientHandle(TKSControlSourcePropListItem* Item, TQXPropertyHandle Handle,
                                             const QString& Name)
{
    Q_UNUSED(Item);
    Q_UNUSED(Handle);
    Q_UNUSED(Name);
    return false;
}

bool TKSSourceControlClient::CanClientAdd(TKSControlSourcePropListItem* Item, TQXPropertyHandle Handle,
                                          const QString& Name)
{
    Q_UNUSED(Item);
    Q_UNUSED(Handle);
    Q_UNUSED(Name);
    return false;
}

void TKSSourceControlClient::InitContol() {}

void TKSSourceControlClient::CallSetup()
{
    TKSSourceControlPropertyPage page(this);
    page.SetTheComponent(this);
    // False on purpose: closing the page is not counted as a change of the worksheet.
    if (page.exec() == 1)
        SetPanelChanged(false);
}

void TKSSourceControlClient::LoadFinished()
{
    TKSMSSink::LoadFinished();
    InstallControlSourceConnections();
}

void TKSSourceControlClient::InitializeAfterPaste()
{
    TKSMSSink::InitializeAfterPaste();
    InstallControlSourceConnections();
}

void TKSSourceControlClient::PanelAddCompleted() { TKSMSSink::PanelAddCompleted(); }

TKSControlSourcePropListItem* TKSSourceControlClient::FindItemOfLink(const TQXEventLink* Link) const
{
    if (Link == nullptr)
        return nullptr;
    for (const auto& item : FPropList)
        if (item->FEventLink.get() == Link)
            return item.get();
    return nullptr;
}

bool TKSSourceControlClient::RemoveItem(const TKSControlSourcePropListItem* Item)
{
    for (auto it = FPropList.begin(); it != FPropList.end(); ++it) {
        if (it->get() == Item) {
            FPropList.erase(it);
            return true;
        }
    }
    return false;
}

bool TKSSourceControlClient::FireDebugMessage(const QString& Text)
{
    TQXDestructionWatch::Frame frame(FClientWatch);
    EventFire(0, qxecDebugMessage, Text);
    return !frame.Gone();
}

void TKSSourceControlClient::DoOnEventlinkValueUpdated(TQXEventLink* Sender, std::uint32_t Handle)
{
    TKSControlSourcePropListItem* item = FindItemOfLink(Sender);
    if (item == nullptr || item->FSource == nullptr)
        return;
    if (Handle != 0 && Handle != item->FPropertyHandle)
        return;
    item->FActualValue = Variant();
    Variant value;
    item->FSource->GetPropertyValue(item->FPropertyHandle, value);
    // The source's callback may have run code that dropped the binding.
    if ((item = FindItemOfLink(Sender)) != nullptr)
        item->FActualValue = std::move(value);
}

void TKSSourceControlClient::DoOnEventlinkPropertyChanged(TQXEventLink* Sender)
{
    TKSControlSourcePropListItem* item = FindItemOfLink(Sender);
    if (item == nullptr || CheckPropertyConnnection(item))
        return;
    if (DoDebug) {
        if (!FireDebugMessage(RemovalText(GetObjectDescription(), QStringLiteral("Property invalid"), *item)))
            return;
        // A debug listener may have removed it already.
        item = FindItemOfLink(Sender);
    }
    RemoveItem(item);
}

void TKSSourceControlClient::DoOnEventlinkSourceDestroied(TQXEventLink* Sender)
{
    HostServices().DebugOutput(QStringLiteral("DoOnEventlinkSourceDestroied EventLink = ") + LinkIdentity(Sender));
    TKSControlSourcePropListItem* item = FindItemOfLink(Sender);
    if (item == nullptr)
        return;
    if (DoDebug) {
        if (!FireDebugMessage(RemovalText(GetObjectDescription(), QStringLiteral("Source destroied"), *item)))
            return;
        item = FindItemOfLink(Sender);
        if (item == nullptr)
            return;
    }
    if (!FRemoveWholePanel) {
        RemoveItem(item);
        return;
    }
    const QString panelName = item->FPanelName;
    for (std::size_t i = FPropList.size(); i-- > 0;)
        if (FPropList[i]->FPanelName == panelName)
            FPropList.erase(FPropList.begin() + static_cast<std::ptrdiff_t>(i));
}

}  // namespace qx
