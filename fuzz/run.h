#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

using Input = std::span<std::uint8_t const>;

/// What an input asks for. Its first four bytes are the same for every target:
///
///     0     lower two bits: 0 and 1 no allocation fails, 2 one does, 3 all from one on do;
///           the others: how many steps of the target are over before allocations are counted
///     1, 2  which one, counted from 0
///     3     what the target may vary
struct Run {
    static constexpr std::size_t prefix = 4;

    std::uint8_t variant = 0;
    Input bytes;
};

/// Plans the allocations of the run that the input asks for; keeps what is printed from being seen.
Run beginRun(std::uint8_t const* data, std::size_t size);

/// Counts the runs that came to @p stage, a literal; the counts are printed when the program ends.
void reached(char const* stage);

/// Ends the process when @p holds is false: a fuzzer then keeps the input.
void must(bool holds, char const* what);
