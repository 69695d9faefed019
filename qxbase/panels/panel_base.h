#pragma once

#include <QImage>
#include <QPoint>
#include <QPolygon>
#include <QRect>
#include <QRegion>
#include <QString>
#include <QWidget>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "qxbase/control/control_source.h"
#include "qxbase/framework/color.h"
#include "qxbase/framework/component_stream.h"
#include "qxbase/framework/export.h"
#include "qxbase/framework/shift_state.h"

class QEvent;
class QMenu;
class QPainter;
class QTimer;

namespace qx {

class TQXMeasureSourceEx;

// Chooses the look of every panel: false (the start) the classic look with window regions cut
// around the frame and the popup menu on the right button; true the themed look. Set by the host
// before panels are created.
extern QXBASE_EXPORT bool CNewDesign;

// Texts the panel unit publishes for descendants.
QXBASE_EXPORT QString SampleSourceText();    // "SampleSource"
QXBASE_EXPORT QString LockUnlockPanelText();  // "lock/unlock panel"
QXBASE_EXPORT QString CallPropertyPageText(); // "call property page..."

class TKSMSSink;

using TKSNotifyEvent = std::function<void(TKSMSSink* Sender)>;
using TKSSinkMouseDownEvent = std::function<void(TKSMSSink* Sender, TShiftState Shift)>;
using TKSMovingEvent =
    std::function<void(TKSMSSink* Sender, int NewLeft, int NewTop, int DeltaLeft, int DeltaTop)>;
using TKSPanelChangedEvent = std::function<void(TKSMSSink* Sender, bool Changed)>;

// The base of every panel placed on a worksheet page: a widget that is also a control source.
// It owns the frame with caption strip and corner ears, design-mode selection, moving and
// resizing with grid snapping, the selection blink, the popup menu, the run-time clipping of the
// frame, the "PanelEnable" and "ShowPropertypage" properties, the channel list and the
// load/paste hooks. Descendants draw inside AdjustClientRect() and override the hooks.
class QXBASE_EXPORT TKSMSSink : public QWidget, public TQXControlSource, public TStreamable {
    Q_OBJECT
    Q_PROPERTY(QString Caption READ GetCaption WRITE SetCaption)
    Q_PROPERTY(qint32 ColorCaption READ GetColorCaption WRITE SetColorCaption)
    Q_PROPERTY(qint32 Color READ GetColor WRITE SetColor)
    Q_PROPERTY(bool IsPinned READ GetIsPinned WRITE SetIsPinned)
    Q_PROPERTY(bool EnableRunTimePropPage READ GetEnableRunTimePropPage WRITE SetEnableRunTimePropPage)
    // Not stored: LoadFinished enables every panel, so a stored state would not survive a load.
    Q_PROPERTY(bool PanelEnabled READ GetPanelEnabled WRITE SetPanelEnable STORED false)
    Q_PROPERTY(bool RunTimeVisible READ GetRunTimeVisible WRITE SetRunTimeVisible)

public:
    explicit TKSMSSink(QWidget* parent = nullptr);
    ~TKSMSSink() override;

    // Class-level operations; descendants hide them with their own. The panel registries put
    // them into the class's descriptor.
    // "Unassigned description for <class name>", the name without its C++ namespace.
    static QString GetDescription(const QMetaObject& Class);
    // The bitmap resource "TSINKDEFAULTIMAGE".
    static QImage GetClassIcon();
    // Replaces `Bitmap` with the named bitmap resource of the library (":/qxbase/bitmaps/<Name>").
    // False, and `Bitmap` null, when there is no resource of that name or the name holds a "/".
    static bool GetBitmapFromResource(const QString& Name, QImage& Bitmap);
    // The run-time package files a panel needs, comma-separated.
    static QString GetDependencies();

    // Fields of the table, with their setters.
    const QString& GetCaption() const { return FCaption; }
    virtual void SetCaption(const QString& Value);
    TColor GetColorCaption() const { return FColorCaption; }
    virtual void SetColorCaption(TColor Value);
    TColor GetColor() const { return FColor; }
    void SetColor(TColor Value);
    bool GetIsPinned() const { return FIsPinned; }
    virtual void SetIsPinned(bool Value);
    bool GetEnableRunTimePropPage() const { return FEnableRunTimePropPage; }
    void SetEnableRunTimePropPage(bool Value) { FEnableRunTimePropPage = Value; }
    bool GetPanelEnabled() const { return FPanelEnabled; }
    // Stores the state only; EnableControlTree carries it to the children.
    virtual void SetPanelEnable(bool Value);
    // The persisted data source; none in the base class, whose setter ignores the value.
    virtual TQXMeasureSourceEx* GetMeasureSource() const;
    virtual void SetMeasureSource(TQXMeasureSourceEx* Value);
    bool GetDesignMode() const { return FDesignMode; }
    // Leaving design mode deselects, applies RunTimeVisible and clips to the inner part; entering
    // shows the panel (a panel without parent widget is never shown as a window of its own).
    virtual void SetDesignMode(bool Value);
    bool GetMoving() const { return FMoving; }
    bool GetIsSelected() const { return FIsSelected; }
    virtual void SetIsSelected(bool Value);
    bool GetSnapToGrid() const { return FSnapToGrid; }
    void SetSnapToGrid(bool Value) { FSnapToGrid = Value; }
    int GetGridSpacingX() const { return FGridSpacingX; }
    int GetGridSpacingY() const { return FGridSpacingY; }
    // Values of 0 or less are ignored.
    virtual void SetGridSpacingX(int Value);
    virtual void SetGridSpacingY(int Value);
    QPoint GetWindowMinSize() const { return FWindowMinSize; }
    virtual void SetWindowMinSize(const QPoint& Value);
    bool GetCutOutEnabled() const { return FCutOutEnabled; }
    // Sets the window region to the frame polygon; no region at all below 31 pixels of width.
    // Does nothing in the new look.
    virtual void SetCutOutEnabled(bool Value);
    bool GetCutOutDownEnabled() const { return FCutOutDownEnabled; }
    virtual void SetCutOutDownEnabled(bool Value);
    bool GetResizable() const { return FResizable; }
    void SetResizable(bool Value) { FResizable = Value; }
    bool GetRunTimeVisible() const { return FRunTimeVisible; }
    void SetRunTimeVisible(bool Value) { FRunTimeVisible = Value; }
    // The panel's tooltip (and those its children leave to it) shows only while this is set;
    // the panel sets it in the new look, at construction and in design mode.
    bool GetShowHint() const { return FShowHint; }
    void SetShowHint(bool Value) { FShowHint = Value; }
    // The inherited border width E of the resize-area table; 0 by default.
    int GetBorderWidth() const { return FBorderWidth; }
    void SetBorderWidth(int Value) { FBorderWidth = Value; }
    std::uint8_t GetChannelMode() const { return FChannelMode; }
    std::uint8_t GetResizeArea() const { return FResizeArea; }
    TShiftState GetDownShift() const { return FDownShift; }
    float GetBlinkLevel() const { return FBlinkLevel; }
    float GetBlinkStep() const { return FBlinkStep; }
    QTimer* GetSelectionTimer() const { return FSelectionTimer; }
    QMenu* GetPopupMenu() const { return FPopupMenu; }

    // Stores the description in the control source and sets the caption to it.
    void SetObjectDescription(const QString& Description) override;
    // The inherited properties, then "ShowPropertypage" and "PanelEnable".
    void ClearProperties() override;

    // Fires OnPanelChanged with `Changed`.
    void SetPanelChanged(bool Changed);
    // True while the panel is read from a stream or while it changes its own visibility.
    bool GetIsLoaded() const;

    // Sets left, top, width and height at once, after CanResize accepts the size; a refused size
    // changes nothing, the position included.
    void SetBounds(int Left, int Top, int Width, int Height);
    // False when the size is below WindowMinSize. Otherwise true, after clipping the window as
    // the mode needs (run time: caption and bottom strip cut away) and firing OnPanelChanged.
    virtual bool CanResize(int& NewWidth, int& NewHeight);
    virtual QRect AdjustClientRect() const;

    // Lifecycle hooks called by the host.
    virtual void InitializeAfterPaste();
    virtual void PanelAddCompleted();
    virtual void LoadFinished();
    virtual void CallSetup();
    virtual void ChannelListChanged();
    // Whether the panel showed help on `Topic` itself; the base class shows none.
    virtual bool HTMLHelpIsCalled(const QString& Topic, const QString& File);
    // Opens the panel's property page: the installed opener's (property_page_opener.h), nothing
    // while none is installed.
    virtual void ShowPropertyPage();

    // Sets the enabled state of the panel's child controls; nested panels follow through their
    // own SetPanelEnable. Does nothing unless `Control` is a panel.
    void EnableControlTree(QWidget* Control, bool Enabled);

    // Channel list; ChannelMode decides how it grows.
    // Modes above 3 are ignored.
    void SetChannelMode(std::uint8_t Mode)
    {
        if (Mode <= 3)
            FChannelMode = Mode;
    }
    void ChannelAdd(int Channel);
    void ChannelAddMultiple(const std::vector<int>& Channels);
    void ChannelClear();
    int GetChannelCount() const { return static_cast<int>(FChannelArray.size()); }
    // -1 for an index the mode does not allow or the list does not hold.
    int GetChannelArray(int Index) const;
    // Writes only an index the list holds.
    void SetChannelArray(int Index, int Value);

    // Geometry of this panel (see panel_geometry.h for the arithmetic).
    int GetPartWidth() const;
    // Fills `Points` with the frame polygon and returns the point count. Outside design mode it
    // uses the adjusted client rectangle and clears CutOutEnabled and CutOutDownEnabled.
    int GetPolyFrame(QPolygon& Points, bool ForRegion, int InsetY, int InsetX, bool Closed);
    // The raised frame in `Rect` (the client rectangle when called from Paint), `Width` pixels
    // thick, drawn as GetPolyFrame draws its polygon.
    void CutOutFrame3D(QPainter& Canvas, const QRect& Rect, TColor LightColor, TColor DarkColor,
                       int Width);
    bool IsInPopup(const QPoint& Point) const;
    bool IsInPageActivator(const QPoint& Point) const;
    int CheckResizeArea(int X, int Y) const;
    void DoResizeCursor(int X, int Y);
    void DoResize(int X, int Y);

    // Notification hooks of the owner; unset by default. Each runs in the middle of the panel's
    // own work (OnPanelChanged also inside Qt's change of geometry), so a hook that removes
    // its panel calls deleteLater(), never delete.
    TKSSinkMouseDownEvent OnSinkMouseDown;
    TKSNotifyEvent OnSelectClick;
    TKSNotifyEvent OnStartMove;
    TKSMovingEvent OnMoving;
    TKSNotifyEvent OnEndMove;
    TKSNotifyEvent OnStartResize;
    TKSNotifyEvent OnResizing;
    TKSNotifyEvent OnEndResize;
    TKSNotifyEvent OnShowPropertyPageRequest;
    TKSPanelChangedEvent OnPanelChanged;
    TKSNotifyEvent OnSinkShow;

    // Menu actions. The property page opens in design mode only; help goes to the host's HTML
    // help with the class name (without namespace) as topic; "To Atelier..." relays to the
    // repository connection, which does nothing while no repository host is installed.
    void DoPropertyButtonItem();
    void DoToRepositoryItem();
    void DoHelpButtonItem();
    void DoDdlClickOnDesigneTime();
    // One step of the selection blink; the timer calls it every 100 ms. A widget can only be
    // drawn on from its paint event, so the step moves the blink level and schedules a repaint
    // of the frame line, which paintEvent draws over Paint while the panel is selected.
    virtual void DoOnSelectionTimer();

protected:
    // The VCL-style hooks the Qt events are routed to; coordinates are client pixels.
    virtual void Paint(QPainter& Canvas);
    virtual void MouseDown(TMouseButton Button, TShiftState Shift, int X, int Y);
    virtual void MouseMove(TShiftState Shift, int X, int Y);
    virtual void MouseUp(TMouseButton Button, TShiftState Shift, int X, int Y);
    virtual void Resize();
    virtual void DoShow();
    // Draws the selection frame in the current blink colours.
    void DrawSelectionBlink(QPainter& Canvas);

    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

    QString FCaption;
    TColor FColorCaption = clWhite;
    TColor FColor = clBtnFace;
    bool FIsPinned = false;
    bool FEnableRunTimePropPage = true;
    bool FPanelEnabled = true;
    bool FDesignMode = false;
    bool FMoving = false;
    bool FIsSelected = false;
    bool FSnapToGrid = false;
    int FGridSpacingX = 8;
    int FGridSpacingY = 8;
    QPoint FWindowMinSize{30, 30};
    bool FCutOutEnabled = true;
    bool FCutOutDownEnabled = false;
    bool FResizable = true;
    bool FRunTimeVisible = true;
    int FBorderWidth = 0;
    std::uint8_t FChannelMode = 0;
    std::vector<int> FChannelArray;
    std::uint8_t FResizeArea = 0;
    TShiftState FDownShift;
    QPoint FDownClient;
    QPoint FDownScreen;
    int FDownLeft = 0;
    int FDownTop = 0;
    int FDownWidth = 0;
    int FDownHeight = 0;
    float FBlinkLevel = 1.0F;
    float FBlinkStep = 0.2F;
    QTimer* FSelectionTimer = nullptr;  // child of the panel
    QMenu* FPopupMenu = nullptr;        // child of the panel
    bool FVisibilityGuard = false;
    bool FShowHint = false;

private:
    int PolyFrameIn(const QRect& Client, QPolygon& Points, bool ForRegion, int InsetY, int InsetX,
                    bool Closed);
    void PaintClassic(QPainter& Canvas);
    void PaintThemed(QPainter& Canvas);
    void MoveStep(int X, int Y);
    void ApplyVisibility(bool Visible);
    void OpenPropertyPage();
    void RepaintCaption();
    void UpdateContentsMargins();
    QRegion BlinkRegion();
    HRESULT OnShowPropertypage(TQXPropertyItem* Handle, bool Get, bool Enum, Variant& Value);
    HRESULT OnPanelEnable(TQXPropertyItem* Handle, bool Get, bool Enum, Variant& Value);
};

}  // namespace qx
