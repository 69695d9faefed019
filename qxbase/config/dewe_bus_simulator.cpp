#include "qxbase/config/dewe_bus_simulator.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>

#include "qxbase/config/dewe_protocol.h"

namespace qx {

namespace {

constexpr char CR = '\r';
constexpr auto SplitGap = std::chrono::milliseconds(5);
// Bytes that decode as nothing: no "!" or ">" prompt, a NUL early, bytes above 127.
constexpr std::array<char, 16> GarbagePattern = {'?', '\0', '\xFF', '\x7F', '#', '\x80', '\x1B', '~',
                                                 '\x01', 'z', 'q', '\x9C', '\xA5', '&', '%', '\x10'};

QByteArray Hex2(int value)
{
    return QByteArray::number(value & 0xFF, 16).toUpper().rightJustified(2, '0');
}

// A field of hexadecimal digits; -1 when it is not one.
int ParseHex(const QByteArray& text)
{
    bool ok = false;
    const int value = text.toInt(&ok, 16);
    return ok && !text.isEmpty() && !text.startsWith('+') && !text.startsWith('-') ? value : -1;
}

void CheckAddress(int address)
{
    if (!IsDeweAddress(address))
        throw EDeweBusSimulatorError(QStringLiteral("Bus address %1 is outside 0..%2").arg(address).arg(DeweMaxAddress));
}

QByteArray Garbage(qsizetype length)
{
    QByteArray bytes;
    for (qsizetype i = 0; i < length; ++i) bytes += GarbagePattern[i % GarbagePattern.size()];
    return bytes;
}

}  // namespace

struct TDeweBusSimulator::TModule {
    bool IsPAD = false;
    TDeweSimDAQPState DAQP;
    QByteArray Name;
    std::uint8_t RangeCode = 0;
    std::vector<QByteArray> ChannelTexts;
    TDeweSimFault Fault = dsfNone;
    int FaultFirst = 0;
    int FaultCount = -1;
    int Replies = 0;

    TDeweSimFault NextFault()
    {
        const int reply = Replies++;
        const bool hit = reply >= FaultFirst && (FaultCount < 0 || reply < FaultFirst + FaultCount);
        return hit ? Fault : dsfNone;
    }
};

TDeweBusSimulator::TDeweBusSimulator()
{
    termios raw{};
    cfmakeraw(&raw);
    std::array<char, 256> name{};
    if (openpty(&FMaster, &FSlave, name.data(), &raw, nullptr) != 0)
        throw EDeweBusSimulatorError(QStringLiteral("Cannot open a pseudo-terminal: %1").arg(qt_error_string(errno)));
    tcsetattr(FMaster, TCSANOW, &raw);
    fcntl(FMaster, F_SETFD, FD_CLOEXEC);
    fcntl(FSlave, F_SETFD, FD_CLOEXEC);
    // A full input queue on the far side must not stall the bus: surplus replies are dropped.
    fcntl(FMaster, F_SETFL, fcntl(FMaster, F_GETFL) | O_NONBLOCK);
    if (pipe2(FWake, O_CLOEXEC) != 0) {
        const int error = errno;
        CloseAll();
        throw EDeweBusSimulatorError(QStringLiteral("Cannot open a pipe: %1").arg(qt_error_string(error)));
    }
    FDevicePath = QString::fromLocal8Bit(name.data());
    // Our own slave descriptor stays open so the master never sees a hang-up between the
    // driver's sessions.
    try {
        FThread = std::thread([this] { Run(); });
    } catch (...) {
        CloseAll();
        throw;
    }
}

TDeweBusSimulator::~TDeweBusSimulator()
{
    const char stop = 0;
    while (write(FWake[1], &stop, 1) < 0 && errno == EINTR) {
    }
    FThread.join();
    CloseAll();
}

void TDeweBusSimulator::CloseAll()
{
    for (int* fd : {&FWake[0], &FWake[1], &FMaster, &FSlave}) {
        if (*fd >= 0) close(*fd);
        *fd = -1;
    }
}

void TDeweBusSimulator::Run()
{
    QByteArray pending;
    std::array<char, 256> buffer{};
    while (true) {
        std::array<pollfd, 2> fds{{{FMaster, POLLIN, 0}, {FWake[0], POLLIN, 0}}};
        if (poll(fds.data(), fds.size(), -1) < 0) {
            if (errno == EINTR) continue;
            return;
        }
        if (fds[1].revents != 0) return;
        if ((fds[0].revents & POLLIN) == 0) {
            // Hang-up or error without data: wait for the stop signal a moment instead of spinning.
            pollfd wake{FWake[0], POLLIN, 0};
            if (poll(&wake, 1, 10) > 0) return;
            continue;
        }
        const ssize_t count = read(FMaster, buffer.data(), buffer.size());
        if (count <= 0) continue;
        const QByteArray bytes(buffer.data(), count);
        {
            std::scoped_lock lock(FMutex);
            FReceived += bytes;
        }
        pending += bytes;
        for (qsizetype end = pending.indexOf(CR); end >= 0; end = pending.indexOf(CR)) {
            const QByteArray command = pending.left(end);
            pending.remove(0, end + 1);
            if (!command.isEmpty()) HandleCommand(command);
        }
    }
}

void TDeweBusSimulator::HandleCommand(const QByteArray& command)
{
    enum TKind { kNone, kStatus, kSet, kConfiguration, kName, kChannel };
    QByteArray reply;
    TDeweSimFault fault = dsfNone;
    {
        std::scoped_lock lock(FMutex);
        const bool daqpCommand = command.startsWith("??") || command.startsWith("##");
        const int address = ParseHex(daqpCommand ? command.mid(2, 2) : command.mid(1, 2));
        const auto found = FModules.find(address);
        if (found == FModules.end()) return;
        TModule& module = *found->second;
        const QByteArray aa = Hex2(address);
        TKind kind = kNone;
        if (!module.IsPAD && command.startsWith("??") && command.size() == 4) kind = kStatus;
        else if (!module.IsPAD && command.startsWith("##") && command.size() >= 9) kind = kSet;
        else if (module.IsPAD && command == "$" + aa + "2") kind = kConfiguration;
        else if (module.IsPAD && command == "$" + aa + "M") kind = kName;
        else if (module.IsPAD && command.startsWith('#') && command.size() == 4) kind = kChannel;
        if (kind == kNone) return;
        fault = module.NextFault();
        // A silent module is gone: it neither answers nor acts.
        if (fault == dsfSilent) return;
        switch (kind) {
        case kStatus: {
            const TDeweSimDAQPState& s = module.DAQP;
            const QByteArray r = s.Remote ? "1" : "0";
            reply = "!" + aa + Hex2(s.TypeCode) + Hex2(s.InputCode) + Hex2(s.FilterCode);
            if (s.TypeCode == 5) reply += "0" + QByteArray(1, CR) + "199" + r + CR;
            else if (s.TypeCode == 8) reply += "1" + r + CR;
            else reply += r + CR;
            break;
        }
        case kSet: {
            const QByteArray tail = command.mid(8);
            const QByteArray expected = module.DAQP.TypeCode == 5 ? "0199" : module.DAQP.TypeCode == 8 ? "1" : "";
            const int input = ParseHex(command.mid(4, 2));
            const int filter = ParseHex(command.mid(6, 2));
            const bool valid = input >= 0 && filter >= 0 && tail.size() == expected.size() + 1 &&
                               tail.startsWith(expected) && (tail.endsWith('0') || tail.endsWith('1'));
            if (valid)
                module.DAQP = {module.DAQP.TypeCode, std::uint8_t(input), std::uint8_t(filter), tail.endsWith('1')};
            reply = (valid ? "!" : "?") + aa;
            break;
        }
        case kConfiguration: reply = "!" + aa + Hex2(module.RangeCode) + "0600" + CR; break;
        case kName: reply = "!" + aa + module.Name + CR; break;
        case kChannel: {
            const int channel = ParseHex(command.mid(3, 1));
            if (channel >= 0 && channel < int(module.ChannelTexts.size()))
                reply = ">" + module.ChannelTexts[channel] + CR;
            else
                reply = "?" + aa + CR;
            break;
        }
        case kNone: return;
        }
    }
    switch (fault) {
    case dsfNone: Send(reply); break;
    case dsfSilent: break;
    case dsfShortReply: Send(reply.left(qMax<qsizetype>(1, reply.size() / 2))); break;
    case dsfLongReply: Send(reply + "XYZ"); break;
    case dsfGarbage: Send(Garbage(reply.size())); break;
    case dsfSplitReply:
        Send(reply.left(reply.size() / 2));
        std::this_thread::sleep_for(SplitGap);
        Send(reply.mid(reply.size() / 2));
        break;
    }
}

void TDeweBusSimulator::Send(const QByteArray& bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t count = write(FMaster, bytes.constData() + done, size_t(bytes.size() - done));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return;
        done += count;
    }
}

TDeweBusSimulator::TModule& TDeweBusSimulator::ModuleAt(int address)
{
    const auto found = FModules.find(address);
    if (found == FModules.end())
        throw EDeweBusSimulatorError(QStringLiteral("No simulated module at address %1").arg(address));
    return *found->second;
}

void TDeweBusSimulator::AddDAQPModule(int address, std::uint8_t typeCode, std::uint8_t inputCode,
                                      std::uint8_t filterCode, bool remote)
{
    CheckAddress(address);
    auto module = std::make_unique<TModule>();
    module->DAQP = {typeCode, inputCode, filterCode, remote};
    std::scoped_lock lock(FMutex);
    FModules[address] = std::move(module);
}

void TDeweBusSimulator::AddPADModule(int address, const QByteArray& name, std::uint8_t rangeCode,
                                     std::vector<QByteArray> channelTexts)
{
    CheckAddress(address);
    auto module = std::make_unique<TModule>();
    module->IsPAD = true;
    module->Name = name;
    module->RangeCode = rangeCode;
    module->ChannelTexts = std::move(channelTexts);
    std::scoped_lock lock(FMutex);
    FModules[address] = std::move(module);
}

void TDeweBusSimulator::SetPADChannelText(int address, int channel, const QByteArray& text)
{
    std::scoped_lock lock(FMutex);
    TModule& module = ModuleAt(address);
    if (!module.IsPAD || channel < 0 || channel >= int(module.ChannelTexts.size()))
        throw EDeweBusSimulatorError(QStringLiteral("No PAD channel %1 at address %2").arg(channel).arg(address));
    module.ChannelTexts[channel] = text;
}

void TDeweBusSimulator::RemoveModule(int address)
{
    std::scoped_lock lock(FMutex);
    FModules.erase(address);
}

void TDeweBusSimulator::SetFault(int address, TDeweSimFault fault, int first, int count)
{
    std::scoped_lock lock(FMutex);
    TModule& module = ModuleAt(address);
    module.Fault = fault;
    module.FaultFirst = first;
    module.FaultCount = count;
}

void TDeweBusSimulator::PopulateDemoBus()
{
    AddDAQPModule(1, 0x00, 0x01, 0x02, true);    // DAQP-V, 10V, 1kHz
    AddDAQPModule(2, 0x02, 0x02, 0x03, false);   // DAQP-Bridge, 1mV, 100Hz
    AddDAQPModule(4, 0x04, 0x05, 0x00, true);    // DAQP-DMM, 10V, 20kHz
    AddDAQPModule(5, 0x05, 0x01, 0x74, false);   // DAQP-Charge, 20dB, 10kHz
    AddDAQPModule(8, 0x08, 0x02, 0x04, false);   // DAQP-Freq, 10 kHz, 1 kHz
    AddPADModule(10, "PAD-V8", 0x08,
                 {"+01.250", "-00.500", "+09.999", "+00.000", "+02.500", "-03.750", "+05.000", "-07.125"});
    AddPADModule(12, "6013", 0x20, {"+021.50", "+022.75", "-010.00"});
    AddPADModule(20, "PAD-VTH", 0x0F,
                 {"+023.40", "+024.10", "+100.00", "+000.00", "-005.20", "+250.00", "+019.90", "+020.00"});
}

std::optional<TDeweSimDAQPState> TDeweBusSimulator::GetDAQPState(int address) const
{
    std::scoped_lock lock(FMutex);
    const auto found = FModules.find(address);
    if (found == FModules.end() || found->second->IsPAD) return std::nullopt;
    return found->second->DAQP;
}

QByteArray TDeweBusSimulator::GetReceived() const
{
    std::scoped_lock lock(FMutex);
    return FReceived;
}

void TDeweBusSimulator::ClearReceived()
{
    std::scoped_lock lock(FMutex);
    FReceived.clear();
}

}  // namespace qx
