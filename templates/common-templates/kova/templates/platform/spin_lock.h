#pragma once

#include <pthread.h>

namespace kova::templates::platform {

/// Makes @p var a free spin lock (0). Null is ignored.
void initSpinLockVariable(int* var) noexcept;

/// Holds a spin lock for the length of a scope. The lock is a plain number, so that it needs no construction.
class SpinLockVariableGuard {
public:
    /// Takes the lock, giving the processor away while another thread has it.
    /// @param var the lock word, 0 when free and 1 when taken; has to outlive the guard
    /// @param owner null, or the word that says which thread holds the lock, 0 for none. With an owner word a thread
    ///        that holds the lock gets through again; only its outermost guard releases the lock. All guards of a lock
    ///        have to be given the same one.
    SpinLockVariableGuard(int* var, pthread_t* owner) noexcept;
    SpinLockVariableGuard(SpinLockVariableGuard const&) = delete;
    SpinLockVariableGuard& operator=(SpinLockVariableGuard const&) = delete;
    /// Releases the lock if this guard took it.
    ~SpinLockVariableGuard();

private:
    int* m_var;
    pthread_t* m_owner;
    bool m_holdsLock = false;
};

} // namespace kova::templates::platform
