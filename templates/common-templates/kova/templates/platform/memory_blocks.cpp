#include "kova/templates/platform/memory_blocks.h"

#include <algorithm>
#include <utility>

namespace kova::templates::platform {

std::byte* MemoryBlocks::addBlock(std::size_t size)
{
    constexpr std::size_t smallest = 1024;
    // What the last block leaves unused is memory that has to be got and given back all the same; small designs show it.
    constexpr std::size_t usual = std::size_t{8} * 1024;
    constexpr std::size_t large = std::size_t{2} * 1024 * 1024; // a huge page
    std::size_t const grown = m_total < large / 2 ? std::clamp(m_total, smallest, usual) : large;
    std::size_t const blockSize = piecesAreApart ? size : std::max(size, grown);
    Memory block(allocateMemory(blockSize), {blockSize});
    m_blocks.push_back(std::move(block));
    m_total += blockSize;
    m_next = static_cast<std::byte*>(m_blocks.back().get());
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
