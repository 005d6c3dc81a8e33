#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// A hash that differs from process to process: names and numbers come from files, and nobody shall be able to write
/// one whose keys all collide.
struct SeededHash {
    std::size_t operator()(std::string_view text) const noexcept { return hash(text, s_seed); }
    std::size_t operator()(std::uint64_t number) const noexcept { return hash(number, s_seed); }

    /// The hash that a process with @p seed has.
    static std::size_t hash(std::string_view text, std::uint64_t seed) noexcept;
    static std::size_t hash(std::uint64_t number, std::uint64_t seed) noexcept
    {
        // After one product, numbers put together from smaller ones crowd into a few slots, with some seeds.
        return mix(mix(number ^ seed, 0x9E3779B97F4A7C15U) ^ seed, lastMultiplier);
    }
    /// Folds two words into one.
    static std::uint64_t mix(std::uint64_t a, std::uint64_t b) noexcept
    {
        __extension__ using Wide = unsigned __int128;
        Wide const product = static_cast<Wide>(a) * b;
        return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64U);
    }

private:
    static constexpr std::uint64_t lastMultiplier = 0xE7037ED1A0B428DBU;
    static std::uint64_t const s_seed;
};
