#pragma once

#include <cstddef>
#include <memory>

namespace kova::templates::platform {

/// Memory of @p size bytes for anything. A large amount lies in huge pages where the system has them: to fault in and
/// to find thousands of small pages costs more than what is usually done with the memory.
/// @throws std::bad_alloc
void* allocateMemory(std::size_t size);
/// Gives back what allocateMemory returned for the same @p size.
void releaseMemory(void* memory, std::size_t size) noexcept;

struct ReleaseMemory {
    std::size_t size;
    void operator()(void* memory) const noexcept { releaseMemory(memory, size); }
};
using Memory = std::unique_ptr<void, ReleaseMemory>;

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

    T* allocate(std::size_t count) { return static_cast<T*>(allocateMemory(count * sizeof(T))); }
    void deallocate(T* array, std::size_t count) noexcept { releaseMemory(array, count * sizeof(T)); }

    bool operator==(LargeAllocator const&) const noexcept { return true; }
};

} // namespace kova::templates::platform
