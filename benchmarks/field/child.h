#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

using Block = std::vector<std::byte>;
using Send = std::function<void(std::span<std::byte const>)>;

/// What @p action sends from a child process, which leaves no trace in the heap of this one.
/// @throws std::runtime_error when the child fails; what was wrong is on standard error
std::vector<Block> blocksFromChild(std::function<void(Send const&)> const& action);
