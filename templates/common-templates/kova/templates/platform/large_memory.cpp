#include "kova/templates/platform/large_memory.h"

#include <new>
#include <sys/mman.h>

namespace kova::templates::platform {

namespace {

constexpr std::size_t hugePage = std::size_t{2} * 1024 * 1024;

bool isLarge(std::size_t size) noexcept
{
    return size >= hugePage / 2;
}

} // namespace

void* allocateMemory(std::size_t size)
{
    if (!isLarge(size)) {
        return ::operator new(size);
    }
    void* const memory = ::operator new (size, std::align_val_t{hugePage});
    madvise(memory, size, MADV_HUGEPAGE); // a wish: without it small pages serve
    return memory;
}

void releaseMemory(void* memory, std::size_t size) noexcept
{
    if (isLarge(size)) {
        ::operator delete (memory, std::align_val_t{hugePage});
    } else {
        ::operator delete(memory);
    }
}

} // namespace kova::templates::platform
