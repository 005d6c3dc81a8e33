#include "ZUL_dmatag_register.h"

#include "tag_layout.h"

// clang-format off
void ZUL_dmatag_register::layout(TagLayout& row)
{
    row.fixed(24);
    row.u32( 8, "address", m_address);
    row.u32(12, "mask",    m_mask);
    row.u32(16, "shiftr",  m_shiftr);
    row.u32(20, "channel", m_channel);
}
// clang-format on
