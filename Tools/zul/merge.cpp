#include "input.h"
#include "json_output.h"
#include "merge_report.h"
#include "output_file.h"
#include "quiet_load.h"
#include "text_output.h"
#include "verb.h"

#include <exception>
#include <ostream>

namespace {

struct MergeOptions {
    std::string a;
    std::string b;
    std::string output;
    bool dryRun = false;
    bool force = false;
    bool inPlace = false;
    bool json = false;
};

/// A design and the bytes that it refers to.
struct Side {
    Side(Session& session, std::string const& path) : file(path)
    {
        warnOfPartialLoad(session, file);
        if (LoadOutcome const outcome = loadQuietly(zul, file.bytes()); !outcome.loads()) {
            throw Failure(ExitCode::Damaged, file.name() + ": loads: " + outcome.text());
        }
    }

    InputFile file;
    ZUL zul; // after the bytes: it goes first
};

/// The bytes of @p merged; none, and why in @p report, when no design could be loaded from them.
std::vector<std::byte> image(ZUL& merged, MergeReport& report)
{
    std::vector<std::byte> bytes;
    try {
        bytes.resize(merged.getSaveLength());
        merged.Save(bytes.data(), bytes.size());
    } catch (std::bad_alloc const&) {
        throw;
    } catch (std::exception const& error) {
        report.conflicts.push_back(std::string("the merged design cannot be saved: ") + error.what());
        return {};
    }
    ZUL again;
    LoadOutcome const outcome = loadQuietly(again, bytes);
    if (!outcome.loads()) {
        report.conflicts.push_back("the merged design would not load: " + outcome.text());
        return {};
    }
    return bytes;
}

void writeTable(Session& session, char const* kind, char const* number, std::vector<Renumbered> const& list)
{
    Table table({kind, number, "becomes"});
    for (Renumbered const& tag : list) {
        if (tag.from != tag.to) {
            table.row({tag.name, std::to_string(tag.from), std::to_string(tag.to)});
        }
    }
    if (!table.empty()) {
        table.print(session);
        session.out << '\n';
    }
}

void writeText(Session& session, MergeOptions const& options, MergeReport const& report, std::size_t size)
{
    for (std::string const& conflict : report.conflicts) {
        session.out << "conflict: " << escaped(conflict) << '\n';
    }
    if (!report.succeeded()) {
        return;
    }
    writeTable(session, "process of B", "id", report.processes);
    writeTable(session, "module of B", "index", report.modules);
    if (report.movedEvents != 0) {
        session.out << counted(report.movedEvents, "event") << " of " << report.movedSide << ": moved up by "
                    << queueShift << " interrupt queues\n";
    }
    for (DroppedTag const& dropped : report.dropped) {
        session.out << "dropped from " << dropped.side << ": " << escaped(dropped.what) << " (" << dropped.why
                    << ")\n";
    }
    session.out << (options.dryRun ? "would write " : "wrote ") << counted(size, "byte");
    if (!options.output.empty()) {
        session.out << " to " << escaped(options.output);
    }
    session.out << '\n';
}

Json numbersJson(std::vector<Renumbered> const& list)
{
    Json json = Json::array();
    for (Renumbered const& tag : list) {
        json.push_back({{"name", jsonText(tag.name)}, {"from", tag.from}, {"to", tag.to}});
    }
    return json;
}

void writeJsonReport(Session& session, MergeOptions const& options, Side const& a, Side const& b,
                     MergeReport const& report, std::size_t size)
{
    Json dropped = Json::array();
    for (DroppedTag const& tag : report.dropped) {
        dropped.push_back(
            {{"side", std::string(1, tag.side)}, {"what", jsonText(tag.what)}, {"why", tag.why}});
    }
    Json conflicts = Json::array();
    for (std::string const& conflict : report.conflicts) {
        conflicts.push_back(jsonText(conflict));
    }
    Json queues = nullptr;
    if (report.movedEvents != 0) {
        queues = {
            {"side", std::string(1, report.movedSide)}, {"events", report.movedEvents}, {"by", queueShift}};
    }
    writeJson(session.out, {{"schema", "zul-merge"},
                            {"version", 1},
                            {"a", jsonText(a.file.name())},
                            {"b", jsonText(b.file.name())},
                            {"output", options.output.empty() ? Json() : Json(jsonText(options.output))},
                            {"written", report.succeeded() && !options.dryRun},
                            {"bytes", size},
                            {"conflicts", conflicts},
                            {"processes", numbersJson(report.processes)},
                            {"modules", numbersJson(report.modules)},
                            {"movedQueues", queues},
                            {"dropped", dropped}});
}

void checkOptions(MergeOptions const& options)
{
    if (options.output.empty() && !options.inPlace && !options.dryRun) {
        throw Failure(ExitCode::Usage, "merge: one of --output, --in-place and --dry-run is needed");
    }
    if (options.inPlace && options.a == "-") {
        throw Failure(ExitCode::Usage, "merge: standard input cannot be overwritten");
    }
    if (options.a == "-" && options.b == "-") {
        throw Failure(ExitCode::Usage, "merge: only one design can come from standard input");
    }
}

void merge(Session& session, MergeOptions options)
{
    checkOptions(options);
    if (options.inPlace) {
        options.output = options.a;
    }
    auto const overwrite = options.force || options.inPlace ? Overwrite::Allowed : Overwrite::Refused;
    if (!options.dryRun) {
        checkOutput(options.output, overwrite);
    }
    Side a(session, options.a);
    Side b(session, options.b);
    MergeReport report = mergeAndReport(a.zul, b.zul);
    std::vector<std::byte> const bytes = report.succeeded() ? image(a.zul, report) : std::vector<std::byte>();
    if (!report.succeeded()) {
        warn(session, "the designs cannot be merged: " + report.conflicts.front());
        session.result = ExitCode::Refused;
    } else if (!options.dryRun) {
        writeOutput(options.output, bytes, overwrite);
    }
    if (options.json) {
        writeJsonReport(session, options, a, b, report, bytes.size());
    } else {
        writeText(session, options, report, bytes.size());
    }
}

} // namespace

void addMergeVerb(CLI::App& app, Session& session)
{
    auto const options = std::make_shared<MergeOptions>();
    Verb const verb = addVerb(app, "merge", "Merge design B into design A, whose numbers stay",
                              "zul merge a.zul b.zul -o both.zul", options->json);
    verb.option("A", options->a, "Design container, - for standard input").required();
    verb.option("B", options->b, "Design container whose tags are added, - for standard input").required();
    Argument const output = verb.option("-o,--output", options->output, "The file to write");
    Argument const inPlace = verb.flag("--in-place", options->inPlace, "Overwrite A itself");
    verb.flag("--dry-run", options->dryRun, "Report what would be done, and write nothing");
    verb.flag("--force", options->force, "Overwrite the file to write when it exists");
    output.excludes(inPlace);
    verb.does([&session, options] { merge(session, *options); });
}
