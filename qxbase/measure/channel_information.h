#pragma once

#include <QString>
#include <array>
#include <cstdint>

#include "qxbase/framework/color.h"
#include "qxbase/framework/export.h"
#include "qxbase/measure/channel_types.h"
#include "qxbase/measure/vt_operation.h"

namespace qx {

using TQXScalingValues = std::array<double, 6>;
using TQXCoefficients = std::array<double, 7>;

// What a source knows about one of its channels. A new record has empty texts, zero numbers,
// the identity two-point scaling (0, 1, 0, 1) and the option flag set.
//
// Copying: the copy constructor leaves out FurtherValue (a new record derived from another
// starts without it), while copy assignment copies every field, as a source's
// UpdateChannelInformation does. Moves carry every field, so records kept by value in a
// container survive reallocation intact.
class QXBASE_EXPORT TQXMSExChannelInformation {
public:
    TQXMSExChannelInformation() = default;
    TQXMSExChannelInformation(const TQXMSExChannelInformation& other);
    TQXMSExChannelInformation(TQXMSExChannelInformation&&) noexcept = default;
    TQXMSExChannelInformation& operator=(const TQXMSExChannelInformation&) = default;
    TQXMSExChannelInformation& operator=(TQXMSExChannelInformation&&) noexcept = default;
    ~TQXMSExChannelInformation() = default;

    friend bool operator==(const TQXMSExChannelInformation&,
                           const TQXMSExChannelInformation&) = default;

    QString Name;
    QString SecondText;  // the unit or short text of the channel
    QString ThirdText;
    double RangeLow = 0;
    double RangeHigh = 0;
    TQXMSChannelFlags Flags;
    TColor Color = 0;
    std::uint32_t Handle = 0;
    TQXVTOperation Operation = qxvtNone;
    std::int32_t OperationParameter = 0;
    std::int32_t FirstOperandIndex = 0;
    QString FirstOperandName;
    std::int32_t SecondOperandIndex = 0;
    QString SecondOperandName;
    // The four values given at creation (x1, x2, y1, y2 of a two-point scaling), then two that
    // start at 0.
    TQXScalingValues ScalingValues = {0, 1, 0, 1, 0, 0};
    TQXCoefficients Coefficients = {};
    bool OptionFlag = true;
    std::int32_t FurtherValue = 0;
};

}  // namespace qx
