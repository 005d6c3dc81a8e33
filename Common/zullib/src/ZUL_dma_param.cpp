#include "ZUL_dma_param.h"

#include "ZUL_module.h"
#include "tag_layout.h"

#include <stdexcept>

// clang-format off
void ZUL_dma_param::layout(TagLayout& row)
{
    row.dependencies();
    row.fixed(32);
    row.module(12, "module index", m_module);
    row.s32   ( 8, "dma channel",  m_dmaChannel);
    row.u32   (16, "max width",    m_maxWidth);
    row.u32   (20, "max height",   m_maxHeight);
    row.u32   (24, "format",       m_format);
    row.u32   (28, "bit width",    m_bitWidth);
}
// clang-format on

void ZUL_dma_param::checkDependentFields()
{
    if (m_module == nullptr) {
        throw std::runtime_error("Tried to save a ZUL_dma_param without a module assigned, not allowed.");
    }
}

int ZUL_dma_param::getModuleIndex() const noexcept
{
    return m_module == nullptr ? -1 : m_module->getIndex();
}
