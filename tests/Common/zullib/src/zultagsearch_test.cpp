#include "zultagsearch.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <thread>
#include <vector>

namespace {

/// Nothing but an id; counts how often it is asked for it.
class IdTag : public ZUL_tag {
public:
    explicit IdTag(std::uint32_t id) : m_id(id) {}
    unsigned long Load(void const*, unsigned long) override { return 8; }
    unsigned long getSaveLength() override { return 8; }
    void Save(void*) override {}
    std::uint32_t getTagId() const override
    {
        ++m_asked;
        return m_id;
    }
    unsigned timesAsked() const { return m_asked; }

private:
    std::uint32_t m_id;
    mutable std::atomic<unsigned> m_asked{0};
};

class TagSearch : public testing::Test {
protected:
    /// Adds a tag behind the search's back.
    IdTag* add(std::uint32_t id)
    {
        m_tags.Add(new IdTag(id));
        return static_cast<IdTag*>(m_tags.at(m_tags.getCount() - 1));
    }

    dynarray_zultp<ZUL_tag> m_tags{nullptr};
    ZulTagSearch m_search{nullptr, m_tags};
};

} // namespace

TEST_F(TagSearch, CountsAndFindsInListOrder)
{
    IdTag* const first = add(1);
    add(2);
    IdTag* const second = add(1);
    EXPECT_EQ(m_search.count(1), 2U);
    EXPECT_EQ(m_search.count(2), 1U);
    EXPECT_EQ(m_search.count(3), 0U);
    EXPECT_EQ(m_search.search(1, 0), first);
    EXPECT_EQ(m_search.search(1, 1), second);
}

TEST_F(TagSearch, BeyondTheCountIsNothing)
{
    add(1);
    EXPECT_EQ(m_search.search(1, m_search.count(1)), nullptr);
    EXPECT_EQ(m_search.search(1, 0xFFFFFFFF), nullptr);
    EXPECT_EQ(m_search.search(2, 0), nullptr);
}

TEST_F(TagSearch, FindsWithoutACountBefore)
{
    IdTag* const tag = add(0xFFFFFFFF);
    EXPECT_EQ(m_search.search(0xFFFFFFFF, 0), tag);
}

TEST_F(TagSearch, IdZeroHasNoTags)
{
    add(0);
    EXPECT_EQ(m_search.count(0), 0U);
    EXPECT_EQ(m_search.search(0, 0), nullptr);
}

TEST_F(TagSearch, EmptyListIsAnAnswerToo)
{
    IdTag* const other = add(1);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(m_search.count(2), 0U);
        EXPECT_EQ(m_search.search(2, 0), nullptr);
    }
    EXPECT_EQ(other->timesAsked(), 1U);
}

TEST_F(TagSearch, RepeatedQuestionsScanOnce)
{
    std::vector<IdTag*> tags;
    for (int i = 0; i < 100; ++i) {
        tags.push_back(add(1));
    }
    for (std::uint32_t i = 0; i < m_search.count(1); ++i) {
        EXPECT_EQ(m_search.search(1, i), tags[i]);
    }
    for (IdTag const* const tag : tags) {
        EXPECT_EQ(tag->timesAsked(), 1U);
    }
}

TEST_F(TagSearch, ListStaysUntilItIsInvalidated)
{
    add(1);
    add(2);
    ASSERT_EQ(m_search.count(1), 1U);
    ASSERT_EQ(m_search.count(2), 1U);
    IdTag* const added = add(1);
    add(2);
    EXPECT_EQ(m_search.count(1), 1U);
    EXPECT_EQ(m_search.search(1, 1), nullptr);
    m_search.invalidate(1);
    EXPECT_EQ(m_search.count(1), 2U);
    EXPECT_EQ(m_search.search(1, 1), added);
    EXPECT_EQ(m_search.count(2), 1U) << "other ids keep their lists";
}

TEST_F(TagSearch, InvalidatingZeroForgetsEveryList)
{
    for (std::uint32_t id = 1; id <= 6; ++id) {
        EXPECT_EQ(m_search.count(id), 0U);
        add(id);
    }
    m_search.invalidate(0);
    for (std::uint32_t id = 1; id <= 6; ++id) {
        EXPECT_EQ(m_search.count(id), 1U);
    }
}

TEST_F(TagSearch, InvalidatingAnIdWithoutListChangesNothing)
{
    for (std::uint32_t id = 1; id <= 6; ++id) {
        m_search.count(id);
    }
    m_search.invalidate(99);
    for (std::uint32_t id = 1; id <= 6; ++id) {
        add(id);
        EXPECT_EQ(m_search.count(id), 0U) << id;
    }
}

TEST_F(TagSearch, ShorterListIsSeenAfterInvalidation)
{
    add(1);
    add(1);
    ASSERT_EQ(m_search.count(1), 2U);
    std::unique_ptr<ZUL_tag> const removed(m_tags.at(0));
    m_tags.remove(0);
    m_search.invalidate(1);
    EXPECT_EQ(m_search.count(1), 1U);
    EXPECT_EQ(m_search.search(1, 0), m_tags.at(0));
    EXPECT_EQ(m_search.search(1, 1), nullptr);
}

TEST_F(TagSearch, SixIdsKeepTheirLists)
{
    for (std::uint32_t id = 1; id <= 6; ++id) {
        m_search.count(id);
    }
    for (std::uint32_t id = 1; id <= 6; ++id) {
        add(id);
    }
    for (std::uint32_t id = 1; id <= 6; ++id) {
        EXPECT_EQ(m_search.count(id), 0U) << id;
    }
}

TEST_F(TagSearch, SeventhIdTakesThePlaceOfTheFirst)
{
    for (std::uint32_t id = 1; id <= 7; ++id) {
        m_search.count(id);
    }
    for (std::uint32_t id = 1; id <= 7; ++id) {
        add(id);
    }
    for (std::uint32_t id = 7; id >= 2; --id) {
        EXPECT_EQ(m_search.count(id), 0U) << id << " keeps its list";
    }
    EXPECT_EQ(m_search.count(1), 1U);
}

TEST_F(TagSearch, TheListUnusedForLongestLeavesFirst)
{
    for (std::uint32_t id = 1; id <= 6; ++id) {
        m_search.count(id);
    }
    for (std::uint32_t const id : {1U, 3U, 2U}) { // unused for longest now: 4, 5, 6, 1, 3, 2
        m_search.count(id);
    }
    for (std::uint32_t id = 1; id <= 6; ++id) {
        add(id);
    }
    m_search.count(7);
    m_search.count(8);
    for (std::uint32_t const id : {6U, 1U, 3U, 2U}) {
        EXPECT_EQ(m_search.count(id), 0U) << id << " keeps its list";
    }
    EXPECT_EQ(m_search.count(4), 1U);
    EXPECT_EQ(m_search.count(5), 1U);
}

TEST_F(TagSearch, SearchingIsUsingToo)
{
    for (std::uint32_t id = 1; id <= 6; ++id) {
        m_search.count(id);
    }
    m_search.search(1, 0);
    add(1);
    add(2);
    m_search.count(7);
    EXPECT_EQ(m_search.count(1), 0U) << "used last but one";
    EXPECT_EQ(m_search.count(2), 1U);
}

TEST_F(TagSearch, InvalidatedListLeavesBeforeTheOthers)
{
    for (std::uint32_t id = 1; id <= 6; ++id) {
        m_search.count(id);
    }
    m_search.invalidate(5);
    for (std::uint32_t id = 1; id <= 6; ++id) {
        add(id);
    }
    m_search.count(7); // takes the free place
    for (std::uint32_t const id : {1U, 2U, 3U, 4U, 6U}) {
        EXPECT_EQ(m_search.count(id), 0U) << id << " keeps its list";
    }
    EXPECT_EQ(m_search.count(5), 1U);
}

TEST_F(TagSearch, ForgottenListDoesNotHideTheOnesUnusedForLonger)
{
    for (std::uint32_t id = 1; id <= 6; ++id) {
        m_search.count(id);
    }
    m_search.invalidate(5);
    for (std::uint32_t id = 1; id <= 6; ++id) {
        add(id);
    }
    for (std::uint32_t const id : {1U, 2U, 3U, 4U, 6U}) {
        EXPECT_EQ(m_search.count(id), 0U) << id << " keeps its list";
    }
}

TEST_F(TagSearch, OneIdNeverHasTwoLists)
{
    for (std::uint32_t id = 1; id <= 6; ++id) {
        m_search.count(id);
    }
    m_search.invalidate(3);
    m_search.invalidate(1);
    m_search.count(6);
    m_search.count(1);
    m_search.count(3);
    for (std::uint32_t id = 1; id <= 6; ++id) {
        add(id);
        m_search.invalidate(id);
        EXPECT_EQ(m_search.count(id), 1U) << id;
    }
}

TEST_F(TagSearch, IdReturnsWithAFreshList)
{
    EXPECT_EQ(m_search.count(1), 0U);
    IdTag* const tag = add(1);
    EXPECT_EQ(m_search.count(1), 0U);
    for (std::uint32_t id = 2; id <= 7; ++id) {
        m_search.count(id);
    }
    EXPECT_EQ(m_search.count(1), 1U);
    EXPECT_EQ(m_search.search(1, 0), tag);
    add(1);
    EXPECT_EQ(m_search.count(1), 1U);
}

// Concurrent readers.

namespace {

constexpr std::uint32_t idsInUse = 16; // far more than there are slots
constexpr unsigned readers = 8;
constexpr int rounds = 60;

/// Tags of 16 ids, id n n times, mixed.
class ConcurrentTagSearch : public testing::Test {
protected:
    ConcurrentTagSearch()
    {
        for (std::uint32_t round = 0; round < idsInUse; ++round) {
            for (std::uint32_t id = idsInUse; id > round; --id) {
                m_tags.Add(new IdTag(id));
                m_expected[id].push_back(m_tags.at(m_tags.getCount() - 1));
            }
        }
    }

    /// Wrong answers of one reader that asks for every id in an order of its own.
    int wrongAnswers(unsigned reader)
    {
        int wrong = 0;
        for (int round = 0; round < rounds; ++round) {
            for (std::uint32_t step = 0; step < idsInUse; ++step) {
                std::uint32_t const id = 1 + (step * (2 * reader + 1) + reader) % idsInUse;
                std::uint32_t const count = m_search.count(id);
                wrong += count == id ? 0 : 1;
                for (std::uint32_t i = 0; i <= id; ++i) {
                    ZUL_tag* const expected = i < id ? m_expected[id][i] : nullptr;
                    wrong += m_search.search(id, i) == expected ? 0 : 1;
                }
            }
        }
        return wrong;
    }

    void read(std::atomic<int>& wrong)
    {
        std::vector<std::thread> threads;
        for (unsigned reader = 0; reader < readers; ++reader) {
            threads.emplace_back([this, reader, &wrong] { wrong += wrongAnswers(reader); });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }

    dynarray_zultp<ZUL_tag> m_tags{nullptr};
    ZulTagSearch m_search{nullptr, m_tags};
    std::array<std::vector<ZUL_tag*>, idsInUse + 1> m_expected;
};

} // namespace

TEST_F(ConcurrentTagSearch, ReadersOfManyIdsMissNothing)
{
    std::atomic<int> wrong = 0;
    read(wrong);
    EXPECT_EQ(wrong, 0);
}

TEST_F(ConcurrentTagSearch, InvalidatingMeanwhileDisturbsNobody)
{
    std::atomic<int> wrong = 0;
    std::atomic<bool> done = false;
    std::thread invalidator([this, &done] {
        for (std::uint32_t id = 0; !done; id = (id + 1) % (idsInUse + 1)) {
            m_search.invalidate(id);
            std::this_thread::yield();
        }
    });
    read(wrong);
    done = true;
    invalidator.join();
    EXPECT_EQ(wrong, 0);
}
