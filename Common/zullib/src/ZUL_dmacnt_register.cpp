#include "ZUL_dmacnt_register.h"

#include "tag_cast.h"
#include "tag_layout.h"

ZUL_dmacnt_register::ZUL_dmacnt_register(ZUL* parent, unsigned int channel, unsigned int address,
                                         unsigned int flags)
    : LaidOutTag(parent), m_channel(channel), m_address(address), m_flags(flags)
{
}

// clang-format off
void ZUL_dmacnt_register::layout(TagLayout& row)
{
    row.fixed(20);
    row.u32( 8, "channel", m_channel);
    row.u32(12, "address", m_address);
    row.u32(16, "flags",   m_flags);
}
// clang-format on

int ZUL_dmacnt_register::setInfo(unsigned int channel, unsigned int address, unsigned int flags) noexcept
{
    m_channel = channel;
    m_address = address;
    m_flags = flags;
    return 0;
}

bool ZUL_dmacnt_register::operator<(ZUL_tag const& other) const
{
    return m_channel < tagCast<ZUL_dmacnt_register>(other).m_channel;
}

bool ZUL_dmacnt_register::operator>(ZUL_tag const& other) const
{
    return m_channel > tagCast<ZUL_dmacnt_register>(other).m_channel;
}

bool ZUL_dmacnt_register::operator==(ZUL_tag const& other) const
{
    auto const* const reg = dynamic_cast<ZUL_dmacnt_register const*>(&other);
    return reg != nullptr && *this == *reg;
}

bool ZUL_dmacnt_register::operator==(ZUL_dmacnt_register const& other) const
{
    return m_channel == other.m_channel && m_address == other.m_address && m_flags == other.m_flags;
}
