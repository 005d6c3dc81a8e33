#include "renumbered_copies.h"

#include <gtest/gtest.h>

namespace {

TEST(MapId2Id, AnswersTheNewIdOrFFFFFFFF)
{
    MapId2Id map;
    EXPECT_EQ(map.find_mapped_id(0), 0xFFFFFFFFU);
    map.add(0, 5);
    map.add(0xFFFFFFFF, 6);
    EXPECT_EQ(map.find_mapped_id(0), 5U);
    EXPECT_EQ(map.find_mapped_id(0xFFFFFFFF), 6U);
    EXPECT_EQ(map.find_mapped_id(5), 0xFFFFFFFFU) << "a new id is no old one";
}

TEST(MapId2Id, KeepsTheFirstOfOneId)
{
    MapId2Id map;
    map.add(3, 10);
    map.add(3, 11);
    EXPECT_EQ(map.find_mapped_id(3), 10U);
}

struct Item {
    std::uint32_t number;
};

struct ItemNumber {
    static std::uint32_t of(Item const& item) { return item.number; }
    static void set(Item& item, std::uint32_t number) { item.number = number; }
};

TEST(RenumberedCopies, FollowTheHighestNumberInTheirOrder)
{
    RenumberedCopies<Item, ItemNumber> copies(true, 7);
    for (std::uint32_t const number : {4U, 0U, 4U}) {
        copies.add(std::make_unique<Item>(Item{number}));
    }
    EXPECT_EQ(copies.renumbered(4), 8U);
    EXPECT_EQ(copies.renumbered(0), 9U);
    EXPECT_EQ(copies.renumbered(10), 0xFFFFFFFFU);
    EXPECT_EQ(copies.find(8)->number, 8U);
    EXPECT_EQ(copies.find(4), nullptr);
    for (std::uint32_t const number : {8U, 9U, 10U}) {
        EXPECT_EQ(copies.takeNext()->number, number);
    }
}

TEST(RenumberedCopies, KeepTheirNumbersWhereNoneAreThere)
{
    RenumberedCopies<Item, ItemNumber> copies(false, 7);
    copies.add(std::make_unique<Item>(Item{4}));
    copies.add(std::make_unique<Item>(Item{4}));
    EXPECT_EQ(copies.renumbered(4), 4U);
    EXPECT_EQ(copies.renumbered(5), 5U);
    EXPECT_EQ(copies.find(5), nullptr);
    Item const* const first = copies.find(4);
    EXPECT_EQ(copies.takeNext().get(), first);
}

} // namespace
