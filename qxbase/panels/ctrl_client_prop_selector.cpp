#include "qxbase/panels/ctrl_client_prop_selector.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <exception>
#include <functional>
#include <vector>

#include "qxbase/framework/host_services.h"
#include "qxbase/panels/color_panel.h"
#include "qxbase/panels/smart_edit.h"

namespace qx {

namespace {

enum TValueSlot : int { vsActual, vsActive, vsPassive, vsCount };

constexpr int KItemRole = Qt::UserRole;

const std::array<const char*, vsCount> KSlotPrefix = {"Actual", "Active", "Passive"};

bool IsIntegerType(std::uint16_t Type) { return SmartEditKindOf(Type) == sekInteger; }

// The worksheet of a client: the topmost ancestor, or the host's container for a client that
// has no owner.
QObject* WorksheetOf(TKSSourceControlClient& Client)
{
    QObject* container = Client.parent();
    if (!container) return HostServices().GetContainer ? HostServices().GetContainer(&Client) : nullptr;
    while (container->parent()) container = container->parent();
    return container;
}

// Every control source below Root, depth first, in child order.
void CollectSources(const QObject& Root, std::vector<TQXControlSource*>& Sources)
{
    for (QObject* child : Root.children()) {
        if (auto* source = dynamic_cast<TQXControlSource*>(child)) Sources.push_back(source);
        CollectSources(*child, Sources);
    }
}

QString ComponentNameOf(const TQXControlSource& Source)
{
    const auto* object = dynamic_cast<const QObject*>(&Source);
    return object ? object->objectName() : QString();
}

// The property type of a binding, looked up in its source when it can be found, else the one
// it last resolved to (0 if never).
std::uint16_t ResolvedTypeOf(TKSSourceControlClient& Client, const TKSControlSourcePropListItem& Item)
{
    TQXControlSource* source = Client.GetPanelByName(Item.FPanelName);
    TQXPropertyHandle handle = 0;
    std::uint16_t type = 0;
    QString typeInfo;
    if (source && source->GetPropertyHandle(Item.FPropertyName, handle))
        source->GetPropertyType(handle, type, typeInfo);
    return type ? type : Item.FPropertyType;
}

QString SourceText(const TKSControlSourcePropListItem& Item)
{
    const QString name = QLatin1Char('[') + Item.FPanelName + QLatin1Char(']');
    return Item.FSourceDescription.isEmpty() ? name : Item.FSourceDescription + QLatin1Char(' ') + name;
}

QString PropertyText(const TKSControlSourcePropListItem& Item)
{
    return Item.FPropertyDescription.isEmpty() ? Item.FPropertyName : Item.FPropertyDescription;
}

// The value shown as a colour; black when it is not a number.
TColor ColorOf(const Variant& Value)
{
    try {
        return Value.IsNull() || Value.IsArray() ? clBlack : Value.ToInteger();
    } catch (const std::exception&) {
        return clBlack;
    }
}

}  // namespace

TValueEditorKind ValueEditorKindOf(std::uint16_t PropertyType, const QString& TypeInfo,
                                   const QString& PropertyName)
{
    if (PropertyType == varQXEnumeration) return vekComboBox;
    if (IsIntegerType(PropertyType) &&
        (TypeInfo.compare(QLatin1String("TColor"), Qt::CaseInsensitive) == 0 ||
         PropertyName.endsWith(QLatin1String("Color"), Qt::CaseInsensitive)))
        return vekColorPanel;
    return vekSmartEdit;
}

struct TCtrlClientPropSelector::TPrivate {
    struct TValueControls {
        QLabel* Label = nullptr;
        QComboBox* ComboBox = nullptr;
        THVKSmartEdit* SmartEdit = nullptr;
        THVKColorPanel* Panel = nullptr;
    };

    QPointer<TKSSourceControlClient> FClient;
    QMetaObject::Connection FClientGone;
    TKSControlSourcePropList FAvailable;
    QTreeWidget* FAvailableTree = nullptr;
    QTreeWidget* FSelectedTree = nullptr;
    std::array<TValueControls, vsCount> FValues;
    int FEnumerationLow = 0;  // array index of the first combo box item

    // Index of Item in the client's list, or -1.
    int IndexOf(const TKSControlSourcePropListItem* Item) const
    {
        if (!FClient || !Item) return -1;
        const TKSControlSourcePropList& list = FClient->GetPropInputList();
        for (std::size_t i = 0; i < list.size(); ++i)
            if (list[i].get() == Item) return static_cast<int>(i);
        return -1;
    }
};

TCtrlClientPropSelector::TCtrlClientPropSelector(QWidget* parent)
    : QWidget(parent), FPriv(std::make_unique<TPrivate>())
{
    TPrivate& d = *FPriv;
    auto makeTree = [this](const char* Name, const QString& Title) {
        auto* tree = new QTreeWidget(this);
        tree->setObjectName(QLatin1String(Name));
        tree->setHeaderLabel(Title);
        tree->setRootIsDecorated(true);
        tree->setSelectionMode(QAbstractItemView::SingleSelection);
        return tree;
    };
    d.FAvailableTree = makeTree("AvaiblePropTreeView", QStringLiteral("Available items"));
    d.FSelectedTree = makeTree("SelectedPropTreeView", QStringLiteral("Item sequence"));
    d.FSelectedTree->setRootIsDecorated(false);

    // Buttons never take Enter from a dialog that hosts the selector.
    auto makeButton = [this](const char* Name, const QString& Text, void (TCtrlClientPropSelector::*Click)()) {
        auto* button = new QPushButton(Text, this);
        button->setObjectName(QLatin1String(Name));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, Click] { (this->*Click)(); });
        return button;
    };
    auto* buttons = new QVBoxLayout;
    buttons->addStretch();
    buttons->addWidget(makeButton("AddPropToActiveListButton", QStringLiteral("Add>>"),
                                  &TCtrlClientPropSelector::DoAvailableListDoubleClick));
    buttons->addWidget(makeButton("RemovePropFromActiveListButton", QStringLiteral("<<Rem."),
                                  &TCtrlClientPropSelector::RemovePropFromActiveListButtonClick));
    buttons->addSpacing(12);
    buttons->addWidget(makeButton("ItemUpButton", QStringLiteral("Up"), &TCtrlClientPropSelector::ItemUpButtonClick));
    buttons->addWidget(makeButton("ItemDownButton", QStringLiteral("Down"), &TCtrlClientPropSelector::ItemDownButtonClick));
    buttons->addStretch();

    auto* trees = new QHBoxLayout;
    trees->addWidget(d.FAvailableTree, 1);
    trees->addLayout(buttons);
    trees->addWidget(d.FSelectedTree, 1);
    auto* grid = new QGridLayout;
    grid->setColumnStretch(1, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addLayout(trees, 1);
    layout->addLayout(grid);

    const std::array<QString, vsCount> captions = {QStringLiteral("Actual value:"), QStringLiteral("Active value:"),
                                                   QStringLiteral("Passive value:")};
    for (int slot = 0; slot < vsCount; ++slot) {
        TPrivate::TValueControls& c = d.FValues[static_cast<std::size_t>(slot)];
        const QString prefix = QLatin1String(KSlotPrefix[static_cast<std::size_t>(slot)]);
        c.Label = new QLabel(captions[static_cast<std::size_t>(slot)], this);
        c.Label->setObjectName(prefix + QLatin1String("ValueLabel"));
        c.ComboBox = new QComboBox(this);
        c.ComboBox->setObjectName(prefix + QLatin1String("ValueComboBox"));
        c.SmartEdit = new THVKSmartEdit(this);
        c.SmartEdit->setObjectName(prefix + QLatin1String("ValueSmartEdit"));
        c.Panel = new THVKColorPanel(this);
        c.Panel->setObjectName(prefix + QLatin1String("ValuePanel"));
        auto* editors = new QHBoxLayout;
        editors->setContentsMargins(0, 0, 0, 0);
        editors->addWidget(c.ComboBox);
        editors->addWidget(c.SmartEdit);
        editors->addWidget(c.Panel);
        c.ComboBox->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        grid->addWidget(c.Label, slot, 0);
        grid->addLayout(editors, slot, 1);
        connect(c.ComboBox, &QComboBox::currentIndexChanged, this, [this, slot] { ComboBoxChange(slot); });
        connect(c.SmartEdit, &QLineEdit::editingFinished, this, [this, slot] { SmartEditExit(slot); });
        THVKColorPanel* panel = c.Panel;
        connect(panel, &THVKColorPanel::Clicked, this, [this, panel] { ValuePanelClick(panel); });
    }

    connect(d.FAvailableTree, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* Item) {
        FPriv->FAvailableTree->setCurrentItem(Item);
        DoAvailableListDoubleClick();
    });
    connect(d.FSelectedTree, &QTreeWidget::itemSelectionChanged, this, [this] { SelectedPropTreeViewClick(); });
    HideAllValueControls();
    ShowDefaultValueControls();
}

TCtrlClientPropSelector::~TCtrlClientPropSelector()
{
    // The children go with the QWidget base after FPriv; their last signals must not reach us.
    disconnect(FPriv->FClientGone);
    for (QObject* child : findChildren<QObject*>()) disconnect(child, nullptr, this, nullptr);
}

QTreeWidget* TCtrlClientPropSelector::GetAvaiblePropTreeView() const { return FPriv->FAvailableTree; }
QTreeWidget* TCtrlClientPropSelector::GetSelectedPropTreeView() const { return FPriv->FSelectedTree; }
TKSSourceControlClient* TCtrlClientPropSelector::GetTheComponent() const { return FPriv->FClient.data(); }
const TKSControlSourcePropList& TCtrlClientPropSelector::GetAvailableList() const { return FPriv->FAvailable; }

void TCtrlClientPropSelector::SetTheComponent(TKSSourceControlClient* Client)
{
    TPrivate& d = *FPriv;
    disconnect(d.FClientGone);
    d.FClient = Client;
    if (Client) {
        // Bindings die with their client: drop every pointer to them before they are freed.
        d.FClientGone = connect(Client, &QObject::destroyed, this, [this] { SetTheComponent(nullptr); });
    }
    const TKSControlSourcePropListItem* reference = nullptr;
    if (Client && !Client->GetPropInputList().empty()) reference = Client->GetPropInputList().front().get();
    FillAvaibleControlSourceList(reference);
    FillTreeViewWithList();
    FillSelectedTreeView(nullptr);
}

bool TCtrlClientPropSelector::IsMustFilter(const QString& Name)
{
    const QString upper = Name.toUpper();
    return upper == QLatin1String("ACTION COUNTER") || upper == QLatin1String("SEQUENCER");
}

void TCtrlClientPropSelector::FillAvaibleControlSourceList(const TKSControlSourcePropListItem* Reference)
{
    TPrivate& d = *FPriv;
    d.FAvailable.clear();
    TKSSourceControlClient* client = d.FClient.data();
    if (!client) return;
    QObject* worksheet = WorksheetOf(*client);
    if (!worksheet) return;
    const std::uint16_t referenceType = Reference ? ResolvedTypeOf(*client, *Reference) : 0;

    std::vector<TQXControlSource*> sources;
    CollectSources(*worksheet, sources);
    for (TQXControlSource* source : sources) {
        const QString panelName = ComponentNameOf(*source);
        if (panelName.isEmpty()) continue;  // bindings find their panels by name
        Variant names;
        source->GetPropertyList(names);
        if (!names.IsArray()) continue;
        for (int i = names.ArrayLowBound(); i <= names.ArrayHighBound(); ++i) {
            const QString name = names.ArrayElement(i).ToString();
            auto item = std::make_unique<TKSControlSourcePropListItem>();
            if (!source->GetPropertyHandle(name, item->FPropertyHandle)) continue;
            source->GetPropertyType(item->FPropertyHandle, item->FPropertyType, item->FTypeInfo);
            if (referenceType != 0 && item->FPropertyType != referenceType) continue;
            item->FPanelName = panelName;
            item->FSourceDescription = source->GetObjectDescription();
            item->FPropertyName = name;
            source->GetDescriptionFromName(name, item->FPropertyDescription);
            item->FSource = source;
            if (!client->CanClientHandle(item.get(), item->FPropertyHandle, name)) continue;
            item->FSource = nullptr;  // not kept: the source may go while the list is shown
            d.FAvailable.push_back(std::move(item));
        }
    }
    std::stable_sort(d.FAvailable.begin(), d.FAvailable.end(), [](const auto& a, const auto& b) {
        const bool apart = IsMustFilter(a->FSourceDescription);
        if (apart != IsMustFilter(b->FSourceDescription)) return !apart;
        return SortFunc_ControlSourcePropList(*a, *b) < 0;
    });
}

void TCtrlClientPropSelector::FillTreeViewWithList()
{
    TPrivate& d = *FPriv;
    QTreeWidget* tree = d.FAvailableTree;
    const QSignalBlocker blocker(tree);
    tree->clear();
    QTreeWidgetItem* apart = nullptr;
    QTreeWidgetItem* sourceNode = nullptr;
    const TKSControlSourcePropListItem* previous = nullptr;
    for (std::size_t i = 0; i < d.FAvailable.size(); ++i) {
        const TKSControlSourcePropListItem& item = *d.FAvailable[i];
        if (!previous || previous->FPanelName != item.FPanelName) {
            QTreeWidgetItem* parentNode = nullptr;
            if (IsMustFilter(item.FSourceDescription)) {
                if (!apart) {
                    apart = new QTreeWidgetItem(tree, {QStringLiteral("Sequencers and action counters")});
                    apart->setData(0, KItemRole, -1);
                }
                parentNode = apart;
            }
            sourceNode = parentNode ? new QTreeWidgetItem(parentNode, {SourceText(item)})
                                    : new QTreeWidgetItem(tree, {SourceText(item)});
            sourceNode->setData(0, KItemRole, -1);
        }
        auto* node = new QTreeWidgetItem(sourceNode, {PropertyText(item)});
        node->setData(0, KItemRole, static_cast<int>(i));
        previous = &item;
    }
    tree->expandAll();
}

void TCtrlClientPropSelector::FillSelectedTreeView(const TKSControlSourcePropListItem* Select)
{
    TPrivate& d = *FPriv;
    QTreeWidget* tree = d.FSelectedTree;
    {
        const QSignalBlocker blocker(tree);
        tree->clear();
        if (d.FClient) {
            for (const auto& binding : d.FClient->GetPropInputList()) {
                // Bindings read from a file carry no description until someone asks their source.
                if (binding->FPropertyDescription.isEmpty() && binding->FSource != nullptr)
                    binding->FSource->GetDescriptionFromName(binding->FPropertyName, binding->FPropertyDescription);
                QString text = SourceText(*binding) + QLatin1String(": ") + PropertyText(*binding);
                if (!binding->IsResolved()) text += QLatin1String(" (unresolved)");
                auto* node = new QTreeWidgetItem(tree, {text});
                node->setData(0, KItemRole, QVariant::fromValue(reinterpret_cast<quintptr>(binding.get())));
                if (binding.get() == Select) tree->setCurrentItem(node);
            }
        }
    }
    SelectedPropTreeViewClick();
}

TKSControlSourcePropListItem* TCtrlClientPropSelector::GetSelectedItem() const
{
    const TPrivate& d = *FPriv;
    const QTreeWidgetItem* node = d.FSelectedTree->currentItem();
    if (!node || !node->isSelected()) return nullptr;
    auto* item = reinterpret_cast<TKSControlSourcePropListItem*>(node->data(0, KItemRole).value<quintptr>());
    // The client may have dropped the binding meanwhile (its source went away).
    return d.IndexOf(item) >= 0 ? item : nullptr;
}

void TCtrlClientPropSelector::DoAvailableListDoubleClick() { AddPropToActiveListButtonClick(); }

bool TCtrlClientPropSelector::AddPropToActiveListButtonClick()
{
    TPrivate& d = *FPriv;
    TKSSourceControlClient* client = d.FClient.data();
    const QTreeWidgetItem* node = d.FAvailableTree->currentItem();
    if (!client || !node) return false;
    const int index = node->data(0, KItemRole).toInt();
    if (index < 0 || index >= static_cast<int>(d.FAvailable.size())) return false;
    const TKSControlSourcePropListItem& chosen = *d.FAvailable[static_cast<std::size_t>(index)];

    // Look the source up again: it may have gone since the tree was filled.
    TQXControlSource* source = client->GetPanelByName(chosen.FPanelName);
    TQXPropertyHandle handle = 0;
    if (!source || !source->GetPropertyHandle(chosen.FPropertyName, handle)) return false;
    TKSControlSourcePropList& list = client->GetPropInputList();
    for (const auto& binding : list) {
        if (binding->FPanelName == chosen.FPanelName && binding->FPropertyName == chosen.FPropertyName) {
            FillSelectedTreeView(binding.get());
            return false;
        }
    }
    auto item = std::make_unique<TKSControlSourcePropListItem>();
    item->FPanelName = chosen.FPanelName;
    item->FPropertyName = chosen.FPropertyName;
    item->FDataType = 0;
    source->GetDescriptionFromName(chosen.FPropertyName, item->FPropertyDescription);
    if (!client->CanClientAdd(item.get(), handle, chosen.FPropertyName)) return false;
    TKSControlSourcePropListItem* added = item.get();
    list.push_back(std::move(item));
    bool connected = false;
    try {
        connected = client->SetupPropertyConnnection(added);
    } catch (const std::exception&) {
        connected = false;  // the source's property callback failed while reading the value
    }
    if (!connected) {
        const int at = d.IndexOf(added);
        if (at >= 0) list.erase(list.begin() + at);
        return false;
    }
    // The first binding becomes the reference, as when the selector is opened on it.
    if (list.size() == 1) {
        FillAvaibleControlSourceList(added);
        FillTreeViewWithList();
    }
    FillSelectedTreeView(added);
    return true;
}

void TCtrlClientPropSelector::RemovePropFromActiveListButtonClick()
{
    TPrivate& d = *FPriv;
    const int index = d.IndexOf(GetSelectedItem());
    if (index < 0) return;
    TKSControlSourcePropList& list = d.FClient->GetPropInputList();
    list.erase(list.begin() + index);
    if (list.empty()) {
        FillAvaibleControlSourceList(nullptr);
        FillTreeViewWithList();
    }
    // Keep a selection in place so that several bindings can be removed in a row.
    const int next = std::min(index, static_cast<int>(list.size()) - 1);
    FillSelectedTreeView(next >= 0 ? list[static_cast<std::size_t>(next)].get() : nullptr);
}

void TCtrlClientPropSelector::ItemUpButtonClick()
{
    TPrivate& d = *FPriv;
    TKSControlSourcePropListItem* item = GetSelectedItem();
    const int index = d.IndexOf(item);
    if (index <= 0) return;
    TKSControlSourcePropList& list = d.FClient->GetPropInputList();
    std::swap(list[static_cast<std::size_t>(index)], list[static_cast<std::size_t>(index - 1)]);
    FillSelectedTreeView(item);
}

void TCtrlClientPropSelector::ItemDownButtonClick()
{
    TPrivate& d = *FPriv;
    TKSControlSourcePropListItem* item = GetSelectedItem();
    const int index = d.IndexOf(item);
    if (index < 0) return;
    TKSControlSourcePropList& list = d.FClient->GetPropInputList();
    if (index + 1 >= static_cast<int>(list.size())) return;
    std::swap(list[static_cast<std::size_t>(index)], list[static_cast<std::size_t>(index + 1)]);
    FillSelectedTreeView(item);
}

void TCtrlClientPropSelector::SelectedPropTreeViewClick()
{
    TKSControlSourcePropListItem* item = GetSelectedItem();
    if (!item) {
        ShowDefaultValueControls();
        return;
    }
    for (const auto& c : FPriv->FValues) c.Label->show();
    ShowValues(*item);
}

void TCtrlClientPropSelector::ShowValues(TKSControlSourcePropListItem& Item)
{
    TPrivate& d = *FPriv;
    TValueEditorKind kind = ValueEditorKindOf(Item.FPropertyType, Item.FTypeInfo, Item.FPropertyName);
    QStringList choices;
    d.FEnumerationLow = 0;
    if (kind == vekComboBox && Item.IsResolved() && Item.FEventLink) {
        Variant list;
        if (Item.FSource->GetEnumerationList(Item.FPropertyHandle, list) && list.IsArray()) {
            d.FEnumerationLow = list.ArrayLowBound();
            for (int i = list.ArrayLowBound(); i <= list.ArrayHighBound(); ++i)
                choices << SmartValueText(list.ArrayElement(i));
        }
    }
    // Without its choices (an unresolved binding) an enumeration value shows as its index.
    if (kind == vekComboBox && choices.isEmpty()) kind = vekSmartEdit;
    const std::array<const Variant*, vsCount> values = {&Item.FActualValue, &Item.FActiveValue, &Item.FPassiveValue};
    for (int slot = 0; slot < vsCount; ++slot) {
        TPrivate::TValueControls& c = d.FValues[static_cast<std::size_t>(slot)];
        const Variant& value = *values[static_cast<std::size_t>(slot)];
        switch (kind) {
        case vekComboBox: {
            const QSignalBlocker blocker(c.ComboBox);
            c.ComboBox->clear();
            c.ComboBox->addItems(choices);
            // A value is an array index; a text (from an older file) selects its item.
            int position = -1;
            try {
                position = value.ToInteger() - d.FEnumerationLow;
            } catch (const std::exception&) {
                position = -1;
            }
            if (position < 0 || position >= choices.size()) {
                position = -1;
                for (int i = 0; i < choices.size() && position < 0; ++i)
                    if (value.VarType() == varOleStr && value.EqualsText(choices[i])) position = i;
            }
            c.ComboBox->setCurrentIndex(position);
            break;
        }
        case vekColorPanel: c.Panel->SetColor(ColorOf(value)); break;
        case vekSmartEdit:
            c.SmartEdit->SetKind(Item.FPropertyType == varQXEnumeration ? sekInteger
                                                                         : SmartEditKindOf(Item.FPropertyType));
            c.SmartEdit->SetValue(value);
            c.SmartEdit->setEnabled(true);
            break;
        }
        // Only changed visibility: hiding the edit that has the focus would end its editing.
        c.ComboBox->setVisible(kind == vekComboBox);
        c.Panel->setVisible(kind == vekColorPanel);
        c.SmartEdit->setVisible(kind == vekSmartEdit);
    }
}

void TCtrlClientPropSelector::StoreValue(int Slot, const Variant& Value)
{
    TKSControlSourcePropListItem* item = GetSelectedItem();
    if (!item) return;
    switch (Slot) {
    case vsActive: item->FActiveValue = Value; break;
    case vsPassive: item->FPassiveValue = Value; break;
    default:
        // The actual value is the source's own: write it there and show what it took.
        item->FActualValue = Value;
        if (item->IsResolved() && item->FEventLink) {
            try {
                item->FSource->SetPropertyValue(FPriv->FClient.data(), item->FPropertyHandle, Value);
                item = GetSelectedItem();  // listeners of the write may have dropped the binding
                if (item && item->FSource) item->FSource->GetPropertyValue(item->FPropertyHandle, item->FActualValue);
            } catch (const std::exception&) {
                // A refused value leaves the source as it was; the editors show what is stored.
            }
        }
        break;
    }
    SelectedPropTreeViewClick();
}

void TCtrlClientPropSelector::ComboBoxChange(int Slot)
{
    const int position = FPriv->FValues[static_cast<std::size_t>(Slot)].ComboBox->currentIndex();
    if (position < 0) return;
    StoreValue(Slot, Variant(static_cast<std::int32_t>(FPriv->FEnumerationLow + position)));
}

void TCtrlClientPropSelector::ActualValueComboBoxChange() { ComboBoxChange(vsActual); }
void TCtrlClientPropSelector::ActiveValueComboBoxChange() { ComboBoxChange(vsActive); }
void TCtrlClientPropSelector::PassiveValueComboBoxChange() { ComboBoxChange(vsPassive); }

void TCtrlClientPropSelector::SmartEditExit(int Slot)
{
    THVKSmartEdit* edit = FPriv->FValues[static_cast<std::size_t>(Slot)].SmartEdit;
    if (!edit->isModified()) return;
    edit->setModified(false);  // storing may move the focus, which would end the edit again
    Variant value;
    if (edit->GetValue(value)) {
        StoreValue(Slot, value);
        return;
    }
    // A text that does not convert: put the stored value back.
    TKSControlSourcePropListItem* item = GetSelectedItem();
    const std::array<const Variant*, vsCount> values = {item ? &item->FActualValue : nullptr,
                                                        item ? &item->FActiveValue : nullptr,
                                                        item ? &item->FPassiveValue : nullptr};
    edit->SetValue(item ? *values[static_cast<std::size_t>(Slot)] : Variant());
}

void TCtrlClientPropSelector::ActualValueSmartEditExit() { SmartEditExit(vsActual); }
void TCtrlClientPropSelector::ActiveValueSmartEditExit() { SmartEditExit(vsActive); }
void TCtrlClientPropSelector::PassiveValueSmartEditExit() { SmartEditExit(vsPassive); }

void TCtrlClientPropSelector::CommitPendingEdits()
{
    for (int slot = 0; slot < vsCount; ++slot) SmartEditExit(slot);
}

void TCtrlClientPropSelector::ValuePanelClick(THVKColorPanel* Panel)
{
    for (int slot = 0; slot < vsCount; ++slot) {
        if (FPriv->FValues[static_cast<std::size_t>(slot)].Panel != Panel) continue;
        if (!GetSelectedItem()) return;
        TColor color = Panel->GetColor();
        if (!HostServices().ChooseColor || !HostServices().ChooseColor(window(), color)) return;
        Panel->SetColor(color);
        StoreValue(slot, Variant(static_cast<std::int32_t>(color)));
        return;
    }
}

void TCtrlClientPropSelector::HideAllValueControls()
{
    for (const auto& c : FPriv->FValues) {
        c.Label->hide();
        c.ComboBox->hide();
        c.SmartEdit->hide();
        c.Panel->hide();
    }
}

void TCtrlClientPropSelector::ShowDefaultValueControls()
{
    // Empty, disabled edits keep the layout steady while nothing is selected.
    for (const auto& c : FPriv->FValues) {
        c.Label->show();
        c.ComboBox->hide();
        c.Panel->hide();
        c.SmartEdit->SetKind(sekText);
        c.SmartEdit->SetValue(Variant());
        c.SmartEdit->setEnabled(false);
        c.SmartEdit->show();
    }
}

void TCtrlClientPropSelector::ShowSomeLabelControls()
{
    for (const auto& c : FPriv->FValues) c.Label->show();
    SelectedPropTreeViewClick();
}

}  // namespace qx
