#include "damage.h"
#include "field_json.h"
#include "input.h"
#include "verb.h"

namespace {

struct DumpOptions : FileOptions {
    bool payload = false;
};

char const* nameOf(WalkEnd end) noexcept
{
    switch (end) {
    case WalkEnd::Complete:
        return "complete";
    case WalkEnd::NoContainer:
        return "no container";
    case WalkEnd::UnknownTag:
        return "unknown tag";
    case WalkEnd::BadLength:
        return "bad length";
    }
    return "";
}

Json fieldsJson(std::vector<ByteRange> const& ranges, Payload payload)
{
    Json list = Json::array();
    for (ByteRange const& range : ranges) {
        list.push_back(fieldJson(range, payload));
    }
    return list;
}

Json tagJson(WalkedTag const& tag, Payload payload)
{
    bool const isKnown = tag.kind != nullptr;
    return {{"index", tag.index},
            {"offset", tag.offset},
            {"length", tag.length},
            {"id", tag.id},
            {"kind", kindName(tag)},
            {"class", isKnown ? tag.kind->className : "ZUL_binary_data"},
            {"fields", fieldsJson(rangesOf(tag), payload)},
            {"problems", problemsJson(TagFields(tag))}};
}

void dump(Session& session, DumpOptions const& options)
{
    InputFile const file(options.file);
    Walk const walk = walkContainer(file.bytes());
    Payload const payload = options.payload ? Payload::Base64 : Payload::Digest;
    {
        JsonObjectWriter json(session.out);
        json.member("schema", "zul-dump");
        json.member("version", 1);
        json.member("file", {{"name", jsonText(file.name())},
                             {"size", file.bytes().size()},
                             {"sha256", sha256Text(file.bytes())}});
        json.member("walk", {{"end", nameOf(walk.end)}, {"offset", walk.endOffset}});
        json.member("head", {{"offset", 0},
                             {"length", walk.head.size()},
                             {"fields", fieldsJson(rangesOfHead(walk.head), payload)},
                             {"problems", problemsJson(TagFields::ofHead(walk.head))}});
        json.beginList("tags");
        for (WalkedTag const& tag : walk.tags) {
            json.element(tagJson(tag, payload));
        }
        json.endList();
        json.member("trailing", fieldJson(trailingRange(walk), payload));
    }
    warnOfPartialLoad(session, file);
    reportDamage(session, file.name(), walk);
}

} // namespace

void addDumpVerb(CLI::App& app, Session& session)
{
    auto const options = std::make_shared<DumpOptions>();
    Verb const verb = addFileVerb(app, "dump",
                                  "Write everything as JSON, every field of every tag in file order; "
                                  "payloads as length and SHA-256. --json is understood and changes nothing",
                                  "zul dump --payload design.zul > design.json", *options);
    verb.flag("--payload", options->payload, "Write payloads whole, in base64");
    verb.does([&session, options] { dump(session, *options); });
}
