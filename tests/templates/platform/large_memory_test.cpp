#include "kova/templates/platform/large_memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

using kova::templates::platform::allocateMemory;
using kova::templates::platform::Memory;

constexpr std::size_t hugePage = std::size_t{2} * 1024 * 1024;

bool beginsAHugePage(Memory const& memory)
{
    return reinterpret_cast<std::uintptr_t>(memory.get()) % hugePage == 0;
}

TEST(LargeMemory, BeginsAHugePage)
{
    for (std::size_t const size : {hugePage / 2, hugePage, 3 * hugePage + 1}) {
        Memory const memory(allocateMemory(size), {size});
        EXPECT_TRUE(beginsAHugePage(memory)) << size;
        std::memset(memory.get(), 1, size);
    }
}

TEST(LargeMemory, LittleMemoryWastesNoHugePage)
{
    for (std::size_t const size : {std::size_t{1}, std::size_t{1000}, hugePage / 2 - 1}) {
        Memory const memories[] = {Memory(allocateMemory(size), {size}),
                                   Memory(allocateMemory(size), {size})};
        EXPECT_FALSE(std::all_of(std::begin(memories), std::end(memories), beginsAHugePage)) << size;
        std::memset(memories[0].get(), 1, size);
    }
}

} // namespace
