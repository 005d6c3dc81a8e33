#include "utf8.h"

namespace {

/// Number of bytes that a character with this first byte has; 0 when none begins so.
std::size_t lengthOf(unsigned char first) noexcept
{
    if (first < 0x80) {
        return 1;
    }
    if (first < 0xC2 || first > 0xF4) {
        return 0;
    }
    return first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

bool isAllowed(char32_t codePoint, std::size_t length) noexcept
{
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    bool const isSurrogate = codePoint >= 0xD800 && codePoint < 0xE000;
    return codePoint >= smallest[length] && codePoint <= 0x10FFFF && !isSurrogate;
}

} // namespace

Utf8Character firstCharacter(std::string_view text) noexcept
{
    auto const first = static_cast<unsigned char>(text.front());
    std::size_t const length = lengthOf(first);
    if (length == 0 || length > text.size()) {
        return {};
    }
    char32_t codePoint = length == 1 ? first : first & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        auto const next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0U) != 0x80) {
            return {};
        }
        codePoint = (codePoint << 6U) | (next & 0x3FU);
    }
    return isAllowed(codePoint, length) ? Utf8Character{codePoint, length} : Utf8Character{};
}

bool isUtf8(std::string_view text) noexcept
{
    while (!text.empty()) {
        std::size_t const length = firstCharacter(text).length;
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}
