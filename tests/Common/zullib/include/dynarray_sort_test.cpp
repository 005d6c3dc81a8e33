#include "dynarray_sort.h"

#include "ZUL_localintreg.h"
#include "ZUL_process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <stdexcept>
#include <vector>

namespace {

constexpr std::uint32_t sortedId = 7;

/// Ordered by a key that many elements share.
class Keyed {
public:
    Keyed(std::uint32_t id, int key, int& comparisonsLeft)
        : m_id(id), m_key(key), m_comparisonsLeft(comparisonsLeft)
    {
    }
    virtual ~Keyed() = default;

    std::uint32_t getTagId() const { return m_id; }
    bool operator>(Keyed const& other) const
    {
        if (m_comparisonsLeft == 0) {
            throw std::runtime_error("no order");
        }
        --m_comparisonsLeft;
        return m_key > other.m_key;
    }

private:
    std::uint32_t m_id;
    int m_key;
    int& m_comparisonsLeft;
};

struct NoParent {};

using KeyedArray = dynarray_zultp<Keyed, NoParent>;
using Order = std::vector<Keyed*>;

Order orderOf(KeyedArray const& array)
{
    Order order;
    for (std::uint32_t i = 0; i < array.getCount(); ++i) {
        order.push_back(array.at(i));
    }
    return order;
}

/// The rule word by word, one comparison after the other.
Order sortedByTheRule(Order order, std::uint32_t id)
{
    for (std::size_t position = order.size(); position-- > 1;) {
        if (order[position]->getTagId() != id) {
            continue;
        }
        std::size_t candidate = position;
        for (std::size_t lower = position; lower-- > 0;) {
            if (order[lower]->getTagId() == id && *order[lower] > *order[candidate]) {
                candidate = lower;
            }
        }
        std::swap(order[candidate], order[position]);
    }
    return order;
}

class Random {
public:
    int below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(m_engine); }

private:
    std::mt19937 m_engine{20240229};
};

/// Fills @p array; about one in @p others elements has another id.
void fill(KeyedArray& array, Random& random, int count, int keys, int others, int& comparisonsLeft)
{
    for (int i = 0; i < count; ++i) {
        std::uint32_t const id = random.below(others) == 0 ? sortedId + 1 : sortedId;
        array.Add(new Keyed(id, random.below(keys), comparisonsLeft));
    }
}

} // namespace

TEST(TagSort, OrdersOnlyTheTagsOfOneIdAmongTheirPositions)
{
    dynarray_zultp<ZUL_tag> tags(nullptr);
    auto* const later = new ZUL_process(nullptr, 2, "later");
    auto* const other = new ZUL_localintreg(static_cast<ZUL*>(nullptr));
    auto* const earlier = new ZUL_process(nullptr, 1, "earlier");
    tags.Add(later);
    tags.Add(other);
    tags.Add(earlier);
    tags.sort(0x8158000);
    EXPECT_EQ(tags.at(0), earlier);
    EXPECT_EQ(tags.at(1), other);
    EXPECT_EQ(tags.at(2), later);
}

TEST(TagSort, IsTheRulesPermutationForAnyArray)
{
    Random random;
    int unlimited = -1;
    for (int round = 0; round < 4000; ++round) {
        KeyedArray array(nullptr);
        fill(array, random, random.below(40), 1 + random.below(8), 2 + random.below(9), unlimited);
        Order const expected = sortedByTheRule(orderOf(array), sortedId);
        array.sort(sortedId);
        ASSERT_EQ(orderOf(array), expected) << "round " << round;
    }
}

TEST(TagSort, IsTheRulesPermutationForLongArrays)
{
    Random random;
    int unlimited = -1;
    for (int const keys : {1, 2, 20, 1'000'000}) {
        KeyedArray array(nullptr);
        fill(array, random, 700, keys, 4, unlimited);
        Order const expected = sortedByTheRule(orderOf(array), sortedId);
        array.sort(sortedId);
        ASSERT_EQ(orderOf(array), expected) << keys << " keys";
    }
}

TEST(TagSort, EqualElementsMayChangePlaces)
{
    int unlimited = -1;
    auto const sorted = [&unlimited](std::vector<int> const& keys) {
        KeyedArray array(nullptr);
        for (int const key : keys) {
            array.Add(new Keyed(sortedId, key, unlimited));
        }
        Order const before = orderOf(array);
        array.sort(sortedId);
        std::vector<std::size_t> origins;
        for (Keyed* const element : orderOf(array)) {
            origins.push_back(
                static_cast<std::size_t>(std::find(before.begin(), before.end(), element) - before.begin()));
        }
        return origins;
    };
    using Origins = std::vector<std::size_t>;
    EXPECT_EQ(sorted({1, 1, 0}), (Origins{2, 0, 1}));
    EXPECT_EQ(sorted({1, 2, 1}), (Origins{0, 2, 1}));
    EXPECT_EQ(sorted({2, 1, 1}), (Origins{2, 1, 0})) << "the greatest changes places with the last";
    EXPECT_EQ(sorted({1, 1, 1}), (Origins{0, 1, 2}));
}

TEST(TagSort, NeedsFarFewerComparisonsThanPairs)
{
    Random random;
    constexpr int count = 20'000;
    for (int const keys : {1, 3, 1'000'000}) {
        int comparisonsLeft = count * 100; // a pair each would be 200 million
        KeyedArray array(nullptr);
        fill(array, random, count, keys, 1000, comparisonsLeft);
        EXPECT_NO_THROW(array.sort(sortedId)) << keys << " keys";
    }
}

TEST(TagSort, LeavesTheArrayAloneWhenAComparisonThrows)
{
    Random random;
    int comparisonsLeft = 0;
    KeyedArray array(nullptr);
    fill(array, random, 30, 6, 4, comparisonsLeft);
    Order const before = orderOf(array);
    int allowed = 0;
    for (; allowed < 10'000; ++allowed) {
        comparisonsLeft = allowed;
        try {
            array.sort(sortedId);
            break; // enough for the whole sort
        } catch (std::runtime_error const&) {
            ASSERT_EQ(orderOf(array), before) << "thrown after " << allowed << " comparisons";
        }
    }
    EXPECT_GT(allowed, 30);
    EXPECT_LT(allowed, 10'000);
    EXPECT_NE(orderOf(array), before);
}

TEST(TagSort, TagsWithoutOrderThrowAndStay)
{
    dynarray_zultp<ZUL_tag> tags(nullptr);
    auto* const first = new ZUL_localintreg(static_cast<ZUL*>(nullptr));
    auto* const second = new ZUL_localintreg(static_cast<ZUL*>(nullptr));
    tags.Add(first);
    tags.Add(second);
    EXPECT_THROW(tags.sort(ZUL_localintreg::tag_id), std::runtime_error);
    EXPECT_EQ(tags.at(0), first);
    EXPECT_EQ(tags.at(1), second);
}

TEST(TagSort, FewerThanTwoTagsAreNeverCompared)
{
    int none = 0;
    KeyedArray array(nullptr);
    array.sort(sortedId);
    array.Add(new Keyed(sortedId, 1, none));
    array.Add(new Keyed(sortedId + 1, 0, none));
    array.scale(5);
    array.sort(sortedId);
    array.sort(99);
    EXPECT_EQ(array.getCount(), 2U);
    EXPECT_EQ(array.getLength(), 5U);
}
