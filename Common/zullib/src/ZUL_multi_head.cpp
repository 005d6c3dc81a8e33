#include "ZUL_multi_head.h"

#include "tag_layout.h"

ZUL_multi_head::ZUL_multi_head(ZUL* parent, unsigned int tags, unsigned int configs)
    : LaidOutTag(parent), m_tags(tags), m_configs(configs)
{
}

ZUL_multi_head::ZUL_multi_head(ZUL_multi_head const& other) : ZUL_multi_head(nullptr, 0, 0)
{
    *this = other;
}

ZUL_multi_head& ZUL_multi_head::operator=(ZUL_multi_head const& other)
{
    m_tags = other.m_tags;
    m_configs = other.m_configs;
    m_dest = other.m_dest;
    return *this;
}

// clang-format off
void ZUL_multi_head::layout(TagLayout& row)
{
    std::uint32_t version = m_version;
    row.fixed(24);
    row.u32(16, "version",      version);
    row.demand(version == 1, "1");
    m_version = version;
    row.u32( 8, "tag count",    m_tags);
    row.u32(12, "config count", m_configs);
    row.u32(20, "destination",  m_dest);
}
// clang-format on
