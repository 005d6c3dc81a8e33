#pragma once

#include "number_table.h"

#include <cstdint>
#include <memory>
#include <vector>

/// The numbers of a merged container's tags, and those that they get in the container they are merged into.
class MapId2Id {
public:
    /// Of several tags with one @p id the first counts.
    void add(std::uint32_t id, std::uint32_t mapped)
    {
        if (auto const [place, isNew] = m_mapped.insert(id); isNew) {
            *place = mapped;
        }
    }
    /// The new number, or 0xFFFFFFFF: the number of what refers to nothing.
    std::uint32_t find_mapped_id(std::uint32_t id)
    {
        std::uint32_t const* const found = m_mapped.find(id);
        return found == nullptr ? 0xFFFFFFFF : *found;
    }

private:
    NumberTable<std::uint32_t> m_mapped;
};

/// Copies of all processes (or modules) of a merged container: made and numbered before any tag is filed, since tags
/// may refer to ones behind them.
/// @tparam Tag the class
/// @tparam Number has `static std::uint32_t of(Tag const&)` and `static void set(Tag&, std::uint32_t)`
template <class Tag, class Number>
class RenumberedCopies {
public:
    /// @param renumbers false to keep the numbers
    /// @param highest the number before the first new one
    RenumberedCopies(bool renumbers, std::uint32_t highest) : m_renumbers(renumbers), m_highest(highest) {}

    void add(std::unique_ptr<Tag> copy)
    {
        if (m_renumbers) {
            m_numbers.add(Number::of(*copy), ++m_highest);
            Number::set(*copy, m_highest);
        }
        if (auto const [first, isNew] = m_byNumber.insert(Number::of(*copy)); isNew) {
            *first = copy.get();
        }
        m_unfiled.push_back(std::move(copy));
    }

    /// The copies, in the order in which they were added.
    std::unique_ptr<Tag> takeNext() { return std::move(m_unfiled[m_taken++]); }

    /// What a reference to @p number in the merged container is called now.
    std::uint32_t renumbered(std::uint32_t number)
    {
        return m_renumbers ? m_numbers.find_mapped_id(number) : number;
    }

    /// The first copy with @p number, which is a new one, or null.
    Tag* find(std::uint32_t number)
    {
        Tag* const* const found = m_byNumber.find(number);
        return found == nullptr ? nullptr : *found;
    }

private:
    bool m_renumbers;
    std::uint32_t m_highest;
    MapId2Id m_numbers;
    NumberTable<Tag*> m_byNumber;
    std::vector<std::unique_ptr<Tag>> m_unfiled;
    std::size_t m_taken = 0;
};
