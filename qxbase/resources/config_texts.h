#pragma once

#include "qxbase/framework/resource_text.h"

// Texts of the channel configuration shown to the user.
namespace qx::res {

// Headings of the data source and channel picker.
inline constexpr ResourceText _rsMeasureSource = QX_RES("Data sources:");
inline constexpr ResourceText _rsChannels = QX_RES("Channels:");

}  // namespace qx::res
