#include "qxbase/config/line_recorder_confirm_dialog.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include "qxbase/config/dialog_controls.h"
#include "qxbase/panels/dialog_background.h"
#include "qxbase/resources/config_texts.h"

namespace qx {

TLineRecorderConfirmDlg::TLineRecorderConfirmDlg(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
{
    setModal(true);
    setFixedSize(320, 140);
    FBackground = InstallDialogBackground(*this, res::_rsDefaultDeleteDialog);

    QWidget* client = FBackground->GetClientArea();
    FImage1 = new QLabel(client);
    FImage1->setObjectName(QStringLiteral("Image1"));
    FImage1->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxQuestion).pixmap(32, 32));
    FImage1->installEventFilter(this);
    FLabel1 = new QLabel(client);
    FLabel1->setObjectName(QStringLiteral("Label1"));
    FLabel2 = new QLabel(client);
    FLabel2->setObjectName(QStringLiteral("Label2"));
    for (QLabel* label : {FLabel1, FLabel2}) label->setWordWrap(true);
    FOkButton = new QPushButton(res::_rsYesButton, client);
    FOkButton->setObjectName(QStringLiteral("OkButton"));
    FOkButton->setDefault(true);
    FCancelButton = new QPushButton(res::_rsNoButton, client);
    FCancelButton->setObjectName(QStringLiteral("CancelButton"));
    FCancelButton->setAutoDefault(false);
    connect(FOkButton, &QPushButton::clicked, this, [this] { done(mrOk); });
    connect(FCancelButton, &QPushButton::clicked, this, [this] { done(mrCancel); });

    auto* texts = new QVBoxLayout;
    texts->addWidget(FLabel1);
    texts->addWidget(FLabel2);
    texts->addStretch(1);
    auto* question = new QHBoxLayout;
    question->addWidget(FImage1, 0, Qt::AlignTop);
    question->addSpacing(8);
    question->addLayout(texts, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(FOkButton);
    buttons->addWidget(FCancelButton);
    auto* layout = new QVBoxLayout(client);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->addLayout(question, 1);
    layout->addLayout(buttons);
}

TLineRecorderConfirmDlg::~TLineRecorderConfirmDlg() = default;

void TLineRecorderConfirmDlg::reject()
{
    done(mrCancel);
}

void TLineRecorderConfirmDlg::showEvent(QShowEvent* event)
{
    UseWindowTextColor(*this, *FBackground);
    const QString caption = QStringLiteral("   ") + res::_rsConfirm;
    setWindowTitle(caption);
    FBackground->SetCaption(caption);
    CenterOnOwner(this);
    QDialog::showEvent(event);
}

bool TLineRecorderConfirmDlg::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == FImage1 && event->type() == QEvent::MouseButtonRelease) {
        reject();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

}  // namespace qx
