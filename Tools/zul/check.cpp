#include "check_rules.h"
#include "damage.h"
#include "findings.h"
#include "input.h"
#include "json_output.h"
#include "quiet_load.h"
#include "text_output.h"
#include "verb.h"
#include "zul_class.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <set>

namespace {

/// What a load in one mode does with a file.
struct Load {
    LoadOutcome outcome;
    std::uint32_t tags = 0;
    std::uint32_t configs = 0;
};

struct CheckedFile {
    explicit CheckedFile(std::string const& path) : file(path), walk(walkContainer(file.bytes())) {}

    InputFile file;
    Walk walk;
    std::vector<Finding> findings = findingsOf(walk);
    Load strict = load(ZUL_LOAD_STRICT);
    Load tolerant = load(ZUL_LOAD_TOLERANT);

    ExitCode result() const
    {
        if (!strict.outcome.loads()) {
            return ExitCode::Damaged;
        }
        bool const isClean = std::all_of(findings.begin(), findings.end(), [](Finding const& finding) {
            return textOf(finding.rule).level == Level::Note;
        });
        return isClean ? ExitCode::Clean : ExitCode::Finding;
    }

private:
    Load load(ZULLoadMode mode) const
    {
        ZUL zul;
        Load load;
        load.outcome = loadQuietly(zul, file.bytes(), mode);
        load.tags = zul.getTotalTagCount();
        load.configs = zul.getConfigCount();
        return load;
    }
};

/// "yes", or "no" and why.
std::string loadText(CheckedFile const& checked, Load const& load)
{
    LoadOutcome const& outcome = load.outcome;
    if (outcome.loads()) {
        std::string const text =
            "yes, with " + counted(load.tags, "tag") + " and " + counted(load.configs, "configuration");
        return outcome.printed.empty() ? text : text + ", after printing errors";
    }
    if (checked.walk.end == WalkEnd::NoContainer) {
        return "no: not a container, result " + std::to_string(outcome.result);
    }
    if (!outcome.exceptionClass.empty() || &load == &checked.strict) {
        return outcome.text();
    }
    return "no: no tag can be read, result " + std::to_string(outcome.result);
}

// For people.

std::string placeText(CheckedFile const& checked, Finding const& finding)
{
    std::string text = "file";
    if (finding.tag != Finding::noTag) {
        WalkedTag const& tag = checked.walk.tags[finding.tag];
        text = "tag " + std::to_string(tag.index) + " (" + kindName(tag) + ") at " + asHex(tag.offset);
    }
    return text + ", " + finding.field + " at " + asHex(finding.offset);
}

Style styleOf(Level level)
{
    return level == Level::Error ? Style::Alarm : level == Level::Warning ? Style::Attention : Style::Faint;
}

std::string summary(std::vector<Finding> const& findings)
{
    std::array<std::uint64_t, 3> counts{};
    for (Finding const& finding : findings) {
        ++counts.at(static_cast<std::size_t>(textOf(finding.rule).level));
    }
    return counted(counts[0], "error") + ", " + counted(counts[1], "warning") + ", " +
           counted(counts[2], "note");
}

void print(Session& session, CheckedFile const& checked)
{
    session.out << styled(session, Style::Bold, escaped(checked.file.name())) << ": "
                << summary(checked.findings) << '\n';
    std::set<Rule> hinted;
    for (Finding const& finding : checked.findings) {
        RuleText const& text = textOf(finding.rule);
        session.out << "  " << styled(session, styleOf(text.level), idOf(finding.rule)) << ' '
                    << nameOf(text.level) << ": " << text.title << "\n    " << placeText(checked, finding)
                    << ": expected " << escaped(finding.expected) << ", found " << escaped(finding.found)
                    << '\n';
        if (hinted.insert(finding.rule).second) {
            session.out << "    hint: " << text.hint << '\n';
        }
    }
    session.out << "  strict load: " << escaped(loadText(checked, checked.strict))
                << "\n  tolerant load: " << escaped(loadText(checked, checked.tolerant)) << '\n';
}

// For programs.

Json tagJson(WalkedTag const& tag)
{
    return {{"index", tag.index}, {"id", tag.id}, {"kind", kindName(tag)}, {"offset", tag.offset}};
}

Json findingJson(CheckedFile const& checked, Finding const& finding)
{
    RuleText const& text = textOf(finding.rule);
    return {{"id", idOf(finding.rule)},
            {"level", nameOf(text.level)},
            {"title", text.title},
            {"file", jsonText(checked.file.name())},
            {"tag", finding.tag == Finding::noTag ? Json() : tagJson(checked.walk.tags[finding.tag])},
            {"offset", finding.offset},
            {"field", finding.field},
            {"expected", jsonText(finding.expected)},
            {"found", jsonText(finding.found)},
            {"hint", text.hint}};
}

Json loadJson(CheckedFile const& checked, Load const& load)
{
    constexpr std::size_t longest =
        4096; // a tolerant load may print two lines for every few bytes of the file
    LoadOutcome const& outcome = load.outcome;
    bool const hasException = !outcome.exceptionClass.empty();
    return {{"loads", outcome.loads()},
            {"result", outcome.result},
            {"text", jsonText(loadText(checked, load))},
            {"exception", hasException ? Json(outcome.exceptionClass) : Json()},
            {"message", hasException ? Json(jsonText(outcome.message)) : Json()},
            {"details", hasException ? Json(jsonText(outcome.details)) : Json()},
            {"tagId", outcome.tagId ? Json(*outcome.tagId) : Json()},
            {"tags", load.tags},
            {"configurations", load.configs},
            {"printed", jsonText(std::string_view(outcome.printed).substr(0, longest))}};
}

Json fileJson(CheckedFile const& checked)
{
    Json findings = Json::array();
    for (Finding const& finding : checked.findings) {
        findings.push_back(findingJson(checked, finding));
    }
    return {
        {"file", jsonText(checked.file.name())},
        {"size", checked.file.bytes().size()},
        {"exitCode", static_cast<int>(checked.result())},
        {"findings", std::move(findings)},
        {"load",
         {{"strict", loadJson(checked, checked.strict)}, {"tolerant", loadJson(checked, checked.tolerant)}}}};
}

Json failureJson(std::string const& path, Failure const& failure)
{
    return {{"file", jsonText(path)},
            {"exitCode", static_cast<int>(failure.code())},
            {"error", jsonText(failure.what())}};
}

void check(Session& session, std::vector<std::string> const& paths, bool asJson)
{
    Json files = Json::array();
    for (std::string const& path : paths) {
        ExitCode result = ExitCode::Clean;
        try {
            CheckedFile const checked(path);
            result = checked.result();
            if (asJson) {
                files.push_back(fileJson(checked));
            } else {
                print(session, checked);
            }
        } catch (Failure const& failure) { // of this file; the others are looked at all the same
            result = failure.code();
            warn(session, failure.what());
            files.push_back(failureJson(path, failure));
        }
        session.result = std::max(session.result, result);
    }
    if (asJson) {
        JsonObjectWriter json(session.out);
        json.member("schema", "zul-check");
        json.member("version", 1);
        json.beginList("files");
        for (Json const& file : files) {
            json.element(file);
        }
        json.endList();
    }
}

} // namespace

void addCheckVerb(CLI::App& app, Session& session)
{
    struct Options {
        std::vector<std::string> paths;
        bool asJson = false;
    };
    auto const options = std::make_shared<Options>();
    Verb const verb =
        addVerb(app, "check", "Find what is wrong with design files, and say what a load does with them",
                "zul check --json design.zul", options->asJson);
    verb.option("FILE", options->paths, "Design containers, - for standard input").required();
    verb.does([options, &session] { check(session, options->paths, options->asJson); });
}
