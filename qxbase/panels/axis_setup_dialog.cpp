#include "qxbase/panels/axis_setup_dialog.h"

#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QValidator>
#include <QVBoxLayout>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/host_services.h"
#include "qxbase/framework/number_text.h"
#include "qxbase/panels/dialog_background.h"
#include "qxbase/panels/wizard_topic_label.h"
#include "qxbase/resources/chart_texts.h"

namespace qx {

namespace {

// Lets through only what a decimal number is written with, and turns a typed "," into the "."
// the number parser reads. Whether the whole text is a number is decided when it is stored.
class TFloatFieldValidator : public QValidator {
public:
    using QValidator::QValidator;

    State validate(QString& input, int&) const override
    {
        input.replace(QLatin1Char(','), QLatin1Char('.'));
        for (const QChar c : input)
            if (!c.isDigit() && !QStringLiteral("+-.eE ").contains(c)) return Invalid;
        return Acceptable;
    }
};

QLabel* NewTopicLabel(const QString& Text, QWidget* parent)
{
    auto* label = new TWizardTopicDotLabel(Text, parent);
    label->setWordWrap(true);
    return label;
}

QLineEdit* NewFloatField(const QString& Name, QWidget* parent)
{
    auto* field = new QLineEdit(parent);
    field->setObjectName(Name);
    field->setValidator(new TFloatFieldValidator(field));
    return field;
}

bool Holds(const std::vector<double>& Values, int Index)
{
    return Index >= 0 && static_cast<std::size_t>(Index) < Values.size();
}

}  // namespace

TFormAxisSetup::TFormAxisSetup(QWidget* parent) : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
{
    setModal(true);
    setWindowTitle(res::_rsAxisSetupCaption);
    setFixedSize(263, 302);
    FBackground = InstallDialogBackground(*this, res::_rsAxisSetupCaption);

    QWidget* client = FBackground->GetClientArea();
    FCBNames = new QComboBox(client);
    FCBNames->setObjectName(QStringLiteral("CBNames"));
    FLabel1 = new QLabel(res::_rsAxisSetupMin, client);
    FLabel1->setObjectName(QStringLiteral("Label1"));
    FLabel2 = new QLabel(res::_rsAxisSetupMax, client);
    FLabel2->setObjectName(QStringLiteral("Label2"));
    FEMin = NewFloatField(QStringLiteral("EMin"), client);
    FEMax = NewFloatField(QStringLiteral("EMax"), client);
    FLabel1->setBuddy(FEMin);
    FLabel2->setBuddy(FEMax);

    auto* fields = new QGridLayout;
    fields->setHorizontalSpacing(8);
    fields->addWidget(FLabel1, 0, 0);
    fields->addWidget(FEMin, 0, 1);
    fields->addWidget(FLabel2, 1, 0);
    fields->addWidget(FEMax, 1, 1);

    auto* buttonPanel = new QFrame(client);
    FButton1 = new QPushButton(res::_rsButtonOK, buttonPanel);
    FButton1->setObjectName(QStringLiteral("Button1"));
    FButton1->setDefault(true);
    FButton2 = new QPushButton(res::_rsButtonCancel, buttonPanel);
    FButton2->setObjectName(QStringLiteral("Button2"));
    FButton3 = new QPushButton(res::_rsAxisSetupSetDefaults, buttonPanel);
    FButton3->setObjectName(QStringLiteral("Button3"));
    auto* buttons = new QHBoxLayout(buttonPanel);
    buttons->setContentsMargins(0, 6, 0, 8);
    buttons->setSpacing(6);
    // Enter means OK wherever the focus is, a focused Cancel or Set defaults included.
    FButton2->setAutoDefault(false);
    FButton3->setAutoDefault(false);
    for (QPushButton* button : {FButton1, FButton2, FButton3}) {
        button->setMinimumWidth(0);
        buttons->addWidget(button);
    }
    connect(FButton1, &QPushButton::clicked, this, [this] { done(mrOk); });
    connect(FButton2, &QPushButton::clicked, this, [this] { done(mrCancel); });
    connect(FButton3, &QPushButton::clicked, this, [this] { done(mrIgnore); });

    auto* layout = new QVBoxLayout(client);
    layout->setContentsMargins(14, 12, 14, 0);
    layout->setSpacing(6);
    layout->addWidget(NewTopicLabel(res::_rsAxisSetupSelectChannel, client));
    layout->addWidget(FCBNames);
    layout->addSpacing(14);
    layout->addWidget(NewTopicLabel(res::_rsAxisSetupEnterParameters, client));
    layout->addLayout(fields);
    layout->addStretch();
    layout->addWidget(buttonPanel);

    connect(FCBNames, &QComboBox::currentIndexChanged, this, &TFormAxisSetup::NamesChanged);
}

TFormAxisSetup::~TFormAxisSetup() = default;

void TFormAxisSetup::LoadFields()
{
    const int index = FCBNames->currentIndex();
    if (!Holds(FMinValues, index) || !Holds(FMaxValues, index)) return;
    FEMin->setText(FloatToStr(FMinValues[static_cast<std::size_t>(index)]));
    FEMax->setText(FloatToStr(FMaxValues[static_cast<std::size_t>(index)]));
}

void TFormAxisSetup::StoreFields()
{
    if (!Holds(FMinValues, FIndex) || !Holds(FMaxValues, FIndex)) return;
    const double min = StrToFloat(FEMin->text());
    const double max = StrToFloat(FEMax->text());
    FMinValues[static_cast<std::size_t>(FIndex)] = min;
    FMaxValues[static_cast<std::size_t>(FIndex)] = max;
}

bool TFormAxisSetup::TryStoreFields()
{
    try {
        StoreFields();
        return true;
    } catch (const EConvertError& error) {
        double ignored = 0;
        QLineEdit* bad = TryStrToFloat(FEMin->text(), ignored) ? FEMax : FEMin;
        HostServices().MessageBox(this, error.Message(), res::_rsErrorCaption, 1);
        bad->setFocus();
        bad->selectAll();
        return false;
    }
}

void TFormAxisSetup::NamesChanged(int Index)
{
    if (!TryStoreFields()) {
        const QSignalBlocker block(FCBNames);
        FCBNames->setCurrentIndex(FIndex);
        return;
    }
    LoadFields();
    FIndex = Index;
}

void TFormAxisSetup::done(int Result)
{
    if (!TryStoreFields()) return;
    QDialog::done(Result);
}

void TFormAxisSetup::reject() { done(mrCancel); }

void TFormAxisSetup::showEvent(QShowEvent* event)
{
    {
        const QSignalBlocker block(FCBNames);
        FCBNames->setUpdatesEnabled(false);
        FCBNames->clear();
        for (int i = 0; i < FNames.size(); ++i)
            FCBNames->addItem(QString::number(i) + QStringLiteral(": ") + FNames[i]);
        // The second channel first: the first is rarely the one a user wants to change.
        FCBNames->setCurrentIndex(FNames.size() > 1 ? 1 : (FNames.isEmpty() ? -1 : 0));
        FCBNames->setUpdatesEnabled(true);
    }
    FIndex = FCBNames->currentIndex();
    LoadFields();
    CenterOnOwner(this);
    QDialog::showEvent(event);
}

}  // namespace qx
