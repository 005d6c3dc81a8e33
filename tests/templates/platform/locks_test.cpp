#include "kova/templates/platform.h"

#include <atomic>
#include <cerrno>
#include <future>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>
#include <type_traits>
#include <vector>

/// The thread sanitizer looks here for what is not to be reported: a test unlocks a mutex that it does not hold.
extern "C" char const* __tsan_default_suppressions()
{
    return "mutex:RecursiveMutex::unlock";
}

namespace {

using kova::templates::patterns::GenericLock;
using kova::templates::patterns::GenericLockGuard;
using kova::templates::platform::CriticalSection;
using kova::templates::platform::initSpinLockVariable;
using kova::templates::platform::invariantsAreChecked;
using kova::templates::platform::RecursiveMutex;
using kova::templates::platform::RecursiveMutexGuard;
using kova::templates::platform::SimpleThread;
using kova::templates::platform::SpinLockVariableGuard;

constexpr int threadCount = 4;
constexpr int rounds = 2000;

/// The result of @p question, asked on another thread.
template <class Question>
auto onAnotherThread(Question question)
{
    return std::async(std::launch::async, question).get();
}

/// Runs @p round so often on several threads at once that a missing lock loses counts.
template <class Round>
void contend(Round round)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&] {
            for (int k = 0; k < rounds; ++k) {
                round();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

bool isFree(RecursiveMutex& mutex)
{
    return onAnotherThread([&] { return mutex.tryLock() == 0 && mutex.unlock() == 0; });
}

TEST(SimpleThread, NamesTheCallingThread)
{
    EXPECT_EQ(SimpleThread::currentThreadId(), pthread_self());
    pthread_t const other = onAnotherThread([] { return SimpleThread::currentThreadId(); });
    EXPECT_NE(other, SimpleThread::currentThreadId());
}

TEST(RecursiveMutex, IsFreeAfterAsManyUnlocksAsLocks)
{
    RecursiveMutex mutex;
    EXPECT_EQ(mutex.lock(), 0);
    EXPECT_EQ(mutex.lock(), 0);
    EXPECT_EQ(mutex.unlock(), 0);
    EXPECT_FALSE(isFree(mutex));
    EXPECT_EQ(mutex.unlock(), 0);
    EXPECT_TRUE(isFree(mutex));
}

TEST(RecursiveMutex, CountsItsLocks)
{
    RecursiveMutex mutex;
    EXPECT_EQ(mutex.lockCount(), 0);
    mutex.lock();
    mutex.lock();
    EXPECT_EQ(mutex.lockCount(), 2);
    mutex.tryLock();
    EXPECT_EQ(mutex.lockCount(), 3);
    mutex.unlock();
    EXPECT_EQ(mutex.lockCount(), 2);
    mutex.unlock();
    mutex.unlock();
    EXPECT_EQ(mutex.lockCount(), 0);
}

TEST(RecursiveMutex, HandsOutThePosixErrors)
{
    RecursiveMutex mutex;
    EXPECT_EQ(mutex.unlock(), EPERM);
    mutex.lock();
    EXPECT_EQ(onAnotherThread([&] { return mutex.tryLock(); }), EBUSY);
    EXPECT_EQ(onAnotherThread([&] { return mutex.unlock(); }), EPERM);
    EXPECT_EQ(mutex.lockCount(), 1);
    mutex.unlock();
}

TEST(RecursiveMutex, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<RecursiveMutex>);
    EXPECT_FALSE(std::is_copy_assignable_v<RecursiveMutex>);
}

TEST(RecursiveMutex, KeepsThreadsApart)
{
    RecursiveMutex mutex;
    int count = 0;
    contend([&] {
        RecursiveMutexGuard const outer(&mutex);
        RecursiveMutexGuard const inner(&mutex);
        ++count;
    });
    EXPECT_EQ(count, threadCount * rounds);
    EXPECT_EQ(mutex.lockCount(), 0);
}

TEST(RecursiveMutexGuard, LocksForTheLengthOfItsScope)
{
    RecursiveMutex mutex;
    {
        RecursiveMutexGuard const guard(&mutex);
        EXPECT_TRUE(guard.isEnabled());
        EXPECT_EQ(guard.getGuardedObject(), &mutex);
        EXPECT_FALSE(isFree(mutex));
    }
    EXPECT_TRUE(isFree(mutex));
}

TEST(RecursiveMutexGuard, LeavesTheMutexLockedWhenDisabled)
{
    RecursiveMutex mutex;
    {
        RecursiveMutexGuard guard(&mutex);
        guard.disable();
    }
    EXPECT_FALSE(isFree(mutex));
    EXPECT_EQ(mutex.unlock(), 0);
}

TEST(CriticalSection, IsAGenericLock)
{
    EXPECT_TRUE((std::is_base_of_v<GenericLock, CriticalSection>));
}

TEST(CriticalSection, KeepsOtherThreadsOutWhileItIsEntered)
{
    CriticalSection section;
    section.enter();
    EXPECT_FALSE(onAnotherThread([&] { return section.try_acquire(0); }));
    section.leave();
    EXPECT_TRUE(onAnotherThread([&] {
        bool const taken = section.try_acquire(0);
        section.release();
        return taken;
    }));
}

TEST(CriticalSection, TryingNeverWaits)
{
    CriticalSection section;
    section.acquire();
    EXPECT_FALSE(onAnotherThread([&] { return section.try_acquire(0xFFFFFFFF); }));
    section.release();
}

TEST(CriticalSection, TheMutexBelowMayBeTakenAgainByItsThread)
{
    CriticalSection section;
    section.acquire();
    EXPECT_TRUE(section.try_acquire(0));
    section.acquire();
    section.release();
    section.release();
    EXPECT_FALSE(onAnotherThread([&] { return section.try_acquire(0); }));
    section.release();
}

TEST(CriticalSection, EnteringTwiceIsReportedAndLeavesItEnteredOnce)
{
    CriticalSection section;
    auto const enterTwice = [&] {
        section.enter();
        section.enter();
    };
    if (invariantsAreChecked()) {
        EXPECT_DEATH(enterTwice(), "GenericLock:49: Assertion `!m_locked' failed\\.");
        return;
    }
    EXPECT_THROW(enterTwice(), std::logic_error);
    EXPECT_FALSE(onAnotherThread([&] { return section.try_acquire(0); }));
    section.leave();
    EXPECT_TRUE(onAnotherThread([&] {
        bool const taken = section.try_acquire(0);
        section.release();
        return taken;
    }));
}

TEST(CriticalSection, KeepsThreadsApart)
{
    CriticalSection section;
    int count = 0;
    contend([&] {
        GenericLockGuard const guard(&section, false);
        ++count;
    });
    EXPECT_EQ(count, threadCount * rounds);
}

TEST(SpinLock, InitialisingMakesItFree)
{
    int word = 1;
    initSpinLockVariable(&word);
    EXPECT_EQ(word, 0);
    initSpinLockVariable(nullptr);
}

TEST(SpinLockVariableGuard, HoldsTheLockForTheLengthOfItsScope)
{
    int word = 0;
    {
        SpinLockVariableGuard const guard(&word, nullptr);
        EXPECT_EQ(word, 1);
    }
    EXPECT_EQ(word, 0);
}

TEST(SpinLockVariableGuard, TellsTheOwner)
{
    int word = 0;
    pthread_t owner = 0;
    {
        SpinLockVariableGuard const guard(&word, &owner);
        EXPECT_EQ(word, 1);
        EXPECT_EQ(owner, pthread_self());
    }
    EXPECT_EQ(word, 0);
    EXPECT_EQ(owner, pthread_t{0});
}

TEST(SpinLockVariableGuard, OnlyTheOutermostGuardOfTheOwnerReleases)
{
    int word = 0;
    pthread_t owner = 0;
    {
        SpinLockVariableGuard const outer(&word, &owner);
        {
            SpinLockVariableGuard const middle(&word, &owner);
            SpinLockVariableGuard const inner(&word, &owner);
            EXPECT_EQ(word, 1);
        }
        EXPECT_EQ(word, 1);
        EXPECT_EQ(owner, pthread_self());
    }
    EXPECT_EQ(word, 0);
    EXPECT_EQ(owner, pthread_t{0});
}

TEST(SpinLockVariableGuard, AnOwnerWordThatNamesThisThreadTakesNothing)
{
    int word = 0;
    pthread_t owner = pthread_self();
    {
        SpinLockVariableGuard const guard(&word, &owner);
        EXPECT_EQ(word, 0);
    }
    EXPECT_EQ(word, 0);
    EXPECT_EQ(owner, pthread_self());
}

TEST(SpinLockVariableGuard, OnlyTheValueOneCountsAsTaken)
{
    int word = 2;
    {
        SpinLockVariableGuard const guard(&word, nullptr);
        EXPECT_EQ(word, 1);
    }
    EXPECT_EQ(word, 0);
}

TEST(SpinLockVariableGuard, WaitsForAnotherThread)
{
    int word = 0;
    pthread_t owner = 0;
    std::atomic<bool> entered = false;
    std::future<void> other;
    {
        SpinLockVariableGuard const guard(&word, &owner);
        other = std::async(std::launch::async, [&] {
            SpinLockVariableGuard const waiting(&word, &owner);
            entered = true;
        });
        for (int i = 0; i < 100; ++i) {
            std::this_thread::yield();
        }
        EXPECT_FALSE(entered);
    }
    other.get();
    EXPECT_TRUE(entered);
    EXPECT_EQ(word, 0);
}

TEST(SpinLockVariableGuard, KeepsThreadsApart)
{
    int word = 0;
    int count = 0;
    contend([&] {
        SpinLockVariableGuard const guard(&word, nullptr);
        ++count;
    });
    EXPECT_EQ(count, threadCount * rounds);
}

TEST(SpinLockVariableGuard, KeepsThreadsApartThatNest)
{
    int word = 0;
    pthread_t owner = 0;
    int count = 0;
    contend([&] {
        SpinLockVariableGuard const outer(&word, &owner);
        SpinLockVariableGuard const inner(&word, &owner);
        ++count;
    });
    EXPECT_EQ(count, threadCount * rounds);
    EXPECT_EQ(word, 0);
    EXPECT_EQ(owner, pthread_t{0});
}

} // namespace
