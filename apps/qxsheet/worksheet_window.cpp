#include "apps/qxsheet/worksheet_window.h"

#include "apps/qxsheet/module_search.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenuBar>
#include <QMouseEvent>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QToolBar>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/host_services.h"
#include "qxbase/panels/controler_panel_base.h"
#include "qxbase/panels/panel_base.h"
#include "qxbase/panels/panel_tab_page.h"
#include "qxbase/panels/worksheet_file.h"
#include "qxbase/sources/simulated_source.h"

namespace qxsheet {
namespace {

const QString KFileFilter = QStringLiteral("Worksheets (*.qxw);;All files (*)");

qx::TKSPanelTabPage* PageOf(QWidget* widget)
{
    for (QWidget* w = widget; w != nullptr; w = w->parentWidget())
        if (auto* page = qobject_cast<qx::TKSPanelTabPage*>(w))
            return page;
    return nullptr;
}

QList<qx::TKSControlerPanelBase*> ControlerPanels(const qx::TKSPanelTabPage& page)
{
    return page.findChildren<qx::TKSControlerPanelBase*>();
}

bool IsBundled(const QString& path)
{
    return path.isEmpty() || path.startsWith(':');
}

}  // namespace

TWorksheetWindow::TWorksheetWindow(std::vector<std::unique_ptr<qx::TKSPanelTabPage>> Pages, QString Path,
                                   QWidget* parent)
    : QMainWindow(parent), FPath(std::move(Path)), FTabs(new QTabWidget(this))
{
    setCentralWidget(FTabs);
    CreateActions();
    ShowPages(std::move(Pages));
    UpdateTitle();
}

TWorksheetWindow::~TWorksheetWindow() = default;

void TWorksheetWindow::CreateActions()
{
    QMenu* file = menuBar()->addMenu(tr("&File"));
    QAction* open = file->addAction(tr("&Open..."), this, [this] {
        const QString path = QFileDialog::getOpenFileName(this, tr("Open worksheet"), QString(), KFileFilter);
        if (!path.isEmpty()) Open(path);
    });
    open->setShortcut(QKeySequence::Open);
    FSaveAction = file->addAction(tr("&Save"), this, [this] { Save(); });
    FSaveAction->setShortcut(QKeySequence::Save);
    file->addAction(tr("Save &As..."), this, [this] { SaveAs(); })->setShortcut(QKeySequence::SaveAs);
    file->addSeparator();
    file->addAction(tr("&Quit"), this, &QWidget::close)->setShortcut(QKeySequence::Quit);

    QMenu* worksheet = menuBar()->addMenu(tr("&Worksheet"));
    FDesignAction = worksheet->addAction(tr("&Design mode"));
    FDesignAction->setCheckable(true);
    FDesignAction->setShortcut(Qt::CTRL | Qt::Key_D);
    connect(FDesignAction, &QAction::toggled, this, [this](bool on) { ApplyDesignMode(on); });
    worksheet->addSeparator();
    FSearchModulesAction = worksheet->addAction(tr("Search &amplifier modules..."), this,
                                                [this] { OpenModuleSearch(this, FModuleSearchPort); });

    QToolBar* tools = addToolBar(tr("Worksheet"));
    tools->setObjectName(QStringLiteral("WorksheetToolBar"));
    tools->addAction(FDesignAction);
    tools->addAction(FSaveAction);
}

std::vector<qx::TKSPanelTabPage*> TWorksheetWindow::GetPages() const
{
    std::vector<qx::TKSPanelTabPage*> pages;
    for (int i = 0; i < FTabs->count(); ++i)
        if (auto* page = qobject_cast<qx::TKSPanelTabPage*>(FTabs->widget(i)))
            pages.push_back(page);
    return pages;
}

void TWorksheetWindow::ShowPages(std::vector<std::unique_ptr<qx::TKSPanelTabPage>> Pages)
{
    while (FTabs->count() > 0) {
        const std::unique_ptr<QWidget> old(FTabs->widget(0));
        FTabs->removeTab(0);
    }
    for (auto& page : Pages) {
        page->installEventFilter(this);
        for (qx::TKSMSSink* panel : qx::GetAllPagePanels(*page))
            AttachPanel(*panel);
        const QString caption = page->GetCaption().isEmpty() ? page->objectName() : page->GetCaption();
        FTabs->addTab(page.release(), caption);
    }
    ApplyDesignMode(FDesignAction->isChecked());
}

void TWorksheetWindow::AttachPanel(qx::TKSMSSink& Panel)
{
    Panel.OnSelectClick = [this](qx::TKSMSSink* sender) { PanelClicked(*sender); };
}

void TWorksheetWindow::PanelClicked(qx::TKSMSSink& Panel)
{
    // The panel has handled its own selection; a plain left click makes it the only one.
    const qx::TShiftState shift = Panel.GetDownShift();
    if (!shift.Contains(qx::ssLeft) || shift.Contains(qx::ssCtrl))
        return;
    if (qx::TKSPanelTabPage* page = PageOf(&Panel)) {
        for (qx::TKSMSSink* other : qx::GetAllPagePanels(*page))
            if (other != &Panel)
                other->SetIsSelected(false);
        for (qx::TKSControlerPanelBase* other : ControlerPanels(*page))
            other->SetIsSelected(false);
    }
}

bool TWorksheetWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress && GetDesignMode()) {
        auto* page = qobject_cast<qx::TKSPanelTabPage*>(watched);
        const auto* mouse = static_cast<QMouseEvent*>(event);
        // Presses a panel passes on arrive here too; only the bare background deselects.
        if (page != nullptr && page->childAt(mouse->position().toPoint()) == nullptr)
            DeselectAll(*page);
    }
    return QMainWindow::eventFilter(watched, event);
}

bool TWorksheetWindow::GetDesignMode() const
{
    return FDesignAction->isChecked();
}

void TWorksheetWindow::SetDesignMode(bool Value)
{
    const QSignalBlocker blocker(FDesignAction);
    FDesignAction->setChecked(Value);
    ApplyDesignMode(Value);
}

void TWorksheetWindow::ApplyDesignMode(bool Value)
{
    for (qx::TKSPanelTabPage* page : GetPages()) {
        page->SetIsDesigning(Value);
        for (qx::TKSMSSink* panel : qx::GetAllPagePanels(*page)) {
            panel->SetSnapToGrid(true);
            panel->SetGridSpacingX(page->GetGridXSize());
            panel->SetGridSpacingY(page->GetGridYSize());
            panel->SetDesignMode(Value);
        }
        for (qx::TKSControlerPanelBase* panel : ControlerPanels(*page)) {
            panel->SetSnapToGrid(true);
            panel->SetGridSpacingX(page->GetGridXSize());
            panel->SetGridSpacingY(page->GetGridYSize());
            panel->SetDesignMode(Value);
        }
    }
    RunSimulatedSources(!Value && isVisible());
}

void TWorksheetWindow::RunSimulatedSources(bool Value)
{
    for (qx::TKSPanelTabPage* page : GetPages())
        for (qx::TKSMSSink* panel : qx::GetAllPagePanels(*page))
            if (auto* source = qobject_cast<qx::TKSSimulatedSource*>(panel))
                Value ? source->Start() : source->Stop();
}

void TWorksheetWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    RunSimulatedSources(!GetDesignMode());
}

void TWorksheetWindow::hideEvent(QHideEvent* event)
{
    QMainWindow::hideEvent(event);
    RunSimulatedSources(false);
}

std::vector<qx::TKSMSSink*> TWorksheetWindow::GetSelectedPanels() const
{
    std::vector<qx::TKSMSSink*> selected;
    for (qx::TKSPanelTabPage* page : GetPages())
        for (qx::TKSMSSink* panel : qx::GetAllPagePanels(*page))
            if (panel->GetIsSelected())
                selected.push_back(panel);
    return selected;
}

void TWorksheetWindow::DeselectAll(const qx::TKSPanelTabPage& Page)
{
    for (qx::TKSMSSink* panel : qx::GetAllPagePanels(Page))
        panel->SetIsSelected(false);
    for (qx::TKSControlerPanelBase* panel : ControlerPanels(Page))
        panel->SetIsSelected(false);
}

bool TWorksheetWindow::Open(const QString& Path)
{
    std::vector<std::unique_ptr<qx::TKSPanelTabPage>> pages;
    try {
        pages = qx::LoadWorksheetFile(Path);
    } catch (const qx::Exception& e) {
        ShowError(e.Message());
        return false;
    }
    ShowPages(std::move(pages));
    FPath = Path;
    UpdateTitle();
    return true;
}

bool TWorksheetWindow::Save()
{
    return IsBundled(FPath) ? SaveAs() : SaveTo(FPath);
}

bool TWorksheetWindow::SaveAs()
{
    const QString suggested =
        IsBundled(FPath) ? QDir::current().filePath(QFileInfo(FPath).fileName()) : FPath;
    const QString path = qx::HostServices().GetSaveFileName(this, tr("Save worksheet as"), KFileFilter, suggested);
    return !path.isEmpty() && SaveTo(path);
}

bool TWorksheetWindow::SaveTo(const QString& Path)
{
    try {
        qx::SaveWorksheetFile(Path, GetPages());
    } catch (const qx::Exception& e) {
        ShowError(e.Message());
        return false;
    }
    FPath = Path;
    UpdateTitle();
    return true;
}

void TWorksheetWindow::ShowError(const QString& Text)
{
    qx::HostServices().MessageBox(this, Text, QStringLiteral("qxsheet"), 1);
}

void TWorksheetWindow::UpdateTitle()
{
    setWindowTitle(QStringLiteral("%1 - qxsheet").arg(QFileInfo(FPath).fileName()));
}

}  // namespace qxsheet
