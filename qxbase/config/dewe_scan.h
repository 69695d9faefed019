#pragma once

#include <QString>
#include <cstdint>
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
    std::vector<TDeweModuleSummary> Modules;  // DAQP modules first, then PAD, each by address
};

// Opens "COM"+portNumber, searches the bus for DAQP and then PAD modules and closes the port.
// PortOpen is false (and no module listed) when the port does not open. Blocks for the whole
// search: up to about ten seconds on a silent line.
QXBASE_EXPORT TDeweScanResult ScanDeweModules(std::int32_t portNumber);

}  // namespace qx
