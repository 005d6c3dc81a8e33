#include "captured_stdout.h"
#include "input.h"
#include "json_output.h"
#include "loaded_design.h"
#include "output_file.h"
#include "quiet_load.h"
#include "text_output.h"
#include "verb.h"
#include "zullib.h"

#include <cerrno>
#include <cstring>
#include <new>
#include <ostream>

namespace {

struct StripOptions : FileOptions {
    std::string output;
    bool force = false;
    bool inPlace = false;
};

/// What a stripped copy does without.
struct Dropped {
    explicit Dropped(ZUL const& zul)
        : configurations(zul.getConfigCount()),
          destinations(zul.getTagCount(ZUL_destination::tag_id)),
          libraries(zul.getTagCount(ZUL_dll::tag_id)),
          versionNumbers(zul.getTagCount(ZUL_design_version_nr::tag_id))
    {
    }
    unsigned int configurations;
    unsigned int destinations;
    unsigned int libraries;
    unsigned int versionNumbers;
};

std::vector<std::byte> stripped(std::string const& name, std::span<std::byte const> bytes)
{
    CapturedStdout const quiet;
    errno = 0;
    LoadedDesign const design(ZulLoadDesignFromBuffer(bytes.data(), bytes.size(), 0));
    unsigned long length = 0;
    std::vector<std::byte> copy;
    if (design != nullptr && ZulStripConfigs(design.get(), nullptr, &length) == -1 && length != 0) {
        copy.resize(length);
    }
    if (design == nullptr || copy.empty() || ZulStripConfigs(design.get(), copy.data(), &length) != 0) {
        if (errno == ENOMEM) {
            throw std::bad_alloc();
        }
        throw Failure(ExitCode::Damaged, name + ": cannot be stripped: " + std::strerror(errno));
    }
    return copy;
}

void report(Session& session, StripOptions const& options, std::string const& from, std::size_t bytesBefore,
            std::size_t bytesAfter, Dropped const& dropped)
{
    if (options.json) {
        writeJson(session.out, {{"schema", "zul-strip"},
                                {"version", 1},
                                {"file", jsonText(from)},
                                {"output", jsonText(options.output)},
                                {"bytesBefore", bytesBefore},
                                {"bytesAfter", bytesAfter},
                                {"dropped",
                                 {{"configurations", dropped.configurations},
                                  {"destinations", dropped.destinations},
                                  {"libraries", dropped.libraries},
                                  {"versionNumbers", dropped.versionNumbers}}}});
        return;
    }
    session.out << escaped(options.output) << ": " << bytesAfter << " of " << bytesBefore
                << " bytes, without " << counted(dropped.configurations, "configuration") << ", "
                << counted(dropped.destinations, "destination") << ", "
                << counted(dropped.libraries, "library", "libraries") << " and "
                << counted(dropped.versionNumbers, "version number") << '\n';
}

void strip(Session& session, StripOptions options)
{
    if (options.inPlace) {
        options.output = options.file;
    }
    auto const overwrite = options.force || options.inPlace ? Overwrite::Allowed : Overwrite::Refused;
    checkOutput(options.output, overwrite);
    InputFile const file(options.file);
    warnOfPartialLoad(session, file);
    std::span const seen = file.bytes().first(sizeSeenByLoad(file.bytes().size()));
    ZUL zul;
    if (LoadOutcome const outcome = loadQuietly(zul, file.bytes()); !outcome.loads()) {
        throw Failure(ExitCode::Damaged, file.name() + ": loads: " + outcome.text());
    }
    std::vector<std::byte> const copy = stripped(file.name(), seen);
    writeOutput(options.output, copy, overwrite);
    report(session, options, file.name(), seen.size(), copy.size(), Dropped(zul));
}

} // namespace

void addStripVerb(CLI::App& app, Session& session)
{
    auto const options = std::make_shared<StripOptions>();
    Verb const verb = addFileVerb(
        app, "strip", "Write a copy without bitstreams, destinations, libraries and version numbers",
        "zul strip design.zul -o small.zul", *options);
    Argument const output = verb.option("-o,--output", options->output, "The file to write");
    verb.flag("--force", options->force, "Overwrite it when it exists");
    Argument const inPlace = verb.flag("--in-place", options->inPlace, "Overwrite FILE itself");
    output.excludes(inPlace);
    verb.does([&session, options] {
        if (options->output.empty() && !options->inPlace) {
            throw Failure(ExitCode::Usage, "strip: one of --output and --in-place is needed");
        }
        if (options->inPlace && options->file == "-") {
            throw Failure(ExitCode::Usage, "strip: standard input cannot be overwritten");
        }
        strip(session, *options);
    });
}
