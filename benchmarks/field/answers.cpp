#include "answers.h"

#include "content.h"

#include <algorithm>
#include <random>
#include <stdexcept>

namespace {

struct Answers {
    LookedUp registers;
    Walked parameters;
    std::uint64_t payloads = 0;
    bool operator==(Answers const&) const = default;
};

/// Depends on every byte and on where one payload ends and the next begins.
std::uint64_t checksum(std::uint64_t sum, std::span<std::byte const> payload)
{
    constexpr std::uint64_t prime = 0x100000001B3;
    for (std::byte const byte : payload) {
        sum = (sum ^ std::to_integer<std::uint64_t>(byte)) * prime;
    }
    return (sum ^ payload.size()) * prime;
}

Answers expectedAnswers(Content const& content)
{
    Answers answers;
    for (auto const& r : content.registers) {
        answers.registers.add(r.address);
    }
    for (auto const& module : content.modules) {
        for (auto const& parameter : module.parameters) {
            answers.parameters.add(parameter.value, parameter.name.front());
        }
    }
    for (auto const& configuration : content.configurations) {
        answers.payloads = checksum(answers.payloads, configuration.bitstream);
    }
    return answers;
}

Answers answersOf(OpenDesign& design, std::span<std::string const> names)
{
    Answers answers{design.lookUp(names), design.walk()};
    for (auto const bitstream : design.bitstreams()) {
        answers.payloads = checksum(answers.payloads, bitstream);
    }
    return answers;
}

} // namespace

std::vector<std::string> namesToLookUp(Content const& content)
{
    std::vector<std::string> names;
    for (auto const& r : content.registers) {
        names.push_back(r.name);
    }
    std::shuffle(names.begin(), names.end(), std::mt19937(names.size())); // NOLINT: the same in each run
    return names;
}

void checkAnswers(Format const& format, std::span<std::byte const> bytes, Content const& content,
                  std::span<std::string const> names)
{
    Answers const expected = expectedAnswers(content);
    auto const design = format.open(bytes);
    if (answersOf(*design, names) != expected) {
        throw std::runtime_error(format.name() + " answers differently");
    }
    if (format.canSave()) {
        Stored const saved = design->save();
        if (answersOf(*format.open(saved.bytes()), names) != expected) {
            throw std::runtime_error(format.name() + " answers differently when it is saved");
        }
    }
}
