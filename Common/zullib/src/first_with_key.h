#pragma once

#include "key_table.h"
#include "number_table.h"
#include "seeded_hash.h"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <type_traits>

/// Something that is built on the first question about it, safely among concurrent readers, and dropped by edits.
class BuiltOnDemand {
public:
    /// @param built true when what there is to build from is empty: then there is nothing to scan
    explicit BuiltOnDemand(bool built = false) noexcept : m_built(built) {}

    bool built() const noexcept { return m_built.load(std::memory_order_acquire); }
    void drop() noexcept { m_built.store(false, std::memory_order_release); }

    template <class Build>
    void ensure(Build build)
    {
        if (built()) {
            return;
        }
        std::lock_guard const guard(m_mutex);
        if (!built()) {
            build();
            m_built.store(true, std::memory_order_release);
        }
    }

private:
    std::atomic<bool> m_built;
    std::mutex m_mutex;
};

/// Which of several tags with one key an index answers with.
enum class Keeps { First, Last };

/// The first (or last) tag with a key, among the tags of one class.
/// @tparam Tag the class; it says its key with `static std::optional<Key> keyOf(Tag const&)` of @p Traits
template <class Tag, class Key, class Traits, Keeps keeps = Keeps::First, class Hash = SeededHash>
class TagByKey {
public:
    /// @param fromTheStart whether tags are inserted as they come; otherwise the first question scans for them
    explicit TagByKey(bool fromTheStart = true) noexcept : m_state(fromTheStart) {}

    /// @param scan calls a function with every tag of the list, in order
    template <class Scan>
    Tag* find(Key const& key, Scan const& scan)
    {
        m_state.ensure([this, &scan] {
            m_tags.clear();
            scan([this](auto& tag) { this->insert(tag); });
        });
        Tag* const* const found = m_tags.find(key);
        return found == nullptr ? nullptr : *found;
    }

    /// A tag was appended to the list.
    template <class AnyTag>
    void added(AnyTag& tag)
    {
        if (m_state.built()) {
            insert(tag);
        }
    }

    void drop() noexcept { m_state.drop(); }

private:
    template <class AnyTag>
    void insert(AnyTag& any)
    {
        Tag* const tag = Traits::cast(any);
        if (tag == nullptr) {
            return;
        }
        if (auto const key = Traits::keyOf(*tag)) {
            auto const [place, isNew] = m_tags.insert(*key);
            if (isNew || keeps == Keeps::Last) {
                *place = tag;
            }
        }
    }

    BuiltOnDemand m_state;
    std::conditional_t<std::is_integral_v<Key>, NumberTable<Tag*>, KeyTable<Key, Tag*, Hash>> m_tags;
};
