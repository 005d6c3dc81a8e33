#pragma once

#include "kova/templates/platform/descriptor.h"

#include <dirent.h>
#include <fcntl.h>
#include <memory>

struct DirectoryCloser {
    void operator()(DIR* directory) const noexcept { closedir(directory); }
};

/// An open directory whose entries can be read, or null.
using OpenDirectory = std::unique_ptr<DIR, DirectoryCloser>;

/// Opens a directory that is one itself, no symbolic link to one; a negative number with errno otherwise.
inline int directoryDescriptor(char const* path) noexcept
{
    return ::open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

/// The same for reading its entries; null with errno otherwise.
inline OpenDirectory openDirectory(char const* path) noexcept
{
    kova::templates::platform::Descriptor descriptor(directoryDescriptor(path));
    OpenDirectory directory(descriptor ? fdopendir(descriptor.get()) : nullptr);
    if (directory) {
        descriptor.release();
    }
    return directory;
}
