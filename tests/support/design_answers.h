#pragma once

#include "zulrt.h"

#include <array>
#include <bit>
#include <cstdint>
#include <functional>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

/// Everything that a design answers. Included by the tests of the design object and of the C interface only.
namespace answers {

/// Calls @p take(function, i, j, answer) with the answers of all queries about one number, for each number that there is
/// and the first that there is not.
template <class Take>
void askByNumber(fpga_design const* d, Take take)
{
    using Handle = fpga_design const*;
    auto const each = [&](int count, auto const&... rows) {
        for (unsigned i = 0; i <= static_cast<unsigned>(count); ++i) {
            (take(rows.first, i, 0U, rows.second(d, i)), ...);
        }
    };
    auto const row = [](char const* name, auto ask) { return std::pair{name, ask}; };
    each(ZulGetNrOfModules(d), row("ZulGetModuleByNumber", ZulGetModuleByNumber),
         row("ZulGetModuleName", ZulGetModuleName), row("ZulGetModuleTyp", ZulGetModuleTyp),
         row("ZulGetModuleFullName", ZulGetModuleFullName), row("ZulGetModuleDllName", ZulGetModuleDllName),
         row("ZulGetModuleDecoratedName", ZulGetModuleDecoratedName),
         row("ZulGetModuleProcessName", ZulGetModuleProcessName),
         row("ZulGetModuleProcessId", ZulGetModuleProcessId), row("ZulGetNrOfParam", ZulGetNrOfParam));
    each(ZulGetNrOfProcess(d), row("ZulGetProcessName", ZulGetProcessName),
         row("ZulGetProcessId", ZulGetProcessId), row("ZulGetProcessClk", ZulGetProcessClk));
    each(ZulGetNrOfParameter(d), row("ZulGetParamModuleIndex", ZulGetParamModuleIndex),
         row("ZulGetAbsolutParamValue", ZulGetAbsolutParamValue),
         row("ZulGetParameterName", ZulGetParameterName),
         row("ZulGetParameterFullName", ZulGetParameterFullName));
    each(ZulGetNrOfDmas(d), row("ZulGetDmaWidth", ZulGetDmaWidth), row("ZulGetDmaHeight", ZulGetDmaHeight),
         row("ZulGetDmaFormat", ZulGetDmaFormat), row("ZulGetDmaBitWidth", ZulGetDmaBitWidth),
         row("ZulGetDmaModuleNr", ZulGetDmaModuleNr), row("ZulGetDmaChannel", ZulGetDmaChannel),
         row("ZulGetProcessNrFromDmaChannel", ZulGetProcessNrFromDmaChannel));
    each(ZulGetNrOfCams(d), row("ZulGetCamChannel", ZulGetCamChannel));
    each(ZulGetNrOfRegister(d) + 1, row("ZulGetRegisterBitRange", ZulGetRegisterBitRange),
         row("ZulGetRegisterBitPos", ZulGetRegisterBitPos),
         row("ZulGetRegisterInitValue", ZulGetRegisterInitValue),
         row("ZulGetRegisterDirection", ZulGetRegisterDirection),
         row("ZulGetRegisterAddress", ZulGetRegisterAddress), row("ZulGetRegisterName", ZulGetRegisterName),
         row("ZulGetRegisterByName",
             [](Handle h, unsigned i) { return ZulGetRegisterByName(h, ZulGetRegisterName(h, i)); }));
    each(ZulGetNrOfUserInfos(d), row("ZulGetUserInfoByNumber", ZulGetUserInfoByNumber),
         row("ZulGetUserInfoTypByNumber", ZulGetUserInfoTypByNumber));
    each(8, row("ZulGetEvent", ZulGetEvent));
    each(1024, row("ZulSupportsOs", ZulSupportsOs));
}

/// The same for queries about two numbers.
template <class Take>
void askByTwoNumbers(fpga_design const* d, Take take)
{
    auto const each = [&](unsigned i, int count, auto const&... rows) {
        for (unsigned j = 0; j <= static_cast<unsigned>(count < 0 ? 0 : count); ++j) {
            (take(rows.first, i, j, rows.second(d, i, j)), ...);
        }
    };
    auto const row = [](char const* name, auto ask) { return std::pair{name, ask}; };
    auto const modules = static_cast<unsigned>(ZulGetNrOfModules(d));
    for (unsigned i = 0; i <= modules; ++i) {
        each(i, ZulGetNrOfParam(d, i), row("ZulGetParamName", ZulGetParamName),
             row("ZulGetParamFullName", ZulGetParamFullName),
             row("ZulGetParamFullNameHier", ZulGetParamFullNameHier),
             row("ZulGetParamValue", ZulGetParamValue), row("ZulGetParamValue64", ZulGetParamValue64),
             row("ZulGetParamValueDouble", ZulGetParamValueDouble), row("ZulGetParamFlags", ZulGetParamFlags),
             row("ZulGetAbsolutParamIndex", ZulGetAbsolutParamIndex));
        each(i, ZulGetNrOfParameter(d), row("ZulGetRelativeParamIndex", ZulGetRelativeParamIndex));
        zul_module_ext const* const module = ZulGetModuleByNumber(d, i);
        take("ZulModuleGetParamCount", i, 0U, ZulModuleGetParamCount(module));
        take("ZulModuleGetChannelCount", i, 0U, ZulModuleGetChannelCount(module));
        each(i, static_cast<int>(ZulModuleGetParamCount(module)),
             row("ZulModuleGetParam", [module](fpga_design const*, unsigned, unsigned j) {
                 return ZulModuleGetParam(module, j);
             }));
        each(i, static_cast<int>(ZulModuleGetChannelCount(module)),
             row("ZulModuleGetChannel", [module](fpga_design const*, unsigned, unsigned j) {
                 return ZulModuleGetChannel(module, j);
             }));
    }
    for (int process = -1; process <= 8; ++process) {
        take("ZulGetNrOfCamsPerProcess", static_cast<unsigned>(process), 0U,
             ZulGetNrOfCamsPerProcess(d, process));
        each(static_cast<unsigned>(process), ZulGetNrOfCamsPerProcess(d, process),
             row("ZulGetCamChannelPerProcess", [](fpga_design const* h, unsigned p, unsigned n) {
                 return ZulGetCamChannelPerProcess(h, n, static_cast<int>(p));
             }));
    }
    for (unsigned index = 0; index <= 4; ++index) {
        for (unsigned const board : {0U, 0xA44U, 0xA45U, 0xA441U, 0xB00U}) {
            unsigned long length = 0;
            take("ZulGetConfigData", index, board, ZulGetConfigData(d, index, board, &length));
            take("length of ZulGetConfigData", index, board, length);
        }
    }
}

/// The same for queries about the whole design, and about names.
template <class Take>
void askOnce(fpga_design const* d, Take take)
{
    auto const one = [&](char const* name, auto answer) { take(name, 0U, 0U, answer); };
    one("ZulGetNrOfModules", ZulGetNrOfModules(d));
    one("ZulGetNrOfProcess", ZulGetNrOfProcess(d));
    one("ZulGetNrOfParameter", ZulGetNrOfParameter(d));
    one("ZulGetNrOfDmas", ZulGetNrOfDmas(d));
    one("ZulGetNrOfCams", ZulGetNrOfCams(d));
    one("ZulGetNrOfRegister", ZulGetNrOfRegister(d));
    one("ZulGetNrOfUserInfos", ZulGetNrOfUserInfos(d));
    one("ZulGetModuleDllDir", ZulGetModuleDllDir(d));
    one("ZulGetOperatorDir", ZulGetOperatorDir(d));
    one("ZulGetDesignVersion", ZulGetDesignVersion(d));
    one("ZulGetMaxConfigIndex", ZulGetMaxConfigIndex(d));
    one("ZulGetDesignData", ZulGetDesignData(d));
    one("ZulGetDesignLength", ZulGetDesignLength(d));
    one("ZulGetDesignTyp", ZulGetDesignTyp(d));
    int version = 0;
    int revision = 0;
    one("ZulGetDesignVersionNumber", ZulGetDesignVersionNumber(d, &version, &revision));
    one("version", version);
    one("revision", revision);
    std::uint16_t fixedVersion = 0;
    std::uint16_t fixedRevision = 0;
    one("ZulGetRequiredFixedVersion", ZulGetRequiredFixedVersion(d, &fixedVersion, &fixedRevision));
    one("fixed version", int{fixedVersion});
    one("fixed revision", int{fixedRevision});
    for (char const* const name : {"Frames", "OutputControl", "nothing of the kind"}) {
        one("ZulGetRegisterByName", ZulGetRegisterByName(d, name));
    }
    for (char const* const name :
         {"##_RZ3_DESIGN_SETTINGS", "DESIGN_NAME", "__ZUL_ID__", "BuildNumber", "maker", "nobody's"}) {
        one("ZulGetUserInfoByName", ZulGetUserInfoByName(d, name));
        one("ZulGetUserInfoTypByName", ZulGetUserInfoTypByName(d, name));
    }
}

/// Calls @p take(function, i, j, answer) with the answer of every query.
template <class Take>
void askEverything(fpga_design const* d, Take take)
{
    askOnce(d, take);
    askByNumber(d, take);
    askByTwoNumbers(d, take);
}

/// What @p design answers to everything, one answer a line. Pointers are compared as such: what was handed out stays.
inline std::string textOf(fpga_design const* design)
{
    std::ostringstream text;
    askEverything(design, [&text](char const* function, unsigned i, unsigned j, auto answer) {
        text << function << '(' << i << ", " << j << ") = ";
        if constexpr (std::is_same_v<decltype(answer), char const*>) {
            text << (answer == nullptr ? "(null)" : answer) << '\n';
        } else if constexpr (std::is_same_v<decltype(answer), zul_event_record const*>) {
            text << answer;
            if (answer != nullptr) {
                text << ' ' << int{answer->queue} << ' ' << int{answer->bit} << ' ' << answer->name << ' '
                     << answer->register_index << ' ' << answer->firmware;
            }
            text << '\n';
        } else {
            text << answer << '\n';
        }
    });
    return text.str();
}

/// Every answer as one number; texts by their characters.
inline std::vector<std::uint64_t> numbersOf(fpga_design const* design)
{
    std::vector<std::uint64_t> numbers;
    askEverything(design, [&numbers](char const*, unsigned, unsigned, auto answer) {
        if constexpr (std::is_same_v<decltype(answer), char const*>) {
            numbers.push_back(answer == nullptr ? 0 : std::hash<std::string_view>()(answer));
        } else if constexpr (std::is_pointer_v<decltype(answer)>) {
            numbers.push_back(reinterpret_cast<std::uintptr_t>(answer));
        } else if constexpr (std::is_same_v<decltype(answer), double>) {
            numbers.push_back(std::bit_cast<std::uint64_t>(answer));
        } else {
            numbers.push_back(static_cast<std::uint64_t>(answer));
        }
    });
    return numbers;
}

} // namespace answers
