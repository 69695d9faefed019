#include "qxbase/config/ad_extended_property_page.h"

#include <QGridLayout>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include "qxbase/config/dialog_controls.h"
#include "qxbase/framework/stream_registry.h"
#include "qxbase/panels/dialog_background.h"
#include "qxbase/panels/smart_edit.h"
#include "qxbase/resources/config_texts.h"

namespace qx {

namespace {

const QString ClassComboBox = QStringLiteral("TComboBox");
const QString ClassSmartEdit = QStringLiteral("THVKSmartEdit");
const QString ClassUpDown = QStringLiteral("TUpDown");

bool IsSetBit(int Tag)
{
    return Tag >= 0 && Tag < 32;
}

}  // namespace

TADExtendedPropertyPage::TADExtendedPropertyPage(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
{
    setModal(true);
    setWindowTitle(res::_rsADExtendedFormCaption);
    FBackground = InstallDialogBackground(*this, res::_rsADExtendedPanelCaption);

    QWidget* client = FBackground->GetClientArea();
    // An etched frame, as a group box without a title looks: Qt's group box frame is a scaled
    // pixmap, which Qt paints on its thread pool.
    FGroupBox = new QFrame(client);
    FGroupBox->setObjectName(QStringLiteral("GroupBox"));
    FGroupBox->setFrameStyle(QFrame::Box | QFrame::Sunken);
    auto* grid = new QGridLayout(FGroupBox);
    grid->setHorizontalSpacing(8);
    grid->setColumnMinimumWidth(2, 12);

    int row = 0;
    int column = 0;
    auto place = [&](QWidget* control, const QString& name, const QString& label, int tag, QWidget* field = nullptr) {
        control->setObjectName(name);
        SetControlTag(control, tag);
        auto* caption = new QLabel(label, FGroupBox);
        caption->setObjectName(QStringLiteral("Label") + name);
        caption->setBuddy(control);
        grid->addWidget(caption, row, column);
        grid->addWidget(field ? field : control, row, column + 1);
        if (++row == 6) {
            row = 0;
            column = 3;
        }
    };
    auto edit = [&](const QString& name, const QString& label, int tag, const QString& text = {}) {
        auto* control = new THVKSmartEdit(FGroupBox);
        control->setText(text);
        connect(control, &QLineEdit::textEdited, this, [this, control] { SenderChanged(control); });
        place(control, name, label, tag);
        return control;
    };
    auto combo = [&](const QString& name, const QString& label, int tag) {
        auto* control = new TComboBox(FGroupBox);
        control->setMinimumWidth(110);
        connect(control, &QComboBox::activated, this, [this, control] { SenderChanged(control); });
        place(control, name, label, tag);
        return control;
    };

    FExternalClockDivEdit = edit(QStringLiteral("ExternalClockDivEdit"), res::_rsADExternalClockDiv, adsExternalClockDiv);
    FResolutionComboBox = combo(QStringLiteral("ResolutionComboBox"), res::_rsADResolution, adsResolution);
    FEncodingComboBox = combo(QStringLiteral("EncodingComboBox"), res::_rsADEncoding, adsEncoding);
    FDMAUsageEdit = edit(QStringLiteral("DMAUsageEdit"), res::_rsADDMAUsage, adsDMAUsage, res::_rsADDummy);
    FBufferCountEdit = edit(QStringLiteral("BufferCountEdit"), res::_rsADBufferCount, adsBufferCount);
    FClockSourceComboBox = combo(QStringLiteral("ClockSourceComboBox"), res::_rsADClockSource, adsClockSource);
    FCutOffFilterComboBox = combo(QStringLiteral("CutOffFilterComboBox"), res::_rsADCutOffFilter, adsCutOffFilter);
    FTriggerModeCombo = combo(QStringLiteral("TriggerModeCombo"), res::_rsADTriggerMode, adsTriggerMode);
    FTriggerScanCombo = combo(QStringLiteral("TriggerScanCombo"), res::_rsADTriggerScan, adsTriggeredScanMode);
    FReTriggerCombo = combo(QStringLiteral("ReTriggerCombo"), res::_rsADReTrigger, adsReTriggerMode);
    FReTriggerFreqEdit =
        edit(QStringLiteral("ReTriggerFreqEdit"), res::_rsADReTriggerFreq, adsReTriggerFrequency, res::_rsADDummy);

    // The multiscan edit has no handler of its own: only its arrows count.
    auto* multiscan = new QWidget(FGroupBox);
    FEMultiscancount = new QLineEdit(QStringLiteral("0"), multiscan);
    FEMultiscancount->setObjectName(QStringLiteral("EMultiscancount"));
    FUDMultiscancount = new TUpDown(multiscan);
    FUDMultiscancount->SetAssociate(FEMultiscancount);
    FUDMultiscancount->OnChanging = [this](QObject* Sender, bool& AllowChange) {
        UDMultiscancountChanging(Sender, AllowChange);
    };
    auto* multiscanLayout = new QHBoxLayout(multiscan);
    multiscanLayout->setContentsMargins(0, 0, 0, 0);
    multiscanLayout->setSpacing(0);
    multiscanLayout->addWidget(FEMultiscancount, 1);
    multiscanLayout->addWidget(FUDMultiscancount);
    FUDMultiscancount->setFixedHeight(FEMultiscancount->sizeHint().height());
    place(FUDMultiscancount, QStringLiteral("UDMultiscancount"), res::_rsADMultiscanCount, adsMultiscanCount,
          multiscan);
    // A click on the label should focus the edit, not the arrows.
    LabelOf(FUDMultiscancount)->setBuddy(FEMultiscancount);

    FOkButton = new QPushButton(res::_rsOkButton, client);
    FOkButton->setObjectName(QStringLiteral("OkButton"));
    FCancelButton = new QPushButton(res::_rsCancelButton, client);
    FCancelButton->setObjectName(QStringLiteral("CancelButton"));
    for (QPushButton* button : {FOkButton, FCancelButton}) button->setAutoDefault(false);
    connect(FOkButton, &QPushButton::clicked, this, [this] { done(mrOk); });
    connect(FCancelButton, &QPushButton::clicked, this, &TADExtendedPropertyPage::reject);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(FOkButton);
    buttons->addWidget(FCancelButton);
    auto* layout = new QVBoxLayout(client);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->addWidget(FGroupBox);
    layout->addLayout(buttons);
    setFixedSize(sizeHint());
}

TADExtendedPropertyPage::~TADExtendedPropertyPage() = default;

QLabel* TADExtendedPropertyPage::LabelOf(const QWidget* Control) const
{
    if (!Control || Control->objectName().isEmpty()) return nullptr;
    return FGroupBox->findChild<QLabel*>(QStringLiteral("Label") + Control->objectName());
}

void TADExtendedPropertyPage::SenderChanged(QObject* Sender)
{
    if (!Sender) return;
    const QString className = StreamClassName(*Sender->metaObject());
    const int tag = ControlTag(Sender);
    if ((className == ClassComboBox || className == ClassSmartEdit) && IsSetBit(tag))
        FChanged.Include(static_cast<TADExtendedSetting>(tag));
}

void TADExtendedPropertyPage::UDMultiscancountChanging(QObject* Sender, bool& AllowChange)
{
    AllowChange = true;
    if (!Sender) return;
    const int tag = ControlTag(Sender);
    if (StreamClassName(*Sender->metaObject()) == ClassUpDown && IsSetBit(tag))
        FChanged.Include(static_cast<TADExtendedSetting>(tag));
}

void TADExtendedPropertyPage::reject()
{
    // After a cancel no setting counts as changed, however the page was left.
    FChanged = FChanged - ADExtendedSettingsAll;
    done(mrCancel);
}

void TADExtendedPropertyPage::showEvent(QShowEvent* event)
{
    UseWindowTextColor(*this, *FBackground);
    FBackground->SetCaption(QStringLiteral("   ") + res::_rsADExtendedShownCaption);
    if (const QScreen* screen = this->screen())
        move(screen->availableGeometry().center() - QPoint(width() / 2, height() / 2));
    QDialog::showEvent(event);
}

void TADExtendedPropertyPage::keyPressEvent(QKeyEvent* event)
{
    if (!CloseOnEnterOrEscape(*this, *event, mrOk))
        QDialog::keyPressEvent(event);
}

}  // namespace qx
