// Writing any library payload leaves a complete file or none, and one of the documented results.

#include "quiet_output.h"
#include "zullib.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// A folder for this process, removed when it ends.
class Folder {
public:
    Folder()
    {
        std::string name = (fs::temp_directory_path() / "zul-fuzz-library-XXXXXX").string();
        must(mkdtemp(name.data()) != nullptr, "a temporary folder can be made");
        m_path = name;
    }
    Folder(Folder const&) = delete;
    Folder& operator=(Folder const&) = delete;
    ~Folder()
    {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }
    fs::path const& path() const { return m_path; }

private:
    fs::path m_path;
};

std::vector<std::uint8_t> tagBytes(std::uint8_t const* data, std::size_t size)
{
    std::vector<std::uint8_t> tag(96 + size - 1);
    ZUL_dll blank(static_cast<ZUL*>(nullptr));
    blank.Save(tag.data());
    auto const length = static_cast<std::uint32_t>(tag.size());
    for (unsigned i = 0; i < 4; ++i) {
        tag[4 + i] = static_cast<std::uint8_t>(length >> (8 * i));
    }
    tag[24] = data[0] & 1U; // compressed or raw
    tag[28] = 'x';
    std::copy(data + 1, data + size, tag.begin() + 96);
    return tag;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static Folder const folder;
    if (size == 0) {
        return 0;
    }
    std::vector<std::uint8_t> const tag = tagBytes(data, size);
    ZUL_dll lib(static_cast<ZUL*>(nullptr));
    must(lib.Load(tag.data(), tag.size()) == tag.size(), "the tag loads");
    int const result = lib.toFile(folder.path().c_str(), ZUL_dll::replace);
    must(result == 0 || result == -5, "the file is written or the data is corrupt");
    must(fs::is_empty(folder.path()) == (result != 0), "a file is there exactly when it was written");
    if (result == 0 && !lib.isCompressed()) {
        must(fs::file_size(fs::directory_iterator(folder.path())->path()) == size - 1,
             "raw bytes are written whole");
    }
    return 0;
}
