#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QJsonArray>
#include <QJsonObject>
#include <QPixmap>

#include "qxbase/framework/component_stream.h"
#include "qxbase/framework/exception.h"
#include "qxbase/panels/panel_tab_page.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

namespace {

constexpr TColor KGrid = 0x0000FF;
constexpr TColor KBack = 0x00FF00;
constexpr TColor KRuntime = 0xFF0000;

QRgb Rgb(TColor color) { return ColorToQColor(color).rgb(); }

// A 2x2 chequer: red and blue on the first row, blue and red on the second.
QPixmap Chequer()
{
    QImage image(2, 2, QImage::Format_RGB32);
    image.setPixel(0, 0, qRgb(255, 0, 0));
    image.setPixel(1, 0, qRgb(0, 0, 255));
    image.setPixel(0, 1, qRgb(0, 0, 255));
    image.setPixel(1, 1, qRgb(255, 0, 0));
    return QPixmap::fromImage(image);
}

class PanelTabPagePaint : public ::testing::Test {
protected:
    void SetUp() override
    {
        FPage.resize(60, 40);
        FPage.SetDesignGridColor(KGrid);
        FPage.SetDesignBKColor(KBack);
        FPage.SetRuntimeColor(KRuntime);
    }
    QImage Grab() { return FPage.grab().toImage(); }

    TKSPanelTabPage FPage;
};

TEST_F(PanelTabPagePaint, DesignModeDrawsTheGridOnTheDesignBackground)
{
    const QImage image = Grab();
    EXPECT_EQ(image.pixel(20, 5), Rgb(KGrid));
    EXPECT_EQ(image.pixel(5, 30), Rgb(KGrid));
    EXPECT_EQ(image.pixel(5, 5), Rgb(KBack));
    EXPECT_EQ(image.pixel(59, 39), Rgb(KBack));
}

TEST_F(PanelTabPagePaint, ZeroGridSizeOrHiddenGridStillFillsTheBackground)
{
    FPage.SetGridXSize(0);
    EXPECT_EQ(Grab().pixel(20, 20), Rgb(KBack));
    FPage.SetGridXSize(10);
    FPage.SetShowGrid(false);
    EXPECT_EQ(Grab().pixel(20, 20), Rgb(KBack));
}

TEST_F(PanelTabPagePaint, RunTimeUsesTheRunTimeColourAndShowsTheImageOnlyThen)
{
    FPage.SetBackgroundImage(Chequer());
    FPage.SetBackgroundPaintStyle(bipsCenter);
    EXPECT_EQ(Grab().pixel(29, 19), Rgb(KBack)) << "no image in design mode";

    FPage.SetIsDesigning(false);
    QImage image = Grab();
    EXPECT_EQ(image.pixel(20, 10), Rgb(KRuntime)) << "no grid at run time";
    EXPECT_EQ(image.pixel(29, 19), qRgb(255, 0, 0));
    EXPECT_EQ(image.pixel(30, 19), qRgb(0, 0, 255));
    EXPECT_EQ(image.pixel(28, 19), Rgb(KRuntime));

    FPage.SetBackgroundPaintStyle(bipsTile);
    image = Grab();
    EXPECT_EQ(image.pixel(0, 0), qRgb(255, 0, 0));
    EXPECT_EQ(image.pixel(3, 0), qRgb(0, 0, 255));
    EXPECT_EQ(image.pixel(58, 39), qRgb(0, 0, 255));
    EXPECT_EQ(image.pixel(59, 39), qRgb(255, 0, 0));

    FPage.SetBackgroundPaintStyle(bipsStretch);
    image = Grab();
    EXPECT_EQ(image.pixel(5, 5), qRgb(255, 0, 0));
    EXPECT_EQ(image.pixel(55, 5), qRgb(0, 0, 255));

    FPage.SetBackgroundImage(QPixmap());
    EXPECT_EQ(Grab().pixel(5, 5), Rgb(KRuntime));
}

TEST(PanelTabPageStream, PageReadsBackWithItsImageAndStyle)
{
    TKSPanelTabPage page;
    page.setObjectName(QStringLiteral("Page1"));
    page.SetCaption(QStringLiteral("Overview"));
    page.SetShowGrid(false);
    page.SetRuntimeColor(clInfoBk);
    page.SetEmbededVisible(true);
    page.SetSortOder(-3);
    page.SetBackgroundPaintStyle(bipsTile);
    page.SetBackgroundImage(Chequer());

    const QJsonObject json = WriteComponent(page);
    EXPECT_EQ(json["properties"].toObject()["BackgroundPaintStyle"].toString(), "bipsTile");
    const std::unique_ptr<QObject> read = ReadComponent(json, nullptr);
    auto* copy = qobject_cast<TKSPanelTabPage*>(read.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->objectName(), "Page1");
    EXPECT_EQ(copy->GetCaption(), "Overview");
    EXPECT_FALSE(copy->GetShowGrid());
    EXPECT_EQ(copy->GetRuntimeColor(), clInfoBk);
    EXPECT_TRUE(copy->GetEmbededVisible());
    EXPECT_EQ(copy->GetSortOder(), -3);
    EXPECT_EQ(copy->GetBackgroundPaintStyle(), bipsTile);
    EXPECT_EQ(copy->GetBackgroundImage().toImage(), Chequer().toImage());
    EXPECT_EQ(WriteComponent(*copy), json);
}

TEST(PanelTabPageStream, PageWithoutImageWritesNoImageAndBadImagesAreRefused)
{
    TKSPanelTabPage page;
    QJsonObject json = WriteComponent(page);
    EXPECT_TRUE(json["defined"].toObject().isEmpty());

    QJsonObject defined;
    defined["BackgroundImage"] = QJsonArray{QStringLiteral("not base64 !")};
    json["defined"] = defined;
    EXPECT_THROW(ReadComponent(json, nullptr), EStreamError);
    defined["BackgroundImage"] = QJsonArray{QStringLiteral("AAAA")};
    json["defined"] = defined;
    EXPECT_THROW(ReadComponent(json, nullptr), EStreamError);

    QJsonObject properties;
    properties["BackgroundPaintStyle"] = QStringLiteral("bipsMosaic");
    json["properties"] = properties;
    json.remove("defined");
    EXPECT_THROW(ReadComponent(json, nullptr), EStreamError);
}

}  // namespace
