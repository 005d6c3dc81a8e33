#pragma once

#include "installation_directory.h"

#include <array>
#include <string>
#include <vector>

/// The installation that this library belongs to.
class KovaDir {
public:
    /// @return the installation directory without trailing slashes, a text that stays as it is until the process ends;
    ///         null as long as neither the library's own path nor the environment gives one
    /// @throws std::bad_alloc
    static char const* GetKovaDir();

    /// How GetKovaDir() found it; asks it first.
    static InstallationSource source();
};

/// Finds a design file.
/// @param name with a slash, the path of the file, which is not looked for elsewhere; without one, a file of the
///        applet directories
/// @param boardType the board that the design is to run on
/// @param path receives the path of a file that can be opened for reading, allocated with new[] and the caller's; null
///        when there is none. Refused with errno EINVAL when null, and so is @p name.
/// @return whether there is such a file. errno is what opening the last candidate gave, if there was one.
/// @throws std::bad_alloc, with *path null
bool getAppletDir(char const* name, unsigned int boardType, char** path);

/// Finds a design file in the applet directories of one installation, after printing "Searching for zul file NAME in
/// DIRECTORY" and a line feed to standard output.
/// @return the path, allocated with new[] and the caller's; null when there is none, with errno as above, and EINVAL when
///         @p name or @p baseDir is null, with nothing printed
/// @throws std::bad_alloc
char* findApplet(char const* name, unsigned int boardType, char const* baseDir);

/// An installation that is searched.
struct AppletBase {
    char const* origin; ///< for people: "installation directory", or the name of the environment variable
    char const* path;   ///< null when there is none, which is not searched then
};

/// The installations that getAppletDir() searches, in order. Valid until the environment is changed.
/// One that two origins name is searched twice.
std::array<AppletBase, 4> appletBases();

/// The paths that findApplet() tries, in order: "BASE/Hardware Applets/DIRECTORY/NAME", with the current and the older
/// directory of the board, then that of the FPGA type, as far as there are any.
std::vector<std::string> appletPaths(char const* name, unsigned int boardType, char const* baseDir);

/// Whether @p path can be opened for reading, whatever it is; errno says why not. A FIFO does not make it wait.
bool opensForReading(char const* path);
