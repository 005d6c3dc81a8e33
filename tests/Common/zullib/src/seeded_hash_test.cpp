#include "seeded_hash.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
#include <vector>

namespace {

TEST(SeededHash, EqualTextsHaveEqualHashesWhereverTheyLie)
{
    SeededHash const hash;
    for (std::size_t length = 0; length <= 40; ++length) {
        std::string const text(length, 'x');
        std::string const shifted = "123" + text; // at another alignment
        EXPECT_EQ(hash(std::string_view(text)), hash(std::string_view(shifted).substr(3))) << length;
    }
}

TEST(SeededHash, ReadsNothingBehindTheText)
{
    SeededHash const hash;
    for (std::size_t length = 0; length <= 40; ++length) {
        std::vector<char> const exact(length, 'x'); // reading on is seen by the address sanitizer
        std::string const longer(length + 8, 'x');
        EXPECT_EQ(hash(std::string_view(exact.data(), length)),
                  hash(std::string_view(longer).substr(0, length)));
    }
}

TEST(SeededHash, EveryCharacterAndTheLengthCount)
{
    SeededHash const hash;
    std::set<std::size_t> hashes;
    std::size_t texts = 0;
    for (std::size_t length = 0; length <= 40; ++length) {
        hashes.insert(hash(std::string_view(std::string(length, '\0'))));
        ++texts;
        for (std::size_t changed = 0; changed < length; ++changed) {
            std::string text(length, '\0');
            text[changed] = 'x';
            hashes.insert(hash(std::string_view(text)));
            ++texts;
        }
    }
    EXPECT_EQ(hashes.size(), texts);
}

TEST(SeededHash, NumbersSpreadOverTheLowBits)
{
    SeededHash const hash;
    std::set<std::size_t> slots;
    for (std::uint64_t number = 0; number < 1024; ++number) {
        slots.insert(hash(number << 32U) & 1023U);
    }
    EXPECT_GT(slots.size(), 512U) << "of 1024 slots about 647 are used at random";
}

TEST(SeededHash, NumberedNamesSpreadOverTheLowBitsWhateverTheSeed)
{
    std::mt19937_64 seeds(5);
    for (int i = 0; i < 500; ++i) {
        std::uint64_t const seed = seeds();
        std::set<std::size_t> slots;
        for (int number = 100; number < 472; ++number) {
            slots.insert(SeededHash::hash("register_" + std::to_string(number), seed) & 1023U);
        }
        EXPECT_GT(slots.size(), 270U) << "of 1024 slots about 312 are used at random, with seed " << seed;
    }
}

TEST(SeededHash, MixFoldsBothHalvesOfTheProduct)
{
    EXPECT_EQ(SeededHash::mix(3, 5), 15U);
    EXPECT_EQ(SeededHash::mix(std::uint64_t{1} << 63U, 2), 1U);
    EXPECT_EQ(SeededHash::mix(0xFFFFFFFFFFFFFFFF, 0xFFFFFFFFFFFFFFFF), 0xFFFFFFFFFFFFFFFFU);
}

} // namespace
