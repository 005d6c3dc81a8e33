#include "sample_design.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <zlib.h>

namespace sample {

void addLibrary(ZUL& design, char const* path)
{
    std::string const file = std::filesystem::path(path).stem().string();
    auto library = std::make_unique<ZUL_dll>(&design);
    library->setName(file.starts_with("lib") ? file.c_str() + 3 : file.c_str());
    if (int const result = library->setLib(path, zul_opsys_of_library()); result != 0) {
        throw std::system_error(-result, std::generic_category(), path);
    }
    design.AddLib(library.get());
    static_cast<void>(library.release()); // the design owns it now
}

void makeId(ZUL& design)
{
    uLong digest = crc32(0, nullptr, 0);
    for (ZUL_dll const* library : all<ZUL_dll>(design)) {
        digest = crc32_z(digest, static_cast<Bytef const*>(library->getLib()), library->getLibLength());
    }
    std::array<char, 64> id{};
    std::snprintf(id.data(), id.size(), "dual-area-inspection-2.3-%08lx", digest);
    design.setId(id.data());
}

} // namespace sample
