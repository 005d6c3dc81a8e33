#include "results.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <ostream>

namespace {

std::vector<double> sorted(FormatResult const& result, std::size_t cost)
{
    std::vector<double> values;
    for (Costs const& sample : result.samples) {
        values.push_back(sample.at(cost));
    }
    std::sort(values.begin(), values.end());
    return values;
}

/// With three digits that count, four places at most.
std::string threeDigits(double value)
{
    if (value < 0.0001) {
        return "<0.0001";
    }
    int const places = value >= 100 ? 0 : value >= 10 ? 1 : value >= 0.1 ? 2 : 4;
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", places, value);
    return text;
}

std::string milliseconds(double seconds)
{
    return threeDigits(seconds * 1e3) + " ms";
}

std::string mebibytes(double bytes)
{
    return threeDigits(bytes / (1U << 20U)) + " MiB";
}

std::string cell(FormatResult const& result, FormatResult const& measure, std::size_t cost)
{
    double const value = result.median(cost);
    if (std::isnan(value)) {
        return "–";
    }
    if (&result == &measure) {
        return cost == peakMemory ? mebibytes(value) : milliseconds(value);
    }
    return threeDigits(value / measure.median(cost));
}

void printTable(std::ostream& out, SizeResult const& size)
{
    out << "\n"
        << withThousands(size.records) << " records, medians of " << size.formats.front().samples.size()
        << " samples:\n\n| |";
    for (char const* const name : costNames) {
        out << ' ' << name << " |";
    }
    out << " size |\n|---|";
    for (std::size_t i = 0; i <= costNames.size(); ++i) {
        out << "---:|";
    }
    out << '\n';
    FormatResult const& measure = size.formats.front();
    for (FormatResult const& result : size.formats) {
        out << "| " << result.format << " |";
        for (std::size_t cost = 0; cost < costNames.size(); ++cost) {
            out << ' ' << cell(result, measure, cost) << " |";
        }
        auto const bytes = static_cast<double>(result.bytes);
        out << ' '
            << (&result == &measure ? mebibytes(bytes)
                                    : threeDigits(bytes / static_cast<double>(measure.bytes)))
            << " |\n";
    }
}

} // namespace

std::string withThousands(std::uint64_t number)
{
    std::string digits = std::to_string(number);
    for (std::size_t end = digits.size(); end > 3; end -= 3) {
        digits.insert(end - 3, 1, ',');
    }
    return digits;
}

double FormatResult::median(std::size_t cost) const
{
    return sorted(*this, cost).at(samples.size() / 2);
}

double FormatResult::minimum(std::size_t cost) const
{
    return sorted(*this, cost).front();
}

void printMarkdown(std::ostream& out, std::span<SizeResult const> results)
{
    out << "Medians of processor time. The first line of a table is absolute; the others are multiples of "
           "it.\n";
    for (SizeResult const& size : results) {
        printTable(out, size);
    }
}

void printJson(std::ostream& out, std::span<SizeResult const> results)
{
    auto sizes = nlohmann::ordered_json::array();
    for (SizeResult const& size : results) {
        auto formats = nlohmann::ordered_json::array();
        for (FormatResult const& result : size.formats) {
            nlohmann::ordered_json costs;
            for (std::size_t cost = 0; cost < costNames.size(); ++cost) {
                costs[costNames.at(cost)] = {{"median", result.median(cost)},
                                             {"minimum", result.minimum(cost)},
                                             {"samples", sorted(result, cost)}};
            }
            formats.push_back({{"format", result.format}, {"bytes", result.bytes}, {"costs", costs}});
        }
        sizes.push_back({{"records", size.records}, {"formats", formats}});
    }
    out << sizes.dump(2) << '\n';
}
