// Math channel operations on 8 channels of 64K samples, each beside a plain loop that writes the
// same results into preallocated buffers in the same run; then one whole cycle of the math
// channel table with those five channels beside the five plain loops together.
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "qxbase/measure/block_buffer.h"
#include "qxbase/measure/vt_element_ops.h"
#include "qxbase/sources/virtual_channel_table.h"

#include "bench/application_main.h"

using namespace qx;

namespace {

constexpr int Channels = 8;
constexpr std::int32_t Samples = 1 << 16;
constexpr TQXScalingValues Scaling = {0, 10, -5, 5, 0, 0};
constexpr TQXCoefficients Coefficients = {0.5, 1.25, -0.125, 0.0625, 0.001, -0.0001, 0.00001};

// The inputs and the reference's output buffers, kept for the whole run.
struct TBuffers {
    TRVDataDoubleArray In, Out;
    TBuffers()
    {
        for (int c = 0; c < Channels; ++c) {
            In.push_back(NewDataDouble(Samples));
            Out.push_back(NewDataDouble(Samples));
            for (std::int32_t i = 0; i < Samples; ++i)
                In.back().data[i] = (i + c) % 7 == 0 ? 0.0 : std::sin(i * 0.001 + c) * 10;
        }
    }
    const TRVDataDouble& A(int c) const { return In[static_cast<std::size_t>(c)]; }
    const TRVDataDouble& B(int c) const { return In[static_cast<std::size_t>((c + 1) % Channels)]; }
};

const TBuffers& Buffers()
{
    static const TBuffers buffers;
    return buffers;
}

void Count(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations() * Channels * Samples);
}

// The plain loops, one per operation, as a hand-written reference would have them.
enum TOp { OpSum, OpProduct, OpDivision, OpTwoPoint, OpPolyLin };

void PlainLoop(TOp Op, const double* a, const double* b, double* out, std::int32_t n)
{
    const double factor = (Scaling[3] - Scaling[2]) / (Scaling[1] - Scaling[0]);
    const double offset = Scaling[2] - Scaling[0] * factor;
    const TQXCoefficients& k = Coefficients;
    switch (Op) {
    case OpSum:
        for (std::int32_t i = 0; i < n; ++i) out[i] = a[i] + b[i];
        break;
    case OpProduct:
        for (std::int32_t i = 0; i < n; ++i) out[i] = a[i] * b[i];
        break;
    case OpDivision:
        for (std::int32_t i = 0; i < n; ++i) out[i] = b[i] == 0 ? NoValueMarker : a[i] / b[i];
        break;
    case OpTwoPoint:
        for (std::int32_t i = 0; i < n; ++i) out[i] = a[i] * factor + offset;
        break;
    case OpPolyLin:
        for (std::int32_t i = 0; i < n; ++i) {
            const double x = a[i];
            out[i] = (((((k[6] * x + k[5]) * x + k[4]) * x + k[3]) * x + k[2]) * x + k[1]) * x + k[0];
        }
        break;
    }
}

TRVDataDouble Operation(TOp Op, const TRVDataDouble& a, const TRVDataDouble& b)
{
    switch (Op) {
    case OpSum: return DoSum(a, b);
    case OpProduct: return DoProduct(a, b);
    case OpDivision: return DoDivision(a, b);
    case OpTwoPoint: return DoTwoPoint(a, Scaling);
    case OpPolyLin: return DoPolyLin(a, Coefficients);
    }
    return {};
}

template <TOp Op>
void BM_Plain(benchmark::State& state)
{
    const TBuffers& buffers = Buffers();
    for (auto _ : state) {
        for (int c = 0; c < Channels; ++c)
            PlainLoop(Op, buffers.A(c).data, buffers.B(c).data, buffers.Out[static_cast<std::size_t>(c)].data, Samples);
        benchmark::ClobberMemory();
    }
    Count(state);
}

// The operation, its result allocated and freed each time.
template <TOp Op>
void BM_Operation(benchmark::State& state)
{
    const TBuffers& buffers = Buffers();
    for (auto _ : state) {
        for (int c = 0; c < Channels; ++c) {
            TRVDataDouble result = Operation(Op, buffers.A(c), buffers.B(c));
            benchmark::DoNotOptimize(result.data);
            FreeDataDouble(result);
        }
        benchmark::ClobberMemory();
    }
    Count(state);
}

BENCHMARK(BM_Plain<OpSum>)->Name("BM_PlainSum");
BENCHMARK(BM_Operation<OpSum>)->Name("BM_Sum");
BENCHMARK(BM_Plain<OpProduct>)->Name("BM_PlainProduct");
BENCHMARK(BM_Operation<OpProduct>)->Name("BM_Product");
BENCHMARK(BM_Plain<OpDivision>)->Name("BM_PlainDivision");
BENCHMARK(BM_Operation<OpDivision>)->Name("BM_Division");
BENCHMARK(BM_Plain<OpTwoPoint>)->Name("BM_PlainTwoPoint");
BENCHMARK(BM_Operation<OpTwoPoint>)->Name("BM_TwoPoint");
BENCHMARK(BM_Plain<OpPolyLin>)->Name("BM_PlainPolyLin");
BENCHMARK(BM_Operation<OpPolyLin>)->Name("BM_PolyLin");

// The five plain loops of one cycle of the table below.
void BM_PlainFiveChannels(benchmark::State& state)
{
    const TBuffers& buffers = Buffers();
    for (auto _ : state) {
        for (TOp op : {OpSum, OpProduct, OpDivision, OpTwoPoint, OpPolyLin})
            PlainLoop(op, buffers.A(0).data, buffers.B(0).data, buffers.Out[static_cast<std::size_t>(op)].data,
                      Samples);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * 5 * Samples);
}
BENCHMARK(BM_PlainFiveChannels);

// The same loops with the table's allocation pattern: five fresh results per cycle, freed after.
void BM_PlainFiveChannelsAllocating(benchmark::State& state)
{
    const TBuffers& buffers = Buffers();
    TRVDataDoubleArray results(5);
    for (auto _ : state) {
        for (TOp op : {OpSum, OpProduct, OpDivision, OpTwoPoint, OpPolyLin}) {
            TRVDataDouble& out = results[static_cast<std::size_t>(op)];
            out = NewDataDouble(Samples);
            PlainLoop(op, buffers.A(0).data, buffers.B(0).data, out.data, Samples);
        }
        benchmark::ClobberMemory();
        FreeDataDoubleArray(results);
    }
    state.SetItemsProcessed(state.iterations() * 5 * Samples);
}
BENCHMARK(BM_PlainFiveChannelsAllocating);

// One SendData of the table: 8 input channels borrowed, five computed channels over inputs 0
// and 1 allocated, delivered to one link and freed.
void BM_TableSendData(benchmark::State& state)
{
    const TBuffers& buffers = Buffers();
    TQXMeasureSourceEx input;
    TQXMeasureSourceEx output;
    for (int c = 0; c < Channels; ++c)
        input.ChannelListAdd(QStringLiteral("AI %1").arg(c), "V", "", -10, 10, {msexArrayData}, 0,
                             input.GetNewChannelHandle(), true);
    TQXVirtualChannelTable table(output);
    table.SetQXMeasureSource(&input);
    const TQXVTOperation ops[] = {qxvtSum, qxvtProduct, qxvtDivision, qxvtTwoPoint, qxvtPolyLin};
    for (TQXVTOperation op : ops)
        table.AddChannel(GetOperationText(op), "V", "", -10, 10, 0, op, 0, 0, 1, Scaling[0], Scaling[1], Scaling[2],
                         Scaling[3], Coefficients);
    TQXMeasureLinkEx consumer;
    double seen = 0;
    consumer.OnNewData = [&seen](TQXMeasureLinkEx*, const TRVShortdefs&, const TRVDataDoubleArray& data,
                                 const TRVDataDoubleArray&, double) { seen += data.back().data[1]; };
    consumer.SetQXMeasureSourceEx(&output);

    TRVShortdefs defs(Channels);
    const TRVDataDoubleArray time;
    for (auto _ : state) table.SendData(&table.GetInputLink(), defs, buffers.In, time, 0);
    benchmark::DoNotOptimize(seen);
    state.SetItemsProcessed(state.iterations() * 5 * Samples);
}
BENCHMARK(BM_TableSendData);

}  // namespace

int main(int argc, char** argv)
{
    return RunBenchmarksInApplication(argc, argv);
}
