#include "walker.h"

#include "ZUL_multi_head.h"
#include "little_endian.h"

#include <algorithm>

namespace {

constexpr std::size_t headLength = 24;
constexpr std::size_t tagHeaderLength = 8;

std::uint32_t wordAt(std::span<std::byte const> file, std::uint64_t offset)
{
    return little_endian::read<std::uint32_t>(file.data() + offset);
}

/// The tag whose header is at @p offset; at least a header is there.
WalkedTag tagAt(std::span<std::byte const> file, std::uint64_t offset, std::size_t index)
{
    std::uint64_t const rest = file.size() - offset;
    WalkedTag tag;
    tag.index = index;
    tag.offset = offset;
    tag.id = wordAt(file, offset);
    tag.statedLength = wordAt(file, offset + 4);
    tag.kind = findTagKind(tag.id);
    bool const stepsOn =
        tag.kind != nullptr && tag.statedLength >= tagHeaderLength && tag.statedLength <= rest;
    tag.length = stepsOn ? tag.statedLength : rest;
    tag.bytes = file.subspan(offset, tag.length);
    return tag;
}

/// How a walk ends with @p tag as its last one.
WalkEnd endAt(WalkedTag const& tag)
{
    if (tag.statedLength < tagHeaderLength || tag.statedLength > tag.length) {
        return WalkEnd::BadLength;
    }
    return tag.kind == nullptr ? WalkEnd::UnknownTag : WalkEnd::Complete;
}

} // namespace

Walk walkContainer(std::span<std::byte const> file)
{
    Walk walk;
    walk.file = file;
    walk.head = file.first(std::min(headLength, file.size()));
    if (file.size() < headLength || wordAt(file, 0) != ZUL_multi_head::tag_id) {
        return walk;
    }
    walk.end = WalkEnd::Complete;
    walk.endOffset = headLength;
    while (walk.end == WalkEnd::Complete && walk.endOffset < file.size() - tagHeaderLength) {
        walk.tags.push_back(tagAt(file, walk.endOffset, walk.tags.size()));
        walk.endOffset += walk.tags.back().length;
        walk.end = endAt(walk.tags.back());
    }
    return walk;
}
