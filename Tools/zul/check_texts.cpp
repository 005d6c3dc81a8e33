#include "check_rules.h"

#include "laid_out_tag.h"
#include "little_endian.h"
#include "zullib.h"

#include <algorithm>
#include <array>
#include <map>
#include <string>

namespace {

/// The texts in the fixed part of a kind of tag: those that are there without any variable part.
std::vector<std::uint64_t> fixedTextsOf(TagKind const& kind)
{
    class Offsets : public FieldVisitor {
    public:
        void field(TagField const& field) override
        {
            if (field.kind == FieldKind::Text) {
                offsets.push_back(field.offset);
            }
        }
        std::vector<std::uint64_t> offsets;
    };
    std::array<std::byte, 8> header{}; // some kinds tell their layouts apart by the id
    little_endian::write(header.data(), kind.id);
    Offsets visitor;
    kind.create(nullptr)->visit(header, visitor);
    return visitor.offsets;
}

/// Names that programs are handed in records with room for 63 characters and a terminator.
bool isHandedOutInRecord(WalkedTag const& tag)
{
    return tag.id == ZUL_param::tag_id || tag.id == ZUL_channel_param::tag_id;
}

class TextRules : public RuleSet {
public:
    using RuleSet::RuleSet;

    void tag(WalkedTag const& tag, TagFields const& fields) override
    {
        if (tag.kind == nullptr) {
            return;
        }
        auto const [known, isNew] = m_fixedTexts.try_emplace(tag.kind);
        if (isNew) {
            known->second = fixedTextsOf(*tag.kind);
        }
        for (TagField const& field : fields.all()) {
            bool const isFixed =
                std::find(known->second.begin(), known->second.end(), field.offset) != known->second.end();
            if (isFixed && field.kind == FieldKind::Text && charactersOf(field).size() == field.width) {
                fills(tag, field);
            }
        }
        if (tag.id == ZUL_register::new_tag_id) {
            registerName(tag, fields);
        } else if (tag.id == ZUL_event::tag_id) {
            eventName(tag, fields);
        }
    }

private:
    void fills(WalkedTag const& tag, TagField const& field)
    {
        std::string found = std::to_string(field.width) + " characters";
        if (isHandedOutInRecord(tag)) {
            m_findings.add(Rule::NameCutForCallers, placeOf(tag, field), "at most 63 characters",
                           std::move(found));
        } else {
            m_findings.add(Rule::TextFillsField, placeOf(tag, field),
                           "fewer than " + std::to_string(field.width) + " characters", std::move(found));
        }
    }

    void registerName(WalkedTag const& tag, TagFields const& fields)
    {
        constexpr std::size_t longestTarget = 64;
        std::size_t const length = fields.text("name").size();
        if (length > longestTarget) {
            m_findings.add(Rule::RegisterNameTooLong, placeOf(tag, fields, "name"), "at most 64 characters",
                           std::to_string(length) + " characters");
        }
    }

    void eventName(WalkedTag const& tag, TagFields const& fields)
    {
        constexpr std::uint64_t lengthOfNameTooLong = 16 + 256;
        bool const wasTooLong =
            tag.statedLength == lengthOfNameTooLong + fields.number("register name length");
        if (fields.text("name").empty() && fields.find("name length") != nullptr && !wasTooLong) {
            m_findings.add(Rule::EventWithoutName, placeOf(tag, fields, "name length"), "a name", "none");
        }
    }

    std::map<TagKind const*, std::vector<std::uint64_t>> m_fixedTexts;
};

} // namespace

std::unique_ptr<RuleSet> makeTextRules(Findings& findings)
{
    return std::make_unique<TextRules>(findings);
}
