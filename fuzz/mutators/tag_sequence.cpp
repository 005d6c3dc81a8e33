#include "tag_sequence.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr std::size_t headLength = 24;
constexpr std::size_t headerLength = 8;
constexpr std::uint32_t headId = 0x4B4F564D;
constexpr std::uint32_t configId = 0x8150120;

/// Where a tag has the length of a variable part.
struct InnerLength {
    std::uint32_t id;
    std::size_t offset;
    unsigned width;
    std::size_t unit; // bytes of what is counted
};

// clang-format off
constexpr std::array innerLengths{
    InnerLength{0x8151002, 24, 4, 1}, // name of a register
    InnerLength{0x8156576, 11, 1, 1}, // name of an event
    InnerLength{0x8156576, 12, 4, 1}, // and of its register
    InnerLength{0x8157000, 12, 2, 1}, // type of a module
    InnerLength{0x8157000, 14, 2, 1}, // its instance
    InnerLength{0x8157000, 16, 2, 1}, // its full name
    InnerLength{0x815A000, 104, 4, 8}, // elements of a parameter
    InnerLength{0x815A000, 120, 4, 1}, // its text
    InnerLength{0x815E000, 36, 4, 1}, // names of a parameter link
    InnerLength{0x815E000, 40, 4, 1},
    InnerLength{0x815E000, 44, 4, 1},
};
// clang-format on

std::uint64_t innerLength(RawBytes const& tag, InnerLength const& field)
{
    std::uint64_t number = 0;
    if (field.offset + field.width <= tag.size()) {
        std::memcpy(&number, tag.data() + field.offset, field.width);
    }
    return number;
}

} // namespace

TagSequence::TagSequence(std::span<std::uint8_t const> container)
    : head(container.data(), container.data() + std::min(container.size(), headLength))
{
    std::size_t offset = head.size();
    while (offset < container.size()) {
        std::uint32_t length = 0;
        std::size_t const left = container.size() - offset;
        if (left >= headerLength) {
            std::memcpy(&length, container.data() + offset + 4, sizeof length);
        }
        std::size_t const taken = length < headerLength || length > left ? left : length;
        tags.emplace_back(container.data() + offset, container.data() + offset + taken);
        offset += taken;
    }
}

RawBytes TagSequence::bytes(std::size_t mostBytes) const
{
    RawBytes all = head;
    for (RawBytes const& tag : tags) {
        all.insert(all.end(), tag.begin(), tag.end());
    }
    all.resize(std::min(all.size(), mostBytes));
    return all;
}

void TagSequence::fixHead()
{
    head.resize(headLength);
    auto const isConfig = [](RawBytes const& tag) { return numberAt(tag, 0) == configId; };
    auto const isRest = [](RawBytes const& tag) { return tag.size() <= headerLength; };
    auto const configs = std::ranges::count_if(tags, isConfig);
    auto const rests = tags.empty() || !isRest(tags.back()) ? 0 : 1; // ignored at the end
    setNumberAt(head, 0, headId);
    setNumberAt(head, 4, headLength);
    setNumberAt(head, 8, tags.size() - static_cast<std::size_t>(configs + rests));
    setNumberAt(head, 12, static_cast<std::uint64_t>(configs));
    setNumberAt(head, 16, 1);
}

std::uint32_t numberAt(RawBytes const& bytes, std::size_t offset)
{
    std::uint32_t number = 0;
    if (offset + sizeof number <= bytes.size()) {
        std::memcpy(&number, bytes.data() + offset, sizeof number);
    }
    return number;
}

void setNumberAt(RawBytes& bytes, std::size_t offset, std::uint64_t number, unsigned width)
{
    if (offset + width <= bytes.size()) {
        std::memcpy(bytes.data() + offset, &number, width);
    }
}

void fixLength(RawBytes& tag)
{
    setNumberAt(tag, 4, tag.size());
}

void resizeTail(RawBytes& tag, std::size_t size, std::size_t which)
{
    std::vector<InnerLength> parts;
    std::ranges::copy_if(innerLengths, std::back_inserter(parts),
                         [&tag](InnerLength const& part) { return part.id == numberAt(tag, 0); });
    if (parts.empty()) {
        tag.resize(tag.size() + size, 'p'); // a payload, or bytes that should not be there
    } else {
        InnerLength const& part = parts[which % parts.size()];
        std::size_t const before = innerLength(tag, part) * part.unit;
        std::size_t const after = size * part.unit;
        tag.resize(tag.size() + after - std::min(before, tag.size()), 't');
        setNumberAt(tag, part.offset, size, part.width);
    }
    fixLength(tag);
}
