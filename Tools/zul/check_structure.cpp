#include "check_rules.h"

#include "input.h"
#include "little_endian.h"
#include "text_output.h"
#include "zullib.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>

namespace {

FieldPlace headPlace(std::uint64_t offset, char const* field)
{
    return {Finding::noTag, offset, field};
}

/// The problems of a layout, one for the length at most: a tag that is too short for its fixed part also contradicts
/// what its layout adds up to, and the latter says more.
void addProblems(TagFields const& fields, std::size_t tag, std::uint64_t tagOffset, bool lengthIsKnownBad,
                 Findings& findings)
{
    constexpr std::uint64_t lengthOffset = 4;
    TagProblem const* lastOfLength = nullptr;
    for (TagProblem const& problem : fields.problems()) {
        if (problem.offset == lengthOffset) {
            lastOfLength = &problem;
            continue;
        }
        findings.add(Rule::BadValue, {tag, tagOffset + problem.offset, problem.field}, problem.expected,
                     problem.found);
    }
    if (lastOfLength != nullptr && !lengthIsKnownBad) {
        findings.add(Rule::BadLength, {tag, tagOffset + lengthOffset, lastOfLength->field},
                     lastOfLength->expected, lastOfLength->found);
    }
}

/// What a tag says of itself and what makes it one too many.
class LayoutRules : public RuleSet {
public:
    LayoutRules(Walk const& walk, Findings& findings) : RuleSet(findings), m_walk(walk) {}

    void tag(WalkedTag const& tag, TagFields const& fields) override
    {
        bool const stopsWalk = m_walk.end == WalkEnd::BadLength && tag.index + 1 == m_walk.tags.size();
        if (stopsWalk) {
            lengthStopsWalk(tag);
        }
        if (isLongNamedEvent(tag, fields)) {
            return m_findings.add(Rule::EventNameTooLong, placeOf(tag, fields, "name length"), "at most 255",
                                  "256");
        }
        addProblems(fields, tag.index, tag.offset, stopsWalk, m_findings);
        if (tag.kind == nullptr && !stopsWalk) {
            m_findings.add(Rule::UnknownTag, {tag.index, tag.offset, "tag id"},
                           "the id of a kind of the format",
                           asHex(tag.id) + ", which takes " + std::to_string(tag.length) +
                               " bytes and states " + std::to_string(tag.statedLength));
        }
        single(tag, fields);
    }

private:
    void lengthStopsWalk(WalkedTag const& tag)
    {
        FieldPlace const place{tag.index, tag.offset + 4, "length"};
        std::string const found = std::to_string(tag.statedLength);
        if (tag.statedLength > tag.length) {
            m_findings.add(Rule::LengthOverEnd, place, "at most " + std::to_string(tag.length), found);
        } else {
            m_findings.add(Rule::LengthBelowHeader, place, "at least 8", found);
        }
    }

    static bool isLongNamedEvent(WalkedTag const& tag, TagFields const& fields)
    {
        constexpr std::uint64_t fixedPartAndName = 16 + 256;
        return tag.id == ZUL_event::tag_id && fields.find("name length") != nullptr &&
               fields.number("name length") == 0 &&
               tag.statedLength == fixedPartAndName + fields.number("register name length");
    }

    void single(WalkedTag const& tag, TagFields const& fields)
    {
        FieldPlace const place{tag.index, tag.offset, "tag id"};
        switch (tag.id) {
        case ZUL_multi_head::tag_id:
            return m_findings.add(Rule::SecondHead, place, "a head at the beginning only", "another head");
        case ZUL_author::tag_id:
        case ZUL_design_name::tag_id:
            if (!m_singles.insert(tag.id).second) {
                m_findings.add(Rule::SecondSingle, place, "at most one", "another one");
            }
            return;
        case ZUL_design_version::tag_id:
            if (!m_singles.insert(tag.id).second) {
                m_findings.add(Rule::ReplacedVersion, place, "at most one design version", "another one");
            }
            return;
        case ZUL_design_version_nr::tag_id:
            versionNumber(placeOf(tag, fields, "index"), fields.number("index"));
            return;
        default:
            return;
        }
    }

    void versionNumber(FieldPlace const& place, std::uint64_t index)
    {
        if (!m_versionIndices.insert(index).second) {
            m_findings.add(Rule::ReplacedVersion, place, "an index of its own", std::to_string(index));
        }
    }

    Walk const& m_walk;
    std::set<std::uint32_t> m_singles;
    std::set<std::uint64_t> m_versionIndices; // at most 256
};

/// How many tags a load files and counts, second libraries of a name included.
std::uint64_t countedTags(Walk const& walk)
{
    std::uint64_t count = 0;
    bool hasVersion = false;
    std::set<std::uint64_t> versionIndices;
    for (WalkedTag const& tag : walk.tags) {
        if (tag.id == ZUL_design_version::tag_id) {
            count += std::exchange(hasVersion, true) ? 0U : 1U;
        } else if (tag.id == ZUL_design_version_nr::tag_id) {
            count += versionIndices.insert(TagFields(tag).number("index")).second ? 1U : 0U;
        } else if (tag.id != ZUL_multi_data::tag_id) {
            ++count;
        }
    }
    return count;
}

void checkCounts(Walk const& walk, TagFields const& head, Findings& findings)
{
    std::uint64_t const tags = countedTags(walk);
    auto const configs = static_cast<std::uint64_t>(
        std::count_if(walk.tags.begin(), walk.tags.end(),
                      [](WalkedTag const& tag) { return tag.id == ZUL_multi_data::tag_id; }));
    auto const compare = [&](Rule rule, char const* field, std::uint64_t there) {
        if (head.number(field) != there) {
            findings.add(rule, headPlace(head.find(field)->offset, field), std::to_string(there),
                         std::to_string(head.number(field)));
        }
    };
    compare(Rule::TagCountDiffers, "tag count", tags);
    compare(Rule::ConfigCountDiffers, "config count", configs);
}

void checkRest(Walk const& walk, Findings& findings)
{
    auto const rest = walk.file.subspan(walk.endOffset);
    bool const isPadding =
        std::all_of(rest.begin(), rest.end(), [](std::byte b) { return b == std::byte{0}; });
    if (!rest.empty()) {
        findings.add(isPadding ? Rule::Padding : Rule::IgnoredBytes,
                     headPlace(walk.endOffset, "end of the file"), "nothing", counted(rest.size(), "byte"));
    }
}

} // namespace

void checkStructure(Walk const& walk, Findings& findings)
{
    if (walk.end == WalkEnd::NoContainer) {
        bool const isShort = walk.head.size() < 24;
        findings.add(Rule::NotAContainer, headPlace(0, "tag id"), "24 bytes that begin with 0x4b4f564d",
                     isShort ? std::to_string(walk.head.size()) + " bytes"
                             : asHex(little_endian::read<std::uint32_t>(walk.head.data())));
        return;
    }
    TagFields const head = TagFields::ofHead(walk.head);
    addProblems(head, Finding::noTag, 0, false, findings);
    if (std::uint64_t const seen = sizeSeenByLoad(walk.file.size()); seen != walk.file.size()) {
        findings.add(Rule::LargerThanLoaded, headPlace(0, "size of the file"), "less than 128 MiB",
                     std::to_string(walk.file.size()) + " bytes, of which a load sees " +
                         std::to_string(seen));
    }
    if (walk.end != WalkEnd::BadLength) {
        checkCounts(walk, head, findings);
        checkRest(walk, findings);
    }
}

std::unique_ptr<RuleSet> makeLayoutRules(Walk const& walk, Findings& findings)
{
    return std::make_unique<LayoutRules>(walk, findings);
}
