#include "kova/templates/patterns.h"

#include <gtest/gtest.h>
#include <type_traits>

namespace {

using kova::templates::patterns::Guard;
using kova::templates::patterns::HeapArrayGuard;

/// Counts the objects that are alive.
struct Counted {
    Counted() { ++alive; }
    Counted(Counted const&) = delete;
    Counted& operator=(Counted const&) = delete;
    ~Counted() { --alive; }
    static inline int alive = 0;
};

TEST(Guard, IsEnabledUntilItIsDisabled)
{
    Guard<int> guard(7);
    EXPECT_TRUE(guard.isEnabled());
    guard.disable();
    EXPECT_FALSE(guard.isEnabled());
}

TEST(Guard, HandsOutTheGuardedObject)
{
    int number = 7;
    Guard<int*> const guard(&number);
    EXPECT_EQ(guard.getGuardedObject(), &number);
}

TEST(Guard, DisablingKeepsTheGuardedObject)
{
    Guard<int> guard(7);
    guard.disable();
    EXPECT_EQ(guard.getGuardedObject(), 7);
}

TEST(Guard, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<Guard<int>>);
    EXPECT_FALSE(std::is_copy_assignable_v<Guard<int>>);
}

TEST(HeapArrayGuard, ReleasesEveryElementAtTheEndOfTheScope)
{
    {
        HeapArrayGuard<Counted> const guard(new Counted[3]);
        EXPECT_TRUE(guard.isEnabled());
        EXPECT_EQ(Counted::alive, 3);
    }
    EXPECT_EQ(Counted::alive, 0);
}

TEST(HeapArrayGuard, LeavesTheArrayAloneWhenDisabled)
{
    auto* const array = new Counted[3];
    {
        HeapArrayGuard<Counted> guard(array);
        EXPECT_EQ(guard.getGuardedObject(), array);
        guard.disable();
    }
    EXPECT_EQ(Counted::alive, 3);
    delete[] array;
}

TEST(HeapArrayGuard, NullIsNotReleased)
{
    HeapArrayGuard<Counted> const guard(nullptr);
    EXPECT_TRUE(guard.isEnabled());
    EXPECT_EQ(guard.getGuardedObject(), nullptr);
}

TEST(HeapArrayGuard, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<HeapArrayGuard<int>>);
    EXPECT_FALSE(std::is_copy_assignable_v<HeapArrayGuard<int>>);
}

} // namespace
