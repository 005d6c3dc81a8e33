#pragma once

#include "kova/templates/platform/memory_blocks.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

/// Where a container keeps the tags and texts that a load makes. It has thousands of small ones, and an allocation for
/// each would cost more than all the rest of reading it.
class TagBlocks {
public:
    /// A tag in the blocks, which have to outlive it. Deleting it ends it and leaves its memory to the blocks.
    template <class Tag, class... Arguments>
    std::unique_ptr<Tag> make(Arguments&&... arguments)
    {
        static_assert(alignof(Tag) <= kova::templates::platform::MemoryBlocks::alignment);
        Tag* const tag = ::new (m_memory.take(sizeof(Tag))) Tag(std::forward<Arguments>(arguments)...);
        tag->m_inBlocks = true;
        return std::unique_ptr<Tag>(tag);
    }

    /// A terminated copy of @p length characters.
    char const* copyText(char const* text, std::size_t length)
    {
        char* const copy = m_memory.takeCharacters(length + 1);
        std::memcpy(copy, text, length);
        copy[length] = '\0';
        return copy;
    }

private:
    kova::templates::platform::MemoryBlocks m_memory;
};
