#pragma once

#include <cstdint>

// The enumerations of the chart panels' common properties, in the order of their texts.
namespace qx {

// "Hide", "Top", "Bottom", "Left", "Right"
enum TKSCursorPanelPosition : std::uint8_t { cppHide, cppTop, cppBottom, cppLeft, cppRight };

// "Positive", "Negative", "Off"
enum TKSTriggerType : std::uint8_t { kttPositive, kttNegative, kttOff };

// "Show Dialog": the save-file dialog, the file name as its default, nothing saved on cancel.
// "Create name": a new file beside the file name, stamped with date and time, never overwriting.
// "Use name": the file name, overwriting without asking.
// "Use name with overwrite warning": the file name, asking before an existing file is replaced.
enum THVKSaveMethod : std::uint8_t { smShowDialog, smCreateName, smUseName, smUseNameWithOverwriteWarning };

}  // namespace qx
