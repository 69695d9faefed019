#pragma once

#include <QByteArray>

#include "qxbase/config/dewe_module_types.h"
#include "qxbase/framework/export.h"

// The ASCII commands of the amplifier modules and the decoding of their replies, free of any
// line. Addresses are written as two uppercase hexadecimal digits. The command builders raise
// ERangeError for an address outside the bus, a channel outside 0..15 or a range or filter
// outside its enumeration.
namespace qx {

inline constexpr char DeweCR = '\r';
// The bus carries the addresses 0 .. DeweMaxAddress.
inline constexpr int DeweMaxAddress = 32;

inline constexpr bool IsDeweAddress(int address) { return address >= 0 && address <= DeweMaxAddress; }

// DAQP status request "??hh" CR.
QXBASE_EXPORT QByteArray DeweStatusCommand(int address);
// DAQP set command for a module of the given type: "##hh" II FF, then "0199" and the remote
// digit for charge modules, "1" and the remote digit for frequency modules, else the remote
// digit alone; CR.
QXBASE_EXPORT QByteArray DeweSetCommand(int address, THVKDeweModuleType moduleType,
                                        THVKDeweModuleInputRange inputRange,
                                        THVKDeweModuleFilterRange filterRange, bool remote);
// PAD requests: configuration "$hh2" CR, module name "$hhM" CR, channel value "#hh" h CR.
QXBASE_EXPORT QByteArray PADConfigurationCommand(int address);
QXBASE_EXPORT QByteArray PADNameCommand(int address);
QXBASE_EXPORT QByteArray PADChannelCommand(int address, int channel);

// A reply taken as a zero-terminated string: the bytes before the first NUL.
QXBASE_EXPORT QByteArray DeweReplyString(const QByteArray& bytes);
// The length class of a DAQP status reply from its characters 4-5 ("05" charge, "08"
// frequency), and the bytes that follow the first 11 in that class (5, 1 or 0).
QXBASE_EXPORT TIntModuleType DeweReplyClass(const QByteArray& reply);
QXBASE_EXPORT int DeweReplyExtraBytes(TIntModuleType replyClass);

// The first range in the type's span whose wire code is `code`; dirNone / firNone when none
// matches. Types without a filter span (the PAD types) find no filter.
QXBASE_EXPORT THVKDeweModuleInputRange FindDeweInputRange(THVKDeweModuleType moduleType, int code);
QXBASE_EXPORT THVKDeweModuleFilterRange FindDeweFilterRange(THVKDeweModuleType moduleType, int code);

// The value of a PAD channel reply: the seven characters after the prompt, with "." or ","
// as decimal separator whatever the locale. False, with `value` untouched, when they are not
// a finite number.
QXBASE_EXPORT bool DecodePADChannelValue(const QByteArray& reply, double& value);

}  // namespace qx
