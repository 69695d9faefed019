#include <gtest/gtest.h>

#include <QAction>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

#include "apps/qxsheet/demo_panels.h"
#include "apps/qxsheet/worksheet_app.h"
#include "qxbase/framework/host_services.h"
#include "qxbase/panels/panel_base.h"
#include "qxbase/panels/panel_tab_page.h"
#include "qxbase/panels/worksheet_file.h"
#include "tests/framework/print_qstring.h"

using namespace qxsheet;

namespace {

QByteArray FileBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::vector<qx::TKSMSSink*> AllPanels(const TWorksheetWindow& window)
{
    std::vector<qx::TKSMSSink*> panels;
    for (qx::TKSPanelTabPage* page : window.GetPages())
        for (qx::TKSMSSink* panel : qx::GetAllPagePanels(*page)) panels.push_back(panel);
    return panels;
}

QPoint Centre(const qx::TKSMSSink& panel)
{
    return panel.AdjustClientRect().center();
}

class Worksheet : public ::testing::Test {
protected:
    void TearDown() override { qx::RestoreHostServices(); }
    QTemporaryDir FDir;
    QString FSaid, FComplaint;  // what a command writes to its output and error streams
    QTextStream FOut{&FSaid}, FErr{&FComplaint};
};

// The PNG shows page 1 in design mode, the grid on the design background where no panel
// stands, with the first panel selected (how a selected panel looks is the panel tests' part).
TEST_F(Worksheet, SnapshotShowsTheDesignGridAndTheSelectedPanel)
{
    const QString png = FDir.filePath("shot.png");
    ASSERT_EQ(RunSnapshot({}, png, FOut, FErr), 0) << FComplaint.toStdString();
    EXPECT_TRUE(FSaid.contains("written to " + png)) << FSaid.toStdString();
    const QImage image(png);
    ASSERT_EQ(image.size(), KSnapshotSize);

    // The same window again, for where things are.
    const std::unique_ptr<TWorksheetWindow> window = CreateSnapshotWindow({});
    qx::TKSPanelTabPage& page = *window->GetPages().front();
    const auto at = [&](const QWidget& w, QPoint p) { return image.pixel(w.mapTo(window.get(), p)); };
    EXPECT_EQ(at(page, {700, 300}), qx::ColorToQColor(page.GetDesignGridColor()).rgb());
    EXPECT_EQ(at(page, {705, 305}), qx::ColorToQColor(page.GetDesignBKColor()).rgb());

    const std::vector<qx::TKSMSSink*> panels = qx::GetPagePanels(page);
    ASSERT_GE(panels.size(), 2U);
    EXPECT_TRUE(panels[0]->GetIsSelected());
    EXPECT_FALSE(panels[1]->GetIsSelected());

    // Content too: the lit red lamp in its centre.
    auto* lamp = qobject_cast<TDemoLamp*>(panels[1]);
    ASSERT_NE(lamp, nullptr);
    EXPECT_EQ(at(*lamp, Centre(*lamp)), qx::ColorToQColor(lamp->GetShownColor()).rgb());
}

TEST_F(Worksheet, SnapshotFailuresSayWhy)
{
    EXPECT_EQ(RunSnapshot(FDir.filePath("none.qxw"), FDir.filePath("a.png"), FOut, FErr), 1);
    EXPECT_EQ(RunSnapshot({}, FDir.filePath("no/dir/a.png"), FOut, FErr), 1);
    FErr.flush();
    EXPECT_TRUE(FComplaint.startsWith("qxsheet: Cannot read " + FDir.filePath("none.qxw"))) << FComplaint.toStdString();
    EXPECT_TRUE(FComplaint.contains("cannot write the snapshot to " + FDir.filePath("no/dir/a.png")));
    EXPECT_TRUE(FSaid.isEmpty());
}

TEST_F(Worksheet, DesignSwitchReachesEveryPanelOfEveryPage)
{
    const std::unique_ptr<TWorksheetWindow> window = OpenWorksheetWindow({});
    const std::vector<qx::TKSMSSink*> panels = AllPanels(*window);
    ASSERT_EQ(panels.size(), 16U);
    window->GetDesignAction()->trigger();
    for (qx::TKSMSSink* panel : panels) {
        EXPECT_TRUE(panel->GetDesignMode()) << panel->objectName().toStdString();
        EXPECT_TRUE(panel->GetSnapToGrid());
        EXPECT_EQ(panel->GetGridSpacingX(), 10);
    }
    for (qx::TKSPanelTabPage* page : window->GetPages()) EXPECT_TRUE(page->GetIsDesigning());
    // The note is a controller panel, and switches with the others.
    auto* note = window->GetPages().front()->findChild<TDemoNotePanel*>("OperatorNote");
    ASSERT_NE(note, nullptr);
    EXPECT_TRUE(note->GetDesignMode() && note->GetSnapToGrid() && note->GetIsPinned());
    EXPECT_EQ(note->GetGridSpacingY(), 10);
    panels.back()->SetIsSelected(true);
    note->SetIsSelected(true);
    window->GetDesignAction()->trigger();
    for (qx::TKSMSSink* panel : panels) EXPECT_FALSE(panel->GetDesignMode() || panel->GetIsSelected());
    EXPECT_FALSE(note->GetDesignMode() || note->GetIsSelected());
    for (qx::TKSPanelTabPage* page : window->GetPages()) EXPECT_FALSE(page->GetIsDesigning());
}

// The window's part: a plain click selects one panel only, a click on the page none. Snapping
// comes with design mode (above); dragging and Ctrl toggling are the panel's own.
TEST_F(Worksheet, ClicksSelectOnePanelAndThePageDeselectsAll)
{
    const std::unique_ptr<TWorksheetWindow> window = OpenWorksheetWindow({});
    window->resize(KSnapshotSize);
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    window->SetDesignMode(true);
    qx::TKSPanelTabPage& page = *window->GetPages().front();
    const std::vector<qx::TKSMSSink*> panels = qx::GetPagePanels(page);
    qx::TKSMSSink& a = *panels[0];
    qx::TKSMSSink& b = *panels[1];
    const auto selected = [&] { return window->GetSelectedPanels(); };

    QTest::mouseClick(&a, Qt::LeftButton, {}, Centre(a));
    EXPECT_EQ(selected(), std::vector<qx::TKSMSSink*>{&a});
    QTest::mouseClick(&b, Qt::LeftButton, {}, Centre(b));
    EXPECT_EQ(selected(), std::vector<qx::TKSMSSink*>{&b});
    QTest::mouseClick(&a, Qt::LeftButton, Qt::ControlModifier, Centre(a));
    EXPECT_EQ(selected(), (std::vector<qx::TKSMSSink*>{&a, &b}));
    auto& note = *page.findChild<TDemoNotePanel*>("OperatorNote");
    QTest::mouseClick(&note, Qt::LeftButton, Qt::ControlModifier, note.rect().center());
    EXPECT_TRUE(note.GetIsSelected());
    QTest::mouseClick(&page, Qt::LeftButton, {}, QPoint(700, 300));
    EXPECT_TRUE(selected().empty());
    EXPECT_FALSE(note.GetIsSelected());
}

TEST_F(Worksheet, TheDefaultSavesAndLoadsBackUnchanged)
{
    const std::unique_ptr<TWorksheetWindow> window = OpenWorksheetWindow({});
    // Save of the bundled worksheet asks where to; cancelling writes nothing.
    QString offered;
    QString answer;
    qx::HostServices().GetSaveFileName = [&](QWidget*, const QString&, const QString&, const QString& name) {
        offered = name;
        return answer;
    };
    EXPECT_FALSE(window->Save());
    EXPECT_TRUE(offered.endsWith("/default.qxw")) << offered.toStdString();
    answer = FDir.filePath("plant.qxw");
    ASSERT_TRUE(window->Save());
    // The bundled file is what a save writes, so a diff of it shows only real changes (and
    // reading back what was saved writes the same again).
    EXPECT_EQ(FileBytes(DefaultWorksheetPath()), FileBytes(answer));

    // From now on Save writes back to that file without asking.
    answer.clear();
    qx::TKSMSSink& moved = *AllPanels(*window).back();
    moved.SetBounds(500, 229, moved.width(), moved.height());
    ASSERT_TRUE(window->Save());
    ASSERT_TRUE(window->Open(FDir.filePath("plant.qxw")));
    EXPECT_EQ(AllPanels(*window).back()->pos(), QPoint(500, 229));
}

TEST_F(Worksheet, AFileThatDoesNotLoadIsShownAndKeepsTheWorksheet)
{
    const std::unique_ptr<TWorksheetWindow> window = OpenWorksheetWindow({});
    QString shown;
    qx::HostServices().MessageBox = [&](QWidget*, const QString& text, const QString&, int) {
        shown = text;
        return 1;
    };
    const QString bad = FDir.filePath("none.qxw");
    EXPECT_FALSE(window->Open(bad));
    EXPECT_TRUE(shown.startsWith("Cannot read " + bad)) << shown.toStdString();
    EXPECT_EQ(window->GetPages().size(), 3U);
    EXPECT_EQ(window->GetPath(), DefaultWorksheetPath());
}

}  // namespace
