#include "sample_design.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace sample {

namespace {

constexpr char const* image = "ImageOperators";
constexpr char const* signal = "SignalOperators";

struct Module {
    unsigned int process;
    char const* type; // also the name of the operator library
    char const* instance;
};

// clang-format off
constexpr std::array<Module, 12> modules{{
    {0, image,  "Camera0"},
    {0, image,  "Buffer0"},
    {0, image,  "Fir0"},
    {0, image,  "Lut0"},
    {0, image,  "Dma0"},
    {0, signal, "Encoder0"},
    {0, signal, "Trigger0"},
    {1, image,  "Camera1"},
    {1, image,  "Buffer1"},
    {1, image,  "Sampler1"},
    {1, image,  "Dma1"},
    {1, signal, "Strobe1"},
}};
// clang-format on

void putU32(std::byte* to, std::uint32_t value)
{
    for (unsigned int i = 0; i < 4; ++i) {
        to[i] = static_cast<std::byte>(value >> (8 * i) & 0xFF);
    }
}

template <class Tag>
std::uint32_t countOf(ZUL const& design, ZUL_module const& owner)
{
    std::uint32_t count = 0;
    for (Tag const* tag : all<Tag>(design)) {
        count += tag->getModule() == &owner ? 1U : 0U;
    }
    return count;
}

} // namespace

void addProcesses(ZUL& design)
{
    add<ZUL_process>(design, 0U, "Inspection").setClock(125'000'000);
    add<ZUL_process>(design, 1U, "Overview").setClock(62'500'000);
}

void addModules(ZUL& design)
{
    for (std::size_t i = 0; i < modules.size(); ++i) {
        ZUL_process const* process = design.getProcessAt(modules[i].process);
        auto& added = add<ZUL_module>(design, process);
        added.setIndex(static_cast<int>(i));
        added.setType(modules[i].type);
        added.setInstance(modules[i].instance);
        added.setFullName((std::string(process->getName()) + '\\' + modules[i].instance).c_str());
    }
}

void stateCounts(ZUL& design)
{
    // A module takes its counts from the bytes it is loaded from and from nowhere else: one that is only built says
    // that it has no parameters and no channels, whatever refers to it. So it is saved, completed, and read again.
    constexpr std::size_t paramCountAt = 24;
    constexpr std::size_t channelCountAt = 28;
    for (ZUL_module* each : all<ZUL_module>(design)) {
        std::vector<std::byte> bytes(each->getSaveLength());
        each->Save(bytes.data());
        putU32(bytes.data() + paramCountAt, countOf<ZUL_param>(design, *each));
        putU32(bytes.data() + channelCountAt, countOf<ZUL_channel_param>(design, *each));
        each->Load(bytes.data(), bytes.size());
    }
}

ZUL_module& module(ZUL const& design, char const* instance)
{
    for (ZUL_module* each : all<ZUL_module>(design)) {
        if (each->getInstance() == std::string_view(instance)) {
            return *each;
        }
    }
    throw std::invalid_argument(std::string("no module ") + instance);
}

} // namespace sample
