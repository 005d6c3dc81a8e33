#pragma once

#include "session.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

/// What every verb about one file is told.
struct FileOptions {
    std::string file;
    bool json = false;
};

/// Adds a verb with --json, and an example at the end of its help.
CLI::App& addVerb(CLI::App& app, char const* name, char const* description, char const* example, bool& json);
/// Adds a verb about one FILE.
CLI::App& addFileVerb(CLI::App& app, char const* name, char const* description, char const* example,
                      FileOptions& options);
