#include <benchmark/benchmark.h>

#include <QApplication>
#include <memory>
#include <vector>

#include "qxbase/measure/block_buffer.h"
#include "qxbase/sources/measure_source.h"
#include "qxbase/sources/simulated_source.h"

using namespace qx;

namespace {

constexpr int Channels = 8;
constexpr int Samples = 1024;

// Sources are widgets: they need an application object.
QApplication& App()
{
    static int argc = 1;
    static char name[] = "qxbase_bench_send_data";
    static char* argv[] = {name, nullptr};
    static QApplication app(argc, argv);
    return app;
}

void Allocate(TRVDataDoubleArray& Data, TRVDataDoubleArray& Time)
{
    for (int c = 0; c < Channels; ++c) {
        Data[static_cast<std::size_t>(c)] = NewDataDouble(Samples);
        Time[static_cast<std::size_t>(c)] = NewDataDouble(Samples);
    }
}

}  // namespace

// Reference for the next benchmark: allocating and freeing the 16 blocks of one cycle.
static void BM_AllocateBlockSet(benchmark::State& state)
{
    TRVDataDoubleArray data(Channels);
    TRVDataDoubleArray time(Channels);
    for (auto _ : state) {
        Allocate(data, time);
        benchmark::DoNotOptimize(data[0].data);
        FreeDataDoubleArray(data);
        FreeDataDoubleArray(time);
    }
}
BENCHMARK(BM_AllocateBlockSet);

// One cycle of 8 channels x 1024 samples to N links with trivial handlers, the allocation of
// the blocks included (SendData frees them); per_link divides by the links.
static void BM_SendData(benchmark::State& state)
{
    App();
    TQXMeasureSourceEx source;
    std::vector<std::unique_ptr<TQXMeasureLinkEx>> links;
    double seen = 0;
    for (int i = 0; i < state.range(0); ++i) {
        auto link = std::make_unique<TQXMeasureLinkEx>();
        link->OnNewData = [&seen](TQXMeasureLinkEx*, const TRVShortdefs&, const TRVDataDoubleArray& Data,
                                  const TRVDataDoubleArray&, double) { seen += Data[0].data[0]; };
        link->SetQXMeasureSourceEx(&source);
        links.push_back(std::move(link));
    }
    const TRVShortdefs defs(Channels);
    TRVDataDoubleArray data(Channels);
    TRVDataDoubleArray time(Channels);
    for (auto _ : state) {
        Allocate(data, time);
        data[0].data[0] = 1;
        source.SendData(defs, data, time, 0);
    }
    benchmark::DoNotOptimize(seen);
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["per_link"] = benchmark::Counter(static_cast<double>(state.iterations() * state.range(0)),
                                                    benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_SendData)->Arg(1)->Arg(8)->Arg(64);

// The delivery alone: 8 empty blocks (nothing to allocate or free) to N links that count calls.
static void BM_SendDataDeliveryOnly(benchmark::State& state)
{
    App();
    TQXMeasureSourceEx source;
    std::vector<std::unique_ptr<TQXMeasureLinkEx>> links;
    std::uint64_t calls = 0;
    for (int i = 0; i < state.range(0); ++i) {
        auto link = std::make_unique<TQXMeasureLinkEx>();
        link->OnNewData = [&calls](TQXMeasureLinkEx*, const TRVShortdefs&, const TRVDataDoubleArray&,
                                   const TRVDataDoubleArray&, double) { ++calls; };
        link->SetQXMeasureSourceEx(&source);
        links.push_back(std::move(link));
    }
    const TRVShortdefs defs(Channels);
    TRVDataDoubleArray data(Channels);
    TRVDataDoubleArray time(Channels);
    for (auto _ : state) source.SendData(defs, data, time, 0);
    benchmark::DoNotOptimize(calls);
    state.counters["per_link"] = benchmark::Counter(static_cast<double>(state.iterations() * state.range(0)),
                                                    benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_SendDataDeliveryOnly)->Arg(1)->Arg(8)->Arg(64);

// One cycle of the simulated source at 8 channels x 64K samples to one link: the waveforms,
// the time blocks and the allocation. Arg 0: every channel a sine; arg 1: one of each shape;
// arg 2: sines through the A/D cut-off filter and a 16-bit quantizer.
static void BM_SimulatedStep(benchmark::State& state)
{
    App();
    TKSSimulatedSource source;
    source.SetNrOfCGLChannels(Channels);
    source.SetBlockSize(64 * 1024);
    source.SetSampleRate(1e6);
    if (state.range(0) == 1) {
        source.SetWaveformLines({"sine 1 50 0 0", "square 1 50 0 0", "triangle 1 50 0 0", "sawtooth 1 50 0 0",
                                 "noise 1 0 0 0", "counter 1 1000 0 0", "sine 2 3 1 45", "noise 0.1 0 5 0"});
    }
    if (state.range(0) == 2)
        source.ApplyADExtendedSettings({.Resolution = 16, .CutOffFrequency = 1000}, {adsResolution, adsCutOffFilter});
    TQXMeasureLinkEx link;
    double seen = 0;
    link.OnNewData = [&seen](TQXMeasureLinkEx*, const TRVShortdefs&, const TRVDataDoubleArray& Data,
                             const TRVDataDoubleArray&, double) { seen += Data[7].data[65535]; };
    link.SetQXMeasureSourceEx(&source);
    for (auto _ : state) source.Step();
    benchmark::DoNotOptimize(seen);
    state.SetItemsProcessed(state.iterations() * Channels * 64 * 1024);
}
BENCHMARK(BM_SimulatedStep)->Arg(0)->Arg(1)->Arg(2);
