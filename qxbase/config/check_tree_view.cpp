#include "qxbase/config/check_tree_view.h"

namespace qx {

// An item whose check-state changes go through its tree's limit and events once it is in the
// tree; before that (while AddItems builds it) and after Clear it is a plain item.
class THVKTansparentTreeView::TCheckItem : public QTreeWidgetItem {
public:
    explicit TCheckItem(const THVKTreeViewItemRecord& Record) : QTreeWidgetItem(QStringList{Record.Name}), Index(Record.Index)
    {
        setFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        setCheckState(0, Record.Checked != 0 ? Qt::Checked : Qt::Unchecked);
    }

    void setData(int Column, int Role, const QVariant& Value) override
    {
        auto* tree = qobject_cast<THVKTansparentTreeView*>(treeWidget());
        if (tree == nullptr || Column != 0 || Role != Qt::CheckStateRole) {
            QTreeWidgetItem::setData(Column, Role, Value);
            return;
        }
        tree->CheckRequested(*this, Value.toInt() != Qt::Unchecked);
    }

    void Store(bool Check) { QTreeWidgetItem::setData(0, Qt::CheckStateRole, Check ? Qt::Checked : Qt::Unchecked); }

    const std::int32_t Index;
};

THVKTansparentTreeView::THVKTansparentTreeView(QWidget* parent) : QTreeWidget(parent)
{
    setColumnCount(1);
    setHeaderHidden(true);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    connect(this, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* Current, QTreeWidgetItem* Previous) {
        if (!FAutoExpand)
            return;
        if (Previous != nullptr)
            Previous->setExpanded(false);
        if (Current != nullptr)
            Current->setExpanded(true);
    });
}

THVKTansparentTreeView::~THVKTansparentTreeView() = default;

void THVKTansparentTreeView::AddItems(const std::vector<THVKTreeViewItemRecord>& Items)
{
    QList<QTreeWidgetItem*> items;
    items.reserve(static_cast<qsizetype>(Items.size()));
    for (const THVKTreeViewItemRecord& record : Items)
        items.append(new TCheckItem(record));
    addTopLevelItems(items);
}

void THVKTansparentTreeView::Clear() { clear(); }

int THVKTansparentTreeView::GetCheckedCount() const
{
    int count = 0;
    for (int row = 0; row < topLevelItemCount(); ++row)
        count += topLevelItem(row)->checkState(0) == Qt::Checked ? 1 : 0;
    return count;
}

int THVKTansparentTreeView::GetItemIndex(int Row) const
{
    const auto* item = dynamic_cast<const TCheckItem*>(topLevelItem(Row));
    return item != nullptr ? item->Index : -1;
}

bool THVKTansparentTreeView::GetItemChecked(int Row) const
{
    const QTreeWidgetItem* item = topLevelItem(Row);
    return item != nullptr && item->checkState(0) == Qt::Checked;
}

void THVKTansparentTreeView::CheckRequested(TCheckItem& Item, bool Check)
{
    if ((Item.checkState(0) == Qt::Checked) == Check)
        return;
    // Hooks may clear the tree: after them the item is not touched again.
    const int index = Item.Index;
    if (Check && FMaxChecked != NoLimit && GetCheckedCount() >= FMaxChecked) {
        FireTooMany();
        FireItemClick(index, tvisUnchecked);
    } else {
        Item.Store(Check);
        FireItemClick(index, Check ? tvisChecked : tvisUnchecked);
    }
}

void THVKTansparentTreeView::FireItemClick(int Index, THVKTreeViewItemStates State)
{
    if (OnItemClick)
        OnItemClick(this, Index, State);
    emit itemCheckClicked(Index, State);
}

void THVKTansparentTreeView::FireTooMany()
{
    if (OnToMuchChecked)
        OnToMuchChecked(this);
    emit tooManyChecked();
}

}  // namespace qx
