#pragma once

#include <QDialog>
#include <QPointer>
#include <QStringList>
#include <memory>
#include <vector>

#include "qxbase/framework/export.h"
#include "qxbase/panels/ctrl_client_prop_selector.h"
#include "qxbase/sources/ad_conversion.h"

class QPushButton;
class QTabWidget;

namespace qx {

class TKSMSSink;
class TKSPropertyPageHandler;
class TKSPropertyValueList;
class TQXMeasureSourceEx;

// The property page of any panel, captioned "Properties of " and the panel's description: a
// "Properties" tab with the properties the panel publishes on the bus (TKSPropertyValueList),
// for data panels and processors a "Data source" tab with the source and channel picker, and for
// binding clients their "Control source" tab (TCtrlClientPropSelector); a simulated source adds
// "A/D extended...", its converter settings (EditADExtendedSettings). Every edit acts at once.
// OK keeps the changes; Cancel (also Escape and the close button) restores every value the page
// changed: the properties written, the data source and channel list, the bindings and the
// converter settings. A panel
// destroyed while the page is open leaves its tabs inert and nothing to restore.
class QXBASE_EXPORT TKSPanelPropertyPage : public QDialog {
    Q_OBJECT

public:
    explicit TKSPanelPropertyPage(TKSMSSink& Panel, QWidget* parent = nullptr);
    ~TKSPanelPropertyPage() override;

    // Panels that read a data source: a channel mode other than 0, or a processor.
    static bool HasDataSourceTab(const TKSMSSink& Panel);

    QTabWidget* GetTabs() const { return FTabs; }
    TKSPropertyValueList* GetValueList() const { return FValueList; }
    // Null without the tab.
    TKSPropertyPageHandler* GetPicker() const { return FPicker; }
    TCtrlClientPropSelector* GetSelector() const { return FSelector; }
    QPushButton* GetOKButton() const { return FOKButton; }
    QPushButton* GetCancelButton() const { return FCancelButton; }
    // "A/D extended..." of a simulated source (EditADExtendedSettings); null for other panels.
    QPushButton* GetADButton() const { return FADButton; }

    void done(int Result) override;

private:
    void Restore();

    QPointer<TKSMSSink> FPanel;
    QTabWidget* FTabs = nullptr;
    TKSPropertyValueList* FValueList = nullptr;
    TKSPropertyPageHandler* FPicker = nullptr;
    QPointer<TCtrlClientPropSelector> FSelector;
    QPushButton* FOKButton = nullptr;
    QPushButton* FCancelButton = nullptr;
    QPushButton* FADButton = nullptr;
    TQXADExtendedSettings FFormerAD;
    // What Cancel puts back.
    QPointer<TQXMeasureSourceEx> FFormerSource;
    std::vector<int> FFormerChannels;
    bool FSourceChanged = false;
    QStringList FFormerBindings;
};

// Installs TKSPanelPropertyPage as the page "Properties" opens for every panel without a page
// of its own (property_page_opener.h).
QXBASE_EXPORT void InstallPanelPropertyPages();

}  // namespace qx
