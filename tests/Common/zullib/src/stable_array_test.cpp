#include "stable_array.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

TEST(StableArray, ItemsStayWhereTheyAreWhileMoreAreAdded)
{
    constexpr int count = 1000;
    StableArray<int> array;
    EXPECT_EQ(array.size(), 0U);
    std::vector<int const*> places;
    for (int i = 0; i < count; ++i) {
        array.add(i);
        ASSERT_EQ(array.size(), static_cast<std::size_t>(i) + 1);
        places.push_back(&array.at(static_cast<std::size_t>(i)));
    }
    for (int i = 0; i < count; ++i) {
        auto const place = static_cast<std::size_t>(i);
        EXPECT_EQ(&array.at(place), places[place]);
        EXPECT_EQ(array.at(place), i);
    }
}

} // namespace
