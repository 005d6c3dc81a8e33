#pragma once

#include "session.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace CLI {
class Option;
}

/// Something that a verb is told on the command line.
class Argument {
public:
    explicit Argument(CLI::Option& option) : m_option(&option) {}

    Argument required() const;
    Argument oneOf(std::vector<std::string> const& values) const;
    void excludes(Argument const& other) const;

private:
    CLI::Option* m_option;
};

/// A verb of the command line, while it is described.
///
/// Verbs see nothing of the library that reads the command line: its headers would double the time that they compile.
class Verb {
public:
    Verb(CLI::App& app, char const* name, char const* description, char const* example);

    /// @param name like "-o,--output"; without dashes, by its place
    Argument option(char const* name, std::string& value, char const* description) const;
    Argument option(char const* name, std::vector<std::string>& values, char const* description) const;
    Argument flag(char const* name, bool& value, char const* description) const;
    /// One that there is already.
    Argument argument(char const* name) const;
    /// What the verb does when it is called, after its arguments are set; sets session.result or throws Failure.
    void does(std::function<void()> action) const;

private:
    CLI::App* m_app;
};

/// What every verb about one file is told.
struct FileOptions {
    std::string file;
    bool json = false;
};

/// Adds a verb with --json, and an example at the end of its help.
Verb addVerb(CLI::App& app, char const* name, char const* description, char const* example, bool& json);
/// Adds a verb about one FILE.
Verb addFileVerb(CLI::App& app, char const* name, char const* description, char const* example,
                 FileOptions& options);

/// Ends a verb for want of @p arguments.
[[noreturn]] void throwMissing(char const* arguments);
