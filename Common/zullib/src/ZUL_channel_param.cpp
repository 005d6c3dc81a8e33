#include "ZUL_channel_param.h"

#include "ZUL_module.h"
#include "tag_layout.h"

#include <stdexcept>

ZUL_channel_param::ZUL_channel_param(ZUL* parent, bool input, ZUL_module const* module, char const* name)
    : LaidOutTag(parent), m_input(input), m_module(module)
{
    setName(name);
}

// clang-format off
void ZUL_channel_param::layout(TagLayout& row)
{
    std::uint32_t input = m_input ? 1 : 0;

    row.dependencies();
    row.fixed(124);
    row.module( 12,            "module index",   m_module);
    row.u32   (  8,            "input",          input);
    row.u32   ( 16,            "link index",     m_linkIndex);
    row.text  ( 20, nameWidth, "name",           m_name);
    row.u32   ( 84,            "format index",   m_formatIndex);
    row.u32   ( 88,            "arith",          m_arith);
    row.u32   ( 92,            "flavor",         m_flavor);
    row.u32   ( 96,            "width",          m_width);
    row.u32   (100,            "position",       m_position);
    row.u32   (104,            "parallel",       m_parallel);
    row.u32   (108,            "kernel rows",    m_kernelRows);
    row.u32   (112,            "kernel columns", m_kernelColumns);
    row.u32   (116,            "max width",      m_maxWidth);
    row.u32   (120,            "max height",     m_maxHeight);

    m_input = input != 0;
}
// clang-format on

void ZUL_channel_param::checkDependentFields()
{
    if (m_module == nullptr) {
        throw std::runtime_error("Tried to save a ZUL_channel_param without a module assigned, not allowed.");
    }
}

unsigned int ZUL_channel_param::getModuleIndex() const noexcept
{
    return m_module == nullptr ? 0xFFFFFFFF : static_cast<unsigned int>(m_module->getIndex());
}
