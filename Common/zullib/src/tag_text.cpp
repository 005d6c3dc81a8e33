#include "tag_text.h"

#include <cstring>

void TagText::set(char const* src)
{
    set(src, src == nullptr ? 0 : std::strlen(src));
}

void TagText::set(char const* src, std::size_t width)
{
    bool const isSet = src != nullptr && width != 0;
    if (isSet) {
        m_text.assign(src, strnlen(src, width)); // src may be a part of the text itself
    } else {
        m_text = std::string();
    }
    m_isSet = isSet;
}
