#include "ZUL_usrintqueue.h"

#include "tag_layout.h"

// clang-format off
void ZUL_usrintqueue::layout(TagLayout& row)
{
    row.headerId(isWriteQueue() ? ZUL_usrintqueue_write::tag_id : ZUL_usrintqueue_read::tag_id);
    row.fixed(28);
    row.u32( 8, "address",          m_address);
    row.u32(12, "shiftr",           m_shiftr);
    row.u32(16, "queue number",     m_queueNumber);
    row.u32(20, "queue depth",      m_queueDepth);
    row.u32(24, "max burst length", m_maxBurstLength);
}
// clang-format on

unsigned long ZUL_usrintqueue_read::Load(void const* tag, unsigned long avail)
{
    // The field is in the file because both kinds of queue share a layout; only writing goes in bursts.
    unsigned long const consumed = ZUL_usrintqueue::Load(tag, avail);
    setMaxBurstLength(0);
    return consumed;
}
