#include "fpga_design.h"
#include "query.h"
#include "zullib.h"

#include <string_view>

namespace {

constexpr std::string_view settingsName = "##_RZ3_DESIGN_SETTINGS";
constexpr std::string_view designName = "DESIGN_NAME";

void const* dataOf(ZUL_user_info const& info)
{
    void const* const number = info.getInfoValuePtr();
    return number == nullptr ? info.getInfoString() : number;
}

ZUL_user_info const* findInfo(ZUL const* zul, char const* name)
{
    return zul == nullptr || name == nullptr ? nullptr : zul->findUserInfo(name);
}

/// The value of a hexadecimal digit; upper-case letters are none: version strings are written with lower-case ones.
int digit(char character)
{
    constexpr std::string_view digits = "0123456789abcdef";
    std::size_t const value = digits.find(character);
    return value == std::string_view::npos ? -1 : static_cast<int>(value);
}

} // namespace

unsigned int fpga_design::GetNrOfUserInfos() const noexcept
{
    return countOf(m_tags.userInfos);
}

void const* fpga_design::GetUserInfoByNumber(unsigned int info) const noexcept
{
    ZUL_user_info const* const tag = m_tags.userInfos.at(info);
    return tag == nullptr ? nullptr : dataOf(*tag);
}

int fpga_design::GetUserInfoTypByNumber(unsigned int info) const noexcept
{
    return of(m_tags.userInfos, info, &ZUL_user_info::getType, 0);
}

void const* fpga_design::GetUserInfoByName(char const* name) const noexcept
{
    return answer(nullptr, [&]() -> void const* {
        if (name == nullptr || m_zul == nullptr) {
            return nullptr;
        }
        if (name == settingsName) {
            return &m_settings->get(*m_zul);
        }
        if (name == designName) {
            return m_zul->getDesignName();
        }
        ZUL_user_info const* const info = findInfo(m_zul.get(), name);
        return info == nullptr ? nullptr : dataOf(*info);
    });
}

int fpga_design::GetUserInfoTypByName(char const* name) const noexcept
{
    return answer(0, [&] { return of(findInfo(m_zul.get(), name), &ZUL_user_info::getType, 0); });
}

char const* fpga_design::getDesignVersionString() const noexcept
{
    return m_zul == nullptr ? nullptr : m_zul->getDesignVersion();
}

int fpga_design::getDesignVersionNumber(int* version, int* revision) const noexcept
{
    ZUL_design_version_nr const* const number = m_tags.versionNumbers.at(0);
    if (number == nullptr || version == nullptr || revision == nullptr) {
        return -1;
    }
    *version = number->getVersion();
    *revision = number->getRevision();
    return 0;
}

int fpga_design::getRequiredFixedVersion(std::uint16_t* version, std::uint16_t* revision) const noexcept
{
    ZUL_fixed_fpga_info const* const info = m_tags.fixedInfos.at(0);
    if (info == nullptr) {
        return -1;
    }
    if (version != nullptr) {
        *version = info->getVersion();
    }
    if (revision != nullptr) {
        *revision = info->getRevision();
    }
    return 0;
}

int fpga_design::getMaxConfigIndex() const noexcept
{
    return m_zul == nullptr ? -1 : static_cast<int>(m_zul->getMaxConfigIndex());
}

void const* fpga_design::GetFpgaConfig(unsigned int index, unsigned int board,
                                       unsigned long* length) const noexcept
{
    ZUL_multi_data const* const config = m_zul == nullptr ? nullptr : m_zul->getConfig(index, board);
    if (config == nullptr) {
        return nullptr;
    }
    if (length != nullptr) {
        *length = config->getLength();
    }
    return config->getData();
}

int fpga_design::supportsOs(unsigned int system) const noexcept
{
    bool supported = m_tags.libraries.size() == 0; // a design without libraries needs none of the system
    for (ZUL_dll const* const library : m_tags.libraries) {
        supported = supported || library->getSystem() == system;
    }
    return supported ? 1 : 0;
}

int fpga_design::GetBoardType() const noexcept
{
    constexpr int unknown = 22;
    char const* const text = getDesignVersionString();
    std::string_view const version = text == nullptr ? std::string_view() : text;
    if (version.size() < 6) {
        return unknown;
    }
    int const high = digit(version[4]);
    int const low = digit(version[5]);
    return high < 0 || low < 0 ? unknown : GetBoardType(static_cast<unsigned int>(high * 16 + low));
}

int fpga_design::GetBoardType(unsigned int number) noexcept
{
    switch (number) {
    case 0:
    case 2:
        return 2624;
    case 1:
        return 2625;
    case 4:
        return 2628;
    default:
        return 65535;
    }
}
