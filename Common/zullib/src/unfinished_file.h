#pragma once

#include <cstddef>
#include <span>

/// A file that is being written: complete in the end, or removed.
class UnfinishedFile {
public:
    /// Opens @p path for writing, empties it or creates it with mode 0644; on failure errno says why.
    /// @param path has to live as long as this object
    explicit UnfinishedFile(char const* path) noexcept;
    UnfinishedFile(UnfinishedFile const&) = delete;
    UnfinishedFile& operator=(UnfinishedFile const&) = delete;
    /// Removes the file unless it was finished.
    ~UnfinishedFile();

    explicit operator bool() const noexcept { return m_descriptor >= 0; }
    /// Appends all of @p bytes. @return 0 or a negated errno
    int write(std::span<std::byte const> bytes) const noexcept;
    /// Closes the file and keeps it, unless closing fails. @return 0 or a negated errno
    int finish() noexcept;

private:
    char const* m_path;
    int m_descriptor;
};
