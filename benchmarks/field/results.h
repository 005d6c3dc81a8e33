#pragma once

#include "measure.h"

#include <cstdint>
#include <iosfwd>

/// What was measured of one format with designs of one size.
struct FormatResult {
    std::string format;
    std::size_t bytes = 0;      ///< of the design in this format
    std::vector<Costs> samples; ///< at least one

    double median(std::size_t cost) const;
    double minimum(std::size_t cost) const;
};

/// What was measured with designs of one size; the first format is the measure of the others.
struct SizeResult {
    std::uint32_t records = 0;
    std::vector<FormatResult> formats;
};

/// 1,000 for 1000.
std::string withThousands(std::uint64_t number);

/// A table for each size: times of the first format, and how often they fit into those of the others.
void printMarkdown(std::ostream& out, std::span<SizeResult const> results);
/// Every sample.
void printJson(std::ostream& out, std::span<SizeResult const> results);
/// A picture: time of the whole job over the number of records, both axes logarithmic.
void printSvg(std::ostream& out, std::span<SizeResult const> results);
