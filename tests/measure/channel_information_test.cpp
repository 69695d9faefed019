#include <gtest/gtest.h>

#include <type_traits>

#include "qxbase/measure/channel_information.h"
#include "tests/framework/print_qstring.h"
#include "tests/measure/channel_record.h"

using namespace qx;

// Copy construction derives a new record and leaves out FurtherValue; assignment (a source
// updating its stored record) and moves carry every field.
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
    // Records kept by value in a vector are moved, not copied, when it grows.
    static_assert(std::is_nothrow_move_constructible_v<TQXMSExChannelInformation>);
}

TEST(OperationText, AnUnknownOperationHasNoText)
{
    EXPECT_TRUE(GetOperationText(static_cast<TQXVTOperation>(TQXVTOperationCount)).isEmpty());
}
