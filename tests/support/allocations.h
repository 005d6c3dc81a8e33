#pragma once

#include <cstddef>

/// While one lives, allocations with operator new in this thread are counted, and one of them fails.
///
/// For the test program whose operator new asks this class.
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
