#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <tuple>

#include "qxbase/config/dewe_modules.h"
#include "tests/config/memory_serial_line.h"
#include "tests/framework/print_qstring.h"

using namespace qx;
using qx::test::TMemorySerialLine;
using Pieces = std::vector<QByteArray>;

namespace {

// Each command gets its listed pieces, the n-th time the n-th entry (the last one repeats).
TMemorySerialLine::TResponder Bus(std::map<QByteArray, std::vector<Pieces>> table)
{
    auto calls = std::make_shared<std::map<QByteArray, std::size_t>>();
    return [table = std::move(table), calls](const QByteArray& written) {
        const auto found = table.find(written);
        if (found == table.end()) return Pieces{};
        const std::size_t n = (*calls)[written]++;
        return found->second[std::min(n, found->second.size() - 1)];
    };
}

class DeweDriver : public ::testing::Test {
protected:
    void Open(TMemorySerialLine::TResponder responder = {})
    {
        auto owned = std::make_unique<TMemorySerialLine>(std::move(responder));
        line = owned.get();
        ASSERT_TRUE(modules.OpenComm(std::move(owned)));
        line->FWritten.clear();
        line->FReads.clear();
        line->FWaits.clear();
    }

    THVKDeweModule& OnlyModule()
    {
        EXPECT_EQ(modules.GetModuleCount(), 1);
        return *modules.GetModule(0);
    }

    THVKDeweModules modules;
    TMemorySerialLine* line = nullptr;
};

}  // namespace

TEST_F(DeweDriver, OpeningWakesTheBusAndDiscardsWhatAnswers)
{
    auto owned = std::make_unique<TMemorySerialLine>([](const QByteArray&) { return Pieces{"noise"}; });
    TMemorySerialLine& raw = *owned;
    EXPECT_FALSE(modules.OpenComm(std::unique_ptr<TSerialLine>()));
    ASSERT_TRUE(modules.OpenComm(std::move(owned)));
    EXPECT_EQ(raw.FWritten, std::vector<QByteArray>{"\r\r"});
    EXPECT_EQ(raw.FWaits, std::vector<int>{50});
    EXPECT_TRUE(raw.Unread().isEmpty());
}

// Reply tails, short replies, a reply split over two read time-outs and garbage; the timing
// that only a real line gives is left to dewe_serial_bus_test.
TEST_F(DeweDriver, FindModulesReadsEachReplyClassAndPassesOverBadReplies)
{
    Open(Bus({{"??00\r", {{"!000205031\r"}}},
              {"??01\r", {{"!0105010F0\r1991\r"}}},     // charge: 5 more bytes
              {"??02\r", {{"!020802041\r1"}}},           // frequency: 1 more byte
              {"??03\r", {{"!0305000F0\r1", "99"}}},    // charge tail short: drained
              {"??04\r", {{"!040000", "001\r"}}},        // split: passed over, rest drained
              {"??05\r", {{QByteArray("?\0\xFF\x7F#\x80\x1B~\x01zq", 11)}}},
              {"??1A\r", {{"!1A0605041\r"}}}}));
    modules.FindModules();
    ASSERT_EQ(line->FWritten.size(), 33u);
    EXPECT_EQ(std::tuple(line->FWritten.front(), line->FWritten.back()), std::tuple("??00\r", "??20\r"));
    EXPECT_TRUE(line->FWaits.empty());
    const std::vector<int> reads(line->FReads.begin(), line->FReads.begin() + 11);
    EXPECT_EQ(reads, (std::vector<int>{255, 11, 11, 5, 11, 1, 11, 5, 255, 11, 255}));
    EXPECT_TRUE(line->Unread().isEmpty());
    std::vector<std::tuple<int, THVKDeweModuleType, THVKDeweModuleInputRange, THVKDeweModuleFilterRange, bool>> found;
    for (int i = 0; i < modules.GetModuleCount(); ++i) {
        const THVKDeweModule& m = *modules.GetModule(i);
        found.emplace_back(m.GetAddress(), m.GetModuleType(), m.GetInputRange(), m.GetFilterRange(), m.GetRemote());
    }
    EXPECT_EQ(found, (decltype(found){{0, daqpBRIDGE, dirBRIDGE0_1mV, firBRIDGE100Hz, true},
                                      {1, daqpCHARGE, dirCHARGE20dB, firCHARGE1kHz, false},
                                      {2, daqpFreq, dirFREQ10kHz, firFREQ1kHz, false},
                                      {3, daqpCHARGE, dirCHARGE0dB, firCHARGE1kHz, false},
                                      {26, daqpUV, dirUV500UV, firUV10Hz, true}}));
    EXPECT_DOUBLE_EQ(modules.GetModule(4)->GetInputRangeValue(), 0.0005);
    EXPECT_EQ(modules.GetModule(5), nullptr);
    EXPECT_EQ(modules.GetModule(-1), nullptr);

    modules.FindModules();  // a new search replaces the list
    EXPECT_EQ(modules.GetModuleCount(), 5);
}

TEST_F(DeweDriver, AddModuleTriesThreeTimesWithALeadingCR)
{
    Open(Bus({{"\r??05\r", {{}, {}, {"!050400001\r"}}}}));
    EXPECT_TRUE(modules.AddModule(5));
    EXPECT_EQ(line->FWritten, (std::vector<QByteArray>{"\r??05\r", "\r??05\r", "\r??05\r"}));
    EXPECT_EQ(line->FWaits, (std::vector<int>{50, 50}));
    EXPECT_EQ(line->FReads, (std::vector<int>{255, 11, 255, 11, 255, 11}));
    EXPECT_EQ(OnlyModule().GetModuleType(), daqpDMM);

    EXPECT_TRUE(modules.AddModule(5));  // appends without clearing
    EXPECT_EQ(modules.GetModuleCount(), 2);
    line->FWritten.clear();
    EXPECT_FALSE(modules.AddModule(6));
    EXPECT_EQ(line->FWritten.size(), 3u);
    EXPECT_FALSE(modules.AddModule(33));
    EXPECT_FALSE(modules.AddModule(-1));
    EXPECT_EQ(line->FWritten.size(), 3u);
}

TEST_F(DeweDriver, NothingIsSentOnAClosedPortAndFailedWritesSkipTheAddress)
{
    modules.FindModules();
    modules.FindPADModules();
    EXPECT_FALSE(modules.AddModule(1));
    EXPECT_FALSE(modules.AddModulePAD(1));

    Open(Bus({{"??01\r", {{"!010000001\r"}}}}));
    line->FFailWrites = true;
    modules.FindModules();
    modules.FindPADModules();
    EXPECT_EQ(modules.GetModuleCount() + modules.GetModuleCountPAD(), 0);
    EXPECT_EQ(line->FReads, (std::vector<int>{255, 255}));  // the flushes only
}

TEST_F(DeweDriver, FindPADModulesAsksConfigurationThenName)
{
    Open(Bus({{"$012\r", {{"!01080600\r"}}}, {"$01M\r", {{"!01PAD-V8\r"}}},
              {"$042\r", {{"!04200600\r"}}}, {"$04M\r", {{"!04"}}},           // name too short
              {"$052\r", {{"!052006000\r"}}},                                    // configuration too long
              {"$062\r", {{"!06290600\r"}}}, {"$06M\r", {{"!066013\r"}}}}));
    modules.FindPADModules();
    ASSERT_EQ(modules.GetModuleCountPAD(), 2);
    const THVKDeweModule& v8 = *modules.GetModulePAD(0);
    EXPECT_EQ(std::tuple(v8.GetAddress(), v8.GetModuleType(), v8.GetInputRange(), v8.GetChannelCount(), v8.GetIsPAD(),
                         v8.GetFilterRange()),
              std::tuple(1, padV8, dirPDV8_10V, 8, true, firNone));
    EXPECT_EQ(modules.GetModulePAD(1)->GetInputRange(), dirPDRTD3_Ni120);
    EXPECT_EQ(std::vector<QByteArray>(line->FWritten.begin(), line->FWritten.begin() + 3),
              (std::vector<QByteArray>{"$002\r", "$012\r", "$01M\r"}));
    // 20 ms before each configuration and name read.
    EXPECT_EQ(line->FWaits.size(), 33u + 3u);
    EXPECT_TRUE(line->Unread().isEmpty());
}

TEST_F(DeweDriver, AddModulePADRetriesWithoutWaitsAndEmptiesTheDAQPList)
{
    Open(Bus({{"??01\r", {{"!010000001\r"}}},
              {"$092\r", {{}, {"!090F0600\r"}}},
              {"$09M\r", {{"!09PAD-TH8\r"}}}}));
    modules.FindModules();
    ASSERT_EQ(modules.GetModuleCount(), 1);
    line->FWaits.clear();
    EXPECT_TRUE(modules.AddModulePAD(9));
    EXPECT_EQ(modules.GetModuleCount(), 0);
    EXPECT_EQ(line->FWaits, std::vector<int>{50});
    ASSERT_EQ(modules.GetModuleCountPAD(), 1);
    EXPECT_EQ(modules.GetModulePAD(0)->GetInputRange(), dirPDTH8_K);
    EXPECT_TRUE(modules.AddModulePAD(9));  // appends to the PAD list
    EXPECT_EQ(modules.GetModuleCountPAD(), 2);
}

TEST_F(DeweDriver, OnlyAThreeByteAnswerChangesTheModule)
{
    Open(Bus({{"??01\r", {{"!010001000\r"}}}}));
    modules.FindModules();
    THVKDeweModule& module = OnlyModule();
    line->Arrive({"!01"});
    EXPECT_TRUE(module.UpdateConfiguration(dirV5V, firV1kHz, false));
    EXPECT_EQ(line->FWritten.back(), "##0102020\r");
    EXPECT_EQ(std::tuple(module.GetInputRange(), module.GetFilterRange(), module.GetRemote()),
              std::tuple(dirV5V, firV1kHz, false));

    EXPECT_FALSE(module.UpdateConfiguration(dirV1V, firV10Hz, true));
    line->Arrive({"!0", "1"});  // the third byte comes after the time-out
    EXPECT_FALSE(module.UpdateConfiguration(dirV1V, firV10Hz, true));
    line->FFailWrites = true;
    line->Arrive({"!01"});
    EXPECT_FALSE(module.UpdateConfiguration(dirV1V, firV10Hz, true));
    EXPECT_EQ(std::tuple(module.GetInputRange(), module.GetFilterRange(), module.GetRemote()),
              std::tuple(dirV5V, firV1kHz, false));
}

TEST_F(DeweDriver, RangeStepsCheckOneEndOfTheSpanOnly)
{
    // DMM at 1000V with filter 20kHz, DMM at 10V with filter 10Hz, V with an unknown range.
    Open(Bus({{"??01\r", {{"!010400001\r"}}}, {"??02\r", {{"!020405041\r"}}}, {"??03\r", {{"!03000A001\r"}}}}));
    modules.FindModules();
    ASSERT_EQ(modules.GetModuleCount(), 3);
    THVKDeweModule& first = *modules.GetModule(0);
    THVKDeweModule& last = *modules.GetModule(1);
    THVKDeweModule& unknown = *modules.GetModule(2);
    line->FWritten.clear();
    first.SetNextInputRange();
    first.SetNextFilterRange();
    last.SetPreviousInputRange();
    last.SetPreviousFilterRange();
    EXPECT_TRUE(line->FWritten.empty());

    line->Arrive({"!01"});
    first.SetPreviousInputRange();
    EXPECT_EQ(first.GetInputRange(), dirDMM400V);
    line->Arrive({"!02"});
    last.SetNextFilterRange();
    EXPECT_EQ(last.GetFilterRange(), firDMM100Hz);
    // From an unassigned range "previous" lands on index 1, a DMM range, on a V module.
    line->Arrive({"!03"});
    unknown.SetPreviousInputRange();
    EXPECT_EQ(unknown.GetInputRange(), dirDMM1000V);
    EXPECT_EQ(line->FWritten, (std::vector<QByteArray>{"##0101001\r", "##0205031\r", "##0300001\r"}));
}

TEST_F(DeweDriver, PADModulesReadChannelsAndUseTheDAQPSetter)
{
    Open(Bus({{"$032\r", {{"!03080600\r"}}},
              {"$03M\r", {{"!03PAD-V8\r"}}},
              {"#030\r", {{">+05.123\r"}}},
              {"#032\r", {{QByteArray("?\0\xFF\x7F#\x80\x1B~\x01", 9), "zq"}, {">+01.000\r"}}},
              {"#037\r", {{">+0x.1z3\r"}}}}));
    modules.FindPADModules();
    ASSERT_EQ(modules.GetModuleCountPAD(), 1);
    THVKDeweModule& pad = *modules.GetModulePAD(0);
    line->FWritten.clear();
    double value = 0;
    EXPECT_TRUE(pad.ReadPADChannel(0, value));
    EXPECT_DOUBLE_EQ(value, 5.123);
    // Garbage first: its rest is drained and the second attempt counts.
    EXPECT_TRUE(pad.ReadPADChannel(2, value));
    EXPECT_DOUBLE_EQ(value, 1.0);
    EXPECT_TRUE(line->Unread().isEmpty());
    EXPECT_FALSE(pad.ReadPADChannel(7, value));
    EXPECT_FALSE(pad.ReadPADChannel(6, value));  // silent
    EXPECT_DOUBLE_EQ(value, 1.0);
    EXPECT_EQ(line->FWritten.size(), 1u + 2u + 2u + 2u);
    EXPECT_EQ(line->FWritten.back(), "#036\r");
    line->FWritten.clear();
    EXPECT_FALSE(pad.ReadPADChannel(8, value));
    EXPECT_FALSE(pad.ReadPADChannel(-1, value));
    EXPECT_TRUE(line->FWritten.empty());

    pad.SetNextFilterRange();  // PAD types have no filters
    EXPECT_TRUE(line->FWritten.empty());
    line->Arrive({"!03"});
    pad.SetInputRange(dirPDV8_5V);
    EXPECT_EQ(line->FWritten, std::vector<QByteArray>{"##0309FF0\r"});
    EXPECT_EQ(pad.GetInputRange(), dirPDV8_5V);
}

TEST_F(DeweDriver, ModulesOfAReplacedLineCanNoLongerSend)
{
    Open(Bus({{"??01\r", {{"!010000001\r"}}}}));
    modules.FindModules();
    THVKDeweModule& module = OnlyModule();
    Open();
    line->Arrive({"!01"});
    EXPECT_FALSE(module.UpdateConfiguration(dirV1V, firV10Hz, true));
    EXPECT_TRUE(line->FWritten.empty());
    EXPECT_EQ(module.GetInputRange(), dirV50V);
}
