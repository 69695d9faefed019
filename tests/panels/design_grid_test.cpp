#include <gtest/gtest.h>

#include <QLine>
#include <QRect>

#include "qxbase/panels/design_grid.h"

using namespace qx;

namespace {

int CountVertical(const std::vector<QLine>& lines)
{
    int n = 0;
    for (const QLine& line : lines)
        n += line.x1() == line.x2() ? 1 : 0;
    return n;
}

TEST(DesignGrid, VerticalLinesFirstOverRoundedMultiplesThenHorizontal)
{
    // x: 14/10 and 36/10 round to 1 and 4; y: 16/5 and 44/5 to 3 and 9.
    const std::vector<QLine> lines = DesignGridLines(QRect(QPoint(14, 16), QPoint(35, 43)), 10, 5);
    ASSERT_EQ(lines.size(), 4u + 7u);
    EXPECT_EQ(lines[0], QLine(10, 16, 10, 43));
    EXPECT_EQ(lines[3].x1(), 40);
    EXPECT_EQ(lines[4], QLine(14, 15, 35, 15));
    EXPECT_EQ(lines.back().y1(), 45);

    // Half way rounds away from zero: 25/10 and 35/10.
    const std::vector<QLine> half = DesignGridLines(QRect(25, 0, 10, 1), 10, 1000);
    EXPECT_EQ(half[0].x1(), 30);
    EXPECT_EQ(half[1].x1(), 40);
}

TEST(DesignGrid, BatchStopsAtFiveHundredLines)
{
    const std::vector<QLine> wide = DesignGridLines(QRect(0, 0, 2000, 2000), 1, 1);
    ASSERT_EQ(wide.size(), 500u);
    EXPECT_EQ(CountVertical(wide), 500);
}

TEST(DesignGrid, NoLinesWithoutAGridOrAClip)
{
    EXPECT_TRUE(DesignGridLines(QRect(0, 0, 100, 100), 0, 10).empty());
    EXPECT_TRUE(DesignGridLines(QRect(0, 0, 100, 100), 10, 0).empty());
    EXPECT_TRUE(DesignGridLines(QRect(5, 5, 0, 10), 10, 10).empty());
    EXPECT_EQ(CountVertical(DesignGridLines(QRect(0, 0, 100, 100), -10, 10)), 0);
}

}  // namespace
