#include "failing_allocations.h"

#include "injection.h"

namespace {

thread_local AllocationPlan current;
thread_local std::size_t allocations = 0;
thread_local std::size_t watches = 0;
thread_local bool watching = false;
thread_local bool failed = false;

} // namespace

void planAllocations(AllocationPlan const& plan) noexcept
{
    current = plan;
    allocations = 0;
    watches = 0;
    failed = false;
}

bool allocationsMayFail() noexcept
{
    return current.failing != AllocationPlan::Failing::None;
}

bool anAllocationFailed() noexcept
{
    return failed;
}

FailingAllocations::FailingAllocations() noexcept
{
    watching = watches >= current.skipped;
    ++watches;
}

FailingAllocations::~FailingAllocations()
{
    watching = false;
}

// What the functions that take memory ask.

bool hasToFail(FaultKind, char const*) noexcept
{
    if (!watching || current.failing == AllocationPlan::Failing::None) {
        return false;
    }
    ++allocations;
    bool const now = current.failing == AllocationPlan::Failing::One ? allocations == current.first
                                                                     : allocations >= current.first;
    failed = failed || now;
    return now;
}

void noteSize(std::size_t) noexcept {}
void noteInUse(InUse const&) noexcept {}
