#include "ZUL_author.h"

#include "tag_layout.h"

// clang-format off
void ZUL_author::layout(TagLayout& row)
{
    row.fixed(72);
    row.text(8, authorWidth, "author", m_author);
}
// clang-format on
