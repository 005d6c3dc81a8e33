#include "hash_slots.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

struct Slot {
    std::uint32_t key = 0;
    std::uint64_t keyHash = 0;

    bool isFree() const { return key == 0; }
    std::uint64_t hash() const { return keyHash; }
};

auto isKey(std::uint32_t key)
{
    return [key](Slot const& slot) { return slot.key == key; };
}

bool insert(HashSlots<Slot>& slots, std::uint32_t key, std::uint64_t hash)
{
    auto const [slot, isNew] = slots.insert(hash, isKey(key));
    *slot = {key, hash};
    return isNew;
}

TEST(HashSlots, FindsNothingWhenEmpty)
{
    HashSlots<Slot> slots;
    EXPECT_EQ(slots.find(0, isKey(1)), nullptr);
}

TEST(HashSlots, FindsEveryKeyThroughAllItsGrowthWhateverTheHashes)
{
    constexpr std::uint32_t count = 1000;
    for (std::uint64_t const different : {1U, 7U, 1000U}) {
        HashSlots<Slot> slots;
        for (std::uint32_t key = 1; key <= count; ++key) {
            ASSERT_TRUE(insert(slots, key, key % different));
            ASSERT_FALSE(insert(slots, key, key % different));
        }
        for (std::uint32_t key = 1; key <= count; ++key) {
            ASSERT_NE(slots.find(key % different, isKey(key)), nullptr) << different;
            EXPECT_EQ(slots.find(key % different, isKey(key))->key, key);
        }
        EXPECT_EQ(slots.find(0, isKey(count + 1)), nullptr);
    }
}

TEST(HashSlots, SlotsAfterTheLastOneAreTheFirst)
{
    HashSlots<Slot> slots;
    for (std::uint32_t key = 1; key <= 4; ++key) {
        EXPECT_TRUE(insert(slots, key, UINT64_MAX)); // the last slot, however many there are
    }
    for (std::uint32_t key = 1; key <= 4; ++key) {
        EXPECT_NE(slots.find(UINT64_MAX, isKey(key)), nullptr);
    }
}

TEST(HashSlots, SlotThatIsNotFilledIsFoundFreeAgain)
{
    HashSlots<Slot> slots;
    EXPECT_TRUE(slots.insert(5, isKey(1)).second);
    EXPECT_EQ(slots.find(5, isKey(1)), nullptr);
    EXPECT_TRUE(insert(slots, 1, 5));
}

TEST(HashSlots, AreEmptyAfterClear)
{
    HashSlots<Slot> slots;
    insert(slots, 1, 1);
    slots.clear();
    EXPECT_EQ(slots.find(1, isKey(1)), nullptr);
    EXPECT_TRUE(insert(slots, 1, 1));
}

} // namespace
