#pragma once

#include <map>
#include <string>

/// Everything below a directory: relative path, and what is there. A file is described by its mode and contents, a link
/// by its target.
using FileTree = std::map<std::string, std::string>;

FileTree treeBelow(std::string const& directory);
/// Removes everything below @p directory.
void clear(std::string const& directory);

/// What a run that failed may do to files.
struct Tolerance {
    bool leaves = false;  ///< leave files under other names
    bool spoils = false;  ///< leave a file that is neither the old nor the new one
    bool removes = false; ///< remove the old one
};

/// What is in @p now neither as it is in @p before nor as it is in @p after, and what is gone though it is in both; nothing
/// when each file is the old or the new one.
std::string unexpected(FileTree const& now, FileTree const& before, FileTree const& after,
                       Tolerance const& tolerance);
