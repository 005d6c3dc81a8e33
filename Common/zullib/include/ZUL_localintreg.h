#pragma once

#include "laid_out_tag.h"

#include <cstdint>

/// Where the local interrupt register lies. Its address is carried through as it is.
class ZUL_localintreg : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x8151050;

    explicit ZUL_localintreg(ZUL* parent) : LaidOutTag(parent) {}
    ZUL_localintreg(ZUL_localintreg const& other) = default;
    explicit ZUL_localintreg(ZUL_localintreg const* other) : ZUL_localintreg(*other) {}
    ZUL_localintreg& operator=(ZUL_localintreg const& other) = default;

    void setAddress(unsigned int address) noexcept { m_address = address; }
    unsigned int getAddress() const noexcept { return m_address; }

    std::uint32_t getTagId() const override { return tag_id; }

private:
    void layout(TagLayout& row) override;

    std::uint32_t m_address = 0;
};
