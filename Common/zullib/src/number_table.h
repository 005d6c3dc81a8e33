#pragma once

#include "hash_slots.h"
#include "seeded_hash.h"

#include <cstdint>
#include <utility>

/// A hash table from numbers that is only ever added to. Number and value lie in the slot itself: a question costs one
/// memory access.
template <class Value>
class NumberTable {
public:
    /// Null when there is no such number; valid until the next insert.
    Value* find(std::uint64_t number)
    {
        Slot* const slot = m_slots.find(hashOf(number), Is{number});
        return slot == nullptr ? nullptr : &slot->value;
    }

    /// The value of @p number and whether it is new: a value-initialised one then. Valid until the next insert.
    /// @param number anything but the largest u64
    std::pair<Value*, bool> insert(std::uint64_t number)
    {
        auto const [slot, isNew] = m_slots.insert(hashOf(number), Is{number});
        slot->numberPlusOne = number + 1;
        return {&slot->value, isNew};
    }

    void clear() { m_slots.clear(); }

private:
    static std::uint64_t hashOf(std::uint64_t number) noexcept { return SeededHash()(number); }

    struct Slot {
        std::uint64_t numberPlusOne = 0; // 0: free
        Value value{};

        bool isFree() const noexcept { return numberPlusOne == 0; }
        std::uint64_t hash() const noexcept { return hashOf(numberPlusOne - 1); }
    };

    struct Is {
        std::uint64_t number;
        bool operator()(Slot const& slot) const noexcept { return slot.numberPlusOne == number + 1; }
    };

    HashSlots<Slot> m_slots;
};
