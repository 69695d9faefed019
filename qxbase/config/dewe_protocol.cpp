#include "qxbase/config/dewe_protocol.h"

#include <QString>
#include <cmath>

#include "qxbase/config/dewe_modules.h"
#include "qxbase/framework/exception.h"
#include "qxbase/framework/number_text.h"

namespace qx {

namespace {

QByteArray Hex2(int value)
{
    return QByteArray::number(value, 16).toUpper().rightJustified(2, '0');
}

QByteArray AddressHex(int address)
{
    if (!IsDeweAddress(address))
        throw ERangeError(QStringLiteral("Bus address %1 is outside 0..%2").arg(address).arg(DeweMaxAddress));
    return Hex2(address);
}

int HexDigit(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

// The hexadecimal number in `length` characters from 1-based `position`; -1 when a character
// is missing or not a hexadecimal digit.
int HexField(const QByteArray& text, int position, int length)
{
    if (position < 1 || position - 1 + length > text.size()) return -1;
    int result = 0;
    for (int i = 0; i < length; ++i) {
        const int digit = HexDigit(text[position - 1 + i]);
        if (digit < 0) return -1;
        result = result * 16 + digit;
    }
    return result;
}

bool DaqpTypeFromCode(int code, THVKDeweModuleType& moduleType)
{
    switch (code) {
    case 0: moduleType = daqpV; return true;
    case 2: moduleType = daqpBRIDGE; return true;
    case 4: moduleType = daqpDMM; return true;
    case 5: moduleType = daqpCHARGE; return true;
    case 6: moduleType = daqpUV; return true;
    case 7: moduleType = daqpTRG; return true;
    case 8: moduleType = daqpFreq; return true;
    default: return false;
    }
}

}  // namespace

QByteArray DeweStatusCommand(int address)
{
    return "??" + AddressHex(address) + DeweCR;
}

QByteArray DeweSetCommand(int address, THVKDeweModuleType moduleType, THVKDeweModuleInputRange inputRange,
                          THVKDeweModuleFilterRange filterRange, bool remote)
{
    if (inputRange >= THVKDeweModuleInputRangeCount || filterRange >= THVKDeweModuleFilterRangeCount)
        throw ERangeError(QStringLiteral("Range %1 or filter %2 is not a module setting").arg(inputRange).arg(filterRange));
    QByteArray command = "##" + AddressHex(address) + Hex2(DeweModuleInputRangeCode[inputRange]) +
                         Hex2(DeweModuleFilterRangeCode[filterRange]);
    if (moduleType == daqpCHARGE) command += "0199";
    else if (moduleType == daqpFreq) command += "1";
    command += remote ? '1' : '0';
    return command + DeweCR;
}

QByteArray PADConfigurationCommand(int address)
{
    return "$" + AddressHex(address) + "2" + DeweCR;
}

QByteArray PADNameCommand(int address)
{
    return "$" + AddressHex(address) + "M" + DeweCR;
}

QByteArray PADChannelCommand(int address, int channel)
{
    if (channel < 0 || channel > 15)
        throw ERangeError(QStringLiteral("Channel %1 is outside 0..15").arg(channel));
    return "#" + AddressHex(address) + QByteArray::number(channel, 16).toUpper() + DeweCR;
}

QByteArray DeweReplyString(const QByteArray& bytes)
{
    const qsizetype end = bytes.indexOf('\0');
    return end < 0 ? bytes : bytes.left(end);
}

TIntModuleType DeweReplyClass(const QByteArray& reply)
{
    const QByteArray code = DeweReplyString(reply).mid(3, 2);
    if (code == "05") return _imtCharge;
    if (code == "08") return _imtFreq;
    return _imtStandard;
}

int DeweReplyExtraBytes(TIntModuleType replyClass)
{
    switch (replyClass) {
    case _imtCharge: return 5;
    case _imtFreq: return 1;
    default: return 0;
    }
}

THVKDeweModuleInputRange FindDeweInputRange(THVKDeweModuleType moduleType, int code)
{
    if (moduleType >= THVKDeweModuleTypeCount) return dirNone;
    const TDeweRangeSpan span = DeweInputRangeSpan[moduleType];
    for (int i = span.First; i <= span.Last; ++i)
        if (DeweModuleInputRangeCode[i] == code) return THVKDeweModuleInputRange(i);
    return dirNone;
}

THVKDeweModuleFilterRange FindDeweFilterRange(THVKDeweModuleType moduleType, int code)
{
    if (moduleType >= DeweFilterRangeSpanCount) return firNone;
    const TDeweRangeSpan span = DeweFilterRangeSpan[moduleType];
    for (int i = span.First; i <= span.Last; ++i)
        if (DeweModuleFilterRangeCode[i] == code) return THVKDeweModuleFilterRange(i);
    return firNone;
}

bool DecodePADChannelValue(const QByteArray& reply, double& value)
{
    QByteArray text = DeweReplyString(reply).mid(1, 7);
    text.replace(',', '.');
    double parsed = 0;
    if (!TryStrToFloat(QString::fromLatin1(text), parsed) || !std::isfinite(parsed)) return false;
    value = parsed;
    return true;
}

// Layout: "!", two characters not read, type, input code, filter code, remote digit, CR.
bool THVKDeweModules::DecodeState(const QByteArray& reply, TIntModuleType /*replyClass*/,
                                  THVKDeweModuleType& moduleType, THVKDeweModuleInputRange& inputRange,
                                  THVKDeweModuleFilterRange& filterRange, bool& remote)
{
    moduleType = dmtNone;
    inputRange = dirNone;
    filterRange = firNone;
    remote = false;
    const QByteArray text = DeweReplyString(reply);
    if (text.size() < 11 || text[0] != '!') return false;
    if (!DaqpTypeFromCode(HexField(text, 4, 2), moduleType)) return false;
    inputRange = FindDeweInputRange(moduleType, HexField(text, 6, 2));
    filterRange = FindDeweFilterRange(moduleType, HexField(text, 8, 2));
    // Charge and frequency replies carry another field at this place.
    if (moduleType != daqpCHARGE && moduleType != daqpFreq) remote = HexField(text, 10, 1) == 1;
    return true;
}

bool THVKDeweModules::DecodeStatePAD(const QByteArray& configurationReply, const QByteArray& nameReply,
                                     THVKDeweModuleType& moduleType, THVKDeweModuleInputRange& inputRange,
                                     std::int32_t& channelCount)
{
    moduleType = dmtNone;
    inputRange = dirNone;
    channelCount = 0;
    const QByteArray configuration = DeweReplyString(configurationReply);
    const QByteArray nameText = DeweReplyString(nameReply);
    if (configuration.size() != 10 || configuration[0] != '!' || configuration[9] != DeweCR) return false;
    if (nameText.size() < 4) return false;
    const qsizetype cr = nameText.indexOf(DeweCR);
    const QByteArray name = cr > 3 ? nameText.mid(3, cr - 3) : QByteArray();
    if (name == "PAD-V8") {
        moduleType = padV8;
        channelCount = 8;
    } else if (name == "PAD-VTH") {
        moduleType = padVTH8;
        channelCount = 8;
    } else if (name == "6013") {
        moduleType = padRTD3;
        channelCount = 3;
    } else if (name == "PAD-TH8") {
        moduleType = padTH8;
        channelCount = 8;
    } else {
        return false;
    }
    inputRange = FindDeweInputRange(moduleType, HexField(configuration, 4, 2));
    return true;
}

}  // namespace qx
