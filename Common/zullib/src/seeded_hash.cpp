#include "seeded_hash.h"

#include <cstring>
#include <random>

namespace {

std::uint64_t randomSeed()
{
    std::random_device device;
    return (std::uint64_t{device()} << 32U) | device();
}

constexpr std::size_t wordSize = sizeof(std::uint64_t);

std::uint64_t load(char const* from)
{
    std::uint64_t word = 0;
    std::memcpy(&word, from, wordSize);
    return word;
}

/// The last bytes of a text as one word; what two words share is read twice.
std::uint64_t loadTail(std::string_view text)
{
    if (text.size() >= wordSize) {
        return load(text.data() + text.size() - wordSize);
    }
    std::uint64_t word = 0;
    for (char const c : text) {
        word = (word << 8U) | static_cast<unsigned char>(c);
    }
    return word;
}

} // namespace

std::uint64_t const SeededHash::s_seed = randomSeed();

std::size_t SeededHash::hash(std::string_view text, std::uint64_t seed) noexcept
{
    constexpr std::uint64_t multiplier = 0xA0761D6478BD642FU;
    std::uint64_t hash = seed ^ mix(text.size() ^ seed, multiplier);
    for (std::size_t done = 0; done + wordSize < text.size(); done += wordSize) {
        hash = mix(hash ^ load(text.data() + done), multiplier ^ seed);
    }
    hash = mix(hash ^ loadTail(text), multiplier ^ seed);
    // A factor that depends on the seed is a poor one for some seeds; this one is good for all.
    return mix(hash ^ seed, lastMultiplier);
}
