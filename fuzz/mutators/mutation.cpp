#include "mutation.h"

#include "run.h"

#include <algorithm>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t mostBytes);

void mutateBytes(RawBytes& bytes, std::size_t mostBytes)
{
    std::size_t const before = std::min(bytes.size(), mostBytes);
    bytes.resize(mostBytes);
    bytes.resize(mostBytes == 0 ? 0 : LLVMFuzzerMutate(bytes.data(), before, mostBytes));
}

namespace {

/// Early allocations are many runs' only ones: each size of the number is as likely as the next.
void chooseAllocations(std::span<std::uint8_t> prefix, Random& random)
{
    constexpr std::size_t sizes = 12;
    std::size_t const first = random.below(std::size_t{1} << random.below(sizes));
    std::size_t const skipped = random.oneIn(2) ? 0 : random.below(random.oneIn(2) ? 8 : 24);
    prefix[0] = static_cast<std::uint8_t>(random.below(4) + 4 * skipped);
    prefix[1] = static_cast<std::uint8_t>(first);
    prefix[2] = static_cast<std::uint8_t>(first >> 8U);
    if (random.oneIn(4)) {
        prefix[3] = static_cast<std::uint8_t>(random.below(256));
    }
}

} // namespace

std::size_t
mutateRun(std::span<std::uint8_t> buffer, std::size_t size, unsigned seed,
          std::function<void(RawBytes& bytes, std::size_t mostBytes, Random& random)> const& mutate)
{
    if (buffer.size() < Run::prefix) {
        return size;
    }
    Random random(seed);
    if (size < Run::prefix) {
        std::ranges::fill(buffer.first(Run::prefix), std::uint8_t{0});
        size = Run::prefix;
    }
    std::span<std::uint8_t> const rest = buffer.subspan(Run::prefix);
    RawBytes bytes(rest.data(), rest.data() + (size - Run::prefix));
    mutate(bytes, rest.size(), random);
    bytes.resize(std::min(bytes.size(), rest.size()));
    std::ranges::copy(bytes, rest.begin());
    chooseAllocations(buffer.first(Run::prefix), random);
    return Run::prefix + bytes.size();
}

std::size_t crossRuns(std::span<std::uint8_t const> left, std::span<std::uint8_t const> right,
                      std::span<std::uint8_t> buffer, unsigned seed,
                      std::function<RawBytes(RawBytes const& left, RawBytes const& right,
                                             std::size_t mostBytes, Random& random)> const& cross)
{
    if (std::min({left.size(), right.size(), buffer.size()}) < Run::prefix) {
        return 0;
    }
    Random random(seed);
    std::span<std::uint8_t> const rest = buffer.subspan(Run::prefix);
    auto const behindPrefix = [](std::span<std::uint8_t const> input) {
        return RawBytes(input.data() + Run::prefix, input.data() + input.size());
    };
    RawBytes bytes = cross(behindPrefix(left), behindPrefix(right), rest.size(), random);
    bytes.resize(std::min(bytes.size(), rest.size()));
    std::ranges::copy(left.first(Run::prefix), buffer.begin());
    std::ranges::copy(bytes, rest.begin());
    chooseAllocations(buffer.first(Run::prefix), random);
    return Run::prefix + bytes.size();
}
