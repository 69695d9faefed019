#include "qxbase/panels/drag_object.h"

#include <QDrag>
#include <QWidget>
#include <cstddef>

namespace qx {

namespace {

const QImage& CheckedImage(const QImage* bitmap)
{
    if (bitmap == nullptr || bitmap->isNull())
        throw EDragObjectError(QStringLiteral("Unassigned image"));
    return *bitmap;
}

}  // namespace

int TDragImageList::Add(const QImage& Image)
{
    FImages.push_back(Image.size() == FSize ? Image.copy() : Image.scaled(FSize));
    return GetCount() - 1;
}

const QImage& TDragImageList::GetImage(int Index) const
{
    if (Index < 0 || Index >= GetCount())
        throw ERangeError(QStringLiteral("Image index %1 out of range 0..%2").arg(Index).arg(GetCount() - 1));
    return FImages[static_cast<std::size_t>(Index)];
}

bool TDragImageList::SetDragImage(int Index, const QPoint& HotSpot)
{
    if (Index < 0 || Index >= GetCount())
        return false;
    FDragIndex = Index;
    FHotSpot = HotSpot;
    return true;
}

THVKDragObject::THVKDragObject(QWidget* Control, const QImage* Bitmap)
    : FControl(Control), FImages(CheckedImage(Bitmap).size())
{
    FImages.Add(*Bitmap);
    FImages.SetDragImage(0, QPoint(Bitmap->width() / 2, Bitmap->height() / 2));
}

void THVKDragObject::ConfigureDrag(QDrag& Drag) const
{
    Drag.setPixmap(QPixmap::fromImage(FImages.GetImage(FImages.GetDragImageIndex())));
    Drag.setHotSpot(FImages.GetHotSpot());
}

}  // namespace qx
