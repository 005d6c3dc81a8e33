#include "ZUL_event.h"

#include "ZUL_register.h"
#include "tag_layout.h"
#include "zul_class.h"
#include "zul_errors.h"

#include <cstring>
#include <stdexcept>

ZUL_event::ZUL_event(ZUL* parent, unsigned char uiq, unsigned char bit, unsigned char dataLen)
    : LaidOutTag(parent), m_uiq(uiq), m_bit(bit), m_dataLength(dataLen)
{
}

ZUL_event::ZUL_event(ZUL_event const& other) : LaidOutTag(other.getParent())
{
    *this = other;
}

ZUL_event& ZUL_event::operator=(ZUL_event const& other)
{
    if (this != &other) {
        m_register = other.m_register == nullptr ? nullptr : ownRegister(other.getRegisterName());
        copyFieldsFrom(other);
        m_firmwareEvent = false;
    }
    return *this;
}

void ZUL_event::copyFieldsFrom(ZUL_event const& other)
{
    m_name = other.m_name;
    m_uiq = other.m_uiq;
    m_bit = other.m_bit;
    m_dataLength = other.m_dataLength;
}

// clang-format off
void ZUL_event::layout(TagLayout& row)
{
    row.require(m_name && m_register != nullptr, "Cannot save ZUL_event without name and/or register.");
    char const* const registerName = getRegisterName();

    row.variable(16);
    // A name of 256 characters gets the length byte 0: the tag is written whole, and loading it is refused.
    auto const nameLength = row.tailLength(11, 1, "name length", m_name.length());
    auto const registerNameLength = row.tailLength(12, 4, "register name length",
                                                   registerName == nullptr ? 0 : std::strlen(registerName));
    row.totalElseMalformed(nameLength + registerNameLength,
                           "The size of a event description grew to big to save it!");
    row.u8( 8, "uiq",         m_uiq);
    row.u8( 9, "bit",         m_bit);
    row.u8(10, "data length", m_dataLength);
    row.tailText("name", nameLength, m_name);
    row.tailRegisterName("register name", registerNameLength, m_register);

    if (row.reading()) {
        m_firmwareEvent = false;
    }
}
// clang-format on

void ZUL_event::setName(char const* name)
{
    constexpr std::size_t longest = 256;
    if (name != nullptr && strnlen(name, longest + 1) > longest) {
        throw std::invalid_argument("Name is too long for ZUL_event tag.");
    }
    m_name.set(name);
}

char const* ZUL_event::getRegisterName() const noexcept
{
    return m_register == nullptr ? nullptr : m_register->getName();
}

void ZUL_event::findMyRegister(char const* name)
{
    m_register = ownRegister(name);
}

ZUL_register const* ZUL_event::ownRegister(char const* name) const
{
    ZUL const* const zul = getParent();
    ZUL_register const* const found = zul == nullptr ? nullptr : zul->findRegister(name);
    if (found == nullptr) {
        throw ZUL_file_bad_reference(getTagId());
    }
    return found;
}
