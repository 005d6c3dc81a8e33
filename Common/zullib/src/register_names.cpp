#include "register_names.h"

#include "ZUL_register.h"
#include "ZUL_register_link.h"
#include "seeded_hash.h"

#include <utility>

/// Whether a slot is that of a name.
struct RegisterNames::Is {
    RegisterNames const& names;
    std::string_view name;
    std::uint32_t hash = static_cast<std::uint32_t>(SeededHash()(name));

    bool operator()(Slot const& slot) const { return slot.hashOfName == hash && names.nameOf(slot) == name; }
};

void RegisterNames::clear()
{
    m_slots.clear();
    m_linked.clear();
    m_oldCount = 0;
    m_newCount = 0;
}

std::string_view RegisterNames::nameOf(Slot const& slot) const
{
    return slot.reg != nullptr ? slot.reg->m_name.view() : m_linked[slot.place].name;
}

RegisterNames::Placed RegisterNames::resolved(Slot const& slot) const
{
    return slot.reg != nullptr ? Placed{slot.reg, slot.place} : m_linked[slot.place].resolved;
}

RegisterNames::Slot* RegisterNames::slotOf(std::string_view name)
{
    Is const is{*this, name};
    return m_slots.find(is.hash, is);
}

/// The slot of a name, and whether it is new: then the caller fills in the rest.
std::pair<RegisterNames::Slot*, bool> RegisterNames::insert(std::string_view name)
{
    Is const is{*this, name};
    auto const [slot, isNew] = m_slots.insert(is.hash, is);
    slot->hashOfName = is.hash;
    return {slot, isNew};
}

std::uint32_t RegisterNames::nextPlace(ZUL_register const& reg)
{
    return reg.getTagId() == ZUL_register::old_tag_id ? m_oldCount++ << 1U : m_newCount++ << 1U | newerLayout;
}

void RegisterNames::add(ZUL_register& reg)
{
    std::uint32_t const place = nextPlace(reg);
    if (!reg.m_name) {
        return;
    }
    auto const [slot, isNew] = insert(reg.m_name.view());
    if (isNew || (slot->place & newerLayout) > (place & newerLayout)) {
        slot->reg = &reg;
        slot->place = place;
    }
}

bool RegisterNames::addNew(ZUL_register& reg)
{
    if (!reg.m_name) {
        nextPlace(reg);
        return true;
    }
    auto const [slot, isNew] = insert(reg.m_name.view());
    if (isNew) {
        slot->reg = &reg;
        slot->place = nextPlace(reg);
        return true;
    }
    if (resolved(*slot).reg != nullptr) {
        return false;
    }
    resolve(slot->place, {&reg, nextPlace(reg)});
    return true;
}

void RegisterNames::add(ZUL_register_link& link)
{
    if (link.m_alias) {
        point(link, targetOf(link));
    }
}

bool RegisterNames::addNew(ZUL_register_link& link)
{
    Slot const* const target = targetOf(link);
    if (target != nullptr && target->reg == nullptr && m_linked[target->place].alias) {
        return false;
    }
    if (link.m_alias) {
        point(link, target);
    }
    return true;
}

/// The slot of the name that a link points to, or null.
RegisterNames::Slot const* RegisterNames::targetOf(ZUL_register_link const& link)
{
    return link.m_target ? slotOf(link.m_target.view()) : nullptr;
}

void RegisterNames::point(ZUL_register_link const& link, Slot const* slotOfTarget)
{
    Placed const to = slotOfTarget == nullptr ? Placed{} : resolved(*slotOfTarget);
    std::uint32_t const alias = linked(link.m_alias.view());
    if (m_linked[alias].alias) {
        return; // an earlier link has this alias
    }
    m_linked[alias].alias = true;
    if (!link.m_target) {
        return;
    }
    if (to.reg == nullptr) {
        std::uint32_t const target = linked(link.m_target.view());
        m_linked[alias].nextPointing = std::exchange(m_linked[target].firstPointing, alias);
    } else if (m_linked[alias].resolved.reg == nullptr) {
        resolve(alias, to);
    }
}

/// The number of a name among those that links mention; a register's name becomes one of them.
std::uint32_t RegisterNames::linked(std::string_view name)
{
    auto const number = static_cast<std::uint32_t>(m_linked.size());
    auto const [slot, isNew] = insert(name);
    if (!isNew && slot->reg == nullptr) {
        return slot->place;
    }
    m_linked.push_back({name, isNew ? Placed{} : resolved(*slot)});
    *slot = {nullptr, number, slot->hashOfName};
    return number;
}

/// Resolves a name and every other that leads to it and was not resolved yet. No recursion: a chain of links may be
/// as long as the file.
void RegisterNames::resolve(std::uint32_t name, Placed to) noexcept
{
    m_linked[name].resolved = to;
    std::uint32_t open = std::exchange(m_linked[name].firstPointing, none);
    while (open != none) {
        LinkedName& pointing = m_linked[open];
        open = pointing.nextPointing;
        if (pointing.resolved.reg != nullptr) {
            continue;
        }
        pointing.resolved = to;
        for (std::uint32_t next = std::exchange(pointing.firstPointing, none); next != none;) {
            next = std::exchange(m_linked[next].nextPointing, std::exchange(open, next));
        }
    }
}

RegisterNames::Found RegisterNames::find(std::string_view name)
{
    Slot const* const slot = slotOf(name);
    Placed const found = slot == nullptr ? Placed{} : resolved(*slot);
    if (found.reg == nullptr) {
        return {};
    }
    std::uint32_t const before = (found.place & newerLayout) != 0 ? m_oldCount : 0;
    return {found.reg, before + (found.place >> 1U) + 1};
}
