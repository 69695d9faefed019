#include "qxbase/panels/channel_visibilities_dialog.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "qxbase/panels/dialog_background.h"
#include "qxbase/resources/chart_texts.h"

namespace qx {

TFChannelVisibilities::TFChannelVisibilities(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
{
    setModal(true);
    setWindowTitle(res::_rsVisibilitiesCaption);
    setFixedSize(226, 189);
    FBackground = InstallDialogBackground(*this, res::_rsVisibilitiesCaption);

    QWidget* client = FBackground->GetClientArea();
    auto* lowered = new QFrame(client);
    lowered->setFrameShape(QFrame::Panel);
    lowered->setFrameShadow(QFrame::Sunken);
    FCLBVisibilities = new QListWidget(lowered);
    FCLBVisibilities->setObjectName(QStringLiteral("CLBVisibilities"));
    auto* listLayout = new QVBoxLayout(lowered);
    listLayout->setContentsMargins(2, 2, 2, 2);
    listLayout->addWidget(FCLBVisibilities);

    FBTNAllChannelsVisible = new QPushButton(res::_rsVisibilitiesAll, client);
    FBTNAllChannelsVisible->setObjectName(QStringLiteral("BTNAllChannelsVisible"));
    FBTNNoChannelVisible = new QPushButton(res::_rsVisibilitiesNone, client);
    FBTNNoChannelVisible->setObjectName(QStringLiteral("BTNNoChannelVisible"));
    FBTNOk = new QPushButton(res::_rsButtonOK, client);
    FBTNOk->setObjectName(QStringLiteral("BTNOk"));
    FBTNOk->setDefault(true);
    FBTNAllChannelsVisible->setAutoDefault(false);
    FBTNNoChannelVisible->setAutoDefault(false);
    connect(FBTNAllChannelsVisible, &QPushButton::clicked, this, [this] { CheckAll(true); });
    connect(FBTNNoChannelVisible, &QPushButton::clicked, this, [this] { CheckAll(false); });
    connect(FBTNOk, &QPushButton::clicked, this, [this] { done(mrOk); });

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(6);
    for (QPushButton* button : {FBTNAllChannelsVisible, FBTNNoChannelVisible, FBTNOk}) {
        button->setMinimumWidth(0);
        buttons->addWidget(button);
    }
    auto* layout = new QVBoxLayout(client);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(6);
    layout->addWidget(lowered, 1);
    layout->addLayout(buttons);
}

TFChannelVisibilities::~TFChannelVisibilities() = default;

void TFChannelVisibilities::SetChannels(const QStringList& Names, const std::vector<bool>& Visible)
{
    FCLBVisibilities->clear();
    for (int i = 0; i < Names.size(); ++i) {
        auto* item = new QListWidgetItem(Names[i], FCLBVisibilities);
        item->setFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        const bool visible = static_cast<std::size_t>(i) >= Visible.size() || Visible[static_cast<std::size_t>(i)];
        item->setCheckState(visible ? Qt::Checked : Qt::Unchecked);
    }
}

std::vector<bool> TFChannelVisibilities::GetVisibilities() const
{
    std::vector<bool> result;
    for (int i = 0; i < FCLBVisibilities->count(); ++i)
        result.push_back(FCLBVisibilities->item(i)->checkState() == Qt::Checked);
    return result;
}

void TFChannelVisibilities::CheckAll(bool Checked)
{
    for (int i = 0; i < FCLBVisibilities->count(); ++i)
        FCLBVisibilities->item(i)->setCheckState(Checked ? Qt::Checked : Qt::Unchecked);
}

void TFChannelVisibilities::reject() { done(mrCancel); }

void TFChannelVisibilities::showEvent(QShowEvent* event)
{
    CenterOnOwner(this);
    QDialog::showEvent(event);
}

}  // namespace qx
