#pragma once

#include "qxbase/framework/resource_text.h"

namespace qx::res {

// What property dialogs put before an object's name in their caption.
inline constexpr ResourceText _rsPropertyCaptionHead = QX_RES("Properties of ");

}  // namespace qx::res
