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
    Entry nameless;
    fill(reg.getName() == nullptr ? nameless : entryOf(reg.getName()), reg);
}

bool RegisterNames::addNew(ZUL_register& reg)
{
    if (reg.getName() == nullptr) {
        add(reg);
        return true;
    }
    Entry& entry = entryOf(reg.getName());
    if (entry.resolved != nullptr) {
        return false;
    }
    fill(entry, reg);
    return true;
}

void RegisterNames::fill(Entry& entry, ZUL_register& reg)
{
    bool const newLayout = reg.getTagId() != ZUL_register::old_tag_id;
    std::uint32_t const position = newLayout ? m_newCount++ : m_oldCount++;
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
    Entry& alias = entryOf(link.getAlias());
    if (link.getTarget() == nullptr) {
        alias.alias = true;
    } else {
        point(alias, entryOf(link.getTarget()));
    }
}

bool RegisterNames::addNew(ZUL_register_link& link)
{
    if (link.getTarget() == nullptr) {
        add(link);
        return true;
    }
    Entry& target = entryOf(link.getTarget());
    if (target.alias) {
        return false;
    }
    if (link.getAlias() != nullptr) {
        point(entryOf(link.getAlias()), target);
    }
    return true;
}

void RegisterNames::point(Entry& alias, Entry& target)
{
    if (alias.alias) {
        return; // an earlier link has this alias
    }
    alias.alias = true;
    alias.nextPointing = target.firstPointing;
    target.firstPointing = &alias;
    if (alias.resolved == nullptr && target.resolved != nullptr) {
        resolve(alias, *target.resolved);
    }
}

/// Resolves @p entry and every name that leads to it and was not resolved yet. No recursion: a chain of links may be
/// as long as the file.
void RegisterNames::resolve(Entry& entry, Entry& to)
{
    entry.resolved = &to;
    std::vector<Entry*> open;
    for (Entry* target = entry.firstPointing == nullptr ? nullptr : &entry; target != nullptr;) {
        for (Entry* pointing = target->firstPointing; pointing != nullptr;
             pointing = pointing->nextPointing) {
            if (pointing->resolved == nullptr) {
                pointing->resolved = &to;
                open.push_back(pointing);
            }
        }
        target = open.empty() ? nullptr : open.back();
        if (target != nullptr) {
            open.pop_back();
        }
    }
}

RegisterNames::Found RegisterNames::find(std::string_view name)
{
    Entry const* const named = m_names.find(name);
    if (named == nullptr || named->resolved == nullptr) {
        return {};
    }
    Entry const& entry = *named->resolved;
    return {entry.reg, entry.position + 1 + (entry.newLayout ? m_oldCount : 0)};
}
