#include "check_rules.h"

#include "seeded_hash.h"
#include "zullib.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace {

/// What belongs to the modules of one index.
struct Members {
    std::uint32_t parameters = 0;
    std::uint32_t channels = 0;
    std::unordered_set<std::string_view, SeededHash> names; // of the parameters
};

class ParameterRules : public RuleSet {
public:
    using RuleSet::RuleSet;

    void tag(WalkedTag const& tag, TagFields const& fields) override
    {
        switch (tag.id) {
        case ZUL_module::tag_id:
            return module(tag, fields);
        case ZUL_param::tag_id:
            if (fields.find("module index") != nullptr) {
                Members& members = m_members[fields.word("module index")];
                ++members.parameters;
                members.names.insert(fields.text("name"));
            }
            return;
        case ZUL_channel_param::tag_id:
            if (fields.find("module index") != nullptr) {
                ++m_members[fields.word("module index")].channels;
            }
            return;
        case ZUL_param_link::tag_id:
            return link(tag, fields);
        default:
            return;
        }
    }

    void end() override
    {
        for (Count const& count : m_counts) {
            Members const& members = m_members[count.module];
            std::uint32_t const there =
                count.rule == Rule::ParameterCountDiffers ? members.parameters : members.channels;
            if (count.stated != 0 && count.stated != there) {
                m_findings.add(count.rule, count.place, std::to_string(there), std::to_string(count.stated));
            }
        }
        for (Link const& each : m_links) {
            check(each);
        }
    }

private:
    struct Count {
        Rule rule;
        std::uint32_t module;
        std::uint32_t stated;
        FieldPlace place;
    };
    struct Link {
        std::string_view module;
        std::string_view parameter;
        FieldPlace modulePlace;
        FieldPlace parameterPlace;
    };

    void module(WalkedTag const& tag, TagFields const& fields)
    {
        std::uint32_t const index = fields.word("module index");
        m_counts.push_back({Rule::ParameterCountDiffers, index, fields.word("parameter count"),
                            placeOf(tag, fields, "parameter count")});
        m_counts.push_back({Rule::ChannelCountDiffers, index, fields.word("channel count"),
                            placeOf(tag, fields, "channel count")});
        if (fields.find("full name") != nullptr) {
            m_fullNames.try_emplace(fields.text("full name"), index);
        }
    }

    void link(WalkedTag const& tag, TagFields const& fields)
    {
        if (fields.find("destination module name") != nullptr) {
            m_links.push_back({fields.text("destination module name"), fields.text("destination name"),
                               placeOf(tag, fields, "destination module name"),
                               placeOf(tag, fields, "destination name")});
        }
    }

    void check(Link const& link)
    {
        auto const module = m_fullNames.find(link.module);
        if (module == m_fullNames.end()) {
            m_findings.add(Rule::LinkModuleUnknown, link.modulePlace, "the full name of a module",
                           inQuotes(link.module));
        } else if (!link.parameter.empty() && !m_members[module->second].names.contains(link.parameter)) {
            m_findings.add(Rule::LinkParameterUnknown, link.parameterPlace,
                           "the name of a parameter of " + inQuotes(link.module), inQuotes(link.parameter));
        }
    }

    std::unordered_map<std::uint32_t, Members, SeededHash> m_members;
    std::unordered_map<std::string_view, std::uint32_t, SeededHash>
        m_fullNames; // of the first module with the name
    std::vector<Count> m_counts;
    std::vector<Link> m_links;
};

} // namespace

std::unique_ptr<RuleSet> makeParameterRules(Findings& findings)
{
    return std::make_unique<ParameterRules>(findings);
}
