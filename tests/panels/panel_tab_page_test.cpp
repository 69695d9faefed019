#include <gtest/gtest.h>

#include <QImage>
#include <QPixmap>

#include "qxbase/panels/panel_tab_page.h"

using namespace qx;

namespace {

const QRgb KGrid = qRgb(255, 0, 0);
const QRgb KBack = qRgb(0, 255, 0);
const QRgb KRuntime = qRgb(0, 0, 255);
const QRgb KBlack = qRgb(0, 0, 0);
const QRgb KWhite = qRgb(255, 255, 255);

// A 2x2 chequer, black top-left.
QPixmap Chequer()
{
    QImage image(2, 2, QImage::Format_RGB32);
    image.fill(KWhite);
    image.setPixel(0, 0, KBlack);
    image.setPixel(1, 1, KBlack);
    return QPixmap::fromImage(image);
}

class PanelTabPagePaint : public ::testing::Test {
protected:
    void SetUp() override
    {
        FPage.resize(60, 40);
        FPage.SetDesignGridColor(QColorToColor(QColor(KGrid)));
        FPage.SetDesignBKColor(QColorToColor(QColor(KBack)));
        FPage.SetRuntimeColor(QColorToColor(QColor(KRuntime)));
    }
    QRgb At(int x, int y) { return FPage.grab().toImage().pixel(x, y); }

    TKSPanelTabPage FPage;
};

TEST_F(PanelTabPagePaint, DesignModeDrawsTheGridOnTheBackgroundUnlessItHasNoSize)
{
    EXPECT_EQ(At(20, 5), KGrid);
    EXPECT_EQ(At(5, 30), KGrid);
    EXPECT_EQ(At(5, 5), KBack);
    FPage.SetGridXSize(0);
    EXPECT_EQ(At(20, 20), KBack);
}

TEST_F(PanelTabPagePaint, RunTimeShowsTheColourAndTheImageInItsStyle)
{
    FPage.SetBackgroundImage(Chequer());
    EXPECT_EQ(At(29, 19), KBack) << "no image in design mode";
    FPage.SetIsDesigning(false);
    EXPECT_EQ(At(20, 10), KRuntime);
    EXPECT_EQ(At(29, 19), KBlack) << "centred";
    EXPECT_EQ(At(28, 19), KRuntime);

    FPage.SetBackgroundPaintStyle(bipsTile);
    EXPECT_EQ(At(0, 0), KBlack);
    EXPECT_EQ(At(58, 39), KWhite);
    EXPECT_EQ(At(59, 39), KBlack);
}

}  // namespace
