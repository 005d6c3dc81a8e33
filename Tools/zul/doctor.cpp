#include "applet_location.h"
#include "cache_trust.h"
#include "json_output.h"
#include "library_directories.h"
#include "open_directory.h"
#include "rt_tweak_properties.h"
#include "text_output.h"
#include "verb.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <ostream>
#include <string_view>
#include <system_error>
#include <vector>

namespace {

using kova::templates::platform::PropertiesFile;
using kova::templates::platform::PropertySource;
using kova::templates::platform::ResolvedProperty;
using kova::templates::platform::TweakProperties;
using kova::templates::platform::TweakPropertyEntry;

struct TweakFile {
    std::string path; ///< empty when no installation directory is known
    int error = 0;    ///< why it was not read
};

struct Property {
    TweakPropertyEntry const& entry;
    ResolvedProperty resolved;
};

struct Cache {
    std::string path;
    CacheTrust trust;
};

struct Report {
    char const* installation = KovaDir::GetKovaDir();
    InstallationSource source = KovaDir::source();
    TweakFile tweakFile;
    std::vector<Property> properties;
    std::string cacheDirectory;
    std::vector<Cache> caches;
    std::error_code cacheError; ///< why the caches could not be listed

    bool tweakFileIsMissing() const { return tweakFile.path.empty() || tweakFile.error == ENOENT; }
    bool needsAttention() const
    {
        bool const areTrusted = std::all_of(caches.begin(), caches.end(), [](Cache const& cache) {
            return cache.trust == CacheTrust::Trusted;
        });
        bool const isTweakFileFine = tweakFile.error == 0 || tweakFileIsMissing();
        return installation == nullptr || !isTweakFileFine || !areTrusted || cacheError;
    }
};

char const* nameOf(InstallationSource source)
{
    switch (source) {
    case InstallationSource::OwnPath:
        return "own path";
    case InstallationSource::KOVADIR5_64:
        return "KOVADIR5_64";
    case InstallationSource::KOVADIR5:
        return "KOVADIR5";
    default:
        return "not found";
    }
}

char const* nameOf(PropertySource source)
{
    switch (source) {
    case PropertySource::CommandLine:
        return "command line";
    case PropertySource::File:
        return "tweak.conf";
    case PropertySource::Environment:
        return "environment";
    default:
        return "default";
    }
}

TweakFile lookAtTweakFile()
{
    TweakFile file{RtTweakProperties::fileName(), 0};
    if (!file.path.empty() && !PropertiesFile(true, false).load(file.path)) {
        file.error = errno;
    }
    return file;
}

std::vector<Property> resolvedProperties(std::string const& file)
{
    TweakProperties properties;
    std::vector<Property> resolved;
    for (TweakPropertyEntry const* entry = rt_tweak_properties; entry->key != nullptr; ++entry) {
        resolved.push_back({*entry, properties.resolve(rt_tweak_properties, file, entry->key, 0, nullptr)});
    }
    return resolved;
}

/// Null at the end, with @p error set when that is not the directory's.
dirent const* nextEntry(OpenDirectory const& directory, std::error_code& error)
{
    if (directory != nullptr) {
        errno = 0;
        if (dirent const* const entry = readdir(directory.get())) {
            return entry;
        }
    }
    error.assign(errno, std::generic_category());
    return nullptr;
}

/// Adds the cache directories of all designs, by name.
void listCaches(Report& report)
{
    std::unique_ptr<char[]> const ofNoDesign(getAppletDLLsCacheDir("", nullptr));
    std::filesystem::path const common(ofNoDesign.get());
    std::string const beginning = common.filename();
    report.cacheDirectory = common.parent_path();
    // The iterators of std::filesystem end the process when memory runs out.
    OpenDirectory const directory(opendir(report.cacheDirectory.c_str()));
    while (dirent const* const entry = nextEntry(directory, report.cacheError)) {
        if (std::string_view(entry->d_name).starts_with(beginning)) {
            std::string const path = report.cacheDirectory + '/' + entry->d_name;
            report.caches.push_back({path, trustOfCacheDirectory(path.c_str())});
        }
    }
    std::sort(report.caches.begin(), report.caches.end(),
              [](Cache const& left, Cache const& right) { return left.path < right.path; });
}

Report examine()
{
    Report report;
    report.tweakFile = lookAtTweakFile();
    report.properties = resolvedProperties(report.tweakFile.path);
    listCaches(report);
    return report;
}

// For people.

std::string tweakFileText(Report const& report)
{
    if (report.tweakFile.path.empty()) {
        return "none: no installation directory";
    }
    std::string const path = escaped(report.tweakFile.path);
    return report.tweakFile.error == 0 ? path + ", read"
                                       : path + ", not read: " + std::strerror(report.tweakFile.error);
}

void print(Session& session, Report const& report)
{
    auto const heading = [&session](char const* text) { return styled(session, Style::Bold, text); };
    session.out << heading("installation directory") << "  "
                << (report.installation == nullptr
                        ? "not found"
                        : escaped(report.installation) + ", from " + nameOf(report.source))
                << '\n'
                << heading("tweak.conf") << "              " << tweakFileText(report) << "\n\n";
    Table properties({"property", "value", "from", "environment variable"});
    for (Property const& property : report.properties) {
        properties.row({property.entry.key, property.resolved.text, nameOf(property.resolved.source),
                        property.entry.environmentVariable});
    }
    properties.print(session);
    session.out << '\n';
    if (report.caches.empty()) {
        session.out << "no cache directories in " << report.cacheDirectory << '\n';
        return;
    }
    Table caches({"cache directory", "used", "why"});
    for (Cache const& cache : report.caches) {
        caches.row({cache.path, cache.trust == CacheTrust::Trusted ? "yes" : "no", describe(cache.trust)});
    }
    caches.print(session);
}

// For programs.

Json textOrNull(bool isThere, std::string const& text)
{
    return isThere ? Json(jsonText(text)) : Json();
}

Json propertyJson(Property const& property)
{
    return {{"key", property.entry.key},
            {"value", jsonText(property.resolved.text)},
            {"from", nameOf(property.resolved.source)},
            {"environmentVariable", property.entry.environmentVariable},
            {"option", property.entry.option}};
}

Json cacheJson(Cache const& cache)
{
    return {{"path", jsonText(cache.path)},
            {"trusted", cache.trust == CacheTrust::Trusted},
            {"why", describe(cache.trust)}};
}

void writeJsonReport(Session& session, Report const& report)
{
    bool const isFound = report.installation != nullptr;
    TweakFile const& file = report.tweakFile;
    JsonObjectWriter json(session.out);
    json.member("schema", "zul-doctor");
    json.member("version", 1);
    json.member("installation", {{"directory", textOrNull(isFound, isFound ? report.installation : "")},
                                 {"from", textOrNull(isFound, nameOf(report.source))}});
    json.member("tweakFile", {{"path", textOrNull(!file.path.empty(), file.path)},
                              {"read", !file.path.empty() && file.error == 0},
                              {"error", textOrNull(file.error != 0, std::strerror(file.error))}});
    json.beginList("properties");
    for (Property const& property : report.properties) {
        json.element(propertyJson(property));
    }
    json.endList();
    json.beginList("caches");
    for (Cache const& cache : report.caches) {
        json.element(cacheJson(cache));
    }
    json.endList();
}

void doctor(Session& session, bool asJson)
{
    Report const report = examine();
    if (asJson) {
        writeJsonReport(session, report);
    } else {
        print(session, report);
    }
    if (report.cacheError) {
        warn(session, report.cacheDirectory + ": " + report.cacheError.message());
    }
    session.result = report.needsAttention() ? ExitCode::Finding : ExitCode::Clean;
}

} // namespace

void addDoctorVerb(CLI::App& app, Session& session)
{
    auto const asJson = std::make_shared<bool>(false);
    addVerb(app, "doctor",
            "Show the installation, its switches and the cache directories; answers 1 when something needs a "
            "look",
            "zul doctor", *asJson)
        .does([&session, asJson] { doctor(session, *asJson); });
}
