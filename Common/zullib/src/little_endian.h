#pragma once

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// The one place where numbers meet unaligned little-endian bytes.
namespace little_endian {

static_assert(std::endian::native == std::endian::little,
              "containers are little-endian; add byte swaps here");

template <std::integral T>
T read(std::byte const* from) noexcept
{
    T value;
    std::memcpy(&value, from, sizeof value);
    return value;
}

template <std::integral T>
void write(std::byte* to, T value) noexcept
{
    std::memcpy(to, &value, sizeof value);
}

} // namespace little_endian
