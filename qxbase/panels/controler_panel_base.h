#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <QWidget>

#include "qxbase/control/control_source.h"
#include "qxbase/framework/color.h"
#include "qxbase/framework/component_stream.h"
#include "qxbase/framework/export.h"
#include "qxbase/framework/shift_state.h"

class QPainter;
class QTimer;

namespace qx {

// The grabber: the 8 x 8 square in the bottom-right corner of a panel of `size`, edges included.
QXBASE_EXPORT bool IsInGrabberArea(const QPoint& point, const QSize& size);
// The pinner: (R-16, T+2)-(R-2, T+11) of the client rectangle, right and bottom excluded.
QXBASE_EXPORT bool IsInPinnerArea(const QPoint& point, const QRect& client);

// The smallest size a controller panel accepts, so the pinner and the grabber stay apart.
inline constexpr QSize ControlerPanelMinSize{20, 20};

// A lighter panel for controls (switches, sequencers): no frame or caption strip, but a
// grabber to resize it and a pinner to pin it. In design mode it is selected, moved, resized,
// snapped and blinks as the full panels do.
class QXBASE_EXPORT TKSControlerPanelBase : public QWidget, public TQXControlSource, public TStreamable {
    Q_OBJECT
    Q_PROPERTY(QString Caption READ GetCaption WRITE SetCaption)
    Q_PROPERTY(qint32 Color READ GetColor WRITE SetColor)
    Q_PROPERTY(bool IsPinned READ GetIsPinned WRITE SetIsPinned)
    Q_PROPERTY(bool EnableRunTimePropPage READ GetEnableRunTimePropPage WRITE SetEnableRunTimePropPage)
    Q_PROPERTY(QString Version READ GetVersion WRITE SetVersion)

public:
    explicit TKSControlerPanelBase(QWidget* parent = nullptr);
    ~TKSControlerPanelBase() override;

    // Class-level operations, as the full panels have them.
    static QString GetDescription(const QMetaObject& Class);
    static QImage GetClassIcon();
    static QString GetDependencies();

    const QString& GetCaption() const { return FCaption; }
    virtual void SetCaption(const QString& Value);
    TColor GetColor() const { return FColor; }
    virtual void SetColor(TColor Value);
    bool GetIsPinned() const { return FIsPinned; }
    virtual void SetIsPinned(bool Value);
    bool GetEnableRunTimePropPage() const { return FEnableRunTimePropPage; }
    virtual void SetEnableRunTimePropPage(bool Value);
    // A version text stored for the host.
    const QString& GetVersion() const { return FVersion; }
    void SetVersion(const QString& Value) { FVersion = Value; }
    bool GetDesignMode() const { return FDesignMode; }
    // Leaving design mode deselects.
    virtual void SetDesignMode(bool Value);
    bool GetIsSelected() const { return FIsSelected; }
    // Restarts the blink; the timer runs exactly while selected.
    virtual void SetIsSelected(bool Value);
    bool GetSnapToGrid() const { return FSnapToGrid; }
    void SetSnapToGrid(bool Value) { FSnapToGrid = Value; }
    int GetGridSpacingX() const { return FGridSpacingX; }
    int GetGridSpacingY() const { return FGridSpacingY; }
    // Values of 0 or less are ignored.
    virtual void SetGridSpacingX(int Value);
    virtual void SetGridSpacingY(int Value);
    bool GetMoving() const { return FMoving; }
    bool GetResizing() const { return FResizing; }
    float GetBlinkLevel() const { return FBlinkLevel; }
    float GetBlinkStep() const { return FBlinkStep; }
    QTimer* GetSelectionTimer() const { return FSelectionTimer; }

    bool IsInGrabber(const QPoint& Point) const;
    bool IsInPinner(const QPoint& Point) const;

    // Sets left, top, width and height at once; a size CanResize refuses changes nothing, the
    // position included.
    void SetBounds(int Left, int Top, int Width, int Height);
    // Refuses sizes below ControlerPanelMinSize.
    virtual bool CanResize(int& NewWidth, int& NewHeight);
    // Hook of descendants that set themselves up; nothing in the base class.
    virtual void CallSetup();
    // One step of the selection blink; the timer calls it every 100 ms.
    virtual void DoOnSelectionTimer();

protected:
    // Fills the panel with Color; in design mode adds the caption, a frame, the pinner (filled
    // when pinned) and the grabber.
    virtual void Paint(QPainter& Canvas);
    // In design mode: a left click selects (Ctrl toggles); in the pinner it toggles IsPinned,
    // in the grabber it starts a resize, elsewhere a move.
    virtual void MouseDown(TMouseButton Button, TShiftState Shift, int X, int Y);
    virtual void MouseMove(TShiftState Shift, int X, int Y);
    virtual void MouseUp(TMouseButton Button, TShiftState Shift, int X, int Y);

    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void DragTo(int X, int Y);
    void DrawSelectionBlink(QPainter& Canvas) const;

    QString FCaption;
    TColor FColor = clBtnFace;
    bool FIsPinned = false;
    bool FEnableRunTimePropPage = true;
    QString FVersion;
    bool FDesignMode = false;
    bool FIsSelected = false;
    bool FSnapToGrid = false;
    int FGridSpacingX = 8;
    int FGridSpacingY = 8;
    bool FMoving = false;
    bool FResizing = false;
    QPoint FDownScreen;
    QRect FDownBounds;
    float FBlinkLevel = 1.0F;
    float FBlinkStep = 0.2F;
    QTimer* FSelectionTimer = nullptr;  // child of the panel
};

}  // namespace qx
