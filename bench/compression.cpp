// Cost of the block reductions per sample, each beside a plain streaming double sum over the
// same buffer in the same run, and of the selecting link per block set.
#include <benchmark/benchmark.h>


#include <cmath>
#include <map>
#include <vector>

#include "qxbase/framework/variant.h"
#include "qxbase/measure/block_buffer.h"
#include "qxbase/measure/rv_compressor.h"
#include "qxbase/sources/measure_link_select.h"
#include "qxbase/sources/measure_source.h"

#include "bench/application_main.h"

namespace {

// One block per size, kept for the whole run so every benchmark reads the same memory.
const qx::TRVDataDouble& SampleBlock(std::int32_t Count)
{
    static std::map<std::int32_t, qx::TRVDataDouble> blocks;
    qx::TRVDataDouble& block = blocks[Count];
    if (!block.data) {
        block = qx::NewDataDouble(Count);
        for (std::int32_t i = 0; i < Count; ++i) block.data[i] = std::sin(i * 0.001) * 10 + 0.5;
    }
    return block;
}

void Sized(benchmark::internal::Benchmark* b) { b->Arg(1 << 10)->Arg(1 << 16)->Arg(1 << 20); }

// The reference: what the hardware does with one add per sample in the simplest loop.
void BM_PlainDoubleSum(benchmark::State& state)
{
    const qx::TRVDataDouble& block = SampleBlock(static_cast<std::int32_t>(state.range(0)));
    for (auto _ : state) {
        double sum = 0;
        for (std::int32_t i = 0; i < block.count; ++i) sum += block.data[i];
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * block.count);
}
BENCHMARK(BM_PlainDoubleSum)->Apply(Sized);

template <qx::TKSRVLinkSingleCompressionMethod Method>
void BM_Compress(benchmark::State& state)
{
    const qx::TRVDataDouble& block = SampleBlock(static_cast<std::int32_t>(state.range(0)));
    for (auto _ : state) {
        qx::TRVDataDouble result = qx::TQXRVCompressorEx::Compress(Method, block, 2, 1);
        benchmark::DoNotOptimize(result.data[0]);
        qx::FreeDataDouble(result);
    }
    state.SetItemsProcessed(state.iterations() * block.count);
}
BENCHMARK(BM_Compress<qx::rvcompFirst>)->Name("BM_CompressFirst")->Apply(Sized);
BENCHMARK(BM_Compress<qx::rvcompLast>)->Name("BM_CompressLast")->Apply(Sized);
BENCHMARK(BM_Compress<qx::rvcompAverage>)->Name("BM_CompressAverage")->Apply(Sized);
BENCHMARK(BM_Compress<qx::rvcompMin>)->Name("BM_CompressMin")->Apply(Sized);
BENCHMARK(BM_Compress<qx::rvcompMax>)->Name("BM_CompressMax")->Apply(Sized);
BENCHMARK(BM_Compress<qx::rvcompRMS>)->Name("BM_CompressRMS")->Apply(Sized);
BENCHMARK(BM_Compress<qx::rvcompSDev>)->Name("BM_CompressDev")->Apply(Sized);

// 64 channels of 1024 samples, every second one selected: one NewData per iteration, the
// handler only touching what it gets.
void BM_SelectLinkBlockSet(benchmark::State& state)
{
    constexpr int channels = 64;
    qx::TQXMeasureSourceEx source;
    qx::Variant selection = qx::Variant::CreateArray(0, channels / 2 - 1, qx::varInteger);
    for (int c = 0; c < channels; ++c) {
        source.ChannelListAdd(QStringLiteral("AI %1").arg(c), "V", "", -10, 10, {qx::msexTimeData}, 0,
                              source.GetNewChannelHandle(), true);
        if (c % 2 == 0) selection.SetArrayElement(c / 2, c);
    }
    qx::TQXMeasureLinkSelectEx link;
    std::int64_t delivered = 0;
    link.OnSelectedData = [&delivered](qx::TQXMeasureLinkEx*, const qx::TRVShortdefs& defs,
                                       const qx::TRVDataDoubleArray& data, const qx::TRVDataDoubleArray&, double) {
        delivered += static_cast<std::int64_t>(defs.size()) + data.back().count;
    };
    link.SetQXMeasureSourceEx(&source);
    link.SetChannels(selection);

    const qx::TRVDataDouble& block = SampleBlock(1024);
    qx::TRVShortdefs defs(channels);
    qx::TRVDataDoubleArray data(channels, block);
    qx::TRVDataDoubleArray time(1, block);
    for (auto _ : state) {
        link.NewData(defs, data, time, 0);
        benchmark::DoNotOptimize(delivered);
    }
    link.SetQXMeasureSourceEx(nullptr);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_SelectLinkBlockSet);

}  // namespace

int main(int argc, char** argv)
{
    return RunBenchmarksInApplication(argc, argv);
}
