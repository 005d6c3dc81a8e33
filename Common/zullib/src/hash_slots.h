#pragma once

#include "kova/templates/platform/large_memory.h"

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

/// The slots of a hash table that is only ever added to. What collides lies in the next free slot.
/// @tparam Slot free when it is value-initialised; says so with isFree(), and gives its hash() otherwise
template <class Slot>
class HashSlots {
public:
    /// The slot with @p hash for which @p is holds, or null; valid until the next insert.
    template <class Is>
    Slot* find(std::uint64_t hash, Is const& is)
    {
        if (m_slots.empty()) {
            return nullptr;
        }
        Slot& slot = slotOf(hash, is);
        return slot.isFree() ? nullptr : &slot;
    }

    /// That slot and false; or a free one and true: then it is the caller's to fill, at once and with @p hash.
    template <class Is>
    std::pair<Slot*, bool> insert(std::uint64_t hash, Is const& is)
    {
        if (m_count + m_count / 3 >= m_slots.size()) {
            grow();
        }
        Slot& slot = slotOf(hash, is);
        bool const isNew = slot.isFree();
        m_count += isNew ? 1 : 0;
        return {&slot, isNew};
    }

    void clear()
    {
        m_slots.clear();
        m_count = 0;
    }

private:
    static constexpr std::size_t fewestSlots = 16;
    using Slots = std::vector<Slot, kova::templates::platform::LargeAllocator<Slot>>;

    template <class Is>
    Slot& slotOf(std::uint64_t hash, Is const& is)
    {
        std::size_t const mask = m_slots.size() - 1;
        std::size_t place = hash & mask;
        while (!m_slots[place].isFree() && !is(m_slots[place])) {
            place = (place + 1) & mask;
        }
        return m_slots[place];
    }

    void grow()
    {
        Slots slots(m_slots.empty() ? fewestSlots : m_slots.size() * 2);
        m_slots.swap(slots);
        for (Slot const& slot : slots) {
            if (!slot.isFree()) {
                slotOf(slot.hash(), [](Slot const&) { return false; }) = slot;
            }
        }
    }

    Slots m_slots; // their number is a power of two, a quarter of them free at least
    std::size_t m_count = 0;
};
