#pragma once

#include <QMainWindow>
#include <QString>
#include <memory>
#include <vector>

class QAction;
class QTabWidget;

namespace qx {
class TKSMSSink;
class TKSPanelTabPage;
}  // namespace qx

namespace qxsheet {

// The demo host's main window: one tab per worksheet page, a design-mode switch, Open, Save and
// Save As. In design mode a click selects a panel (Ctrl+click toggles it), a click on the page
// background deselects all, and panels move and resize on the page's grid; controller panels
// take part in design mode and deselection too. While the window is shown outside design mode,
// the worksheet's simulated sources run from their timers. "Search amplifier modules..." in the
// Worksheet menu searches the module bus (TModuleSearch) while the window keeps running.
class TWorksheetWindow : public QMainWindow {
    Q_OBJECT

public:
    // Shows `Pages` in tabs; `Path` is the file they came from (a ":/" path for the bundled
    // worksheet, which Save does not overwrite). Starts outside design mode.
    TWorksheetWindow(std::vector<std::unique_ptr<qx::TKSPanelTabPage>> Pages, QString Path,
                     QWidget* parent = nullptr);
    ~TWorksheetWindow() override;

    // The pages in tab order.
    std::vector<qx::TKSPanelTabPage*> GetPages() const;
    QTabWidget* GetTabs() const { return FTabs; }
    QAction* GetDesignAction() const { return FDesignAction; }
    QAction* GetSearchModulesAction() const { return FSearchModulesAction; }
    // The COM port the module search uses; 0 (the default) for the simulated demo bus.
    int GetModuleSearchPort() const { return FModuleSearchPort; }
    void SetModuleSearchPort(int Port) { FModuleSearchPort = Port; }
    const QString& GetPath() const { return FPath; }

    bool GetDesignMode() const;
    // Switches every page and every panel, nested ones and controller panels included.
    void SetDesignMode(bool Value);
    // The selected panels of all pages, in page order.
    std::vector<qx::TKSMSSink*> GetSelectedPanels() const;
    void DeselectAll(const qx::TKSPanelTabPage& Page);

    // Replaces the worksheet by the file's. On failure shows why and keeps the current one.
    bool Open(const QString& Path);
    // Writes to the file the worksheet came from; asks for a file when it came from the bundle.
    bool Save();
    // Asks for a file and writes to it; false when cancelled or failed.
    bool SaveAs();
    // Writes to `Path` and makes it the file Save writes to. On failure shows why: false.
    bool SaveTo(const QString& Path);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void CreateActions();
    void ShowPages(std::vector<std::unique_ptr<qx::TKSPanelTabPage>> Pages);
    void AttachPanel(qx::TKSMSSink& Panel);
    void PanelClicked(qx::TKSMSSink& Panel);
    void ApplyDesignMode(bool Value);
    // Simulated sources acquire from their timers only while the window shows the worksheet
    // outside design mode.
    void RunSimulatedSources(bool Value);
    void ShowError(const QString& Text);
    void UpdateTitle();

    QString FPath;
    QTabWidget* FTabs = nullptr;      // central widget; owns the pages
    QAction* FDesignAction = nullptr;  // children of the window
    QAction* FSaveAction = nullptr;
    QAction* FSearchModulesAction = nullptr;
    int FModuleSearchPort = 0;
};

}  // namespace qxsheet
