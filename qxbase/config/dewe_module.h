#pragma once

#include <QString>
#include <cstdint>
#include <memory>

#include "qxbase/config/dewe_module_types.h"
#include "qxbase/framework/export.h"

namespace qx {

class TSerialLine;

// One amplifier module at one bus address. It talks through the line of the collection that
// found it without owning it: once that line is closed or replaced, every command fails.
class QXBASE_EXPORT THVKDeweModule {
public:
    THVKDeweModule(std::int32_t address, std::weak_ptr<TSerialLine> port);

    std::int32_t GetAddress() const { return FAddress; }
    THVKDeweModuleType GetModuleType() const { return FModuleType; }
    THVKDeweModuleInputRange GetInputRange() const { return FInputRange; }
    THVKDeweModuleFilterRange GetFilterRange() const { return FFilterRange; }
    bool GetRemote() const { return FRemote; }
    std::int32_t GetChannelCount() const { return FChannelCount; }
    bool GetIsPAD() const { return FIsPAD; }

    QString GetModuleTypeString() const;
    QString GetInputRangeString() const;
    QString GetFilterRangeString() const;
    double GetInputRangeValue() const;

    // The setters send the DAQP set command whatever the module kind; see UpdateConfiguration.
    void SetInputRange(THVKDeweModuleInputRange inputRange);
    void SetFilterRange(THVKDeweModuleFilterRange filterRange);
    void SetRemote(bool remote);
    // "Next" steps towards the start of the table (larger range, wider filter), "Previous"
    // towards its end. Each checks one end of the type's span only: Next moves while the first
    // index lies below the current one, Previous while the last lies above it, so Previous
    // from dirNone selects index 1 whatever the type. PAD types have no filter span, so the
    // filter steps do nothing there.
    void SetNextInputRange();
    void SetPreviousInputRange();
    void SetNextFilterRange();
    void SetPreviousFilterRange();

    // Sends the set command and reads the 3-byte acknowledgement. Only when the write succeeds
    // and exactly 3 bytes come back are the new values stored and true returned; otherwise the
    // fields keep their old values. False without sending for a value outside its enumeration,
    // an address outside the bus or when the line is gone.
    bool UpdateConfiguration(THVKDeweModuleInputRange inputRange, THVKDeweModuleFilterRange filterRange,
                             bool remote);
    // PAD ranges are read from the module, never written: does nothing.
    void UpdateConfigurationPAD(THVKDeweModuleInputRange inputRange);
    // Reads one PAD channel, two attempts. False, with `value` unchanged, for a channel outside
    // 0 .. channel count - 1 or an address outside the bus (nothing is sent), when the line is
    // gone, or when neither attempt brings a number.
    bool ReadPADChannel(std::int32_t channel, double& value);

private:
    friend class THVKDeweModules;

    std::weak_ptr<TSerialLine> FPort;
    bool FRemote = false;
    std::int32_t FAddress = 0;
    THVKDeweModuleFilterRange FFilterRange = firNone;
    THVKDeweModuleInputRange FInputRange = dirNone;
    THVKDeweModuleType FModuleType = dmtNone;
    std::int32_t FChannelCount = 0;
    bool FIsPAD = false;
};

}  // namespace qx
