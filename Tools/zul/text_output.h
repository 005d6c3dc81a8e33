#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct Session;

/// @p text, harmless on a terminal: control characters, what is no UTF-8 and characters that change the direction of
/// writing are shown as \xNN for each of their bytes. A backslash stays one: names of modules are full of them.
std::string escaped(std::string_view text);
/// 'text', escaped.
std::string asQuoted(std::string_view text);
/// 0x1a2b
std::string asHex(std::uint64_t number);
/// "4d 56 4f 4b"
std::string hexBytes(std::span<std::byte const> bytes);
/// "1 tag", "2 tags"
std::string counted(std::uint64_t count, std::string_view one, std::string_view many = {});

enum class Style { Plain, Bold, Faint, Attention, Alarm };

/// @p text in a colour where the session has colours, otherwise as it is.
std::string styled(Session const& session, Style style, std::string_view text);

/// Writes "zul: " and @p message, escaped, as a line of session.err.
void warn(Session& session, std::string_view message);

/// @p text, escaped already, with blanks up to @p width characters; longer text stays whole.
std::string padded(std::string_view text, std::size_t width);

/// Lines of cells in columns that are as wide as their longest cell, up to a limit: one long name makes one long
/// line, not a large table.
class Table {
public:
    static constexpr std::size_t widest = 48;

    explicit Table(std::vector<std::string> headings) : m_headings(std::move(headings)) {}

    /// @param cells as many as there are headings; escaped by the table
    void row(std::vector<std::string> cells);
    bool empty() const noexcept { return m_rows.empty(); }
    /// Writes headings and rows, each line behind @p indent.
    void print(Session& session, std::string_view indent = "") const;

private:
    std::vector<std::size_t> widths() const;

    std::vector<std::string> m_headings;
    std::vector<std::vector<std::string>> m_rows;
};
