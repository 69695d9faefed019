#include "qxbase/framework/color.h"

#include <array>

namespace qx {
namespace {

// The classic desktop palette, indexed like the system colour constants.
constexpr std::array<TColor, SystemColorCount> kClassicPalette = {
    0xC8C8C8, 0xA56E3A, 0xD1B499, 0xDBCDBF, 0xF0F0F0, 0xFFFFFF, 0x646464, 0x000000,
    0x000000, 0x000000, 0xB4B4B4, 0xFCF7F4, 0xABABAB, 0xFF9933, 0xFFFFFF, 0xC0C0C0,
    0x808080, 0x808080, 0x000000, 0x000000, 0xFFFFFF, 0x404040, 0xE3E3E3, 0x000000,
    0xE1FFFF, 0x000000, 0xCC6600, 0xEAD1B9, 0xF2E4D7, 0xFF9933, 0xF0F0F0,
};

std::array<TColor, SystemColorCount>& Palette()
{
    static std::array<TColor, SystemColorCount> palette = kClassicPalette;
    return palette;
}

bool gradientCaptions = true;

}  // namespace

TColor ColorToRGB(TColor color)
{
    if ((color & clSystemColor) == clSystemColor) {
        const int index = color & 0xFF;
        return index < SystemColorCount ? Palette()[static_cast<std::size_t>(index)] : clBlack;
    }
    if (color == clNone || color == clDefault) return clBlack;
    return color & 0x00FFFFFF;
}

QColor ColorToQColor(TColor color)
{
    const TColor rgb = ColorToRGB(color);
    return QColor(rgb & 0xFF, (rgb >> 8) & 0xFF, (rgb >> 16) & 0xFF);
}

TColor QColorToColor(const QColor& color)
{
    return static_cast<TColor>(color.red() | (color.green() << 8) | (color.blue() << 16));
}

bool SetSystemColor(int index, TColor rgb)
{
    if (index < 0 || index >= SystemColorCount) return false;
    Palette()[static_cast<std::size_t>(index)] = rgb & 0x00FFFFFF;
    return true;
}

void RestoreSystemColors() { Palette() = kClassicPalette; }

bool GetGradientCaptions() { return gradientCaptions; }

void SetGradientCaptions(bool Value) { gradientCaptions = Value; }

}  // namespace qx
