#pragma once

#include "kova/templates/platform/invariant.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <vector>

class ZUL;

/// An array of pointers with an announced capacity and, where wanted, ownership of its elements.
///
/// The capacity is a number: it may come from a file, so memory follows the pointers that are really stored.
template <class T>
class dynarraytp {
public:
    dynarraytp() = default;
    dynarraytp(dynarraytp const&) = delete;
    dynarraytp& operator=(dynarraytp const&) = delete;

    virtual ~dynarraytp()
    {
        if (m_owns) {
            for (T* element : m_list) {
                delete element;
            }
        }
    }

    /// Appends @p element; a full array grows by exactly one slot.
    void Add(T* element)
    {
        namespace platform = kova::templates::platform;
        platform::checkInvariant(!m_owns || !platform::invariantsAreChecked() ||
                                     std::find(m_list.begin(), m_list.end(), element) == m_list.end(),
                                 "m_list[i] != n", "Common/zullib/include/dynarray", 44);
        addNew(element);
    }

    /// Add for an element that cannot be in the array yet: leaves the search for it out.
    void addNew(T* element)
    {
        if (m_count == m_list.size()) {
            m_list.push_back(element);
        } else {
            m_list.resize(std::max(m_list.size(), std::size_t{m_count} + 1)); // scale may have dropped some
            m_list[m_count] = element;
        }
        ++m_count;
        m_capacity = std::max(m_capacity, m_count);
    }

    /// Sets the capacity. The count stays, and elements beyond the new end are dropped, not deleted: shrink to the
    /// count and no further.
    void scale(std::uint32_t capacity)
    {
        if (capacity < m_list.size()) {
            m_list.resize(capacity);
        }
        m_capacity = capacity;
    }

    /// The same as scale.
    void fastScale(std::uint32_t capacity) { scale(capacity); }

    std::uint32_t getCount() const noexcept { return m_count; }
    /// The capacity.
    std::uint32_t getLength() const noexcept { return m_capacity; }
    /// Whether the destructor deletes the elements; false at first.
    bool& ownsobjects() noexcept { return m_owns; }

    /// Element @p i, or null when @p i is not below the count.
    T* at(std::uint32_t i) const noexcept { return i < m_count && i < m_list.size() ? m_list[i] : nullptr; }

    /// Slot @p i, null where nothing was stored.
    /// @throws std::out_of_range "bad array index" when @p i is not below the capacity
    T* get(std::uint32_t i) const
    {
        checkIndex(i, m_capacity);
        return i < m_list.size() ? m_list[i] : nullptr;
    }

    /// Stores into slot @p i; the count stays, and what stood there is dropped.
    /// @throws std::out_of_range "bad array index" when @p i is not below the capacity
    void set(std::uint32_t i, T* element)
    {
        checkIndex(i, m_capacity);
        if (i >= m_list.size()) {
            m_list.resize(std::size_t{i} + 1);
        }
        m_list[i] = element;
    }

    /// Takes element @p i out, without deleting it; the later ones move down by one.
    /// @throws std::out_of_range "bad array index" when @p i is not below the count
    void remove(std::uint32_t i)
    {
        checkIndex(i, m_count);
        m_list.erase(m_list.begin() + i);
        --m_count;
        if (m_list.size() > m_count) {
            m_list.insert(m_list.begin() + m_count, nullptr);
        }
    }

    /// Takes out, without deleting them, all elements for which @p leaves is true; one pass.
    template <class Predicate>
    void removeIf(Predicate leaves)
    {
        auto const kept = std::remove_if(m_list.begin(), m_list.begin() + m_count, leaves);
        m_count = static_cast<std::uint32_t>(kept - m_list.begin());
        m_list.resize(m_count);
    }

    /// Exchanges two slots; both have to be below the capacity, which is not checked.
    void swap(std::uint32_t i, std::uint32_t j)
    {
        if (std::size_t const last = std::max(i, j); last >= m_list.size()) {
            m_list.resize(last + 1);
        }
        std::swap(m_list[i], m_list[j]);
    }

    /// Drops every element. None is deleted, owning or not: the elements belong to whoever still knows them.
    void clear() noexcept
    {
        m_list.clear();
        m_count = 0;
    }

private:
    static void checkIndex(std::uint32_t i, std::uint32_t end)
    {
        if (i >= end) {
            throw std::out_of_range("bad array index");
        }
    }

    std::vector<T*> m_list; // slots beyond its end hold null
    std::uint32_t m_count = 0;
    std::uint32_t m_capacity = 0;
    bool m_owns = false;
};

/// An owning array of tags that knows the container they belong to.
/// @tparam T the tag class
/// @tparam Container the container class
template <class T, class Container = ZUL>
class dynarray_zultp : public dynarraytp<T> {
public:
    explicit dynarray_zultp(Container* parent) : m_parent(parent) { this->ownsobjects() = true; }

    Container* getParent() const noexcept { return m_parent; }

    /// Hands a new parent to every element; the parent it has already changes nothing.
    void setParent(Container* parent)
    {
        if (parent == m_parent) {
            return;
        }
        for (std::uint32_t i = 0; i < this->getCount(); ++i) {
            this->at(i)->setParent(parent);
        }
        m_parent = parent;
    }

    /// Sum of the elements' save lengths in bytes.
    unsigned long getSaveLength() const
    {
        unsigned long length = 0;
        for (std::uint32_t i = 0; i < this->getCount(); ++i) {
            length += this->at(i)->getSaveLength();
        }
        return length;
    }

    /// Saves the elements back to back.
    /// @param dst room for getSaveLength() bytes
    void Save(void* dst) const
    {
        auto* to = static_cast<std::byte*>(dst);
        for (std::uint32_t i = 0; i < this->getCount(); ++i) {
            this->at(i)->Save(to);
            to += this->at(i)->getSaveLength();
        }
    }

    void sort(std::uint32_t id);

    /// Appends a copy of every element of @p other: constructed with this array's parent, then assigned.
    dynarray_zultp& operator+=(dynarray_zultp const& other)
    {
        std::uint32_t const added = other.getCount(); // other may be this array
        this->scale(std::max(this->getLength(), this->getCount() + added));
        for (std::uint32_t i = 0; i < added; ++i) {
            auto copy = std::make_unique<T>(m_parent);
            *copy = *other.at(i);
            this->addNew(copy.get());
            copy.release();
        }
        return *this;
    }

private:
    Container* m_parent;
};

#include "dynarray_sort.h"
