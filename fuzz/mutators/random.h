#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

using RawBytes = std::vector<std::uint8_t>;

/// Choices that depend on nothing but the number that the fuzzer gives.
class Random {
public:
    explicit Random(unsigned seed) : m_engine(seed + 1U) {}

    /// 0 to @p count - 1; 0 for none.
    std::size_t below(std::size_t count) { return count == 0 ? 0 : next() % count; }
    bool oneIn(std::size_t count) { return below(count) == 0; }
    template <class Items>
    auto& oneOf(Items& items)
    {
        return items[below(items.size())];
    }

private:
    std::size_t next()
    {
        std::size_t const upper = m_engine();
        return upper << 16U ^ m_engine();
    }

    std::minstd_rand m_engine;
};
