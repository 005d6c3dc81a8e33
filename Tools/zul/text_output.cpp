#include "text_output.h"

#include "session.h"
#include "utf8.h"

#include <algorithm>
#include <array>
#include <ostream>

namespace {

constexpr char const* digits = "0123456789abcdef";

/// Whether showing the character only puts something at the cursor.
bool isHarmless(char32_t codePoint) noexcept
{
    bool const isControl = codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0);
    bool const isSeparator = codePoint == 0x2028 || codePoint == 0x2029;
    bool const setsDirection = codePoint == 0x61C || codePoint == 0x200E || codePoint == 0x200F ||
                               (codePoint >= 0x202A && codePoint <= 0x202E) ||
                               (codePoint >= 0x2066 && codePoint <= 0x2069);
    return !isControl && !isSeparator && !setsDirection;
}

std::string escapedBytes(std::string_view bytes)
{
    std::string text;
    for (char const c : bytes) {
        auto const byte = static_cast<unsigned char>(c);
        text += {'\\', 'x', digits[byte >> 4U], digits[byte & 0xFU]};
    }
    return text;
}

std::size_t characters(std::string_view text)
{
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80; }));
}

} // namespace

std::string escaped(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        Utf8Character const character = firstCharacter(text);
        std::string_view const bytes = text.substr(0, std::max<std::size_t>(character.length, 1));
        if (character.length == 0 || !isHarmless(character.codePoint)) {
            result += escapedBytes(bytes);
        } else {
            result += bytes;
        }
        text.remove_prefix(bytes.size());
    }
    return result;
}

std::string asQuoted(std::string_view text)
{
    return "'" + escaped(text) + "'";
}

std::string asHex(std::uint64_t number)
{
    std::string text;
    do {
        text += digits[number & 0xFU];
        number >>= 4U;
    } while (number != 0);
    return "0x" + std::string(text.rbegin(), text.rend());
}

std::string hexBytes(std::span<std::byte const> bytes)
{
    std::string text;
    text.reserve(3 * bytes.size());
    for (std::byte const byte : bytes) {
        auto const value = std::to_integer<unsigned>(byte);
        if (!text.empty()) {
            text += ' ';
        }
        text += {digits[value >> 4U], digits[value & 0xFU]};
    }
    return text;
}

std::string counted(std::uint64_t count, std::string_view one, std::string_view many)
{
    std::string const text = std::to_string(count) + " ";
    if (count == 1) {
        return text + std::string(one);
    }
    return text + (many.empty() ? std::string(one) + "s" : std::string(many));
}

std::string styled(Session const& session, Style style, std::string_view text)
{
    static constexpr std::array<char const*, 5> codes{"", "\033[1m", "\033[2m", "\033[33m", "\033[31m"};
    if (!session.colour || style == Style::Plain) {
        return std::string(text);
    }
    return codes.at(static_cast<std::size_t>(style)) + std::string(text) + "\033[0m";
}

void warn(Session& session, std::string_view message)
{
    session.err << "zul: " << escaped(message) << '\n';
}

std::string padded(std::string_view text, std::size_t width)
{
    std::string result(text);
    return result.append(width - std::min(width, characters(text)), ' ');
}

void Table::row(std::vector<std::string> cells)
{
    for (std::string& cell : cells) {
        cell = escaped(cell);
    }
    cells.resize(m_headings.size());
    m_rows.push_back(std::move(cells));
}

std::vector<std::size_t> Table::widths() const
{
    std::vector<std::size_t> widths;
    for (std::size_t column = 0; column < m_headings.size(); ++column) {
        std::size_t width = characters(m_headings[column]);
        for (auto const& row : m_rows) {
            width = std::max(width, std::min(widest, characters(row[column])));
        }
        widths.push_back(width);
    }
    return widths;
}

void Table::print(Session& session, std::string_view indent) const
{
    std::vector<std::size_t> const wide = widths();
    auto const line = [&](std::vector<std::string> const& cells) {
        std::string text(indent);
        for (std::size_t column = 0; column + 1 < cells.size(); ++column) {
            text += padded(cells[column], wide[column]) + "  ";
        }
        text += cells.back();
        return text.erase(text.find_last_not_of(' ') + 1);
    };
    session.out << styled(session, Style::Bold, line(m_headings)) << '\n';
    for (auto const& row : m_rows) {
        session.out << line(row) << '\n';
    }
}
