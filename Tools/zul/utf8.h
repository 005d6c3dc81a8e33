#pragma once

#include <cstddef>
#include <string_view>

/// A character of UTF-8.
struct Utf8Character {
    char32_t codePoint = 0;
    std::size_t length = 0; ///< bytes; 0 where the bytes are none: cut short, longer than needed, a surrogate
};

/// The character that @p text, which is not empty, begins with.
Utf8Character firstCharacter(std::string_view text) noexcept;
/// Whether all of @p text is UTF-8.
bool isUtf8(std::string_view text) noexcept;
