#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDrag>
#include <QImage>
#include <QWidget>

#include "qxbase/panels/drag_object.h"

using namespace qx;
using ::testing::Property;
using ::testing::StrEq;
using ::testing::Throws;

namespace {

TEST(DragObject, NeedsAnImage)
{
    QWidget palette;
    const QImage empty;
    EXPECT_THAT([&] { THVKDragObject(&palette, nullptr); },
                Throws<EDragObjectError>(Property(&EDragObjectError::what, StrEq("Unassigned image"))));
    EXPECT_THROW(THVKDragObject(&palette, &empty), EDragObjectError);
}

TEST(DragObject, DragShowsTheImageHeldAtItsCentre)
{
    QWidget palette;
    QImage icon(24, 16, QImage::Format_ARGB32);
    icon.fill(Qt::green);
    const THVKDragObject object(&palette, &icon);
    icon.fill(Qt::black);  // the list holds its own copy

    const TDragImageList& images = object.GetDragImages();
    ASSERT_EQ(images.GetCount(), 1);
    EXPECT_EQ(images.GetSize(), QSize(24, 16));
    EXPECT_EQ(images.GetDragImageIndex(), 0);
    EXPECT_THROW(images.GetImage(1), ERangeError);

    QDrag drag(&palette);
    object.ConfigureDrag(drag);
    EXPECT_EQ(drag.hotSpot(), QPoint(12, 8));
    EXPECT_EQ(drag.pixmap().toImage().pixel(3, 3), QColor(Qt::green).rgb());
}

TEST(DragImageList, ImagesOfAnotherSizeAreScaledAndBadIndexesRefused)
{
    TDragImageList list(QSize(8, 8));
    EXPECT_FALSE(list.SetDragImage(0, QPoint(1, 1)));
    EXPECT_EQ(list.Add(QImage(16, 4, QImage::Format_RGB32)), 0);
    EXPECT_EQ(list.GetImage(0).size(), QSize(8, 8));
    EXPECT_TRUE(list.SetDragImage(0, QPoint(1, 2)));
    EXPECT_FALSE(list.SetDragImage(-1, QPoint()));
    EXPECT_EQ(list.GetHotSpot(), QPoint(1, 2));
}

}  // namespace
