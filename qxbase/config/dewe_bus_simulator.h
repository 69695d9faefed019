#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/export.h"

namespace qx {

// The simulator cannot open its pseudo-terminal, or is given a bad address or channel.
class QXBASE_EXPORT EDeweBusSimulatorError : public Exception {
public:
    using Exception::Exception;
};

// How a simulated module spoils a reply.
enum TDeweSimFault : std::uint8_t {
    dsfNone,
    dsfSilent,       // no reply, and a set command is not carried out
    dsfShortReply,   // the first half of the reply only
    dsfLongReply,    // the reply followed by three more bytes
    dsfGarbage,      // as many bytes as the reply, starting with a NUL-bearing non-prompt
    dsfSplitReply,   // the reply in two pieces a few milliseconds apart, well within a read time-out
};

// The state of a simulated DAQP module, in wire codes.
struct TDeweSimDAQPState {
    std::uint8_t TypeCode = 0;
    std::uint8_t InputCode = 0;
    std::uint8_t FilterCode = 0;
    bool Remote = false;
};

// A bus of DAQP and PAD amplifier modules on the far side of a pseudo-terminal: open
// GetDevicePath() as a serial port (or point QX_COM<n> at it) and the modules configured here
// answer the status, set, configuration, name and channel commands, with faults on demand.
// A worker thread answers; it starts in the constructor and is joined by the destructor. All
// members may be called from any thread while the bus runs.
class QXBASE_EXPORT TDeweBusSimulator {
public:
    // Raises EDeweBusSimulatorError when no pseudo-terminal can be opened.
    TDeweBusSimulator();
    ~TDeweBusSimulator();
    TDeweBusSimulator(const TDeweBusSimulator&) = delete;
    TDeweBusSimulator& operator=(const TDeweBusSimulator&) = delete;

    // The serial device the driver opens, such as /dev/pts/3.
    QString GetDevicePath() const { return FDevicePath; }

    // Place a module at an address (replacing one that is there). Type, range and filter are
    // wire codes, so unknown ones can be simulated too. A PAD module has one channel per text;
    // each text is what it sends between the prompt ">" and CR, such as "+05.123". Addresses
    // outside the bus raise EDeweBusSimulatorError.
    void AddDAQPModule(int address, std::uint8_t typeCode, std::uint8_t inputCode, std::uint8_t filterCode,
                       bool remote);
    void AddPADModule(int address, const QByteArray& name, std::uint8_t rangeCode,
                      std::vector<QByteArray> channelTexts);
    // Raises EDeweBusSimulatorError when there is no PAD module or no such channel.
    void SetPADChannelText(int address, int channel, const QByteArray& text);
    void RemoveModule(int address);
    // Replies number first .. first + count - 1 of the module (counted from its first reply,
    // faulty ones included) get the fault; count < 0 means every reply from first on, so
    // (dsfSilent, n) is a module that vanishes after n replies. Raises for an empty address.
    void SetFault(int address, TDeweSimFault fault, int first = 0, int count = -1);
    // A small bus for demonstrations: five DAQP modules (1, 2, 4, 5, 8) and three PAD modules
    // (10, 12, 20), one of each reply class.
    void PopulateDemoBus();

    // The state of the DAQP module at address, as changed by set commands; empty when none.
    std::optional<TDeweSimDAQPState> GetDAQPState(int address) const;
    // Every byte received from the driver so far.
    QByteArray GetReceived() const;
    void ClearReceived();

private:
    struct TModule;

    void CloseAll();
    void Run();
    void HandleCommand(const QByteArray& command);
    void Send(const QByteArray& bytes);
    TModule& ModuleAt(int address);

    int FMaster = -1;
    int FSlave = -1;
    int FWake[2] = {-1, -1};
    QString FDevicePath;
    mutable std::mutex FMutex;
    std::map<int, std::unique_ptr<TModule>> FModules;
    QByteArray FReceived;
    std::thread FThread;
};

}  // namespace qx
