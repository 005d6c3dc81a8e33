#include "damage.h"
#include "design_tree.h"
#include "input.h"
#include "json_output.h"
#include "parameter_value.h"
#include "seeded_hash.h"
#include "tag_fields.h"
#include "text_output.h"
#include "verb.h"
#include "zullib.h"

#include <ostream>

namespace {

/// The links of a module by the name of the parameter that they begin at.
class LinksByName {
public:
    explicit LinksByName(std::vector<WalkedTag const*> const& links)
    {
        for (WalkedTag const* const link : links) {
            m_links[TagFields(*link).text("source name")].push_back(link);
        }
    }

    /// The links at a parameter called @p name, to the first caller who asks.
    std::vector<WalkedTag const*> take(std::string_view name)
    {
        auto const found = m_links.find(name);
        return found == m_links.end() ? std::vector<WalkedTag const*>()
                                      : std::move(m_links.extract(found).mapped());
    }

private:
    std::unordered_map<std::string_view, std::vector<WalkedTag const*>, SeededHash> m_links;
};

std::string targetText(TagFields const& link)
{
    return "-> " + asQuoted(link.text("destination name")) + " of " +
           asQuoted(link.text("destination module name"));
}

std::string channelText(TagFields const& channel)
{
    auto const number = [&channel](char const* name) { return std::to_string(channel.word(name)); };
    return (channel.word("input") != 0 ? "input channel " : "output channel ") +
           asQuoted(channel.text("name")) + ", link " + number("link index") + ", format " +
           number("format index") + ", " + number("width") + " bits, parallel " + number("parallel") +
           ", up to " + number("max width") + " x " + number("max height");
}

std::string memberText(WalkedTag const& tag)
{
    TagFields const fields(tag);
    switch (tag.id) {
    case ZUL_param::tag_id:
        return "parameter " + asQuoted(fields.text("name")) + " = " + parameterText(fields);
    case ZUL_channel_param::tag_id:
        return channelText(fields);
    case ZUL_param_link::tag_id:
        return "link " + asQuoted(fields.text("source name")) + " " + targetText(fields);
    default:
        return escaped(summaryOf(tag)); // camera and DMA channels
    }
}

class TreeWriter {
public:
    explicit TreeWriter(Session& session) : m_session(session) {}

    void tree(DesignTree const& tree)
    {
        for (ProcessNode const& process : tree.processes()) {
            TagFields const fields(*process.tag);
            heading(0, "process " + std::to_string(fields.word("process id")) + " " +
                           asQuoted(fields.text("name")) + ", clock " + std::to_string(fields.word("clock")));
            modules(process.modules);
        }
        if (!tree.strayModules().empty()) {
            heading(0, "modules of no process");
            modules(tree.strayModules());
        }
        if (!tree.strayTags().empty()) {
            heading(0, "of no module");
            for (WalkedTag const* const tag : tree.strayTags()) {
                line(1, memberText(*tag));
            }
        }
    }

private:
    void modules(std::vector<ModuleNode const*> const& modules)
    {
        for (ModuleNode const* const module : modules) {
            TagFields const fields(*module->tag);
            heading(1, "module " + std::to_string(static_cast<std::int32_t>(fields.word("module index"))) +
                           " " + asQuoted(fields.text("full name")) + ", instance " +
                           asQuoted(fields.text("instance")) + " of type " + asQuoted(fields.text("type")));
            members(*module);
        }
    }

    void members(ModuleNode const& module)
    {
        LinksByName links(module.links);
        for (WalkedTag const* const tag : module.parameters) {
            line(2, memberText(*tag));
            for (WalkedTag const* const link : links.take(TagFields(*tag).text("name"))) {
                line(3, targetText(TagFields(*link)));
            }
        }
        for (WalkedTag const* const tag : module.channels) {
            line(2, memberText(*tag));
        }
        for (WalkedTag const* const tag : module.links) { // those that begin at no parameter of the module
            for (WalkedTag const* const link : links.take(TagFields(*tag).text("source name"))) {
                line(2, memberText(*link));
            }
        }
    }

    void heading(std::size_t level, std::string const& text)
    {
        m_session.out << std::string(2 * level, ' ') << styled(m_session, Style::Bold, text) << '\n';
    }
    void line(std::size_t level, std::string const& text)
    {
        m_session.out << std::string(2 * level, ' ') << text << '\n';
    }

    Session& m_session;
};

/// All fields of a tag that are numbers or texts, and a parameter's value.
Json memberJson(WalkedTag const& tag)
{
    TagFields const fields(tag);
    Json json{{"tag", tag.index}, {"kind", kindName(tag)}};
    if (tag.id == ZUL_param::tag_id) {
        json["name"] = jsonText(fields.text("name"));
        json["type"] = fields.word("type");
        json["flags"] = fields.word("flags");
        json["value"] = parameterJson(fields);
        return json;
    }
    for (TagField const& field : fields.all()) {
        if (field.kind == FieldKind::Unsigned) {
            json[field.name] = field.number();
        } else if (field.kind == FieldKind::Signed) {
            json[field.name] = field.signedNumber();
        } else if (field.kind == FieldKind::Text) {
            json[field.name] = jsonText(charactersOf(field));
        } else if (field.kind == FieldKind::ModuleReference) {
            json[field.name] = static_cast<std::int32_t>(field.number());
        }
    }
    return json;
}

Json membersJson(std::vector<WalkedTag const*> const& tags)
{
    Json list = Json::array();
    for (WalkedTag const* const tag : tags) {
        list.push_back(memberJson(*tag));
    }
    return list;
}

Json modulesJson(std::vector<ModuleNode const*> const& modules)
{
    Json list = Json::array();
    for (ModuleNode const* const module : modules) {
        TagFields const fields(*module->tag);
        list.push_back({{"tag", module->tag->index},
                        {"index", static_cast<std::int32_t>(fields.word("module index"))},
                        {"fullName", jsonText(fields.text("full name"))},
                        {"instance", jsonText(fields.text("instance"))},
                        {"type", jsonText(fields.text("type"))},
                        {"parameters", membersJson(module->parameters)},
                        {"links", membersJson(module->links)},
                        {"channels", membersJson(module->channels)}});
    }
    return list;
}

void writeJsonTree(Session& session, std::string const& fileName, DesignTree const& tree)
{
    JsonObjectWriter json(session.out);
    json.member("schema", "zul-tree");
    json.member("version", 1);
    json.member("file", jsonText(fileName));
    json.beginList("processes");
    for (ProcessNode const& process : tree.processes()) {
        TagFields const fields(*process.tag);
        json.element({{"tag", process.tag->index},
                      {"id", fields.word("process id")},
                      {"name", jsonText(fields.text("name"))},
                      {"clock", fields.word("clock")},
                      {"modules", modulesJson(process.modules)}});
    }
    json.endList();
    json.member("modulesWithoutProcess", modulesJson(tree.strayModules()));
    json.member("tagsWithoutModule", membersJson(tree.strayTags()));
}

void showTree(Session& session, FileOptions const& options)
{
    ContainerFile const container(session, options.file);
    DesignTree const tree(container.walk);
    if (options.json) {
        writeJsonTree(session, container.file.name(), tree);
    } else {
        TreeWriter(session).tree(tree);
    }
    reportDamage(session, container.file.name(), container.walk);
}

} // namespace

void addTreeVerb(CLI::App& app, Session& session)
{
    auto const options = std::make_shared<FileOptions>();
    addFileVerb(app, "tree",
                "Show processes, their modules, and the modules' parameters with values, links and channels",
                "zul tree design.zul", *options)
        .does([&session, options] { showTree(session, *options); });
}
