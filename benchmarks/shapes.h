#pragma once

#include "bytes.h"

#include <cstdint>
#include <span>
#include <string>

/// One way in which a container can be large.
struct Shape {
    char const* name;
    /// A container that loads strictly, with @p tags tags behind the head (or a few more).
    Bytes (*make)(std::uint32_t tags);
};

/// Every shape whose load has to cost in proportion to its tags.
std::span<Shape const> shapes();
/// The shape with that name. @throws std::out_of_range
Shape const& shapeNamed(std::string const& name);
/// Tags of all common kinds, in the proportions of a large design.
Bytes mixedTags(std::uint32_t tags);
/// The same with events, and with payloads: two libraries, three boards, and a bitstream for each.
/// @param tags at least 100, destinations and libraries included, configurations not
Bytes designTags(std::uint32_t tags);
