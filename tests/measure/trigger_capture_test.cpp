// Captures must not depend on how the stream is cut into blocks: each one holds exactly one
// window of the stream, as a model that sees the whole stream at once finds it.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "tests/measure/trigger_support.h"

using namespace qx;
using namespace qx::test;

namespace {

constexpr double Level = 0.2;

// Channel 0 crosses Level every 14 samples or so, 1 is a ramp, 2 holds two stop pulses.
TStream MakeStream()
{
    TStream s;
    s.Data.resize(3);
    for (int k = 0; k < 120; ++k) {
        s.Data[0].push_back(std::sin(k * 0.45) + 0.3 * std::sin(k * 1.7));
        s.Data[1].push_back(1000 + k);
        s.Data[2].push_back((k >= 41 && k <= 43) || (k >= 95 && k <= 97) ? 1 : -1);
        s.Time.push_back(3 + 0.5 * k);
    }
    return s;
}

// Rises through Level after a sample at or below it.
struct TModelCrossing {
    bool Armed = false;
    bool Fires(double v)
    {
        if (!Armed) {
            Armed = v <= Level;
            return false;
        }
        if (!(v > Level)) return false;
        Armed = false;
        return true;
    }
};

// First sample of each captured window. Scanning goes on after a capture (or after the
// trigger sample when the window ends before it); in chart-recorder mode a run goes on window
// after window until the one that holds channel 2's crossing.
std::vector<int> ModelWindows(const TStream& s, int Pre, int Size, bool Chart)
{
    std::vector<int> starts;
    TModelCrossing trigger;
    for (int i = std::max(Pre, 0); i < s.Size(); ++i) {
        if (!trigger.Fires(s.Data[0][i])) continue;
        TModelCrossing stop;
        bool stopped = !Chart;
        int start = i - Pre, scanned = i;
        for (;; start += Size) {
            if (start + Size > s.Size()) return starts;
            for (; !stopped && scanned < start + Size; ++scanned) stopped = stop.Fires(s.Data[2][scanned]);
            starts.push_back(start);
            if (stopped) break;
        }
        i = std::max(start + Size, i + 1) - 1;
    }
    return starts;
}

struct TCase {
    int Pre, Size;
    bool Chart;
};

class TriggerCapture : public ::testing::TestWithParam<TCase> {};

TEST_P(TriggerCapture, EveryCutGivesTheWindowsOfTheWholeStream)
{
    const TCase p = GetParam();
    const TStream s = MakeStream();
    const std::vector<int> starts = ModelWindows(s, p.Pre, p.Size, p.Chart);
    ASSERT_GE(starts.size(), 3u);

    auto run = [&](const std::vector<int>& cuts, const std::string& where) {
        TLoggedTrigger t(trtPos, std::max(p.Size, p.Pre), std::min(p.Pre, p.Size - 1));
        t.SetLevel(Level);
        t.SetPreTrigger(p.Pre);  // at or above the size, the size becomes the previous pre-trigger + 1
        ASSERT_EQ(t.GetBufferSize(), p.Size);
        if (p.Chart) {
            t.SetTriggerMode(tmChartRecorder);
            t.SetStopTriggerChannel(2);
        }
        FeedCut(t, s, cuts);

        ASSERT_EQ(t.Log.size(), starts.size()) << where;
        for (std::size_t c = 0; c < starts.size(); ++c) {
            EXPECT_EQ(t.Log[c].StartTime, s.Time[starts[c]]) << where;
            for (std::size_t ch = 0; ch < 3; ++ch) {
                const auto first = s.Data[ch].begin() + starts[c];
                ASSERT_EQ(t.Log[c].Data[ch], std::vector<double>(first, first + p.Size))
                    << where << ", capture " << c << ", channel " << ch;
                ASSERT_EQ(t.Log[c].Time[ch][p.Size - 1], s.Time[starts[c] + p.Size - 1]) << where;
            }
        }
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
    ::testing::Values(TCase{0, 5, false}, TCase{3, 6, false}, TCase{9, 12, false}, TCase{14, 17, false},
                      TCase{12, 4, false}, TCase{20, 4, false}, TCase{4, 4, false}, TCase{0, 7, true},
                      TCase{5, 8, true}, TCase{10, 4, true}),
    [](const ::testing::TestParamInfo<TCase>& row) {
        return std::string(row.param.Chart ? "Chart" : "Normal") + "Pre" + std::to_string(row.param.Pre) + "Size" +
               std::to_string(row.param.Size);
    });

}  // namespace
