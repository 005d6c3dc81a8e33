#include "register_names.h"

#include "ZUL_register.h"
#include "ZUL_register_link.h"

#include <vector>

void RegisterNames::clear()
{
    m_names.clear();
    m_oldCount = 0;
    m_newCount = 0;
}

void RegisterNames::add(ZUL_register& reg)
{
    bool const newLayout = reg.getTagId() != ZUL_register::old_tag_id;
    std::uint32_t const position = newLayout ? m_newCount++ : m_oldCount++;
    if (reg.getName() == nullptr) {
        return;
    }
    Entry& entry = m_names[reg.getName()];
    if (entry.reg == nullptr || (entry.newLayout && !newLayout)) {
        entry.reg = &reg;
        entry.position = position;
        entry.newLayout = newLayout;
        resolve(entry, entry);
    }
}

void RegisterNames::add(ZUL_register_link& link)
{
    if (link.getAlias() == nullptr) {
        return;
    }
    Entry& entry = m_names[link.getAlias()];
    if (entry.alias) {
        return;
    }
    entry.alias = true;
    if (link.getTarget() == nullptr) {
        return;
    }
    Entry& target = m_names[link.getTarget()];
    entry.nextPointing = target.firstPointing;
    target.firstPointing = &entry;
    if (entry.resolved == nullptr && target.resolved != nullptr) {
        resolve(entry, *target.resolved);
    }
}

/// Resolves @p entry and every name that leads to it and was not resolved yet. No recursion: a chain of links may be
/// as long as the file.
void RegisterNames::resolve(Entry& entry, Entry& to)
{
    entry.resolved = &to;
    std::vector<Entry*> open{&entry};
    while (!open.empty()) {
        Entry* const target = open.back();
        open.pop_back();
        for (Entry* pointing = target->firstPointing; pointing != nullptr; pointing = pointing->nextPointing) {
            if (pointing->resolved == nullptr) {
                pointing->resolved = &to;
                open.push_back(pointing);
            }
        }
    }
}

RegisterNames::Found RegisterNames::find(std::string_view name) const
{
    auto const found = m_names.find(name);
    if (found == m_names.end() || found->second.resolved == nullptr) {
        return {};
    }
    Entry const& entry = *found->second.resolved;
    return {entry.reg, entry.position + 1 + (entry.newLayout ? m_oldCount : 0)};
}

bool RegisterNames::isAlias(std::string_view name) const
{
    auto const found = m_names.find(name);
    return found != m_names.end() && found->second.alias;
}
