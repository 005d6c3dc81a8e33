// Writing any library payload leaves a complete file or none, with one of the documented results; a compressed one gives
// exactly what zlib makes of it in one piece. The variant: bit 0 compressed, bit 1 the bytes are a file that is stored
// first, the rest the policy.

#include "failing_allocations.h"
#include "run.h"
#include "zullib.h"

#include <zlib.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <new>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

using Content = std::vector<std::uint8_t>;

/// A folder for this process, removed when it ends.
class Folder {
public:
    Folder()
    {
        std::string name = (fs::temp_directory_path() / "zul-fuzz-payload-XXXXXX").string();
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
    std::string const& path() const { return m_path; }
    std::string operator/(char const* name) const { return m_path + '/' + name; }

private:
    std::string m_path;
};

/// Nothing when there is no such file.
std::optional<Content> contentOf(std::string const& path)
{
    int const file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return std::nullopt;
    }
    struct stat status {};
    Content content;
    if (fstat(file, &status) == 0) {
        content.resize(static_cast<std::size_t>(status.st_size));
        must(read(file, content.data(), content.size()) == status.st_size, "a file can be read");
    }
    close(file);
    return content;
}

void write(std::string const& path, Input bytes)
{
    int const file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    must(file >= 0 && ::write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()),
         "a file can be written");
    close(file);
}

std::vector<std::uint8_t> tagBytes(bool compressed, Input payload)
{
    constexpr std::size_t fixedPart = 96;
    std::vector<std::uint8_t> tag(fixedPart + payload.size());
    ZUL_dll blank(static_cast<ZUL*>(nullptr));
    blank.Save(tag.data());
    for (unsigned i = 0; i < 4; ++i) {
        tag[4 + i] = static_cast<std::uint8_t>(tag.size() >> (8 * i));
    }
    tag[24] = compressed ? 1 : 0;
    tag[28] = 'x';
    std::copy(payload.begin(), payload.end(), tag.begin() + fixedPart);
    return tag;
}

/// What zlib makes of a whole stream; nothing when it is damaged.
std::optional<Content> inflated(Input stream)
{
    constexpr std::size_t mostPerByte = 1100; // deflate cannot do better
    static Content room;
    room.resize(std::max(room.size(), stream.size() * mostPerByte));
    uLongf length = room.size();
    if (uncompress(room.data(), &length, stream.data(), stream.size()) != Z_OK) {
        return std::nullopt;
    }
    return Content(room.data(), room.data() + length);
}

/// Writes the library. @return whether it was written; nothing when memory ran out
std::optional<bool> writes(ZUL_dll const& library, Folder const& folder, ZUL_dll::savepolicy policy)
{
    try {
        FailingAllocations const failing;
        int const result = library.toFile(folder.path().c_str(), policy);
        must(result == 0 || result == -5, "the file is written or the data is corrupt");
        return result == 0;
    } catch (std::bad_alloc const&) {
        must(anAllocationFailed(), "memory does not run out before it does");
        return std::nullopt;
    }
}

/// @param expected what the file has to hold; nothing when it cannot be written
void checkFile(ZUL_dll const& library, Folder const& folder, ZUL_dll::savepolicy policy,
               std::optional<Content> const& expected)
{
    std::string const path = folder / "libx.dylib";
    auto const written = writes(library, folder, policy);
    must(!written || *written == expected.has_value(), "it is written exactly when it is sound");
    must(contentOf(path) == (written && *written ? expected : std::nullopt),
         "a file is there, and whole, exactly when it was written");
    unlink(path.c_str());
    reached(!written ? "writes that ran out of memory" : *written ? "files written" : "payloads refused");
}

bool stores(ZUL_dll& library, std::string const& path)
{
    try {
        FailingAllocations const failing;
        must(library.setLib(path.c_str(), zul_opsys{516}) == 0 || anAllocationFailed(), "a file is stored");
        return library.getSystem() == zul_opsys{516};
    } catch (std::bad_alloc const&) {
        must(anAllocationFailed(), "memory does not run out before it does");
        return false;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static Folder const folder;
    Run const run = beginRun(data, size);
    auto const policy = static_cast<ZUL_dll::savepolicy>((run.variant >> 2U) % 3U);
    bool const compressed = (run.variant & 1U) != 0;
    ZUL_dll library(static_cast<ZUL*>(nullptr));
    if ((run.variant & 2U) != 0 && !run.bytes.empty()) {
        library.setName("x");
        std::string const source = folder / "source";
        write(source, run.bytes);
        if (stores(library, source)) {
            checkFile(library, folder, policy, Content(run.bytes.begin(), run.bytes.end()));
        }
        return 0;
    }
    std::vector<std::uint8_t> const tag = tagBytes(compressed, run.bytes);
    must(library.Load(tag.data(), tag.size()) == tag.size(), "the tag loads");
    checkFile(library, folder, policy,
              compressed ? inflated(run.bytes) : Content(run.bytes.begin(), run.bytes.end()));
    return 0;
}
