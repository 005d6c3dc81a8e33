#include "ZUL_binary_data.h"

#include "zul_errors.h"

#include <cstring>

ZUL_binary_data::ZUL_binary_data(ZUL_binary_data const& other) : ZUL_binary_data(nullptr, other.m_tagId)
{
    *this = other;
}

ZUL_binary_data& ZUL_binary_data::operator=(ZUL_binary_data const& other)
{
    if (this == &other) {
        return *this;
    }
    m_bytes = other.m_bytes;
    // A source without bytes leaves the old length: the tag still takes its place in a saved container.
    if (m_bytes.data() != nullptr) {
        m_length = other.m_length;
    }
    return *this;
}

unsigned long ZUL_binary_data::Load(void const* data, unsigned long avail)
{
    constexpr unsigned long headerSize = 8;
    if (avail < headerSize) {
        // Id 0 and not the own one: diagnostics tell such a rest of a file from a damaged tag of a known kind by it.
        throw ZUL_file_bad_tag_length(0);
    }
    m_bytes.copyFrom(data, avail);
    m_length = avail;
    return avail;
}

void ZUL_binary_data::Save(void* dest)
{
    if (m_bytes.size() != 0) {
        std::memcpy(dest, m_bytes.data(), m_bytes.size());
    }
}
