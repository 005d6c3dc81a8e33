#include "seeded_hash.h"

#include <algorithm>
#include <cstring>
#include <random>

namespace {

std::uint64_t randomSeed()
{
    std::random_device device;
    return (std::uint64_t{device()} << 32U) | device();
}

std::uint64_t load(char const* from, std::size_t count)
{
    std::uint64_t word = 0;
    std::memcpy(&word, from, count);
    return word;
}

} // namespace

std::uint64_t const SeededHash::s_seed = randomSeed();

std::size_t SeededHash::operator()(std::string_view text) const noexcept
{
    constexpr std::uint64_t multiplier = 0xA0761D6478BD642FU;
    constexpr std::size_t word = sizeof(std::uint64_t);
    std::uint64_t hash = s_seed ^ mix(text.size() ^ s_seed, multiplier);
    char const* from = text.data();
    for (std::size_t left = text.size(); left != 0;) {
        std::size_t const taken = std::min(left, word);
        hash = mix(hash ^ load(from, taken), multiplier ^ s_seed);
        from += taken;
        left -= taken;
    }
    return mix(hash, multiplier);
}
