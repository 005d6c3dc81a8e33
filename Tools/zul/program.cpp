#include "input.h"
#include "json_output.h"
#include "session.h"
#include "text_output.h"

#include <CLI/CLI.hpp>
#include <exception>

namespace {

constexpr char const* description =
    "Shows and checks design containers, and the installation that they are loaded from.\n"
    "Data goes to standard output, everything else to standard error; - as a FILE is "
    "standard input.";
constexpr char const* footer = "Exit codes: 0 clean, 1 finding or difference, 2 usage, 3 file cannot be read "
                               "or written, 4 not a container or\n"
                               "damaged, 5 not found, 6 refused, 70 internal error.\n"
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
ExitCode report(Session& session, CLI::App const& app, ExitCode code, std::string const& message)
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
    } catch (std::exception const& error) {
        return report(session, app, ExitCode::Internal, std::string("internal error: ") + error.what());
    }
}

} // namespace

ExitCode runProgram(Session& session, int argumentCount, char const* const* arguments)
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
