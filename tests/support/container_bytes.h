#pragma once

#include "bytes.h"

/// The 24 bytes that every container begins with.
inline Bytes headBytes(std::uint32_t tags, std::uint32_t configs = 0, std::uint32_t version = 1,
                       std::uint32_t dest = 0)
{
    return Bytes().u32(0x4B4F564D).u32(24).u32(tags).u32(configs).u32(version).u32(dest);
}

/// A container with an honest head: tags and configurations in the order in which they are added.
class ContainerBytes {
public:
    ContainerBytes& tag(Bytes const& bytes)
    {
        m_body.append(bytes);
        ++m_tags;
        return *this;
    }
    ContainerBytes& config(Bytes const& bytes)
    {
        m_body.append(bytes);
        ++m_configs;
        return *this;
    }
    /// The container; @p trailing bytes follow the last tag. Loading ignores up to 8, and a last tag of exactly 8.
    Bytes build(std::size_t trailing = 0) const
    {
        return headBytes(m_tags, m_configs).append(m_body).zeros(trailing);
    }

private:
    Bytes m_body;
    std::uint32_t m_tags = 0;
    std::uint32_t m_configs = 0;
};
