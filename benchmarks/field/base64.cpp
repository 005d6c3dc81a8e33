#include "base64.h"

#include <array>
#include <cstdint>
#include <stdexcept>

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t noDigit = 64;

constexpr auto digitOf = [] {
    std::array<std::uint8_t, 256> digits{};
    digits.fill(noDigit);
    for (std::uint8_t i = 0; i < alphabet.size(); ++i) {
        digits[static_cast<unsigned char>(alphabet[i])] = i;
    }
    return digits;
}();

std::uint32_t digit(char c)
{
    std::uint8_t const value = digitOf[static_cast<unsigned char>(c)];
    if (value == noDigit) {
        throw std::runtime_error("not base64");
    }
    return value;
}

} // namespace

std::string toBase64(std::span<std::byte const> bytes)
{
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        auto const group = bytes.subspan(i, std::min<std::size_t>(3, bytes.size() - i));
        std::uint32_t bits = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            bits = bits << 8U | (k < group.size() ? std::to_integer<std::uint32_t>(group[k]) : 0U);
        }
        for (unsigned k = 0; k < 4; ++k) {
            text += k <= group.size() ? alphabet[bits >> (18 - 6 * k) & 63U] : '=';
        }
    }
    return text;
}

std::vector<std::byte> fromBase64(std::string_view text)
{
    if (text.size() % 4 != 0) {
        throw std::runtime_error("not base64");
    }
    std::size_t const padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
    std::vector<std::byte> bytes(text.size() / 4 * 3);
    for (std::size_t i = 0, to = 0; i < text.size(); i += 4) {
        std::uint32_t bits = 0;
        for (std::size_t k = 0; k < 4; ++k) {
            bits = bits << 6U | (i + k >= text.size() - padding ? 0U : digit(text[i + k]));
        }
        for (unsigned k = 0; k < 3; ++k) {
            bytes[to++] = static_cast<std::byte>(bits >> (16 - 8 * k));
        }
    }
    bytes.resize(bytes.size() - padding);
    return bytes;
}
