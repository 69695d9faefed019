#include <gtest/gtest.h>

#include <QTest>
#include <QTimer>
#include <QWidget>

#include "qxbase/panels/controler_panel_base.h"

using namespace qx;

namespace {

TEST(ControlerPanelAreas, GrabberIsTheBottomRightSquareAndPinnerTheTopRightStrip)
{
    // The corner points of each area are inside; a step across one of its edges is outside.
    const QSize size(40, 30);
    EXPECT_TRUE(IsInGrabberArea({33, 23}, size) && IsInGrabberArea({40, 30}, size));
    EXPECT_FALSE(IsInGrabberArea({32, 25}, size) || IsInGrabberArea({35, 22}, size));
    const QRect client(10, 10, 40, 30);
    EXPECT_TRUE(IsInPinnerArea({34, 12}, client) && IsInPinnerArea({47, 20}, client));
    EXPECT_FALSE(IsInPinnerArea({33, 15}, client) || IsInPinnerArea({48, 15}, client) ||
                 IsInPinnerArea({40, 21}, client) || IsInPinnerArea({40, 11}, client));
}

// A page with one controller panel at (16, 5), 60 x 40, in design mode.
class ControlerPanelMouse : public ::testing::Test {
protected:
    void SetUp() override
    {
        FPage.resize(300, 200);
        FPanel->setGeometry(16, 5, 60, 40);
        FPanel->SetDesignMode(true);
        FPage.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&FPage));
    }
    // Points on the page, given to the panel relative to where it is when each event arrives,
    // as a real mouse would.
    void Drag(const QPoint& from, const QPoint& to, Qt::KeyboardModifiers keys = {})
    {
        QTest::mousePress(FPanel, Qt::LeftButton, keys, from - FPanel->pos());
        QTest::mouseMove(FPanel, to - FPanel->pos());
        QTest::mouseRelease(FPanel, Qt::LeftButton, keys, to - FPanel->pos());
    }

    QWidget FPage;
    TKSControlerPanelBase* FPanel = new TKSControlerPanelBase(&FPage);
};

TEST_F(ControlerPanelMouse, DragMovesItOntoTheGridAndSelectsIt)
{
    FPanel->SetSnapToGrid(true);
    Drag(QPoint(26, 25), QPoint(53, 35));  // travels by (27, 10) to (43, 15)
    EXPECT_EQ(FPanel->geometry(), QRect(40, 13, 60, 40));
    EXPECT_TRUE(FPanel->GetIsSelected());
    EXPECT_TRUE(FPanel->GetSelectionTimer()->isActive());

    FPanel->SetSnapToGrid(false);
    Drag(QPoint(50, 33), QPoint(53, 32), Qt::ControlModifier);
    EXPECT_EQ(FPanel->pos(), QPoint(43, 12));
    EXPECT_FALSE(FPanel->GetIsSelected()) << "Ctrl toggles";
}

TEST_F(ControlerPanelMouse, GrabberResizesWithinTheMinimumAndPinnerPins)
{
    Drag(QPoint(73, 42), QPoint(93, 52));
    EXPECT_EQ(FPanel->geometry(), QRect(16, 5, 80, 50));
    FPanel->SetSnapToGrid(true);
    FPanel->SetGridSpacingX(10);
    FPanel->SetGridSpacingY(10);
    Drag(QPoint(93, 52), QPoint(26, 52));
    EXPECT_EQ(FPanel->geometry(), QRect(16, 5, 80, 50)) << "below the minimum width: not even snapped";
    FPanel->SetSnapToGrid(false);

    Drag(QPoint(86, 10), QPoint(90, 20));
    EXPECT_TRUE(FPanel->GetIsPinned());
    EXPECT_EQ(FPanel->geometry(), QRect(16, 5, 80, 50));
}

TEST(ControlerPanel, GrabberAndPinnerMarksShowOnlyInDesignMode)
{
    TKSControlerPanelBase panel;
    panel.resize(40, 30);
    panel.SetColor(clYellow);
    const QRgb yellow = qRgb(255, 255, 0);
    const QRgb mark = ColorToQColor(clBtnShadow).rgb();
    EXPECT_EQ(panel.grab().toImage().pixel(38, 28), yellow);
    panel.SetDesignMode(true);
    EXPECT_EQ(panel.grab().toImage().pixel(38, 28), mark);
    EXPECT_EQ(panel.grab().toImage().pixel(30, 6), yellow) << "pinner open";
    panel.SetIsPinned(true);
    panel.SetIsSelected(true);
    EXPECT_EQ(panel.grab().toImage().pixel(30, 6), mark);
    panel.SetDesignMode(false);
    EXPECT_FALSE(panel.GetIsSelected());
    EXPECT_FALSE(panel.GetSelectionTimer()->isActive());
}

}  // namespace
