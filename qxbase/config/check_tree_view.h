#pragma once

#include <QString>
#include <QTreeWidget>
#include <cstdint>
#include <functional>
#include <vector>

#include "qxbase/framework/export.h"

namespace qx {

// One item handed to the tree: a channel's name, whether it starts checked (non-zero) and the
// channel's index in its source, which the click event reports.
struct THVKTreeViewItemRecord {
    QString Name;
    std::uint8_t Checked = 0;
    std::int32_t Index = -1;
};

// A tree of check boxes, one top-level item per record, with a limit on how many items may be
// checked at once. A check beyond the limit is refused: the item stays unchecked, the too-many
// event fires and then the click event with the unchecked state, so a listener can tell the
// refused click from the next one. Mouse clicks on a check box, the space key and
// QTreeWidgetItem::setCheckState on an item AddItems made all take this path.
//
// Hooks run while the tree is inside its own event handling: one may call Clear or AddItems, but
// must not delete the tree (deleteLater is fine).
class QXBASE_EXPORT THVKTansparentTreeView : public QTreeWidget {
    Q_OBJECT
    Q_PROPERTY(int MaxChecked READ GetMaxChecked WRITE SetMaxChecked)
    Q_PROPERTY(bool AutoExpand READ GetAutoExpand WRITE SetAutoExpand)

public:
    // The state a click left an item in.
    enum THVKTreeViewItemStates : std::uint8_t { tvisUnchecked = 0, tvisChecked = 1 };
    Q_ENUM(THVKTreeViewItemStates)

    using TItemClickEvent = std::function<void(QObject* Sender, int Index, THVKTreeViewItemStates State)>;
    using TNotifyEvent = std::function<void(QObject* Sender)>;

    static constexpr int NoLimit = -1;

    explicit THVKTansparentTreeView(QWidget* parent = nullptr);
    ~THVKTansparentTreeView() override;

    // Appends one item per record; fires nothing, and the limit does not apply to the states
    // handed in.
    void AddItems(const std::vector<THVKTreeViewItemRecord>& Items);
    // Removes every item; fires nothing.
    void Clear();

    // NoLimit at the start; a negative value means no limit.
    int GetMaxChecked() const { return FMaxChecked; }
    void SetMaxChecked(int Value) { FMaxChecked = Value < 0 ? NoLimit : Value; }
    int GetCheckedCount() const;
    // The record index and check state of the item in `Row`; -1 and false beyond the list.
    int GetItemIndex(int Row) const;
    bool GetItemChecked(int Row) const;

    // When on, the current item is expanded and the one before it collapsed. On at the start.
    bool GetAutoExpand() const { return FAutoExpand; }
    void SetAutoExpand(bool Value) { FAutoExpand = Value; }

    TItemClickEvent OnItemClick;
    TNotifyEvent OnToMuchChecked;

signals:
    void itemCheckClicked(int Index, qx::THVKTansparentTreeView::THVKTreeViewItemStates State);
    void tooManyChecked();

private:
    class TCheckItem;

    // Where every check-state change of an item in the tree arrives.
    void CheckRequested(TCheckItem& Item, bool Check);
    void FireItemClick(int Index, THVKTreeViewItemStates State);
    void FireTooMany();

    int FMaxChecked = NoLimit;
    bool FAutoExpand = true;
};

using THVKTreeViewItemStates = THVKTansparentTreeView::THVKTreeViewItemStates;
inline constexpr THVKTreeViewItemStates tvisUnchecked = THVKTansparentTreeView::tvisUnchecked;
inline constexpr THVKTreeViewItemStates tvisChecked = THVKTansparentTreeView::tvisChecked;

}  // namespace qx
