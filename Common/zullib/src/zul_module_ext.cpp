#include "zul_module_ext.h"

#include "ZUL_channel_param.h"
#include "ZUL_module.h"
#include "ZUL_param.h"

#include <cstring>
#include <vector>

struct zul_module_ext_private {
    /// A tag and its record, added and dropped together.
    template <class Tag, class Record>
    struct Recorded {
        Tag* tag;
        std::unique_ptr<Record> record; // on its own, since callers keep its address
    };

    explicit zul_module_ext_private(ZUL_module* extended) : module(extended) {}

    ZUL_module* module;
    std::vector<Recorded<ZUL_param, zul_param>> parameters;
    std::vector<Recorded<ZUL_channel_param, zul_channel_param>> channels;
    int position = 0;
};

namespace {

template <std::size_t Size>
void copyName(char (&to)[Size], char const* name)
{
    if (name != nullptr) {
        std::memcpy(to, name, strnlen(name, Size - 1));
    }
}

std::unique_ptr<zul_param> recordOf(ZUL_param const& parameter, int paramIndex)
{
    auto record = std::make_unique<zul_param>();
    char const* const text = parameter.getParamString();
    record->module_index = static_cast<std::uint32_t>(parameter.getModuleIndex());
    record->param_index = paramIndex;
    copyName(record->name, parameter.getName());
    record->value = parameter.getValue();
    record->double_value = parameter.getValueDouble();
    record->flags = parameter.getFlags();
    record->type = parameter.getType();
    record->field_size = parameter.getFieldSize();
    record->field = parameter.getField();
    record->field_again = parameter.getField();
    record->param_string = text;
    record->string_length = text == nullptr ? 0 : static_cast<std::uint32_t>(std::strlen(text));
    return record;
}

std::unique_ptr<zul_channel_param> recordOf(ZUL_channel_param const& channel)
{
    auto record = std::make_unique<zul_channel_param>();
    record->input = channel.getInputChannel() ? 1 : 0;
    record->module_index = channel.getModuleIndex();
    record->link_index = channel.getLinkIndex();
    copyName(record->name, channel.getName());
    record->format_index = channel.getFormatIndex();
    record->arith = channel.getArith();
    record->flavor = channel.getFlavor();
    record->width = channel.getWidth();
    record->position = channel.getPosition();
    record->parallel = channel.getParallel();
    record->kernel_rows = channel.getKernelRows();
    record->kernel_columns = channel.getKernelColumns();
    record->max_width = channel.getMaxWidth();
    record->max_height = channel.getMaxHeight();
    return record;
}

/// Negative indices, as unsigned numbers, are beyond every end.
template <class Entries>
auto const* entryAt(Entries const& entries, std::size_t i) noexcept
{
    return i < entries.size() ? &entries[i] : nullptr;
}

} // namespace

zul_module_ext::zul_module_ext(ZUL_module* module)
    : m_private(std::make_unique<zul_module_ext_private>(module))
{
}

zul_module_ext::~zul_module_ext() = default;

void zul_module_ext::setIndex(int position) noexcept
{
    m_private->position = position;
}

int zul_module_ext::GetModuleIndex() const noexcept
{
    return m_private->position;
}

unsigned int zul_module_ext::GetProcessId() const noexcept
{
    return m_private->module->getProcessId();
}

ZUL_module* zul_module_ext::getModule() const noexcept
{
    return m_private->module;
}

void zul_module_ext::AddParam(ZUL_param* parameter, int paramIndex)
{
    m_private->parameters.push_back({parameter, recordOf(*parameter, paramIndex)});
}

unsigned int zul_module_ext::GetNrOfParam() const noexcept
{
    return static_cast<unsigned int>(m_private->parameters.size());
}

ZUL_param* zul_module_ext::getParam(unsigned int i) const noexcept
{
    auto const* const entry = entryAt(m_private->parameters, i);
    return entry == nullptr ? nullptr : entry->tag;
}

zul_param* zul_module_ext::GetParam(int i) const noexcept
{
    auto const* const entry = entryAt(m_private->parameters, static_cast<std::size_t>(i));
    return entry == nullptr ? nullptr : entry->record.get();
}

void zul_module_ext::AddChannel(ZUL_channel_param* channel)
{
    m_private->channels.push_back({channel, recordOf(*channel)});
}

unsigned int zul_module_ext::GetNrOfChannel() const noexcept
{
    return static_cast<unsigned int>(m_private->channels.size());
}

zul_channel_param* zul_module_ext::GetChannel(int i) const noexcept
{
    auto const* const entry = entryAt(m_private->channels, static_cast<std::size_t>(i));
    return entry == nullptr ? nullptr : entry->record.get();
}
