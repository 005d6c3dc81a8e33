#include "merge_sides.h"

#include "stopwatch.h"

#include <benchmark/benchmark.h>
#include <memory>

namespace {

/// Merges, in turn with a copy of the container that is merged in; "ratio" is merge over copy.
void mergeAgainstCopy(benchmark::State& state, Shape const& shape, bool allOrNothing)
{
    auto const tags = static_cast<std::uint32_t>(state.range(0));
    Bytes const bytes = shape.make(tags);
    ZUL other;
    if (other.Load(bytes.data(), bytes.size()) != 0) {
        state.SkipWithError("the shape does not load");
        return;
    }
    double merge = 0;
    double copy = 0;
    for (auto _ : state) {
        auto const copyStart = Clock::now();
        auto const copied = std::make_unique<ZUL>(other);
        copy += secondsSince(copyStart);
        MergeTarget target(tags);
        auto const start = Clock::now();
        if (allOrNothing) {
            (*target).mergeAllOrNothing(other, nullptr);
        } else {
            *target += other;
        }
        double const taken = secondsSince(start);
        merge += taken;
        state.SetIterationTime(taken);
    }
    state.counters["ratio"] = merge / copy;
    state.counters["ns_tag"] = merge * 1e9 / static_cast<double>(state.iterations()) / tags;
}

bool const registered = [] {
    for (char const* const name : {"mixed", "registers-new", "link-chain", "parameters", "parameter-links"}) {
        for (bool const allOrNothing : {false, true}) {
            benchmark::RegisterBenchmark(
                (std::string(allOrNothing ? "mergeAllOrNothing/" : "merge/") + name).c_str(),
                [=](benchmark::State& state) { mergeAgainstCopy(state, shapeNamed(name), allOrNothing); })
                ->Arg(10'000)
                ->Arg(100'000)
                ->Arg(1'000'000)
                ->UseManualTime()
                ->Unit(benchmark::kMillisecond);
        }
    }
    return true;
}();

} // namespace
