#include "shapes.h"

#include "container_bytes.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace {

std::string numbered(char const* stem, std::uint32_t number)
{
    return stem + std::to_string(number);
}

// clang-format off
Bytes processTag(std::uint32_t id)
{
    return Bytes().u32(0x8158000).u32(80).u32(id).text(numbered("process_", id), 64).u32(62'500'000);
}

Bytes moduleTag(std::uint32_t index, std::uint32_t process)
{
    std::string const instance = numbered("module_", index);
    std::string const fullName = "Process0/" + instance;
    return Bytes()
        .u32(0x8157000).u32(static_cast<std::uint32_t>(120 + 4 + instance.size() + 1 + fullName.size() + 1)).u32(index)
        .u16(4).u16(instance.size() + 1).u16(fullName.size() + 1).zeros(6).u32(0).u32(0).u32(process)
        .text("process_0", 64).zeros(20).charsZ("FIR").charsZ(instance).charsZ(fullName);
}

Bytes paramTag(std::uint32_t module, std::uint32_t number)
{
    return Bytes()
        .u32(0x815A000).u32(192).u32(module).zeros(4).text(numbered("param_", number), 64).u64(number).real(0)
        .u32(1).u32(2).u32(0).zeros(12).u32(0).zeros(68);
}

Bytes paramLinkTag(std::uint32_t from, std::uint32_t to, std::uint32_t number)
{
    std::string const name = numbered("param_", number);
    std::string const module = numbered("Process0/module_", to);
    auto const length = static_cast<std::uint32_t>(name.size() + 1);
    auto const moduleLength = static_cast<std::uint32_t>(module.size() + 1);
    return Bytes()
        .u32(0x815E000).u32(52 + 2 * length + moduleLength).u32(from).u32(to).u32(0).u32(0).zeros(12)
        .u32(length).u32(length).u32(moduleLength).u32(1).charsZ(name).charsZ(name).charsZ(module);
}

Bytes oldRegisterTag(std::uint32_t number)
{
    return Bytes()
        .u32(0x8151000).u32(104).u32(1).u32(number * 4).u32(0).u32(1).u32(0).u32(31)
        .text(numbered("register_", number), 64).zeros(8);
}

Bytes newRegisterTag(std::uint32_t number)
{
    std::string const name = numbered("register_", number);
    return Bytes()
        .u32(0x8151002).u32(static_cast<std::uint32_t>(32 + name.size())).u8(1).u8(1).u8(0).u8(31).u32(number * 4).u64(0)
        .u32(static_cast<std::uint32_t>(name.size())).u32(0).chars(name);
}

Bytes linkTag(std::string const& alias, std::string const& target)
{
    return Bytes().u32(0x8151001).u32(204).u8(1).u8(1).text(target, 64).text(alias, 128).zeros(2);
}

Bytes eventTag(std::uint32_t number, std::string const& registerName)
{
    std::string const name = numbered("event_", number);
    return Bytes()
        .u32(0x8156576).u32(static_cast<std::uint32_t>(16 + name.size() + registerName.size())).u8(number >> 8U).u8(number)
        .u8(4).u8(name.size()).u32(static_cast<std::uint32_t>(registerName.size())).chars(name).chars(registerName);
}

Bytes libraryTag(std::string const& name, Bytes const& library = Bytes().zeros(16))
{
    return Bytes()
        .u32(0x8154000).u32(static_cast<std::uint32_t>(96 + library.size())).zeros(8).u32(516).zeros(4).u32(0)
        .text(name, 64).zeros(4).append(library);
}

Bytes destinationTag(std::uint32_t number)
{
    return Bytes().u32(0x8150099).u32(16).u16(number).u16(1).u8(number).zeros(3);
}

Bytes configTag(std::uint32_t index, Bytes const& bitstream = Bytes().zeros(16))
{
    return Bytes()
        .u32(0x8150120).u32(static_cast<std::uint32_t>(88 + bitstream.size())).u32(0xA3200).zeros(20).zeros(48)
        .u32(index).zeros(4).append(bitstream);
}

Bytes cameraTag(std::uint32_t channel, std::uint32_t module = 0)
{
    return Bytes().u32(0x815D000).u32(16).u32(channel).u32(module);
}

Bytes dmaCountTag(std::uint32_t channel)
{
    return Bytes().u32(0x8151020).u32(20).u32(channel).u32(channel * 4).u32(0);
}

Bytes userInfoTag(std::uint32_t number)
{
    return Bytes().u32(0x8159000).u32(144).text(numbered("info_", number), 64).u16(200).zeros(2).u32(number).zeros(64);
}

// clang-format on

template <class Make>
Bytes repeat(std::uint32_t tags, Make make)
{
    ContainerBytes container;
    for (std::uint32_t i = 0; i < tags; ++i) {
        container.tag(make(i));
    }
    return container.build(8);
}

Bytes oldRegisters(std::uint32_t tags)
{
    return repeat(tags, oldRegisterTag);
}

Bytes newRegisters(std::uint32_t tags)
{
    return repeat(tags, newRegisterTag);
}

Bytes mixedRegisters(std::uint32_t tags)
{
    return repeat(tags, [](std::uint32_t i) { return i % 2 == 0 ? oldRegisterTag(i) : newRegisterTag(i); });
}

Bytes registersWithLinks(std::uint32_t tags)
{
    return repeat(tags, [](std::uint32_t i) {
        return i % 2 == 0 ? newRegisterTag(i) : linkTag(numbered("alias_", i), numbered("register_", i - 1));
    });
}

Bytes chainOfLinks(std::uint32_t tags)
{
    // Half links, each leading on to the next; then registers, each of which asks for a name of the chain.
    std::uint32_t const links = tags / 2;
    return repeat(tags, [links](std::uint32_t i) {
        return i < links ? linkTag(numbered("register_", i), numbered("register_", i + 1))
                         : newRegisterTag(i - links);
    });
}

Bytes parameters(std::uint32_t tags)
{
    std::uint32_t const modules = tags / 4;
    return repeat(tags, [modules](std::uint32_t i) {
        return i == 0 ? processTag(0) : i <= modules ? moduleTag(i - 1, 0) : paramTag(i % modules, i);
    });
}

Bytes parameterLinks(std::uint32_t tags)
{
    std::uint32_t const modules = tags / 4;
    return repeat(tags, [modules](std::uint32_t i) {
        return i == 0         ? processTag(0)
               : i <= modules ? moduleTag(i - 1, 0)
                              : paramLinkTag(i % modules, (i + 1) % modules, i);
    });
}

Bytes modulesOfOneIndex(std::uint32_t tags)
{
    return repeat(tags, [tags](std::uint32_t i) {
        return i == 0 ? processTag(0) : i <= tags / 2 ? moduleTag(0, 0) : paramTag(0, i);
    });
}

Bytes linksIntoOneModule(std::uint32_t tags)
{
    return repeat(tags, [tags](std::uint32_t i) {
        return i == 0          ? processTag(0)
               : i <= 2        ? moduleTag(i - 1, 0)
               : i <= tags / 2 ? paramTag(1, i)
                               : paramLinkTag(0, 1, i - tags / 2);
    });
}

Bytes linksAndModulesOfOneIndex(std::uint32_t tags)
{
    return repeat(tags, [tags](std::uint32_t i) {
        return i == 0          ? processTag(0)
               : i <= tags / 3 ? moduleTag(0, 0)
               : i <= tags / 2 ? paramTag(0, i)
                               : paramLinkTag(0, 0, i);
    });
}

Bytes camerasOfManyProcesses(std::uint32_t tags)
{
    std::uint32_t const modules = tags / 3;
    return repeat(tags, [modules](std::uint32_t i) {
        return i < modules       ? processTag(i)
               : i < 2 * modules ? moduleTag(i - modules, i - modules)
                                 : cameraTag(i, i % (modules / 2));
    });
}

Bytes differentLibraries(std::uint32_t tags)
{
    return repeat(tags, [](std::uint32_t i) { return libraryTag(numbered("lib_", i)); });
}

Bytes equalLibraries(std::uint32_t tags)
{
    return repeat(tags, [](std::uint32_t) { return libraryTag("operators"); });
}

Bytes configurations(std::uint32_t tags)
{
    ContainerBytes container;
    for (std::uint32_t i = 0; i < tags / 2; ++i) {
        container.tag(destinationTag(i));
        container.config(configTag(i));
    }
    return container.build(8);
}

Bytes eventsOverFewRegisters(std::uint32_t tags)
{
    constexpr std::uint32_t registers = 4;
    return repeat(tags, [](std::uint32_t i) {
        return i < registers ? newRegisterTag(i) : eventTag(i, numbered("register_", i % registers));
    });
}

Bytes equalProcessIds(std::uint32_t tags)
{
    return repeat(tags, [](std::uint32_t i) { return processTag(i % 3 == 0 ? 7 : 5); });
}

Bytes camerasDescending(std::uint32_t tags)
{
    return repeat(tags, [tags](std::uint32_t i) {
        return i == 0 ? processTag(0) : i == 1 ? moduleTag(0, 0) : cameraTag(tags - i);
    });
}

Bytes dmaCountsDescending(std::uint32_t tags)
{
    return repeat(tags, [tags](std::uint32_t i) { return dmaCountTag(tags - i); });
}

Bytes userInfos(std::uint32_t tags)
{
    return repeat(tags, userInfoTag);
}

constexpr std::uint32_t modulesOfMixed = 64;

Bytes mixedTag(std::uint32_t i)
{
    if (i == 0) {
        return processTag(0);
    }
    if (i <= modulesOfMixed) {
        return moduleTag(i - 1, 0);
    }
    switch (i % 10) {
    case 0:
    case 1:
    case 2:
        return newRegisterTag(i);
    case 3:
        return oldRegisterTag(i);
    case 4:
        return linkTag(numbered("alias_", i), numbered("register_", i - 1));
    case 5:
        return userInfoTag(i);
    case 6:
        return cameraTag(i);
    default:
        return paramTag(i % modulesOfMixed, i);
    }
}

/// Bytes that do not compress.
Bytes noise(std::size_t count, std::uint32_t state)
{
    Bytes bytes;
    for (std::size_t i = 0; i < count; ++i) {
        state = state * 1664525 + 1013904223;
        bytes.u8(state >> 24U);
    }
    return bytes;
}

// clang-format off
constexpr std::array allShapes{
    Shape{"mixed",               mixedTags},
    Shape{"registers-old",       oldRegisters},
    Shape{"registers-new",       newRegisters},
    Shape{"registers-mixed",     mixedRegisters},
    Shape{"registers-links",     registersWithLinks},
    Shape{"link-chain",          chainOfLinks},
    Shape{"parameters",          parameters},
    Shape{"parameter-links",     parameterLinks},
    Shape{"modules-equal",       modulesOfOneIndex},
    Shape{"links-one-module",    linksIntoOneModule},
    Shape{"links-equal-modules", linksAndModulesOfOneIndex},
    Shape{"cameras-processes",   camerasOfManyProcesses},
    Shape{"libraries-different", differentLibraries},
    Shape{"libraries-equal",     equalLibraries},
    Shape{"configurations",      configurations},
    Shape{"events",              eventsOverFewRegisters},
    Shape{"process-ids-equal",   equalProcessIds},
    Shape{"cameras-descending",  camerasDescending},
    Shape{"dma-descending",      dmaCountsDescending},
    Shape{"user-infos",          userInfos},
};
// clang-format on

} // namespace

std::span<Shape const> shapes()
{
    return allShapes;
}

Shape const& shapeNamed(std::string const& name)
{
    auto const found =
        std::find_if(allShapes.begin(), allShapes.end(), [&](Shape const& s) { return s.name == name; });
    if (found == allShapes.end()) {
        throw std::out_of_range("no shape named " + name);
    }
    return *found;
}

Bytes mixedTags(std::uint32_t tags)
{
    return repeat(tags, mixedTag);
}

Bytes designTags(std::uint32_t tags)
{
    constexpr std::uint32_t boards = 3;
    constexpr std::uint32_t libraries = 2;
    ContainerBytes container;
    for (std::uint32_t i = 0; i < tags - boards - libraries; ++i) {
        container.tag(i > modulesOfMixed && i % 20 == 16 ? eventTag(i, numbered("register_", i - 6))
                                                         : mixedTag(i));
    }
    for (std::uint32_t i = 0; i < libraries; ++i) {
        container.tag(libraryTag(numbered("operators_", i), noise(32U << 10U, i)));
    }
    for (std::uint32_t i = 0; i < boards; ++i) {
        container.tag(destinationTag(i)).config(configTag(i, noise(64U << 10U, libraries + i)));
    }
    return container.build(8);
}
