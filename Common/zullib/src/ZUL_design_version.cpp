#include "ZUL_design_version.h"

#include "tag_layout.h"

#include <array>
#include <charconv>

// clang-format off
void ZUL_design_version::layout(TagLayout& row)
{
    row.fixed(72);
    row.text(8, versionWidth, "version", m_version);
}
// clang-format on

void ZUL_design_version::setVersion(unsigned int version)
{
    std::array<char, 9> digits{}; // eight digits and a terminator
    std::to_chars(digits.data(), digits.data() + 8, version, 16);
    setVersion(digits.data());
}
