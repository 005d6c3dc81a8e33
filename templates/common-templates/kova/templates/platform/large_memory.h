#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>

namespace kova::templates::platform {

struct ReleaseMemory {
    void operator()(void* memory) const noexcept { std::free(memory); }
};
using Memory = std::unique_ptr<void, ReleaseMemory>;

/// Memory of @p size bytes for anything. A large amount lies in huge pages where the system has them: to fault in and
/// to find thousands of small pages costs more than what is usually done with the memory.
/// @throws std::bad_alloc
Memory allocateMemory(std::size_t size);

/// An allocator for large arrays.
template <class T>
struct LargeAllocator {
    using value_type = T;

    LargeAllocator() noexcept = default;
    template <class U>
    LargeAllocator(
        LargeAllocator<U> const&) noexcept // NOLINT(google-explicit-constructor): containers convert
    {
    }

    T* allocate(std::size_t count) { return static_cast<T*>(allocateMemory(count * sizeof(T)).release()); }
    void deallocate(T* array, std::size_t) noexcept { std::free(array); }

    bool operator==(LargeAllocator const&) const noexcept { return true; }
};

} // namespace kova::templates::platform
