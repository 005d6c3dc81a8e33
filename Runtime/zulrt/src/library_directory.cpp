#include "library_directory.h"

#include "cached_libraries.h"
#include "library_directories.h"
#include "zul_class.h"

#include <cerrno>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr int noDirectory = -EFAULT;

/// Whether a directory of this user may get the name @p path. Renaming would replace an empty directory of anybody's
/// where this user is allowed to; it never replaces anything else, nor follows a link.
bool isFreeOrOwn(char const* path) noexcept
{
    struct stat status {};
    return lstat(path, &status) != 0 || status.st_uid == geteuid();
}

} // namespace

LibraryDirectory::~LibraryDirectory()
{
    giveUp();
}

int LibraryDirectory::replace(ZUL const& zul, unsigned opsys)
{
    Directory next = opsys != 0 ? obtain(zul) : Directory();
    giveUp();
    m_held = std::move(next);
    return opsys != 0 && path() == nullptr ? noDirectory : 0;
}

int LibraryDirectory::unpack(ZUL const& zul, unsigned opsys)
{
    if (zul.getTagCount(ZUL_dll::tag_id) == 0) {
        return 0;
    }
    if (path() == nullptr) {
        errno = 0;
        m_held = obtain(zul);
    }
    if (path() == nullptr) {
        return errno != 0 ? -errno : noDirectory;
    }
    if (isCache()) {
        return 0;
    }
    // The number has two jobs: whether there are libraries to unpack, and what happens to files that are there already.
    int const result =
        zul.saveLibs(path(), ZUL_dll::get_library_opsys(), static_cast<ZUL_dll::savepolicy>(opsys));
    if (result == 0) {
        publish(zul.getId());
    }
    return result;
}

LibraryDirectory::Directory LibraryDirectory::obtain(ZUL const& zul)
{
    char const* const id = zul.getId();
    Directory found;
    if (isSharedId(id)) {
        found.path = nameOfCacheDirectory(id);
        found.isCache = trustOfCacheDirectory(found.path.get()) == CacheTrust::Trusted &&
                        holdsLibrariesOf(zul, found.path.get());
        found.path = found.isCache ? std::move(found.path) : makePrivateDirectory();
    } else {
        found.path.reset(createAppletDLLsTempDir(id, &found.isCache));
    }
    found.maker = getpid();
    return found;
}

/// Gives the filled directory the name of the cache, in one step. Whoever was faster has the cache, and this object
/// keeps its private directory.
void LibraryDirectory::publish(char const* id)
{
    auto cache = nameOfCacheDirectory(id);
    if (cache != nullptr && isFreeOrOwn(cache.get()) && std::rename(path(), cache.get()) == 0) {
        m_held.path = std::move(cache);
        m_held.isCache = true;
    }
}

void LibraryDirectory::giveUp() noexcept
{
    Directory const old = std::exchange(m_held, {});
    bool const removes = old.path && !old.isCache && m_removesPrivate && old.maker == getpid();
    if (removes && delete_dir(old.path.get()) != 0) {
        rmdir(old.path.get()); // where no descriptor is left, none was for a file in it
    }
}
