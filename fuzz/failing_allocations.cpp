#include "failing_allocations.h"

#include <cerrno>
#include <cstdlib>
#include <new>

// The allocators below the ones here: a sanitizer's, otherwise that of the C library.
extern "C" {
void* __interceptor_malloc(std::size_t size) __attribute__((weak));
void* __interceptor_calloc(std::size_t count, std::size_t size) __attribute__((weak));
void* __interceptor_realloc(void* memory, std::size_t size) __attribute__((weak));
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
}

namespace {

thread_local AllocationPlan current;
thread_local std::size_t allocations = 0;
thread_local std::size_t watches = 0;
thread_local bool watching = false;
thread_local bool failed = false;

bool fails() noexcept
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

void* none() noexcept
{
    errno = ENOMEM;
    return nullptr;
}

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

extern "C" {

void* malloc(std::size_t size)
{
    if (fails()) {
        return none();
    }
    return __interceptor_malloc != nullptr ? __interceptor_malloc(size) : __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size)
{
    if (fails()) {
        return none();
    }
    return __interceptor_calloc != nullptr ? __interceptor_calloc(count, size) : __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size)
{
    if (fails()) {
        return none();
    }
    return __interceptor_realloc != nullptr ? __interceptor_realloc(memory, size)
                                            : __libc_realloc(memory, size);
}
}

void* operator new(std::size_t size)
{
    if (void* const memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void* operator new[](std::size_t size)
{
    return operator new(size);
}

void* operator new(std::size_t size, std::nothrow_t const&) noexcept
{
    return std::malloc(size == 0 ? 1 : size);
}

void* operator new[](std::size_t size, std::nothrow_t const&) noexcept
{
    return std::malloc(size == 0 ? 1 : size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}
