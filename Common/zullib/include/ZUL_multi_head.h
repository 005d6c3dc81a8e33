#pragma once

#include "laid_out_tag.h"

#include <cstdint>

/// The head of a container: what follows it.
class ZUL_multi_head : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x4B4F564D; // "KOVM", from the high byte down

    /// Version 1, destination word 0.
    /// @param tags number of tags that follow, configurations not counted
    /// @param configs number of configurations
    ZUL_multi_head(ZUL* parent, unsigned int tags, unsigned int configs);
    ZUL_multi_head(ZUL_multi_head const& other);
    explicit ZUL_multi_head(ZUL_multi_head const* other) : ZUL_multi_head(*other) {}
    /// Copies all but the version: it says what this object was read as.
    ZUL_multi_head& operator=(ZUL_multi_head const& other);

    void setTags(unsigned int tags) noexcept { m_tags = tags; }
    unsigned int getTagCount() const noexcept { return m_tags; }
    void setConfigs(unsigned int configs) noexcept { m_configs = configs; }
    unsigned int getConfigCount() const noexcept { return m_configs; }
    void setDest(unsigned int dest) noexcept { m_dest = dest; }
    /// A word that is kept as it is.
    unsigned int getDest() const noexcept { return m_dest; }
    /// The format version; Load refuses any but 1.
    unsigned int getVersion() const noexcept { return m_version; }

    std::uint32_t getTagId() const override { return tag_id; }

private:
    void layout(TagLayout& row) override;

    std::uint32_t m_tags;
    std::uint32_t m_configs;
    std::uint32_t m_dest = 0;
    std::uint32_t m_version = 1;
};
