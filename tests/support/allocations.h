#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <new>

/// While one lives, allocations with operator new in this thread are counted, and one of them fails.
///
/// For test programs whose operator new asks this class, as that in failing_allocations does.
class WatchedAllocations {
public:
    /// @param failing the allocation that throws std::bad_alloc, counted from 1; 0 for none
    explicit WatchedAllocations(std::size_t failing = 0) noexcept;
    ~WatchedAllocations();
    WatchedAllocations(WatchedAllocations const&) = delete;
    WatchedAllocations& operator=(WatchedAllocations const&) = delete;

    /// Whether the failing allocation was asked for.
    bool hasFailed() const noexcept;
    /// Sum of all sizes asked for, whether or not they were given back.
    std::size_t bytes() const noexcept;
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
