#include "ZUL_register_link.h"

#include "tag_layout.h"

namespace {

/// A link without a name has none, rather than an empty one: no register could be found by it.
void setName(TagText& field, char const* name, std::size_t width)
{
    field.set(name, name == nullptr || *name == '\0' ? 0 : width);
}

} // namespace

ZUL_register_link::ZUL_register_link(ZUL* parent, char const* alias, char const* target) : LaidOutTag(parent)
{
    setAlias(alias);
    setTarget(target);
}

ZUL_register_link& ZUL_register_link::operator=(ZUL_register_link const& other)
{
    m_target = other.m_target;
    m_alias = other.m_alias;
    m_readOnly = other.m_readOnly;
    m_access = other.m_access;
    keyChanged();
    return *this;
}

// clang-format off
void ZUL_register_link::layout(TagLayout& row)
{
    auto type = static_cast<std::uint8_t>(m_access & 0xFFU);
    std::uint8_t writable = m_readOnly ? 0 : 1;

    row.fixed(204);
    row.u8          (  8,              "writable", writable);   row.demand(writable <= 1, "0 or 1");
    row.u8          (  9,              "access",   type);       row.demand(ZUL_register::isAccess(type), "1 or 2");
    row.optionalText( 10, targetWidth, "target",   m_target);
    row.optionalText( 74, aliasWidth,  "alias",    m_alias);
    row.reserved    (202, 2);

    if (row.reading()) {
        setType(writable == 0, static_cast<ZUL_register::access>(type));
    }
}
// clang-format on

void ZUL_register_link::setAlias(char const* alias)
{
    setName(m_alias, alias, aliasWidth);
    keyChanged();
}

void ZUL_register_link::setTarget(char const* target)
{
    setName(m_target, target, targetWidth);
    keyChanged();
}

void ZUL_register_link::setTarget(ZUL_register const* target)
{
    setTarget(target == nullptr ? nullptr : target->getName());
}

void ZUL_register_link::setType(bool readOnly, ZUL_register::access type) noexcept
{
    m_readOnly = readOnly;
    m_access = type;
}
