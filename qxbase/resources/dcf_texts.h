#pragma once

#include "qxbase/framework/resource_text.h"

namespace qx::res {

// Asked before "Use name with overwrite warning" replaces a data file; %1 is the file's path.
inline constexpr ResourceText _rsDcfOverwriteQuestion =
    QX_RES("The file \"%1\" already exists. Do you want to replace it?");
inline constexpr ResourceText _rsDcfOverwriteCaption = QX_RES("Save data file");

}  // namespace qx::res
