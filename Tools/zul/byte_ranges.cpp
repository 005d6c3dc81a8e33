#include "byte_ranges.h"

#include <algorithm>
#include <utility>

namespace {

ByteRange unowned(std::span<std::byte const> tag, std::uint64_t begin, std::uint64_t end)
{
    return {{begin, end - begin, FieldKind::Bytes, "gap", tag.subspan(begin, end - begin)}, Owner::Nobody};
}

/// @p fields and what lies between and behind them.
std::vector<ByteRange> covered(std::vector<TagField> fields, std::span<std::byte const> bytes)
{
    std::stable_sort(fields.begin(), fields.end(),
                     [](TagField const& left, TagField const& right) { return left.offset < right.offset; });
    std::vector<ByteRange> ranges;
    ranges.reserve(fields.size() + 1);
    std::uint64_t next = 0;
    for (TagField const& field : fields) {
        std::uint64_t const begin = std::min<std::uint64_t>(field.offset, bytes.size());
        if (begin > next) {
            ranges.push_back(unowned(bytes, next, begin));
        }
        ranges.push_back({field, Owner::Field});
        next = begin + field.bytes.size();
    }
    if (next < bytes.size()) {
        ranges.push_back(unowned(bytes, next, bytes.size()));
    }
    return ranges;
}

/// The header that all tags have, and a rest that nobody can read.
std::vector<TagField> rawFields(std::span<std::byte const> bytes)
{
    return {{0, 4, FieldKind::TagId, "tag id", bytes.first(4)},
            {4, 4, FieldKind::TagLength, "length", bytes.subspan(4, 4)},
            {8, bytes.size() - 8, FieldKind::Bytes, "raw data", bytes.subspan(8)}};
}

} // namespace

std::vector<ByteRange> rangesOf(WalkedTag const& tag)
{
    return covered(tag.kind == nullptr ? rawFields(tag.bytes) : TagFields(tag).all(), tag.bytes);
}

std::vector<ByteRange> rangesOfHead(std::span<std::byte const> head)
{
    return covered(TagFields::ofHead(head).all(), head);
}

ByteRange trailingRange(Walk const& walk)
{
    std::uint64_t const begin = std::max<std::uint64_t>(walk.endOffset, walk.head.size());
    auto const bytes = walk.file.subspan(begin);
    return {{begin, bytes.size(), FieldKind::Bytes, "trailing", bytes}, Owner::Trailing};
}

char const* kindOf(ByteRange const& range) noexcept
{
    if (range.owner != Owner::Field) {
        return range.field.name;
    }
    switch (range.field.kind) {
    case FieldKind::TagId:
        return "tag id";
    case FieldKind::TagLength:
        return "tag length";
    case FieldKind::Unsigned:
        return "unsigned";
    case FieldKind::Signed:
        return "signed";
    case FieldKind::Real:
        return "real";
    case FieldKind::TailLength:
        return "tail length";
    case FieldKind::ProcessReference:
        return "process reference";
    case FieldKind::ModuleReference:
        return "module reference";
    case FieldKind::Text:
        return "text";
    case FieldKind::RegisterReference:
        return "register reference";
    case FieldKind::Bytes:
        return "bytes";
    case FieldKind::Zero:
        return "zero";
    case FieldKind::MustBeZero:
        return "must be zero";
    case FieldKind::Reserved:
        return "reserved";
    }
    return "";
}
