#pragma once

#include "laid_out_tag.h"
#include "tag_text.h"

#include <cstdint>

/// Who made the design. A container holds at most one.
class ZUL_author : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x8150070;

    explicit ZUL_author(ZUL* parent) : LaidOutTag(parent) {}
    ZUL_author(ZUL_author const& other) = default;
    explicit ZUL_author(ZUL_author const* other) : ZUL_author(*other) {}
    ZUL_author& operator=(ZUL_author const& other) = default;

    /// Keeps at most 64 characters; null leaves no author.
    void setAuthor(char const* author) { m_author.set(author, authorWidth); }
    /// Null when there is none; valid until the next change.
    char const* getAuthor() const noexcept { return m_author.get(); }

    std::uint32_t getTagId() const override { return tag_id; }

private:
    static constexpr std::uint64_t authorWidth = 64;

    void layout(TagLayout& row) override;

    TagText m_author;
};
