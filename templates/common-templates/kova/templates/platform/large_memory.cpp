#include "kova/templates/platform/large_memory.h"

#include <new>
#include <sys/mman.h>

namespace kova::templates::platform {

Memory allocateMemory(std::size_t size)
{
    constexpr std::size_t hugePage = 2 * 1024 * 1024;
    bool const isLarge = size >= hugePage / 2;
    std::size_t const pages = (size + hugePage - 1) / hugePage * hugePage;
    Memory memory(isLarge ? std::aligned_alloc(hugePage, pages) : std::malloc(size));
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    if (isLarge) {
        madvise(memory.get(), pages, MADV_HUGEPAGE); // a wish: without it small pages serve
    }
    return memory;
}

} // namespace kova::templates::platform
