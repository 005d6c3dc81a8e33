#pragma once

#include "kova/templates/platform/memory_blocks.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

/// A hash table that is only ever added to, with values that stay where they are.
///
/// Loading a container asks it several questions for each tag, so it does without a heap node for each element: slots
/// hold hash and number of an item, and items lie in the order in which they came.
template <class Key, class Value, class Hash>
class KeyTable {
public:
    /// Null when there is no such key; valid until clear().
    Value* find(Key const& key)
    {
        if (m_slots.empty()) {
            return nullptr;
        }
        Slot const& slot = slotOf(key, hashOf(key));
        return slot.item == none ? nullptr : &item(slot.item).value;
    }

    /// The value of @p key and whether it is new: a value-initialised one then.
    std::pair<Value*, bool> insert(Key const& key)
    {
        if (m_count + m_count / 3 >= m_slots.size()) {
            grow();
        }
        std::uint32_t const hash = hashOf(key);
        Slot& slot = slotOf(key, hash);
        if (slot.item != none) {
            return {&item(slot.item).value, false};
        }
        if (m_count % itemsOfChunk == 0) {
            auto* const chunk = new (m_memory.take(sizeof(Chunk))) Chunk;
            m_chunks.push_back(chunk);
        }
        slot = {hash, m_count++};
        item(slot.item).key = key;
        return {&item(slot.item).value, true};
    }

    void clear()
    {
        m_slots.clear();
        m_chunks.clear();
        m_memory.clear();
        m_count = 0;
    }

private:
    static constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();
    static constexpr std::size_t fewestSlots = 16;
    static constexpr std::uint32_t itemsOfChunk = 64;

    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t item = none;
    };
    using Slots = std::vector<Slot, kova::templates::platform::LargeAllocator<Slot>>;
    struct Item {
        Key key{};
        Value value{};
    };

    using Chunk = std::array<Item, itemsOfChunk>;
    static_assert(std::is_trivially_destructible_v<Item>);
    static_assert(alignof(Item) <= kova::templates::platform::MemoryBlocks::alignment);

    Item& item(std::uint32_t number) { return (*m_chunks[number / itemsOfChunk])[number % itemsOfChunk]; }

    static std::uint32_t hashOf(Key const& key) { return static_cast<std::uint32_t>(Hash()(key)); }

    /// The slot with @p key, or the free one where it belongs.
    Slot& slotOf(Key const& key, std::uint32_t hash)
    {
        std::size_t const mask = m_slots.size() - 1;
        std::size_t place = hash & mask;
        while (m_slots[place].item != none &&
               (m_slots[place].hash != hash || !(item(m_slots[place].item).key == key))) {
            place = (place + 1) & mask;
        }
        return m_slots[place];
    }

    void grow()
    {
        Slots slots(m_slots.empty() ? fewestSlots : m_slots.size() * 2);
        std::size_t const mask = slots.size() - 1;
        for (Slot const& slot : m_slots) {
            if (slot.item != none) {
                std::size_t place = slot.hash & mask;
                while (slots[place].item != none) {
                    place = (place + 1) & mask;
                }
                slots[place] = slot;
            }
        }
        m_slots.swap(slots);
    }

    Slots m_slots; // their number is a power of two, a quarter of them free at least
    kova::templates::platform::MemoryBlocks m_memory; // of the items
    std::vector<Chunk*> m_chunks;
    std::uint32_t m_count = 0;
};
