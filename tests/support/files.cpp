#include "files.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <stdlib.h>

TemporaryDirectory::TemporaryDirectory()
    : m_path((std::filesystem::temp_directory_path() / "zul_test_XXXXXX").string())
{
    if (mkdtemp(m_path.data()) == nullptr) {
        throw std::runtime_error("no temporary directory");
    }
}

TemporaryDirectory::~TemporaryDirectory()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

void writeFile(std::string const& path, Bytes const& contents)
{
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<char const*>(contents.data()), static_cast<std::streamsize>(contents.size()));
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + path);
    }
}

Bytes readFile(std::string const& path)
{
    constexpr std::size_t pieceSize = std::size_t{1} << 16U;
    std::ifstream file(path, std::ios::binary);
    Bytes bytes;
    for (bool more = true; more;) {
        std::size_t const length = bytes.size();
        bytes.zeros(pieceSize);
        more = static_cast<bool>(file.read(reinterpret_cast<char*>(bytes.data()) + length, pieceSize));
        bytes.cut(length + static_cast<std::size_t>(file.gcount()));
    }
    return bytes;
}

bool exists(std::string const& path)
{
    return std::filesystem::exists(std::filesystem::symlink_status(path));
}
