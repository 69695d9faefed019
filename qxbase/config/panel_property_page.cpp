#include "qxbase/config/panel_property_page.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollArea>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "qxbase/config/check_tree_view.h"
#include "qxbase/config/property_page_handler.h"
#include "qxbase/config/simulated_ad_settings.h"
#include "qxbase/panels/ctrl_client_prop_selector.h"
#include "qxbase/panels/property_page_opener.h"
#include "qxbase/panels/property_value_list.h"
#include "qxbase/panels/source_control_client.h"
#include "qxbase/resources/common_texts.h"
#include "qxbase/sources/measure_source.h"
#include "qxbase/sources/simulated_source.h"

namespace qx {

TKSPanelPropertyPage::TKSPanelPropertyPage(TKSMSSink& Panel, QWidget* parent) : QDialog(parent), FPanel(&Panel)
{
    setModal(true);
    const QString name = Panel.GetObjectDescription().isEmpty() ? Panel.objectName() : Panel.GetObjectDescription();
    setWindowTitle(res::_rsPropertyCaptionHead.Text() + name);
    FTabs = new QTabWidget(this);

    FValueList = new TKSPropertyValueList;
    FValueList->SetSource(&Panel);
    // A chart panel publishes more properties than a screen is high.
    auto* scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(FValueList);
    FTabs->addTab(scroll, QStringLiteral("Properties"));

    if (HasDataSourceTab(Panel)) {
        FFormerSource = Panel.GetMeasureSource();
        for (int i = 0; i < Panel.GetChannelCount(); ++i) FFormerChannels.push_back(Panel.GetChannelArray(i));
        auto* page = new QWidget;
        auto* tree = new THVKTansparentTreeView(page);
        FPicker = new TKSPropertyPageHandler(page);
        FTabs->addTab(page, QStringLiteral("Data source"));
        // The picker lays itself out on the page, which needs its size first.
        page->resize(FTabs->size());
        FPicker->Create(&Panel, tree);
        connect(FPicker, &TKSPropertyPageHandler::panelChanged, this, [this] {
            FSourceChanged = true;
            FValueList->RefreshValues();
        });
    }

    if (auto* client = qobject_cast<TKSSourceControlClient*>(&Panel)) {
        FFormerBindings = client->WriteControlSourceClientEx();
        FSelector = new TCtrlClientPropSelector;
        FSelector->SetTheComponent(client);
        // The first binding selected, so its values show at once.
        QTreeWidget* selected = FSelector->GetSelectedPropTreeView();
        if (selected->topLevelItemCount() > 0)
            selected->setCurrentItem(selected->topLevelItem(0));
        FTabs->addTab(FSelector, QStringLiteral("Control source"));
    }

    if (auto* simulated = qobject_cast<TKSSimulatedSource*>(&Panel)) {
        FFormerAD = simulated->GetADExtendedSettings();
        FADButton = new QPushButton(QStringLiteral("A/D extended..."), this);
        connect(FADButton, &QPushButton::clicked, this, [this] {
            if (auto* source = qobject_cast<TKSSimulatedSource*>(FPanel.data()))
                EditADExtendedSettings(*source, this);
            FValueList->RefreshValues();
        });
    }

    FOKButton = new QPushButton(QStringLiteral("OK"), this);
    FOKButton->setDefault(true);
    FCancelButton = new QPushButton(QStringLiteral("Cancel"), this);
    FCancelButton->setAutoDefault(false);
    connect(FOKButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(FCancelButton, &QPushButton::clicked, this, &QDialog::reject);
    auto* buttons = new QHBoxLayout;
    if (FADButton != nullptr)
        buttons->addWidget(FADButton);
    buttons->addStretch();
    buttons->addWidget(FOKButton);
    buttons->addWidget(FCancelButton);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(FTabs);
    layout->addLayout(buttons);
    resize(460, 420);
}

TKSPanelPropertyPage::~TKSPanelPropertyPage() = default;

bool TKSPanelPropertyPage::HasDataSourceTab(const TKSMSSink& Panel)
{
    return Panel.GetChannelMode() != 0 || qobject_cast<const TQXMLSBaseEx*>(&Panel) != nullptr;
}

void TKSPanelPropertyPage::done(int Result)
{
    if (Result == QDialog::Accepted) {
        if (FSelector)
            FSelector->CommitPendingEdits();
    } else {
        Restore();
    }
    QDialog::done(Result);
}

void TKSPanelPropertyPage::Restore()
{
    FValueList->Revert();
    TKSMSSink* panel = FPanel.data();
    if (panel == nullptr)
        return;
    if (auto* client = qobject_cast<TKSSourceControlClient*>(panel);
        client != nullptr && client->WriteControlSourceClientEx() != FFormerBindings) {
        // The selector points into the bindings about to be replaced.
        if (FSelector)
            FSelector->SetTheComponent(nullptr);
        client->GetPropInputList().clear();
        client->ReadControlSourceClientEx(FFormerBindings);
        client->InstallControlSourceConnections();
        if (FSelector)
            FSelector->SetTheComponent(client);
    }
    if (auto* simulated = qobject_cast<TKSSimulatedSource*>(panel);
        simulated != nullptr && !(simulated->GetADExtendedSettings() == FFormerAD))
        simulated->ApplyADExtendedSettings(FFormerAD, ADExtendedSettingsAll);
    if (FSourceChanged) {
        panel->SetMeasureSource(FFormerSource.data());
        panel->ChannelClear();
        if (panel->GetChannelMode() == 1 && !FFormerChannels.empty())
            panel->ChannelAdd(FFormerChannels.front());
        else
            panel->ChannelAddMultiple(FFormerChannels);
        panel->ChannelListChanged();
    }
}

void InstallPanelPropertyPages()
{
    SetPropertyPageOpener([](TKSMSSink& Panel) {
        TKSPanelPropertyPage page(Panel, Panel.window());
        page.exec();
    });
}

}  // namespace qx
