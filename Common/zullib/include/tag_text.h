#pragma once

#include <cstddef>
#include <optional>
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
    char const* get() const noexcept { return m_text ? m_text->c_str() : nullptr; }
    /// The text without terminator, empty when there is none; valid until the next change.
    std::string_view view() const noexcept { return m_text ? std::string_view(*m_text) : std::string_view(); }
    std::size_t length() const noexcept { return view().size(); }
    /// The characters and their terminator; 0 when there is no text.
    std::size_t sizeWithTerminator() const noexcept { return m_text ? m_text->size() + 1 : 0; }
    bool empty() const noexcept { return view().empty(); }
    explicit operator bool() const noexcept { return m_text.has_value(); }

private:
    std::optional<std::string> m_text; // short ones lie within the tag
};
