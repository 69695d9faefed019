#pragma once

#include "qxbase/framework/resource_text.h"

// Texts the chart panels share: enumerations and descriptions of their common properties,
// actions, messages, the cursor read-out, the toolbar hints and the axis and visibility dialogs.
namespace qx::res {

// Legend position.
inline constexpr ResourceText _rsLegendHorizontal = QX_RES("Horizontal");
inline constexpr ResourceText _rsLegendVertical = QX_RES("Vertical");
// THVKDisplayStyle.
inline constexpr ResourceText _rsDisplayStyleOneBand = QX_RES("One band");
inline constexpr ResourceText _rsDisplayStyleMultipleBands = QX_RES("Multiple bands");
// Cursor panel position.
inline constexpr ResourceText _rsCursorPanelHide = QX_RES("Hide");
inline constexpr ResourceText _rsCursorPanelTop = QX_RES("Top");
inline constexpr ResourceText _rsCursorPanelBottom = QX_RES("Bottom");
inline constexpr ResourceText _rsCursorPanelLeft = QX_RES("Left");
inline constexpr ResourceText _rsCursorPanelRight = QX_RES("Right");
// Trigger type.
inline constexpr ResourceText _rsTriggerPositive = QX_RES("Positive");
inline constexpr ResourceText _rsTriggerNegative = QX_RES("Negative");
inline constexpr ResourceText _rsTriggerOff = QX_RES("Off");
// Y-axis and x-axis scale.
inline constexpr ResourceText _rsAxisScaleLinear = QX_RES("linear");
inline constexpr ResourceText _rsAxisScaleLogarithmic = QX_RES("logarithmic");
inline constexpr ResourceText _rsAxisScaleDB = QX_RES("dB");
// THVKSaveMethod.
inline constexpr ResourceText _rsSaveMethodShowDialog = QX_RES("Show Dialog");
inline constexpr ResourceText _rsSaveMethodCreateName = QX_RES("Create name");
inline constexpr ResourceText _rsSaveMethodUseName = QX_RES("Use name");
inline constexpr ResourceText _rsSaveMethodUseNameWarning = QX_RES("Use name with overwrite warning");

// Descriptions of the common properties.
inline constexpr ResourceText _rsPropLegendPosition = QX_RES("Legend position");
inline constexpr ResourceText _rsPropDisplayStyle = QX_RES("Display style");
inline constexpr ResourceText _rsPropXAxisScale = QX_RES("X-axis scale");
inline constexpr ResourceText _rsPropYAxisScale = QX_RES("Y-axis scale");
inline constexpr ResourceText _rsPropAutoScale = QX_RES("Auto scale");
inline constexpr ResourceText _rsPropBandColor = QX_RES("Band color");
inline constexpr ResourceText _rsPropBackgroundColor = QX_RES("Background color");
inline constexpr ResourceText _rsPropCursorPanelPosition = QX_RES("Cursor panel position");
inline constexpr ResourceText _rsPropShowCursor = QX_RES("Show cursor");
inline constexpr ResourceText _rsPropTriggerType = QX_RES("Trigger type");
inline constexpr ResourceText _rsPropTriggerBufferSize = QX_RES("Trigger buffer size");
inline constexpr ResourceText _rsPropTriggerLevel = QX_RES("Trigger level");
inline constexpr ResourceText _rsPropTriggerSingleShot = QX_RES("Trigger single shot");
inline constexpr ResourceText _rsPropTriggerChannel = QX_RES("Trigger channel");
inline constexpr ResourceText _rsPropPreTrigger = QX_RES("Pre-trigger");
inline constexpr ResourceText _rsPropSaveMethod = QX_RES("Save method");
inline constexpr ResourceText _rsPropFileName = QX_RES("File name");
inline constexpr ResourceText _rsPropShowTriggerState = QX_RES("Show trigger state");
inline constexpr ResourceText _rsPropUseEngineeringUnits = QX_RES("Use engineering units");
inline constexpr ResourceText _rsPropFFTBufferSize = QX_RES("FFT buffer size");
inline constexpr ResourceText _rsPropCursorDecimals = QX_RES("Cursor decimals");
inline constexpr ResourceText _rsPropXAxisMin = QX_RES("X-Axis min value");
inline constexpr ResourceText _rsPropXAxisMax = QX_RES("X-Axis max value");
inline constexpr ResourceText _rsPropYAxisOffset = QX_RES("Y-Axis offset value");
inline constexpr ResourceText _rsPropYAxisScaleValue = QX_RES("Y-Axis scale value");
inline constexpr ResourceText _rsPropYAxisVisible = QX_RES("Y-Axis visible");
inline constexpr ResourceText _rsPropYAxisOffsetActiveBand = QX_RES("Y-Axis offset value active band");
inline constexpr ResourceText _rsPropYAxisScaleActiveBand = QX_RES("Y-Axis scale value active band");
inline constexpr ResourceText _rsPropChangeXAxis = QX_RES("Change X-Axis");
inline constexpr ResourceText _rsPropResetXAxis = QX_RES("Reset X-Axis");
inline constexpr ResourceText _rsPropActiveBand = QX_RES("Active band");

// Actions.
inline constexpr ResourceText _rsActionRearmTrigger = QX_RES("Rearm trigger");
inline constexpr ResourceText _rsActionCaptureScale = QX_RES("Capture scale");
inline constexpr ResourceText _rsActionResetDisplay = QX_RES("Reset display");
inline constexpr ResourceText _rsActionSaveBuffer = QX_RES("Save buffer");

// Messages.
inline constexpr ResourceText _rsDifferentDataTypes =
    QX_RES("Error: the channels contain different types of data.");
inline constexpr ResourceText _rsErrorCaption = QX_RES("Error");
inline constexpr ResourceText _rsCannotSaveProject =
    QX_RES("Cannot save project. Either the path is invalid or the project file is read-only!");

// Cursor read-out.
inline constexpr ResourceText _rsCursorX = QX_RES("x = ");
inline constexpr ResourceText _rsCursorY = QX_RES("y = ");
inline constexpr ResourceText _rsCursorDX = QX_RES("dx = ");
inline constexpr ResourceText _rsCursorDY = QX_RES("dy = ");
inline constexpr ResourceText _rsCursor1 = QX_RES("Cursor 1: ");
inline constexpr ResourceText _rsCursor2 = QX_RES("Cursor 2: ");

// Toolbar hints (the forward button has none).
inline constexpr ResourceText _rsHintAxisSetup = QX_RES("Axis setup");
inline constexpr ResourceText _rsHintAutoscale = QX_RES("Autoscale");
inline constexpr ResourceText _rsHintCaptureScale = QX_RES("Capture scale");
inline constexpr ResourceText _rsHintDefaultScale = QX_RES("Default scale");
inline constexpr ResourceText _rsHintCursorPanel = QX_RES("Cursor panel");
inline constexpr ResourceText _rsHintPrint = QX_RES("Print");
inline constexpr ResourceText _rsHintChannelVisibilities = QX_RES("Channel visibilities");
inline constexpr ResourceText _rsHintHold = QX_RES("Hold");
inline constexpr ResourceText _rsHintScrollBackward = QX_RES("Scroll backward");

// The recorder, the scope and the spectrum display: descriptions, own properties, trigger states.
inline constexpr ResourceText _rsRecorderCaption = QX_RES("Recorder");
inline constexpr ResourceText _rsRecorderDescription = QX_RES("Recorder: a strip chart of the last seconds");
inline constexpr ResourceText _rsScopeCaption = QX_RES("Scope");
inline constexpr ResourceText _rsScopeDescription = QX_RES("Scope: triggered captures of chosen channels");
inline constexpr ResourceText _rsSpectrumCaption = QX_RES("Spectrum");
inline constexpr ResourceText _rsSpectrumDescription = QX_RES("Spectrum: amplitude spectra of chosen channels");
inline constexpr ResourceText _rsPropTimeSpan = QX_RES("Time span");
inline constexpr ResourceText _rsPropKeptTime = QX_RES("Kept time");
inline constexpr ResourceText _rsTriggerStateWaiting = QX_RES("Waiting for trigger");
inline constexpr ResourceText _rsTriggerStateCapturing = QX_RES("Capturing");
inline constexpr ResourceText _rsTriggerStateTriggered = QX_RES("Triggered");
inline constexpr ResourceText _rsTriggerStateSingleShotDone = QX_RES("Single shot done");
inline constexpr ResourceText _rsTriggerStateFreeRun = QX_RES("Free run");
inline constexpr ResourceText _rsXAxisTime = QX_RES("Time [s]");
inline constexpr ResourceText _rsXAxisFrequency = QX_RES("Frequency [Hz]");
inline constexpr ResourceText _rsCannotPrint = QX_RES("Cannot print: the printer could not be started");

// Saving a chart's data.
inline constexpr ResourceText _rsSaveDataFile = QX_RES("Save data file");
inline constexpr ResourceText _rsDCFFilter = QX_RES("KS file format (*.dcf)|*.dcf");

// Axis setup dialog.
inline constexpr ResourceText _rsAxisSetupCaption = QX_RES("Axis setup");
inline constexpr ResourceText _rsAxisSetupSelectChannel =
    QX_RES("Select the channel that you want to configure.");
inline constexpr ResourceText _rsAxisSetupEnterParameters = QX_RES("Enter the new channel parameters.");
inline constexpr ResourceText _rsAxisSetupMin = QX_RES("Min:");
inline constexpr ResourceText _rsAxisSetupMax = QX_RES("Max:");
inline constexpr ResourceText _rsButtonOK = QX_RES("OK");
inline constexpr ResourceText _rsButtonCancel = QX_RES("Cancel");
inline constexpr ResourceText _rsAxisSetupSetDefaults = QX_RES("Set defaults");

// Channel visibility dialog.
inline constexpr ResourceText _rsVisibilitiesCaption = QX_RES("Visibilities");
inline constexpr ResourceText _rsVisibilitiesAll = QX_RES("All");
inline constexpr ResourceText _rsVisibilitiesNone = QX_RES("None");

// The recorder's question before it drops what it kept.
inline constexpr ResourceText _rsRecorderClearQuestion = QX_RES("Clear the recorded data of \"%1\"?");
inline constexpr ResourceText _rsRecorderClearDetail = QX_RES("The last %1 s the recorder kept are lost.");

}  // namespace qx::res
