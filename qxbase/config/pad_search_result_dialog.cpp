#include "qxbase/config/pad_search_result_dialog.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "qxbase/config/dialog_controls.h"
#include "qxbase/panels/dialog_background.h"
#include "qxbase/resources/config_texts.h"

namespace qx {

TFormPadSearchResult::TFormPadSearchResult(QWidget* parent) : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
{
    setModal(true);
    setWindowTitle(res::_rsPadSearchResultCaption);
    setFixedSize(600, 320);
    FBackground = InstallDialogBackground(*this, res::_rsPadSearchResultCaption);

    QWidget* client = FBackground->GetClientArea();
    FMemo1 = new QPlainTextEdit(client);
    FMemo1->setObjectName(QStringLiteral("Memo1"));
    FMemo1->setReadOnly(true);
    // Search results come in columns, one module a line.
    FMemo1->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    FMemo1->setLineWrapMode(QPlainTextEdit::NoWrap);
    FSBAllVisible = new QPushButton(res::_rsOkButton, client);
    FSBAllVisible->setObjectName(QStringLiteral("SBAllVisible"));
    FSBAllVisible->setAutoDefault(false);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(FSBAllVisible);
    auto* layout = new QVBoxLayout(client);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(FMemo1, 1);
    layout->addLayout(buttons);
    Enable();
}

TFormPadSearchResult::~TFormPadSearchResult() = default;

void TFormPadSearchResult::Enable()
{
    if (!FClickHook) FClickHook = connect(FSBAllVisible, &QPushButton::clicked, this, [this] { done(mrOk); });
    FSBAllVisible->setEnabled(true);
}

void TFormPadSearchResult::Disable()
{
    disconnect(FClickHook);
    FClickHook = {};
    FSBAllVisible->setEnabled(false);
}

void TFormPadSearchResult::reject()
{
    done(mrCancel);
}

void TFormPadSearchResult::showEvent(QShowEvent* event)
{
    UseWindowTextColor(*this, *FBackground);
    CenterOnOwner(this);
    QDialog::showEvent(event);
}

void TFormPadSearchResult::keyPressEvent(QKeyEvent* event)
{
    if (!CloseOnEnterOrEscape(*this, *event, mrOk))
        QDialog::keyPressEvent(event);
}

}  // namespace qx
