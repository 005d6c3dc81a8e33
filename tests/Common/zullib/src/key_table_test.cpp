#include "key_table.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

namespace {

/// All keys meet in one slot.
struct SameHash {
    std::size_t operator()(int) const { return 7; }
};

struct PlainHash {
    std::size_t operator()(int key) const { return static_cast<std::size_t>(key); }
};

template <class Hash>
void expectAllFound(int count)
{
    KeyTable<int, int, Hash> table;
    EXPECT_EQ(table.find(0), nullptr);
    std::vector<int*> places;
    for (int key = 0; key < count; ++key) {
        auto const [place, isNew] = table.insert(key);
        EXPECT_TRUE(isNew);
        EXPECT_EQ(*place, 0) << "a new value is value-initialised";
        *place = key * 2;
        places.push_back(place);
    }
    for (int key = 0; key < count; ++key) {
        ASSERT_EQ(table.find(key), places[static_cast<std::size_t>(key)]) << "values stay where they are";
        EXPECT_EQ(*table.find(key), key * 2);
        EXPECT_FALSE(table.insert(key).second);
    }
    EXPECT_EQ(table.find(count), nullptr);
    table.clear();
    EXPECT_EQ(table.find(0), nullptr);
    EXPECT_TRUE(table.insert(0).second);
}

TEST(KeyTable, FindsEveryKeyThroughAllItsGrowth)
{
    expectAllFound<PlainHash>(5000);
}

TEST(KeyTable, KeysThatCollideAreToldApart)
{
    expectAllFound<SameHash>(300);
}

} // namespace
