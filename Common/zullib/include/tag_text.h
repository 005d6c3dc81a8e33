#pragma once

#include <cstddef>
#include <string_view>

class TagBlocks;

/// A text that a tag has, or none. It is owned, or lies in the blocks of the container that loaded the tag; copies
/// always own. The rule is that of ZUL_tag::changeString; only as many bytes as the text has characters are stored.
class TagText {
public:
    TagText() noexcept = default;
    TagText(TagText const& other) { set(other.m_text, other.sizeWithTerminator()); }
    TagText(TagText&& other) noexcept { swap(other); }
    TagText& operator=(TagText const& other);
    TagText& operator=(TagText&& other) noexcept;
    ~TagText() { release(); }

    /// The whole of @p src; null or "" leaves no text.
    void set(char const* src);
    /// At most @p width characters of @p src, fewer when it ends earlier; null or a width of 0 leaves no text, and
    /// "" or bytes that begin with NUL leave the empty text.
    void set(char const* src, std::size_t width);
    /// As above, with the text in @p blocks, which have to outlive it; null for a text of its own.
    void set(char const* src, std::size_t width, TagBlocks* blocks);

    /// The terminated text, null when there is none; valid until the next change.
    char const* get() const noexcept { return m_text; }
    /// The text without terminator, empty when there is none; valid until the next change.
    std::string_view view() const noexcept { return {m_text, length()}; }
    std::size_t length() const noexcept { return m_lengthAndOwned >> 1U; }
    /// The characters and their terminator; 0 when there is no text.
    std::size_t sizeWithTerminator() const noexcept { return m_text != nullptr ? length() + 1 : 0; }
    bool empty() const noexcept { return length() == 0; }
    explicit operator bool() const noexcept { return m_text != nullptr; }

private:
    bool isOwned() const noexcept { return (m_lengthAndOwned & 1U) != 0; }
    void own(char const* src, std::size_t length);
    void assign(char const* text, std::size_t length, bool owned) noexcept
    {
        release();
        m_text = text;
        m_lengthAndOwned = length << 1U | (owned ? 1U : 0U);
    }
    void release() noexcept
    {
        if (isOwned()) {
            delete[] m_text;
        }
    }
    void swap(TagText& other) noexcept;

    char const* m_text = nullptr;
    std::size_t m_lengthAndOwned =
        0; // the lowest bit says whether the text is owned: texts are most of a container
};
