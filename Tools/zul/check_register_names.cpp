#include "check_rules.h"

#include "seeded_hash.h"
#include "zullib.h"

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>

namespace {

/// A register or the link that names it.
struct Named {
    std::size_t tag;
    std::uint32_t access;
    std::uint32_t writable;
};

/// A name of a register, the alias of a link, or the target of one.
struct Name {
    Named const* reg = nullptr;    // what the name leads to, once that is known
    Name* target = nullptr;        // of the first link with this alias
    Name* firstPointing = nullptr; // aliases whose link has this name as target
    Name* nextPointing = nullptr;
    enum class Way : char { Unseen, Walked, Circle } way = Way::Unseen;
};

/// Which register each name leads to, kept up to date tag by tag: as each name is resolved once, from its target
/// backwards, chains of links cost no more than their links.
class NameTable {
public:
    Name& at(std::string_view name) { return m_names[name]; }

    static void define(Name& name, Named const& reg) { resolve(name, reg); }

    static void link(Name& alias, Name& target)
    {
        if (alias.target != nullptr) {
            return; // look-ups take the first link of an alias
        }
        alias.target = &target;
        alias.nextPointing = target.firstPointing;
        target.firstPointing = &alias;
        if (target.reg != nullptr && alias.reg == nullptr) {
            resolve(alias, *target.reg);
        }
    }

    /// Whether following the links from @p name leads back to it.
    static bool isInCircle(Name& name)
    {
        std::vector<Name*> path;
        Name* end = &name;
        for (; end != nullptr && end->way == Name::Way::Unseen; end = end->target) {
            end->way = Name::Way::Walked;
            path.push_back(end);
        }
        // Only a circle walked right now is a new one: its names are on the path from where the walk met itself.
        bool inCircle = false;
        for (Name* const each : path) {
            inCircle = inCircle || each == end;
            each->way = inCircle ? Name::Way::Circle : Name::Way::Walked;
        }
        return name.way == Name::Way::Circle;
    }

private:
    static void resolve(Name& name, Named const& reg)
    {
        std::vector<Name*> open{&name};
        while (!open.empty()) {
            Name& next = *open.back();
            open.pop_back();
            next.reg = &reg;
            for (Name* each = next.firstPointing; each != nullptr; each = each->nextPointing) {
                if (each->reg == nullptr) {
                    open.push_back(each);
                }
            }
        }
    }

    std::unordered_map<std::string_view, Name, SeededHash> m_names;
};

class RegisterNameRules : public RuleSet {
public:
    using RuleSet::RuleSet;

    void tag(WalkedTag const& tag, TagFields const& fields) override
    {
        switch (tag.id) {
        case ZUL_register::old_tag_id:
        case ZUL_register::new_tag_id:
            return reg(tag, fields);
        case ZUL_register_link::tag_id:
            return link(tag, fields);
        case ZUL_event::tag_id:
            return event(tag, fields);
        default:
            return;
        }
    }

    void end() override
    {
        for (Link const& each : m_links) {
            check(each);
        }
        for (Question const& each : m_questions) {
            bool const isKnown = each.name->reg != nullptr;
            m_findings.add(isKnown ? Rule::ReferenceBeforeTarget : Rule::ReferenceToNothing, each.place,
                           "the name of an earlier register",
                           inQuotes(each.text) +
                               (isKnown ? ", which is tag " + std::to_string(each.name->reg->tag) : ""));
        }
    }

private:
    struct Link {
        Named properties;
        Name* alias; // null when there is none
        Name* target;
        std::string_view targetText;
        bool refused; // by a load
        FieldPlace targetPlace;
        FieldPlace accessPlace;
        FieldPlace writablePlace;
    };
    struct Question {
        Name const* name;
        std::string_view text;
        FieldPlace place;
    };

    static Named propertiesOf(WalkedTag const& tag, TagFields const& fields)
    {
        return {tag.index, fields.word("access"), fields.word("writable")};
    }

    void reg(WalkedTag const& tag, TagFields const& fields)
    {
        if (fields.find("name") == nullptr) {
            return; // the newer layout may have none, and then equals no other
        }
        Name& name = m_names.at(fields.text("name"));
        if (name.reg != nullptr) {
            m_findings.add(Rule::RegisterNameTwice, placeOf(tag, fields, "name"), "a name of its own",
                           inQuotes(fields.text("name")) + ", which leads to tag " +
                               std::to_string(name.reg->tag));
        } else {
            NameTable::define(name, m_registers.emplace_back(propertiesOf(tag, fields)));
        }
    }

    void link(WalkedTag const& tag, TagFields const& fields)
    {
        std::string_view const alias = fields.text("alias");
        std::string_view const target = fields.text("target");
        Link link{propertiesOf(tag, fields),
                  alias.empty() ? nullptr : &m_names.at(alias),
                  &m_names.at(target),
                  target,
                  false,
                  placeOf(tag, fields, "target"),
                  placeOf(tag, fields, "access"),
                  placeOf(tag, fields, "writable")};
        link.refused = link.target->target != nullptr;
        if (link.refused) {
            m_findings.add(Rule::LinkToEarlierAlias, link.targetPlace, "a register or a later alias",
                           inQuotes(target));
        }
        if (link.alias == nullptr) {
            m_findings.add(Rule::LinkWithoutAlias, placeOf(tag, fields, "alias"), "an alias", "none");
        } else if (!target.empty()) { // an empty target is none, although a register's name may be empty
            NameTable::link(*link.alias, *link.target);
        }
        m_links.push_back(link);
    }

    void event(WalkedTag const& tag, TagFields const& fields)
    {
        std::string_view const text = fields.text("register name");
        Name const& name = m_names.at(text);
        if (name.reg == nullptr && fields.find("register name length") != nullptr) {
            bool const isThere = fields.find("register name") != nullptr;
            m_questions.push_back(
                {&name, text, placeOf(tag, fields, isThere ? "register name" : "register name length")});
        }
    }

    void check(Link const& link)
    {
        Named const* const reg = link.targetText.empty() ? nullptr : link.target->reg;
        if (reg != nullptr) {
            compare(link.accessPlace, link.properties.access, reg->access, reg->tag);
            compare(link.writablePlace, link.properties.writable, reg->writable, reg->tag);
        } else if (link.refused) {
            return;
        } else if (link.alias != nullptr && link.alias->target == link.target &&
                   NameTable::isInCircle(*link.alias)) {
            m_findings.add(Rule::LinkInCircle, link.targetPlace, "a name that leads to a register",
                           inQuotes(link.targetText));
        } else {
            m_findings.add(Rule::LinkToNothing, link.targetPlace, "a name that leads to a register",
                           link.targetText.empty() ? "none" : inQuotes(link.targetText));
        }
    }

    void compare(FieldPlace const& place, std::uint32_t own, std::uint32_t target, std::size_t tag)
    {
        if (own != target) {
            m_findings.add(Rule::LinkAccessDiffers, place,
                           std::to_string(target) + ", as tag " + std::to_string(tag) + " has it",
                           std::to_string(own));
        }
    }

    NameTable m_names;
    std::deque<Named> m_registers; // names refer to them
    std::vector<Link> m_links;
    std::vector<Question> m_questions;
};

} // namespace

std::unique_ptr<RuleSet> makeRegisterNameRules(Findings& findings)
{
    return std::make_unique<RegisterNameRules>(findings);
}
