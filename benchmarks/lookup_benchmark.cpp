#include "ZUL_register.h"
#include "shapes.h"
#include "zul_class.h"

#include <benchmark/benchmark.h>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

struct Registers {
    explicit Registers(std::uint32_t tags) : container(shapeNamed("registers-new").make(tags))
    {
        zul.Load(container.data(), container.size());
        for (std::uint32_t i = 0; i < tags; ++i) {
            names.push_back("register_" + std::to_string(i));
        }
    }

    Bytes container;
    ZUL zul;
    std::vector<std::string> names;
};

void registerByName(benchmark::State& state)
{
    Registers const registers(static_cast<std::uint32_t>(state.range(0)));
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(registers.zul.getRegisterByName(registers.names[i].c_str()));
        i = i + 1 == registers.names.size() ? 0 : i + 1;
    }
}

/// The baseline for registerByName.
void standardMapByName(benchmark::State& state)
{
    Registers const registers(static_cast<std::uint32_t>(state.range(0)));
    std::unordered_map<std::string_view, unsigned> map;
    for (unsigned i = 0; i < registers.names.size(); ++i) {
        map.emplace(registers.names[i], i);
    }
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.find(registers.names[i].c_str()));
        i = i + 1 == registers.names.size() ? 0 : i + 1;
    }
}

void tagAt(benchmark::State& state)
{
    Registers const registers(static_cast<std::uint32_t>(state.range(0)));
    unsigned i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(registers.zul.getTagAt(ZUL_register::new_tag_id, i));
        i = i + 1 == registers.names.size() ? 0 : i + 1;
    }
}

// clang-format off
BENCHMARK(standardMapByName)->Arg(1'000)->Arg(10'000)->Arg(100'000);
BENCHMARK(registerByName)   ->Arg(1'000)->Arg(10'000)->Arg(100'000);
BENCHMARK(tagAt)            ->Arg(1'000)->Arg(10'000)->Arg(100'000);
// clang-format on

} // namespace
