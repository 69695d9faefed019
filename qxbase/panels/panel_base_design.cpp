// Design mode, selection, the frame polygon and the window regions cut from it.
#include <QShowEvent>
#include <QTimer>
#include <algorithm>

#include "qxbase/panels/panel_base.h"
#include "qxbase/panels/panel_geometry.h"

namespace qx {
namespace {

// Sets a flag for the life of a scope and puts the old value back, also when a handler raises.
class TFlagScope {
public:
    explicit TFlagScope(bool& Flag) : FFlag(Flag), FOld(Flag) { FFlag = true; }
    ~TFlagScope() { FFlag = FOld; }
    TFlagScope(const TFlagScope&) = delete;
    TFlagScope& operator=(const TFlagScope&) = delete;

private:
    bool& FFlag;
    bool FOld;
};

// The rectangle from (left, top) to (right, bottom), right and bottom excluded.
QRect EdgeRect(int left, int top, int right, int bottom) { return QRect(left, top, right - left, bottom - top); }

}  // namespace

QRect TKSMSSink::AdjustClientRect() const { return AdjustedClientRect(rect(), FDesignMode); }

void TKSMSSink::UpdateContentsMargins()
{
    // Layouts of descendants place their children inside the adjusted client rectangle.
    const QRect inner = AdjustClientRect();
    setContentsMargins(std::max(0, inner.x()), std::max(0, inner.y()),
                       std::max(0, width() - inner.x() - inner.width()),
                       std::max(0, height() - inner.y() - inner.height()));
}

int TKSMSSink::GetPartWidth() const { return qx::GetPartWidth(width()); }

int TKSMSSink::GetPolyFrame(QPolygon& Points, bool ForRegion, int InsetY, int InsetX, bool Closed)
{
    return PolyFrameIn(rect(), Points, ForRegion, InsetY, InsetX, Closed);
}

int TKSMSSink::PolyFrameIn(const QRect& Client, QPolygon& Points, bool ForRegion, int InsetY, int InsetX,
                           bool Closed)
{
    QRect frame = Client;
    if (!FDesignMode) {
        frame = AdjustClientRect().translated(Client.topLeft());
        FCutOutEnabled = false;
        FCutOutDownEnabled = false;
    }
    Points = PolyFramePoints(frame, GetPartWidth(), FCutOutEnabled, FCutOutDownEnabled, ForRegion, InsetY,
                             InsetX, Closed);
    return static_cast<int>(Points.size());
}

void TKSMSSink::SetCutOutEnabled(bool Value)
{
    if (CNewDesign)
        return;
    FCutOutEnabled = Value;
    if (width() < 31) {
        FCutOutDownEnabled = false;
        clearMask();
        return;
    }
    QPolygon points;
    GetPolyFrame(points, true, 0, 0, false);
    setMask(QRegion(points, Qt::WindingFill));
    update();
}

void TKSMSSink::SetCutOutDownEnabled(bool Value)
{
    FCutOutDownEnabled = Value;
    if (CNewDesign)
        SetCutOutEnabled(FCutOutEnabled);
}

void TKSMSSink::ApplyVisibility(bool Visible)
{
    const TFlagScope guard(FVisibilityGuard);
    // A panel shows on a page; without one, showing it would open a window of its own.
    if (Visible && parentWidget() == nullptr)
        return;
    setVisible(Visible);
}

void TKSMSSink::SetDesignMode(bool Value)
{
    FDesignMode = Value;
    UpdateContentsMargins();
    const int w = width();
    const int h = height();
    if (!Value) {
        const QRegion region(EdgeRect(1, 12, w - 1, h - 11));
        SetIsSelected(false);
        ApplyVisibility(FRunTimeVisible);
        setMask(region);
    } else if (CNewDesign) {
        const QRegion region(EdgeRect(1, 12, w - 1, h - 10));
        SetIsSelected(false);
        ApplyVisibility(true);
        setMask(region);
    } else {
        ApplyVisibility(true);
        SetCutOutDownEnabled(true);
        SetCutOutEnabled(false);
    }
    FShowHint = CNewDesign && Value;
    EnableControlTree(this, FPanelEnabled);
    update();
}

void TKSMSSink::SetIsSelected(bool Value)
{
    if (Value == FIsSelected)
        return;
    FIsSelected = Value;
    FBlinkLevel = 1.0F;
    FBlinkStep = 0.2F;
    if (FSelectionTimer != nullptr) {
        if (Value)
            FSelectionTimer->start();
        else
            FSelectionTimer->stop();
    }
    update();
    if (!Value) {
        QWidget* parent = parentWidget();
        if (parent != nullptr && parent->isVisible())
            parent->update(geometry());
    }
}

void TKSMSSink::DoShow()
{
    if (OnSinkShow)
        OnSinkShow(this);
    SetCutOutDownEnabled(FDesignMode);
}

void TKSMSSink::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    DoShow();
}

void TKSMSSink::DoOnSelectionTimer()
{
    if (!FDesignMode || !FIsSelected)
        return;
    FBlinkLevel -= FBlinkStep;
    if (!(FBlinkLevel > 0.1F && FBlinkLevel < 1.0F))
        FBlinkStep = -FBlinkStep;
    update(BlinkRegion());
}

QRegion TKSMSSink::BlinkRegion()
{
    QPolygon points;
    GetPolyFrame(points, false, 0, 0, true);
    QRegion region;
    for (int i = 0; i + 1 < points.size(); ++i)
        region += QRect(points[i], points[i + 1]).normalized();
    return region;
}

}  // namespace qx
