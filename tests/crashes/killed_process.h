#pragma once

#include "sanitized.h"

#include <chrono>
#include <cstddef>
#include <functional>

/// How a child process ended.
struct ChildEnd {
    bool wasKilled = false;
    int result = 0; ///< of its action when it was not killed
};

/// Runs @p action in a child process that is killed at its @p stop-th stop, from 1. It stops twice for each system call:
/// when it is about to begin, and when it was done but the child has not seen its result.
/// @throws std::runtime_error when the child cannot be traced, or is ended by something else
ChildEnd killedAtStop(std::size_t stop, std::function<int()> const& action);

/// How far to go from one stop to the next: with a sanitizer, which adds system calls of its own, not all are tried.
inline constexpr std::size_t stopStep = isSanitized ? 7 : 1;

/// Runs @p action in a child process that is killed after @p delay, wherever it is then.
ChildEnd killedAfter(std::chrono::microseconds delay, std::function<int()> const& action);
