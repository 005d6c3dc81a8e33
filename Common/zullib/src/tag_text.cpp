#include "tag_text.h"

#include <cstring>

TagText& TagText::operator=(TagText const& other)
{
    if (this != &other) {
        assign(other.m_chars.get());
    }
    return *this;
}

void TagText::set(char const* src)
{
    set(src, src == nullptr ? 0 : std::strlen(src));
}

void TagText::set(char const* src, std::size_t width)
{
    std::unique_ptr<char[]> copy;
    if (src != nullptr && width != 0) {
        std::size_t const length = strnlen(src, width);
        copy.reset(new char[length + 1]);
        std::memcpy(copy.get(), src, length);
        copy[length] = '\0';
    }
    m_chars = std::move(copy);
}

std::string_view TagText::view() const noexcept
{
    return m_chars ? std::string_view(m_chars.get()) : std::string_view();
}

void TagText::assign(char const* src)
{
    set(src, src == nullptr ? 0 : std::strlen(src) + 1);
}
