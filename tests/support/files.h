#pragma once

#include "bytes.h"

#include <string>

/// A new directory that disappears with everything in it.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(TemporaryDirectory const&) = delete;
    TemporaryDirectory& operator=(TemporaryDirectory const&) = delete;

    char const* path() const noexcept { return m_path.c_str(); }
    /// The path of @p name in it.
    std::string operator/(std::string const& name) const { return m_path + '/' + name; }

private:
    std::string m_path;
};

void writeFile(std::string const& path, Bytes const& contents);
/// The contents of a file; none when it cannot be read.
Bytes readFile(std::string const& path);
bool exists(std::string const& path);
