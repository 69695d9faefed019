#include "apps/qxsheet/worksheet_app.h"

#include <QApplication>
#include <QPixmap>
#include <QTabWidget>

#include "apps/qxsheet/demo_panels.h"
#include "qxbase/framework/exception.h"
#include "qxbase/panels/panel_base.h"
#include "qxbase/panels/panel_tab_page.h"
#include "qxbase/panels/worksheet_file.h"

// The resources live in a static library: without this reference the linker drops them.
static void InitQxsheetResources()
{
    Q_INIT_RESOURCE(qxsheet);
}

namespace qxsheet {

QString DefaultWorksheetPath()
{
    return QStringLiteral(":/qxsheet/default.qxw");
}

std::unique_ptr<TWorksheetWindow> OpenWorksheetWindow(const QString& Path)
{
    InitQxsheetResources();
    RegisterDemoPanels();
    const QString path = Path.isEmpty() ? DefaultWorksheetPath() : Path;
    return std::make_unique<TWorksheetWindow>(qx::LoadWorksheetFile(path), path);
}

std::unique_ptr<TWorksheetWindow> CreateSnapshotWindow(const QString& Path)
{
    std::unique_ptr<TWorksheetWindow> window = OpenWorksheetWindow(Path);
    window->resize(KSnapshotSize);
    window->show();
    window->SetDesignMode(true);
    const std::vector<qx::TKSPanelTabPage*> pages = window->GetPages();
    if (!pages.empty()) {
        const std::vector<qx::TKSMSSink*> panels = qx::GetPagePanels(*pages.front());
        if (!panels.empty())
            panels.front()->SetIsSelected(true);
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

int RunSnapshot(const QString& Path, const QString& Png, QTextStream& out, QTextStream& err)
{
    const std::unique_ptr<TWorksheetWindow> window = OpenWorksheetWindowOrReport(Path, err, true);
    if (!window)
        return 1;
    if (!window->grab().save(Png, "PNG")) {
        err << "qxsheet: cannot write the snapshot to " << Png << Qt::endl;
        return 1;
    }
    out << "snapshot of " << window->GetPath() << " in design mode written to " << Png << Qt::endl;
    return 0;
}

int RunWorksheetWindow(const QString& Path, QTextStream& err)
{
    const std::unique_ptr<TWorksheetWindow> window = OpenWorksheetWindowOrReport(Path, err);
    if (!window)
        return 1;
    window->show();
    return QApplication::exec();
}

}  // namespace qxsheet
