#include "tag_bytes.h"

#include <cstring>
#include <memory>
#include <utility>

TagBytes& TagBytes::operator=(TagBytes const& other)
{
    if (this != &other) {
        copyFrom(other.m_data, other.size());
    }
    return *this;
}

TagBytes& TagBytes::operator=(TagBytes&& other) noexcept
{
    TagBytes taken(std::move(other));
    swap(taken);
    return *this;
}

void TagBytes::borrow(std::byte const* data, std::size_t length) noexcept
{
    assign(data, length, false);
}

void TagBytes::copyFrom(void const* data, std::size_t length)
{
    if (data == nullptr) {
        clear();
        return;
    }
    // The source may be the block that is owned now: it goes only after the copy is made.
    auto copy = std::make_unique_for_overwrite<std::byte[]>(length);
    if (length != 0) {
        std::memcpy(copy.get(), data, length);
    }
    assign(copy.release(), length, true);
}

void TagBytes::assign(std::byte const* data, std::size_t length, bool owned) noexcept
{
    release();
    m_data = data;
    m_lengthAndOwned = length << 1U | (owned ? 1U : 0U);
}

void TagBytes::swap(TagBytes& other) noexcept
{
    std::swap(m_data, other.m_data);
    std::swap(m_lengthAndOwned, other.m_lengthAndOwned);
}
