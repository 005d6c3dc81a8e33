#include "answers.h"
#include "child.h"
#include "content.h"
#include "results.h"
#include "shapes.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <fstream>
#include <iostream>
#include <sstream>

namespace {

using Formats = std::vector<std::unique_ptr<Format>>;

struct Options {
    std::vector<std::uint32_t> sizes{1'000, 10'000, 100'000, 1'000'000};
    unsigned rounds = 5;
    std::vector<std::string> only;
    std::string json;
    std::string svg;
};

/// One content in every format, all of which give the same answers.
class Designs {
public:
    Designs(Formats const& formats, std::uint32_t records)
        : m_blocks(blocksFromChild([&](Send const& send) { write(formats, records, send); }))
    {
        auto const* const text = reinterpret_cast<char const*>(m_blocks.at(0).data());
        std::istringstream names(std::string(text, m_blocks.at(0).size()));
        for (std::string name; std::getline(names, name);) {
            m_names.push_back(name);
        }
    }
    std::span<std::byte const> bytes(std::size_t format) const { return m_blocks.at(format + 1); }
    std::span<std::string const> names() const { return m_names; }

private:
    /// Sends the names to look up, one a line, and the design in each format.
    static void write(Formats const& formats, std::uint32_t records, Send const& send)
    {
        Bytes const container = designTags(records);
        std::span<std::byte const> const bytes(container.data(), container.size());
        Content const content = contentOf(bytes);
        std::vector<std::string> const names = namesToLookUp(content);
        std::string lines;
        for (std::string const& name : names) {
            lines += name + '\n';
        }
        send(std::as_bytes(std::span(lines)));
        for (auto const& format : formats) {
            std::cerr << "  writing and checking " << format->name() << '\n';
            Stored const stored = format->write(content, bytes);
            checkAnswers(*format, stored.bytes(), content, names);
            send(stored.bytes());
        }
    }

    std::vector<Block> m_blocks;
    std::vector<std::string> m_names;
};

/// Small designs are measured several times a round.
unsigned samplesInRound(std::uint32_t records)
{
    return std::clamp(100'000 / records, 1U, 20U);
}

SizeResult measureSize(Formats const& formats, Designs const& small, std::uint32_t records, unsigned rounds)
{
    std::cerr << records << " records\n";
    Designs const designs(formats, records);
    SizeResult result{records, {}};
    for (std::size_t i = 0; i < formats.size(); ++i) {
        result.formats.push_back({formats[i]->name(), designs.bytes(i).size(), {}});
    }
    // Round by round: what else the machine does meets all formats alike.
    for (unsigned round = 1; round <= rounds; ++round) {
        for (std::size_t i = 0; i < formats.size(); ++i) {
            std::cerr << "  round " << round << " of " << rounds << ": " << formats[i]->name() << '\n';
            Task const task{*formats[i], small.bytes(i), designs.bytes(i), small.names(), designs.names()};
            for (unsigned sample = 0; sample < samplesInRound(records); ++sample) {
                result.formats[i].samples.push_back(measure(task));
            }
        }
    }
    return result;
}

Formats chosenFormats(std::vector<std::string> const& only)
{
    Formats formats = allFormats();
    std::erase_if(formats, [&only](auto const& format) {
        return !only.empty() && std::find(only.begin(), only.end(), format->name()) == only.end();
    });
    return formats;
}

void write(std::string const& path, void (*print)(std::ostream&, std::span<SizeResult const>),
           std::span<SizeResult const> results)
{
    if (!path.empty()) {
        std::ofstream file(path);
        print(file, results);
        file.close();
        if (!file) {
            throw std::runtime_error("cannot write " + path);
        }
    }
}

void run(Options const& options)
{
    Formats const formats = chosenFormats(options.only);
    if (formats.empty()) {
        throw std::runtime_error("there is no such format");
    }
    constexpr std::uint32_t smallSize = 200;
    Designs const small(formats, smallSize);
    std::vector<SizeResult> results;
    for (std::uint32_t const records : options.sizes) {
        results.push_back(measureSize(formats, small, records, options.rounds));
    }
    printMarkdown(std::cout, results);
    write(options.json, printJson, results);
    write(options.svg, printSvg, results);
}

std::string formatNames()
{
    std::string names;
    for (auto const& format : allFormats()) {
        names += (names.empty() ? "" : "; ") + format->name();
    }
    return names;
}

} // namespace

int main(int argc, char** argv)
{
    Options options;
    CLI::App program(
        "Measures one design in the formats that could hold it, side by side, and prints Markdown.");
    program.add_option("--sizes", options.sizes, "Records of the designs, separated by commas")
        ->delimiter(',')
        ->check(CLI::Range(100U, 10'000'000U))
        ->capture_default_str();
    program.add_option("--rounds", options.rounds, "Rounds over all formats")
        ->check(CLI::PositiveNumber)
        ->capture_default_str();
    program.add_option("--only", options.only, "Formats, instead of all: " + formatNames())->delimiter(';');
    program.add_option("--json", options.json, "Writes every sample to this file");
    program.add_option("--svg", options.svg, "Draws the whole job over the size into this file");
    CLI11_PARSE(program, argc, argv);
    try {
        run(options);
        return 0;
    } catch (std::exception const& error) {
        std::cerr << "field_benchmark: " << error.what() << '\n';
        return 1;
    }
}
