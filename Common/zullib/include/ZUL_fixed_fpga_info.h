#pragma once

#include "laid_out_tag.h"

#include <cstdint>

/// Version of the fixed part of an FPGA, for one index.
class ZUL_fixed_fpga_info : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x8150084;

    ZUL_fixed_fpga_info(ZUL* parent, unsigned char index, unsigned char version, unsigned char revision);
    ZUL_fixed_fpga_info(ZUL_fixed_fpga_info const& other) = default;
    explicit ZUL_fixed_fpga_info(ZUL_fixed_fpga_info const* other) : ZUL_fixed_fpga_info(*other) {}
    ZUL_fixed_fpga_info& operator=(ZUL_fixed_fpga_info const& other) = default;

    void setVersion(unsigned char version, unsigned char revision) noexcept;
    unsigned char getVersion() const noexcept { return m_version; }
    unsigned char getRevision() const noexcept { return m_revision; }
    void setIndex(unsigned char index) noexcept { m_index = index; }
    unsigned char getIndex() const noexcept { return m_index; }

    std::uint32_t getTagId() const override { return tag_id; }

private:
    void layout(TagLayout& row) override;

    std::uint8_t m_index;
    std::uint8_t m_version;
    std::uint8_t m_revision;
};
