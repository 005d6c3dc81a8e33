#include "damage.h"
#include "field_json.h"
#include "field_text.h"
#include "input.h"
#include "text_output.h"
#include "verb.h"

#include <charconv>
#include <ostream>

namespace {

constexpr std::size_t bytesPerLine = 16;
constexpr std::size_t longestWhole = 64; // longer fields are folded
constexpr std::size_t shownOfFolded = 32;

struct HexOptions : FileOptions {
    std::string tag;
    bool full = false;
};

/// One piece of a file under one heading.
struct Section {
    std::string tag; ///< "head", the tag's index, "trailing"
    std::string heading;
    std::uint64_t offset; ///< what the ranges' offsets count from
    std::vector<ByteRange> ranges;
};

std::string printable(std::span<std::byte const> bytes)
{
    std::string text;
    for (std::byte const byte : bytes) {
        auto const c = std::to_integer<unsigned char>(byte);
        text += c >= 0x20 && c < 0x7F ? static_cast<char>(c) : '.';
    }
    return text;
}

std::string position(std::uint64_t offset)
{
    std::string const digits = asHex(offset).substr(2);
    return std::string(8 - std::min<std::size_t>(8, digits.size()), '0') + digits;
}

class HexWriter {
public:
    HexWriter(Session& session, bool full) : m_session(session), m_full(full) {}

    void section(Section const& section)
    {
        m_session.out << styled(m_session, Style::Bold, section.heading) << '\n';
        for (ByteRange const& range : section.ranges) {
            writeRange(range, section.offset + range.field.offset);
        }
    }

private:
    void writeRange(ByteRange const& range, std::uint64_t offset)
    {
        std::span<std::byte const> const bytes = range.field.bytes;
        bool const isFolded = !m_full && bytes.size() > longestWhole;
        std::size_t const shown = isFolded ? shownOfFolded : bytes.size();
        Style const style = styleOf(range);
        std::size_t done = 0;
        do {
            auto const part = bytes.subspan(done, std::min(bytesPerLine, shown - done));
            line(offset + done, part, style, done == 0 ? annotation(range, m_full) : "");
            done += bytesPerLine;
        } while (done < shown);
        if (isFolded) {
            m_session.out << styled(m_session, Style::Faint,
                                    "  ...       " + std::to_string(bytes.size() - shown) +
                                        " more bytes, shown with --full")
                          << '\n';
        }
    }

    void line(std::uint64_t offset, std::span<std::byte const> bytes, Style style, std::string const& note)
    {
        std::string text = "  " + position(offset) + "  " + padded(hexBytes(bytes), 3 * bytesPerLine - 1) +
                           "  |" + printable(bytes) + "|";
        if (!note.empty()) {
            text = padded(text, 79) + "  " + note;
        }
        m_session.out << styled(m_session, style, text) << '\n';
    }

    static Style styleOf(ByteRange const& range)
    {
        if (range.owner != Owner::Field) {
            return Style::Attention;
        }
        bool const isComplete = range.field.bytes.size() == range.field.width;
        return !isComplete ? Style::Alarm : isFiller(range.field.kind) ? Style::Faint : Style::Plain;
    }

    Session& m_session;
    bool m_full;
};

Section headSection(Walk const& walk)
{
    return {"head", "head at 0x0: container head, " + counted(walk.head.size(), "byte"), 0,
            rangesOfHead(walk.head)};
}

Section tagSection(WalkedTag const& tag)
{
    return {std::to_string(tag.index),
            "tag " + std::to_string(tag.index) + " at " + asHex(tag.offset) + ": " + kindName(tag) + " (" +
                asHex(tag.id) + "), " + counted(tag.length, "byte"),
            tag.offset, rangesOf(tag)};
}

Section trailingSection(Walk const& walk)
{
    ByteRange const range = trailingRange(walk);
    std::string const heading =
        "behind the last tag at " + asHex(range.field.offset) + ": " + counted(range.field.width, "byte");
    return {"trailing", heading, 0, {range}};
}

/// The tag that the user asks for; null for the head.
/// @throws Failure NotFound or Usage
WalkedTag const* soughtTag(Walk const& walk, std::string const& text)
{
    if (text == "head") {
        return nullptr;
    }
    std::size_t index = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), index);
    if (end != text.data() + text.size() || error == std::errc::invalid_argument) {
        throw Failure(ExitCode::Usage, "TAG is 'head' or the index of a tag, not '" + text + "'");
    }
    if (error != std::errc() || index >= walk.tags.size()) {
        throw Failure(ExitCode::NotFound,
                      "no tag " + text + ": there are " + counted(walk.tags.size(), "tag"));
    }
    return &walk.tags[index];
}

/// Hands the sections that were asked for to @p take, one at a time.
template <class Take>
void forEachSection(Walk const& walk, std::string const& tag, Take take)
{
    if (!tag.empty()) {
        WalkedTag const* const sought = soughtTag(walk, tag);
        take(sought == nullptr ? headSection(walk) : tagSection(*sought));
        return;
    }
    take(headSection(walk));
    for (WalkedTag const& each : walk.tags) {
        take(tagSection(each));
    }
    if (trailingRange(walk).field.width != 0) {
        take(trailingSection(walk));
    }
}

Json sectionRangeJson(Section const& section, ByteRange const& range, bool full)
{
    bool const isLong = !full && range.field.bytes.size() > longestWhole;
    Json json = Json::object();
    json["tag"] = section.tag;
    json.update(fieldJson(range, isLong ? Payload::Digest : Payload::Hex));
    json["offset"] = section.offset + range.field.offset;
    if (!isLong) {
        json["hex"] = hexText(range.field.bytes);
    }
    return json;
}

void writeSections(Session& session, InputFile const& file, Walk const& walk, HexOptions const& options)
{
    if (!options.tag.empty()) {
        soughtTag(walk, options.tag); // refuses before anything is written
    }
    if (!options.json) {
        HexWriter writer(session, options.full);
        forEachSection(walk, options.tag, [&writer](Section const& section) { writer.section(section); });
        return;
    }
    JsonObjectWriter json(session.out);
    json.member("schema", "zul-hex");
    json.member("version", 1);
    json.member("file", jsonText(file.name()));
    json.beginList("ranges");
    forEachSection(walk, options.tag, [&](Section const& section) {
        for (ByteRange const& range : section.ranges) {
            json.element(sectionRangeJson(section, range, options.full));
        }
    });
    json.endList();
}

void showBytes(Session& session, HexOptions const& options)
{
    InputFile const file(options.file);
    Walk const walk = walkContainer(file.bytes());
    writeSections(session, file, walk, options);
    warnOfPartialLoad(session, file);
    WalkedTag const* const sought = options.tag.empty() ? nullptr : soughtTag(walk, options.tag);
    if (sought != nullptr) {
        reportDamage(session, file.name(), walk, {sought, 1});
    } else {
        reportDamage(session, file.name(), walk);
    }
}

} // namespace

void addHexVerb(CLI::App& app, Session& session)
{
    auto const options = std::make_shared<HexOptions>();
    Verb const verb = addFileVerb(
        app, "hex", "Show the bytes of a file, or of one tag, and the field that each of them belongs to",
        "zul hex design.zul 12", *options);
    verb.option("TAG", options->tag, "Index of a tag, or head");
    verb.flag("--full", options->full, "Show long fields whole");
    verb.does([&session, options] { showBytes(session, *options); });
}
