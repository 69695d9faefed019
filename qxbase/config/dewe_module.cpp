#include "qxbase/config/dewe_module.h"

#include "qxbase/config/dewe_protocol.h"
#include "qxbase/framework/serial_line.h"

namespace qx {

namespace {

template <typename Table>
QString TableText(const Table& table, int index)
{
    return index < int(table.size()) ? QString::fromUtf8(table[index]) : QString();
}

}  // namespace

THVKDeweModule::THVKDeweModule(std::int32_t address, std::weak_ptr<TSerialLine> port)
    : FPort(std::move(port)), FAddress(address)
{
}

QString THVKDeweModule::GetModuleTypeString() const
{
    return TableText(DeweModuleTypeString, FModuleType);
}

QString THVKDeweModule::GetInputRangeString() const
{
    return TableText(DeweModuleInputRangeString, FInputRange);
}

QString THVKDeweModule::GetFilterRangeString() const
{
    return TableText(DeweModuleFilterRangeString, FFilterRange);
}

double THVKDeweModule::GetInputRangeValue() const
{
    return FInputRange < THVKDeweModuleInputRangeCount ? DeweModuleInputRangeValue[FInputRange] : 0.0;
}

void THVKDeweModule::SetInputRange(THVKDeweModuleInputRange inputRange)
{
    UpdateConfiguration(inputRange, FFilterRange, FRemote);
}

void THVKDeweModule::SetFilterRange(THVKDeweModuleFilterRange filterRange)
{
    UpdateConfiguration(FInputRange, filterRange, FRemote);
}

void THVKDeweModule::SetRemote(bool remote)
{
    UpdateConfiguration(FInputRange, FFilterRange, remote);
}

void THVKDeweModule::SetNextInputRange()
{
    if (FModuleType >= THVKDeweModuleTypeCount) return;
    if (DeweInputRangeSpan[FModuleType].First < FInputRange)
        SetInputRange(THVKDeweModuleInputRange(FInputRange - 1));
}

void THVKDeweModule::SetPreviousInputRange()
{
    if (FModuleType >= THVKDeweModuleTypeCount) return;
    if (DeweInputRangeSpan[FModuleType].Last > FInputRange)
        SetInputRange(THVKDeweModuleInputRange(FInputRange + 1));
}

void THVKDeweModule::SetNextFilterRange()
{
    if (FModuleType >= DeweFilterRangeSpanCount) return;
    if (DeweFilterRangeSpan[FModuleType].First < FFilterRange)
        SetFilterRange(THVKDeweModuleFilterRange(FFilterRange - 1));
}

void THVKDeweModule::SetPreviousFilterRange()
{
    if (FModuleType >= DeweFilterRangeSpanCount) return;
    if (DeweFilterRangeSpan[FModuleType].Last > FFilterRange)
        SetFilterRange(THVKDeweModuleFilterRange(FFilterRange + 1));
}

bool THVKDeweModule::UpdateConfiguration(THVKDeweModuleInputRange inputRange,
                                         THVKDeweModuleFilterRange filterRange, bool remote)
{
    if (inputRange >= THVKDeweModuleInputRangeCount || filterRange >= THVKDeweModuleFilterRangeCount ||
        !IsDeweAddress(FAddress))
        return false;
    const std::shared_ptr<TSerialLine> port = FPort.lock();
    if (!port) return false;
    const bool written = port->Write(DeweSetCommand(FAddress, FModuleType, inputRange, filterRange, remote));
    const QByteArray reply = port->Read(3);
    if (!written || reply.size() != 3) return false;
    FInputRange = inputRange;
    FFilterRange = filterRange;
    FRemote = remote;
    return true;
}

void THVKDeweModule::UpdateConfigurationPAD(THVKDeweModuleInputRange /*inputRange*/) {}

bool THVKDeweModule::ReadPADChannel(std::int32_t channel, double& value)
{
    if (channel < 0 || channel >= FChannelCount || !IsDeweAddress(FAddress)) return false;
    const std::shared_ptr<TSerialLine> port = FPort.lock();
    if (!port) return false;
    const QByteArray command = PADChannelCommand(FAddress, channel);
    for (int attempt = 0; attempt < 2; ++attempt) {
        port->Write(command);
        const QByteArray reply = port->Read(9);
        if (reply.isEmpty()) continue;
        if (DecodePADChannelValue(reply, value)) return true;
        port->Read(9);  // drain the rest of a garbled reply
    }
    return false;
}

}  // namespace qx
