#pragma once

#include "laid_out_tag.h"
#include "tag_text.h"

#include <cstdint>

/// The version of the design as a text. A container holds at most one.
class ZUL_design_version : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x8156000;

    explicit ZUL_design_version(ZUL* parent) : LaidOutTag(parent) {}
    ZUL_design_version(ZUL_design_version const& other) = default;
    explicit ZUL_design_version(ZUL_design_version const* other) : ZUL_design_version(*other) {}
    ZUL_design_version& operator=(ZUL_design_version const& other) = default;

    /// Keeps at most 64 characters; null leaves no version.
    void setVersion(char const* version) { m_version.set(version, versionWidth); }
    /// Stores @p version as lower-case hexadecimal digits, without prefix and leading zeros.
    void setVersion(unsigned int version);
    /// Null when there is none; valid until the next change.
    char const* getVersion() const noexcept { return m_version.get(); }

    std::uint32_t getTagId() const override { return tag_id; }

private:
    static constexpr std::uint64_t versionWidth = 64;

    void layout(TagLayout& row) override;

    TagText m_version;
};
