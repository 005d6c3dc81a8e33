#include "ZUL_design_name.h"

#include "tag_layout.h"

// clang-format off
void ZUL_design_name::layout(TagLayout& row)
{
    row.fixed(72);
    row.text(8, nameWidth, "name", m_name);
}
// clang-format on
