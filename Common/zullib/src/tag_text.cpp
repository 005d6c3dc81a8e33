#include "tag_text.h"

#include <cstring>

void TagText::set(char const* src)
{
    set(src, src == nullptr ? 0 : std::strlen(src));
}

void TagText::set(char const* src, std::size_t width)
{
    if (src == nullptr || width == 0) {
        m_text.reset();
    } else if (m_text) {
        m_text->assign(src, strnlen(src, width)); // src may be a part of the text itself
    } else {
        m_text.emplace(src, strnlen(src, width));
    }
}
