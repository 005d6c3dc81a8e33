#include "ZUL_process.h"

#include "tag_cast.h"
#include "tag_layout.h"

ZUL_process::ZUL_process(ZUL* parent, unsigned int id, char const* name) : LaidOutTag(parent), m_id(id)
{
    setName(name);
}

ZUL_process& ZUL_process::operator=(ZUL_process const& other)
{
    m_name = other.m_name;
    m_clock = other.m_clock;
    setId(other.m_id);
    return *this;
}

// clang-format off
void ZUL_process::layout(TagLayout& row)
{
    row.fixed(80);
    row.u32 ( 8,            "process id", m_id);
    row.text(12, nameWidth, "name",       m_name);
    row.u32 (76,            "clock",      m_clock);
}
// clang-format on

void ZUL_process::setId(unsigned int id)
{
    m_id = id;
    keyChanged();
}

bool ZUL_process::operator<(ZUL_tag const& other) const
{
    return m_id < tagCast<ZUL_process>(other).m_id;
}

bool ZUL_process::operator>(ZUL_tag const& other) const
{
    return m_id > tagCast<ZUL_process>(other).m_id;
}

bool ZUL_process::operator==(ZUL_tag const& other) const
{
    auto const* const process = dynamic_cast<ZUL_process const*>(&other);
    return process != nullptr && *this == *process;
}

bool ZUL_process::operator==(ZUL_process const& other) const
{
    // A name that is not set equals only one that is not set either.
    return m_id == other.m_id && m_clock == other.m_clock && !m_name == !other.m_name &&
           m_name.view() == other.m_name.view();
}
