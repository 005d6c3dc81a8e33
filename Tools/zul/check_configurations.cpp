#include "check_rules.h"

#include "fpga_types.h"
#include "text_output.h"
#include "zullib.h"

#include <array>
#include <optional>
#include <string>

namespace {

// What the settings block of a design has room for.
constexpr std::uint32_t settingsChannels = 4;
constexpr std::uint32_t settingsQueues = 8;

class ConfigurationRules : public RuleSet {
public:
    using RuleSet::RuleSet;

    void tag(WalkedTag const& tag, TagFields const& fields) override
    {
        switch (tag.id) {
        case ZUL_destination::tag_id:
            return destination(tag, fields);
        case ZUL_multi_data::tag_id:
            return configuration(tag, fields);
        case ZUL_dmacnt_register::tag_id:
        case ZUL_dmatag_register::tag_id:
            return within(settingsChannels, Rule::ChannelOutsideSettings, tag, fields, "channel");
        case ZUL_usrintqueue_read::tag_id:
        case ZUL_usrintqueue_write::tag_id:
            return within(settingsQueues, Rule::QueueOutsideSettings, tag, fields, "queue number");
        default:
            return;
        }
    }

    void end() override
    {
        for (Unbound const& each : m_unbound) {
            if (auto const& destination = m_destinations.at(each.index)) {
                m_findings.add(Rule::LateDestination, each.place, "an earlier destination",
                               "index " + std::to_string(each.index) + ", whose destination is tag " +
                                   std::to_string(*destination));
            }
        }
    }

private:
    struct Unbound {
        std::uint32_t index;
        FieldPlace place;
    };

    void destination(WalkedTag const& tag, TagFields const& fields)
    {
        auto& first = m_destinations.at(fields.word("index"));
        if (!first && fields.find("index") != nullptr) {
            first = tag.index;
        }
    }

    void configuration(WalkedTag const& tag, TagFields const& fields)
    {
        std::uint32_t const index = fields.word("config index");
        if (fields.find("config index") != nullptr && index < m_destinations.size() &&
            !m_destinations.at(index)) {
            m_unbound.push_back({index, placeOf(tag, fields, "config index")});
        }
        if (fields.find("fpga type") != nullptr &&
            FPGAtype2RBTstring(static_cast<int>(fields.word("fpga type"))) == nullptr) {
            m_findings.add(Rule::UnknownFpgaType, placeOf(tag, fields, "fpga type"), "a type of the table",
                           asHex(fields.word("fpga type")));
        }
    }

    void within(std::uint32_t end, Rule rule, WalkedTag const& tag, TagFields const& fields, char const* name)
    {
        if (fields.number(name) >= end) {
            m_findings.add(rule, placeOf(tag, fields, name), "at most " + std::to_string(end - 1),
                           std::to_string(fields.number(name)));
        }
    }

    std::array<std::optional<std::size_t>, 256> m_destinations{}; // the first tag by index, which has 8 bits
    std::vector<Unbound> m_unbound;
};

} // namespace

std::unique_ptr<RuleSet> makeConfigurationRules(Findings& findings)
{
    return std::make_unique<ConfigurationRules>(findings);
}
