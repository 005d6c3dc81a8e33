#pragma once

#include "laid_out_tag.h"
#include "tag_text.h"

#include <cstdint>

class ZUL_register;

/// An event that the design signals to the host: the interrupt queue and bit it arrives on, and its register.
class ZUL_event : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x8156576;

    /// Without name and register.
    ZUL_event(ZUL* parent, unsigned char uiq, unsigned char bit, unsigned char dataLen);
    /// Unlike other tags a copied event starts with the container of @p other: its register is looked up there.
    /// @throws ZUL_file_bad_reference as assignment does
    ZUL_event(ZUL_event const& other);
    explicit ZUL_event(ZUL_event const* other) : ZUL_event(*other) {}
    /// Takes the register with the same name from this event's own container; nothing changes when there is none.
    /// The firmware flag is not copied, it becomes false.
    /// @throws ZUL_file_bad_reference when the container has no register of that name, or there is no container
    ZUL_event& operator=(ZUL_event const& other);

    /// Takes over everything but register and mark. A loaded name may be "", which setName would leave out.
    void copyFieldsFrom(ZUL_event const& other);

    /// Number of the user interrupt queue.
    void setUiq(unsigned char uiq) noexcept { m_uiq = uiq; }
    unsigned char getUiq() const noexcept { return m_uiq; }
    void setBit(unsigned char bit) noexcept { m_bit = bit; }
    unsigned char getBit() const noexcept { return m_bit; }
    /// Length of the data that comes with the event.
    void setDataLen(unsigned char length) noexcept { m_dataLength = length; }
    unsigned char getDataLen() const noexcept { return m_dataLength; }
    /// Null or "" leaves no name. A name of 256 characters is taken, but no file with it can be loaded.
    /// @throws std::invalid_argument "Name is too long for ZUL_event tag." for more than 256 characters
    void setName(char const* name);
    /// Null when there is none; valid until the next change of the name.
    char const* getName() const noexcept { return m_name.get(); }

    /// @param reg has to be in the same container; it stays the container's. Null leaves no register.
    void setRegister(ZUL_register const* reg) noexcept { m_register = reg; }
    ZUL_register const* getRegister() const noexcept { return m_register; }
    /// The register's name; null without register.
    char const* getRegisterName() const noexcept;
    /// Takes the container's register with that name or alias.
    /// @throws ZUL_file_bad_reference when there is none, or no container
    void findMyRegister(char const* name);

    /// Marks the event until it is loaded or assigned; the mark is not saved.
    void flagAsFirmwareEvent() noexcept { setFirmwareEvent(true); }
    /// Sets the mark or takes it back.
    void setFirmwareEvent(bool firmware) noexcept { m_firmwareEvent = firmware; }
    bool isFirmwareEvent() const noexcept { return m_firmwareEvent; }

    std::uint32_t getTagId() const override { return tag_id; }

private:
    void layout(TagLayout& row) override;
    ZUL_register const* ownRegister(char const* name) const;

    std::uint8_t m_uiq = 0;
    std::uint8_t m_bit = 0;
    std::uint8_t m_dataLength = 0;
    bool m_firmwareEvent = false;
    TagText m_name;
    ZUL_register const* m_register = nullptr;
};
