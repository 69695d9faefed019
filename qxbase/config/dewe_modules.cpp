#include "qxbase/config/dewe_modules.h"

#include "qxbase/config/dewe_protocol.h"

namespace qx {

std::unique_ptr<THVKDeweModules> FDeweModules;

namespace {

constexpr int DrainBytes = 255;
constexpr int StatusReplyBytes = 11;
constexpr int PADConfigurationBytes = 10;
constexpr int PADNameMinBytes = 5;
constexpr int PADReplyReadBytes = 11;
constexpr int WakeWait = 50;
constexpr int RetryWait = 50;
constexpr int PADSearchWait = 20;
constexpr int Tries = 3;

}  // namespace

// DecodeState and DecodeStatePAD live with the other reply decoding in dewe_protocol.cpp.

THVKDeweModules::THVKDeweModules() = default;

THVKDeweModules::~THVKDeweModules() = default;

bool THVKDeweModules::OpenComm(std::int32_t portNumber)
{
    CloseComm();
    return OpenComm(OpenSerialLine(ComPortDevice(portNumber), DeweLineSettings));
}

bool THVKDeweModules::OpenComm(std::unique_ptr<TSerialLine> line)
{
    CloseComm();
    if (!line) return false;
    FPort = std::move(line);
    FPortOpen = true;
    FPort->Write(QByteArray(2, DeweCR));
    FPort->Wait(WakeWait);
    FPort->Read(DrainBytes);
    return true;
}

void THVKDeweModules::CloseComm()
{
    FPort.reset();
    FPortOpen = false;
}

void THVKDeweModules::Flush()
{
    FPort->Read(DrainBytes);
}

bool THVKDeweModules::ProbeDAQP(std::int32_t address, const QByteArray& prefix)
{
    if (!FPort->Write(prefix + DeweStatusCommand(address))) return false;
    const QByteArray reply = FPort->Read(StatusReplyBytes);
    if (reply.size() != StatusReplyBytes) {
        if (!reply.isEmpty()) Flush();
        return false;
    }
    const TIntModuleType replyClass = DeweReplyClass(reply);
    if (const int extra = DeweReplyExtraBytes(replyClass); extra > 0) {
        const QByteArray tail = FPort->Read(extra);
        if (!tail.isEmpty() && tail.size() < extra) Flush();
    }
    THVKDeweModuleType moduleType;
    THVKDeweModuleInputRange inputRange;
    THVKDeweModuleFilterRange filterRange;
    bool remote;
    if (!DecodeState(reply, replyClass, moduleType, inputRange, filterRange, remote)) return false;
    auto module = std::make_unique<THVKDeweModule>(address, FPort);
    module->FModuleType = moduleType;
    module->FInputRange = inputRange;
    module->FFilterRange = filterRange;
    module->FRemote = remote;
    FModules.push_back(std::move(module));
    return true;
}

bool THVKDeweModules::ProbePAD(std::int32_t address, int replyWait)
{
    if (!FPort->Write(PADConfigurationCommand(address))) return false;
    if (replyWait > 0) FPort->Wait(replyWait);
    const QByteArray configuration = FPort->Read(PADReplyReadBytes);
    if (configuration.size() != PADConfigurationBytes) {
        if (!configuration.isEmpty()) Flush();
        return false;
    }
    if (!FPort->Write(PADNameCommand(address))) return false;
    if (replyWait > 0) FPort->Wait(replyWait);
    const QByteArray name = FPort->Read(PADReplyReadBytes);
    if (name.size() < PADNameMinBytes) {
        if (!name.isEmpty()) Flush();
        return false;
    }
    THVKDeweModuleType moduleType;
    THVKDeweModuleInputRange inputRange;
    std::int32_t channelCount;
    if (!DecodeStatePAD(configuration, name, moduleType, inputRange, channelCount)) return false;
    auto module = std::make_unique<THVKDeweModule>(address, FPort);
    module->FModuleType = moduleType;
    module->FInputRange = inputRange;
    module->FChannelCount = channelCount;
    module->FIsPAD = true;
    FModulesPAD.push_back(std::move(module));
    return true;
}

void THVKDeweModules::FindModules(const TProbeHook& beforeProbe)
{
    if (!FPortOpen) return;
    FModules.clear();
    Flush();
    for (std::int32_t address = 0; address <= DeweMaxAddress; ++address) {
        if (beforeProbe && !beforeProbe(address)) return;
        ProbeDAQP(address, {});
    }
}

void THVKDeweModules::FindPADModules(const TProbeHook& beforeProbe)
{
    if (!FPortOpen) return;
    FModulesPAD.clear();
    Flush();
    for (std::int32_t address = 0; address <= DeweMaxAddress; ++address) {
        if (beforeProbe && !beforeProbe(address)) return;
        ProbePAD(address, PADSearchWait);
    }
}

bool THVKDeweModules::AddModule(std::int32_t address)
{
    if (!FPortOpen || !IsDeweAddress(address)) return false;
    for (int attempt = 0; attempt < Tries; ++attempt) {
        if (attempt > 0) FPort->Wait(RetryWait);
        Flush();
        // The leading CR ends whatever a module may have half-received.
        if (ProbeDAQP(address, QByteArray(1, DeweCR))) return true;
    }
    return false;
}

bool THVKDeweModules::AddModulePAD(std::int32_t address)
{
    if (!FPortOpen || !IsDeweAddress(address)) return false;
    FModules.clear();
    Flush();
    for (int attempt = 0; attempt < Tries; ++attempt) {
        if (attempt > 0) FPort->Wait(RetryWait);
        if (ProbePAD(address, 0)) return true;
    }
    return false;
}

void THVKDeweModules::Clear()
{
    FModules.clear();
    FModulesPAD.clear();
}

THVKDeweModule* THVKDeweModules::GetModule(int i) const
{
    return i >= 0 && i < GetModuleCount() ? FModules[i].get() : nullptr;
}

THVKDeweModule* THVKDeweModules::GetModulePAD(int i) const
{
    return i >= 0 && i < GetModuleCountPAD() ? FModulesPAD[i].get() : nullptr;
}

}  // namespace qx
