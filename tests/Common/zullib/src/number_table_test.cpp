#include "number_table.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

TEST(NumberTable, FindsEveryNumberThroughAllItsGrowth)
{
    NumberTable<std::uint32_t> table;
    EXPECT_EQ(table.find(0), nullptr);
    for (std::uint32_t number = 0; number < 5000; ++number) {
        auto const [place, isNew] = table.insert(number);
        ASSERT_TRUE(isNew);
        ASSERT_EQ(*place, 0U) << "a new value is value-initialised";
        *place = number * 2;
    }
    for (std::uint32_t number = 0; number < 5000; ++number) {
        ASSERT_NE(table.find(number), nullptr);
        EXPECT_EQ(*table.find(number), number * 2);
        EXPECT_FALSE(table.insert(number).second);
    }
    EXPECT_EQ(table.find(5000), nullptr);
}

TEST(NumberTable, KeepsTheSmallestAndTheLargestNumbersApart)
{
    NumberTable<int> table;
    *table.insert(0).first = 1;
    *table.insert(UINT32_MAX).first = 2;
    *table.insert(UINT64_MAX - 1).first = 3;
    EXPECT_EQ(*table.find(0), 1);
    EXPECT_EQ(*table.find(UINT32_MAX), 2);
    EXPECT_EQ(*table.find(UINT64_MAX - 1), 3);
}

TEST(NumberTable, IsEmptyAfterClear)
{
    NumberTable<int> table;
    *table.insert(7).first = 1;
    table.clear();
    EXPECT_EQ(table.find(7), nullptr);
    auto const [place, isNew] = table.insert(7);
    EXPECT_TRUE(isNew);
    EXPECT_EQ(*place, 0);
}

} // namespace
