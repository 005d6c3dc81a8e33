#include "ZUL_dll.h"
#include "files.h"
#include "library_directory.h"
#include "zul_class.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <fcntl.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>
#include <zlib.h>

namespace {

using Clock = std::chrono::steady_clock;

/// Bytes that compress about as well as machine code does: every fourth a random one, the others from a small set.
Bytes codeLike(std::size_t count)
{
    Bytes bytes;
    std::uint32_t random = 1;
    for (std::size_t i = 0; i < count; ++i) {
        random = random * 1664525 + 1013904223;
        bytes.u8((random >> 24U) & (i % 4 == 0 ? 0xFFU : 0x0CU));
    }
    return bytes;
}

void require(bool holds)
{
    if (!holds) {
        throw std::runtime_error("the benchmark cannot work here");
    }
}

/// The floor: everything inflated at once into memory that is there already, and written at once.
void inflateAndWrite(ZUL_dll const& library, std::string const& path, std::vector<Bytef>& room)
{
    uLongf length = room.size();
    require(uncompress(room.data(), &length, static_cast<Bytef const*>(library.getLib()),
                       library.getLibLength()) == Z_OK);
    int const file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    require(file >= 0 && write(file, room.data(), length) == static_cast<ssize_t>(length));
    close(file);
}

/// A design with one compressed library and no id, so that its directory stays private.
std::unique_ptr<ZUL> designWith(Bytes const& library, TemporaryDirectory const& directory)
{
    auto zul = std::make_unique<ZUL>();
    auto tag = std::make_unique<ZUL_dll>(zul.get());
    writeFile(directory / "library", library);
    require(tag->setLib((directory / "library").c_str(), ZUL_dll::get_library_opsys()) == 0 &&
            tag->isCompressed());
    tag->setName("measured");
    zul->AddTag(tag.release());
    return zul;
}

template <class Action>
double seconds(Action const& action)
{
    auto const start = Clock::now();
    action();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// In turn, in one run: unpacking a library of that many MiB, and the floor. The counter is their ratio.
void unpackBesideFloor(benchmark::State& state)
{
    Bytes const library = codeLike(static_cast<std::size_t>(state.range(0)) << 20U);
    std::vector<Bytef> room(library.size());
    TemporaryDirectory const directory;
    auto const design = designWith(library, directory);
    auto const& stored = dynamic_cast<ZUL_dll const&>(*design->getTagAt(ZUL_dll::tag_id, 0));
    double unpacking = 0;
    double floor = 0;
    for (auto _ : state) {
        auto unpacked = std::make_unique<LibraryDirectory>(true);
        double const taken = seconds([&] { require(unpacked->unpack(*design, ZUL_dll::replace) == 0); });
        unpacked.reset();
        unpacking += taken;
        state.SetIterationTime(taken);
        floor += seconds([&] { inflateAndWrite(stored, directory / "floor", room); });
        unlink((directory / "floor").c_str());
    }
    state.counters["ratio"] = unpacking / floor;
    state.SetBytesProcessed(state.iterations() * state.range(0) * (1 << 20));
}

BENCHMARK(unpackBesideFloor)->Arg(1)->Arg(8)->Arg(32)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
