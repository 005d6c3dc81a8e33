#include "design_answers.h"
#include "designs.h"
#include "threads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <vector>

namespace {

constexpr std::size_t callCount = 10'000'000;

/// What one thread gets from a design of its own. Pointers differ between designs, so only the others are compared.
std::string textsOf(fpga_design const* design)
{
    std::string text;
    answers::askEverything(design, [&text](char const* function, unsigned, unsigned, auto answer) {
        text += function;
        text += ' ';
        if constexpr (std::is_same_v<decltype(answer), char const*>) {
            text += answer == nullptr ? "(null)" : answer;
        } else if constexpr (std::is_pointer_v<decltype(answer)>) {
            text += answer == nullptr ? "(null)" : "there";
        } else {
            text += std::to_string(answer);
        }
        text += '\n';
    });
    return text;
}

TEST(ReadersOfOneDesign, GetWhatOneThreadGets)
{
    designs::Loaded design(designs::rich());
    std::vector<std::uint64_t> const expected = answers::numbersOf(design.get());
    std::size_t const rounds = callCount / threadCount / expected.size() + 1;
    std::atomic<unsigned> differences = 0;
    inThreads([&](unsigned) {
        for (std::size_t i = 0; i < rounds; ++i) {
            differences += answers::numbersOf(design.get()) == expected ? 0 : 1;
        }
    });
    EXPECT_EQ(differences, 0U);
    EXPECT_GE(rounds * threadCount * expected.size(), callCount);
}

TEST(ReadersOfOneDesign, GetItAlsoWhenNobodyHasAskedBefore)
{
    // What is made by the first question is made by one of the threads here.
    designs::Loaded other(designs::rich());
    std::string const expected = textsOf(other.get());
    for (int round = 0; round < 50; ++round) {
        designs::Loaded design(designs::rich());
        std::vector<std::string> texts(threadCount);
        inThreads([&](unsigned i) { texts[i] = textsOf(design.get()); });
        for (std::string const& text : texts) {
            EXPECT_EQ(text, expected);
        }
    }
}

TEST(ReadersOfOneDesign, GetOneSettingsBlock)
{
    for (int round = 0; round < 200; ++round) {
        designs::Loaded design(designs::rich());
        std::vector<void const*> blocks(threadCount);
        std::atomic<unsigned> unfinished = 0;
        inThreads([&](unsigned i) {
            blocks[i] = ZulGetUserInfoByName(design.get(), "##_RZ3_DESIGN_SETTINGS");
            auto const* const block = static_cast<rz3_design_settings const*>(blocks[i]);
            unfinished += block->local_interrupt == 0x600 && block->queue[3].depth == 256 ? 0 : 1;
        });
        EXPECT_EQ(unfinished, 0U);
        EXPECT_EQ(blocks, std::vector<void const*>(threadCount, blocks[0]));
    }
}

TEST(ReadersOfOneDesign, StripIt)
{
    designs::Loaded design(designs::rich());
    auto const strip = [&] {
        unsigned long length = 0;
        ZulStripConfigs(design.get(), nullptr, &length);
        Bytes copy = Bytes().zeros(length);
        return ZulStripConfigs(design.get(), copy.data(), &length) == 0 ? copy : Bytes();
    };
    Bytes const expected = strip();
    std::atomic<unsigned> differences = 0;
    inThreads([&](unsigned) {
        for (int i = 0; i < 50; ++i) {
            differences += strip() == expected ? 0 : 1;
        }
    });
    EXPECT_EQ(differences, 0U);
}

TEST(ReadersOfOneDesign, AreNotDisturbedByOtherDesigns)
{
    designs::Loaded design(designs::rich());
    std::vector<std::uint64_t> const expected = answers::numbersOf(design.get());
    std::atomic<unsigned> differences = 0;
    inThreads([&](unsigned i) {
        for (int round = 0; round < 50; ++round) {
            if (i % 2 == 0) {
                designs::Loaded own(designs::rich());
                Bytes const other = designs::addition();
                differences += MergeFpgaDesignWithMem(own.get(), other.data(), other.size()) == 0 ? 0 : 1;
            } else {
                differences += answers::numbersOf(design.get()) == expected ? 0 : 1;
            }
        }
    });
    EXPECT_EQ(differences, 0U);
}

} // namespace
