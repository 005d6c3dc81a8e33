#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace kova::templates::platform {

/// What a file is to hold.
struct FileContents {
    std::uint64_t length = 0; ///< in bytes; not 0
    /// Writes all of them; the room was filled with zero. False leaves the file as it was. May throw.
    std::function<bool(std::byte* to)> fill;
    /// Is called when the old bytes are about to be overwritten in their file, with everything filled.
    /// @return 0, or a negated errno, which ends the replacement
    std::function<int()> beforeOverwriting;
};

/// Makes @p path a file with @p contents, complete or not at all.
///
/// A regular file with one link, reached through symbolic links or not, and a new one are written to a temporary file
/// beside it with all its blocks reserved, synced and renamed; the old file's mode is kept, a new one has 0644 less
/// the umask. Where that cannot be (several hard links, devices, a directory that cannot be written), the bytes are
/// made in memory and written in place.
/// @return 0 or a negated errno: what opening @p path for reading and writing gives, -ENOSPC on a full disk
/// @throws whatever contents.fill throws, with the old file untouched; std::bad_alloc
int replaceFile(char const* path, FileContents const& contents);

} // namespace kova::templates::platform
