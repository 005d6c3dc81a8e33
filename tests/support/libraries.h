#pragma once

#include "ZUL_dll.h"
#include "bytes.h"
#include "files.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <filesystem>
#include <string>
#include <vector>

/// Bytes that do not compress.
inline Bytes noise(std::size_t count, std::uint32_t state = 1)
{
    Bytes bytes;
    for (std::size_t i = 0; i < count; ++i) {
        state = state * 1664525 + 1013904223;
        bytes.u8(state >> 24);
    }
    return bytes;
}

/// The zlib stream of @p bytes.
inline Bytes deflated(Bytes const& bytes)
{
    uLongf length = compressBound(bytes.size());
    std::vector<Bytef> stream(length);
    compress(stream.data(), &length, reinterpret_cast<Bytef const*>(bytes.data()), bytes.size());
    return Bytes().chars({reinterpret_cast<char const*>(stream.data()), length});
}

inline Bytes storedIn(ZUL_dll const& library)
{
    return Bytes().chars({static_cast<char const*>(library.getLib()), library.getLibLength()});
}

/// A directory for every test.
class LibraryFiles : public testing::Test {
protected:
    char const* dir() const { return m_directory.path(); }
    std::string in(std::string const& name) const { return m_directory / name; }
    bool isEmpty() const { return std::filesystem::is_empty(dir()); }

private:
    TemporaryDirectory m_directory;
};
