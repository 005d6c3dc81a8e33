#pragma once

#include "laid_out_tag.h"
#include "tag_text.h"

#include <cstdint>

/// The name of the design. A container holds at most one.
class ZUL_design_name : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x8155000;

    explicit ZUL_design_name(ZUL* parent) : LaidOutTag(parent) {}
    ZUL_design_name(ZUL_design_name const& other) = default;
    explicit ZUL_design_name(ZUL_design_name const* other) : ZUL_design_name(*other) {}
    ZUL_design_name& operator=(ZUL_design_name const& other) = default;

    /// Keeps at most 64 characters; null leaves no name.
    void setName(char const* name) { m_name.set(name, nameWidth); }
    /// Null when there is none; valid until the next change.
    char const* getName() const noexcept { return m_name.get(); }

    std::uint32_t getTagId() const override { return tag_id; }

private:
    static constexpr std::uint64_t nameWidth = 64;

    void layout(TagLayout& row) override;

    TagText m_name;
};
