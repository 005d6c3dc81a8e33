#include "findings.h"
#include "json_output.h"
#include "text_output.h"
#include "verb.h"

#include <algorithm>
#include <ostream>

namespace {

using Texts = std::vector<RuleText const*>;

/// The words of @p text in lines of at most 100 characters, each behind @p indent.
void printWrapped(std::ostream& out, std::string_view indent, std::string_view text)
{
    constexpr std::size_t width = 100;
    while (!text.empty()) {
        std::size_t const room = width - indent.size();
        std::size_t const end = text.size() <= room ? text.size() : text.rfind(' ', room);
        out << indent << text.substr(0, end) << '\n';
        text.remove_prefix(std::min(text.size(), end + 1));
    }
}

void print(Session& session, Texts const& texts)
{
    for (RuleText const* const text : texts) {
        session.out << styled(session, Style::Bold, idOf(text->rule)) << ' ' << nameOf(text->level) << ": "
                    << text->title << '\n';
        printWrapped(session.out, "  ", text->explanation);
        printWrapped(session.out, "  ", text->hint);
    }
}

/// @p text with what Markdown would take for markup set apart.
std::string markdown(std::string_view text)
{
    std::string result;
    for (char const c : text) {
        if (c == '_' || c == '*' || c == '<' || c == '`' || c == '\\') {
            result += '\\';
        }
        result += c;
    }
    return result;
}

void printMarkdown(Session& session, Texts const& texts)
{
    session.out << "# What `zul check` finds\n\n"
                   "This file is written by `zul explain --all --markdown`.\n\n"
                   "- **error**: a load refuses it, or what it says can never be used\n"
                   "- **warning**: it loads, and something is lost or not what it seems\n"
                   "- **note**: worth knowing; the exit code of `zul check` stays 0\n";
    for (RuleText const* const text : texts) {
        session.out << "\n## " << idOf(text->rule) << ": " << markdown(text->title) << "\n\n"
                    << "**" << nameOf(text->level) << "**\n\n"
                    << markdown(text->explanation) << "\n\n"
                    << markdown(text->hint) << '\n';
    }
}

void printJson(Session& session, Texts const& texts)
{
    JsonObjectWriter json(session.out);
    json.member("schema", "zul-explain");
    json.member("version", 1);
    json.beginList("findings");
    for (RuleText const* const text : texts) {
        json.element({{"id", idOf(text->rule)},
                      {"level", nameOf(text->level)},
                      {"title", text->title},
                      {"explanation", text->explanation},
                      {"hint", text->hint}});
    }
    json.endList();
}

struct Options {
    std::vector<std::string> ids;
    bool all = false;
    bool asMarkdown = false;
    bool asJson = false;
};

Texts chosen(Options const& options)
{
    Texts texts;
    if (options.all) {
        for (RuleText const& text : ruleTexts()) {
            texts.push_back(&text);
        }
    }
    for (std::string const& id : options.ids) {
        texts.push_back(findRule(id));
        if (texts.back() == nullptr) {
            throw Failure(ExitCode::NotFound,
                          "there is no finding '" + id + "'; zul explain --all shows all of them");
        }
    }
    return texts;
}

void explain(Session& session, Options const& options)
{
    Texts const texts = chosen(options);
    if (options.asJson) {
        printJson(session, texts);
    } else if (options.asMarkdown) {
        printMarkdown(session, texts);
    } else {
        print(session, texts);
    }
}

} // namespace

void addExplainVerb(CLI::App& app, Session& session)
{
    auto const options = std::make_shared<Options>();
    Verb const verb =
        addVerb(app, "explain", "Explain what zul check finds", "zul explain Z0101", options->asJson);
    Argument const ids = verb.option("ID", options->ids, "Ids of findings, like Z0101");
    ids.excludes(verb.flag("--all", options->all, "All findings"));
    verb.flag("--markdown", options->asMarkdown, "Write Markdown").excludes(verb.argument("--json"));
    verb.does([options, &session] {
        if (!options->all && options->ids.empty()) {
            throwMissing("ID or --all");
        }
        explain(session, *options);
    });
}
