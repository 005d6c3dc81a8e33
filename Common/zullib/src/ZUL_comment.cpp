#include "ZUL_comment.h"

#include "tag_layout.h"

// clang-format off
void ZUL_comment::layout(TagLayout& row)
{
    row.fixed(268);
    row.text (  8, commentWidth, "comment", m_comment);
    row.zeros(264, 4);
}
// clang-format on
