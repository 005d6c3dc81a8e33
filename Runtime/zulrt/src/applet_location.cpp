#include "applet_location.h"

#include "board_directories.h"
#include "kova/templates/platform/descriptor.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>

using kova::templates::platform::Descriptor;

namespace {

constinit InstallationDirectory installation;

std::unique_ptr<char[]> copyOf(char const* text)
{
    std::size_t const size = std::strlen(text) + 1;
    auto copy = std::make_unique<char[]>(size);
    std::memcpy(copy.get(), text, size);
    return copy;
}

char* findInAppletDirectories(char const* name, unsigned int boardType)
{
    for (AppletBase const& base : appletBases()) {
        char* const found = base.path == nullptr ? nullptr : findApplet(name, boardType, base.path);
        if (found != nullptr) {
            return found;
        }
    }
    return nullptr;
}

} // namespace

char const* KovaDir::GetKovaDir()
{
    return installation.get();
}

InstallationSource KovaDir::source()
{
    installation.get();
    return installation.source();
}

std::array<AppletBase, 4> appletBases()
{
    return {{{"installation directory", KovaDir::GetKovaDir()},
             {"KOVADIR5_64", ::secure_getenv("KOVADIR5_64")},
             {"KOVADIR5", ::secure_getenv("KOVADIR5")},
             {"QELINSTALLDIR", ::secure_getenv("QELINSTALLDIR")}}};
}

std::array<char const*, 3> appletDirectories(unsigned int boardType)
{
    int const board = static_cast<int>(boardType & 0xFFFFU);
    char const* const current = grabber_dir_by_kovatype(board);
    char const* const older = current == nullptr ? nullptr : old_grabber_dir_by_kovatype(board);
    return {current, older, FPGA2dirname(static_cast<int>(boardType))};
}

std::unique_ptr<char[]> appletPath(char const* baseDir, char const* directory, char const* name)
{
    std::size_t const size = std::strlen(baseDir) + 18 + std::strlen(directory) + 1 + std::strlen(name) + 1;
    auto path = std::make_unique<char[]>(size);
    std::snprintf(path.get(), size, "%s/Hardware Applets/%s/%s", baseDir, directory, name);
    return path;
}

bool opensForReading(char const* path)
{
    return static_cast<bool>(Descriptor(::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY)));
}

char* findApplet(char const* name, unsigned int boardType, char const* baseDir)
{
    if (name == nullptr || baseDir == nullptr) {
        errno = EINVAL;
        return nullptr;
    }
    std::printf("Searching for zul file %s in %s\n", name, baseDir);
    for (char const* const directory : appletDirectories(boardType)) {
        if (directory == nullptr) {
            continue;
        }
        std::unique_ptr<char[]> path = appletPath(baseDir, directory, name);
        if (opensForReading(path.get())) {
            return path.release();
        }
    }
    return nullptr;
}

bool getAppletDir(char const* name, unsigned int boardType, char** path)
{
    if (path != nullptr) {
        *path = nullptr;
    }
    if (name == nullptr || path == nullptr) {
        errno = EINVAL;
        return false;
    }
    if (std::strchr(name, '/') == nullptr) {
        *path = findInAppletDirectories(name, boardType);
    } else if (opensForReading(name)) {
        *path = copyOf(name).release();
    }
    return *path != nullptr;
}
