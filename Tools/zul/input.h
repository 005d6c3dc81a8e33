#pragma once

#include "walker.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

struct Session;

/// The bytes of a file or of standard input, all of them.
class InputFile {
public:
    /// Larger files are refused: they are read into memory.
    static constexpr std::uint64_t largest = std::uint64_t{1} << 30U;

    /// @param path "-" is standard input
    /// @throws Failure Unreadable when the file is missing, unreadable, a directory or too large; Damaged when it is
    ///         empty. The message says which.
    explicit InputFile(std::string const& path);

    /// For people: the path, or "standard input".
    std::string const& name() const noexcept { return m_name; }
    std::span<std::byte const> bytes() const noexcept { return m_bytes; }

private:
    std::string m_name;
    std::vector<std::byte> m_bytes;
};

/// A file that begins like a container, and its tags.
struct ContainerFile {
    /// Tells on session.err when a load of the file would see only a part of it.
    /// @throws Failure as InputFile does; Damaged when the file is too short or begins with something else
    ContainerFile(Session& session, std::string const& path);

    InputFile file;
    Walk walk; ///< refers to file
};

/// How many bytes of a file of @p size bytes a load from a file sees: the lower 27 bits of the size.
constexpr std::uint64_t sizeSeenByLoad(std::uint64_t size) noexcept
{
    return size & 0x7FFFFFFU;
}

/// Tells on session.err when a load of @p file would see only a part of it.
void warnOfPartialLoad(Session& session, InputFile const& file);

/// Why @p walk, which ended with WalkEnd::NoContainer, is no container: "3 bytes, ..." or "begins with ...".
std::string whyNoContainer(Walk const& walk);
