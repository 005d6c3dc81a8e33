#pragma once

namespace kova::templates::patterns {

/// A lock that reports being entered twice by one thread, although the lock below may allow it.
class GenericLock {
public:
    GenericLock() = default;
    GenericLock(GenericLock const&) = delete;
    GenericLock& operator=(GenericLock const&) = delete;
    /// Where invariants are checked, a lock that is still entered ends the process:
    /// "GenericLock object destroyed with lock still held".
    virtual ~GenericLock();

    /// Waits for the lock below and takes it. It does not enter: enter() of the same thread still succeeds.
    virtual void acquire() = 0;
    /// Takes the lock below if that can be done within @p milliseconds. It does not enter, so what it took is given
    /// back with release(), not with leave().
    /// @return whether it was taken
    virtual bool try_acquire(unsigned int milliseconds) = 0;
    /// Gives the lock below back once.
    virtual void release() = 0;

    /// Waits for the lock and enters it.
    /// @throws std::logic_error "GenericLock object got lock but is already marked as locked" when this thread entered
    ///         it before; it stays entered once. Where invariants are checked, the process ends instead.
    void enter();
    /// Leaves the lock, which the calling thread has entered.
    /// @throws std::logic_error "GenericLock::leave() called with lock not held" when nobody has entered it. Where
    ///         invariants are checked, the process ends instead.
    void leave();

private:
    bool m_locked = false; // touched by the lock's holder only
};

/// Enters a lock for the length of a scope.
class GenericLockGuard {
public:
    /// Enters @p lock, which is not null and outlives the guard. The second argument has no meaning.
    /// @throws what GenericLock::enter() throws
    GenericLockGuard(GenericLock* lock, bool) : m_lock(lock) { m_lock->enter(); }
    GenericLockGuard(GenericLockGuard const&) = delete;
    GenericLockGuard& operator=(GenericLockGuard const&) = delete;
    /// Leaves the lock. Nobody else may have left it: the process ends then.
    ~GenericLockGuard() { m_lock->leave(); }

private:
    GenericLock* m_lock;
};

} // namespace kova::templates::patterns
