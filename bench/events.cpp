#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "qxbase/control/control_source.h"
#include "qxbase/control/event_link.h"

using namespace qx;

// One property-updated event delivered to N links, each with a value and a general handler.
static void BM_EventFireUpdated(benchmark::State& state)
{
    TQXControlSource source;
    std::vector<std::unique_ptr<TQXEventLink>> links;
    std::uint64_t calls = 0;
    for (int i = 0; i < state.range(0); ++i) {
        auto link = std::make_unique<TQXEventLink>();
        link->OnValueUpdated = [&calls](TQXEventLink*, std::uint32_t h) { calls += h; };
        link->OnEvent = [&calls](TQXEventLink*, std::uint32_t, TQXEventClass, const QString&) {
            ++calls;
        };
        link->SetEventSource(&source);
        links.push_back(std::move(link));
    }
    const QString empty;
    for (auto _ : state) {
        source.EventFire(1, qxecControlSourceUpdated, empty);
        benchmark::DoNotOptimize(calls);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_EventFireUpdated)->Arg(1)->Arg(8)->Arg(64);

// A property write: handle look-up among 16 properties, the callback, and the updated event to
// one link; the debug switch is off.
static void BM_SetPropertyValue(benchmark::State& state)
{
    TQXControlSource source;
    Variant stored;
    for (int i = 0; i < 16; ++i) {
        source.RegisterProperty("Property", "P" + QString::number(i),
                                [&stored](TQXPropertyItem*, bool get, bool, Variant& value) -> HRESULT {
                                    if (get) value = stored;
                                    else stored = value;
                                    return S_OK;
                                },
                                varDouble, "", false, 0, 0, static_cast<std::uint32_t>(i));
    }
    TQXPropertyHandle handle = 0;
    source.GetPropertyHandle("P15", handle);
    TQXEventLink link;
    std::uint64_t updates = 0;
    link.OnValueUpdated = [&updates](TQXEventLink*, std::uint32_t) { ++updates; };
    link.SetEventSource(&source);
    const Variant value(2.5);
    for (auto _ : state) {
        benchmark::DoNotOptimize(source.SetPropertyValue(nullptr, handle, value));
    }
    benchmark::DoNotOptimize(updates);
}
BENCHMARK(BM_SetPropertyValue);
