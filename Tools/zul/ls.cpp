#include "byte_ranges.h"
#include "damage.h"
#include "input.h"
#include "json_output.h"
#include "text_output.h"
#include "verb.h"

#include <ostream>

namespace {

std::string headSummary(Walk const& walk)
{
    TagFields const head = TagFields::ofHead(walk.head);
    return "announces " + counted(head.word("tag count"), "tag") + " and " +
           counted(head.word("config count"), "configuration") + ", version " +
           std::to_string(head.word("version"));
}

/// Lines in columns whose widths are known before the first line: nothing has to be kept.
class Listing {
public:
    Listing(Session& session, Walk const& walk)
        : m_session(session),
          m_numberWidth(std::max<std::size_t>(10, std::to_string(walk.file.size()).size()))
    {
        for (TagKind const& kind : tagKinds()) {
            m_kindWidth = std::max(m_kindWidth, std::string_view(kind.meaning).size());
        }
        m_session.out << styled(session, Style::Bold,
                                line("index", "offset", "length", "id", "kind", "summary"))
                      << '\n';
    }

    void tag(std::string const& index, std::uint64_t offset, std::uint64_t length, std::uint32_t id,
             char const* kind, std::string const& summary)
    {
        m_session.out << line(index, asHex(offset), std::to_string(length), asHex(id), kind, escaped(summary))
                      << '\n';
    }
    void trailing(ByteRange const& range)
    {
        m_session.out << styled(m_session, Style::Faint,
                                line("-", asHex(range.field.offset), std::to_string(range.field.width), "-",
                                     "-", "not read by a load"))
                      << '\n';
    }

private:
    std::string line(std::string_view index, std::string_view offset, std::string_view length,
                     std::string_view id, std::string_view kind, std::string_view summary) const
    {
        return padded(index, m_numberWidth) + "  " + padded(offset, m_numberWidth) + "  " +
               padded(length, m_numberWidth) + "  " + padded(id, 10) + "  " + padded(kind, m_kindWidth) +
               "  " + std::string(summary);
    }

    Session& m_session;
    std::size_t m_numberWidth;
    std::size_t m_kindWidth = 0;
};

void writeTable(Session& session, Walk const& walk)
{
    TagFields const head = TagFields::ofHead(walk.head);
    Listing listing(session, walk);
    listing.tag("head", 0, head.word("length"), head.word("tag id"), "container head", headSummary(walk));
    for (WalkedTag const& tag : walk.tags) {
        listing.tag(std::to_string(tag.index), tag.offset, tag.statedLength, tag.id, kindName(tag),
                    summaryOf(tag));
    }
    ByteRange const trailing = trailingRange(walk);
    if (trailing.field.width != 0) {
        listing.trailing(trailing);
    }
}

Json tagJson(WalkedTag const& tag)
{
    return {{"index", tag.index},
            {"offset", tag.offset},
            {"length", tag.length},
            {"statedLength", tag.statedLength},
            {"id", tag.id},
            {"kind", kindName(tag)},
            {"summary", jsonText(summaryOf(tag))}};
}

void writeJsonList(Session& session, ContainerFile const& container)
{
    Walk const& walk = container.walk;
    ByteRange const trailing = trailingRange(walk);
    JsonObjectWriter json(session.out);
    json.member("schema", "zul-ls");
    json.member("version", 1);
    json.member("file", jsonText(container.file.name()));
    json.member("size", walk.file.size());
    json.member("head", {{"offset", 0}, {"length", walk.head.size()}, {"summary", headSummary(walk)}});
    json.beginList("tags");
    for (WalkedTag const& tag : walk.tags) {
        json.element(tagJson(tag));
    }
    json.endList();
    json.member("trailing", {{"offset", trailing.field.offset}, {"length", trailing.field.width}});
}

void list(Session& session, FileOptions const& options)
{
    ContainerFile const container(session, options.file);
    if (options.json) {
        writeJsonList(session, container);
    } else {
        writeTable(session, container.walk);
    }
    reportDamage(session, container.file.name(), container.walk);
}

} // namespace

void addLsVerb(CLI::App& app, Session& session)
{
    auto const options = std::make_shared<FileOptions>();
    addFileVerb(app, "ls", "List every tag in file order: index, offset, length, id, kind, one-line summary",
                "zul ls design.zul", *options)
        .does([&session, options] { list(session, *options); });
}
