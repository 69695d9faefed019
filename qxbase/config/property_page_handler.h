#pragma once

#include <QComboBox>
#include <QLabel>
#include <QObject>
#include <QPointer>
#include <vector>

#include "qxbase/config/check_tree_view.h"
#include "qxbase/framework/export.h"
#include "qxbase/panels/panel_base.h"
#include "qxbase/sources/measure_link.h"
#include "qxbase/sources/measure_source.h"

namespace qx {

// Turns a property page into a picker of the panel's data source and channels: a drop-down list
// of the data sources on the panel's worksheet and below it the chosen source's channels as check
// boxes. Checking and unchecking edits the panel's channel list at once; choosing another source
// refills the tree and connects the panel to it.
//
// The handler owns no data. Typical use on a dialog tab:
//     auto* page = new QWidget;                       // no layout: the handler places the controls
//     auto* tree = new THVKTansparentTreeView(page);
//     auto* handler = new TKSPropertyPageHandler(page);
//     handler->Create(panel, tree);
//     tabs->addTab(page, tr("Channels"));
// Panel, sources and tree are watched: one destroyed while the page is open is treated as absent.
class QXBASE_EXPORT TKSPropertyPageHandler : public QObject {
    Q_OBJECT

public:
    explicit TKSPropertyPageHandler(QObject* parent = nullptr);
    // Frees the source list only when it has no parent widget (Create without a page).
    ~TKSPropertyPageHandler() override;

    // Builds the picker; later calls do nothing. Either argument may be null.
    // With a tree view that has a parent widget (the page, which must have no layout): creates the
    // headings and the source list on the page, places them and the tree in pixels and keeps them
    // anchored while the page resizes. Otherwise the source list has no parent widget.
    // With a panel: lists every data source of the panel's worksheet (the panel too when it is
    // one; see ListMeasureSources), selects the panel's source by its description, hooks list and
    // tree, switches the tree's auto-expand off and fills the tree.
    void Create(TKSMSSink* Panel, THVKTansparentTreeView* TreeView);

    TQXMeasureSourceEx* GetMeasureSource() const { return FMeasureSource; }
    // Makes `Source` current and refills the tree; the panel is not touched.
    void SetMeasureSource(TQXMeasureSourceEx* Source);
    // Rebuilds the tree from the current source and the panel's channels: one item per source
    // channel, checked where the panel holds it (channels the source lacks are ignored), at most
    // 0, 1, 2 or every channel checked for the panel's ChannelMode 0 to 3. Empty without source.
    void FillTreeViewChannels();

    // The user chose a source: it becomes current, the tree is refilled, and the panel is
    // connected to it.
    void OnChange(QObject* Sender);
    // The list is about to open: relisted without the panel (matched by component name), the
    // former choice kept by its text, else none.
    void DoOnMeasureSourceComboDropDown(QObject* Sender);
    // A check box changed: a checked channel is added to the panel; an unchecked one is removed
    // (every occurrence) when the panel holds two or more channels, and a panel holding exactly
    // one is cleared whatever was unchecked. Ignored for Index < 0 and for the click the tree
    // refused; the panel's ChannelListChanged follows every change.
    void DoOnClickTreeviewChannel(QObject* Sender, int Index, THVKTreeViewItemStates State);
    // The tree refused a check: the click it reports next changes nothing.
    void DoOnToMuchChannels(QObject* Sender);

    TKSMSSink* GetPanel() const { return FPanel; }
    THVKTansparentTreeView* GetTreeView() const { return FTreeView; }
    QComboBox* GetSourceCombo() const { return FSourceCombo; }
    QLabel* GetSourceLabel() const { return FSourceLabel; }
    QLabel* GetChannelsLabel() const { return FChannelsLabel; }
    bool GetTooMany() const { return FTooMany; }

signals:
    // The handler changed the panel's channel list or data source.
    void panelChanged();

protected:
    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    void AddSource(TQXMeasureSourceEx* Source);
    void PlaceControls();
    void Watch();

    bool FCreated = false;
    bool FTooMany = false;
    QPointer<TKSMSSink> FPanel;
    QPointer<TQXMeasureSourceEx> FMeasureSource;
    // Attached to the current source only to hear of changes of its channel list, which refill
    // the tree (a stale tree would offer channels the source no longer has).
    TQXMeasureLinkEx FWatch{this};
    bool FWatching = true;
    QPointer<THVKTansparentTreeView> FTreeView;
    QPointer<QWidget> FPage;
    QPointer<QComboBox> FSourceCombo;
    QPointer<QLabel> FSourceLabel;
    QPointer<QLabel> FChannelsLabel;
    // The source of each entry of the list, by position.
    std::vector<QPointer<TQXMeasureSourceEx>> FSources;
};

}  // namespace qx
