#include "sample_design.h"

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

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

} // namespace sample
