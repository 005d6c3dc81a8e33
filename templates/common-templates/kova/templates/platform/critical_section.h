#pragma once

#include "kova/templates/patterns/generic_lock.h"
#include "kova/templates/platform/recursive_mutex.h"

namespace kova::templates::platform {

/// A lock between the threads of the process, over a recursive mutex.
class CriticalSection : public patterns::GenericLock {
public:
    void acquire() override { m_mutex.lock(); }
    /// Never waits; the argument is not used.
    /// @return true when the mutex was free or this thread's already
    bool try_acquire(unsigned int) override { return m_mutex.tryLock() == 0; }
    void release() override { m_mutex.unlock(); }

private:
    RecursiveMutex m_mutex;
};

} // namespace kova::templates::platform
