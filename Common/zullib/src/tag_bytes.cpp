#include "tag_bytes.h"

#include <cstring>
#include <utility>

TagBytes& TagBytes::operator=(TagBytes const& other)
{
    if (this != &other) {
        copyFrom(other.m_data, other.m_length);
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
    m_owned.reset();
    m_data = data;
    m_length = length;
}

void TagBytes::copyFrom(void const* data, std::size_t length)
{
    if (data == nullptr) {
        clear();
        return;
    }
    // The source may be the block that is owned now: it goes only after the copy is made.
    std::unique_ptr<std::byte[]> copy(new std::byte[length]);
    if (length != 0) {
        std::memcpy(copy.get(), data, length);
    }
    m_owned = std::move(copy);
    m_data = m_owned.get();
    m_length = length;
}

void TagBytes::swap(TagBytes& other) noexcept
{
    std::swap(m_owned, other.m_owned);
    std::swap(m_data, other.m_data);
    std::swap(m_length, other.m_length);
}
