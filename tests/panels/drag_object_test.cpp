#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDrag>
#include <QImage>
#include <QWidget>

#include "qxbase/panels/drag_object.h"

using namespace qx;

namespace {

TEST(DragObject, RefusesAMissingImage)
{
    QWidget palette;
    const QImage empty;
    EXPECT_THAT([&] { THVKDragObject(&palette, nullptr); },
                ::testing::ThrowsMessage<EDragObjectError>(::testing::StrEq("Unassigned image")));
    EXPECT_THROW(THVKDragObject(&palette, &empty), EDragObjectError);
}

TEST(DragObject, DragShowsItsOwnCopyOfTheImageHeldAtItsCentre)
{
    QWidget palette;
    QImage icon(24, 16, QImage::Format_ARGB32);
    icon.fill(Qt::green);
    const THVKDragObject object(&palette, &icon);
    icon.fill(Qt::black);
    EXPECT_EQ(object.GetDragImages().GetCount(), 1);

    QDrag drag(&palette);
    object.ConfigureDrag(drag);
    EXPECT_EQ(drag.hotSpot(), QPoint(12, 8));
    EXPECT_EQ(drag.pixmap().toImage().pixel(3, 3), QColor(Qt::green).rgb());
}

}  // namespace
