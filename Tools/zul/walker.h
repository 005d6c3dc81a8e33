#pragma once

#include "tag_kinds.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// One tag as it lies in a file, good or bad.
struct WalkedTag {
    std::size_t index = 0;    ///< position in the file; 0 is the first tag behind the head
    std::uint64_t offset = 0; ///< of its header in the file
    std::uint32_t id = 0;
    std::uint32_t statedLength = 0;   ///< its length field
    std::uint64_t length = 0;         ///< bytes it takes in the walk: never more than there are
    TagKind const* kind = nullptr;    ///< null: unknown, takes everything up to the end as a load does
    std::span<std::byte const> bytes; ///< from the header on, length bytes
};

/// Where the walk could not simply step on to the next tag.
enum class WalkEnd {
    Complete,    ///< nothing but the bytes that a load ignores is left
    NoContainer, ///< too short for a head, or another id at its place
    UnknownTag,  ///< an unknown tag took the rest
    BadLength    ///< a length field of less than 8 or beyond the end stopped the walk
};

/// A container's bytes, tag by tag, read without the loader: a damaged file is shown as far as it goes.
struct Walk {
    std::span<std::byte const> file;
    std::span<std::byte const> head; ///< 24 bytes, fewer where the file is shorter
    std::vector<WalkedTag> tags;
    WalkEnd end = WalkEnd::NoContainer;
    std::uint64_t endOffset =
        0; ///< first byte behind the last tag walked; the file's size less this is ignored or lost
};

/// Walks @p file by the tags' length fields, as a strict load of good tags does (the last 8 bytes begin no tag).
Walk walkContainer(std::span<std::byte const> file);

/// "register 'ctrl_0' at 0x12c0" and the like: one line about a tag, from its bytes alone.
std::string summaryOf(WalkedTag const& tag);
