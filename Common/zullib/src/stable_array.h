#pragma once

#include <bit>
#include <cstddef>
#include <memory>
#include <vector>

/// Items that stay where they are while more are added: each block is twice as long as the one before.
template <class Item>
class StableArray {
public:
    std::size_t size() const noexcept { return m_size; }
    Item& at(std::size_t i) const noexcept
    {
        std::size_t const length = std::bit_floor(i + 1); // of the block
        return m_blocks[static_cast<std::size_t>(std::countr_zero(length))][i + 1 - length];
    }
    void add(Item const& item)
    {
        if (std::size_t const length = std::size_t{1} << m_blocks.size(); m_size + 1 == length) {
            m_blocks.push_back(std::make_unique_for_overwrite<Item[]>(length));
        }
        at(m_size) = item;
        ++m_size;
    }

private:
    std::vector<std::unique_ptr<Item[]>> m_blocks;
    std::size_t m_size = 0;
};
