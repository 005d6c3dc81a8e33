#include "ZUL_localintreg.h"

#include "tag_layout.h"

// clang-format off
void ZUL_localintreg::layout(TagLayout& row)
{
    row.fixed(12);
    row.u32(8, "address", m_address);
}
// clang-format on
