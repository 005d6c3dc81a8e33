#pragma once

#include <cstddef>
#include <span>

/// A read-only mapping of a whole file.
class MappedFile {
public:
    MappedFile() noexcept = default;
    /// Maps @p path; on failure the object is empty and errno says why.
    explicit MappedFile(char const* path) noexcept;
    MappedFile(MappedFile&& other) noexcept;
    MappedFile& operator=(MappedFile&& other) noexcept;
    ~MappedFile();

    explicit operator bool() const noexcept { return m_start != nullptr; }
    void const* data() const noexcept { return m_start; }
    unsigned long size() const noexcept { return m_size; }

    /// Replaces the mapping, at its address, by a private copy of its bytes: from then on the file may change.
    /// @return 0 or a negated errno; the mapping is as it was then
    int detach() noexcept;

private:
    void* m_start = nullptr;
    unsigned long m_size = 0;
};
