#include "ZUL_intvectorreg.h"

#include "tag_layout.h"

// clang-format off
void ZUL_intvectorreg::layout(TagLayout& row)
{
    row.fixed(20);
    row.u32( 8, "base address",  m_baseAddress);
    row.u32(12, "ack address",   m_ackAddress);
    row.u32(16, "start address", m_startAddress);
}
// clang-format on
