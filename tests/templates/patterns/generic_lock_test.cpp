#include "kova/templates/patterns.h"
#include "kova/templates/platform/invariant.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

namespace {

using kova::templates::patterns::GenericLock;
using kova::templates::patterns::GenericLockGuard;
using kova::templates::platform::invariantsAreChecked;

/// A lock that writes down what is done to it.
class RecordedLock : public GenericLock {
public:
    void acquire() override { calls += "acquire "; }
    bool try_acquire(unsigned int milliseconds) override
    {
        calls += "try_acquire(" + std::to_string(milliseconds) + ") ";
        return true;
    }
    void release() override { calls += "release "; }

    std::string calls;
};

/// What @p action throws as a std::logic_error.
template <class Action>
std::string logicErrorOf(Action action)
{
    try {
        action();
    } catch (std::logic_error const& error) {
        return error.what();
    }
    return "nothing thrown";
}

TEST(GenericLock, EnteringAcquiresAndLeavingReleases)
{
    RecordedLock lock;
    lock.enter();
    EXPECT_EQ(lock.calls, "acquire ");
    lock.leave();
    EXPECT_EQ(lock.calls, "acquire release ");
}

TEST(GenericLock, CanBeEnteredAgainAfterItWasLeft)
{
    RecordedLock lock;
    lock.enter();
    lock.leave();
    lock.enter();
    lock.leave();
    EXPECT_EQ(lock.calls, "acquire release acquire release ");
}

TEST(GenericLock, EnteringTwiceIsReported)
{
    RecordedLock lock;
    lock.enter();
    if (invariantsAreChecked()) {
        EXPECT_DEATH(lock.enter(), "^GenericLock:49: Assertion `!m_locked' failed\\.\n");
    } else {
        EXPECT_EQ(logicErrorOf([&] { lock.enter(); }),
                  "GenericLock object got lock but is already marked as locked");
        EXPECT_EQ(lock.calls, "acquire acquire release ");
    }
    lock.leave();
}

TEST(GenericLock, StaysEnteredOnceWhenEnteringTwiceWasReported)
{
    if (invariantsAreChecked()) {
        return; // the process ends there
    }
    RecordedLock lock;
    lock.enter();
    EXPECT_THROW(lock.enter(), std::logic_error);
    lock.leave();
    EXPECT_THROW(lock.leave(), std::logic_error);
}

TEST(GenericLock, LeavingALockThatWasNotEnteredIsReported)
{
    RecordedLock lock;
    if (invariantsAreChecked()) {
        EXPECT_DEATH(lock.leave(), "^GenericLock:73: Assertion `m_locked' failed\\.\n");
    } else {
        EXPECT_EQ(logicErrorOf([&] { lock.leave(); }), "GenericLock::leave() called with lock not held");
    }
    EXPECT_EQ(lock.calls, "");
}

TEST(GenericLock, TryingDoesNotEnter)
{
    RecordedLock lock;
    EXPECT_TRUE(lock.try_acquire(5));
    lock.enter();
    lock.leave();
    EXPECT_EQ(lock.calls, "try_acquire(5) acquire release ");
}

TEST(GenericLock, DestroyingAnEnteredLockIsReported)
{
    auto const destroyEntered = [] {
        RecordedLock lock;
        lock.enter();
    };
    if (invariantsAreChecked()) {
        EXPECT_DEATH(destroyEntered(),
                     "^GenericLock:[0-9]+: Assertion `GenericLock object destroyed with lock still held' "
                     "failed\\.\n");
    } else {
        EXPECT_NO_THROW(destroyEntered());
    }
}

TEST(GenericLockGuard, EntersForTheLengthOfItsScope)
{
    RecordedLock lock;
    {
        GenericLockGuard const guard(&lock, false);
        EXPECT_EQ(lock.calls, "acquire ");
    }
    EXPECT_EQ(lock.calls, "acquire release ");
}

TEST(GenericLockGuard, ItsSecondArgumentHasNoMeaning)
{
    RecordedLock lock;
    {
        GenericLockGuard const guard(&lock, true);
        EXPECT_EQ(lock.calls, "acquire ");
    }
    EXPECT_EQ(lock.calls, "acquire release ");
}

TEST(GenericLockGuard, LeavesWhenAnExceptionEndsTheScope)
{
    RecordedLock lock;
    auto const throwInside = [&] {
        GenericLockGuard const guard(&lock, false);
        throw std::runtime_error("inside");
    };
    EXPECT_THROW(throwInside(), std::runtime_error);
    EXPECT_EQ(lock.calls, "acquire release ");
}

TEST(GenericLockGuard, ThatCannotEnterDoesNotLeave)
{
    if (invariantsAreChecked()) {
        return; // the process ends there
    }
    RecordedLock lock;
    lock.enter();
    EXPECT_THROW(GenericLockGuard(&lock, false), std::logic_error);
    EXPECT_EQ(lock.calls, "acquire acquire release ");
    lock.leave();
}

} // namespace
