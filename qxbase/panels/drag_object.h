#pragma once

#include <QImage>
#include <QPixmap>
#include <QPoint>
#include <QPointer>
#include <QSize>
#include <Qt>
#include <vector>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/export.h"

class QDrag;
class QWidget;

namespace qx {

// A drag object made without an image.
class QXBASE_EXPORT EDragObjectError : public Exception {
public:
    using Exception::Exception;
};

// Images of one size for dragging; one of them is the drag image, held at a hotspot.
class QXBASE_EXPORT TDragImageList {
public:
    explicit TDragImageList(const QSize& Size) : FSize(Size) {}

    const QSize& GetSize() const { return FSize; }
    int GetCount() const { return static_cast<int>(FImages.size()); }
    // Adds a copy, scaled to the list's size when it differs; returns its index.
    int Add(const QImage& Image);
    // Raises ERangeError for an index the list does not hold.
    const QImage& GetImage(int Index) const;
    // Chooses the drag image and the point of it under the mouse; false, and nothing changed,
    // for an index the list does not hold.
    bool SetDragImage(int Index, const QPoint& HotSpot);
    // -1 until a drag image is chosen.
    int GetDragImageIndex() const { return FDragIndex; }
    const QPoint& GetHotSpot() const { return FHotSpot; }

private:
    QSize FSize;
    std::vector<QImage> FImages;
    int FDragIndex = -1;
    QPoint FHotSpot;
};

// What a palette hands to a drag when a panel class is dragged from it: the dragged control and
// the class's image. The image is held at its centre, so a drop places the panel around the
// mouse.
class QXBASE_EXPORT THVKDragObject {
public:
    // Raises EDragObjectError "Unassigned image" when `Bitmap` is null or holds no picture.
    THVKDragObject(QWidget* Control, const QImage* Bitmap);

    // The dragged control; null once it is gone.
    QWidget* GetControl() const { return FControl; }
    TDragImageList& GetDragImages() { return FImages; }
    const TDragImageList& GetDragImages() const { return FImages; }
    Qt::CursorShape GetDragCursor() const { return FDragCursor; }
    // Gives `Drag` the drag image and its hotspot.
    void ConfigureDrag(QDrag& Drag) const;

private:
    QPointer<QWidget> FControl;
    TDragImageList FImages;
    Qt::CursorShape FDragCursor = Qt::ArrowCursor;
};

}  // namespace qx
