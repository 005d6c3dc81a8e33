#include "bytes.h"

#include <cctype>
#include <iomanip>
#include <ostream>

std::ostream& operator<<(std::ostream& out, Bytes const& bytes)
{
    constexpr std::size_t perLine = 16;
    for (std::size_t line = 0; line < bytes.size(); line += perLine) {
        std::string characters;
        out << '\n' << std::dec << std::setw(6) << std::setfill(' ') << line << ' ';
        for (std::size_t i = line; i < std::min(line + perLine, bytes.size()); ++i) {
            auto const value = std::to_integer<unsigned>(bytes.data()[i]);
            out << ' ' << std::hex << std::setw(2) << std::setfill('0') << value;
            characters += std::isprint(static_cast<int>(value)) != 0 ? static_cast<char>(value) : '.';
        }
        out << "  " << characters;
    }
    return out << std::dec << std::setfill(' ') << '\n';
}
