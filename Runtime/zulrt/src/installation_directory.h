#pragma once

#include <cstddef>
#include <string_view>

/// The installation directory that a library with the path @p path belongs to: the parent of the nearest directory above
/// the library that is called "bin", "dll", "Hardware Applets", "lib" or "lib64", in any case.
/// @return the beginning of @p path, without trailing slashes unless it is "/"; empty when there is none, or when it is
///         not in the path because that begins with such a name
std::string_view installationAbove(std::string_view path);

/// How an installation directory was found.
enum class InstallationSource { Unknown, OwnPath, KOVADIR5_64, KOVADIR5 };

/// An installation directory that is looked for until it is found, and then never changes. Needs no construction, and
/// may be used from several threads at once.
class InstallationDirectory {
public:
    /// Looks above the program or library that holds this object, then into the environment (KOVADIR5_64, else KOVADIR5;
    /// set but empty counts as set; privileged programs ignore both). At most 1023 bytes are kept.
    /// @return the directory without trailing slashes, readable as long as this object; null when there is none yet
    char const* get();

    /// How get() found it; Unknown when it has not.
    InstallationSource source();

private:
    static constexpr std::size_t capacity = 1024;

    void find();
    void keep(std::string_view directory, InstallationSource source);

    char m_path[capacity] = {};
    InstallationSource m_source = InstallationSource::Unknown; // that is, not initialised
    int m_lock = 0;
};
