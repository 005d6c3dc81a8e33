#pragma once

#include <iosfwd>
#include <stdexcept>
#include <string>

namespace CLI {
class App;
}

/// What the program answers to the shell.
enum class ExitCode : int {
    Clean = 0,
    Finding = 1,    ///< a finding of a check, or a difference
    Usage = 2,      ///< the command line is wrong
    Unreadable = 3, ///< a file cannot be read or written
    Damaged = 4,    ///< not a container, or damaged beyond what was asked for
    NotFound = 5,   ///< the tag, name or number asked for is not there
    Refused = 6,    ///< done only when forced
    Internal = 70,  ///< a defect of the program
    System = 71     ///< memory or descriptors ran out
};

/// Ends a verb with a message for standard error.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, std::string const& message) : std::runtime_error(message), m_code(code) {}
    ExitCode code() const noexcept { return m_code; }

private:
    ExitCode m_code;
};

/// One run of the program: where it writes and what it will answer. Data goes to out, everything else to err.
struct Session {
    std::ostream& out;
    std::ostream& err;
    bool colour = false; ///< out is a terminal and NO_COLOR is not set
    ExitCode result = ExitCode::Clean;
};

/// Runs the program with @p arguments (without the program's name).
ExitCode runProgram(Session& session, int argumentCount, char const* const* arguments);

// One file each: adds the verb's sub-command to the command line; its callback sets session.result or throws Failure.
void addInfoVerb(CLI::App& app, Session& session);
void addLsVerb(CLI::App& app, Session& session);
void addTreeVerb(CLI::App& app, Session& session);
void addRegsVerb(CLI::App& app, Session& session);
void addDumpVerb(CLI::App& app, Session& session);
void addHexVerb(CLI::App& app, Session& session);
void addCheckVerb(CLI::App& app, Session& session);
void addExplainVerb(CLI::App& app, Session& session);
void addFormatVerb(CLI::App& app, Session& session);
void addWhereVerb(CLI::App& app, Session& session);
void addDoctorVerb(CLI::App& app, Session& session);
void addApiVerb(CLI::App& app, Session& session);
void addMergeVerb(CLI::App& app, Session& session);
void addStripVerb(CLI::App& app, Session& session);
void addExtractVerb(CLI::App& app, Session& session);
