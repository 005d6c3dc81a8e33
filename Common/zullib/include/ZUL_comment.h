#pragma once

#include "laid_out_tag.h"
#include "tag_text.h"

#include <cstdint>

/// A free comment on the design.
class ZUL_comment : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x8150010;

    explicit ZUL_comment(ZUL* parent) : LaidOutTag(parent) {}
    ZUL_comment(ZUL_comment const& other) = default;
    explicit ZUL_comment(ZUL_comment const* other) : ZUL_comment(*other) {}
    ZUL_comment& operator=(ZUL_comment const& other) = default;

    /// Keeps at most 256 characters; null leaves no comment.
    void setComment(char const* comment) { m_comment.set(comment, commentWidth); }
    /// Null when there is none; valid until the next change.
    char const* getComment() const noexcept { return m_comment.get(); }

    std::uint32_t getTagId() const override { return tag_id; }

private:
    static constexpr std::uint64_t commentWidth = 256;

    void layout(TagLayout& row) override;

    TagText m_comment;
};
