#pragma once

#include <Qt>
#include <cstdint>

#include "qxbase/framework/set.h"

namespace qx {

// Keys and mouse buttons held during a mouse or key event.
enum TShiftStateFlag : std::uint8_t { ssShift, ssAlt, ssCtrl, ssLeft, ssRight, ssMiddle, ssDouble };
using TShiftState = Set<TShiftStateFlag>;

enum TMouseButton : std::uint8_t { mbLeft, mbRight, mbMiddle };

inline TShiftState ShiftStateFromQt(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers)
{
    TShiftState state;
    if (modifiers & Qt::ShiftModifier)
        state.Include(ssShift);
    if (modifiers & Qt::AltModifier)
        state.Include(ssAlt);
    if (modifiers & Qt::ControlModifier)
        state.Include(ssCtrl);
    if (buttons & Qt::LeftButton)
        state.Include(ssLeft);
    if (buttons & Qt::RightButton)
        state.Include(ssRight);
    if (buttons & Qt::MiddleButton)
        state.Include(ssMiddle);
    return state;
}

}  // namespace qx
