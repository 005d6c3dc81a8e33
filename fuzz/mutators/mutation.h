#pragma once

#include "random.h"

#include <functional>
#include <span>

/// What the fuzzer does to bytes that mean nothing to it, its dictionary included.
void mutateBytes(RawBytes& bytes, std::size_t mostBytes);

/// A mutation of an input: the allocations that fail are chosen anew, so that none does in half of the runs, and
/// @p mutate, which gets what follows the four bytes, changes the rest.
/// @return the new size
std::size_t
mutateRun(std::span<std::uint8_t> buffer, std::size_t size, unsigned seed,
          std::function<void(RawBytes& bytes, std::size_t mostBytes, Random& random)> const& mutate);

/// An input made of two: the four bytes are those of @p left, @p cross makes the rest.
/// @return its size; 0 when there are no two
std::size_t crossRuns(std::span<std::uint8_t const> left, std::span<std::uint8_t const> right,
                      std::span<std::uint8_t> buffer, unsigned seed,
                      std::function<RawBytes(RawBytes const& left, RawBytes const& right,
                                             std::size_t mostBytes, Random& random)> const& cross);
