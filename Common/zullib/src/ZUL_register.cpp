#include "ZUL_register.h"

#include "tag_layout.h"
#include "zul_class.h"
#include "zul_errors.h"

#include <cerrno>
#include <stdexcept>

ZUL_register::ZUL_register(ZUL* parent, char const* name, bool old) : LaidOutTag(parent), m_isStoredNew(!old)
{
    if (name != nullptr) {
        ZUL_register::setName(name);
    }
}

ZUL_register::ZUL_register(ZUL_register const& other, bool) : LaidOutTag(other)
{
    ZUL_register::operator=(other);
}

ZUL_register& ZUL_register::operator=(ZUL_register const& other)
{
    if (this != &other) {
        setName(other.getName());
        m_msb = other.m_msb;
        m_lsb = other.m_lsb;
        m_readOnly = other.m_readOnly;
        m_address = other.m_address;
        m_access = other.m_access;
        m_cache = other.m_cache;
        m_isStoredNew = other.m_isStoredNew;
        keyChanged();
    }
    return *this;
}

void ZUL_register::layout(TagLayout& row)
{
    row.needs(8);
    std::uint32_t const id = row.headerId(iAmANewRegister() ? new_tag_id : old_tag_id);
    if (row.loading() && id != old_tag_id && id != new_tag_id) {
        throw ZUL_file_malformed_tag(id);
    }
    if (row.reading()) {
        m_isStoredNew = id != old_tag_id;
    }
    if (id == old_tag_id) {
        oldLayout(row);
    } else {
        newLayout(row);
    }
}

// clang-format off
void ZUL_register::oldLayout(TagLayout& row)
{
    // Only saving refuses a long name: its length is asked for first, and that answer is always the same.
    if (row.saving()) {
        row.require(m_name.length() <= oldNameWidth,
                    "Tried to save a ZUL_register of old type with a name of more than 64 characters.");
    }
    std::uint32_t type = m_access & 0xFFU;
    auto value = static_cast<std::uint32_t>(m_cache);
    std::uint32_t writable = m_readOnly ? 0 : 1;
    std::uint32_t lsb = m_lsb;
    std::uint32_t msb = m_msb;

    row.fixed(104);
    row.u32     ( 8,               "access",   type);       row.demand(isAccess(type), "1 or 2");
    row.u32     (12,               "address",  m_address);
    row.u32     (16,               "value",    value);
    row.u32     (20,               "writable", writable);   row.demand(writable <= 1, "0 or 1");
    row.u32     (24,               "lsb",      lsb);
    row.u32     (28,               "msb",      msb);
    row.text    (32, oldNameWidth, "name",     m_name);
    row.reserved(96, 8);

    if (row.reading()) {
        take(type, writable);
        m_cache = value;
        m_lsb = static_cast<std::uint8_t>(lsb);
        m_msb = static_cast<std::uint8_t>(msb);
    }
}

void ZUL_register::newLayout(TagLayout& row)
{
    auto type = static_cast<std::uint8_t>(m_access & 0xFFU);
    std::uint8_t writable = m_readOnly ? 0 : 1;

    row.variable(32);
    std::uint64_t const nameLength = row.tailLength(24, 4, "name length", m_name.length());
    row.total(nameLength, "The size of a register description grew to big to save it!");
    row.u8   ( 8, "access",   type);       row.demand(isAccess(type), "1 or 2");
    row.u8   ( 9, "writable", writable);   row.demand(writable <= 1, "0 or 1");
    row.u8   (10, "lsb",      m_lsb);
    row.u8   (11, "msb",      m_msb);
    row.u32  (12, "address",  m_address);
    row.u64  (16, "value",    m_cache);
    row.zeros(28, 4);
    row.tailText("name", nameLength, m_name);

    if (row.reading()) {
        take(type, writable);
    }
}
// clang-format on

void ZUL_register::take(std::uint32_t type, std::uint32_t writable)
{
    m_access = static_cast<access>(type);
    m_readOnly = writable == 0;
}

void ZUL_register::setName(char const* name)
{
    m_name.set(name);
    if (m_name.length() > oldNameWidth) {
        m_isStoredNew = true;
    }
    keyChanged();
}

unsigned long long ZUL_register::setCacheValue(unsigned long long const& value)
{
    if (m_readOnly) {
        throw std::runtime_error("write attempt to read only register");
    }
    if (value > UINT32_MAX && !iAmANewRegister()) {
        throw std::invalid_argument("Value too big for old register type");
    }
    return m_cache = value;
}

int ZUL_register::setAddress(unsigned int address, unsigned long long value, bool readOnly, unsigned char msb,
                             unsigned char lsb, access type)
{
    // Here msb counts from 0 but lsb, for the value's low bits, from 1; setMSB and setLSB count both from 1. Designs
    // are made with either, so the two stay as they are.
    constexpr unsigned char highestBit = 63;
    if (lsb > msb || msb > highestBit) {
        return -EINVAL;
    }
    if (msb != highestBit && value >> (msb + 1U) != 0) {
        return -EINVAL;
    }
    if (lsb != 0 && (value & ((1ULL << (lsb - 1U)) - 1)) != 0) {
        return -EINVAL;
    }
    m_address = address;
    m_lsb = lsb;
    m_msb = msb;
    m_readOnly = readOnly;
    m_access = type;
    m_cache = value;
    return 0;
}

void ZUL_register::setLSB(unsigned char const& bit) noexcept
{
    if (bit == 1 || bit <= m_msb) {
        m_lsb = bit;
    }
}

void ZUL_register::setMSB(unsigned char const& bit) noexcept
{
    constexpr unsigned char noBit = 64;
    if (bit == noBit || (m_lsb <= bit && bit <= noBit)) {
        m_msb = bit;
    }
}

void ZUL_register::setType(access const& type) noexcept
{
    if (isAccess(type)) {
        m_access = type;
    }
}

bool ZUL_register::iAmANewRegister() const
{
    ZUL const* const zul = getParent();
    return m_isStoredNew || (zul != nullptr && zul->getRegisterPolicy() != 0);
}
