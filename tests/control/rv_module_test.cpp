#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <stdexcept>

#include "control_test_support.h"
#include "qxbase/control/rv_module.h"
#include "qxbase/measure/block_buffer.h"
#include "tests/measure/channel_record.h"

using namespace qx;
using namespace qxtest;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

TEST(RVModule, ChannelListOwnsItsRecordsAndRaisesOnABadIndex)
{
    TKSRVModule module;
    auto record = std::make_unique<TQXMSExChannelInformation>(FilledRecord(1));
    const TQXMSExChannelInformation* kept = record.get();
    module.AddChannel(std::make_unique<TQXMSExChannelInformation>());
    module.AddChannel(std::move(record));
    EXPECT_EQ(&module.GetChannelList(1), kept);
    EXPECT_THAT([&] { module.GetChannelList(2); }, ThrowsMessage<ERangeError>(StrEq("List index out of bounds (2)")));
    for (int bad : {-1, INT_MIN}) EXPECT_THROW(module.GetChannelList(bad), ERangeError) << bad;
    EXPECT_THROW(module.AddChannel(nullptr), Exception);
    EXPECT_EQ(module.GetChannelListCount(), 2);
}

TEST(RVModule, UpdateChannelInformationCopiesOnlyTheModuleSettings)
{
    TKSRVModule module;
    module.AddChannel(std::make_unique<TQXMSExChannelInformation>(FilledRecord(1)));
    const TQXMSExChannelInformation update = FilledRecord(2);
    TQXMSExChannelInformation expected = FilledRecord(1);
    expected.SecondText = update.SecondText, expected.ThirdText = update.ThirdText;
    expected.RangeLow = update.RangeLow, expected.RangeHigh = update.RangeHigh;
    expected.Flags = update.Flags, expected.Color = update.Color, expected.Handle = update.Handle;
    expected.OptionFlag = update.OptionFlag, expected.FurtherValue = update.FurtherValue;
    expected.FirstOperandIndex = update.FirstOperandIndex;
    expected.ScalingValues = update.ScalingValues;

    for (int ignored : {-1, 1}) module.UpdateChannelInformation(ignored, update);
    EXPECT_EQ(module.GetChannelList(0), FilledRecord(1));
    module.UpdateChannelInformation(0, update);
    EXPECT_EQ(module.GetChannelList(0), expected);
}

TEST(RVModule, SendDataHandsTheBlocksToOnDataAndLeavesThemToTheCaller)
{
    TKSRVModule module;
    TRVShortdefs defs(1);
    TRVDataDoubleArray data{NewDataDouble(4)}, time{NewDataDouble(4)};
    data[0].data[3] = 2.5;
    module.SendData(defs, data, time, 1.0);  // no handler: nothing happens

    int calls = 0;
    module.OnData = [&](TKSRVModule* sender, const TRVShortdefs& d, const TRVDataDoubleArray& blocks,
                        const TRVDataDoubleArray& times, double start) {
        ++calls;
        EXPECT_TRUE(sender == &module && &d == &defs && start == 42.0);
        EXPECT_TRUE(blocks[0].data == data[0].data && times[0].data == time[0].data);
    };
    module.SendData(defs, data, time, 42.0);
    EXPECT_EQ(calls, 1);
    // Still the caller's: readable, and freed exactly once here (AddressSanitizer checks).
    EXPECT_EQ(data[0].data[3], 2.5);
    FreeDataDoubleArray(data);
    FreeDataDoubleArray(time);
}

TEST(RVModule, PropertiesGetProcessUniqueHandlesAndOnlyEnumerationsKeepChoices)
{
    TKSRVModule module;
    const Variant choices = StringArray(0, {"10 V", "1 V"});
    TKSRVPropertyItem* range = module.AddProperty("Range", "Input range", varQXEnumeration, 1, {}, false, choices);
    TKSRVPropertyItem* gain = module.AddProperty("Gain", "Gain", varDouble, 2.0, {}, true, choices);
    EXPECT_EQ(range->FValue, choices);
    EXPECT_TRUE(gain->FValue.IsNull());
    TQXControlSource source;
    const TQXPropertyHandle other = AddProperty(source, "Range");
    EXPECT_NE(range->GetHandle(), gain->GetHandle());
    EXPECT_TRUE(other != range->GetHandle() && other != gain->GetHandle());
    EXPECT_EQ(module.FindProperty("Gain"), gain);
    TKSRVPropertyList& list = module.GetProperties();
    module.FreeProperties();
    EXPECT_TRUE(list.empty());  // the list itself, not a copy
}

// Written here through a control source property that the item backs, and directly.
TEST(RVModule, WritesGoThroughTheSetterAndRevertWhenRefusedOrFailing)
{
    TKSRVModule module;
    Variant seen;
    bool accept = true;
    TKSRVPropertyItem* item = module.AddProperty(
        "Gain", "Gain", varDouble, Variant(1.0),
        [&](TKSRVPropertyItem* i) {
            seen = i->FCurrentValue;
            if (seen == Variant(-1.0)) throw std::runtime_error("hardware fault");
            if (seen == Variant(9.0)) module.FreeProperties();  // a module rebuilding its set
            return accept;
        },
        false, {});
    auto write = [&](double value) {
        Variant v = value;
        return item->FGetSet(nullptr, false, false, v);
    };
    TQXControlSource source;
    ASSERT_TRUE(source.SetPropertyValue(nullptr, AddProperty(source, "Gain", item->FGetSet), Variant(3.0)));
    EXPECT_EQ(seen, Variant(3.0));
    accept = false;
    EXPECT_EQ(write(4.0), E_FAIL);
    EXPECT_EQ(seen, Variant(4.0));  // the setter saw the new value, then it reverted
    EXPECT_THROW(write(-1.0), std::runtime_error);
    Variant read;
    EXPECT_EQ(item->FGetSet(nullptr, true, false, read), S_OK);
    EXPECT_EQ(read, Variant(3.0));

    item->FReadOnly = true;
    EXPECT_EQ(write(5.0), E_FAIL);
    EXPECT_EQ(seen, Variant(-1.0));  // the setter was not called
    EXPECT_EQ(item->FCurrentValue, Variant(3.0));
    // Freed during its own write: the revert must not touch it (AddressSanitizer checks).
    item->FReadOnly = false;
    EXPECT_EQ(write(9.0), E_FAIL);
    EXPECT_TRUE(module.GetProperties().empty());
}

TEST(RVModule, ChangeNotificationsSetTheirFlagAndTellTheHost)
{
    TKSRVModule module;
    module.ChangedItems();  // without a handler
    module.ResetChangeFlags();
    QStringList log;
    module.OnChanged = [&](TKSRVModule* sender) {
        log << QString("%1%2%3").arg(sender == &module).arg(sender->GetItemsChanged()).arg(sender->GetRegistrationChanged());
    };
    module.UpdateRegistration();
    module.ChangedItems();
    EXPECT_EQ(log, QStringList({"101", "111"}));
    module.ResetChangeFlags();
    EXPECT_FALSE(module.GetItemsChanged() || module.GetRegistrationChanged());

    auto owned = std::make_unique<TKSRVModule>();
    owned->OnChanged = [&](TKSRVModule*) { owned.reset(); };
    owned->ChangedItems();  // the host may drop the module from the notification
    EXPECT_EQ(owned, nullptr);
}
