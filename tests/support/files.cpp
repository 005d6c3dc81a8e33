#include "files.h"

#include <filesystem>
#include <fstream>
#include <iterator>
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
    std::ifstream file(path, std::ios::binary);
    return Bytes().chars(std::string(std::istreambuf_iterator<char>(file), {}));
}

bool exists(std::string const& path)
{
    return std::filesystem::exists(std::filesystem::symlink_status(path));
}
