#include "shapes.h"
#include "stopwatch.h"
#include "zul_class.h"
#include "zulrt.h"

#include <benchmark/benchmark.h>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

/// Loads and unloads a design, in turn with its container alone; "ratio" is design over container.
void designAgainstContainer(benchmark::State& state, Shape const& shape)
{
    auto const tags = static_cast<std::uint32_t>(state.range(0));
    Bytes const container = shape.make(tags);
    double design = 0;
    double alone = 0;
    for (auto _ : state) {
        auto const aloneStart = Clock::now();
        {
            ZUL zul;
            benchmark::DoNotOptimize(zul.Load(container.data(), container.size()));
        }
        alone += secondsSince(aloneStart);
        auto const start = Clock::now();
        ZulUnloadZulFile(ZulLoadDesignFromBuffer(container.data(), container.size(), 0));
        double const taken = secondsSince(start);
        design += taken;
        state.SetIterationTime(taken);
    }
    state.counters["ratio"] = design / alone;
    state.counters["ns_tag"] = design * 1e9 / static_cast<double>(state.iterations()) / tags;
}

bool const registered = [] {
    for (char const* const name : {"mixed", "parameters", "parameter-links", "modules-equal",
                                   "links-one-module", "events", "cameras-descending", "cameras-processes"}) {
        benchmark::RegisterBenchmark(
            (std::string("design/") + name).c_str(),
            [name](benchmark::State& state) { designAgainstContainer(state, shapeNamed(name)); })
            ->Arg(10'000)
            ->Arg(100'000)
            ->Arg(1'000'000)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }
    return true;
}();

struct Unload {
    void operator()(fpga_design* design) const { ZulUnloadZulFile(design); }
};

struct LoadedDesign {
    LoadedDesign(char const* shape, benchmark::State const& state)
        : container(shapeNamed(shape).make(static_cast<std::uint32_t>(state.range(0)))),
          design(ZulLoadDesignFromBuffer(container.data(), container.size(), 0))
    {
    }
    Bytes container;
    std::unique_ptr<fpga_design, Unload> design;
};

std::vector<std::string> registerNames(fpga_design const* design)
{
    std::vector<std::string> names;
    for (unsigned int i = 1; i <= static_cast<unsigned int>(ZulGetNrOfRegister(design)); ++i) {
        names.emplace_back(ZulGetRegisterName(design, i));
    }
    return names;
}

void exportedRegisterByName(benchmark::State& state)
{
    LoadedDesign const loaded("registers-new", state);
    std::vector<std::string> const names = registerNames(loaded.design.get());
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ZulGetRegisterByName(loaded.design.get(), names[i].c_str()));
        i = i + 1 == names.size() ? 0 : i + 1;
    }
}

/// The baseline for exportedRegisterByName.
void standardMapByRegisterName(benchmark::State& state)
{
    LoadedDesign const loaded("registers-new", state);
    std::vector<std::string> const names = registerNames(loaded.design.get());
    std::unordered_map<std::string_view, unsigned> map;
    for (unsigned i = 0; i < names.size(); ++i) {
        map.emplace(names[i], i);
    }
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.find(names[i].c_str()));
        i = i + 1 == names.size() ? 0 : i + 1;
    }
}

/// Asks @p question about every parameter of every module, round and round; the time is that of one call.
template <class Question>
void everyParameter(benchmark::State& state, Question question)
{
    LoadedDesign const loaded("mixed", state);
    unsigned int module = 0;
    unsigned int param = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(question(loaded.design.get(), module, param));
        if (++param >= static_cast<unsigned int>(ZulGetNrOfParam(loaded.design.get(), module))) {
            param = 0;
            module = module + 1 >= static_cast<unsigned int>(ZulGetNrOfModules(loaded.design.get()))
                         ? 0
                         : module + 1;
        }
    }
}

void paramName(benchmark::State& state)
{
    everyParameter(state, ZulGetParamName);
}

void paramValue64(benchmark::State& state)
{
    everyParameter(state, ZulGetParamValue64);
}

/// The baseline for the two above: follows a list of as many nodes that lie anywhere in memory.
void pointerWalk(benchmark::State& state)
{
    struct Node {
        Node const* next = nullptr;
        std::string payload = "as large as a small tag";
    };
    auto const count = static_cast<std::size_t>(state.range(0));
    std::vector<std::unique_ptr<Node>> nodes;
    for (std::size_t i = 0; i < count; ++i) {
        nodes.push_back(std::make_unique<Node>());
        nodes.back()->next = i == 0 ? nullptr : nodes[i - 1].get();
    }
    nodes.front()->next = nodes.back().get();
    Node const* node = nodes.front().get();
    for (auto _ : state) {
        node = node->next;
        benchmark::DoNotOptimize(node);
    }
}

// clang-format off
BENCHMARK(standardMapByRegisterName)->Arg(1'000)->Arg(10'000)->Arg(100'000);
BENCHMARK(exportedRegisterByName)   ->Arg(1'000)->Arg(10'000)->Arg(100'000);
BENCHMARK(pointerWalk)              ->Arg(1'000)->Arg(10'000)->Arg(100'000);
BENCHMARK(paramName)                ->Arg(1'000)->Arg(10'000)->Arg(100'000);
BENCHMARK(paramValue64)             ->Arg(1'000)->Arg(10'000)->Arg(100'000);
// clang-format on

} // namespace
