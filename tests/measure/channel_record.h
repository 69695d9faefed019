#pragma once

#include "qxbase/measure/channel_information.h"

// A record with every field set away from its default, each to its own value and differently
// for each seed, so that a copied, skipped or swapped field shows.
inline qx::TQXMSExChannelInformation FilledRecord(int Seed)
{
    using namespace qx;
    TQXMSExChannelInformation r;
    const QString s = QString::number(Seed);
    r.Name = "name" + s, r.SecondText = "unit" + s, r.ThirdText = "third" + s;
    r.FirstOperandName = "op1-" + s, r.SecondOperandName = "op2-" + s;
    r.RangeLow = -Seed, r.RangeHigh = Seed;
    r.Flags = {static_cast<TQXMSChannelFlag>(Seed % 8)};
    r.Color = static_cast<TColor>(Seed + 1), r.Handle = static_cast<std::uint32_t>(Seed + 2);
    r.Operation = static_cast<TQXVTOperation>(Seed % 8 + 1);
    r.OperationParameter = Seed + 3, r.FirstOperandIndex = Seed + 4, r.SecondOperandIndex = Seed + 5;
    r.FurtherValue = Seed + 6;
    r.ScalingValues.fill(Seed + 7), r.Coefficients.fill(Seed + 8);
    r.OptionFlag = Seed % 2 == 0;
    return r;
}
