#pragma once

#include "dynarray.h"

#include <algorithm>
#include <cstdint>
#include <vector>

/// Replays, in O(n log n), a selection sort that fills the highest position first.
///
/// Each step takes the greatest element that is left, among equal ones the one in the highest position, and swaps it
/// with the element in the position to be filled. That permutation is not stable, and lookups that answer with the
/// first of several equal elements depend on it.
template <class T>
class DescendingSelection {
public:
    explicit DescendingSelection(std::vector<T*>& elements) : m_elements(elements) {}

    void run()
    {
        auto const after = [this](std::uint32_t left, std::uint32_t right) {
            return *m_elements[left] > *m_elements[right];
        };
        std::uint32_t const count = static_cast<std::uint32_t>(m_elements.size());
        bool ordered = true;
        for (std::uint32_t i = 1; ordered && i < count; ++i) {
            ordered = !after(i - 1, i);
        }
        if (!ordered) {
            fillFromTheTop(count);
        }
    }

private:
    struct Place {
        std::uint32_t element;  // where the element stood at first
        std::uint32_t position; // where it stood when this entry was made
    };

    bool less(Place const& left, Place const& right) const
    {
        if (*m_elements[right.element] > *m_elements[left.element]) {
            return true;
        }
        return !(*m_elements[left.element] > *m_elements[right.element]) && left.position < right.position;
    }

    void fillFromTheTop(std::uint32_t count)
    {
        auto const byRank = [this](Place const& left, Place const& right) { return less(left, right); };
        std::vector<std::uint32_t> current(count); // position -> element
        std::vector<Place> heap(count);
        for (std::uint32_t i = 0; i < count; ++i) {
            current[i] = i;
            heap[i] = {i, i};
        }
        std::make_heap(heap.begin(), heap.end(), byRank);
        for (std::uint32_t position = count; position-- > 0;) {
            Place greatest = takeTop(heap, byRank);
            while (current[greatest.position] != greatest.element) { // it was swapped away since
                greatest = takeTop(heap, byRank);
            }
            if (greatest.position != position) {
                std::uint32_t const displaced = current[position];
                current[greatest.position] = displaced;
                current[position] = greatest.element;
                heap.push_back({displaced, greatest.position});
                std::push_heap(heap.begin(), heap.end(), byRank);
            }
        }
        reorder(current);
    }

    template <class Rank>
    static Place takeTop(std::vector<Place>& heap, Rank const& byRank)
    {
        std::pop_heap(heap.begin(), heap.end(), byRank);
        Place const top = heap.back();
        heap.pop_back();
        return top;
    }

    void reorder(std::vector<std::uint32_t> const& order)
    {
        std::vector<T*> sorted(order.size());
        std::transform(order.begin(), order.end(), sorted.begin(),
                       [this](std::uint32_t i) { return m_elements[i]; });
        m_elements.swap(sorted);
    }

    std::vector<T*>& m_elements;
};

/// Orders, ascending by operator>, the elements with the tag id @p id among the positions that they hold; all other
/// elements keep their places. Nothing is moved when a comparison throws.
template <class T, class Container>
void dynarray_zultp<T, Container>::sort(std::uint32_t id)
{
    std::vector<std::uint32_t> positions;
    std::vector<T*> elements;
    for (std::uint32_t i = 0; i < this->getCount(); ++i) {
        if (this->at(i)->getTagId() == id) {
            positions.push_back(i);
            elements.push_back(this->at(i));
        }
    }
    DescendingSelection<T>(elements).run();
    for (std::size_t i = 0; i < positions.size(); ++i) {
        this->set(positions[i], elements[i]);
    }
}
