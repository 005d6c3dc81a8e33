#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// A hash that differs from process to process: names and numbers come from files, and nobody shall be able to write
/// one whose keys all collide.
struct SeededHash {
    std::size_t operator()(std::string_view text) const noexcept { return hash(text, s_seed); }
    std::size_t operator()(std::uint64_t number) const noexcept
    {
        return mix(number ^ seed(), 0x9E3779B97F4A7C15U);
    }

    /// The hash that a process with @p seed has.
    static std::size_t hash(std::string_view text, std::uint64_t seed) noexcept;
    /// Folds two words into one.
    static std::uint64_t mix(std::uint64_t a, std::uint64_t b) noexcept
    {
        __extension__ using Wide = unsigned __int128;
        Wide const product = static_cast<Wide>(a) * b;
        return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64U);
    }
    static std::uint64_t seed() noexcept { return s_seed; }

private:
    static std::uint64_t const s_seed;
};
