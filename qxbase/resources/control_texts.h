#pragma once

#include "qxbase/framework/resource_text.h"

namespace qx::res {

// Descriptions of the system events every control source carries.
inline constexpr ResourceText _rsSysDebug = QX_RES("Debug messages");
inline constexpr ResourceText _rsSysPropertyUpdated = QX_RES("Control property updated");
inline constexpr ResourceText _rsSysControlSourceRemoved = QX_RES("Control source removed");
inline constexpr ResourceText _rsSysControlPropertiesChanged = QX_RES("Control properties changed");

}  // namespace qx::res
