#include "ZUL_module.h"

#include "ZUL_process.h"
#include "tag_layout.h"

#include <stdexcept>

ZUL_module::ZUL_module(ZUL_module const& other) : ZUL_module(nullptr, nullptr)
{
    *this = other;
}

ZUL_module& ZUL_module::operator=(ZUL_module const& other)
{
    // The counts stay: they say what the file stated about the module that was loaded.
    m_type = other.m_type;
    m_instance = other.m_instance;
    m_fullName = other.m_fullName;
    m_process = other.m_process;
    setIndex(other.m_index);
    return *this;
}

// clang-format off
void ZUL_module::layout(TagLayout& row)
{
    row.needsContainer();
    row.dependencies();
    row.variable(120);
    auto const type     = row.tailLength(12, 2, "type length",      m_type.sizeWithTerminator(),     0xFFFF, "Module type description is too long");
    auto const instance = row.tailLength(14, 2, "instance length",  m_instance.sizeWithTerminator(), 0xFFFF, "Module instance name is too long");
    auto const fullName = row.tailLength(16, 2, "full name length", m_fullName.sizeWithTerminator(), 0xFFFF, "Module full name is too long");
    row.total(type + instance + fullName, "The size of a module description grew to big to save it!");
    row.process    ( 32,     "process id",      m_process);
    row.s32        (  8,     "module index",    m_index);
    row.reserved   ( 18,  6);
    row.u32        ( 24,     "parameter count", m_paramCount);
    row.u32        ( 28,     "channel count",   m_channelCount);
    row.writtenText( 36, 64, "process name",    getProcessName());
    row.reserved   (100, 20);
    row.tailText("type",      type,     m_type);
    row.tailText("instance",  instance, m_instance);
    row.tailText("full name", fullName, m_fullName);
}
// clang-format on

void ZUL_module::checkDependentFields()
{
    if (m_process == nullptr) {
        throw std::runtime_error("Tried to save a ZUL_module that has no ZUL_process assigned to");
    }
}

char const* ZUL_module::getProcessName() const noexcept
{
    return m_process == nullptr ? nullptr : m_process->getName();
}

unsigned int ZUL_module::getProcessId() const noexcept
{
    return m_process == nullptr ? 0xFFFFFFFF : m_process->getId();
}

void ZUL_module::setIndex(int index)
{
    m_index = index;
    keyChanged();
}
