#include "input.h"
#include "json_output.h"
#include "session.h"
#include "text_output.h"

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <cxxabi.h>
#include <exception>
#include <new>
#include <ostream>
#include <string_view>
#include <unistd.h>

namespace {

constexpr char const* description =
    "Shows and checks design containers, and the installation that they are loaded from.\n"
    "Data goes to standard output, everything else to standard error; - as a FILE is "
    "standard input.";
constexpr char const* footer =
    "Exit codes: 0 clean, 1 finding or difference, 2 usage, 3 file cannot be read "
    "or written, 4 not a container or\n"
    "damaged, 5 not found, 6 refused, 70 internal error, 71 out of memory or descriptors.\n"
    "Example: zul info design.zul";

void addVerbs(CLI::App& app, Session& session)
{
    addInfoVerb(app, session);
    addLsVerb(app, session);
    addTreeVerb(app, session);
    addRegsVerb(app, session);
    addDumpVerb(app, session);
    addHexVerb(app, session);
    addCheckVerb(app, session);
    addExplainVerb(app, session);
    addFormatVerb(app, session);
    addApiVerb(app, session);
    addMergeVerb(app, session);
    addStripVerb(app, session);
    addExtractVerb(app, session);
    addWhereVerb(app, session);
    addDoctorVerb(app, session);
}

constexpr std::string_view outOfMemory = "out of memory";
constexpr std::string_view outOfMemoryLine = "zul: out of memory\n"; // for where nothing can be put together

bool wantsJson(CLI::App const& app)
{
    for (CLI::App const* const verb : app.get_subcommands()) {
        CLI::Option const* const json = verb->get_option_no_throw("--json");
        if (json != nullptr && json->count() != 0) {
            return true;
        }
    }
    return false;
}

/// Verbs throw before they write anything, so that with --json the output is one JSON value in every case.
ExitCode report(Session& session, CLI::App const& app, ExitCode code, std::string_view message)
{
    warn(session, message);
    if (wantsJson(app)) {
        writeJson(session.out,
                  {{"error", {{"code", static_cast<int>(code)}, {"message", jsonText(message)}}}});
    }
    return code;
}

ExitCode parseAndRun(CLI::App& app, Session& session, int argumentCount, char const* const* arguments)
{
    std::vector<std::string> reversed(arguments, arguments + argumentCount); // the order that CLI11 asks for
    std::reverse(reversed.begin(), reversed.end());
    try {
        app.parse(std::move(reversed));
        return session.result;
    } catch (CLI::ParseError const& error) {
        return app.exit(error, session.out, session.err) == 0 ? ExitCode::Clean : ExitCode::Usage;
    } catch (Failure const& failure) {
        return report(session, app, failure.code(), failure.what());
    } catch (std::bad_alloc const&) {
        return report(session, app, ExitCode::System, outOfMemory);
    } catch (std::exception const& error) {
        return report(session, app, ExitCode::Internal, std::string("internal error: ") + error.what());
    }
}

ExitCode run(Session& session, int argumentCount, char const* const* arguments)
{
    CLI::App app(description, "zul");
    app.footer(footer);
    app.require_subcommand(1);
    addVerbs(app, session);
    session.result = parseAndRun(app, session, argumentCount, arguments);
    session.out.flush();
    if (!session.out) {
        warn(session, "cannot write to standard output");
        session.result = ExitCode::Unreadable;
    }
    return session.result;
}

/// Ends the program where memory runs out and nothing may be thrown: in the initialisation of static objects, and in
/// destructors of JSON values.
class EndWithoutMemory {
public:
    EndWithoutMemory() { s_before = std::set_terminate(end); }

private:
    static void end() noexcept
    {
        std::type_info const* const type = abi::__cxa_current_exception_type();
        if (type == nullptr || *type != typeid(std::bad_alloc)) {
            s_before();
        }
        [[maybe_unused]] ssize_t const written =
            write(STDERR_FILENO, outOfMemoryLine.data(), outOfMemoryLine.size());
        _exit(static_cast<int>(ExitCode::System));
    }

    static constinit std::terminate_handler s_before;
};
constinit std::terminate_handler EndWithoutMemory::s_before = nullptr;

[[gnu::init_priority(101)]] EndWithoutMemory const endWithoutMemory; // before all others

} // namespace

ExitCode runProgram(Session& session, int argumentCount, char const* const* arguments)
{
    try {
        return run(session, argumentCount, arguments);
    } catch (std::bad_alloc const&) { // of putting the program together, or a message
        session.err << outOfMemoryLine;
        return session.result = ExitCode::System;
    }
}
