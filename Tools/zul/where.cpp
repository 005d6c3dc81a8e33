#include "applet_location.h"
#include "json_output.h"
#include "text_output.h"
#include "verb.h"

#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <string_view>
#include <vector>

namespace {

struct WhereOptions {
    std::string name;
    std::string board;
    bool json = false;
};

/// A step of the search. Without path, nothing was opened, for the reason that result gives.
struct Step {
    std::string origin;
    char const* base = nullptr;
    std::string path;
    std::string result;
    int error = 0;

    bool hasFound() const { return !path.empty() && error == 0; }
};

std::uint32_t boardType(std::string_view text)
{
    bool const isHex = text.starts_with("0x") || text.starts_with("0X");
    std::string_view const digits = text.substr(isHex ? 2 : 0);
    std::uint32_t type = 0;
    auto const [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), type, isHex ? 16 : 10);
    if (error != std::errc() || end != digits.data() + digits.size()) {
        throw Failure(ExitCode::Usage, "--board: " + std::string(text) +
                                           " is no board type: 0 to 4294967295, or 0x0 to 0xffffffff");
    }
    return type;
}

Step opened(std::string const& origin, char const* base, std::string const& path)
{
    int const error = opensForReading(path.c_str()) ? 0 : errno;
    return {origin, base, path, error == 0 ? "found" : std::strerror(error), error};
}

/// The steps in one installation, up to the first file that is found.
void searchBase(std::vector<Step>& steps, std::string const& name, std::uint32_t board,
                AppletBase const& base)
{
    if (base.path == nullptr) {
        steps.push_back({base.origin, nullptr, "", "not set", 0});
        return;
    }
    std::vector<std::string> const paths = appletPaths(name.c_str(), board, base.path);
    if (paths.empty()) {
        steps.push_back({base.origin, base.path, "", "no directory for this board", 0});
    }
    for (auto path = paths.begin(); path != paths.end() && (steps.empty() || !steps.back().hasFound());
         ++path) {
        steps.push_back(opened(base.origin, base.path, *path));
    }
}

/// What getAppletDir() does, without its prints.
std::vector<Step> search(std::string const& name, std::uint32_t board)
{
    if (name.find('/') != std::string::npos) {
        return {opened("name", nullptr, name)};
    }
    std::vector<Step> steps;
    for (AppletBase const& base : appletBases()) {
        if (steps.empty() || !steps.back().hasFound()) {
            searchBase(steps, name, board, base);
        }
    }
    return steps;
}

void writeTable(Session& session, std::vector<Step> const& steps)
{
    Table table({"from", "result", "path"});
    for (Step const& step : steps) {
        table.row({step.origin, step.result, step.path.empty() ? "-" : step.path});
    }
    table.print(session);
}

Json textOrNull(char const* text)
{
    return text == nullptr ? Json() : Json(jsonText(text));
}

void writeJsonSteps(Session& session, std::string const& name, std::uint32_t board,
                    std::vector<Step> const& steps)
{
    Json list = Json::array();
    for (Step const& step : steps) {
        list.push_back({{"from", step.origin},
                        {"base", textOrNull(step.base)},
                        {"path", textOrNull(step.path.empty() ? nullptr : step.path.c_str())},
                        {"result", step.result},
                        {"errno", step.error}});
    }
    Step const& last = steps.back();
    writeJson(session.out, {{"schema", "zul-where"},
                            {"version", 1},
                            {"name", jsonText(name)},
                            {"board", board},
                            {"found", textOrNull(last.hasFound() ? last.path.c_str() : nullptr)},
                            {"search", std::move(list)}});
}

void where(Session& session, WhereOptions const& options)
{
    std::uint32_t const board = boardType(options.board);
    std::vector<Step> const steps = search(options.name, board);
    if (options.json) {
        writeJsonSteps(session, options.name, board, steps);
    } else {
        writeTable(session, steps);
    }
    if (!steps.back().hasFound()) {
        warn(session, options.name + " is not there for board " + std::to_string(board));
        session.result = ExitCode::NotFound;
    }
}

} // namespace

void addWhereVerb(CLI::App& app, Session& session)
{
    auto const options = std::make_shared<WhereOptions>();
    Verb const verb =
        addVerb(app, "where", "Show where a load looks for a design, in order, without loading it",
                "zul where design.zul --board 2624", options->json);
    verb.option("NAME", options->name, "File name of a design; with a slash, its path").required();
    verb.option("--board", options->board, "Board type that the design is to run on, decimal or 0x")
        .required();
    verb.does([&session, options] { where(session, *options); });
}
