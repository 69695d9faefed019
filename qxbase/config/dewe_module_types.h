#pragma once

#include <array>
#include <cstdint>

// Kinds, ranges and filters of the amplifier modules, with the text, value and wire code of
// every range. Texts are UTF-8.
namespace qx {

enum THVKDeweModuleType : std::uint8_t {
    dmtNone,
    daqpDMM,
    daqpV,
    daqpUV,
    daqpBRIDGE,
    daqpCHARGE,
    daqpTRG,
    daqpFreq,
    padV8,
    padVTH8,
    padTH8,
    padRTD3,
};

enum THVKDeweModuleInputRange : std::uint8_t {
    dirNone,
    dirDMM1000V, dirDMM400V, dirDMM200V, dirDMM100V, dirDMM40V, dirDMM10V,
    dirV50V, dirV10V, dirV5V, dirV1V, dirV0_1V, dirV0_01V,
    dirUV25mV, dirUV10mV, dirUV5mV, dirUV2_5mV, dirUV1mV, dirUV500UV,
    dirBRIDGE5mV, dirBRIDGE2mV, dirBRIDGE1mV, dirBRIDGE0_5mV, dirBRIDGE0_2mV, dirBRIDGE0_1mV,
    dirCHARGE0dB, dirCHARGE20dB, dirCHARGE40dB, dirCHARGE60dB,
    dirTRGF, dirTRGE, dirTRGD, dirTRGC, dirTRGB, dirTRGA,
    dirFREQ200kHz, dirFREQ100kHz, dirFREQ10kHz, dirFREQ5kHz, dirFREQ1kHz, dirFREQ100Hz,
    dirPDV8_10V, dirPDV8_5V, dirPDV8_1V, dirPDV8_500mV, dirPDV8_150mV, dirPDV8_20mA,
    dirPDVTH8_2_5V, dirPDVTH8_1V, dirPDVTH8_500mV, dirPDVTH8_100mV, dirPDVTH8_50mV,
    dirPDVTH8_15mV, dirPDVTH8_20mA,
    dirPDVTH8_J, dirPDVTH8_K, dirPDVTH8_T, dirPDVTH8_E, dirPDVTH8_R, dirPDVTH8_S, dirPDVTH8_B,
    dirPDVTH8_N, dirPDVTH8_C,
    dirPDTH8_K,
    dirPDRTD3_m100_100_a1, dirPDRTD3_0_100_a1, dirPDRTD3_0_200_a1, dirPDRTD3_0_600_a1,
    dirPDRTD3_m100_100_a2, dirPDRTD3_0_100_a2, dirPDRTD3_0_200_a2, dirPDRTD3_0_600_a2,
    dirPDRTD3_Ni100, dirPDRTD3_Ni120,
};

enum THVKDeweModuleFilterRange : std::uint8_t {
    firNone,
    firDMM20kHz, firDMM3kHz, firDMM1kHz, firDMM100Hz, firDMM10Hz,
    firV50kHz, firV10kHz, firV1kHz, firV100Hz, firV10Hz,
    firUV20kHz, firUV5kHz, firUV1kHz, firUV100Hz, firUV10Hz,
    firBRIDGE20kHz, firBRIDGE5kHz, firBRIDGE1kHz, firBRIDGE100Hz, firBRIDGE10Hz,
    firCHARGE20kHz, firCHARGE10kHz, firCHARGE5kHz, firCHARGE1kHz,
    firTRG1kHz, firTRG300Hz, firTRG100Hz, firTRG30Hz, firTRG10Hz,
    firFREQ200kHz, firFREQ100kHz, firFREQ10kHz, firFREQ5kHz, firFREQ1kHz, firFREQ100Hz,
};

// The length class of a DAQP status reply: charge replies carry 5 bytes more, frequency
// replies 1 byte more.
enum TIntModuleType : std::uint8_t {
    _imtStandard,
    _imtCharge,
    _imtFreq,
};

inline constexpr int THVKDeweModuleTypeCount = padRTD3 + 1;
inline constexpr int THVKDeweModuleInputRangeCount = dirPDRTD3_Ni120 + 1;
inline constexpr int THVKDeweModuleFilterRangeCount = firFREQ100Hz + 1;
// Filter spans exist for the DAQP types only (dmtNone .. daqpFreq).
inline constexpr int DeweFilterRangeSpanCount = daqpFreq + 1;

// The ranges that belong to one module type, stored last index first.
struct TDeweRangeSpan {
    std::uint8_t Last;
    std::uint8_t First;
};

inline constexpr auto DeweModuleTypeString = std::to_array<const char*>({
    "Unassigned", "DAQP-DMM", "DAQP-V", "DAQP-µV", "DAQP-Bridge", "DAQP-Charge",
    "DAQP-TRG", "DAQP-Freq", "PAD-V8", "PAD-VTH8", "PAD-TH8", "PAD-RTD3",
});
static_assert(DeweModuleTypeString.size() == THVKDeweModuleTypeCount);

inline constexpr auto DeweModuleInputRangeString = std::to_array<const char*>({
    "Unassigned",
    "1000V", "400V", "200V", "100V", "40V", "10V",
    "50V", "10V", "5V", "1V", "0.1V", "0.01V",
    "25mV", "10mV", "5mV", "2.5mV", "1mV", "500µV",
    "5mV", "2mV", "1mV", "0.5mV", "0.2mV", "0.1mV",
    "0dB", "20dB", "40dB", "60dB",
    "Range F", "Range E", "Range D", "Range C", "Range B", "Range A",
    "200 kHz", "100 kHz", "10 kHz", "5 kHz", "1 kHz", "100 Hz",
    "10V", "5V", "1V", "500mV", "150mV", "20mA",
    "2.5V", "1V", "500mV", "100mV", "50mV", "15mV", "20mA",
    "CJC J", "CJC K", "CJC T", "CJC E", "CJC R", "CJC S", "CJC B", "CJC N", "CJC C",
    "CJC K",
    "Pt100 -100..100°C a=0.00385", "Pt100 0..100°C a=0.00385", "Pt100 0..200°C a=0.00385",
    "Pt100 0..600°C a=0.00385",
    "Pt100 -100..100°C a=0.003916", "Pt100 0..100°C a=0.003916", "Pt100 0..200°C a=0.003916",
    "Pt100 0..600°C a=0.003916",
    "Ni100 0..100°C", "Ni120 0..100°C",
});
static_assert(DeweModuleInputRangeString.size() == THVKDeweModuleInputRangeCount);

// Full-scale value in volts or amperes, or a gain factor; 1 where a range has no span.
inline constexpr auto DeweModuleInputRangeValue = std::to_array<double>({
    0,
    1000, 400, 200, 100, 40, 10,
    50, 10, 5, 1, 0.1, 0.01,
    0.025, 0.01, 0.005, 0.0025, 0.001, 0.0005,
    0.005, 0.002, 0.001, 0.0005, 0.0002, 0.0001,
    1, 10, 100, 1000,
    1, 1, 1, 1, 1, 1,
    1, 1, 1, 1, 1, 1,
    10, 5, 1, 0.5, 0.15, 0.02,
    2.5, 1, 0.5, 0.1, 0.05, 0.015, 0.02,
    1, 1, 1, 1, 1, 1, 1, 1, 1,
    1,
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1,
});
static_assert(DeweModuleInputRangeValue.size() == THVKDeweModuleInputRangeCount);

inline constexpr auto DeweModuleInputRangeCode = std::to_array<std::uint16_t>({
    0xFF,
    0x00, 0x01, 0x02, 0x03, 0x04, 0x05,
    0x00, 0x01, 0x02, 0x03, 0x04, 0x05,
    0x00, 0x01, 0x02, 0x03, 0x04, 0x05,
    0x00, 0x01, 0x02, 0x03, 0x04, 0x05,
    0x00, 0x01, 0x02, 0x03,
    0x05, 0x04, 0x03, 0x02, 0x01, 0x00,
    0x00, 0x01, 0x02, 0x03, 0x04, 0x05,
    0x08, 0x09, 0x0A, 0x0B, 0x0C, 0x0D,
    0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06,
    0x0E, 0x0F, 0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16,
    0x0F,
    0x20, 0x21, 0x22, 0x23, 0x24, 0x25, 0x26, 0x27, 0x28, 0x29,
});
static_assert(DeweModuleInputRangeCode.size() == THVKDeweModuleInputRangeCount);

inline constexpr auto DeweModuleFilterRangeString = std::to_array<const char*>({
    "Unassigned",
    "20kHz", "3kHz", "1kHz", "100Hz", "10Hz",
    "50kHz", "10kHz", "1kHz", "100Hz", "10Hz",
    "20kHz", "5kHz", "1kHz", "100Hz", "10Hz",
    "20kHz", "5kHz", "1kHz", "100Hz", "10Hz",
    "20kHz", "10kHz", "5kHz", "1kHz",
    "1kHz", "300Hz", "100Hz", "30Hz", "10Hz",
    "200 kHz", "100 kHz", "10 kHz", "5 kHz", "1 kHz", "100 Hz",
});
static_assert(DeweModuleFilterRangeString.size() == THVKDeweModuleFilterRangeCount);

// The charge filters use the amplifier's own codes, not a running number.
inline constexpr auto DeweModuleFilterRangeCode = std::to_array<std::uint16_t>({
    0xFF,
    0x00, 0x01, 0x02, 0x03, 0x04,
    0x00, 0x01, 0x02, 0x03, 0x04,
    0x00, 0x01, 0x02, 0x03, 0x04,
    0x00, 0x01, 0x02, 0x03, 0x04,
    0x7F, 0x74, 0x63, 0x0F,
    0x00, 0x01, 0x02, 0x03, 0x04,
    0x00, 0x01, 0x02, 0x03, 0x04, 0x05,
});
static_assert(DeweModuleFilterRangeCode.size() == THVKDeweModuleFilterRangeCount);

inline constexpr auto DeweInputRangeSpan = std::to_array<TDeweRangeSpan>({
    {0, 0},    // dmtNone
    {6, 1},    // daqpDMM
    {12, 7},   // daqpV
    {18, 13},  // daqpUV
    {24, 19},  // daqpBRIDGE
    {28, 25},  // daqpCHARGE
    {34, 29},  // daqpTRG
    {40, 35},  // daqpFreq
    {46, 41},  // padV8
    {62, 47},  // padVTH8
    {63, 63},  // padTH8
    {73, 64},  // padRTD3
});
static_assert(DeweInputRangeSpan.size() == THVKDeweModuleTypeCount);

inline constexpr auto DeweFilterRangeSpan = std::to_array<TDeweRangeSpan>({
    {0, 0},    // dmtNone
    {5, 1},    // daqpDMM
    {10, 6},   // daqpV
    {15, 11},  // daqpUV
    {20, 16},  // daqpBRIDGE
    {24, 21},  // daqpCHARGE
    {29, 25},  // daqpTRG
    {35, 30},  // daqpFreq
});
static_assert(DeweFilterRangeSpan.size() == DeweFilterRangeSpanCount);

}  // namespace qx
