#include "tag_blocks.h"

#include <cstring>

char const* TagBlocks::copyText(char const* text, std::size_t length)
{
    char* const copy = m_memory.takeCharacters(length + 1);
    std::memcpy(copy, text, length);
    copy[length] = '\0';
    return copy;
}
