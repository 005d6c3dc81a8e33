#include "cached_libraries.h"

#include "inflate_stream.h"
#include "kova/templates/platform/descriptor.h"
#include "open_directory.h"
#include "platform_description.h"
#include "zul_class.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using kova::templates::platform::Descriptor;

/// A file that is read along with the bytes that it should have.
class ComparedFile {
public:
    ComparedFile(int directory, char const* name)
        : m_file(openat(directory, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC))
    {
    }

    /// Whether this user made the file, and nobody else.
    bool isOwn() const noexcept
    {
        struct stat status {};
        return m_file && fstat(m_file.get(), &status) == 0 && S_ISREG(status.st_mode) &&
               status.st_uid == geteuid();
    }

    /// Whether @p bytes come next.
    bool continuesWith(std::span<std::byte const> bytes) noexcept
    {
        while (!bytes.empty()) {
            ssize_t const count = read(std::min(bytes.size(), pieceSize));
            if (count <= 0 ||
                std::memcmp(m_piece.get(), bytes.data(), static_cast<std::size_t>(count)) != 0) {
                return false;
            }
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        }
        return true;
    }

    bool isAtEnd() noexcept { return read(1) == 0; }

private:
    static constexpr std::size_t pieceSize = std::size_t{64} * 1024;

    /// @return how many bytes are in the buffer now: 0 at the end, less when they cannot be read
    ssize_t read(std::size_t most) noexcept
    {
        ssize_t count = -1;
        do {
            count = ::read(m_file.get(), m_piece.get(), most);
        } while (count < 0 && errno == EINTR);
        return count;
    }

    Descriptor m_file;
    std::unique_ptr<std::byte[]> m_piece = std::make_unique_for_overwrite<std::byte[]>(pieceSize);
};

bool isLibrary(int directory, char const* name, ZUL_dll const& library)
{
    ComparedFile file(directory, name);
    std::span const stored(static_cast<std::byte const*>(library.getLib()), library.getLibLength());
    auto const compare = [&file](std::span<std::byte const> bytes) {
        return file.continuesWith(bytes) ? 0 : 1;
    };
    try {
        return file.isOwn() &&
               (library.isCompressed() ? inflateStream(stored, compare) : compare(stored)) == 0 &&
               file.isAtEnd();
    } catch (std::runtime_error const&) {
        return false; // bytes that cannot be inflated are in no file
    }
}

/// Where ZUL_dll::toFile puts @p library, seen from its directory.
std::string fileOf(ZUL_dll const& library)
{
    char const* const name = library.getName() == nullptr ? "" : library.getName();
    std::string path(std::strlen(name) + sizeof ZUL_LIBRARY_PATTERN, '\0');
    path.resize(
        static_cast<std::size_t>(std::snprintf(path.data(), path.size(), ZUL_LIBRARY_PATTERN, ".", name)));
    return path;
}

bool holdsNothingBut(std::set<std::string> const& files, DIR* directory)
{
    // Not with an iterator of the standard library, which ends the process when memory runs out.
    errno = 0;
    while (dirent const* const entry = readdir(directory)) {
        std::string_view const name = entry->d_name;
        if (name != "." && name != ".." && !files.contains("./" + std::string(name))) {
            return false;
        }
    }
    return errno == 0; // what could not be read may be anything
}

} // namespace

bool holdsLibrariesOf(ZUL const& zul, char const* path)
{
    OpenDirectory const directory = openDirectory(path);
    std::set<std::string> files;
    unsigned int const count = directory ? zul.getTagCount(ZUL_dll::tag_id) : 0;
    for (unsigned int i = 0; i < count; ++i) {
        auto const* const library = dynamic_cast<ZUL_dll const*>(zul.getTagAt(ZUL_dll::tag_id, i));
        if (library != nullptr && library->getSystem() == zul_opsys_of_library()) {
            std::string const file = fileOf(*library);
            if (!isLibrary(dirfd(directory.get()), file.c_str(), *library)) {
                return false;
            }
            files.insert(file);
        }
    }
    return !files.empty() && holdsNothingBut(files, directory.get());
}
