#pragma once

#include "laid_out_tag.h"
#include "tag_text.h"

#include <cstdint>

/// A hardware register: name, address, bit range, access and the value it has at start or was given last.
///
/// Exists in two layouts: the older one has a name of at most 64 characters and a value of 32 bits, the newer one a
/// name of any length and a value of 64 bits. A register reports the layout that it was read in or made for as its
/// tag id; it is saved in the newer one where iAmANewRegister() says so.
class ZUL_register : public LaidOutTag {
public:
    static constexpr std::uint32_t old_tag_id = 0x8151000;
    static constexpr std::uint32_t new_tag_id = 0x8151002;

    /// Carried through as it is. Other values can be stored, but a file with one is refused.
    enum access : std::uint32_t { access1 = 1, access2 = 2 };

    /// Bits 64 to 1, read-only, address 0, first access, value 0.
    /// @param name as for setName; null leaves the register without a name
    /// @param old whether the register is one of the older layout
    ZUL_register(ZUL* parent, char const* name, bool old);
    /// The flag changes nothing: the layout of @p other counts.
    ZUL_register(ZUL_register const& other, bool old = false);
    /// The flag changes nothing: the layout of @p other counts.
    explicit ZUL_register(ZUL_register const* other, bool old = false) : ZUL_register(*other, old) {}
    ZUL_register& operator=(ZUL_register const& other);

    /// Stores the name, whatever its length; more than 64 characters make this a register of the newer layout.
    /// Null or "" leaves no name.
    virtual void setName(char const* name);
    /// Stores what is written through the container.
    /// @return the value stored
    /// @throws std::runtime_error "write attempt to read only register"
    /// @throws std::invalid_argument "Value too big for old register type" when it needs more than 32 bits and the
    ///         register is going to be saved in the older layout
    virtual unsigned long long setCacheValue(unsigned long long const& value);

    /// Null when there is none; valid until the next change of the name.
    char const* getName() const noexcept { return m_name.get(); }

    /// Stores all values or none.
    /// @param msb counted from 0, at most 63
    /// @param lsb counted from 1 where the value's low bits are concerned; at most @p msb
    /// @return 0, or -22 when the bits are out of order, or @p value has bits above @p msb or below @p lsb
    int setAddress(unsigned int address, unsigned long long value, bool readOnly, unsigned char msb,
                   unsigned char lsb, access type);
    unsigned int getAddress() const noexcept { return m_address; }
    unsigned long long getCache() const noexcept { return m_cache; }

    void setReadOnly(bool const& readOnly) noexcept { m_readOnly = readOnly; }
    bool isReadOnly() const noexcept { return m_readOnly; }
    /// Ignored unless 1 or at most the most significant bit.
    void setLSB(unsigned char const& bit) noexcept;
    unsigned char getLSB() const noexcept { return m_lsb; }
    /// Ignored unless 64 or between the least significant bit and 64.
    void setMSB(unsigned char const& bit) noexcept;
    unsigned char getMSB() const noexcept { return m_msb; }
    /// Ignored unless it is one of the two values.
    void setType(access const& type) noexcept;
    access getType() const noexcept { return m_access; }

    /// Whether the register is saved in the newer layout: its own, or asked for by the container's register policy.
    bool iAmANewRegister() const;

    /// Which of the two layouts the register was read in or made for.
    std::uint32_t getTagId() const override { return m_isStoredNew ? new_tag_id : old_tag_id; }

    /// Whether a file may have @p type.
    static constexpr bool isAccess(std::uint32_t type) noexcept { return type == access1 || type == access2; }

private:
    friend class RegisterNames; // files texts by their lengths

    static constexpr std::uint64_t oldNameWidth = 64;

    void layout(TagLayout& row) override;
    void oldLayout(TagLayout& row);
    void newLayout(TagLayout& row);
    void take(std::uint32_t type, std::uint32_t writable);

    // In the order of their widths: there are many registers.
    std::uint8_t m_msb = 64;
    std::uint8_t m_lsb = 1;
    bool m_readOnly = true;
    bool m_isStoredNew = true;
    std::uint32_t m_address = 0;
    access m_access = access1;
    std::uint64_t m_cache = 0;
    TagText m_name;
};
