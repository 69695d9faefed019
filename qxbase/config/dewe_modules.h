#pragma once

#include <QByteArray>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "qxbase/config/dewe_module.h"
#include "qxbase/config/dewe_module_types.h"
#include "qxbase/framework/export.h"
#include "qxbase/framework/serial_line.h"

namespace qx {

// The line the modules expect: 9600 baud, 8N1, no flow control; a read returns after at most
// 100 ms with what has arrived, a write may take 30 ms; 1024-byte queues.
inline constexpr TSerialLineSettings DeweLineSettings{.BaudRate = 9600, .ReadTimeout = 100, .WriteTimeout = 30,
                                                      .QueueSize = 1024};

// The modules on one serial line: the open port and the DAQP and PAD modules found on it.
// Every call blocks its caller for the line's time-outs (a search of the whole bus takes some
// seconds) and reports failure only as false, an absent module or unchanged fields. One thread
// at a time may use a collection.
class QXBASE_EXPORT THVKDeweModules {
public:
    THVKDeweModules();
    ~THVKDeweModules();
    THVKDeweModules(const THVKDeweModules&) = delete;
    THVKDeweModules& operator=(const THVKDeweModules&) = delete;

    // Opens the port "COM"+portNumber (the device ComPortDevice names) with DeweLineSettings and
    // wakes the bus (CR CR, 50 ms, input discarded). A port already open is closed first, even
    // when the new one fails; modules found on it can no longer send. False when the device
    // does not open.
    bool OpenComm(std::int32_t portNumber);
    // The same on a line opened elsewhere (another transport, a test line); false for null.
    bool OpenComm(std::unique_ptr<TSerialLine> line);
    bool GetPortOpen() const { return FPortOpen; }

    // Asked before each address is probed; false stops the search there.
    using TProbeHook = std::function<bool(std::int32_t address)>;

    // Empty the DAQP (PAD) list and probe every bus address once (until `beforeProbe`, when
    // given, says stop); nothing happens while the port is closed.
    void FindModules(const TProbeHook& beforeProbe = {});
    void FindPADModules(const TProbeHook& beforeProbe = {});
    // Probe one address, up to 3 tries 50 ms apart, and append the module found. False when the
    // port is closed, the address is outside 0..DeweMaxAddress or no try succeeds.
    // AddModulePAD empties the DAQP list (not the PAD list) before it probes.
    bool AddModule(std::int32_t address);
    bool AddModulePAD(std::int32_t address);

    // Decodes an 11-character DAQP status reply ("!", two characters not read, type, input and
    // filter codes, remote digit, CR). All outputs are cleared first; false for a short reply,
    // a missing "!" or an unknown type code. Ranges not in the type's span stay unassigned; the
    // remote digit is not read for charge and frequency modules. The reply class is not used.
    static bool DecodeState(const QByteArray& reply, TIntModuleType replyClass, THVKDeweModuleType& moduleType,
                            THVKDeweModuleInputRange& inputRange, THVKDeweModuleFilterRange& filterRange,
                            bool& remote);
    // Decodes the PAD configuration reply (exactly 10 characters, "!" first, CR last; range code
    // at characters 4-5) and name reply (name from character 4 up to the first CR). False for a
    // malformed reply or a name other than "PAD-V8", "PAD-VTH", "6013" or "PAD-TH8".
    static bool DecodeStatePAD(const QByteArray& configurationReply, const QByteArray& nameReply,
                               THVKDeweModuleType& moduleType, THVKDeweModuleInputRange& inputRange,
                               std::int32_t& channelCount);

    void Clear();
    // Null when i is negative or not below the count.
    THVKDeweModule* GetModule(int i) const;
    THVKDeweModule* GetModulePAD(int i) const;
    int GetModuleCount() const { return int(FModules.size()); }
    int GetModuleCountPAD() const { return int(FModulesPAD.size()); }

private:
    void CloseComm();
    void Flush();
    bool ProbeDAQP(std::int32_t address, const QByteArray& prefix);
    bool ProbePAD(std::int32_t address, int replyWait);

    std::shared_ptr<TSerialLine> FPort;
    std::vector<std::unique_ptr<THVKDeweModule>> FModules;
    std::vector<std::unique_ptr<THVKDeweModule>> FModulesPAD;
    bool FPortOpen = false;
};

// The collection the acquisition packages create and free.
QXBASE_EXPORT extern std::unique_ptr<THVKDeweModules> FDeweModules;

}  // namespace qx
