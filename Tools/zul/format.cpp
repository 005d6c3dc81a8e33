#include "json_output.h"
#include "tag_fields.h"
#include "tag_kinds.h"
#include "text_output.h"
#include "verb.h"

#include <cstring>
#include <map>
#include <memory>
#include <ostream>
#include <set>

namespace {

/// One field of a kind as the reference names it.
struct FormatRow {
    std::string offset;
    std::string width;
    std::string type;
    std::string name;
};

/// Values of fields that decide which other fields a tag has.
struct Variant {
    std::uint32_t id;
    char const* field;
    std::uint32_t value;
};

constexpr Variant variants[] = {{0x815A000, "type", 6}, {0x815A000, "type", 13}};

char const* typeName(TagField const& field)
{
    switch (field.kind) {
    case FieldKind::Signed:
        return "signed";
    case FieldKind::Real:
        return "double";
    case FieldKind::Text:
        return "text";
    case FieldKind::RegisterReference:
        return "text, names an earlier register";
    case FieldKind::ProcessReference:
        return "unsigned, id of an earlier process";
    case FieldKind::ModuleReference:
        return "unsigned, index of an earlier module";
    case FieldKind::TailLength:
        return "unsigned, size of a variable part";
    case FieldKind::Bytes:
        return "bytes";
    case FieldKind::Zero:
        return "written as zero, ignored when read";
    case FieldKind::MustBeZero:
        return "zero, refused otherwise";
    case FieldKind::Reserved:
        return "neither written nor read";
    default:
        return "unsigned";
    }
}

/// A tag of a kind whose variable parts have one byte each: every field that there can be shows itself.
class Specimen {
public:
    explicit Specimen(TagKind const& kind) : m_kind(kind), m_bytes(512)
    {
        setWord(0, kind.id);
        setWord(4, static_cast<std::uint32_t>(m_bytes.size()));
    }

    void set(Variant const& variant)
    {
        for (TagField const& field : fields()) {
            if (std::strcmp(field.name, variant.field) == 0) {
                setWord(field.offset, variant.value);
            }
        }
    }

    void fillTails()
    {
        for (TagField const& field : fields()) {
            if (field.kind == FieldKind::TailLength) {
                m_bytes[field.offset] = std::byte{1};
            }
        }
    }

    std::vector<TagField> fields()
    {
        WalkedTag tag;
        tag.kind = &m_kind;
        tag.id = m_kind.id;
        tag.bytes = m_bytes;
        return TagFields(tag).all();
    }

private:
    void setWord(std::uint64_t offset, std::uint32_t value)
    {
        std::memcpy(&m_bytes[offset], &value, sizeof value);
    }

    TagKind const& m_kind;
    std::vector<std::byte> m_bytes;
};

/// Where the parts of variable size begin.
std::uint64_t fixedPart(std::vector<TagField> const& fields)
{
    std::uint64_t end = 0;
    for (TagField const& field : fields) {
        bool const isTail = field.kind == FieldKind::Bytes;
        end = isTail ? end : std::max(end, field.offset + field.width);
    }
    return end;
}

/// The fields of @p kind in the order of their offsets; those of each variant once.
std::vector<FormatRow> rowsOf(TagKind const& kind)
{
    std::uint64_t const end = fixedPart(Specimen(kind).fields());
    std::map<std::uint64_t, FormatRow> fixed;
    std::vector<FormatRow> tails;
    std::set<std::string> seen;
    auto const collect = [&](Specimen specimen) {
        specimen.fillTails();
        for (TagField const& field : specimen.fields()) {
            if (field.offset < end) {
                fixed[field.offset] = {std::to_string(field.offset), std::to_string(field.width),
                                       typeName(field), field.name};
            } else if (seen.insert(field.name).second) {
                tails.push_back({std::to_string(end) + (tails.empty() ? "" : "+"), "variable",
                                 typeName(field), field.name});
            }
        }
    };
    collect(Specimen(kind));
    for (Variant const& variant : variants) {
        if (variant.id == kind.id) {
            Specimen specimen(kind);
            specimen.set(variant);
            collect(specimen);
        }
    }
    std::vector<FormatRow> rows;
    rows.reserve(fixed.size() + tails.size());
    for (auto const& [offset, row] : fixed) {
        rows.push_back(row);
    }
    rows.insert(rows.end(), tails.begin(), tails.end());
    return rows;
}

void writeMarkdown(Session& session)
{
    session.out
        << "# The format, field by field\n\n"
           "Printed by `zul format --markdown` from the layouts that the library loads and saves by; a test "
           "compares.\nOffsets and widths are in bytes, from the first byte of the tag's header. Numbers are "
           "little-endian. Parts of\nvariable size lie back to back behind the fixed part, in the order in "
           "which they are listed.\n";
    for (TagKind const& kind : tagKinds()) {
        session.out << "\n## " << asHex(kind.id) << ' ' << kind.meaning << " (`" << kind.className << "`)\n\n"
                    << "| offset | width | type | field |\n|---|---|---|---|\n";
        for (FormatRow const& row : rowsOf(kind)) {
            session.out << "| " << row.offset << " | " << row.width << " | " << row.type << " | " << row.name
                        << " |\n";
        }
    }
}

void writeTables(Session& session)
{
    for (TagKind const& kind : tagKinds()) {
        session.out << styled(session, Style::Bold, asHex(kind.id) + ' ' + kind.meaning) << '\n';
        Table table({"offset", "width", "type", "field"});
        for (FormatRow const& row : rowsOf(kind)) {
            table.row({row.offset, row.width, row.type, row.name});
        }
        table.print(session, "  ");
        session.out << '\n';
    }
}

void writeJsonFormat(Session& session)
{
    Json kinds = Json::array();
    for (TagKind const& kind : tagKinds()) {
        Json fields = Json::array();
        for (FormatRow const& row : rowsOf(kind)) {
            fields.push_back(
                {{"offset", row.offset}, {"width", row.width}, {"type", row.type}, {"name", row.name}});
        }
        kinds.push_back(
            {{"id", kind.id}, {"class", kind.className}, {"kind", kind.meaning}, {"fields", fields}});
    }
    writeJson(session.out, {{"schema", "zul-format"}, {"version", 1}, {"kinds", kinds}});
}

} // namespace

void addFormatVerb(CLI::App& app, Session& session)
{
    struct Options {
        bool markdown = false;
        bool json = false;
    };
    auto const options = std::make_shared<Options>();
    Verb const verb(app, "format", "Print the layout of every tag kind, field by field", "zul format");
    Argument const markdown = verb.flag("--markdown", options->markdown, "Print docs/format.md");
    verb.flag("--json", options->json, "Print JSON").excludes(markdown);
    verb.does([&session, options] {
        if (options->markdown) {
            writeMarkdown(session);
        } else if (options->json) {
            writeJsonFormat(session);
        } else {
            writeTables(session);
        }
    });
}
