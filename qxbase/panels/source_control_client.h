#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <memory>
#include <vector>

#include "qxbase/control/control_source.h"
#include "qxbase/control/destruction_watch.h"
#include "qxbase/control/event_link.h"
#include "qxbase/framework/export.h"
#include "qxbase/framework/variant.h"
#include "qxbase/panels/panel_base.h"

namespace qx {

class TKSSourceControlClient;

// One binding of a client: a property of another panel, with the values the client writes to it.
// Only FPanelName, FPropertyName, FDataType, FActiveValue and FPassiveValue are stored; the rest
// is resolved at run time.
class QXBASE_EXPORT TKSControlSourcePropListItem {
public:
    TKSControlSourcePropListItem() = default;
    // Frees the event link, which detaches it from its source.
    ~TKSControlSourcePropListItem();
    TKSControlSourcePropListItem(const TKSControlSourcePropListItem&) = delete;
    TKSControlSourcePropListItem& operator=(const TKSControlSourcePropListItem&) = delete;

    QString FPanelName;
    QString FSourceDescription;
    QString FPropertyName;
    QString FPropertyDescription;
    std::uint8_t FDataType = 0;  // 0: a property of a control source, the kind this class connects
    std::uint16_t FPropertyType = 0;
    QString FTypeInfo;
    // Not owned. Null once the source is destroyed, also when no event link would have told.
    TQXControlSourceRef FSource;
    TQXPropertyHandle FPropertyHandle = 0;
    Variant FActualValue;
    Variant FActiveValue;
    Variant FPassiveValue;
    std::unique_ptr<TQXEventLink> FEventLink;

    // A source that still lives and has the property. A binding kept without one (the
    // whole-panel option, DisableProperyDelete) is shown as unresolved.
    bool IsResolved() const noexcept { return FSource != nullptr && FPropertyHandle != 0; }
};

using TKSControlSourcePropList = std::vector<std::unique_ptr<TKSControlSourcePropListItem>>;

// Ordering of bindings in the selector pages: source description, then panel name, then property
// description, each compared as exact strings. Negative, zero or positive.
QXBASE_EXPORT int SortFunc_ControlSourcePropList(const TKSControlSourcePropListItem& Item1,
                                                 const TKSControlSourcePropListItem& Item2);

// The panel base of panels that act on properties of other panels (buttons, switches,
// sequencers): it keeps one binding per (panel, property) pair, each with an event link to its
// source, and sets the property to an active or a passive value. Bindings are stored in the
// worksheet as the defined property "ControlSourceClientEx" (and read from the older
// "FakeControlSourceClient").
class QXBASE_EXPORT TKSSourceControlClient : public TKSMSSink {
    Q_OBJECT

public:
    explicit TKSSourceControlClient(QWidget* parent = nullptr);
    ~TKSSourceControlClient() override;

    // The control source called exactly `PanelName` (else "SUBTEMP_" + `PanelName`) among the
    // descendants of this client's container, depth first in child order, else this client if
    // the name is its own; null otherwise. The container is the topmost ancestor when the
    // client has a parent, else what HostServices().GetContainer gives (null: no container).
    TQXControlSource* GetPanelByName(const QString& PanelName) const;
    // Resolves a binding that has no link yet and attaches a new link. False (and no link) when
    // the binding is missing or not of kind 0, or its panel or property cannot be found. An
    // exception of the source's property callback propagates.
    bool SetupPropertyConnnection(TKSControlSourcePropListItem* Item);
    // Re-resolves a binding that has a link and refreshes its values; false without a link.
    // When the name now finds another panel, the link moves to it.
    bool CheckPropertyConnnection(TKSControlSourcePropListItem* Item);
    bool CheckPropertyConnnectionNoEventLink(TKSControlSourcePropListItem* Item);
    // Checks or sets up every binding (when the client has an owner) and drops those that fail,
    // unless the whole-panel removal option or DisableProperyDelete keeps them.
    void InstallControlSourceConnections();

    // The first binding of exactly this panel and property: true, with the active and passive
    // values as the deliver options allow. Both out values are cleared first, so one not
    // delivered, or both when there is no such binding (false), are unassigned.
    bool GetValuesOfProperty(const QString& PanelName, const QString& PropertyName,
                             Variant& ActiveValue, Variant& PassiveValue) const;
    void GetPanelStateList(Variant& List) const;
    void SetPanelStateList(const Variant& List) { FPanelStateList = List; }

    virtual TKSControlSourcePropList& GetPropInputList();
    const TKSControlSourcePropList& GetPropInputList() const { return FPropList; }
    // Whether the selector pages may offer (CanClientHandle) and add (CanClientAdd) a property;
    // false in the base class.
    virtual bool CanClientHandle(TKSControlSourcePropListItem* Item, TQXPropertyHandle Handle,
                                 const QString& Name);
    virtual bool CanClientAdd(TKSControlSourcePropListItem* Item, TQXPropertyHandle Handle,
                              const QString& Name);
    // Called after the binding list has been read; nothing in the base class.
    virtual void InitContol();

    // The older stored form of the bindings, as one value-stream list; never used for storing.
    virtual void WriteProperties(TWriter& Writer) const;
    // Appends the bindings of the older form. Raises EStreamError when a name or number field
    // holds another kind of value; a list that ends inside an entry drops that entry.
    void ReadProperties(TReader& Reader);
    // The current stored form: the ini lines of "ControlSourceClientEx".
    QStringList WriteControlSourceClientEx() const;
    // Appends the bindings of the current form and applies "PanelEnabled". Damaged lines are
    // read as far as they go (see the design notes); never raises.
    void ReadControlSourceClientEx(const QStringList& Lines);

    bool GetRemoveWholePanel() const { return FRemoveWholePanel; }
    void SetRemoveWholePanel(bool Value) { FRemoveWholePanel = Value; }
    bool GetSecondOption() const { return FSecondOption; }
    void SetSecondOption(bool Value) { FSecondOption = Value; }
    bool GetDeliverActive() const { return FDeliverActive; }
    void SetDeliverActive(bool Value) { FDeliverActive = Value; }
    bool GetDeliverPassive() const { return FDeliverPassive; }
    void SetDeliverPassive(bool Value) { FDeliverPassive = Value; }

    // Opens the binding property page modally; OK calls SetPanelChanged(false).
    void CallSetup() override;
    void LoadFinished() override;
    void InitializeAfterPaste() override;
    void PanelAddCompleted() override;
    // "ControlSourceClientEx" (always written) and "FakeControlSourceClient" (read only); each
    // read ends with InitContol.
    void DefineProperties(TFiler& Filer) override;

protected:
    virtual void DoOnEventlinkValueUpdated(TQXEventLink* Sender, std::uint32_t Handle);
    virtual void DoOnEventlinkPropertyChanged(TQXEventLink* Sender);
    virtual void DoOnEventlinkSourceDestroied(TQXEventLink* Sender);

    // The binding that owns a link, or null.
    TKSControlSourcePropListItem* FindItemOfLink(const TQXEventLink* Link) const;
    // Removes and frees a binding; false when it is not in the list.
    bool RemoveItem(const TKSControlSourcePropListItem* Item);

    TKSControlSourcePropList FPropList;
    bool FRemoveWholePanel = false;
    bool FSecondOption = true;
    bool FDeliverActive = true;
    bool FDeliverPassive = true;
    Variant FPanelStateList;

private:
    // Resolves source, handle, type and values; steps shared by set-up and check.
    bool ResolveItem(TKSControlSourcePropListItem& Item);
    // Fires a debug message on this client; false when a listener destroyed the client.
    bool FireDebugMessage(const QString& Text);
    // One line of the operating system's debug output about this client's stored bindings.
    void ReportStored(const QString& Text) const;

    TQXDestructionWatch FClientWatch;
};

}  // namespace qx
