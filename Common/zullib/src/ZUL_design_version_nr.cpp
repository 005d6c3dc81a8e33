#include "ZUL_design_version_nr.h"

#include "tag_layout.h"

ZUL_design_version_nr& ZUL_design_version_nr::operator=(ZUL_design_version_nr const& other)
{
    m_version = other.m_version;
    m_revision = other.m_revision;
    setIndex(other.m_index);
    return *this;
}

// clang-format off
void ZUL_design_version_nr::layout(TagLayout& row)
{
    if (row.writing() && !needsSave()) {
        return;
    }
    row.fixed(16);
    row.u16  ( 8, "version",  m_version);
    row.u16  (10, "revision", m_revision);
    row.u8   (12, "index",    m_index);
    row.zeros(13, 3);
}
// clang-format on

void ZUL_design_version_nr::setVersion(unsigned short const& version, unsigned short const& revision) noexcept
{
    m_version = version;
    m_revision = revision;
}

void ZUL_design_version_nr::setIndex(unsigned char index)
{
    m_index = index;
    keyChanged();
}
