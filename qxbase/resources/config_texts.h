#pragma once

#include "qxbase/framework/resource_text.h"

// Texts of the channel configuration shown to the user.
namespace qx::res {

// Headings of the data source and channel picker.
inline constexpr ResourceText _rsMeasureSource = QX_RES("Data sources:");
inline constexpr ResourceText _rsChannels = QX_RES("Channels:");

// Buttons of the small configuration dialogs.
inline constexpr ResourceText _rsOkButton = QX_RES("Ok");
inline constexpr ResourceText _rsCancelButton = QX_RES("Cancel");
inline constexpr ResourceText _rsYesButton = QX_RES("Yes");
inline constexpr ResourceText _rsNoButton = QX_RES("No");

// A/D extended property page. The second "ExDiv" (the DMA usage label) and "freqency" are the
// page's own texts; callers set what they need shown.
inline constexpr ResourceText _rsADExtendedFormCaption = QX_RES("ADExtendedPropertyPage");
inline constexpr ResourceText _rsADExtendedPanelCaption = QX_RES("A/D extended");
inline constexpr ResourceText _rsADExtendedShownCaption = QX_RES("A/D extended properties");
inline constexpr ResourceText _rsADExternalClockDiv = QX_RES("ExDiv");
inline constexpr ResourceText _rsADResolution = QX_RES("Resolution");
inline constexpr ResourceText _rsADEncoding = QX_RES("Encoding");
inline constexpr ResourceText _rsADDMAUsage = QX_RES("ExDiv");
inline constexpr ResourceText _rsADBufferCount = QX_RES("BufferCount:");
inline constexpr ResourceText _rsADClockSource = QX_RES("ClockSource");
inline constexpr ResourceText _rsADCutOffFilter = QX_RES("Cut off freqency:");
inline constexpr ResourceText _rsADTriggerMode = QX_RES("Trigger mode:");
inline constexpr ResourceText _rsADTriggerScan = QX_RES("Triggered scan mode:");
inline constexpr ResourceText _rsADReTrigger = QX_RES("Re-trigger mode:");
inline constexpr ResourceText _rsADReTriggerFreq = QX_RES("Re-Trigger Frequency");
inline constexpr ResourceText _rsADMultiscanCount = QX_RES("Multiscan count:");
inline constexpr ResourceText _rsADDummy = QX_RES("dummy");

// What the simulated converter offers on the page.
inline constexpr ResourceText _rsADResolutionIdeal = QX_RES("Ideal");
inline constexpr ResourceText _rsADResolutionBits = QX_RES("%1 bit");
inline constexpr ResourceText _rsADCutOffOff = QX_RES("Off");
inline constexpr ResourceText _rsADCutOffHz = QX_RES("%1 Hz");
inline constexpr ResourceText _rsADDMAUsageLabel = QX_RES("DMA usage:");

// PAD module search result.
inline constexpr ResourceText _rsPadSearchResultCaption = QX_RES("PAD module search result");

// Line recorder confirmation.
inline constexpr ResourceText _rsConfirm = QX_RES("Confirm");
inline constexpr ResourceText _rsDefaultDeleteDialog = QX_RES("Default Delete Dialog");

}  // namespace qx::res
