#include "qxbase/config/dewe_scan.h"

#include "qxbase/config/dewe_modules.h"

namespace qx {

namespace {

TDeweModuleSummary Summarize(const THVKDeweModule& module)
{
    return {.Address = module.GetAddress(),
            .IsPAD = module.GetIsPAD(),
            .ModuleType = module.GetModuleType(),
            .ModuleTypeText = module.GetModuleTypeString(),
            .InputRangeText = module.GetInputRangeString(),
            .InputRangeValue = module.GetInputRangeValue(),
            .FilterRangeText = module.GetFilterRangeString(),
            .Remote = module.GetRemote(),
            .ChannelCount = module.GetChannelCount()};
}

}  // namespace

TDeweScanResult ScanDeweModules(std::int32_t portNumber, const TDeweScanProgress& progress)
{
    TDeweScanResult result;
    THVKDeweModules modules;
    result.PortOpen = modules.OpenComm(portNumber);
    if (!result.PortOpen) return result;
    auto hook = [&](bool pad) -> THVKDeweModules::TProbeHook {
        if (!progress) return {};
        return [&progress, &result, pad](std::int32_t address) {
            result.Stopped = !progress(pad, address);
            return !result.Stopped;
        };
    };
    modules.FindModules(hook(false));
    if (!result.Stopped) modules.FindPADModules(hook(true));
    for (int i = 0; i < modules.GetModuleCount(); ++i) result.Modules.push_back(Summarize(*modules.GetModule(i)));
    for (int i = 0; i < modules.GetModuleCountPAD(); ++i)
        result.Modules.push_back(Summarize(*modules.GetModulePAD(i)));
    return result;
}

}  // namespace qx
