// Trigger throughput in samples per second of the trigger channel: scanning a block without a
// crossing, and capturing continuously from a sine that crosses every few hundred samples.
#include <benchmark/benchmark.h>

#include <cmath>
#include <numbers>

#include "qxbase/measure/block_buffer.h"
#include "qxbase/measure/trigger.h"

namespace {

struct TSet {
    qx::TRVShortdefs Defs;
    qx::TRVDataDoubleArray Data;
    qx::TRVDataDoubleArray Time;
    TSet(int Channels, int Count, double (*Sample)(int))
    {
        for (int c = 0; c < Channels; ++c) {
            Defs.push_back(qx::TRVShortdef{.XStart = 0, .XEnd = 1, .YMin = -1, .YMax = 1});
            Data.push_back(qx::NewDataDouble(Count));
            Time.push_back(qx::NewDataDouble(Count));
            for (int k = 0; k < Count; ++k) {
                Data.back().data[k] = Sample(k);
                Time.back().data[k] = k * 1e-4;
            }
        }
    }
    ~TSet()
    {
        qx::FreeDataDoubleArray(Data);
        qx::FreeDataDoubleArray(Time);
    }
};

constexpr int BlockSize = 65536;

void Run(benchmark::State& state, qx::TRVTrigger& trigger, const TSet& set)
{
    for (auto _ : state) trigger.ProcessData(set.Defs, set.Data, set.Time);
    state.SetItemsProcessed(state.iterations() * BlockSize);
}

// Never arms: every sample is above the level.
void BM_ScanWithoutCrossing(benchmark::State& state)
{
    const TSet set(static_cast<int>(state.range(0)), BlockSize, [](int k) { return 1.0 + (k & 7); });
    qx::TRVTrigger trigger;
    trigger.SetTriggerType(qx::trtPos);
    trigger.SetPreTrigger(static_cast<std::int32_t>(state.range(1)));
    Run(state, trigger, set);
}
BENCHMARK(BM_ScanWithoutCrossing)->Args({1, 0})->Args({1, 256})->Args({8, 256});

void BM_ScanSlopeWithoutTrigger(benchmark::State& state)
{
    const TSet set(1, BlockSize, [](int k) { return std::sin(k * 0.001); });
    qx::TRVTrigger trigger;
    trigger.SetTriggerType(qx::trtPosSlope);
    trigger.SetLowSlopeTolerance(0.5f);
    Run(state, trigger, set);
}
BENCHMARK(BM_ScanSlopeWithoutTrigger);

// A crossing every 400 samples; each capture is handed to a receiver that frees it, as a
// source's SendData does.
void BM_CaptureSine(benchmark::State& state)
{
    const TSet set(static_cast<int>(state.range(0)), BlockSize,
                   [](int k) { return std::sin(k * (2 * std::numbers::pi / 400)); });
    qx::TRVTrigger trigger;
    trigger.SetTriggerType(qx::trtPos);
    trigger.SetBufferSize(256);
    trigger.SetPreTrigger(64);
    std::int64_t captures = 0;
    trigger.OnCapture = [&](const qx::TRVShortdefs&, qx::TRVDataDoubleArray& data,
                            qx::TRVDataDoubleArray& time, double) {
        ++captures;
        qx::FreeDataDoubleArray(data);
        qx::FreeDataDoubleArray(time);
    };
    Run(state, trigger, set);
    state.counters["captures/s"] =
        benchmark::Counter(static_cast<double>(captures), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_CaptureSine)->Arg(1)->Arg(8);

}  // namespace
