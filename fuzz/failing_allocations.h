#pragma once

#include <cstddef>

/// Which of a run's allocations fail, counted from 1: those of operator new and of malloc and its kin, so zlib's too.
/// What happens early has most of the allocations, so counting may begin later.
struct AllocationPlan {
    enum class Failing { None, One, AllFrom };

    Failing failing = Failing::None;
    std::size_t first = 0;
    std::size_t skipped = 0; // of the run's FailingAllocations, so many are not counted in
};

/// Starts to count anew, for a run that follows @p plan.
void planAllocations(AllocationPlan const& plan) noexcept;
/// Whether the plan lets any fail.
bool allocationsMayFail() noexcept;
/// Whether one has failed since the plan was made.
bool anAllocationFailed() noexcept;

/// While one lives, allocations of this thread are counted, and fail as planned.
class FailingAllocations {
public:
    FailingAllocations() noexcept;
    ~FailingAllocations();
    FailingAllocations(FailingAllocations const&) = delete;
    FailingAllocations& operator=(FailingAllocations const&) = delete;
};
