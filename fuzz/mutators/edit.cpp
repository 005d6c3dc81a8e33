// Mutations for fuzz_edit: a sequence of operations of four bytes.

#include "mutation.h"

#include <algorithm>
#include <cstddef>

namespace {

constexpr std::size_t width = 4;

using Place = RawBytes::iterator;

Place operationAt(RawBytes& bytes, std::size_t number)
{
    return bytes.begin() + static_cast<std::ptrdiff_t>(number * width);
}

void insertOperation(RawBytes& bytes, Random& random)
{
    RawBytes operation(width);
    for (std::uint8_t& byte : operation) {
        byte = static_cast<std::uint8_t>(random.below(32));
    }
    bytes.insert(operationAt(bytes, random.below(bytes.size() / width + 1)), operation.begin(),
                 operation.end());
}

void mutateOperations(RawBytes& bytes, Random& random)
{
    std::size_t const count = bytes.size() / width;
    if (count == 0) {
        return insertOperation(bytes, random);
    }
    Place const one = operationAt(bytes, random.below(count));
    Place const other = operationAt(bytes, random.below(count));
    switch (random.below(6)) {
    case 0: {
        RawBytes const copy(one, one + width);
        bytes.insert(other, copy.begin(), copy.end());
        return;
    }
    case 1:
        bytes.erase(one, one + width);
        return;
    case 2:
        if (one != other) {
            std::swap_ranges(one, one + width, other);
        }
        return;
    case 3:
        *(one + static_cast<std::ptrdiff_t>(random.below(width))) =
            static_cast<std::uint8_t>(random.below(32));
        return;
    default:
        return insertOperation(bytes, random);
    }
}

void mutateSequence(RawBytes& bytes, std::size_t mostBytes, Random& random)
{
    if (random.oneIn(16)) {
        return mutateBytes(bytes, mostBytes);
    }
    for (std::size_t left = 1 + random.below(4); left > 0; --left) {
        mutateOperations(bytes, random);
    }
}

/// Operations of the one, then operations of the other.
RawBytes crossSequences(RawBytes const& left, RawBytes const& right, std::size_t, Random& random)
{
    RawBytes crossed(left);
    crossed.resize(random.below(left.size() / width + 1) * width);
    auto const from = static_cast<std::ptrdiff_t>(random.below(right.size() / width + 1) * width);
    crossed.insert(crossed.end(), right.begin() + from, right.end());
    return crossed;
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t mostBytes,
                                               unsigned seed)
{
    return mutateRun({data, mostBytes}, size, seed, mutateSequence);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(std::uint8_t const* left, std::size_t leftSize,
                                                 std::uint8_t const* right, std::size_t rightSize,
                                                 std::uint8_t* out, std::size_t mostBytes, unsigned seed)
{
    return crossRuns({left, leftSize}, {right, rightSize}, {out, mostBytes}, seed, crossSequences);
}
