#include "fpga_design.h"
#include "query.h"
#include "zullib.h"

#include <array>
#include <cstdio>
#include <string>
#include <string_view>

namespace {

/// The text without null: a missing part of a full name counts as empty.
std::string_view part(char const* text)
{
    return text == nullptr ? std::string_view() : std::string_view(text);
}

char const* fullNameOf(ZUL_module const* module)
{
    return module == nullptr ? nullptr : module->getFullName();
}

/// Puts the module's full name, @p separator and the parameter's name into @p buffer. @return @p buffer
std::string& join(std::string& buffer, zul_module_ext const& module, char separator, ZUL_param const& param)
{
    return buffer.assign(part(fullNameOf(module.getModule())))
        .append(1, separator)
        .append(part(param.getName()));
}

} // namespace

// clang-format off

unsigned int fpga_design::GetNrOfModules() const noexcept { return countOf(m_tags.modules); }
unsigned int fpga_design::GetNrOfProcess() const noexcept { return countOf(m_tags.processes); }
unsigned int fpga_design::getParamCount()  const noexcept { return countOf(m_tags.params); }

// Of a tag by its number, or the miss value.

char const* fpga_design::GetModuleName(unsigned int i)        const noexcept { return of(m_tags.modules, i, &ZUL_module::getInstance,    nullptr); }
char const* fpga_design::GetModuleTyp(unsigned int i)         const noexcept { return of(m_tags.modules, i, &ZUL_module::getType,        nullptr); }
char const* fpga_design::GetModuleFullName(unsigned int i)    const noexcept { return of(m_tags.modules, i, &ZUL_module::getFullName,    nullptr); }
char const* fpga_design::GetModuleProcessName(unsigned int i) const noexcept { return of(m_tags.modules, i, &ZUL_module::getProcessName, nullptr); }
int         fpga_design::GetModuleProcessId(unsigned int i)   const noexcept { return of(m_tags.modules, i, &ZUL_module::getProcessId,   -1); }

char const* fpga_design::GetProcessName(unsigned int i) const noexcept { return of(m_tags.processes, i, &ZUL_process::getName,  nullptr); }
int         fpga_design::GetProcessId(unsigned int i)   const noexcept { return of(m_tags.processes, i, &ZUL_process::getId,    -1); }
int         fpga_design::GetProcessClk(unsigned int i)  const noexcept { return of(m_tags.processes, i, &ZUL_process::getClock, 0); }

ZUL_param*    fpga_design::GetParamByNumber(unsigned int a)     const noexcept { return m_tags.params.at(a); }
int           fpga_design::GetParamModuleIndex(unsigned int a)  const noexcept { return of(m_tags.params, a, &ZUL_param::getModuleIndex, 0); }
std::uint32_t fpga_design::GetAbsolutParamValue(unsigned int a) const noexcept { return of(m_tags.params, a, &ZUL_param::getValue,       0U); }
char const*   fpga_design::GetParameterName(unsigned int a)     const noexcept { return of(m_tags.params, a, &ZUL_param::getName,        nullptr); }

// Of a parameter by module and position, or the miss value.

char const*   fpga_design::GetParamName(unsigned int i, unsigned int j)        const noexcept { return of(paramAt(i, j), &ZUL_param::getName,        nullptr); }
std::uint32_t fpga_design::GetParamValue(unsigned int i, unsigned int j)       const noexcept { return of(paramAt(i, j), &ZUL_param::getValue,       0U); }
std::uint64_t fpga_design::GetParamValue64(unsigned int i, unsigned int j)     const noexcept { return of(paramAt(i, j), &ZUL_param::getValue,       std::uint64_t{0}); }
double        fpga_design::GetParamValueDouble(unsigned int i, unsigned int j) const noexcept { return of(paramAt(i, j), &ZUL_param::getValueDouble, 0.0); }
std::uint32_t fpga_design::GetParamFlags(unsigned int i, unsigned int j)       const noexcept { return of(paramAt(i, j), &ZUL_param::getFlags,       0U); }

// clang-format on

zul_module_ext* fpga_design::GetModuleByNumber(unsigned int module) const noexcept
{
    return module < m_modules.size() ? m_modules[module].get() : nullptr;
}

zul_module_ext* fpga_design::GetModuleByName(char const* fullName) const noexcept
{
    for (auto const& module : m_modules) {
        char const* const name = module->getModule()->getFullName();
        if (fullName != nullptr && name != nullptr && std::string_view(name) == fullName) {
            return module.get();
        }
    }
    return nullptr;
}

char const* fpga_design::GetModuleDllName(unsigned int module) const noexcept
{
    return of(GetModuleByNumber(module), &zul_module_ext::getLibraryFileName, nullptr);
}

char const* fpga_design::GetModuleDecoratedName(unsigned int module) const noexcept
{
    return of(GetModuleByNumber(module), &zul_module_ext::getFactoryName, nullptr);
}

int fpga_design::GetNrOfParams(unsigned int module) const noexcept
{
    return of(GetModuleByNumber(module), &zul_module_ext::GetNrOfParam, -1);
}

ZUL_param* fpga_design::paramAt(unsigned int module, unsigned int param) const noexcept
{
    zul_module_ext const* const extension = GetModuleByNumber(module);
    return extension == nullptr ? nullptr : extension->getParam(param);
}

int fpga_design::GetAbsolutParamIndex(unsigned int module, unsigned int param) const noexcept
{
    zul_module_ext const* const extension = GetModuleByNumber(module);
    zul_param const* const record =
        extension == nullptr ? nullptr : extension->GetParam(static_cast<int>(param));
    return record == nullptr ? -1 : record->param_index;
}

int fpga_design::GetRelativeParamIndex(unsigned int module, unsigned int absolute) const noexcept
{
    zul_module_ext const* const extension = GetModuleByNumber(module);
    if (extension == nullptr) {
        return -1;
    }
    // 0, as for the first parameter, also says that the module does not have it: callers do not expect anything else.
    ZUL_param const* const param = m_tags.params.at(absolute);
    std::uint32_t const position = absolute < m_relativeParams.size() ? m_relativeParams[absolute] : 0;
    return param != nullptr && extension->getParam(position) == param ? static_cast<int>(position) : 0;
}

char const* fpga_design::GetParamFullName(unsigned int module, unsigned int param) const noexcept
{
    return answer(nullptr, [&]() -> char const* {
        thread_local std::string buffer;
        ZUL_param const* const found = paramAt(module, param);
        return found == nullptr ? nullptr : RBS(join(buffer, *GetModuleByNumber(module), '_', *found).data());
    });
}

char const* fpga_design::GetParamFullNameHier(unsigned int module, unsigned int param) const noexcept
{
    return answer(nullptr, [&]() -> char const* {
        thread_local std::string buffer;
        ZUL_param const* const found = paramAt(module, param);
        return found == nullptr ? nullptr : join(buffer, *GetModuleByNumber(module), '\\', *found).data();
    });
}

char const* fpga_design::GetParameterFullName(unsigned int absolute) const noexcept
{
    constexpr std::size_t room = 512; // what callers have always been given; the rest is cut off
    thread_local std::array<char, room> buffer;
    ZUL_param const* const param = m_tags.params.at(absolute);
    if (param == nullptr) {
        return nullptr;
    }
    std::string_view const module = part(fullNameOf(param->getModule()));
    std::string_view const name = part(param->getName());
    std::size_t const moduleLength = module.copy(buffer.data(), room - 1);
    std::size_t length = moduleLength;
    if (length < room - 1) {
        buffer[length++] = '\\';
        length += name.copy(buffer.data() + length, room - 1 - length);
    }
    buffer[length] = '\0';
    return buffer.data();
}
