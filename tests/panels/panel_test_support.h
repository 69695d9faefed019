#pragma once

#include <QColor>
#include <QImage>
#include <gtest/gtest.h>
#include <initializer_list>

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

struct Pixel {
    int x;
    int y;
    QRgb rgb;
};

inline void ExpectPixels(const QImage& image, std::initializer_list<Pixel> pixels)
{
    for (const Pixel& p : pixels)
        EXPECT_EQ(image.pixel(p.x, p.y), p.rgb) << "at " << p.x << "," << p.y;
}

}  // namespace qxtest
