#pragma once

#include <QColor>
#include <cstdint>

#include "qxbase/framework/export.h"

namespace qx {

// A colour as the system stores it: 0x00BBGGRR, or a system colour 0xFF0000nn that resolves
// through the system colour table (index nn, the classic desktop palette unless the host
// overrides it).
using TColor = std::int32_t;

inline constexpr TColor clSystemColor = static_cast<TColor>(0xFF000000u);
inline constexpr TColor clNone = 0x1FFFFFFF;
inline constexpr TColor clDefault = 0x20000000;

inline constexpr TColor clBlack = 0x000000;
inline constexpr TColor clMaroon = 0x000080;
inline constexpr TColor clGreen = 0x008000;
inline constexpr TColor clOlive = 0x008080;
inline constexpr TColor clNavy = 0x800000;
inline constexpr TColor clPurple = 0x800080;
inline constexpr TColor clTeal = 0x808000;
inline constexpr TColor clGray = 0x808080;
inline constexpr TColor clSilver = 0xC0C0C0;
inline constexpr TColor clRed = 0x0000FF;
inline constexpr TColor clLime = 0x00FF00;
inline constexpr TColor clYellow = 0x00FFFF;
inline constexpr TColor clBlue = 0xFF0000;
inline constexpr TColor clFuchsia = 0xFF00FF;
inline constexpr TColor clAqua = 0xFFFF00;
inline constexpr TColor clWhite = 0xFFFFFF;

// System colours by their index in the table.
inline constexpr TColor clScrollBar = clSystemColor | 0;
inline constexpr TColor clBackground = clSystemColor | 1;
inline constexpr TColor clActiveCaption = clSystemColor | 2;
inline constexpr TColor clInactiveCaption = clSystemColor | 3;
inline constexpr TColor clMenu = clSystemColor | 4;
inline constexpr TColor clWindow = clSystemColor | 5;
inline constexpr TColor clWindowFrame = clSystemColor | 6;
inline constexpr TColor clMenuText = clSystemColor | 7;
inline constexpr TColor clWindowText = clSystemColor | 8;
inline constexpr TColor clCaptionText = clSystemColor | 9;
inline constexpr TColor clActiveBorder = clSystemColor | 10;
inline constexpr TColor clInactiveBorder = clSystemColor | 11;
inline constexpr TColor clAppWorkSpace = clSystemColor | 12;
inline constexpr TColor clHighlight = clSystemColor | 13;
inline constexpr TColor clHighlightText = clSystemColor | 14;
inline constexpr TColor clBtnFace = clSystemColor | 15;
inline constexpr TColor clBtnShadow = clSystemColor | 16;
inline constexpr TColor clGrayText = clSystemColor | 17;
inline constexpr TColor clBtnText = clSystemColor | 18;
inline constexpr TColor clInactiveCaptionText = clSystemColor | 19;
inline constexpr TColor clBtnHighlight = clSystemColor | 20;
inline constexpr TColor cl3DDkShadow = clSystemColor | 21;
inline constexpr TColor cl3DLight = clSystemColor | 22;
inline constexpr TColor clInfoText = clSystemColor | 23;
inline constexpr TColor clInfoBk = clSystemColor | 24;
inline constexpr TColor clGradientActiveCaption = clSystemColor | 27;
inline constexpr TColor clGradientInactiveCaption = clSystemColor | 28;

inline constexpr int SystemColorCount = 31;

// The 0x00BBGGRR value of a colour: system colours resolve through the table; clNone and
// clDefault resolve to black, as an unresolvable colour would.
QXBASE_EXPORT TColor ColorToRGB(TColor color);
QXBASE_EXPORT QColor ColorToQColor(TColor color);
QXBASE_EXPORT TColor QColorToColor(const QColor& color);

// Replaces one entry of the system colour table (index 0..SystemColorCount-1); returns false
// for an index outside the table. RestoreSystemColors brings back the classic palette.
QXBASE_EXPORT bool SetSystemColor(int index, TColor rgb);
QXBASE_EXPORT void RestoreSystemColors();

// Whether the desktop draws window captions as a gradient from the gradient caption colour to
// the caption colour. On by default; a host mirroring a desktop without gradients turns it off.
// The classic panel caption follows it (plain caption colour and border-coloured frame when off).
QXBASE_EXPORT bool GetGradientCaptions();
QXBASE_EXPORT void SetGradientCaptions(bool Value);

}  // namespace qx
