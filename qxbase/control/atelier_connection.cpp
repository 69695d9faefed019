#include "qxbase/control/atelier_connection.h"

namespace qx {

// Handlers are copied before they are called: a handler may replace or unset itself (the
// connect handler installs the page's handlers, the page-closed one may clear everything).

void TAtelierItemBase::SetBitmap(const QImage* Value)
{
    if (Value != nullptr)
        FBitmap = Value->copy();
}

void TAtelierItemBase::SetIcon(const QImage* Value)
{
    if (Value != nullptr)
        FIcon = Value->copy();
}

void TAtelierConnection::ConnectPropertyPage(TKSMSSink* Panel, QWidget* PropertyPage, bool& CanConnect,
                                             const TAtelierNotifyEvent& NewOnApply,
                                             const TAtelierNotifyEvent& NewOnCancel,
                                             const TAtelierNotifyEvent& NewOnOK,
                                             const TAtelierGetGroup& NewAtelierGetGroup,
                                             const TAtelierGetGroups& NewAtelierGetGroups,
                                             const TQXProjectChanged& NewOnProjectChanged)
{
    TKSMSSink* const previous = FCurrentPanel;
    FCurrentPanel = Panel;
    CanConnect = true;
    if (const TQXConnectPropertyPage handler = OnConnectPropertyPage)
        handler(Panel, PropertyPage, CanConnect, NewOnApply, NewOnCancel, NewOnOK, NewAtelierGetGroup,
                NewAtelierGetGroups, NewOnProjectChanged);
    if (!CanConnect)
        FCurrentPanel = previous;
}

void TAtelierConnection::GetGroups(QString& TopLevel, std::int32_t& TopLevelId, std::int32_t& TopLevelImageId,
                                   TAtelierItemList& Groups)
{
    Groups.clear();
    TopLevelId = -1;
    if (const TAtelierGetGroups handler = OnGetGroups)
        handler(TopLevel, TopLevelId, TopLevelImageId, Groups);
}

void TAtelierConnection::GetGroup(std::int32_t GroupId, TAtelierItemList& Items)
{
    Items.clear();
    if (const TAtelierGetGroup handler = OnGetGroup)
        handler(GroupId, Items);
}

namespace {

void Notify(const TAtelierNotifyEvent& event, TAtelierConnection* sender)
{
    if (const TAtelierNotifyEvent handler = event)
        handler(sender);
}

}  // namespace

void TAtelierConnection::Apply() { Notify(OnApply, this); }

void TAtelierConnection::Cancel() { Notify(OnCancel, this); }

void TAtelierConnection::OK() { Notify(OnOK, this); }

void TAtelierConnection::GroupsHaveChanged() { Notify(OnGroupsChanged, this); }

void TAtelierConnection::PanelsToRepository() { Notify(OnPanelsToRepository, this); }

void TAtelierConnection::ProjectChanged(bool Moved)
{
    if (const TQXProjectChanged handler = OnProjectChanged)
        handler(Moved);
}

void TAtelierConnection::PropertyPageHasClosed()
{
    OnGetGroups = nullptr;
    OnGetGroup = nullptr;
    OnCancel = nullptr;
    OnApply = nullptr;
    OnOK = nullptr;
    OnProjectChanged = nullptr;
    Notify(OnPropertyPageClosed, this);
    FCurrentPanel = nullptr;
}

TAtelierConnection& AtelierConnection()
{
    static TAtelierConnection connection;
    return connection;
}

}  // namespace qx
