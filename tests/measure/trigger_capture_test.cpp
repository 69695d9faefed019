// Captures must not depend on how the stream is cut into blocks: each one holds exactly the
// samples of one window of the stream, compared here with a model that sees the whole stream.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "tests/measure/trigger_support.h"

using namespace qx;
using namespace qx::test;

namespace {

constexpr double Level = 0.2;

// Channel 0 triggers (many crossings of Level), 1 is a ramp, 2 holds two stop pulses.
TStream MakeStream(int Size)
{
    TStream s;
    s.Data.resize(3);
    for (int k = 0; k < Size; ++k) {
        s.Data[0].push_back(std::sin(k * 0.45) + 0.3 * std::sin(k * 1.7));
        s.Data[1].push_back(1000 + k);
        s.Data[2].push_back((k >= 41 && k <= 43) || (k >= 95 && k <= 97) ? 1 : -1);
        s.Time.push_back(3 + 0.5 * k);
    }
    return s;
}

// First sample of each captured window of the whole stream, for trtPos at Level. A run in
// chart-recorder mode delivers consecutive windows until the one in which channel 2 crosses.
std::vector<int> ModelWindows(const TStream& s, int Pre, int Size, bool Chart)
{
    std::vector<int> starts;
    const std::vector<double>& x = s.Data[0];
    const std::vector<double>& stop = s.Data[2];
    const int n = s.Size();
    bool armed = false;
    for (int i = std::max(Pre, 0); i < n; ++i) {
        if (!armed) {
            armed = x[i] <= Level;
            continue;
        }
        if (!(x[i] > Level)) continue;
        const int t = i;
        armed = false;
        int start = t - Pre;
        bool stopArmed = false, stopped = !Chart;
        int stopScan = t;
        for (;;) {
            const int end = start + Size;
            if (end > n) return starts;
            for (; !stopped && stopScan < end; ++stopScan) {
                if (!stopArmed) stopArmed = stop[stopScan] <= Level;
                else if (stop[stopScan] > Level) stopped = true;
            }
            starts.push_back(start);
            if (stopped) break;
            start = end;
        }
        i = std::max(start + Size, t + 1) - 1;
    }
    return starts;
}

// Sets pre-trigger and buffer size, also a pre-trigger at or above the buffer size.
void Configure(TRVTrigger& t, int Pre, int Size)
{
    if (Pre < Size) {
        t.SetBufferSize(Size);
        t.SetPreTrigger(Pre);
        return;
    }
    t.SetPreTrigger(Size - 1);
    t.SetBufferSize(Pre);
    t.SetPreTrigger(Pre);
    ASSERT_EQ(t.GetBufferSize(), Size);
}

void ExpectWindows(const TStream& s, const TCaptureLog& log, const std::vector<int>& starts,
                   int Size, const std::string& where)
{
    ASSERT_EQ(log.Captures.size(), starts.size()) << where;
    for (std::size_t c = 0; c < starts.size(); ++c) {
        const TCapture& cap = log.Captures[c];
        const int start = starts[c];
        EXPECT_EQ(cap.StartTime, s.Time[start]) << where << " capture " << c;
        ASSERT_EQ(cap.Data.size(), 3u);
        for (std::size_t ch = 0; ch < 3; ++ch) {
            ASSERT_EQ(cap.Data[ch].size(), static_cast<std::size_t>(Size)) << where;
            for (int k = 0; k < Size; ++k) {
                ASSERT_EQ(cap.Data[ch][k], s.Data[ch][start + k])
                    << where << " capture " << c << " channel " << ch << " sample " << k;
                ASSERT_EQ(cap.Time[ch][k], s.Time[start + k]) << where << " capture " << c;
            }
        }
    }
}

struct TCase {
    int Pre;
    int Size;
    bool Chart;
};

class TriggerCapture : public ::testing::TestWithParam<TCase> {};

TEST_P(TriggerCapture, EveryCutGivesTheWindowsOfTheWholeStream)
{
    const TCase p = GetParam();
    const TStream s = MakeStream(120);
    const std::vector<int> starts = ModelWindows(s, p.Pre, p.Size, p.Chart);
    ASSERT_GE(starts.size(), 3u);

    auto run = [&](const std::vector<int>& cuts, const std::string& where) {
        TRVTrigger t;
        t.SetTriggerType(trtPos);
        t.SetLevel(Level);
        Configure(t, p.Pre, p.Size);
        if (p.Chart) {
            t.SetTriggerMode(tmChartRecorder);
            t.SetStopTriggerChannel(2);
        }
        TCaptureLog log;
        log.Attach(t);
        FeedCut(t, s, cuts);
        ExpectWindows(s, log, starts, p.Size, where);
    };
    for (int cut = 0; cut <= s.Size(); ++cut) run({cut}, "cut at " + std::to_string(cut));
    for (int block = 1; block <= 9; ++block) {
        std::vector<int> cuts;
        for (int c = block; c < s.Size(); c += block) cuts.push_back(c);
        run(cuts, "blocks of " + std::to_string(block));
    }
}

INSTANTIATE_TEST_SUITE_P(
    PreTriggerAndBufferSize, TriggerCapture,
    ::testing::Values(TCase{0, 5, false}, TCase{3, 6, false}, TCase{9, 12, false},
                      TCase{14, 17, false}, TCase{12, 4, false}, TCase{20, 4, false},
                      TCase{4, 4, false},
                      TCase{0, 7, true}, TCase{5, 8, true}, TCase{10, 4, true}),
    [](const ::testing::TestParamInfo<TCase>& row) {
        return std::string(row.param.Chart ? "Chart" : "Normal") + "Pre" +
               std::to_string(row.param.Pre) + "Size" + std::to_string(row.param.Size);
    });

}  // namespace
