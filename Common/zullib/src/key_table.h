#pragma once

#include "hash_slots.h"
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
        std::uint32_t const hash = hashOf(key);
        Slot const* const slot = m_slots.find(hash, Is{*this, key, hash});
        return slot == nullptr ? nullptr : &item(slot->item).value;
    }

    /// The value of @p key and whether it is new: a value-initialised one then.
    std::pair<Value*, bool> insert(Key const& key)
    {
        if (m_count == m_chunks.size() * itemsOfChunk) {
            auto* const chunk = new (m_memory.take(sizeof(Chunk))) Chunk;
            m_chunks.push_back(chunk);
        }
        std::uint32_t const hash = hashOf(key);
        auto const [slot, isNew] = m_slots.insert(hash, Is{*this, key, hash});
        if (isNew) {
            *slot = {hash, m_count++};
            item(slot->item).key = key;
        }
        return {&item(slot->item).value, isNew};
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
    static constexpr std::uint32_t itemsOfChunk = 64;

    struct Slot {
        std::uint32_t hashOfKey = 0;
        std::uint32_t item = none;

        bool isFree() const noexcept { return item == none; }
        std::uint64_t hash() const noexcept { return hashOfKey; }
    };
    struct Is {
        KeyTable& table;
        Key const& key;
        std::uint32_t hash;
        bool operator()(Slot const& slot) const
        {
            return slot.hashOfKey == hash && table.item(slot.item).key == key;
        }
    };
    struct Item {
        Key key{};
        Value value{};
    };

    using Chunk = std::array<Item, itemsOfChunk>;
    static_assert(std::is_trivially_destructible_v<Item>);
    static_assert(alignof(Item) <= kova::templates::platform::MemoryBlocks::alignment);

    Item& item(std::uint32_t number) { return (*m_chunks[number / itemsOfChunk])[number % itemsOfChunk]; }

    static std::uint32_t hashOf(Key const& key) { return static_cast<std::uint32_t>(Hash()(key)); }

    HashSlots<Slot> m_slots;
    kova::templates::platform::MemoryBlocks m_memory; // of the items
    std::vector<Chunk*> m_chunks;
    std::uint32_t m_count = 0;
};
