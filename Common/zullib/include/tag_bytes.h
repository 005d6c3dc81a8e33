#pragma once

#include <cstddef>
#include <span>

/// A block of bytes that a tag refers to: borrowed from the loaded buffer, or its own. Copies always own.
class TagBytes {
public:
    TagBytes() noexcept = default;
    TagBytes(TagBytes const& other) : TagBytes() { copyFrom(other.m_data, other.size()); }
    TagBytes(TagBytes&& other) noexcept { swap(other); }
    TagBytes& operator=(TagBytes const& other);
    TagBytes& operator=(TagBytes&& other) noexcept;
    ~TagBytes() { release(); }

    /// Refers to bytes that somebody else keeps alive; what was owned before is released.
    void borrow(std::byte const* data, std::size_t length) noexcept;
    /// Owns a copy of @p length bytes at @p data (null leaves no block but keeps the length 0).
    void copyFrom(void const* data, std::size_t length);
    void clear() noexcept { borrow(nullptr, 0); }

    std::byte const* data() const noexcept { return m_data; }
    std::size_t size() const noexcept { return m_lengthAndOwned >> 1U; }
    std::span<std::byte const> span() const noexcept { return {m_data, size()}; }

private:
    void assign(std::byte const* data, std::size_t length, bool owned) noexcept;
    void release() noexcept
    {
        if ((m_lengthAndOwned & 1U) != 0) {
            delete[] m_data;
        }
    }
    void swap(TagBytes& other) noexcept;

    std::byte const* m_data = nullptr;
    std::size_t m_lengthAndOwned = 0; // the lowest bit says whether the block is owned
};
