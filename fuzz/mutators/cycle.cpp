// Mutations for fuzz_cycle: two containers behind the length of the first.

#include "container_mutation.h"
#include "mutation.h"

#include <algorithm>

namespace {

constexpr std::size_t lengthField = 2;
constexpr std::size_t longestFirst = 0xFFFF;

struct Pair {
    RawBytes first;
    RawBytes second;
};

Pair split(RawBytes const& bytes)
{
    if (bytes.size() < lengthField) {
        return {};
    }
    std::size_t const length =
        std::min(bytes.size() - lengthField, std::size_t{bytes[0]} + std::size_t{bytes[1]} * 256);
    auto const middle = bytes.begin() + static_cast<std::ptrdiff_t>(lengthField + length);
    return {RawBytes(bytes.begin() + lengthField, middle), RawBytes(middle, bytes.end())};
}

RawBytes joined(Pair const& pair)
{
    RawBytes bytes{static_cast<std::uint8_t>(pair.first.size()),
                   static_cast<std::uint8_t>(pair.first.size() >> 8U)};
    bytes.insert(bytes.end(), pair.first.begin(), pair.first.end());
    bytes.insert(bytes.end(), pair.second.begin(), pair.second.end());
    return bytes;
}

void mutatePair(RawBytes& bytes, std::size_t mostBytes, Random& random)
{
    Pair pair = split(bytes);
    std::size_t const most = std::min(mostBytes - std::min(mostBytes, lengthField), longestFirst);
    if (random.oneIn(16)) {
        pair.second = pair.first;
    }
    if (random.oneIn(2)) {
        mutateContainer(pair.first, most - std::min(most, pair.second.size()), random);
    } else {
        mutateContainer(pair.second, most - std::min(most, pair.first.size()), random);
    }
    bytes = joined(pair);
}

RawBytes crossPairs(RawBytes const& left, RawBytes const& right, std::size_t mostBytes, Random& random)
{
    Pair const one = split(left);
    Pair const other = split(right);
    std::size_t const most = std::min(mostBytes - std::min(mostBytes, lengthField), longestFirst);
    switch (random.below(3)) {
    case 0:
        return joined({one.first, crossContainers(one.second, other.second,
                                                  most - std::min(most, one.first.size()), random)});
    case 1:
        return joined(
            {crossContainers(one.first, other.first, most - std::min(most, one.second.size()), random),
             one.second});
    default:
        return joined({one.first, other.second});
    }
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t mostBytes,
                                               unsigned seed)
{
    return mutateRun({data, mostBytes}, size, seed, mutatePair);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(std::uint8_t const* left, std::size_t leftSize,
                                                 std::uint8_t const* right, std::size_t rightSize,
                                                 std::uint8_t* out, std::size_t mostBytes, unsigned seed)
{
    return crossRuns({left, leftSize}, {right, rightSize}, {out, mostBytes}, seed, crossPairs);
}
