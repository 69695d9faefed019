#include <gtest/gtest.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QTest>
#include <QTimer>

#include "qxbase/panels/panel_base.h"
#include "tests/panels/panel_test_support.h"

using namespace qx;
using qxtest::ExpectPixels;
using qxtest::Rgb;
using qxtest::TestPanel;

namespace {

// A panel at (40, 50), 200 by 100, on a shown page.
class PanelOnPage : public ::testing::Test {
protected:
    void SetUp() override
    {
        FPage.resize(400, 300);
        FPanel = new TestPanel(&FPage);
        FPanel->setGeometry(40, 50, 200, 100);
        FPage.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&FPage));
    }
    void TearDown() override
    {
        if (QWidget* popup = QApplication::activePopupWidget())
            popup->close();
        CNewDesign = false;
        SetGradientCaptions(true);
        RestoreSystemColors();
    }

    // Mouse events go to the panel as the grab would route them; positions are page pixels.
    QPoint Local(const QPoint& page) const { return FPanel->mapFrom(&FPage, page); }
    void Press(const QPoint& page, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = {})
    {
        QTest::mousePress(FPanel, button, keys, Local(page));
    }
    void Drag(const QPoint& page) { QTest::mouseMove(FPanel, Local(page)); }
    void Release(const QPoint& page, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseRelease(FPanel, button, {}, Local(page));
    }
    void Hover(const QPoint& local)
    {
        QMouseEvent move(QEvent::MouseMove, local, FPanel->mapToGlobal(local), Qt::NoButton, Qt::NoButton,
                         Qt::NoModifier);
        QApplication::sendEvent(FPanel, &move);
    }
    void SnapTo(int grid)
    {
        FPanel->SetSnapToGrid(true);
        FPanel->SetGridSpacingX(grid);
        FPanel->SetGridSpacingY(grid);
    }

    QWidget FPage;
    TestPanel* FPanel = nullptr;
};

}  // namespace

TEST_F(PanelOnPage, DragMovesThePanelAndSnapsItToTheGrid)
{
    FPanel->SetDesignMode(true);
    SnapTo(10);
    QStringList log;
    FPanel->OnStartMove = [&](TKSMSSink*) { log << "start"; };
    FPanel->OnMoving = [&](TKSMSSink*, int left, int top, int dl, int dt) {
        log << QString("moving %1 %2 %3 %4").arg(left).arg(top).arg(dl).arg(dt);
    };
    FPanel->OnEndMove = [&](TKSMSSink*) { log << "end"; };

    Press(QPoint(140, 100));
    EXPECT_EQ(FPanel->GetColor(), clBtnShadow);
    // The ears show while the panel travels: a third of the width, at most 30 pixels.
    EXPECT_FALSE(FPanel->mask().contains(QPoint(30, 5)));

    Drag(QPoint(140, 100));  // not moved yet: no step
    Drag(QPoint(127, 113));  // left 27 truncates to 20; top 63 to 59 (the caption sits above the line)
    EXPECT_EQ(FPanel->pos(), QPoint(20, 59));
    Drag(QPoint(128, 114));  // same grid cell: no step
    Release(QPoint(128, 114));

    EXPECT_EQ(log, QStringList({"start", "moving 20 59 -20 9", "end"}));
    EXPECT_FALSE(FPanel->GetMoving());
    EXPECT_EQ(FPanel->GetColor(), clBtnFace);
    EXPECT_TRUE(FPanel->mask().contains(QPoint(30, 5)));

    Press(QPoint(128, 114), Qt::LeftButton, Qt::ControlModifier);
    Release(QPoint(128, 114));
    EXPECT_FALSE(FPanel->GetIsSelected());
    EXPECT_FALSE(FPanel->GetSelectionTimer()->isActive());
}

TEST_F(PanelOnPage, CornerDragResizesWithRoundingSnapAndRespectsTheMinimum)
{
    FPanel->SetDesignMode(true);
    SnapTo(10);
    QStringList log;
    FPanel->OnStartResize = [&](TKSMSSink*) { log << "start"; };
    FPanel->OnResizing = [&](TKSMSSink*) { log << "step"; };
    FPanel->OnEndResize = [&](TKSMSSink*) { log << "end"; };
    Press(QPoint(235, 145));  // bottom-right corner
    EXPECT_EQ(FPanel->GetResizeArea(), 7);
    EXPECT_FALSE(FPanel->GetMoving());
    Drag(QPoint(268, 169));
    Release(QPoint(268, 169));
    // Width 233 rounds to 230, height 124 to 121; left and top snap as well.
    EXPECT_EQ(FPanel->geometry(), QRect(40, 49, 230, 121));
    EXPECT_EQ(FPanel->GetResizeArea(), 0);
    EXPECT_EQ(log, QStringList({"start", "step", "end"}));

    // Top-left drag: a step within the minimum is taken and reported, one past it changes nothing.
    FPanel->SetSnapToGrid(false);
    FPanel->SetWindowMinSize(QPoint(200, 30));
    int changes = 0;
    FPanel->OnPanelChanged = [&](TKSMSSink*, bool) { ++changes; };
    Press(QPoint(45, 54));
    EXPECT_EQ(FPanel->GetResizeArea(), 1);
    Drag(QPoint(65, 64));
    EXPECT_EQ(FPanel->geometry(), QRect(60, 59, 210, 111));
    EXPECT_GT(changes, 0);
    changes = 0;
    Drag(QPoint(105, 64));
    Release(QPoint(105, 64));
    EXPECT_EQ(FPanel->geometry(), QRect(60, 59, 210, 111));
    EXPECT_EQ(changes, 0);
}

TEST_F(PanelOnPage, MenuOpensFromThePopupButtonAndFromTheRightButtonByLook)
{
    FPanel->SetDesignMode(true);
    QMenu* menu = FPanel->GetPopupMenu();
    Press(QPoint(40 + 185, 55));
    EXPECT_FALSE(FPanel->GetMoving());
    EXPECT_EQ(QApplication::activePopupWidget(), menu);
    EXPECT_EQ(menu->pos(), FPanel->mapToGlobal(QPoint(200, 12)));
    menu->close();
    Release(QPoint(40 + 185, 55));

    // Classic: the right button itself does nothing, the context menu event pops the menu up.
    Press(QPoint(140, 100), Qt::RightButton);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    Release(QPoint(140, 100), Qt::RightButton);
    QContextMenuEvent request(QContextMenuEvent::Mouse, QPoint(100, 50), FPanel->mapToGlobal(QPoint(100, 50)));
    QApplication::sendEvent(FPanel, &request);
    EXPECT_EQ(QApplication::activePopupWidget(), menu);
    menu->close();

    CNewDesign = true;
    QApplication::sendEvent(FPanel, &request);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    Press(QPoint(140, 100), Qt::RightButton);
    EXPECT_EQ(QApplication::activePopupWidget(), menu);
    EXPECT_EQ(menu->pos(), FPanel->mapToGlobal(QPoint(100, 50)));
    menu->close();
    Release(QPoint(140, 100), Qt::RightButton);
}

TEST_F(PanelOnPage, CursorShowsTheAreaUnderTheMouseAndDoubleClickOpensThePage)
{
    FPanel->SetDesignMode(true);
    QTest::mouseDClick(FPanel, Qt::LeftButton, {}, QPoint(100, 50));
    QTest::mouseRelease(FPanel, Qt::LeftButton, {}, QPoint(100, 50));
    EXPECT_EQ(FPanel->PagesShown, 1);
    const std::vector<std::pair<QPoint, Qt::CursorShape>> rows = {
        {{5, 95}, Qt::SizeBDiagCursor}, {{100, 99}, Qt::SizeVerCursor}, {{185, 5}, Qt::WhatsThisCursor},
        {{100, 50}, Qt::PointingHandCursor}};
    for (const auto& [point, shape] : rows) {
        Hover(point);
        EXPECT_EQ(FPanel->cursor().shape(), shape) << point.x() << "," << point.y();
    }
    FPanel->SetResizable(false);
    Hover(QPoint(195, 95));
    EXPECT_EQ(FPanel->cursor().shape(), Qt::PointingHandCursor);

    // At run time the panel gives up its own cursor and takes part in nothing.
    FPanel->SetDesignMode(false);
    Hover(QPoint(100, 50));
    EXPECT_FALSE(FPanel->testAttribute(Qt::WA_SetCursor));
    QTest::mouseDClick(FPanel, Qt::LeftButton, {}, QPoint(100, 50));
    EXPECT_FALSE(FPanel->GetIsSelected() || FPanel->GetMoving());
    QTest::mouseRelease(FPanel, Qt::LeftButton, {}, QPoint(100, 50));
    EXPECT_EQ(FPanel->PagesShown, 1);
}

TEST_F(PanelOnPage, WindowRegionsByWidthLookAndMode)
{
    FPanel->SetDesignMode(true);
    FPanel->resize(30, 60);
    FPanel->SetCutOutEnabled(true);
    EXPECT_TRUE(FPanel->mask().isEmpty());

    FPanel->resize(31, 60);
    FPanel->SetCutOutDownEnabled(true);
    FPanel->SetCutOutEnabled(true);
    const QRegion ears = FPanel->mask();  // ears 10 wide, bottom lifted by 6
    EXPECT_EQ(ears.boundingRect(), QRect(0, 0, 31, 54));
    EXPECT_TRUE(ears.contains(QPoint(9, 2)) && ears.contains(QPoint(21, 2)) && ears.contains(QPoint(15, 10)));
    EXPECT_FALSE(ears.contains(QPoint(10, 2)) || ears.contains(QPoint(20, 9)));

    // Run time: caption and bottom strip are clipped away.
    FPanel->resize(200, 100);
    FPanel->SetDesignMode(false);
    EXPECT_EQ(FPanel->mask(), QRegion(QRect(1, 12, 198, 77)));
    // A classic resize clips to the adjusted client rectangle, one pixel lower.
    FPanel->SetBounds(40, 50, 150, 90);
    EXPECT_EQ(FPanel->mask(), QRegion(QRect(1, 12, 148, 68)));

    CNewDesign = true;
    FPanel->SetBounds(40, 50, 160, 90);
    EXPECT_EQ(FPanel->mask(), QRegion(QRect(0, 11, 160, 69)));
    FPanel->SetDesignMode(true);
    EXPECT_EQ(FPanel->mask(), QRegion(QRect(1, 12, 158, 68)));
    EXPECT_TRUE(FPanel->GetShowHint());
    FPanel->SetCutOutEnabled(true);  // no regions of its own in the new look
    EXPECT_EQ(FPanel->mask(), QRegion(QRect(1, 12, 158, 68)));
    EXPECT_FALSE(FPanel->grab().isNull());
}

TEST_F(PanelOnPage, VisibilityChangesOfItsOwnCountAsLoading)
{
    FPanel->hide();
    FPanel->SetRunTimeVisible(false);
    std::vector<bool> seen;
    FPanel->OnSinkShow = [&](TKSMSSink* sender) { seen.push_back(sender->GetIsLoaded()); };
    FPanel->SetDesignMode(true);
    EXPECT_TRUE(FPanel->isVisible());
    EXPECT_EQ(seen, std::vector<bool>{true});
    EXPECT_FALSE(FPanel->GetIsLoaded());
    FPanel->SetDesignMode(false);
    EXPECT_FALSE(FPanel->isVisible());
}

// The classic frame on a 256-pixel panel, so that each caption column is one gradient column.
class ClassicPaint : public PanelOnPage {
protected:
    void SetUp() override
    {
        PanelOnPage::SetUp();
        FPanel->setGeometry(10, 10, 256, 80);
        FPanel->SetDesignMode(true);
        FPanel->SetColor(clWhite);
        FPanel->clearMask();
        SetSystemColor(clInactiveCaption & 0xFF, 0x0000FF);
        SetSystemColor(clGradientInactiveCaption & 0xFF, 0x000000);
    }
    QImage Grab() const { return FPanel->grab().toImage(); }
};

TEST_F(ClassicPaint, CaptionHatchGripAndFrameFollowTheGradientSwitch)
{
    // Column i blends caption (red 255) and gradient colour (black) by i/255; white body below.
    // The hatch on the popup button: even rows darker by 40 from 238 to 245, odd rows lighter by
    // 40 from 237 to 244. The lifted grip: 12-pixel strokes rising from row 77, here where they
    // cross row 68; one past a stroke's end stays white.
    ExpectPixels(Grab(), {{20, 10, qRgb(20, 0, 0)}, {128, 10, qRgb(128, 0, 0)}, {200, 10, qRgb(200, 0, 0)},
                          {20, 11, Rgb(clWhite)}, {1, 40, Rgb(cl3DLight)}, {254, 40, Rgb(clBtnShadow)},
                          {100, 1, Rgb(clBtnShadow)}, {238, 4, qRgb(215, 0, 0)}, {245, 4, qRgb(215, 0, 0)},
                          {237, 4, qRgb(237, 0, 0)}, {237, 3, qRgb(255, 40, 40)}, {244, 9, qRgb(255, 40, 40)},
                          {245, 3, qRgb(245, 0, 0)}, {100, 70, Rgb(clSilver)}, {100, 69, Rgb(clWhite)},
                          {248, 68, Rgb(clSilver)}, {249, 68, Rgb(clGray)}, {250, 68, Rgb(clWhite)},
                          {251, 68, Rgb(clGray)}, {252, 65, Rgb(clWhite)}});
    // Flat caption and border colour all round; the short grip ends on x = 254, its gray strokes
    // start at 248 (6 pixels) and 251 (3 pixels) on row 77.
    SetGradientCaptions(false);
    FPanel->SetCutOutDownEnabled(false);
    ExpectPixels(Grab(), {{20, 10, qRgb(255, 0, 0)}, {200, 10, qRgb(255, 0, 0)}, {1, 40, Rgb(clInactiveBorder)},
                          {254, 40, Rgb(clInactiveBorder)}, {248, 77, Rgb(clGray)}, {253, 72, Rgb(clGray)},
                          {253, 75, Rgb(clGray)}, {249, 77, Rgb(clSilver)}, {248, 68, Rgb(clWhite)}});
}

TEST_F(ClassicPaint, SelectionBlinkDashesTheOuterFrame)
{
    // From the lifted bottom-left corner (0, 73) upwards: 18 pixels in the pen, 6 in the brush.
    FPanel->SetIsSelected(true);
    ExpectPixels(Grab(), {{0, 73, qRgb(255, 255, 255)}, {0, 56, qRgb(255, 255, 255)}, {0, 55, qRgb(0, 0, 0)},
                          {0, 49, qRgb(255, 255, 255)}});
    FPanel->DoOnSelectionTimer();
    ExpectPixels(Grab(), {{0, 73, qRgb(204, 204, 204)}, {0, 55, qRgb(51, 51, 51)}});
    // The level bounces between its ends.
    for (int i = 0; i < 5; ++i)
        FPanel->DoOnSelectionTimer();
    EXPECT_NEAR(FPanel->GetBlinkLevel(), 0.2F, 1e-5F);
    EXPECT_LT(FPanel->GetBlinkStep(), 0.0F);
}
