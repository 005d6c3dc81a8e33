#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// A text that a tag owns, or none. Copies are deep. The rule is that of ZUL_tag::changeString; only as many bytes
/// as the text has characters are stored.
class TagText {
public:
    /// The whole of @p src; null or "" leaves no text.
    void set(char const* src);
    /// At most @p width characters of @p src, fewer when it ends earlier; null or a width of 0 leaves no text, and
    /// "" or bytes that begin with NUL leave the empty text.
    void set(char const* src, std::size_t width);

    /// The terminated text, null when there is none; valid until the next change.
    char const* get() const noexcept { return m_isSet ? m_text.c_str() : nullptr; }
    /// The text without terminator, empty when there is none; valid until the next change.
    std::string_view view() const noexcept { return m_text; }
    std::size_t length() const noexcept { return m_text.size(); }
    /// The characters and their terminator; 0 when there is no text.
    std::size_t sizeWithTerminator() const noexcept { return m_isSet ? m_text.size() + 1 : 0; }
    bool empty() const noexcept { return m_text.empty(); }
    explicit operator bool() const noexcept { return m_isSet; }

private:
    std::string m_text; // empty when there is none; short ones lie within the tag
    bool m_isSet = false;
};
