#include <gtest/gtest.h>

#include <QLocale>
#include <clocale>
#include <string>
#include <tuple>

#include "qxbase/config/dewe_modules.h"
#include "qxbase/framework/exception.h"
#include "qxbase/config/dewe_protocol.h"

using namespace qx;

TEST(DeweDecodeState, StatusRepliesGiveTypeRangesAndRemote)
{
    // Name, reply, result, type, input range, filter range, remote.
    const std::tuple<const char*, QByteArray, bool, THVKDeweModuleType, THVKDeweModuleInputRange,
                     THVKDeweModuleFilterRange, bool>
        rows[] = {
        {"code outside the type's span stays unassigned", "!01000A001\r", true, daqpV, dirNone, firV50kHz, true},
        {"µV 500µV, no filter", "!010605051\r", true, daqpUV, dirUV500UV, firNone, true},
        {"trigger codes run backwards", "!010700041\r", true, daqpTRG, dirTRGA, firTRG10Hz, true},
        {"charge never reads remote", "!010501741\r", true, daqpCHARGE, dirCHARGE20dB, firCHARGE10kHz, false},
        {"remote digit other than 1", "!010001012\r", true, daqpV, dirV10V, firV10kHz, false},
        {"type 01 unknown", "!010100001\r", false, dmtNone, dirNone, firNone, false},
        {"no prompt", "?010000001\r", false, dmtNone, dirNone, firNone, false},
        {"ten characters", "!010000001", false, dmtNone, dirNone, firNone, false},
        {"NUL ends the reply", QByteArray("!0100\0\x30\x30\x30\x31\r", 11), false, dmtNone, dirNone, firNone, false},
    };
    for (const auto& [name, reply, ok, wantType, wantInput, wantFilter, wantRemote] : rows) {
        SCOPED_TRACE(name);
        THVKDeweModuleType type = padRTD3;
        THVKDeweModuleInputRange input = dirPDRTD3_Ni120;
        THVKDeweModuleFilterRange filter = firFREQ100Hz;
        bool remote = true;
        EXPECT_EQ(THVKDeweModules::DecodeState(reply, _imtStandard, type, input, filter, remote), ok);
        EXPECT_EQ(std::tuple(type, input, filter, remote), std::tuple(wantType, wantInput, wantFilter, wantRemote));
    }
}

TEST(DeweDecodeStatePAD, ConfigurationAndNameGiveTypeRangeAndChannels)
{
    // Name, configuration reply, name reply, result, type, input range, channels.
    const std::tuple<const char*, QByteArray, QByteArray, bool, THVKDeweModuleType, THVKDeweModuleInputRange, int>
        rows[] = {
        {"VTH names itself PAD-VTH, code in lower case", "!010f0600\r", "!01PAD-VTH\r", true, padVTH8, dirPDVTH8_K, 8},
        {"TH8 shares code 0F, the span decides", "!010F0600\r", "!01PAD-TH8\r", true, padTH8, dirPDTH8_K, 8},
        {"RTD3 names itself 6013", "!1F290600\r", "!1F6013\r", true, padRTD3, dirPDRTD3_Ni120, 3},
        {"range code outside the span", "!01000600\r", "!01PAD-V8\r", true, padV8, dirNone, 8},
        {"PAD-VTH8 is not a known name", "!010F0600\r", "!01PAD-VTH8\r", false, dmtNone, dirNone, 0},
        {"name without CR is empty", "!01080600\r", "!01PAD-V8", false, dmtNone, dirNone, 0},
        {"configuration without final CR", "!010806000", "!01PAD-V8\r", false, dmtNone, dirNone, 0},
        {"configuration without prompt", "?01080600\r", "!01PAD-V8\r", false, dmtNone, dirNone, 0},
    };
    for (const auto& [name, configuration, nameReply, ok, wantType, wantInput, wantChannels] : rows) {
        SCOPED_TRACE(name);
        THVKDeweModuleType type = daqpV;
        THVKDeweModuleInputRange input = dirV1V;
        std::int32_t channels = 99;
        EXPECT_EQ(THVKDeweModules::DecodeStatePAD(configuration, nameReply, type, input, channels), ok);
        EXPECT_EQ(std::tuple(type, input, channels), std::tuple(wantType, wantInput, wantChannels));
    }
}

TEST(DewePADChannelValue, SevenCharactersAfterThePromptWithEitherSeparator)
{
    const QLocale savedQt;
    const std::string savedC = std::setlocale(LC_ALL, nullptr);
    // A comma locale must not change the result.
    QLocale::setDefault(QLocale(QLocale::German));
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    const std::tuple<const char*, QByteArray, bool, double> rows[] = {
        {"comma", ">-00,250\r", true, -0.25},
        {"three integer digits", ">+021.50\r", true, 21.5},
        {"short reply keeps its CR and fails", ">+5.1\r", false, 0},
        {"two separators", ">+1.2,3\r", false, 0},
        {"NUL ends the reply", QByteArray(">+1\0.500\r", 9), true, 1.0},
        {"NUL after the prompt", QByteArray(">\0+1.500\r", 9), false, 0},
    };
    for (const auto& [name, reply, ok, expected] : rows) {
        SCOPED_TRACE(name);
        double value = 42;
        EXPECT_EQ(DecodePADChannelValue(reply, value), ok);
        EXPECT_DOUBLE_EQ(value, ok ? expected : 42);
    }
    std::setlocale(LC_ALL, savedC.c_str());
    QLocale::setDefault(savedQt);
}

TEST(DeweTables, SpansTileTheRangeTablesAndCodesDecodeUniquely)
{
    int nextInput = 1;
    for (int type = daqpDMM; type < THVKDeweModuleTypeCount; ++type) {
        SCOPED_TRACE(type);
        const TDeweRangeSpan span = DeweInputRangeSpan[type];
        EXPECT_EQ(span.First, nextInput);
        EXPECT_LE(span.First, span.Last);
        nextInput = span.Last + 1;
        for (int i = span.First; i <= span.Last; ++i)
            EXPECT_EQ(FindDeweInputRange(THVKDeweModuleType(type), DeweModuleInputRangeCode[i]), i);
        if (type < DeweFilterRangeSpanCount) {
            const TDeweRangeSpan filters = DeweFilterRangeSpan[type];
            for (int i = filters.First; i <= filters.Last; ++i)
                EXPECT_EQ(FindDeweFilterRange(THVKDeweModuleType(type), DeweModuleFilterRangeCode[i]), i);
        }
    }
    EXPECT_EQ(nextInput, THVKDeweModuleInputRangeCount);
    EXPECT_EQ(DeweFilterRangeSpan[daqpFreq].Last + 1, THVKDeweModuleFilterRangeCount);
    EXPECT_EQ(FindDeweFilterRange(padV8, 0x00), firNone);
    EXPECT_EQ(std::tuple(DeweModuleInputRangeCode[dirNone], DeweModuleFilterRangeCode[firNone]), std::tuple(0xFF, 0xFF));
}

TEST(DeweReplyClass, CodeAtCharacters4And5OfTheReplyString)
{
    EXPECT_EQ(DeweReplyClass("!0105010F0\r"), _imtCharge);
    // A NUL before them ends the reply, so there is no code to read.
    EXPECT_EQ(DeweReplyClass(QByteArray("!0\0" "05010F0\r", 11)), _imtStandard);
}

TEST(DeweCommands, ValuesTheWireCannotCarryRaise)
{
    EXPECT_EQ(PADChannelCommand(32, 15), "#20F\r");
    EXPECT_THROW(DeweStatusCommand(33), ERangeError);
    EXPECT_THROW(PADChannelCommand(1, 16), ERangeError);
    EXPECT_THROW(DeweSetCommand(1, daqpV, THVKDeweModuleInputRange(74), firNone, false), ERangeError);
}
