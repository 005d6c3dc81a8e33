#include "kova/templates/platform/memory_blocks.h"

#include "sanitized.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

namespace {

using kova::templates::platform::LargeAllocator;
using kova::templates::platform::MemoryBlocks;

TEST(MemoryBlocks, PiecesAreAlignedAndDoNotOverlap)
{
    MemoryBlocks blocks;
    std::vector<unsigned char*> pieces;
    for (unsigned i = 0; i < 3000; ++i) {
        auto* const piece = static_cast<unsigned char*>(blocks.take(i % 100 + 1));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(piece) % MemoryBlocks::alignment, 0U);
        std::memset(piece, static_cast<int>(i % 251), i % 100 + 1);
        pieces.push_back(piece);
        *blocks.takeCharacters(1) = 'x'; // what follows has to be aligned again
    }
    for (unsigned i = 0; i < 3000; ++i) {
        for (unsigned k = 0; k <= i % 100; ++k) {
            ASSERT_EQ(pieces[i][k], i % 251);
        }
    }
}

TEST(MemoryBlocks, PieceLargerThanABlockIsWhole)
{
    MemoryBlocks blocks;
    for (std::size_t const size : {std::size_t{100'000}, std::size_t{5'000'000}}) {
        std::memset(blocks.take(size), 1, size);
        std::memset(blocks.takeCharacters(size + 1), 2, size + 1);
    }
}

TEST(MemoryBlocks, ManyMegabytesCanBeTaken)
{
    MemoryBlocks blocks;
    constexpr std::size_t piece = 1000;
    for (std::size_t taken = 0; taken < 9'000'000; taken += piece) {
        std::memset(blocks.take(piece), 3, piece);
    }
}

TEST(MemoryBlocks, PiecesMayEndWhereTheirBlockEnds)
{
    constexpr std::size_t half = 512; // of the first block
    MemoryBlocks blocks;
    auto const* const first = static_cast<char*>(blocks.take(half));
    auto const* const second = static_cast<char*>(blocks.take(half));
    MemoryBlocks characters;
    char const* const begin = characters.takeCharacters(half);
    char const* const rest = characters.takeCharacters(half);
    if (!isSanitized) { // then each piece is a block
        EXPECT_EQ(second, first + half);
        EXPECT_EQ(rest, begin + half);
    }
}

TEST(MemoryBlocks, AreEmptyAfterClear)
{
    MemoryBlocks blocks;
    for (std::size_t const size : {1U, 100U}) {
        blocks.clear();
        std::memset(blocks.take(size), 1, size);
        blocks.clear();
        std::memset(blocks.takeCharacters(size), 2, size);
    }
}

TEST(LargeAllocator, HoldsArraysOfAnySize)
{
    std::vector<std::uint64_t, LargeAllocator<std::uint64_t>> array;
    for (std::uint64_t i = 0; i < 500'000; ++i) {
        array.push_back(i);
    }
    EXPECT_EQ(array[499'999], 499'999U);
    EXPECT_TRUE(LargeAllocator<int>() == LargeAllocator<int>(LargeAllocator<char>()));
}

} // namespace
