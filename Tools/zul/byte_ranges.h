#pragma once

#include "tag_fields.h"
#include "walker.h"

#include <cstdint>
#include <span>
#include <vector>

/// Who the bytes of a range belong to.
enum class Owner {
    Field,   ///< a field of the tag's layout
    Nobody,  ///< within the tag's length, but in no field of its layout
    Trailing ///< behind the last tag: a load ignores them
};

/// Neighbouring bytes with one owner.
struct ByteRange {
    TagField field; ///< offset from the tag's header; fewer bytes than width where the tag is cut short
    Owner owner = Owner::Field;
};

/// All bytes of @p tag, each in exactly one range, ascending. A field of which no byte is there has an empty range.
std::vector<ByteRange> rangesOf(WalkedTag const& tag);
/// All bytes of @p head.
std::vector<ByteRange> rangesOfHead(std::span<std::byte const> head);

/// The bytes of a file behind its last tag; their offset counts from the beginning of the file.
ByteRange trailingRange(Walk const& walk);

/// "unsigned", "text" and so on, "gap" and "trailing".
char const* kindOf(ByteRange const& range) noexcept;
