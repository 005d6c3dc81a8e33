#pragma once

#include <functional>

/// Runs @p action to its end in a thread with a stack of 256 KiB, which recursion over the input would overflow.
void onSmallStack(std::function<void()> const& action);
