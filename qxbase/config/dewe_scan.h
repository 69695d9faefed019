#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <vector>

#include "qxbase/config/dewe_module_types.h"
#include "qxbase/framework/export.h"

namespace qx {

// What a host shows of one module found on the bus.
struct TDeweModuleSummary {
    std::int32_t Address = 0;
    bool IsPAD = false;
    THVKDeweModuleType ModuleType = dmtNone;
    QString ModuleTypeText;
    QString InputRangeText;
    double InputRangeValue = 0;
    QString FilterRangeText;
    bool Remote = false;
    std::int32_t ChannelCount = 0;
};

struct TDeweScanResult {
    bool PortOpen = false;
    bool Stopped = false;                     // the progress callback ended the search early
    std::vector<TDeweModuleSummary> Modules;  // DAQP modules first, then PAD, each by address
};

// Told before each address is probed: the family searched (PAD after DAQP) and the address.
// Returning false stops the search; what was found so far is kept.
using TDeweScanProgress = std::function<bool(bool pad, std::int32_t address)>;

// Opens "COM"+portNumber, searches the bus for DAQP and then PAD modules and closes the port.
// PortOpen is false (and no module listed) when the port does not open. Blocks for the whole
// search, up to about ten seconds on a silent line; `progress` is called on the caller's thread.
QXBASE_EXPORT TDeweScanResult ScanDeweModules(std::int32_t portNumber, const TDeweScanProgress& progress = {});

}  // namespace qx
