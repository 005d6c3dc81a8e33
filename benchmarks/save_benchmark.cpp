#include "container_bytes.h"
#include "shapes.h"
#include "zul_class.h"

#include <benchmark/benchmark.h>
#include <cstring>
#include <vector>

namespace {

Bytes payloadContainer(std::uint32_t mebibytes)
{
    constexpr std::uint32_t mebibyte = 1U << 20U;
    ContainerBytes container;
    container.config(
        Bytes().u32(0x8150120).u32(88 + mebibytes * mebibyte).zeros(80).fill(0xA5, mebibytes * mebibyte));
    return container.build();
}

void saveIntoBuffer(benchmark::State& state, Bytes const& container)
{
    ZUL zul;
    zul.Load(container.data(), container.size());
    std::vector<std::byte> buffer(zul.getSaveLength());
    for (auto _ : state) {
        benchmark::DoNotOptimize(zul.Save(buffer.data(), buffer.size()));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(buffer.size()));
}

void savePayload(benchmark::State& state)
{
    saveIntoBuffer(state, payloadContainer(static_cast<std::uint32_t>(state.range(0))));
}

/// The baseline for savePayload: every byte copied once.
void copyPayload(benchmark::State& state)
{
    Bytes const container = payloadContainer(static_cast<std::uint32_t>(state.range(0)));
    std::vector<std::byte> buffer(container.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(std::memcpy(buffer.data(), container.data(), container.size()));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(buffer.size()));
}

void saveMixed(benchmark::State& state)
{
    saveIntoBuffer(state, mixedTags(static_cast<std::uint32_t>(state.range(0))));
}

// clang-format off
BENCHMARK(copyPayload)->Arg(1)->Arg(16)->Arg(64)->Unit(benchmark::kMillisecond);
BENCHMARK(savePayload)->Arg(1)->Arg(16)->Arg(64)->Unit(benchmark::kMillisecond);
BENCHMARK(saveMixed)  ->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
// clang-format on

} // namespace
