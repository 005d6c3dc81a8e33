#pragma once

#include "random.h"

#include <cstdint>
#include <span>

/// A container taken apart at the lengths of its tags.
class TagSequence {
public:
    /// A container of other bytes has them as its head or as its last tag.
    explicit TagSequence(std::span<std::uint8_t const> container);

    /// The container, of at most @p mostBytes: what is too much is cut off.
    RawBytes bytes(std::size_t mostBytes) const;
    /// Makes the head what the tags demand.
    void fixHead();

    RawBytes head;
    std::vector<RawBytes> tags;
};

/// The number in four bytes at @p offset; 0 where there are not so many.
std::uint32_t numberAt(RawBytes const& bytes, std::size_t offset);
/// Does nothing where there are not so many bytes.
void setNumberAt(RawBytes& bytes, std::size_t offset, std::uint64_t number, unsigned width = 4);
/// The tag's length field says how many bytes there are.
void fixLength(RawBytes& tag);
/// Makes the last variable part of @p tag, or the one before, @p size bytes long in its length field too.
/// @param which chooses among the parts
void resizeTail(RawBytes& tag, std::size_t size, std::size_t which);
