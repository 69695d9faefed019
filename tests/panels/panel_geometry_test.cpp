#include <gtest/gtest.h>

#include <tuple>

#include "qxbase/panels/panel_geometry.h"

using namespace qx;

namespace {

QPolygon Points(std::initializer_list<QPoint> points) { return QPolygon(QList<QPoint>(points)); }

}  // namespace

// The ear width (a third, at most 30) is checked on a real panel in panel_interaction_test.
TEST(PanelFrame, EarPolygonForTheRegionRunsOnTheOuterEdges)
{
    EXPECT_EQ(PolyFramePoints(QRect(0, 0, 60, 40), 20, true, false, true, 0, 0, false),
              Points({{0, 40}, {0, 10}, {0, 0}, {20, 0}, {20, 10}, {40, 10}, {40, 0}, {60, 0}, {60, 10}, {60, 40}}));
}

TEST(PanelFrame, DrawnPolygonIsOnePixelInsideAndHonoursInsetsLiftAndClosing)
{
    const QPolygon drawn = PolyFramePoints(QRect(0, 0, 100, 50), 30, false, true, false, 2, 3, true);
    // right 100-1-3, bottom 50-1-2, lifted by 6; the first point repeats at the end.
    EXPECT_EQ(drawn, Points({{3, 41}, {3, 2}, {96, 2}, {96, 41}, {3, 41}}));
}

TEST(PanelHitAreas, PopupButtonIncludesItsRightEdgePageActivatorDoesNot)
{
    EXPECT_TRUE(IsInPopupArea(QPoint(79, 0), 100) && IsInPopupArea(QPoint(89, 11), 100));
    EXPECT_FALSE(IsInPopupArea(QPoint(90, 5), 100) || IsInPopupArea(QPoint(85, 12), 100));
    const QRect client(0, 0, 100, 50);
    EXPECT_TRUE(IsInPageActivatorArea(QPoint(74, 4), client) && IsInPageActivatorArea(QPoint(81, 8), client));
    EXPECT_FALSE(IsInPageActivatorArea(QPoint(82, 6), client) || IsInPageActivatorArea(QPoint(76, 9), client));
}

// The first area that holds the point wins; a panel of 28 pixels or less has no top corners.
TEST(PanelResizeAreas, FirstHitInTableOrder)
{
    const std::tuple<QPoint, int, int, int> rows[] = {  // point, width, border width, area
        {{89, 68}, 100, 0, 7}, {{89, 10}, 100, 0, 5}, {{10, 10}, 100, 0, 1}, {{10, 68}, 100, 0, 3},
        {{2, 40}, 100, 2, 8},  {{99, 40}, 100, 0, 6}, {{50, 0}, 100, 0, 2},  {{50, 79}, 100, 0, 4},
        {{88, 67}, 100, 0, 0}, {{27, 5}, 28, 0, 6}};
    for (const auto& [at, width, border, area] : rows)
        EXPECT_EQ(ResizeAreaAt(at.x(), at.y(), QRect(0, 0, width, 80), width, border), area) << at.x() << "," << at.y();
}

// Areas 1 and 7 are dragged on a real panel in panel_interaction_test.
TEST(PanelResize, EachAreaMovesItsOwnEdges)
{
    const QRect down(100, 50, 200, 120);
    EXPECT_EQ(ResizedBounds(3, down, 10, 5), QRect(110, 50, 190, 125));
    EXPECT_EQ(ResizedBounds(5, down, 10, 5), QRect(100, 55, 210, 115));
    EXPECT_EQ(ResizedBounds(8, down, 10, 5), QRect(110, 50, 190, 120));
    EXPECT_EQ(ResizedBounds(0, down, 10, 5), down);
}

TEST(PanelSnap, MoveTruncatesWhereResizeRounds)
{
    EXPECT_EQ(SnapResizedBounds(QRect(27, 27, 100, 100), 10, 10).topLeft(), QPoint(30, 29));
    // Width rounds; height keeps the 21 pixels of caption and bottom strip off the grid.
    EXPECT_EQ(SnapResizedBounds(QRect(0, 0, 104, 104), 10, 10).size(), QSize(100, 101));
    EXPECT_EQ(SnapResizedBounds(QRect(0, 0, 105, 106), 10, 10).size(), QSize(110, 111));
    // Truncation goes toward zero left of the page origin too.
    EXPECT_EQ(SnapMovedPosition(QPoint(-7, -25), 10, 10), QPoint(0, -21));
    // A spacing of 0 leaves its axis alone instead of dividing by it.
    EXPECT_EQ(SnapMovedPosition(QPoint(27, 27), 0, 10), QPoint(27, 19));
    EXPECT_EQ(SnapResizedBounds(QRect(27, 27, 100, 100), 10, 0), QRect(30, 27, 100, 100));
}

TEST(PanelLines, EndPointIsLeftOut)
{
    EXPECT_EQ(LinePixels(QPoint(2, 5), QPoint(6, 5)), Points({{2, 5}, {3, 5}, {4, 5}, {5, 5}}));
    EXPECT_EQ(LinePixels(QPoint(10, 10), QPoint(13, 7)), Points({{10, 10}, {11, 9}, {12, 8}}));
    EXPECT_TRUE(LinePixels(QPoint(4, 4), QPoint(4, 4)).isEmpty());
    // A closed square sets each of its 12 border pixels once: no corner twice.
    EXPECT_EQ(PolylinePixels(Points({{0, 0}, {3, 0}, {3, 3}, {0, 3}, {0, 0}})).size(), 12);
}

// Single-channel blends and brightness steps show in the painted frame (panel_interaction_test).
TEST(PanelColors, LightBlendAndBrightnessClampPerComponent)
{
    EXPECT_EQ(ChangeLight(0xC08040, 1.5), 0xFFC060);
    EXPECT_EQ(ChangeLight(clWhite, -0.2), 0x000000);
    EXPECT_EQ(ChangeLight(clBtnShadow, 1.0), 0x808080);  // system colours resolve first
    EXPECT_EQ(BlendColors(0x0000FF, 0xFF0000, 0.25), 0xBF0040);
    EXPECT_EQ(ChangeBrightness(0x10C8F0, 40), 0x38F0FF);
}
