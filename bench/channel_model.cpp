// Cost of the channel-definition text form and of block buffers, with plain aligned_alloc as
// the baseline for the allocator.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "qxbase/measure/block_buffer.h"
#include "qxbase/measure/shortdef_text.h"

namespace {

qx::TRVShortdef SampleDef()
{
    qx::TRVShortdef d;
    d.ChannelNo = 12;
    d.XStart = 0.125;
    d.XEnd = 1.0 / 3.0;
    d.FirstSample = 4294967301ull;
    d.Flags = 0x46;
    d.YMin = -10;
    d.YMax = 1.7e30;
    d.Color = 0x00FF8040;
    return d;
}

void BM_CreateShortDef(benchmark::State& state)
{
    const qx::TRVShortdef def = SampleDef();
    for (auto _ : state) benchmark::DoNotOptimize(qx::CreateShortDef(def));
}
BENCHMARK(BM_CreateShortDef);

void BM_ParseShortItemDef(benchmark::State& state)
{
    const QString text = qx::CreateShortDef(SampleDef());
    qx::TRVShortdef def;
    for (auto _ : state) {
        qx::ParseShortItemDef(text, def);
        benchmark::DoNotOptimize(def);
    }
}
BENCHMARK(BM_ParseShortItemDef);

void BM_ShortDefRoundTrip(benchmark::State& state)
{
    qx::TRVShortdef def = SampleDef();
    for (auto _ : state) {
        qx::ParseShortItemDef(qx::CreateShortDef(def), def);
        benchmark::DoNotOptimize(def);
    }
}
BENCHMARK(BM_ShortDefRoundTrip);

void BM_BlockBuffer(benchmark::State& state)
{
    const auto count = static_cast<std::int32_t>(state.range(0));
    for (auto _ : state) {
        double* p = qx::AllocBlockBuffer(count);
        benchmark::DoNotOptimize(p);
        qx::FreeBlockBuffer(p);
    }
}
BENCHMARK(BM_BlockBuffer)->Arg(1024)->Arg(65536);

void BM_PlainAlignedAlloc(benchmark::State& state)
{
    const auto bytes = static_cast<std::size_t>(state.range(0)) * sizeof(double);
    for (auto _ : state) {
        void* p = std::aligned_alloc(64, bytes);
        benchmark::DoNotOptimize(p);
        std::free(p);
    }
}
BENCHMARK(BM_PlainAlignedAlloc)->Arg(1024)->Arg(65536);

}  // namespace
