#include "qxbase/measure/channel_information.h"

namespace qx {

TQXMSExChannelInformation::TQXMSExChannelInformation(const TQXMSExChannelInformation& other)
    : Name(other.Name),
      SecondText(other.SecondText),
      ThirdText(other.ThirdText),
      RangeLow(other.RangeLow),
      RangeHigh(other.RangeHigh),
      Flags(other.Flags),
      Color(other.Color),
      Handle(other.Handle),
      Operation(other.Operation),
      OperationParameter(other.OperationParameter),
      FirstOperandIndex(other.FirstOperandIndex),
      FirstOperandName(other.FirstOperandName),
      SecondOperandIndex(other.SecondOperandIndex),
      SecondOperandName(other.SecondOperandName),
      ScalingValues(other.ScalingValues),
      Coefficients(other.Coefficients),
      OptionFlag(other.OptionFlag)
{
    // FurtherValue keeps its default: it belongs to the record it was set on.
}

}  // namespace qx
