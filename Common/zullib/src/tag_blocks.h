#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

/// Memory for the tags and texts that a load makes: handed out piece by piece from blocks that grow with the load, and
/// given back as a whole. A container has thousands of small tags, and an allocation for each costs more than all the
/// rest of reading it.
class TagBlocks {
public:
    TagBlocks() = default;
    TagBlocks(TagBlocks const&) = delete;
    TagBlocks& operator=(TagBlocks const&) = delete;

    /// A tag in the blocks, which have to outlive it. Deleting it ends it and leaves its memory to the blocks.
    template <class Tag, class... Arguments>
    std::unique_ptr<Tag> make(Arguments&&... arguments)
    {
        static_assert(alignof(Tag) <= alignment);
        Tag* const tag = ::new (take(sizeof(Tag))) Tag(std::forward<Arguments>(arguments)...);
        tag->m_inBlocks = true;
        return std::unique_ptr<Tag>(tag);
    }

    /// A terminated copy of @p length characters.
    char const* copyText(char const* text, std::size_t length);

private:
    static constexpr std::size_t alignment = alignof(std::max_align_t);
    static constexpr std::size_t smallestBlock = 1024;
    static constexpr std::size_t largestBlock = 64 * 1024; // the allocator maps larger ones one by one

    /// Aligned memory of @p size bytes.
    void* take(std::size_t size);
    void addBlock(std::size_t size);

    std::vector<std::unique_ptr<std::byte[]>> m_blocks;
    std::byte* m_next = nullptr; // what is free in the last block
    std::size_t m_left = 0;
    std::size_t m_blockSize = smallestBlock;
};
