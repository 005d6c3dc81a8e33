#include "zul_module_ext.h"

#include "ZUL_channel_param.h"
#include "ZUL_module.h"
#include "ZUL_param.h"
#include "stable_array.h"

#include <cstring>
#include <vector>

/// What the modules with one index have in common.
struct zul_module_ext_lists {
    std::vector<ZUL_param*> parameterTags;
    StableArray<zul_param> parameters; // one for each tag
    StableArray<zul_channel_param> channels;
};

namespace {

template <std::size_t Size>
void copyName(char (&to)[Size], char const* name)
{
    if (name != nullptr) {
        std::memcpy(to, name, strnlen(name, Size - 1));
    }
}

zul_param recordOf(ZUL_param const& parameter, int paramIndex)
{
    zul_param record{};
    char const* const text = parameter.getParamString();
    record.module_index = static_cast<std::uint32_t>(parameter.getModuleIndex());
    record.param_index = paramIndex;
    copyName(record.name, parameter.getName());
    record.value = parameter.getValue();
    record.double_value = parameter.getValueDouble();
    record.flags = parameter.getFlags();
    record.type = parameter.getType();
    record.field_size = parameter.getFieldSize();
    record.field = parameter.getField();
    record.field_again = parameter.getField();
    record.param_string = text;
    record.string_length = text == nullptr ? 0 : static_cast<std::uint32_t>(std::strlen(text));
    return record;
}

zul_channel_param recordOf(ZUL_channel_param const& channel)
{
    zul_channel_param record{};
    record.input = channel.getInputChannel() ? 1 : 0;
    record.module_index = channel.getModuleIndex();
    record.link_index = channel.getLinkIndex();
    copyName(record.name, channel.getName());
    record.format_index = channel.getFormatIndex();
    record.arith = channel.getArith();
    record.flavor = channel.getFlavor();
    record.width = channel.getWidth();
    record.position = channel.getPosition();
    record.parallel = channel.getParallel();
    record.kernel_rows = channel.getKernelRows();
    record.kernel_columns = channel.getKernelColumns();
    record.max_width = channel.getMaxWidth();
    record.max_height = channel.getMaxHeight();
    return record;
}

/// Negative indices, as unsigned numbers, are beyond every end.
template <class Record>
Record* recordAt(StableArray<Record> const& records, int i) noexcept
{
    auto const position = static_cast<std::size_t>(i);
    return position < records.size() ? &records.at(position) : nullptr;
}

} // namespace

zul_module_ext::zul_module_ext(ZUL_module* module)
    : m_module(module), m_lists(std::make_shared<zul_module_ext_lists>())
{
}

zul_module_ext::zul_module_ext(ZUL_module* module, zul_module_ext const& twin)
    : m_module(module), m_lists(twin.m_lists)
{
}

zul_module_ext::~zul_module_ext() = default;

unsigned int zul_module_ext::GetProcessId() const noexcept
{
    return m_module->getProcessId();
}

void zul_module_ext::AddParam(ZUL_param* parameter, int paramIndex)
{
    m_lists->parameterTags.push_back(parameter);
    try {
        m_lists->parameters.add(recordOf(*parameter, paramIndex));
    } catch (...) {
        m_lists->parameterTags.pop_back();
        throw;
    }
}

unsigned int zul_module_ext::GetNrOfParam() const noexcept
{
    return static_cast<unsigned int>(m_lists->parameterTags.size());
}

ZUL_param* zul_module_ext::getParam(unsigned int i) const noexcept
{
    return i < m_lists->parameterTags.size() ? m_lists->parameterTags[i] : nullptr;
}

zul_param* zul_module_ext::GetParam(int i) const noexcept
{
    return recordAt(m_lists->parameters, i);
}

void zul_module_ext::AddChannel(ZUL_channel_param* channel)
{
    m_lists->channels.add(recordOf(*channel));
}

unsigned int zul_module_ext::GetNrOfChannel() const noexcept
{
    return static_cast<unsigned int>(m_lists->channels.size());
}

zul_channel_param* zul_module_ext::GetChannel(int i) const noexcept
{
    return recordAt(m_lists->channels, i);
}
