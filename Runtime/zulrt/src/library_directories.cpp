#include "library_directories.h"

#include "kova/templates/platform/invariant.h"
#include "open_directory.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <initializer_list>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace {

using kova::templates::platform::checkInvariant;
using kova::templates::platform::Descriptor;

constexpr char baseDirectory[] = "/tmp/";
constexpr char temporaryName[] = "zulrt-XXXXXX"; // as mkdtemp wants it
constexpr char cachePrefix[] = "zulcache_";
constexpr std::size_t longestEntryName = 1024;
constexpr char source[] = "Runtime/zulrt/src/fpga_design";

/// Not by a formatted print, which cannot count beyond 2 GiB: the id comes from a file.
std::unique_ptr<char[]> joined(std::initializer_list<std::string_view> parts)
{
    std::size_t length = 0;
    for (std::string_view const part : parts) {
        length += part.size();
    }
    auto text = std::make_unique_for_overwrite<char[]>(length + 1);
    char* end = text.get();
    for (std::string_view const part : parts) {
        end = std::copy(part.begin(), part.end(), end);
    }
    *end = '\0';
    return text;
}

/// Removes the files in @p directory. Not with readdir(), which needs memory that may have run out.
void unlinkFiles(int directory)
{
    alignas(dirent64) std::array<char, 4096> entries{};
    ssize_t length = 0;
    while ((length = getdents64(directory, entries.data(), entries.size())) > 0) {
        for (ssize_t at = 0; at < length;) {
            void const* const start = entries.data() + at;
            auto const* const entry = static_cast<dirent64 const*>(start);
            checkInvariant(std::strlen(entry->d_name) <= longestEntryName,
                           "strlen(dentry->d_name) <= PATH_MAX", source, 290);
            unlinkat(directory, entry->d_name, 0);
            at += entry->d_reclen;
        }
    }
}

} // namespace

char* getAppletDLLsCacheDir(char const* id, char const* base)
{
    return joined({base == nullptr ? baseDirectory : base, cachePrefix, id == nullptr ? "" : id}).release();
}

std::unique_ptr<char[]> nameOfCacheDirectory(char const* id)
{
    bool const hasNone = id == nullptr || *id == '\0' || std::strchr(id, '/') != nullptr;
    return std::unique_ptr<char[]>(hasNone ? nullptr : getAppletDLLsCacheDir(id, baseDirectory));
}

std::unique_ptr<char[]> makePrivateDirectory()
{
    auto name = joined({baseDirectory, temporaryName});
    return mkdtemp(name.get()) == nullptr ? nullptr : std::move(name);
}

bool isSharedId(char const* id) noexcept
{
    return id != nullptr && std::string_view(id) == "__INVALID_ZUL_ID__";
}

char* createAppletDLLsTempDir(char const* id, bool* isCache)
{
    bool ignored = false;
    bool& found = isCache == nullptr ? ignored : *isCache;
    found = false;
    auto cache = isSharedId(id) ? nullptr : nameOfCacheDirectory(id);
    found = trustOfCacheDirectory(cache.get()) == CacheTrust::Trusted;
    return found ? cache.release() : makePrivateDirectory().release();
}

int delete_dir(char const* dir)
{
    checkInvariant(dir != nullptr, "dirpath != NULL", source, 272);
    if (dir == nullptr) {
        return EFAULT;
    }
    Descriptor const directory(directoryDescriptor(dir));
    if (!directory) {
        return errno;
    }
    unlinkFiles(directory.get());
    rmdir(dir);
    return 0;
}

int delete_old_dirs()
{
    return 0;
}
