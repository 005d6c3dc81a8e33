#include "tag_text.h"

#include "tag_blocks.h"

#include <cstring>
#include <memory>
#include <utility>

TagText& TagText::operator=(TagText const& other)
{
    if (this != &other) {
        set(other.m_text, other.sizeWithTerminator());
    }
    return *this;
}

TagText& TagText::operator=(TagText&& other) noexcept
{
    TagText taken(std::move(other));
    swap(taken);
    return *this;
}

void TagText::set(char const* src)
{
    set(src, src == nullptr ? 0 : std::strlen(src));
}

void TagText::set(char const* src, std::size_t width)
{
    set(src, width, nullptr);
}

void TagText::set(char const* src, std::size_t width, TagBlocks* blocks)
{
    std::size_t const length = src == nullptr ? 0 : strnlen(src, width);
    if (length == 0) {
        assign(src == nullptr || width == 0 ? nullptr : "", 0, false);
    } else if (blocks != nullptr) {
        assign(blocks->copyText(src, length), length, false);
    } else {
        own(src, length);
    }
}

void TagText::own(char const* src, std::size_t length)
{
    // The source may be a part of the text that is owned now: it goes only after the copy is made.
    auto copy = std::make_unique_for_overwrite<char[]>(length + 1);
    std::memcpy(copy.get(), src, length);
    copy[length] = '\0';
    assign(copy.release(), length, true);
}

void TagText::swap(TagText& other) noexcept
{
    std::swap(m_text, other.m_text);
    std::swap(m_lengthAndOwned, other.m_lengthAndOwned);
}
