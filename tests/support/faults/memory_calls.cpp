// The functions that take memory and give it back, those that the C library itself calls included.

#include "injection.h"

#include <cerrno>
#include <cstdlib>
#include <malloc.h>
#include <new>

extern "C" {
// What they really do, by names that need no looking up: that would need memory itself.
void* __libc_malloc(std::size_t size);                          // NOLINT(bugprone-reserved-identifier)
void* __libc_calloc(std::size_t count, std::size_t size);       // NOLINT(bugprone-reserved-identifier)
void* __libc_realloc(void* memory, std::size_t size);           // NOLINT(bugprone-reserved-identifier)
void* __libc_memalign(std::size_t alignment, std::size_t size); // NOLINT(bugprone-reserved-identifier)
void __libc_free(void* memory);                                 // NOLINT(bugprone-reserved-identifier)
// Those of a sanitizer, where there is one.
[[gnu::weak]] void* __interceptor_malloc(std::size_t size);
[[gnu::weak]] void* __interceptor_calloc(std::size_t count, std::size_t size);
[[gnu::weak]] void* __interceptor_realloc(void* memory, std::size_t size);
[[gnu::weak]] void* __interceptor_aligned_alloc(std::size_t alignment, std::size_t size);
[[gnu::weak]] void __interceptor_free(void* memory);
[[gnu::weak]] int __sanitizer_get_ownership(void const volatile* memory);
}

namespace {

template <class Function>
Function* firstOf(Function* sanitizers, Function* libraries)
{
    return sanitizers != nullptr ? sanitizers : libraries;
}

bool isRefused(char const* function, std::size_t size)
{
    noteSize(size);
    if (!hasToFail(FaultKind::Allocation, function)) {
        return false;
    }
    errno = ENOMEM;
    return true;
}

/// Whether its size may be asked for: a sanitizer takes what it needs itself, before it is ready, from elsewhere.
bool isBlock(void* memory)
{
    return memory != nullptr &&
           (__sanitizer_get_ownership == nullptr || __sanitizer_get_ownership(memory) != 0);
}

InUse blockOf(void* memory)
{
    return isBlock(memory)
               ? InUse{.blocks = 1, .bytes = static_cast<std::ptrdiff_t>(malloc_usable_size(memory))}
               : InUse();
}

InUse without(InUse const& difference)
{
    return {.blocks = -difference.blocks, .bytes = -difference.bytes};
}

void* taken(void* memory)
{
    noteInUse(blockOf(memory));
    return memory;
}

} // namespace

extern "C" {

void* malloc(std::size_t size) noexcept
{
    return isRefused("malloc", size) ? nullptr : taken(firstOf(__interceptor_malloc, __libc_malloc)(size));
}

void* calloc(std::size_t count, std::size_t size) noexcept
{
    return isRefused("calloc", count * size)
               ? nullptr
               : taken(firstOf(__interceptor_calloc, __libc_calloc)(count, size));
}

void* realloc(void* memory, std::size_t size) noexcept
{
    if (isRefused("realloc", size)) {
        return nullptr;
    }
    InUse const before = blockOf(memory);
    void* const moved = firstOf(__interceptor_realloc, __libc_realloc)(memory, size);
    if (moved != nullptr || size == 0) {
        noteInUse(without(before));
    }
    return taken(moved);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept
{
    return isRefused("aligned_alloc", size)
               ? nullptr
               : taken(firstOf(__interceptor_aligned_alloc, __libc_memalign)(alignment, size));
}

void free(void* memory) noexcept
{
    noteInUse(without(blockOf(memory)));
    firstOf(__interceptor_free, __libc_free)(memory);
}
}

// All of C++'s in terms of these: a sanitizer's own would not ask them.

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

void* operator new[](std::size_t size, std::nothrow_t const& tag) noexcept
{
    return operator new(size, tag);
}

void* operator new(std::size_t size, std::align_val_t alignment)
{
    auto const unit = static_cast<std::size_t>(alignment);
    if (void* const memory = aligned_alloc(unit, (size + unit - 1) / unit * unit)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory, std::align_val_t) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t, std::align_val_t) noexcept
{
    std::free(memory);
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
