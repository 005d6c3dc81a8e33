#pragma once

#include "kova/templates/patterns/guard.h"

#include <atomic>
#include <cstdint>
#include <pthread.h>

namespace kova::templates::platform {

/// A POSIX mutex that its owner may lock again; it is free after as many unlocks.
class RecursiveMutex {
public:
    /// @throws std::system_error when the system cannot make a mutex
    RecursiveMutex();
    RecursiveMutex(RecursiveMutex const&) = delete;
    RecursiveMutex& operator=(RecursiveMutex const&) = delete;
    ~RecursiveMutex();

    /// Waits for the mutex. @return the POSIX result: 0, or EAGAIN when it was locked too often
    int lock() noexcept;
    /// Takes the mutex without waiting. @return the POSIX result: 0, or EBUSY when another thread holds it
    int tryLock() noexcept;
    /// @return the POSIX result: 0, or EPERM when the calling thread does not hold the mutex
    int unlock() noexcept;

    /// How often the mutex is locked. For information only: after an unlock the number is lowered when the mutex may
    /// be another thread's already.
    std::int32_t lockCount() const noexcept { return m_lockCount.load(std::memory_order_relaxed); }

private:
    pthread_mutexattr_t m_attribute{};
    pthread_mutex_t m_mutex{};
    std::atomic<std::int32_t> m_lockCount = 0;
};

/// Locks a recursive mutex for the length of a scope.
class RecursiveMutexGuard : public patterns::Guard<RecursiveMutex*> {
public:
    /// @param mutex not null; has to outlive the guard
    explicit RecursiveMutexGuard(RecursiveMutex* mutex) noexcept : Guard(mutex) { mutex->lock(); }
    /// Unlocks the mutex, unless the guard was disabled.
    ~RecursiveMutexGuard()
    {
        if (isEnabled()) {
            getGuardedObject()->unlock();
        }
    }
};

} // namespace kova::templates::platform
