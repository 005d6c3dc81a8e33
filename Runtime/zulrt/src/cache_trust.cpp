#include "cache_trust.h"

#include "kova/templates/platform/descriptor.h"
#include "platform_description.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using kova::templates::platform::Descriptor;

CacheTrust trustAfterFailure(int error) noexcept
{
    switch (error) {
    case ENOENT:
        return CacheTrust::Missing;
    case ENOTDIR:
    case ELOOP:
        return CacheTrust::NotADirectory;
    default:
        return CacheTrust::Unreachable;
    }
}

CacheTrust trustOfDirectory(struct stat const& directory) noexcept
{
    if (directory.st_uid != geteuid()) {
        return CacheTrust::ForeignOwner;
    }
    return (directory.st_mode & (S_IWGRP | S_IWOTH)) != 0 ? CacheTrust::WritableByOthers
                                                          : CacheTrust::Trusted;
}

CacheTrust trustOfMarker(int directory) noexcept
{
    struct stat marker {};
    if (fstatat(directory, ZUL_MARKER_LIBRARY, &marker, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno == ENOENT ? CacheTrust::NoMarker : CacheTrust::Unreachable;
    }
    if (!S_ISREG(marker.st_mode)) {
        return CacheTrust::MarkerNotAFile;
    }
    if (marker.st_uid != geteuid()) {
        return CacheTrust::MarkerOfAnotherUser;
    }
    Descriptor const readable(
        openat(directory, ZUL_MARKER_LIBRARY, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    return readable ? CacheTrust::Trusted : CacheTrust::MarkerNotReadable;
}

} // namespace

CacheTrust trustOfCacheDirectory(char const* path) noexcept
{
    if (path == nullptr) {
        return CacheTrust::Unreachable;
    }
    // Everything is asked of what was opened: the name may stand for something else at any time.
    Descriptor const directory(open(path, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status {};
    if (!directory || fstat(directory.get(), &status) != 0) {
        return trustAfterFailure(errno);
    }
    CacheTrust const trust = trustOfDirectory(status);
    return trust == CacheTrust::Trusted ? trustOfMarker(directory.get()) : trust;
}

char const* describe(CacheTrust trust) noexcept
{
    switch (trust) {
    case CacheTrust::Trusted:
        return "is trusted";
    case CacheTrust::Missing:
        return "does not exist";
    case CacheTrust::NotADirectory:
        return "is no directory";
    case CacheTrust::Unreachable:
        return "cannot be looked at";
    case CacheTrust::ForeignOwner:
        return "belongs to another user";
    case CacheTrust::WritableByOthers:
        return "can be written by other users";
    case CacheTrust::NoMarker:
        return "has no marker library";
    case CacheTrust::MarkerNotAFile:
        return "has a marker that is no regular file";
    case CacheTrust::MarkerOfAnotherUser:
        return "has a marker that belongs to another user";
    case CacheTrust::MarkerNotReadable:
        break;
    }
    return "has a marker that cannot be read";
}
