#include "check_rules.h"

#include "zullib.h"

#include <string>
#include <string_view>

namespace {

class IdentityRules : public RuleSet {
public:
    using RuleSet::RuleSet;

    void tag(WalkedTag const& tag, TagFields const& fields) override
    {
        if (tag.id == ZUL_user_info::tag_id && fields.text("info") == "__ZUL_ID__" && !m_hasId) {
            m_hasId = true;
            id(tag, fields);
        } else if (tag.id == ZUL_design_version::tag_id) {
            version(tag, fields);
        }
    }

    void end() override
    {
        if (!m_hasId) {
            m_findings.add(Rule::NoContainerId, {Finding::noTag, 0, "container id"},
                           "a user info '__ZUL_ID__'", "none");
        }
    }

private:
    void id(WalkedTag const& tag, TagFields const& fields)
    {
        std::string_view const id = fields.text("text value");
        if (id.empty()) {
            m_findings.add(Rule::NoContainerId, placeOf(tag, fields, "info"), "a text as its value", "none");
        } else if (id == "__INVALID_ZUL_ID__") {
            m_findings.add(Rule::PlaceholderId, placeOf(tag, fields, "text value"), "an id of its own",
                           inQuotes(id));
        } else if (id.find('/') != std::string_view::npos || id.find("..") != std::string_view::npos) {
            m_findings.add(Rule::UnsafeId, placeOf(tag, fields, "text value"), "no '/' and no '..'",
                           inQuotes(id));
        }
    }

    void version(WalkedTag const& tag, TagFields const& fields)
    {
        std::string_view const version = fields.text("version");
        if (version.empty()) {
            return;
        }
        std::string_view const code =
            version.size() < codeEnd ? "" : version.substr(codeBegin, codeEnd - codeBegin);
        if (code.empty() || code.find_first_not_of("0123456789abcdef") != std::string_view::npos) {
            m_findings.add(Rule::NoBoardCode, placeOf(tag, fields, "version"),
                           "two digits of 0 to 9 and a to f as fifth and sixth character", inQuotes(version));
        } else if (code != "00" && code != "01" && code != "02" && code != "04") {
            m_findings.add(Rule::UnknownBoardCode, placeOf(tag, fields, "version"), "00, 01, 02 or 04",
                           inQuotes(code));
        }
    }

    static constexpr std::size_t codeBegin = 4;
    static constexpr std::size_t codeEnd = 6;
    bool m_hasId = false;
};

} // namespace

std::unique_ptr<RuleSet> makeIdentityRules(Findings& findings)
{
    return std::make_unique<IdentityRules>(findings);
}
