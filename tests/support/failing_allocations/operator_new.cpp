#include "allocations.h"

#include <dlfcn.h>
#include <new>

namespace {

struct Watch {
    bool active = false;
    std::size_t failing = 0;
    std::size_t count = 0;
    std::size_t bytes = 0;
};

thread_local Watch watch;

/// The operator of that (mangled) name that this program would use if it had none of its own: sanitizers have theirs.
template <class Function>
Function next(char const* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

void count(std::size_t size)
{
    if (watch.active) {
        watch.bytes += size;
        if (++watch.count == watch.failing) {
            throw std::bad_alloc();
        }
    }
}

} // namespace

void* operator new(std::size_t size)
{
    static auto* const real = next<void* (*)(std::size_t)>("_Znwm");
    count(size);
    return real(size);
}

void* operator new[](std::size_t size)
{
    static auto* const real = next<void* (*)(std::size_t)>("_Znam");
    count(size);
    return real(size);
}

void* operator new(std::size_t size, std::align_val_t alignment)
{
    static auto* const real = next<void* (*)(std::size_t, std::align_val_t)>("_ZnwmSt11align_val_t");
    count(size);
    return real(size, alignment);
}

void* operator new(std::size_t size, std::nothrow_t const&) noexcept
{
    try {
        return operator new(size);
    } catch (std::bad_alloc const&) {
        return nullptr;
    }
}

void operator delete(void* memory) noexcept
{
    static auto* const real = next<void (*)(void*)>("_ZdlPv");
    real(memory);
}

void operator delete[](void* memory) noexcept
{
    static auto* const real = next<void (*)(void*)>("_ZdaPv");
    real(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    operator delete(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    operator delete[](memory);
}

WatchedAllocations::WatchedAllocations(std::size_t failing) noexcept
{
    watch = {true, failing, 0, 0};
}

WatchedAllocations::~WatchedAllocations()
{
    watch.active = false;
}

bool WatchedAllocations::hasFailed() const noexcept
{
    return watch.failing != 0 && watch.count >= watch.failing;
}

std::size_t WatchedAllocations::bytes() const noexcept
{
    return watch.bytes;
}
