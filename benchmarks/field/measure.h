#pragma once

#include "format.h"

#include <array>

/// What is measured of a format: seconds, and bytes.
enum Cost : std::size_t {
    opening,
    lookingUp,
    walking,
    handingOut,
    saving,
    closing,
    wholeJob,
    wholeJobAgain,
    peakMemory
};
constexpr std::array costNames{"open",  "look up",   "walk",  "bitstreams", "save",
                               "close", "whole job", "again", "peak memory"};
using Costs = std::array<double, costNames.size()>;

/// Designs of one format, and what to ask them.
struct Task {
    Format const& format;
    std::span<std::byte const> warmUp; ///< a small design: opened first, so that the code is in memory
    std::span<std::byte const> design;
    std::span<std::string const> warmUpNames;
    std::span<std::string const> names;
};

/// Measures in two processes of their own, which have the design's bytes in memory and have opened nothing but the small
/// design: one goes through the operations one by one, one does the whole job (open, look up, walk, close), and then again
/// with memory that it has already. Times are processor times. Saving is NaN where a format does not save.
/// @throws std::runtime_error when a process fails
Costs measure(Task const& task);
