#include "applet_location.h"

#include "board_directories.h"
#include "kova/templates/platform/descriptor.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string_view>

using kova::templates::platform::Descriptor;

namespace {

constinit InstallationDirectory installation;

char* copyOf(std::string_view text)
{
    char* const copy = new char[text.size() + 1];
    copy[text.copy(copy, text.size())] = '\0';
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

std::vector<std::string> appletPaths(char const* name, unsigned int boardType, char const* baseDir)
{
    int const board = static_cast<int>(boardType & 0xFFFFU);
    char const* const current = grabber_dir_by_kovatype(board);
    char const* const older = current == nullptr ? nullptr : old_grabber_dir_by_kovatype(board);
    std::vector<std::string> paths;
    for (char const* const directory : {current, older, FPGA2dirname(static_cast<int>(boardType))}) {
        if (directory != nullptr) {
            paths.push_back(std::string(baseDir) + "/Hardware Applets/" + directory + '/' + name);
        }
    }
    return paths;
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
    for (std::string const& path : appletPaths(name, boardType, baseDir)) {
        if (opensForReading(path.c_str())) {
            return copyOf(path);
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
        *path = copyOf(name);
    }
    return *path != nullptr;
}
