#include <gtest/gtest.h>

#include <vector>

#include "qxbase/measure/channel_information.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

namespace {

TQXMSExChannelInformation FilledRecord()
{
    TQXMSExChannelInformation r;
    r.Name = r.SecondText = r.ThirdText = r.FirstOperandName = r.SecondOperandName = "AI 1";
    r.RangeLow = r.RangeHigh = -10;
    r.Flags = {msexVirtualChannel, msexTimeData};
    r.Color = clRed;
    r.Handle = 17;
    r.Operation = qxvtSum;
    r.OperationParameter = r.FirstOperandIndex = r.SecondOperandIndex = 3;
    r.ScalingValues = {1, 2, 3, 4, 5, 6};
    r.Coefficients = {1, 2, 3, 4, 5, 6, 7};
    r.OptionFlag = false;
    r.FurtherValue = 99;
    return r;
}

}  // namespace

// A new record has the identity scaling and the option flag set. Copy construction derives a
// new record and leaves out FurtherValue; assignment (a source updating its stored record) and
// moves carry every field.
TEST(ChannelInformation, DefaultsAndCopyRules)
{
    const TQXMSExChannelInformation fresh;
    EXPECT_TRUE(fresh.OptionFlag);
    EXPECT_EQ(fresh.ScalingValues, (TQXScalingValues{0, 1, 0, 1, 0, 0}));

    const TQXMSExChannelInformation source = FilledRecord();
    TQXMSExChannelInformation copy(source);
    TQXMSExChannelInformation expected = FilledRecord();
    expected.FurtherValue = 0;
    EXPECT_EQ(copy, expected);
    copy = source;
    EXPECT_EQ(TQXMSExChannelInformation(std::move(copy)), source);

    // Records kept by value must not lose the value when the vector grows.
    std::vector<TQXMSExChannelInformation> list;
    for (int i = 0; i < 33; ++i) list.push_back(FilledRecord());
    for (const auto& r : list) EXPECT_EQ(r.FurtherValue, 99);
}

TEST(OperationText, NamesEveryOperation)
{
    EXPECT_EQ(GetOperationText(qxvtMax), "Maximum valueof buffer ");
    EXPECT_EQ(GetOperationText(qxvtInverse), "Invert waveform");
    EXPECT_TRUE(GetOperationText(static_cast<TQXVTOperation>(TQXVTOperationCount)).isEmpty());
}
