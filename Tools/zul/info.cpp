#include "damage.h"
#include "fpga_types.h"
#include "info_json.h"
#include "input.h"
#include "overview.h"
#include "quiet_load.h"
#include "text_output.h"
#include "verb.h"

#include <ostream>

namespace {

constexpr std::size_t mostLines = 8; // of one kind, so that a design fits on a screen

struct InfoOptions {
    std::vector<std::string> files;
    bool json = false;
};

std::string partText(std::uint32_t type)
{
    char const* const part = FPGAtype2RBTstring(static_cast<int>(type));
    return part == nullptr ? "unknown part" : part;
}

std::string versionText(Overview const& overview)
{
    std::string text = asQuoted(overview.version);
    for (VersionNumber const& each : overview.versionNumbers) {
        text += ", number " + std::to_string(each.index) + ": " + std::to_string(each.version) + "." +
                std::to_string(each.revision);
    }
    return text;
}

std::string configurationText(Configuration const& configuration)
{
    std::string text = "configuration " + std::to_string(configuration.index) + ": FPGA " +
                       asHex(configuration.fpgaType) + " (" + partText(configuration.fpgaType) + "), ";
    text += configuration.isBound ? "board " + std::to_string(configuration.board) + " revision " +
                                        std::to_string(configuration.revision)
                                  : "no board";
    text += ", " + counted(configuration.bytes, "byte");
    return configuration.id.empty() ? text : text + ", id " + asQuoted(configuration.id);
}

std::string libraryText(Library const& library)
{
    return "library " + asQuoted(library.name) + " for system " + std::to_string(library.system) + ": " +
           counted(library.bytes, "byte") + (library.isCompressed ? ", compressed" : "");
}

std::string processText(Process const& process)
{
    return "process " + std::to_string(process.id) + " " + asQuoted(process.name) + ", clock " +
           std::to_string(process.clock);
}

/// Lines of counts, none longer than a screen is wide.
std::vector<std::string> countLines(Overview const& overview)
{
    constexpr std::size_t widest = 68;
    std::vector<std::string> lines(1);
    for (Counter const& counter : counters()) {
        std::size_t const count = overview.count(counter.ids);
        if (count == 0) {
            continue;
        }
        std::string const text = counted(count, counter.one, counter.many);
        if (!lines.back().empty()) {
            lines.back() += ',';
        }
        if (lines.back().size() + text.size() >= widest) {
            lines.emplace_back();
        }
        lines.back() += (lines.back().empty() ? "" : " ") + text;
    }
    if (lines.back().empty()) {
        lines.back() = "nothing";
    }
    return lines;
}

class Screen {
public:
    explicit Screen(Session& session) : m_session(session) {}

    void design(ContainerFile const& container, Overview const& overview, LoadOutcome const& load)
    {
        m_session.out << styled(m_session, Style::Bold, escaped(container.file.name())) << '\n';
        line("name", asQuoted(overview.name));
        line("version", versionText(overview));
        line("author", asQuoted(overview.author));
        line("id", asQuoted(overview.id));
        line("size", counted(container.walk.file.size(), "byte") + " in " +
                         counted(container.walk.tags.size(), "tag"));
        line("loads", styled(m_session, load.loads() ? Style::Plain : Style::Alarm, escaped(load.text())));
        list("configurations", overview.configurations, configurationText);
        list("libraries", overview.libraries, libraryText);
        list("processes", overview.processes, processText);
        std::string_view label = "counts";
        for (std::string const& text : countLines(overview)) {
            line(label, text);
            label = "";
        }
    }

private:
    void line(std::string_view label, std::string const& text)
    {
        m_session.out << "  " << padded(label, 9) << text << '\n';
    }

    template <class Item>
    void list(std::string_view name, std::vector<Item> const& items, std::string (*textOf)(Item const&))
    {
        for (std::size_t i = 0; i < std::min(items.size(), mostLines); ++i) {
            m_session.out << "  " << textOf(items[i]) << '\n';
        }
        if (items.size() > mostLines) {
            m_session.out << "  and " << items.size() - mostLines << " more " << name << '\n';
        }
    }

    Session& m_session;
};

/// Shows one file, on the screen or as an element of the list in @p json.
void showDesign(Session& session, std::string const& path, JsonObjectWriter* json)
{
    ContainerFile const container(session, path);
    Overview const overview(container.walk);
    ZUL zul;
    LoadOutcome const load = loadQuietly(zul, container.file.bytes());
    if (json != nullptr) {
        json->element(designJson(container, overview, load));
    } else {
        Screen(session).design(container, overview, load);
    }
    if (!load.loads()) {
        warn(session, container.file.name() + ": loads: " + load.text());
        session.result = std::max(session.result, ExitCode::Damaged);
    }
    reportDamage(session, container.file.name(), container.walk);
}

/// As above; a file that cannot be shown does not keep the next one from being shown.
void showOrTell(Session& session, std::string const& path, JsonObjectWriter* json)
{
    try {
        showDesign(session, path, json);
    } catch (Failure const& failure) {
        warn(session, failure.what());
        session.result = std::max(session.result, failure.code());
        if (json != nullptr) {
            json->element(
                {{"file", jsonText(path)},
                 {"error",
                  {{"code", static_cast<int>(failure.code())}, {"message", jsonText(failure.what())}}}});
        }
    }
}

void showAll(Session& session, InfoOptions const& options)
{
    if (!options.json) {
        for (std::string const& file : options.files) {
            showOrTell(session, file, nullptr);
        }
        return;
    }
    JsonObjectWriter json(session.out);
    json.member("schema", "zul-info");
    json.member("version", 1);
    json.beginList("designs");
    for (std::string const& file : options.files) {
        showOrTell(session, file, &json);
    }
    json.endList();
}

} // namespace

void addInfoVerb(CLI::App& app, Session& session)
{
    auto const options = std::make_shared<InfoOptions>();
    Verb const verb = addVerb(app, "info", "Show what each design is: one screen a file",
                              "zul info a.zul b.zul", options->json);
    verb.option("FILE", options->files, "Design containers, - for standard input").required();
    verb.does([&session, options] { showAll(session, *options); });
}
