#include "floor.h"
#include "shapes.h"
#include "stopwatch.h"
#include "zul_class.h"

#include <benchmark/benchmark.h>

namespace {

/// Loads and destroys, in turn with the floor; "ratio" is load over floor, "ns_tag" the load's time for one tag.
void loadAgainstFloor(benchmark::State& state, Shape const& shape)
{
    auto const tags = static_cast<std::uint32_t>(state.range(0));
    Bytes const container = shape.make(tags);
    double load = 0;
    double floor = 0;
    for (auto _ : state) {
        auto const floorStart = Clock::now();
        {
            Floor least;
            benchmark::DoNotOptimize(least.load({container.data(), container.size()}));
        }
        floor += secondsSince(floorStart);
        auto const start = Clock::now();
        {
            ZUL zul;
            benchmark::DoNotOptimize(zul.Load(container.data(), container.size()));
        }
        double const taken = secondsSince(start);
        load += taken;
        state.SetIterationTime(taken);
    }
    state.counters["ratio"] = load / floor;
    state.counters["ns_tag"] = load * 1e9 / static_cast<double>(state.iterations()) / tags;
}

bool const registered = [] {
    for (Shape const& shape : shapes()) {
        benchmark::RegisterBenchmark((std::string("load/") + shape.name).c_str(),
                                     [&shape](benchmark::State& state) { loadAgainstFloor(state, shape); })
            ->Arg(10'000)
            ->Arg(100'000)
            ->Arg(1'000'000)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }
    return true;
}();

} // namespace
