#include "zul_tag.h"

#include "zul_class.h"
#include "zul_private.h"

#include <cstring>
#include <memory>
#include <stdexcept>

namespace {

[[noreturn]] void refuseComparison()
{
    throw std::runtime_error("this operator has no default implementation");
}

} // namespace

void ZUL_tag::operator delete(ZUL_tag* tag, std::destroying_delete_t)
{
    bool const inBlocks = tag->m_inBlocks;
    void* const memory = dynamic_cast<void*>(tag); // of the whole object, whatever class it has
    tag->~ZUL_tag();
    if (!inBlocks) {
        ::operator delete(memory);
    }
}

void ZUL_tag::setParent(ZUL* parent)
{
    m_parent = parent;
}

bool ZUL_tag::operator<=(ZUL_tag const& other) const
{
    return *this < other || *this == other;
}

bool ZUL_tag::operator>=(ZUL_tag const& other) const
{
    return *this > other || *this == other;
}

bool ZUL_tag::operator!=(ZUL_tag const& other) const
{
    return !(*this == other);
}

bool ZUL_tag::operator<(ZUL_tag const&) const
{
    refuseComparison();
}

bool ZUL_tag::operator>(ZUL_tag const& other) const
{
    return !(*this < other) && *this != other;
}

bool ZUL_tag::operator==(ZUL_tag const&) const
{
    refuseComparison();
}

void ZUL_tag::changeString(char** field, char const* src)
{
    changeString(field, src, src == nullptr ? 0 : std::strlen(src));
}

void ZUL_tag::changeString(char** field, char const* src, unsigned long len)
{
    std::unique_ptr<char[]> copy;
    if (len != 0 && src != nullptr) {
        copy = std::make_unique<char[]>(len + 1);
        std::memcpy(copy.get(), src, strnlen(src, len));
    }
    delete[] * field;
    *field = copy.release();
}

void ZUL_tag::tellContainer()
{
    m_parent->tagKeyChanged(*this);
}

TagBlocks* ZUL_tag::textBlocks() const noexcept
{
    return m_inBlocks && !m_filed ? &m_parent->m_private->m_blocks : nullptr;
}
