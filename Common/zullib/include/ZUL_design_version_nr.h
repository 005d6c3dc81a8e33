#pragma once

#include "laid_out_tag.h"

#include <cstdint>

/// A version of the design as numbers. A container holds one for each index.
///
/// Version 0.0 says nothing and is not written: the save length is 0 then.
class ZUL_design_version_nr : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x8156001;

    /// Version 0.0, index 0.
    explicit ZUL_design_version_nr(ZUL* parent) : LaidOutTag(parent) {}
    ZUL_design_version_nr(ZUL_design_version_nr const& other) = default;
    explicit ZUL_design_version_nr(ZUL_design_version_nr const* other) : ZUL_design_version_nr(*other) {}
    ZUL_design_version_nr& operator=(ZUL_design_version_nr const& other);

    void setVersion(unsigned short const& version) noexcept { m_version = version; }
    void setVersion(unsigned short const& version, unsigned short const& revision) noexcept;
    unsigned short getVersion() const noexcept { return m_version; }
    void setRevision(unsigned short const& revision) noexcept { m_revision = revision; }
    unsigned short getRevision() const noexcept { return m_revision; }
    void setIndex(unsigned char index);
    unsigned char getIndex() const noexcept { return m_index; }

    /// Whether version or revision is not 0; the index alone is not worth saving.
    bool needsSave() const noexcept { return m_version != 0 || m_revision != 0; }

    std::uint32_t getTagId() const override { return tag_id; }

private:
    void layout(TagLayout& row) override;

    std::uint16_t m_version = 0;
    std::uint16_t m_revision = 0;
    std::uint8_t m_index = 0;
};
