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

/// Of 1024 slots, those that the hashes of 372 keys use with each of 500 seeds: about 312 at random, 270 at least.
template <class KeyOf>
void expectSpreadOverTheLowBits(KeyOf const& keyOf)
{
    std::mt19937_64 seeds(5);
    for (int i = 0; i < 500; ++i) {
        std::uint64_t const seed = seeds();
        std::set<std::size_t> slots;
        for (std::uint64_t number = 100; number < 472; ++number) {
            slots.insert(SeededHash::hash(keyOf(number), seed) & 1023U);
        }
        EXPECT_GT(slots.size(), 270U) << "with seed " << seed;
    }
}

TEST(SeededHash, NumbersSpreadOverTheLowBitsWhateverTheSeed)
{
    for (unsigned int const shift : {0U, 1U, 4U, 16U, 32U, 48U}) {
        expectSpreadOverTheLowBits([shift](std::uint64_t number) { return number << shift; });
    }
}

TEST(SeededHash, NumbersMadeOfSeveralSpreadOverTheLowBitsWhateverTheSeed)
{
    expectSpreadOverTheLowBits([](std::uint64_t n) { return (n % 256 << 32U) | (n << 16U) | 1U; });
    expectSpreadOverTheLowBits([](std::uint64_t n) { return (n % 64 << 26U) | (n / 64); });
    expectSpreadOverTheLowBits([](std::uint64_t n) { return (n << 32U) | n; });
}

TEST(SeededHash, NumberedNamesSpreadOverTheLowBitsWhateverTheSeed)
{
    expectSpreadOverTheLowBits([](std::uint64_t number) { return "register_" + std::to_string(number); });
}

TEST(SeededHash, MixFoldsBothHalvesOfTheProduct)
{
    EXPECT_EQ(SeededHash::mix(3, 5), 15U);
    EXPECT_EQ(SeededHash::mix(std::uint64_t{1} << 63U, 2), 1U);
    EXPECT_EQ(SeededHash::mix(0xFFFFFFFFFFFFFFFF, 0xFFFFFFFFFFFFFFFF), 0xFFFFFFFFFFFFFFFFU);
}

} // namespace
