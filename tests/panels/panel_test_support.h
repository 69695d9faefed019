#pragma once

#include <QColor>
#include <QImage>
#include <gtest/gtest.h>
#include <initializer_list>

#include "qxbase/panels/panel_base.h"

namespace qxtest {

// Counts the property pages a panel was asked to show.
class TestPanel : public qx::TKSMSSink {
public:
    using TKSMSSink::TKSMSSink;

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
