#include "kova/templates/platform/memory_blocks.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <sys/mman.h>
#include <utility>

namespace kova::templates::platform {

namespace {

constexpr std::size_t smallestBlock = 1024;
constexpr std::size_t usualBlock = 64 * 1024; // the allocator maps blocks twice as large one by one
constexpr std::size_t hugePage = 2 * 1024 * 1024;

std::size_t roundUp(std::size_t size, std::size_t unit) noexcept
{
    return (size + unit - 1) / unit * unit;
}

} // namespace

void MemoryBlocks::Release::operator()(std::byte* block) const noexcept
{
    std::free(block);
}

std::byte* MemoryBlocks::addBlock(std::size_t size)
{
    bool const isHuge = std::max(m_total, size) >= hugePage * 2;
    std::size_t const blockSize =
        isHuge ? roundUp(size, hugePage) : std::max(size, std::clamp(m_total, smallestBlock, usualBlock));
    std::unique_ptr<std::byte, Release> block(
        static_cast<std::byte*>(isHuge ? std::aligned_alloc(hugePage, blockSize) : std::malloc(blockSize)));
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    if (isHuge) {
        madvise(block.get(), blockSize, MADV_HUGEPAGE); // where the system has none, small pages serve
    }
    m_blocks.push_back(std::move(block));
    m_total += blockSize;
    m_next = m_blocks.back().get();
    m_left = blockSize;
    return m_next;
}

void MemoryBlocks::clear() noexcept
{
    m_blocks.clear();
    m_next = nullptr;
    m_left = 0;
    m_total = 0;
}

} // namespace kova::templates::platform
