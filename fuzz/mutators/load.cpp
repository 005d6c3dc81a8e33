// Mutations for fuzz_load: one container.

#include "container_mutation.h"
#include "mutation.h"

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t mostBytes,
                                               unsigned seed)
{
    return mutateRun({data, mostBytes}, size, seed, mutateContainer);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(std::uint8_t const* left, std::size_t leftSize,
                                                 std::uint8_t const* right, std::size_t rightSize,
                                                 std::uint8_t* out, std::size_t mostBytes, unsigned seed)
{
    return crossRuns({left, leftSize}, {right, rightSize}, {out, mostBytes}, seed, crossContainers);
}
