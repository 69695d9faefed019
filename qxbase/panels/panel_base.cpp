#include "qxbase/panels/panel_base.h"

#include <QAction>
#include <QEvent>
#include <QFont>
#include <QMenu>
#include <QPalette>
#include <QPointer>
#include <QTimer>
#include <algorithm>

#include "qxbase/control/atelier_connection.h"
#include "qxbase/framework/host_services.h"
#include "qxbase/framework/stream_registry.h"
#include "qxbase/panels/panel_geometry.h"
#include "qxbase/panels/property_page_opener.h"

namespace qx {

bool CNewDesign = false;

QString SampleSourceText() { return QStringLiteral("SampleSource"); }
QString LockUnlockPanelText() { return QStringLiteral("lock/unlock panel"); }
QString CallPropertyPageText() { return QStringLiteral("call property page..."); }

namespace {

enum : std::uint32_t { PropShowPropertypage = 1, PropPanelEnable = 2 };

bool IsNumberType(TVarType type)
{
    return IsIntegerVarType(type) || type == varSingle || type == varDouble || type == varBoolean;
}

}  // namespace

TKSMSSink::TKSMSSink(QWidget* parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setCursor(Qt::PointingHandCursor);
    QFont font(QStringLiteral("Small Fonts"));
    font.setPointSize(6);
    setFont(font);
    QPalette palette = this->palette();
    palette.setColor(QPalette::WindowText, Qt::white);
    setPalette(palette);
    FShowHint = CNewDesign;

    FSelectionTimer = new QTimer(this);
    FSelectionTimer->setInterval(100);
    connect(FSelectionTimer, &QTimer::timeout, this, [this] { DoOnSelectionTimer(); });

    FPopupMenu = new QMenu(this);
    QAction* properties = FPopupMenu->addAction(QStringLiteral("Properties"));
    properties->setStatusTip(QStringLiteral("Open property page"));
    connect(properties, &QAction::triggered, this, [this] { DoPropertyButtonItem(); });
    QAction* toAtelier = FPopupMenu->addAction(QStringLiteral("To Atelier..."));
    toAtelier->setStatusTip(QStringLiteral("Copy selected panels to the selected Atelier group"));
    connect(toAtelier, &QAction::triggered, this, [this] { DoToRepositoryItem(); });
    FPopupMenu->addSeparator();
    QAction* help = FPopupMenu->addAction(QStringLiteral("Help"));
    connect(help, &QAction::triggered, this, [this] { DoHelpButtonItem(); });

    TKSMSSink::ClearProperties();
}

TKSMSSink::~TKSMSSink()
{
    // Listeners still meet a whole panel when they are told it goes away.
    BeginDestruction();
    delete FSelectionTimer;
    FSelectionTimer = nullptr;
}

QString TKSMSSink::GetDescription(const QMetaObject& Class)
{
    return QStringLiteral("Unassigned description for ") + StreamClassName(Class);
}

QImage TKSMSSink::GetClassIcon()
{
    QImage icon;
    GetBitmapFromResource(QStringLiteral("TSINKDEFAULTIMAGE"), icon);
    return icon;
}

bool TKSMSSink::GetBitmapFromResource(const QString& Name, QImage& Bitmap)
{
    Bitmap = QImage();
    if (Name.isEmpty() || Name.contains(QLatin1Char('/')))
        return false;
    return Bitmap.load(QStringLiteral(":/qxbase/bitmaps/") + Name);
}

QString TKSMSSink::GetDependencies()
{
    return QStringLiteral(
        "hvkutilcomponents.bpl,rvbase.bpl,ZLDeviceExchangeFilters.bpl,rtl70.bpl,vcl70.bpl,vclx70.bpl,"
        "vclsmp70.bpl,vcljpg70.bpl,dbrtl70.bpl,chartpak_D7.bpl,OrreryZL.bpl,ZLCoreKS.bpl,QQSINFO.QQ2");
}

void TKSMSSink::RepaintCaption()
{
    if (!GetIsLoading())
        update(QRect(0, 0, width(), 11));
}

void TKSMSSink::SetCaption(const QString& Value)
{
    FCaption = Value;
    setWindowTitle(Value);
    RepaintCaption();
}

void TKSMSSink::SetColorCaption(TColor Value)
{
    FColorCaption = Value;
    RepaintCaption();
}

void TKSMSSink::SetColor(TColor Value)
{
    FColor = Value;
    update();
}

void TKSMSSink::SetIsPinned(bool Value)
{
    FIsPinned = Value;
    update();
}

void TKSMSSink::SetPanelEnable(bool Value) { FPanelEnabled = Value; }

TQXMeasureSourceEx* TKSMSSink::GetMeasureSource() const { return nullptr; }

void TKSMSSink::SetMeasureSource(TQXMeasureSourceEx* Value) { Q_UNUSED(Value); }

void TKSMSSink::SetGridSpacingX(int Value)
{
    if (Value > 0)
        FGridSpacingX = Value;
}

void TKSMSSink::SetGridSpacingY(int Value)
{
    if (Value > 0)
        FGridSpacingY = Value;
}

void TKSMSSink::SetWindowMinSize(const QPoint& Value) { FWindowMinSize = Value; }

void TKSMSSink::SetObjectDescription(const QString& Description)
{
    TQXControlSource::SetObjectDescription(Description);
    SetCaption(Description);
}

void TKSMSSink::ClearProperties()
{
    TQXControlSource::ClearProperties();
    RegisterProperty(
        QStringLiteral("Show property page"), QStringLiteral("ShowPropertypage"),
        [this](TQXPropertyItem* Handle, bool Get, bool Enum, Variant& Value) {
            return OnShowPropertypage(Handle, Get, Enum, Value);
        },
        varQXEnumeration, EnumerationTexts({QStringLiteral("True"), QStringLiteral("Unknown")}), PropShowPropertypage);
    RegisterProperty(
        QStringLiteral("Panel State"), QStringLiteral("PanelEnable"),
        [this](TQXPropertyItem* Handle, bool Get, bool Enum, Variant& Value) {
            return OnPanelEnable(Handle, Get, Enum, Value);
        },
        varQXEnumeration, EnumerationTexts({QStringLiteral("Disabled"), QStringLiteral("Enabled")}), PropPanelEnable);
}

HRESULT TKSMSSink::OnShowPropertypage(TQXPropertyItem* Handle, bool Get, bool Enum, Variant& Value)
{
    Q_UNUSED(Handle);
    Q_UNUSED(Enum);
    if (Get) {
        Value = Variant(std::int32_t{1});
        return S_OK;
    }
    const TVarType type = Value.VarType();
    const bool open = (IsIntegerVarType(type) && Value.ToInt64() == 0) ||
                      (type == varOleStr && Value.ToString() == QLatin1String("True"));
    if (open)
        OpenPropertyPage();
    return S_OK;
}

HRESULT TKSMSSink::OnPanelEnable(TQXPropertyItem* Handle, bool Get, bool Enum, Variant& Value)
{
    Q_UNUSED(Handle);
    Q_UNUSED(Enum);
    if (Get) {
        Value = Variant(std::int32_t{FPanelEnabled ? 1 : 0});
        return S_OK;
    }
    const TVarType type = Value.VarType();
    if (IsNumberType(type))
        SetPanelEnable(Value.ToDouble() != 0.0);
    else if (type == varOleStr)
        SetPanelEnable(Value.ToString() != QLatin1String("Disabled"));
    EnableControlTree(this, FPanelEnabled);
    return S_OK;
}

void TKSMSSink::SetPanelChanged(bool Changed)
{
    if (OnPanelChanged)
        OnPanelChanged(this, Changed);
}

bool TKSMSSink::GetIsLoaded() const { return GetIsLoading() || FVisibilityGuard; }

void TKSMSSink::InitializeAfterPaste() { EnableControlTree(this, true); }

void TKSMSSink::PanelAddCompleted() { EnableControlTree(this, true); }

void TKSMSSink::LoadFinished()
{
    EnableControlTree(this, true);
    EventFireAllPropertiesUpdated();
}

void TKSMSSink::CallSetup() {}

void TKSMSSink::ChannelListChanged() {}

bool TKSMSSink::HTMLHelpIsCalled(const QString& Topic, const QString& File)
{
    Q_UNUSED(Topic);
    Q_UNUSED(File);
    return false;
}

void TKSMSSink::ShowPropertyPage()
{
    // A copy: the page may install another opener while it is open.
    if (const TKSPropertyPageOpener opener = GetPropertyPageOpener())
        opener(*this);
}

void TKSMSSink::EnableControlTree(QWidget* Control, bool Enabled)
{
    auto* panel = qobject_cast<TKSMSSink*>(Control);
    if (panel == nullptr)
        return;
    panel->SetPanelEnable(Enabled);
    const QList<QWidget*> children = Control->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    for (QWidget* child : children) {
        if (child->isWindow())
            continue;
        if (!child->findChildren<QWidget*>(Qt::FindDirectChildrenOnly).isEmpty())
            EnableControlTree(child, Enabled);
        if (qobject_cast<TKSMSSink*>(child) == nullptr) {
            child->setEnabled(Enabled);
            child->update();
        }
    }
}

void TKSMSSink::ChannelAdd(int Channel)
{
    if (Channel == -1)
        return;
    switch (FChannelMode) {
    case 1:
        FChannelArray.assign(1, Channel);
        break;
    case 2:
        if (FChannelArray.size() < 2)
            FChannelArray.push_back(Channel);
        else
            FChannelArray.back() = Channel;
        break;
    case 3:
        if (std::find(FChannelArray.begin(), FChannelArray.end(), Channel) == FChannelArray.end())
            FChannelArray.push_back(Channel);
        break;
    default:
        break;
    }
}

void TKSMSSink::ChannelAddMultiple(const std::vector<int>& Channels)
{
    // Neither duplicates nor the two-channel cap are checked here: callers hand over lists
    // they built themselves.
    if (FChannelMode == 2 || FChannelMode == 3)
        FChannelArray.insert(FChannelArray.end(), Channels.begin(), Channels.end());
}

void TKSMSSink::ChannelClear() { FChannelArray.clear(); }

int TKSMSSink::GetChannelArray(int Index) const
{
    const bool inRange = Index >= 0 && Index < GetChannelCount();
    if ((FChannelMode == 2 || FChannelMode == 3) && inRange)
        return FChannelArray[static_cast<std::size_t>(Index)];
    if (FChannelMode == 1 && Index == 0 && !FChannelArray.empty())
        return FChannelArray.front();
    return -1;
}

void TKSMSSink::SetChannelArray(int Index, int Value)
{
    if (Index >= 0 && Index < GetChannelCount())
        FChannelArray[static_cast<std::size_t>(Index)] = Value;
}

void TKSMSSink::OpenPropertyPage()
{
    // The page is modal: what runs meanwhile may delete the panel.
    const QPointer<TKSMSSink> self(this);
    ShowPropertyPage();
    if (self && OnShowPropertyPageRequest)
        OnShowPropertyPageRequest(this);
}

void TKSMSSink::DoPropertyButtonItem()
{
    if (FDesignMode)
        OpenPropertyPage();
}

void TKSMSSink::DoDdlClickOnDesigneTime()
{
    if (FDesignMode)
        OpenPropertyPage();
}

void TKSMSSink::DoToRepositoryItem() { AtelierConnection().PanelsToRepository(); }

void TKSMSSink::DoHelpButtonItem()
{
    if (HostServices().HTMLHelp)
        HostServices().HTMLHelp(StreamClassName(*metaObject()), QString());
}

bool TKSMSSink::event(QEvent* event)
{
    // Tooltips are the hints of the new look only; swallowing the event here also keeps the
    // page behind from showing one for the panel.
    if (event->type() == QEvent::ToolTip && !FShowHint) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

}  // namespace qx
