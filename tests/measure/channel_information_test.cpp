#include <gtest/gtest.h>

#include <vector>

#include "qxbase/measure/channel_information.h"
#include "tests/framework/print_qstring.h"
#include "tests/measure/channel_record.h"

using namespace qx;

// A new record has the identity scaling and the option flag set. Copy construction derives a
// new record and leaves out FurtherValue; assignment (a source updating its stored record) and
// moves carry every field.
TEST(ChannelInformation, DefaultsAndCopyRules)
{
    const TQXMSExChannelInformation fresh;
    EXPECT_TRUE(fresh.OptionFlag);
    EXPECT_EQ(fresh.ScalingValues, (TQXScalingValues{0, 1, 0, 1, 0, 0}));

    const TQXMSExChannelInformation source = FilledRecord(1);
    TQXMSExChannelInformation copy(source);
    TQXMSExChannelInformation expected = FilledRecord(1);
    expected.FurtherValue = 0;
    EXPECT_EQ(copy, expected);
    copy = source;
    EXPECT_EQ(TQXMSExChannelInformation(std::move(copy)), source);

    // Records kept by value must not lose the value when the vector grows.
    std::vector<TQXMSExChannelInformation> list;
    for (int i = 0; i < 33; ++i) list.push_back(FilledRecord(1));
    for (const auto& r : list) EXPECT_EQ(r.FurtherValue, source.FurtherValue);
}

TEST(OperationText, NamesEveryOperation)
{
    EXPECT_EQ(GetOperationText(qxvtMax), "Maximum valueof buffer ");
    EXPECT_EQ(GetOperationText(qxvtInverse), "Invert waveform");
    EXPECT_TRUE(GetOperationText(static_cast<TQXVTOperation>(TQXVTOperationCount)).isEmpty());
}
