#pragma once

#include <QImage>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "qxbase/framework/export.h"

class QObject;
class QWidget;

namespace qx {

class TKSMSSink;

enum TAtelierItemType : std::uint8_t { fitPanel, fitFormula, fitImage, fitRepository };

// One item of a repository group, as the repository host describes it.
class QXBASE_EXPORT TAtelierItemBase {
public:
    TAtelierItemBase() = default;

    const QString& GetName() const { return FName; }
    void SetName(const QString& Value) { FName = Value; }
    const QString& GetDescription() const { return FDescription; }
    void SetDescription(const QString& Value) { FDescription = Value; }
    const QString& GetHelpTopicID() const { return FHelpTopicID; }
    void SetHelpTopicID(const QString& Value) { FHelpTopicID = Value; }
    const QString& GetText1() const { return FText1; }
    void SetText1(const QString& Value) { FText1 = Value; }
    const QString& GetText2() const { return FText2; }
    void SetText2(const QString& Value) { FText2 = Value; }
    TAtelierItemType GetItemType() const { return FItemType; }
    void SetItemType(TAtelierItemType Value) { FItemType = Value; }
    std::int32_t GetItemSubtypeInfo() const { return FItemSubtypeInfo; }
    void SetItemSubtypeInfo(std::int32_t Value) { FItemSubtypeInfo = Value; }
    std::int32_t GetParam() const { return FParam; }
    void SetParam(std::int32_t Value) { FParam = Value; }
    std::int32_t GetTableid() const { return FTableid; }
    void SetTableid(std::int32_t Value) { FTableid = Value; }
    // Copy the picture; an empty image clears the item's, a missing one (nullptr) is ignored.
    const QImage& GetBitmap() const { return FBitmap; }
    void SetBitmap(const QImage* Value);
    const QImage& GetIcon() const { return FIcon; }
    void SetIcon(const QImage* Value);

private:
    QString FName;
    QString FDescription;
    QString FHelpTopicID;
    QString FText1;
    QString FText2;
    TAtelierItemType FItemType = fitPanel;
    std::int32_t FItemSubtypeInfo = 0;
    std::int32_t FParam = 0;
    std::int32_t FTableid = 0;
    QImage FBitmap;
    QImage FIcon;
};

using TAtelierItemList = std::vector<std::unique_ptr<TAtelierItemBase>>;
class TAtelierConnection;
using TAtelierNotifyEvent = std::function<void(TAtelierConnection* Sender)>;
using TAtelierGetGroup = std::function<void(std::int32_t GroupId, TAtelierItemList& Items)>;
using TAtelierGetGroups = std::function<void(QString& TopLevel, std::int32_t& TopLevelId,
                                             std::int32_t& TopLevelImageId, TAtelierItemList& Groups)>;
using TQXProjectChanged = std::function<void(bool Moved)>;
using TQXConnectPropertyPage = std::function<void(
    TKSMSSink* Panel, QWidget* PropertyPage, bool& CanConnect, const TAtelierNotifyEvent& NewOnApply,
    const TAtelierNotifyEvent& NewOnCancel, const TAtelierNotifyEvent& NewOnOK,
    const TAtelierGetGroup& NewAtelierGetGroup, const TAtelierGetGroups& NewAtelierGetGroups,
    const TQXProjectChanged& NewOnProjectChanged)>;

// Relays between a panel's property page and the panel repository the host provides. Without a
// repository host every call does nothing. The current panel is not watched: the page of a panel
// reports PropertyPageHasClosed before the panel goes.
class QXBASE_EXPORT TAtelierConnection {
public:
    TKSMSSink* GetCurrentPanel() const { return FCurrentPanel; }

    // Makes `Panel` current and asks the repository host; when the host sets CanConnect to
    // false the panel current before stays current. The host's handler installs the New...
    // handlers it accepts.
    void ConnectPropertyPage(TKSMSSink* Panel, QWidget* PropertyPage, bool& CanConnect,
                             const TAtelierNotifyEvent& NewOnApply, const TAtelierNotifyEvent& NewOnCancel,
                             const TAtelierNotifyEvent& NewOnOK, const TAtelierGetGroup& NewAtelierGetGroup,
                             const TAtelierGetGroups& NewAtelierGetGroups,
                             const TQXProjectChanged& NewOnProjectChanged);
    // Both empty the list (and GetGroups sets TopLevelId to -1) before asking the page.
    void GetGroups(QString& TopLevel, std::int32_t& TopLevelId, std::int32_t& TopLevelImageId,
                   TAtelierItemList& Groups);
    void GetGroup(std::int32_t GroupId, TAtelierItemList& Items);
    void Apply();
    void Cancel();
    void OK();
    // Unsets the page's handlers, tells the repository host and clears the current panel.
    void PropertyPageHasClosed();
    void GroupsHaveChanged();
    void PanelsToRepository();
    void ProjectChanged(bool Moved);

    // Handlers of the connected property page.
    TAtelierGetGroup OnGetGroup;
    TAtelierGetGroups OnGetGroups;
    TAtelierNotifyEvent OnApply;
    TAtelierNotifyEvent OnCancel;
    TAtelierNotifyEvent OnOK;
    TQXProjectChanged OnProjectChanged;
    // Handlers of the repository host.
    TQXConnectPropertyPage OnConnectPropertyPage;
    TAtelierNotifyEvent OnPropertyPageClosed;
    TAtelierNotifyEvent OnGroupsChanged;
    TAtelierNotifyEvent OnPanelsToRepository;

private:
    TKSMSSink* FCurrentPanel = nullptr;
};

// The one connection of the program.
QXBASE_EXPORT TAtelierConnection& AtelierConnection();

}  // namespace qx
