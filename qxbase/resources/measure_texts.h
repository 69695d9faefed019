#pragma once

#include "qxbase/framework/resource_text.h"

// Texts of the measurement subsystem shown to the user.
namespace qx::res {

// Names of the math channel operations, by TQXVTOperation ordinal.
inline constexpr ResourceText _rsVT_METHOD0 = QX_RES("None");
inline constexpr ResourceText _rsVT_METHOD1 = QX_RES("Sum of two channels");
inline constexpr ResourceText _rsVT_METHOD2 = QX_RES("Difference of two channels");
inline constexpr ResourceText _rsVT_METHOD3 = QX_RES("Product of two channels");
inline constexpr ResourceText _rsVT_METHOD4 = QX_RES("Division of two channels");
inline constexpr ResourceText _rsVT_METHOD5 = QX_RES("Compression to an average value");
inline constexpr ResourceText _rsVT_METHOD6 = QX_RES("First value of buffer");
inline constexpr ResourceText _rsVT_METHOD7 = QX_RES("Last value of buffer");
inline constexpr ResourceText _rsVT_METHOD8 = QX_RES("Minimum value of buffer");
inline constexpr ResourceText _rsVT_METHOD9 = QX_RES("Maximum valueof buffer ");
inline constexpr ResourceText _rsVT_METHOD10 = QX_RES("RMS of buffer");
inline constexpr ResourceText _rsVT_METHOD11 = QX_RES("Standard deviation of buffer");
inline constexpr ResourceText _rsVT_METHOD12 = QX_RES("Extend single value");
inline constexpr ResourceText _rsVT_METHOD13 = QX_RES("FFT");
inline constexpr ResourceText _rsVT_METHOD14 = QX_RES("Two-point scaling");
inline constexpr ResourceText _rsVT_METHOD15 = QX_RES("Polynominal linearization");
inline constexpr ResourceText _rsVT_METHOD16 = QX_RES("Split digital input");
inline constexpr ResourceText _rsVT_METHOD17 = QX_RES("Invert waveform");

// Names of the block compression methods, by TKSRVLinkSingleCompressionMethod ordinal + 1.
inline constexpr ResourceText _rsCOMP_METHOD1 = QX_RES("First value");
inline constexpr ResourceText _rsCOMP_METHOD2 = QX_RES("Last value");
inline constexpr ResourceText _rsCOMP_METHOD3 = QX_RES("Average");
inline constexpr ResourceText _rsCOMP_METHOD4 = QX_RES("Minimum");
inline constexpr ResourceText _rsCOMP_METHOD5 = QX_RES("Maximum");
inline constexpr ResourceText _rsCOMP_METHOD6 = QX_RES("RMS");
inline constexpr ResourceText _rsCOMP_METHOD7 = QX_RES("Standard deviation");

// Errors of the trigger engine.
inline constexpr ResourceText _rsInvalidData = QX_RES("Data format is invalid");
inline constexpr ResourceText _rsInvalidTriggerChannel = QX_RES("TriggerChannel is invalid");

// Result kinds of the FFT processor, by TKSFFTSpecType ordinal + 1.
inline constexpr ResourceText _rsFFT_TYPE1 = QX_RES("Spectrum analyzer");
inline constexpr ResourceText _rsFFT_TYPE2 = QX_RES("Autocorrelation");
inline constexpr ResourceText _rsFFT_TYPE3 = QX_RES("Power spectrum");

// Windows of the FFT, by TQXFFTLeakType ordinal + 1.
inline constexpr ResourceText _rsFFT_WINDOW1 = QX_RES("Rectangle");
inline constexpr ResourceText _rsFFT_WINDOW2 = QX_RES("Hanning");
inline constexpr ResourceText _rsFFT_WINDOW3 = QX_RES("Hamming");
inline constexpr ResourceText _rsFFT_WINDOW4 = QX_RES("Blackman");

}  // namespace qx::res
