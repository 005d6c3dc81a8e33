#pragma once

#include "laid_out_tag.h"

#include <cstdint>

/// Where the interrupt vector registers lie. Their addresses are carried through as they are.
class ZUL_intvectorreg : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x8151030;

    explicit ZUL_intvectorreg(ZUL* parent) : LaidOutTag(parent) {}
    ZUL_intvectorreg(ZUL_intvectorreg const& other) = default;
    explicit ZUL_intvectorreg(ZUL_intvectorreg const* other) : ZUL_intvectorreg(*other) {}
    ZUL_intvectorreg& operator=(ZUL_intvectorreg const& other) = default;

    void setBaseAddress(unsigned int address) noexcept { m_baseAddress = address; }
    unsigned int getBaseAddress() const noexcept { return m_baseAddress; }
    void setAckAddress(unsigned int address) noexcept { m_ackAddress = address; }
    unsigned int getAckAddress() const noexcept { return m_ackAddress; }
    void setStartAddress(unsigned int address) noexcept { m_startAddress = address; }
    unsigned int getStartAddress() const noexcept { return m_startAddress; }

    std::uint32_t getTagId() const override { return tag_id; }

private:
    void layout(TagLayout& row) override;

    std::uint32_t m_baseAddress = 0;
    std::uint32_t m_ackAddress = 0;
    std::uint32_t m_startAddress = 0;
};
