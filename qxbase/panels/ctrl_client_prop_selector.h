#pragma once

#include <QString>
#include <QWidget>
#include <cstdint>
#include <memory>

#include "qxbase/framework/export.h"
#include "qxbase/panels/source_control_client.h"

class QTreeWidget;

namespace qx {

class THVKColorPanel;

// Which editor suits a property's value.
enum TValueEditorKind : std::uint8_t { vekSmartEdit, vekComboBox, vekColorPanel };

// Enumeration properties get the combo box; integer properties whose type information is
// "TColor" or whose name ends in "Color" (both in any letter case) get the colour panel;
// everything else the smart edit.
QXBASE_EXPORT TValueEditorKind ValueEditorKindOf(std::uint16_t PropertyType,
                                                 const QString& TypeInfo,
                                                 const QString& PropertyName);

// The control by which a user chooses the bindings of a client: the properties its worksheet
// offers ("Available items"), the client's bindings in order ("Item sequence"), buttons to add,
// remove and reorder, and editors for the actual, active and passive value of the selected
// binding. Every change goes straight into the client's binding list. The child widgets carry
// the object names of their roles (AvaiblePropTreeView, ActiveValueSmartEdit, ...).
class QXBASE_EXPORT TCtrlClientPropSelector : public QWidget {
    Q_OBJECT

public:
    explicit TCtrlClientPropSelector(QWidget* parent = nullptr);
    ~TCtrlClientPropSelector() override;

    // Shows the client's worksheet and bindings; with bindings, the available items are
    // restricted by the first binding. Null (or the client's destruction) empties the selector.
    // The client is not owned.
    void SetTheComponent(TKSSourceControlClient* Client);
    TKSSourceControlClient* GetTheComponent() const;

    // True for "ACTION COUNTER" and "SEQUENCER" in any letter case: sources with such a
    // description are listed in a group of their own, after the other sources.
    static bool IsMustFilter(const QString& Name);

    // Collects every property of the worksheet's control sources that the client can handle,
    // ordered with SortFunc_ControlSourcePropList. A Reference binding that resolves restricts
    // the list to properties of its property type.
    void FillAvaibleControlSourceList(const TKSControlSourcePropListItem* Reference);
    // Shows the collected properties in the available tree, one node per source.
    void FillTreeViewWithList();
    // Shows the client's bindings in order and selects Select (nothing when null or not bound).
    void FillSelectedTreeView(const TKSControlSourcePropListItem* Select);
    // The properties FillAvaibleControlSourceList collected; their FSource is null (the client's
    // CanClientHandle sees it set), their panel and property names are what counts.
    const TKSControlSourcePropList& GetAvailableList() const;
    // The binding the editors show: the selected one while it is still in the client's list.
    TKSControlSourcePropListItem* GetSelectedItem() const;

    void DoAvailableListDoubleClick();
    // Binds the property chosen in the available tree and selects the new binding. False when
    // no property is chosen, its source or property is gone, the client refuses it
    // (CanClientAdd) or cannot connect it, or it is bound already (that binding is selected).
    bool AddPropToActiveListButtonClick();
    void RemovePropFromActiveListButtonClick();
    void ItemUpButtonClick();
    void ItemDownButtonClick();
    void SelectedPropTreeViewClick();

    void ActualValueComboBoxChange();
    void ActiveValueComboBoxChange();
    void PassiveValueComboBoxChange();
    // A text that does not convert by the edit's kind is replaced by the stored value.
    void ActualValueSmartEditExit();
    void ActiveValueSmartEditExit();
    void PassiveValueSmartEditExit();
    // Asks the host for a colour (HostServices().ChooseColor); a cancelled choice changes nothing.
    void ValuePanelClick(THVKColorPanel* Panel);
    // Stores what the user typed into a smart edit and has not left yet.
    void CommitPendingEdits();

    void HideAllValueControls();
    void ShowDefaultValueControls();
    void ShowSomeLabelControls();

    QTreeWidget* GetAvaiblePropTreeView() const;
    QTreeWidget* GetSelectedPropTreeView() const;

private:
    struct TPrivate;

    void ComboBoxChange(int Slot);
    void SmartEditExit(int Slot);
    void StoreValue(int Slot, const Variant& Value);
    void ShowValues(TKSControlSourcePropListItem& Item);

    std::unique_ptr<TPrivate> FPriv;
};

}  // namespace qx
