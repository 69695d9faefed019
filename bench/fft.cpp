#include <benchmark/benchmark.h>
#include <kiss_fftr.h>

#include <cmath>
#include <vector>

#include "qxbase/measure/block_buffer.h"
#include "qxbase/measure/fft_processor.h"

using namespace qx;

namespace {

// The processor's result of one block: narrowing, window, transforms, scaling, widening.
void Processor(benchmark::State& state, TKSFFTSpecType Type, TQXFFTLeakType Window)
{
    const auto n = static_cast<std::int32_t>(state.range(0));
    TRVDataDouble in = NewDataDouble(n);
    for (std::int32_t i = 0; i < n; ++i) in.data[i] = std::sin(0.01 * i) + 0.1 * std::sin(0.37 * i);
    TKSZLFFT fft;
    fft.SetSpecType(Type);
    fft.SetWindow(Window);
    for (auto _ : state) {
        TRVDataDouble out;
        fft.DoNewFFTOnChannel(in, out);
        benchmark::DoNotOptimize(out.data);
        FreeDataDouble(out);
    }
    FreeDataDouble(in);
    state.SetItemsProcessed(state.iterations() * n);
}

// The bare real transform of the same size, the floor the processor is measured against.
void KissRealTransform(benchmark::State& state)
{
    const auto n = static_cast<int>(state.range(0));
    std::vector<float> in(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) in[static_cast<std::size_t>(i)] = static_cast<float>(std::sin(0.01 * i));
    std::vector<kiss_fft_cpx> out(static_cast<std::size_t>(n / 2 + 1));
    kiss_fftr_cfg cfg = kiss_fftr_alloc(n, 0, nullptr, nullptr);
    for (auto _ : state) {
        kiss_fftr(cfg, in.data(), out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    kiss_fftr_free(cfg);
    state.SetItemsProcessed(state.iterations() * n);
}

}  // namespace

BENCHMARK(KissRealTransform)->Arg(1 << 10)->Arg(1 << 14)->Arg(1 << 18);
BENCHMARK_CAPTURE(Processor, spectrum_rectangle, ksfftSpec, qxltRectangle)->Arg(1 << 10)->Arg(1 << 14)->Arg(1 << 18);
BENCHMARK_CAPTURE(Processor, spectrum_hanning, ksfftSpec, qxltHanning)->Arg(1 << 10)->Arg(1 << 14)->Arg(1 << 18);
BENCHMARK_CAPTURE(Processor, power_hanning, ksfftPowerSpec, qxltHanning)->Arg(1 << 10)->Arg(1 << 14)->Arg(1 << 18);
BENCHMARK_CAPTURE(Processor, autocorrelation, ksfftAutocorr, qxltRectangle)->Arg(1 << 10)->Arg(1 << 14)->Arg(1 << 18);
