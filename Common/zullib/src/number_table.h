#pragma once

#include "kova/templates/platform/large_memory.h"
#include "seeded_hash.h"

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

/// A hash table from numbers that is only ever added to. Number and value lie in the slot itself: a question costs one
/// memory access.
template <class Value>
class NumberTable {
public:
    /// Null when there is no such number; valid until the next insert.
    Value* find(std::uint64_t number)
    {
        if (m_slots.empty()) {
            return nullptr;
        }
        Slot& slot = slotOf(m_slots, number);
        return slot.isFree() ? nullptr : &slot.value;
    }

    /// The value of @p number and whether it is new: a value-initialised one then. Valid until the next insert.
    /// @param number anything but the largest u64
    std::pair<Value*, bool> insert(std::uint64_t number)
    {
        if (m_count + m_count / 3 >= m_slots.size()) {
            grow();
        }
        Slot& slot = slotOf(m_slots, number);
        bool const isNew = slot.isFree();
        if (isNew) {
            slot.numberPlusOne = number + 1;
            ++m_count;
        }
        return {&slot.value, isNew};
    }

    void clear()
    {
        m_slots.clear();
        m_count = 0;
    }

private:
    static constexpr std::size_t fewestSlots = 16;

    struct Slot {
        std::uint64_t numberPlusOne = 0; // 0: free
        Value value{};

        bool isFree() const noexcept { return numberPlusOne == 0; }
    };
    using Slots = std::vector<Slot, kova::templates::platform::LargeAllocator<Slot>>;

    /// The slot with @p number, or the free one where it belongs.
    static Slot& slotOf(Slots& slots, std::uint64_t number)
    {
        std::size_t const mask = slots.size() - 1;
        std::size_t place = SeededHash()(number) & mask;
        while (!slots[place].isFree() && slots[place].numberPlusOne != number + 1) {
            place = (place + 1) & mask;
        }
        return slots[place];
    }

    void grow()
    {
        Slots slots(m_slots.empty() ? fewestSlots : m_slots.size() * 2);
        for (Slot const& slot : m_slots) {
            if (!slot.isFree()) {
                slotOf(slots, slot.numberPlusOne - 1) = slot;
            }
        }
        m_slots.swap(slots);
    }

    Slots m_slots; // their number is a power of two, a quarter of them free at least
    std::size_t m_count = 0;
};
