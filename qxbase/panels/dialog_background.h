#pragma once

#include <QPoint>
#include <QString>
#include <QWidget>

#include "qxbase/framework/export.h"

class QDialog;
class QKeyEvent;
class QToolButton;

namespace qx {

// The look of the library's small borderless dialogs: a frame 2 pixels wide, a caption band with
// the caption and a close icon (no other window buttons), and a client area for the dialog's
// controls. Dragging the caption band moves the window; the close icon emits closeClicked.
class QXBASE_EXPORT THVKDialogBackground : public QWidget {
    Q_OBJECT

public:
    explicit THVKDialogBackground(QWidget* parent = nullptr);
    ~THVKDialogBackground() override;

    QString GetCaption() const { return FCaption; }
    void SetCaption(const QString& Value);
    // The widget the dialog lays its controls into.
    QWidget* GetClientArea() const { return FClientArea; }
    QToolButton* GetCloseButton() const { return FCloseButton; }

    static constexpr int BorderWidth = 2;
    static constexpr int CaptionHeight = 20;

signals:
    void closeClicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QString FCaption;
    QWidget* FClientArea = nullptr;
    QToolButton* FCloseButton = nullptr;
    bool FDragging = false;
    QPoint FDragOffset;
};

// Moves `Dialog` so that it is centred on its owner's window, or on its screen when it has no
// owner.
QXBASE_EXPORT void CenterOnOwner(QWidget* Dialog);

// Fills `Dialog` with a background captioned `Caption`, edge to edge, whose close icon rejects
// the dialog (its own reject, when it overrides it). Returns the background, a child of Dialog.
QXBASE_EXPORT THVKDialogBackground* InstallDialogBackground(QDialog& Dialog, const QString& Caption);

// Enter closes `Dialog` with `OkResult`, Escape rejects it; true when the key was one of them.
QXBASE_EXPORT bool CloseOnEnterOrEscape(QDialog& Dialog, const QKeyEvent& Event, int OkResult);

}  // namespace qx
