#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

/// A text that a tag owns, or none. Copies are deep. The rule is that of ZUL_tag::changeString; only as many bytes
/// as the text has characters are allocated.
class TagText {
public:
    TagText() noexcept = default;
    TagText(TagText const& other) : TagText() { assign(other.m_chars.get()); }
    TagText(TagText&&) noexcept = default;
    TagText& operator=(TagText const& other);
    TagText& operator=(TagText&&) noexcept = default;
    ~TagText() = default;

    /// The whole of @p src; null or "" leaves no text.
    void set(char const* src);
    /// At most @p width characters of @p src, fewer when it ends earlier; null or a width of 0 leaves no text, and
    /// "" or bytes that begin with NUL leave the empty text.
    void set(char const* src, std::size_t width);

    /// The terminated text, null when there is none; valid until the next change.
    char const* get() const noexcept { return m_chars.get(); }
    /// The text without terminator, empty when there is none; valid until the next change.
    std::string_view view() const noexcept;
    std::size_t length() const noexcept { return view().size(); }
    /// The characters and their terminator; 0 when there is no text.
    std::size_t sizeWithTerminator() const noexcept { return m_chars ? length() + 1 : 0; }
    bool empty() const noexcept { return m_chars == nullptr || m_chars[0] == '\0'; }
    explicit operator bool() const noexcept { return m_chars != nullptr; }

private:
    void assign(char const* src);

    std::unique_ptr<char[]> m_chars;
};
