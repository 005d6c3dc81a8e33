#include "check_rules.h"

#include "seeded_hash.h"
#include "zullib.h"

#include <string>
#include <unordered_map>
#include <utility>

namespace {

/// The numbers by which tags of one kind are found, and those who ask for a number that was not seen yet.
class Targets {
public:
    /// @return whether @p number is new
    bool define(std::uint32_t number, std::size_t tag) { return m_first.try_emplace(number, tag).second; }
    std::size_t const* find(std::uint32_t number) const
    {
        auto const found = m_first.find(number);
        return found == m_first.end() ? nullptr : &found->second;
    }

private:
    std::unordered_map<std::uint32_t, std::size_t, SeededHash> m_first;
};

class ReferenceRules : public RuleSet {
public:
    using RuleSet::RuleSet;

    void tag(WalkedTag const& tag, TagFields const& fields) override
    {
        for (TagField const& field : fields.all()) {
            if (field.kind == FieldKind::ProcessReference) {
                refer(m_processes, "an earlier process", placeOf(tag, field), field);
            } else if (field.kind == FieldKind::ModuleReference) {
                refer(m_modules, "an earlier module", placeOf(tag, field), field);
            }
        }
        if (tag.id == ZUL_process::tag_id) {
            define(m_processes, Rule::ProcessIdTwice, tag, fields, "process id");
        } else if (tag.id == ZUL_module::tag_id) {
            define(m_modules, Rule::ModuleIndexTwice, tag, fields, "module index");
        }
    }

    void end() override
    {
        for (Unresolved const& each : m_unresolved) {
            std::size_t const* const later = each.targets->find(each.number);
            std::string found = std::to_string(each.number);
            if (later == nullptr) {
                m_findings.add(Rule::ReferenceToNothing, each.place, each.expected, std::move(found));
            } else {
                m_findings.add(Rule::ReferenceBeforeTarget, each.place, each.expected,
                               found + ", which is tag " + std::to_string(*later));
            }
        }
    }

private:
    struct Unresolved {
        Targets const* targets;
        char const* expected;
        FieldPlace place;
        std::uint32_t number;
    };

    void refer(Targets const& targets, char const* expected, FieldPlace const& place, TagField const& field)
    {
        auto const number = static_cast<std::uint32_t>(field.number());
        if (field.bytes.size() == field.width && targets.find(number) == nullptr) {
            m_unresolved.push_back({&targets, expected, place, number});
        }
    }

    void define(Targets& targets, Rule twice, WalkedTag const& tag, TagFields const& fields, char const* name)
    {
        TagField const* const field = fields.find(name);
        if (field != nullptr && !targets.define(fields.word(name), tag.index)) {
            m_findings.add(twice, placeOf(tag, *field), "a number of its own",
                           std::to_string(fields.word(name)));
        }
    }

    Targets m_processes;
    Targets m_modules;
    std::vector<Unresolved> m_unresolved;
};

} // namespace

std::unique_ptr<RuleSet> makeReferenceRules(Findings& findings)
{
    return std::make_unique<ReferenceRules>(findings);
}
