#include "tag_blocks.h"

#include <algorithm>
#include <cstring>

void* TagBlocks::take(std::size_t size)
{
    void* place = m_next;
    std::size_t space = m_left;
    if (std::align(alignment, size, place, space) == nullptr) {
        addBlock(size); // new memory is aligned
        place = m_next;
        space = m_left;
    }
    m_next = static_cast<std::byte*>(place) + size;
    m_left = space - size;
    return place;
}

char const* TagBlocks::copyText(char const* text, std::size_t length)
{
    if (length >= m_left) {
        addBlock(length + 1);
    }
    auto* const copy = reinterpret_cast<char*>(m_next);
    std::memcpy(copy, text, length);
    copy[length] = '\0';
    m_next += length + 1;
    m_left -= length + 1;
    return copy;
}

void TagBlocks::addBlock(std::size_t size)
{
    std::size_t const blockSize = std::max(size, m_blockSize);
    m_blocks.push_back(std::make_unique_for_overwrite<std::byte[]>(blockSize));
    m_next = m_blocks.back().get();
    m_left = blockSize;
    m_blockSize = std::min(m_blockSize * 2, largestBlock);
}
