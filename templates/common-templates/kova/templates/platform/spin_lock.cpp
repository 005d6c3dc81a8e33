#include "kova/templates/platform/spin_lock.h"

#include "kova/templates/platform/simple_thread.h"

#include <atomic>
#include <sched.h>

namespace kova::templates::platform {

namespace {

constexpr int freeLock = 0;
constexpr int takenLock = 1;
constexpr pthread_t nobody = 0;

} // namespace

void initSpinLockVariable(int* var) noexcept
{
    if (var != nullptr) {
        std::atomic_ref(*var).store(freeLock);
    }
}

SpinLockVariableGuard::SpinLockVariableGuard(int* var, pthread_t* owner) noexcept : m_var(var), m_owner(owner)
{
    pthread_t const self = SimpleThread::currentThreadId();
    // Read without the lock: whatever other threads write there meanwhile, only this thread writes its own identity.
    if (owner != nullptr && std::atomic_ref(*owner).load(std::memory_order_relaxed) == self) {
        return;
    }
    while (std::atomic_ref(*var).exchange(takenLock) == takenLock) {
        sched_yield();
    }
    if (owner != nullptr) {
        std::atomic_ref(*owner).store(self, std::memory_order_relaxed);
    }
    m_holdsLock = true;
}

SpinLockVariableGuard::~SpinLockVariableGuard()
{
    if (!m_holdsLock) {
        return;
    }
    if (m_owner != nullptr) {
        std::atomic_ref(*m_owner).store(nobody, std::memory_order_relaxed);
    }
    std::atomic_ref(*m_var).store(freeLock, std::memory_order_release);
}

} // namespace kova::templates::platform
