#include "apps/qxsheet/worksheet_app.h"

#include <QApplication>
#include <QPixmap>
#include <QTabWidget>
#include <algorithm>

#include "apps/qxsheet/demo_panels.h"
#include "qxbase/chartpanels/chart_panel.h"
#include "qxbase/config/panel_property_page.h"
#include "qxbase/framework/exception.h"
#include "qxbase/panels/panel_base.h"
#include "qxbase/panels/panel_tab_page.h"
#include "qxbase/panels/worksheet_file.h"
#include "qxbase/sources/simulated_source.h"

// The resources live in a static library: without this reference the linker drops them.
static void InitQxsheetResources()
{
    Q_INIT_RESOURCE(qxsheet);
}

namespace qxsheet {
namespace {

// Steps the page's simulated sources and shows its charts' cursors.
void ShowData(const qx::TKSPanelTabPage& Page)
{
    for (qx::TKSMSSink* panel : qx::GetAllPagePanels(Page)) {
        if (auto* chart = qobject_cast<qx::TKSChartPanel*>(panel))
            chart->SetShowCursor(true);
    }
    for (qx::TKSMSSink* panel : qx::GetAllPagePanels(Page)) {
        if (auto* source = qobject_cast<qx::TKSSimulatedSource*>(panel))
            for (int i = 0; i < 3; ++i) source->Step();
    }
}

}  // namespace

QString DefaultWorksheetPath()
{
    return QStringLiteral(":/qxsheet/default.qxw");
}

std::unique_ptr<TWorksheetWindow> OpenWorksheetWindow(const QString& Path)
{
    InitQxsheetResources();
    RegisterDemoPanels();
    qx::InstallPanelPropertyPages();
    const QString path = Path.isEmpty() ? DefaultWorksheetPath() : Path;
    return std::make_unique<TWorksheetWindow>(qx::LoadWorksheetFile(path), path);
}

std::unique_ptr<TWorksheetWindow> CreateSnapshotWindow(const QString& Path, const QString& Page)
{
    std::unique_ptr<TWorksheetWindow> window = OpenWorksheetWindow(Path);
    const std::vector<qx::TKSPanelTabPage*> pages = window->GetPages();
    qx::TKSPanelTabPage* shown = pages.empty() ? nullptr : pages.front();
    if (!Page.isEmpty()) {
        const auto named = std::find_if(pages.begin(), pages.end(),
                                        [&](qx::TKSPanelTabPage* p) { return p->GetCaption() == Page; });
        if (named == pages.end())
            throw qx::Exception(QStringLiteral("the worksheet has no page \"%1\"").arg(Page));
        shown = *named;
        window->GetTabs()->setCurrentWidget(shown);
    }
    window->resize(KSnapshotSize);
    window->show();
    window->SetDesignMode(true);
    if (shown != nullptr) {
        const std::vector<qx::TKSMSSink*> panels = qx::GetPagePanels(*shown);
        if (!panels.empty())
            panels.front()->SetIsSelected(true);
        if (!Page.isEmpty())
            ShowData(*shown);
    }
    QApplication::processEvents();
    return window;
}

std::unique_ptr<TWorksheetWindow> OpenWorksheetWindowOrReport(const QString& Path, QTextStream& err, bool Snapshot)
{
    try {
        return Snapshot ? CreateSnapshotWindow(Path) : OpenWorksheetWindow(Path);
    } catch (const qx::Exception& e) {
        err << "qxsheet: " << e.Message() << Qt::endl;
        return nullptr;
    }
}

int RunSnapshot(const QString& Path, const QString& Png, QTextStream& out, QTextStream& err, const QString& Page)
{
    std::unique_ptr<TWorksheetWindow> window;
    try {
        window = CreateSnapshotWindow(Path, Page);
    } catch (const qx::Exception& e) {
        err << "qxsheet: " << e.Message() << Qt::endl;
        return 1;
    }
    if (!window->grab().save(Png, "PNG")) {
        err << "qxsheet: cannot write the snapshot to " << Png << Qt::endl;
        return 1;
    }
    out << "snapshot of " << window->GetPath() << " in design mode written to " << Png << Qt::endl;
    return 0;
}

int RunWorksheetWindow(const QString& Path, QTextStream& err, int Port)
{
    const std::unique_ptr<TWorksheetWindow> window = OpenWorksheetWindowOrReport(Path, err);
    if (!window)
        return 1;
    window->SetModuleSearchPort(Port);
    // Without a window manager's choice the main window would open at its minimum size.
    window->resize(KSnapshotSize);
    window->show();
    return QApplication::exec();
}

}  // namespace qxsheet
