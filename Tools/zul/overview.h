#pragma once

#include "walker.h"

#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

struct VersionNumber {
    unsigned index;
    unsigned version;
    unsigned revision;
};

struct Configuration {
    std::uint32_t index = 0;
    std::uint32_t fpgaType = 0;
    bool isBound =
        false; ///< an earlier destination has the configuration's index; otherwise there is no board
    unsigned board = 0;
    unsigned revision = 0;
    std::uint64_t bytes = 0; ///< of the bitstream
    std::string_view id;     ///< empty when there is none
};

struct Library {
    std::string_view name;
    std::uint32_t system;
    bool isCompressed;
    std::uint64_t bytes; ///< as they are stored
};

struct Process {
    std::uint32_t id;
    std::string_view name;
    std::uint32_t clock;
};

/// What a design is, from its tags' bytes alone. Of what a container has once, it holds what a load keeps: the first
/// author and design name, the last design version. Texts refer to the file.
struct Overview {
    explicit Overview(Walk const& walk);

    /// Number of tags with one of the ids.
    std::size_t count(std::vector<std::uint32_t> const& ids) const;

    std::string_view name;
    std::string_view version;
    std::string_view author;
    std::string_view id;
    std::vector<VersionNumber> versionNumbers;
    std::vector<Configuration> configurations;
    std::vector<Library> libraries;
    std::vector<Process> processes;
    std::map<std::uint32_t, std::size_t> counts; ///< tags by id; those of unknown ids under their id
};

/// Tags that are counted together.
struct Counter {
    char const* jsonName;
    char const* one;
    char const* many;
    std::vector<std::uint32_t> ids;
};

/// What is counted, in the order shown.
std::vector<Counter> const& counters();
