#pragma once

#include <QColor>
#include <QImage>

#include "qxbase/panels/panel_base.h"

namespace qxtest {

// Reaches the protected state of a panel and counts the property pages it was asked to show.
class TestPanel : public qx::TKSMSSink {
public:
    using TKSMSSink::TKSMSSink;
    using TKSMSSink::FBlinkLevel;
    using TKSMSSink::FBlinkStep;
    using TKSMSSink::FVisibilityGuard;

    void ShowPropertyPage() override { ++PagesShown; }

    int PagesShown = 0;
};

inline QRgb Rgb(qx::TColor color) { return qx::ColorToQColor(color).rgb(); }

inline QRgb PixelAt(const QImage& image, int x, int y) { return image.pixel(x, y); }

}  // namespace qxtest
