#pragma once

#include "laid_out_tag.h"

#include <cstdint>

/// Where the count register of a DMA channel lies. Its numbers are carried through as they are.
class ZUL_dmacnt_register : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x8151020;

    ZUL_dmacnt_register(ZUL* parent, unsigned int channel, unsigned int address, unsigned int flags);
    ZUL_dmacnt_register(ZUL_dmacnt_register const& other) = default;
    explicit ZUL_dmacnt_register(ZUL_dmacnt_register const* other) : ZUL_dmacnt_register(*other) {}
    ZUL_dmacnt_register& operator=(ZUL_dmacnt_register const& other) = default;

    /// @return 0
    int setInfo(unsigned int channel, unsigned int address, unsigned int flags) noexcept;
    unsigned int getChannel() const noexcept { return m_channel; }
    unsigned int getAddress() const noexcept { return m_address; }
    unsigned int getFlags() const noexcept { return m_flags; }

    std::uint32_t getTagId() const override { return tag_id; }

    using ZUL_tag::operator<;
    using ZUL_tag::operator>;
    using ZUL_tag::operator==;
    /// Compares the channels. @throws std::bad_cast when @p other is not a DMA count register
    bool operator<(ZUL_tag const& other) const override;
    /// Compares the channels. @throws std::bad_cast when @p other is not a DMA count register
    bool operator>(ZUL_tag const& other) const override;
    /// True when @p other is a DMA count register with the same channel, address and flags.
    bool operator==(ZUL_tag const& other) const override;
    bool operator==(ZUL_dmacnt_register const& other) const;

private:
    void layout(TagLayout& row) override;

    std::uint32_t m_channel = 0;
    std::uint32_t m_address = 0;
    std::uint32_t m_flags = 0;
};
