#pragma once

#include "fault.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <new>

/// While one lives, what this thread takes of memory is counted, and one of its calls fails.
class WatchedAllocations {
public:
    /// @param failing the call that fails, counted from 1; 0 for none
    explicit WatchedAllocations(std::size_t failing = 0) noexcept
        : m_fault({.first = failing, .error = ENOMEM})
    {
    }

    /// Whether the failing call was made.
    bool hasFailed() const noexcept { return m_fault.failed() != nullptr; }
    /// Sum of all sizes asked for, whether or not they were given back.
    std::size_t bytes() const noexcept { return m_fault.bytes(); }

private:
    InjectedFault m_fault;
};

/// Runs @p action with its first, second, ... allocation failing, until there are no more of them, and @p check after
/// each run that failed. @p prepare makes what the action works on, anew for each run.
/// @return how many runs failed
template <class Prepare, class Action, class Check>
std::size_t withEveryAllocationFailing(Prepare prepare, Action action, Check check)
{
    bool failed = true;
    std::size_t failures = 0;
    for (std::size_t failing = 1; failed; ++failing) {
        auto subject = prepare();
        bool thrown = false;
        {
            WatchedAllocations const watched(failing);
            try {
                action(*subject);
            } catch (std::bad_alloc const&) {
                thrown = true;
            }
            failed = watched.hasFailed();
        }
        if (thrown) {
            SCOPED_TRACE(testing::Message() << "allocation " << failing);
            ++failures;
            check(*subject);
        }
    }
    return failures;
}
