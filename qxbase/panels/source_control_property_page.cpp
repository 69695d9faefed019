#include "qxbase/panels/source_control_property_page.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "qxbase/panels/ctrl_client_prop_selector.h"
#include "qxbase/panels/source_control_client.h"
#include "qxbase/resources/common_texts.h"

namespace qx {

namespace {
constexpr int KModalCancel = 2;
}

TKSSourceControlPropertyPage::TKSSourceControlPropertyPage(QWidget* parent) : QDialog(parent)
{
    setModal(true);
    FPageControl = new QTabWidget(this);
    FPageControl->setObjectName(QStringLiteral("PageControl"));
    FSelector = new TCtrlClientPropSelector;
    FSelector->setObjectName(QStringLiteral("CtrlClientPropSelector"));
    FSelector->GetSelectedPropTreeView()->setHeaderLabel(QStringLiteral("Item sequence:"));
    FPageControl->addTab(FSelector, QStringLiteral("Control source"));

    FOKButton = new QPushButton(QStringLiteral("OK"), this);
    FOKButton->setObjectName(QStringLiteral("OKButton"));
    FOKButton->setDefault(true);
    FCancelButton = new QPushButton(QStringLiteral("Cancel"), this);
    FCancelButton->setObjectName(QStringLiteral("CancelButton"));
    FCancelButton->setAutoDefault(false);
    connect(FOKButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(FCancelButton, &QPushButton::clicked, this, &TKSSourceControlPropertyPage::reject);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(FOKButton);
    buttons->addWidget(FCancelButton);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(FPageControl);
    layout->addLayout(buttons);
    resize(436, 358);
}

TKSSourceControlPropertyPage::~TKSSourceControlPropertyPage() = default;

TCtrlClientPropSelector* TKSSourceControlPropertyPage::GetSelector() const { return FSelector; }

void TKSSourceControlPropertyPage::SetTheComponent(TKSSourceControlClient* Client)
{
    FSelector->SetTheComponent(Client);
    if (!Client) return;
    const QString name = Client->GetCaption().isEmpty() ? Client->objectName() : Client->GetCaption();
    setWindowTitle(QStringLiteral("   ") + res::_rsPropertyCaptionHead.Text() + name);
}

void TKSSourceControlPropertyPage::done(int Result)
{
    // Showing the stored values again drops typed text, which would otherwise be stored when
    // the edit loses the focus as the page closes.
    if (Result == QDialog::Accepted) FSelector->CommitPendingEdits();
    else FSelector->SelectedPropTreeViewClick();
    QDialog::done(Result);
}

void TKSSourceControlPropertyPage::reject() { done(KModalCancel); }

void TKSSourceControlPropertyPage::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    QTreeWidget* selected = FSelector->GetSelectedPropTreeView();
    if (!FSelector->GetSelectedItem() && selected->topLevelItemCount() > 0)
        selected->setCurrentItem(selected->topLevelItem(0));
}

}  // namespace qx
