#pragma once

#include "laid_out_tag.h"

#include <cstdint>

/// Where the tag register of a DMA channel lies. Its numbers are carried through as they are.
class ZUL_dmatag_register : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x8151040;

    explicit ZUL_dmatag_register(ZUL* parent) : LaidOutTag(parent) {}
    ZUL_dmatag_register(ZUL_dmatag_register const& other) = default;
    explicit ZUL_dmatag_register(ZUL_dmatag_register const* other) : ZUL_dmatag_register(*other) {}
    ZUL_dmatag_register& operator=(ZUL_dmatag_register const& other) = default;

    void setAddress(unsigned int address) noexcept { m_address = address; }
    unsigned int getAddress() const noexcept { return m_address; }
    void setMask(unsigned int mask) noexcept { m_mask = mask; }
    unsigned int getMask() const noexcept { return m_mask; }
    void setShiftr(unsigned int shiftr) noexcept { m_shiftr = shiftr; }
    unsigned int getShiftr() const noexcept { return m_shiftr; }
    void setChannel(unsigned int channel) noexcept { m_channel = channel; }
    unsigned int getChannel() const noexcept { return m_channel; }

    std::uint32_t getTagId() const override { return tag_id; }

private:
    void layout(TagLayout& row) override;

    std::uint32_t m_address = 0;
    std::uint32_t m_mask = 0;
    std::uint32_t m_shiftr = 0;
    std::uint32_t m_channel = 0;
};
