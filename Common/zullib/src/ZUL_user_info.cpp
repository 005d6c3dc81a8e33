#include "ZUL_user_info.h"

#include "tag_layout.h"

#include <stdexcept>

ZUL_user_info::ZUL_user_info(ZUL* parent, char const* info, unsigned int value) : LaidOutTag(parent)
{
    set(info, value);
}

ZUL_user_info::ZUL_user_info(ZUL* parent, char const* info, char const* value) : LaidOutTag(parent)
{
    set(info, value);
}

ZUL_user_info::ZUL_user_info(ZUL_user_info const& other) : LaidOutTag(nullptr)
{
    *this = other;
}

ZUL_user_info& ZUL_user_info::operator=(ZUL_user_info const& other)
{
    if (this == &other) {
        return *this;
    }
    setInfo(other.getInfo());
    m_type = other.m_type;
    if (!hasValidType()) {
        throw std::runtime_error("Invalid type in ZUL_user_info");
    }
    m_integer = other.m_integer;
    m_text = other.m_text;
    return *this;
}

// clang-format off
void ZUL_user_info::layout(TagLayout& row)
{
    row.fixed(144);
    row.text( 8, infoWidth, "info", m_info);
    row.u16 (72,            "type", m_type);
    row.demand(hasValidType(), "200 or 300");
    if (row.saving()) {
        row.require(hasValidType(), "Tried to save a zul_user_info with an invalid type");
    }
    row.reserved(74, 2);
    if (m_type == integer) {
        m_text.set(nullptr);
        row.u32  (76,            "integer value", m_integer);
        row.zeros(80, textWidth);
    } else {
        m_integer = 0;
        row.zeros(76, sizeof m_integer);
        row.text (80, textWidth, "text value",    m_text);
    }
}
// clang-format on

void ZUL_user_info::setInfo(char const* info)
{
    m_info.set(info, infoWidth);
    keyChanged();
}

void ZUL_user_info::setType(ZUL_user_info::type const& newType)
{
    if (newType != m_type && (newType == integer || newType == text)) {
        m_integer = 0;
        m_text.set(nullptr);
        m_type = static_cast<std::uint16_t>(newType);
    }
}

void ZUL_user_info::setValue(unsigned int value)
{
    setType(integer);
    m_integer = value;
}

void ZUL_user_info::setValue(char const* value)
{
    setType(text);
    m_text.set(value, textWidth);
}

void ZUL_user_info::set(char const* info, unsigned int value)
{
    setInfo(info);
    setValue(value);
}

void ZUL_user_info::set(char const* info, char const* value)
{
    setInfo(info);
    setValue(value);
}
