#pragma once

#include "kova/templates/platform/large_memory.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kova::templates::platform {

/// Memory that is handed out piece by piece from blocks that grow with what is taken, and given back as a whole.
class MemoryBlocks {
public:
    MemoryBlocks() = default;
    MemoryBlocks(MemoryBlocks const&) = delete;
    MemoryBlocks& operator=(MemoryBlocks const&) = delete;

    /// What take() aligns to: enough for pointers and numbers.
    static constexpr std::size_t alignment = alignof(void*);

    /// @p size aligned bytes, valid until clear(). @throws std::bad_alloc
    void* take(std::size_t size)
    {
        std::size_t const padding = -reinterpret_cast<std::uintptr_t>(m_next) % alignment;
        if (piecesAreApart || m_left < padding || m_left - padding < size) {
            return takeFrom(addBlock(size), size);
        }
        return takeFrom(m_next + padding, size);
    }
    /// @p size bytes at any address. @throws std::bad_alloc
    char* takeCharacters(std::size_t size)
    {
        return static_cast<char*>(takeFrom(piecesAreApart || m_left < size ? addBlock(size) : m_next, size));
    }

    /// Gives everything back.
    void clear() noexcept;

private:
// The sanitizer tells where a piece ends only when it is a block of its own.
#if defined(__SANITIZE_ADDRESS__)
    static constexpr bool piecesAreApart = true;
#elif defined(__has_feature)
    static constexpr bool piecesAreApart = __has_feature(address_sanitizer) != 0;
#else
    static constexpr bool piecesAreApart = false;
#endif

    /// A new block of at least @p size bytes.
    std::byte* addBlock(std::size_t size);

    void* takeFrom(std::byte* place, std::size_t size) noexcept
    {
        m_left -= static_cast<std::size_t>(place - m_next) + size;
        m_next = place + size;
        return place;
    }

    std::vector<Memory> m_blocks;
    std::byte* m_next = nullptr; // what is free in the last block
    std::size_t m_left = 0;
    std::size_t m_total = 0; // bytes of all blocks
};

} // namespace kova::templates::platform
