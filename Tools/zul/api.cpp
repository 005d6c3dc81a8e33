#include "captured_stdout.h"
#include "exported_queries.h"
#include "input.h"
#include "loaded_design.h"
#include "quiet_load.h"
#include "text_output.h"
#include "verb.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <ostream>

namespace {

struct ApiOptions : FileOptions {
    std::vector<std::string> functions;
};

/// The functions asked for, in the order of the interface; all of them when none is named.
std::vector<ExportedQuery> chosen(std::vector<std::string> const& names)
{
    auto const all = exportedQueries();
    for (std::string const& name : names) {
        if (std::ranges::none_of(all, [&](ExportedQuery const& query) { return name == query.function; })) {
            throw Failure(ExitCode::NotFound, "there is no query " + name + "; zul api FILE names them all");
        }
    }
    std::vector<ExportedQuery> queries;
    std::ranges::copy_if(all, std::back_inserter(queries), [&](ExportedQuery const& query) {
        return names.empty() || std::ranges::find(names, query.function) != names.end();
    });
    return queries;
}

LoadedDesign load(std::string const& file, std::span<std::byte const> bytes, ZUL& zul)
{
    LoadOutcome const outcome = loadQuietly(zul, bytes);
    CapturedStdout const quiet;
    std::span const seen = bytes.first(sizeSeenByLoad(bytes.size()));
    LoadedDesign design(ZulLoadDesignFromBuffer(seen.data(), seen.size(), 0));
    if (design == nullptr && errno == ENOMEM) {
        throw std::bad_alloc();
    }
    if (design == nullptr) {
        throw Failure(ExitCode::Damaged, file + ": the design does not load, errno " + std::to_string(errno) +
                                             " (" + std::strerror(errno) + "); loads: " + outcome.text());
    }
    return design;
}

std::string answerText(Json const& answer)
{
    // Texts came as JSON holds them; what is not UTF-8 stands there as Latin-1.
    return answer.is_string() ? asQuoted(answer.get<std::string>()) : escaped(answer.dump());
}

template <class Write>
void askAll(std::vector<ExportedQuery> const& queries, fpga_design const* design, ZUL const& zul,
            Write const& write)
{
    for (ExportedQuery const& query : queries) {
        for (QueryArguments const& arguments : argumentsFor(query.over, design, zul)) {
            write(query, arguments, query.ask(design, arguments));
        }
    }
}

void writeLines(Session& session, std::vector<ExportedQuery> const& queries, fpga_design const* design,
                ZUL const& zul)
{
    askAll(queries, design, zul, [&](auto const& query, auto const& arguments, Json const& answer) {
        session.out << query.function << '(' << argumentsText(query.over, arguments)
                    << ") = " << answerText(answer)
                    << (arguments.isMiss ? styled(session, Style::Faint, "   a miss") : "") << '\n';
    });
}

void writeJsonCalls(Session& session, std::string const& file, std::vector<ExportedQuery> const& queries,
                    fpga_design const* design, ZUL const& zul)
{
    JsonObjectWriter json(session.out);
    json.member("schema", "zul-api");
    json.member("version", 1);
    json.member("file", jsonText(file));
    json.beginList("calls");
    askAll(queries, design, zul, [&](auto const& query, auto const& arguments, Json const& answer) {
        json.element({{"function", query.function},
                      {"arguments", argumentsJson(query.over, arguments)},
                      {"miss", arguments.isMiss},
                      {"answer", answer}});
    });
    json.endList();
}

void showAnswers(Session& session, ApiOptions const& options)
{
    std::vector<ExportedQuery> const queries = chosen(options.functions);
    InputFile const file(options.file);
    warnOfPartialLoad(session, file);
    ZUL zul;
    LoadedDesign const design = load(file.name(), file.bytes(), zul);
    if (options.json) {
        writeJsonCalls(session, file.name(), queries, design.get(), zul);
    } else {
        writeLines(session, queries, design.get(), zul);
    }
}

} // namespace

void addApiVerb(CLI::App& app, Session& session)
{
    auto const options = std::make_shared<ApiOptions>();
    Verb const verb = addFileVerb(
        app, "api", "Show what every query of the C interface answers for a file, misses included",
        "zul api design.zul ZulGetModuleName ZulGetNrOfParam", *options);
    verb.option("FUNCTION", options->functions, "Only these functions");
    verb.does([&session, options] { showAnswers(session, *options); });
}
