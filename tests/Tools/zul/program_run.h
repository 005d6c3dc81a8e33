#pragma once

#include "bytes.h"
#include "files.h"
#include "session.h"

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

/// What a run of the program in this process gave.
struct ProgramRun {
    ExitCode code;
    std::string out;
    std::string err;

    nlohmann::ordered_json json() const { return nlohmann::ordered_json::parse(out); }
};

inline ProgramRun runZul(std::vector<std::string> const& arguments, bool colour = false)
{
    std::ostringstream out;
    std::ostringstream err;
    Session session{out, err, colour};
    std::vector<char const*> pointers;
    for (std::string const& argument : arguments) {
        pointers.push_back(argument.c_str());
    }
    ExitCode const code = runProgram(session, static_cast<int>(pointers.size()), pointers.data());
    return {code, out.str(), err.str()};
}

/// A file with the name "design.zul" that disappears again.
class DesignFile {
public:
    explicit DesignFile(Bytes const& bytes) { writeFile(path(), bytes); }
    std::string path() const { return m_directory / "design.zul"; }

private:
    TemporaryDirectory m_directory;
};

/// A run of @p verb about a file with @p bytes.
inline ProgramRun runOn(Bytes const& bytes, std::string const& verb,
                        std::vector<std::string> const& more = {})
{
    DesignFile const file(bytes);
    std::vector<std::string> arguments{verb, file.path()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    ProgramRun run = runZul(arguments);
    for (std::string* const text : {&run.out, &run.err}) { // the directory differs from run to run
        for (std::size_t at; (at = text->find(file.path())) != std::string::npos;) {
            text->replace(at, file.path().size(), "design.zul");
        }
    }
    return run;
}
