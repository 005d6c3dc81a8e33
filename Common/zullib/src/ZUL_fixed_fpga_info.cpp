#include "ZUL_fixed_fpga_info.h"

#include "tag_layout.h"

ZUL_fixed_fpga_info::ZUL_fixed_fpga_info(ZUL* parent, unsigned char index, unsigned char version,
                                         unsigned char revision)
    : LaidOutTag(parent), m_index(index), m_version(version), m_revision(revision)
{
}

// clang-format off
void ZUL_fixed_fpga_info::layout(TagLayout& row)
{
    row.fixed(12);
    row.u8( 8, "index",    m_index);
    row.u8( 9, "version",  m_version);
    row.u8(10, "revision", m_revision);
    row.mustBeZero(11);
}
// clang-format on

void ZUL_fixed_fpga_info::setVersion(unsigned char version, unsigned char revision) noexcept
{
    m_version = version;
    m_revision = revision;
}
