#include "ZUL_camparam.h"

#include "ZUL_module.h"
#include "tag_cast.h"
#include "tag_layout.h"

#include <stdexcept>

// clang-format off
void ZUL_camparam::layout(TagLayout& row)
{
    row.dependencies();
    row.fixed(16);
    row.module(12, "module index",   m_module);
    row.u32   ( 8, "camera channel", m_channel);
}
// clang-format on

void ZUL_camparam::checkDependentFields()
{
    if (m_module == nullptr) {
        throw std::runtime_error("Tried to save a ZUL_camparam without a module assigned, not allowed.");
    }
}

unsigned int ZUL_camparam::getModuleIndex() const noexcept
{
    return m_module == nullptr ? 0xFFFFFFFF : static_cast<unsigned int>(m_module->getIndex());
}

bool ZUL_camparam::operator<(ZUL_tag const& other) const
{
    return m_channel < tagCast<ZUL_camparam>(other).m_channel;
}

bool ZUL_camparam::operator>(ZUL_tag const& other) const
{
    return m_channel > tagCast<ZUL_camparam>(other).m_channel;
}

bool ZUL_camparam::operator==(ZUL_tag const& other) const
{
    auto const* const parameter = dynamic_cast<ZUL_camparam const*>(&other);
    return parameter != nullptr && *this == *parameter;
}

bool ZUL_camparam::operator==(ZUL_camparam const& other) const
{
    return m_channel == other.m_channel && getModuleIndex() == other.getModuleIndex();
}
