#pragma once

#include "bytes.h"

#include <cstdint>
#include <string_view>

/// The numbers of a parameter tag; what is not set is 0.
struct ParamNumbers {
    std::uint32_t type = 1;
    std::uint64_t integer = 0;
    double real = 0;
    std::uint32_t elements = 0;
    std::uint32_t characters = 0;
    std::uint32_t moduleIndex = 5;
};

/// A parameter tag by hand: 192 bytes, then @p tail, which the length field includes.
/// @param fill stands where saving leaves the buffer as it is
inline Bytes paramBytes(ParamNumbers const& numbers, Bytes const& tail = {}, unsigned fill = 0)
{
    return Bytes()
        .u32(0x0815A000)
        .u32(192 + tail.size())
        .u32(numbers.moduleIndex)
        .fill(fill, 4)
        .text("threshold", 64)
        .u64(numbers.integer)
        .real(numbers.real)
        .u32(0x80000001) // flags
        .u32(numbers.type)
        .u32(numbers.elements)
        .fill(fill, 12)
        .u32(numbers.characters)
        .fill(fill, 68)
        .append(tail);
}

inline Bytes threeElements()
{
    return Bytes().u64(0xFFFFFFFFFFFFFFFF).u64(0).u64(0x0123456789ABCDEF);
}

// Honest tags of each kind. Values of the other kinds are there too, to be ignored.

inline Bytes integerParam(std::uint32_t type = 1)
{
    return paramBytes({.type = type, .integer = 0xFEDCBA9876543210, .real = 2.5});
}

inline Bytes doubleParam()
{
    return paramBytes({.type = 5, .integer = 42, .real = -0.125});
}

inline Bytes fieldParam(std::uint32_t type = 6)
{
    return paramBytes({.type = type, .integer = 42, .real = 2.5, .elements = 3}, threeElements());
}

inline Bytes textParam(std::uint32_t type = 13, std::string_view text = "rising")
{
    ParamNumbers const numbers{
        .type = type, .integer = 42, .real = 2.5, .characters = static_cast<std::uint32_t>(text.size())};
    return paramBytes(numbers, Bytes().chars(text));
}
