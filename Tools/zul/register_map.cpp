#include "register_map.h"

#include "seeded_hash.h"
#include "tag_fields.h"
#include "zullib.h"

#include <unordered_map>

namespace {

bool isRegister(std::uint32_t id)
{
    return id == ZUL_register::old_tag_id || id == ZUL_register::new_tag_id;
}

MappedRegister registerOf(WalkedTag const& tag)
{
    constexpr std::uint32_t lowByte = 0xFF; // all that a load takes of a bit's number
    TagFields const fields(tag);
    return {&tag,
            fields.text("name"),
            fields.word("address"),
            fields.word("msb") & lowByte,
            fields.word("lsb") & lowByte,
            fields.word("access"),
            fields.word("writable") != 0,
            fields.number("value"),
            {}};
}

MappedLink linkOf(WalkedTag const& tag)
{
    TagFields const fields(tag);
    return {&tag, fields.text("alias"), fields.text("target")};
}

/// Finds where links lead, each link once.
class LinkResolver {
public:
    explicit LinkResolver(RegisterMap& map) : m_map(map), m_states(map.links.size(), State::Unseen)
    {
        nameRegisters(ZUL_register::old_tag_id);
        nameRegisters(ZUL_register::new_tag_id);
        for (std::size_t i = 0; i < map.links.size(); ++i) {
            m_links.try_emplace(map.links[i].alias, i);
        }
    }

    void run()
    {
        for (std::size_t i = 0; i < m_map.links.size(); ++i) {
            resolve(i);
            MappedLink const& link = m_map.links[i];
            if (link.end == MappedLink::End::Register) {
                m_map.registers[link.reg].aliases.push_back(link.alias);
            }
        }
    }

private:
    enum class State : char { Unseen, OnPath, Done };
    using Names = std::unordered_map<std::string_view, std::size_t, SeededHash>;

    void nameRegisters(std::uint32_t id)
    {
        for (std::size_t i = 0; i < m_map.registers.size(); ++i) {
            if (m_map.registers[i].tag->id == id) {
                m_registers.try_emplace(m_map.registers[i].name, i);
            }
        }
    }

    /// Follows the links from @p link to the first whose end is known, and gives that end to all on the way.
    void resolve(std::size_t link)
    {
        std::vector<std::size_t> path;
        while (m_states[link] == State::Unseen) {
            m_states[link] = State::OnPath;
            path.push_back(link);
            MappedLink& here = m_map.links[link];
            if (auto const reg = m_registers.find(here.target); reg != m_registers.end()) {
                here.end = MappedLink::End::Register;
                here.reg = reg->second;
                m_states[link] = State::Done;
            } else if (auto const next = m_links.find(here.target); next != m_links.end()) {
                link = next->second;
            } else {
                m_states[link] = State::Done;
            }
        }
        MappedLink const known = m_map.links[link];
        bool const isCircle = m_states[link] == State::OnPath;
        for (std::size_t const each : path) {
            m_map.links[each].end = isCircle ? MappedLink::End::Circle : known.end;
            m_map.links[each].reg = known.reg;
            m_states[each] = State::Done;
        }
    }

    RegisterMap& m_map;
    Names m_registers;
    Names m_links;
    std::vector<State> m_states;
};

} // namespace

RegisterMap::RegisterMap(Walk const& walk)
{
    for (WalkedTag const& tag : walk.tags) {
        if (isRegister(tag.id)) {
            registers.push_back(registerOf(tag));
        } else if (tag.id == ZUL_register_link::tag_id) {
            links.push_back(linkOf(tag));
        }
    }
    LinkResolver(*this).run();
}

char const* nameOf(MappedLink::End end) noexcept
{
    switch (end) {
    case MappedLink::End::Register:
        return "register";
    case MappedLink::End::Nothing:
        return "nothing";
    case MappedLink::End::Circle:
        return "circle";
    }
    return "";
}
