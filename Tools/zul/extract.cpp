#include "inflate_stream.h"
#include "input.h"
#include "json_output.h"
#include "output_file.h"
#include "quiet_load.h"
#include "sha256.h"
#include "text_output.h"
#include "verb.h"
#include "zullib.h"

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <set>

namespace {

namespace fs = std::filesystem;

struct ExtractOptions : FileOptions {
    std::vector<std::string> what;
    std::string directory;
    bool force = false;
};

constexpr char const* manifestName = "manifest.json";

/// A file to be made.
struct Extract {
    std::string name; ///< relative to the directory
    Json about;       ///< for the manifest
    ByteSource source;
};

std::span<std::byte const> bytesOf(void const* data, std::size_t length)
{
    return {static_cast<std::byte const*>(data), length};
}

void addBitstreams(ZUL const& zul, std::vector<Extract>& extracts)
{
    for (unsigned int i = 0; i < zul.getConfigCount(); ++i) {
        ZUL_multi_data const* const config = zul.getConfigAt(i);
        std::string const name = "bitstream-" + std::to_string(i) + "-index" +
                                 std::to_string(config->getIndex()) + "-board" +
                                 std::to_string(config->getBoardType()) + "-rev" +
                                 std::to_string(config->getBoardRevision()) + ".bin";
        extracts.push_back({name,
                            {{"kind", "bitstream"},
                             {"index", config->getIndex()},
                             {"board", config->getBoardType()},
                             {"revision", config->getBoardRevision()},
                             {"fpgaType", config->getFpgaType()}},
                            [config](ByteSink const& sink) {
                                return sink(bytesOf(config->getData(), config->getLength()));
                            }});
    }
}

/// Those for this platform as they would be unpacked; those for others in a directory of their own.
void addLibraries(ZUL const& zul, std::vector<Extract>& extracts)
{
    zul.forEachTag([&extracts](ZUL_tag& tag) {
        auto const* const library = dynamic_cast<ZUL_dll const*>(&tag);
        if (library == nullptr) {
            return;
        }
        std::string const name = library->getName() == nullptr ? "" : library->getName();
        if (name.find('/') != std::string::npos) {
            throw Failure(ExitCode::Refused,
                          "library " + asQuoted(name) + " would be written somewhere else");
        }
        bool const isOurs = library->getSystem() == zul_opsys_of_library();
        std::string const folder = isOurs ? "" : "system-" + std::to_string(library->getSystem()) + "/";
        extracts.push_back({folder + "lib" + name + ".dylib",
                            {{"kind", "library"},
                             {"name", jsonText(name)},
                             {"system", static_cast<std::uint32_t>(library->getSystem())},
                             {"compressed", library->isCompressed()}},
                            [library](ByteSink const& sink) {
                                auto const stored = bytesOf(library->getLib(), library->getLibLength());
                                return library->isCompressed() ? inflateStream(stored, sink) : sink(stored);
                            }});
    });
}

Json infoJson(ZUL_user_info const& info)
{
    Json json{{"name", jsonText(info.getInfo() == nullptr ? "" : info.getInfo())},
              {"type", static_cast<std::uint32_t>(info.getType())}};
    if (info.getInfoValuePtr() != nullptr) {
        json["value"] = *info.getInfoValuePtr();
    } else {
        json["value"] = info.getInfoString() == nullptr ? Json() : Json(jsonText(info.getInfoString()));
    }
    return json;
}

void addInfos(ZUL const& zul, std::vector<Extract>& extracts)
{
    Json list = Json::array();
    zul.forEachTag([&list](ZUL_tag& tag) {
        if (auto const* const info = dynamic_cast<ZUL_user_info const*>(&tag)) {
            list.push_back(infoJson(*info));
        }
    });
    Json about{{"kind", "userInfos"}, {"count", list.size()}};
    extracts.push_back({"user-infos.json", about, [text = list.dump(2) + "\n"](ByteSink const& sink) {
                            return sink(std::as_bytes(std::span(text)));
                        }});
}

std::vector<Extract> extractsOf(ZUL const& zul, std::vector<std::string> const& what)
{
    auto const wanted = [&what](char const* kind) {
        return std::ranges::any_of(what,
                                   [=](std::string const& each) { return each == kind || each == "all"; });
    };
    std::vector<Extract> extracts;
    if (wanted("bitstreams")) {
        addBitstreams(zul, extracts);
    }
    if (wanted("libraries")) {
        addLibraries(zul, extracts);
    }
    if (wanted("infos")) {
        addInfos(zul, extracts);
    }
    return extracts;
}

/// Writes one file. @return its entry in the manifest
Json write(Extract const& extract, fs::path const& directory, Overwrite overwrite)
{
    std::uint64_t length = 0;
    Sha256 digest;
    bool firstPass = true;
    fs::path const path = directory / extract.name;
    fs::create_directories(path.parent_path());
    writeOutput(
        path.string(),
        [&](ByteSink const& sink) {
            int const result = extract.source([&](std::span<std::byte const> bytes) {
                if (firstPass) {
                    length += bytes.size();
                    digest.add(bytes);
                }
                return sink(bytes);
            });
            firstPass = false;
            return result;
        },
        overwrite);
    Json entry{{"file", jsonText(extract.name)}};
    entry.update(extract.about);
    entry["bytes"] = length;
    entry["sha256"] = hexText(digest.digest());
    return entry;
}

/// The same; a file whose contents are damaged is told, and left out.
Json writeOrTell(Session& session, Extract const& extract, fs::path const& directory, Overwrite overwrite)
{
    try {
        return write(extract, directory, overwrite);
    } catch (Failure const& failure) {
        if (failure.code() != ExitCode::Damaged) {
            throw;
        }
        warn(session, failure.what());
        session.result = ExitCode::Damaged;
        return {{"file", jsonText(extract.name)}, {"error", jsonText(failure.what())}};
    }
}

void report(Session& session, ExtractOptions const& options, Json const& manifest)
{
    if (options.json) {
        writeJson(session.out, manifest);
        return;
    }
    Table table({"file", "bytes", "sha256"});
    for (Json const& entry : manifest["files"]) {
        if (entry.contains("error")) {
            continue; // was told when it happened
        }
        table.row({entry["file"].get<std::string>(), std::to_string(entry["bytes"].get<std::uint64_t>()),
                   entry["sha256"].get<std::string>().substr(0, 16)});
    }
    table.print(session);
}

/// Nothing is written when one of the files may not be.
void checkAll(std::vector<Extract> const& extracts, fs::path const& directory, Overwrite overwrite)
{
    std::set<std::string> names;
    checkOutput((directory / manifestName).string(), overwrite);
    for (Extract const& extract : extracts) {
        if (!names.insert(extract.name).second) {
            throw Failure(ExitCode::Refused, "two files would be named " + extract.name);
        }
        checkOutput((directory / extract.name).string(), overwrite);
    }
}

void extractAll(Session& session, ExtractOptions const& options)
{
    auto const overwrite = options.force ? Overwrite::Allowed : Overwrite::Refused;
    InputFile const file(options.file);
    warnOfPartialLoad(session, file);
    ZUL zul;
    LoadOutcome const outcome = loadQuietly(zul, file.bytes());
    if (!outcome.loads() && zul.getTotalTagCount() + zul.getConfigCount() == 0) {
        throw Failure(ExitCode::Damaged, file.name() + ": loads: " + outcome.text());
    }
    std::vector<Extract> const extracts = extractsOf(zul, options.what);
    fs::path const directory = options.directory;
    fs::create_directories(directory);
    checkAll(extracts, directory, overwrite);
    Json manifest{{"schema", "zul-extract"},
                  {"version", 1},
                  {"file", jsonText(file.name())},
                  {"loads", outcome.loads()},
                  {"files", Json::array()}};
    for (Extract const& extract : extracts) {
        manifest["files"].push_back(writeOrTell(session, extract, directory, overwrite));
    }
    std::string const text = manifest.dump(2) + "\n";
    writeOutput((directory / manifestName).string(), std::as_bytes(std::span(text)), overwrite);
    report(session, options, manifest);
    if (!outcome.loads()) {
        warn(session, file.name() + ": loads: " + outcome.text() + "; what was read before is extracted");
        session.result = ExitCode::Damaged;
    }
}

} // namespace

void addExtractVerb(CLI::App& app, Session& session)
{
    auto const options = std::make_shared<ExtractOptions>();
    Verb const verb =
        addFileVerb(app, "extract", "Write what a design carries to files of their own, with a manifest",
                    "zul extract design.zul libraries -O unpacked", *options);
    verb.option("WHAT", options->what, "bitstreams, libraries, infos, all")
        .required()
        .oneOf({"bitstreams", "libraries", "infos", "all"});
    verb.option("-O,--directory", options->directory, "The directory to write to; made when it is missing")
        .required();
    verb.flag("--force", options->force, "Overwrite files that exist");
    verb.does([&session, options] {
        try {
            extractAll(session, *options);
        } catch (fs::filesystem_error const& error) {
            throw Failure(ExitCode::Unreadable, error.path1().string() + ": " + error.code().message());
        }
    });
}
