#include "designs.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <functional>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using Handle = fpga_design const*;
using Ask = std::function<std::string(Handle, unsigned, unsigned)>;

/// An answer as the table writes it. Pointers to anything but texts are "null" or "there".
template <class Answer>
std::string show(Answer answer)
{
    if constexpr (std::is_same_v<Answer, char const*>) {
        return answer == nullptr ? "null" : '"' + std::string(answer) + '"';
    } else if constexpr (std::is_pointer_v<Answer>) {
        return answer == nullptr ? "null" : "there";
    } else {
        std::ostringstream text;
        text << answer;
        return text.str();
    }
}

template <class Answer>
Ask by(Answer (*function)(Handle))
{
    return [function](Handle d, unsigned, unsigned) { return show(function(d)); };
}
template <class Answer>
Ask by(Answer (*function)(Handle, unsigned))
{
    return [function](Handle d, unsigned i, unsigned) { return show(function(d, i)); };
}
template <class Answer>
Ask by(Answer (*function)(Handle, unsigned, unsigned))
{
    return [function](Handle d, unsigned i, unsigned j) { return show(function(d, i, j)); };
}
/// Of a module handle: i is the module.
template <class Answer>
Ask by(Answer (*function)(zul_module_ext const*, unsigned))
{
    return [function](Handle d, unsigned i, unsigned j) {
        return show(function(ZulGetModuleByNumber(d, i), j));
    };
}
template <class Answer>
Ask by(Answer (*function)(zul_module_ext const*))
{
    return [function](Handle d, unsigned i, unsigned) { return show(function(ZulGetModuleByNumber(d, i))); };
}
/// Of a name: @p known is number 0, no other number has one that is known.
template <class Answer>
Ask by(Answer (*function)(Handle, char const*), char const* known)
{
    return [function, known](Handle d, unsigned i, unsigned) {
        return show(function(d, i == 0 ? known : i == 1 ? "nobody's" : i == 2 ? "" : nullptr));
    };
}
/// Of a process: i is the number of something, j the process.
Ask byProcess(int (*function)(Handle, int))
{
    return [function](Handle d, unsigned, unsigned j) { return show(function(d, static_cast<int>(j))); };
}
Ask byProcess(int (*function)(Handle, unsigned, int))
{
    return [function](Handle d, unsigned i, unsigned j) { return show(function(d, i, static_cast<int>(j))); };
}
Ask config(bool asksForLength)
{
    return [asksForLength](Handle d, unsigned i, unsigned j) {
        unsigned long length = 0;
        void const* const bits = ZulGetConfigData(d, i, j, asksForLength ? &length : nullptr);
        return asksForLength && bits != nullptr ? show(length) : show(bits);
    };
}
/// i and j tell which of the pointers are null.
Ask versionNumber()
{
    return [](Handle d, unsigned i, unsigned j) {
        int version = -7;
        int revision = -7;
        int const result =
            ZulGetDesignVersionNumber(d, i == 0 ? &version : nullptr, j == 0 ? &revision : nullptr);
        return show(result) + (result == 0 ? ' ' + show(version) + '.' + show(revision) : "");
    };
}
Ask fixedVersion()
{
    return [](Handle d, unsigned, unsigned) {
        std::uint16_t version = 0;
        std::uint16_t revision = 0;
        int const result = ZulGetRequiredFixedVersion(d, &version, &revision);
        return show(result) + (result == 0 ? ' ' + show(version) + '.' + show(revision) : "");
    };
}

enum class Misses { Never, First, Second, Either };
using enum Misses;

struct Row {
    char const* function;
    Ask ask;
    char const* nullHandle;
    char const* miss;
    unsigned i, j; // arguments that hit
    char const* hit;
    Misses misses;     // which argument can miss
    unsigned end1 = 0; // the first number that misses as i
    unsigned end2 = 0; // and as j
};

// The whole table of queries, asked of designs::rich().
// clang-format off
std::vector<Row> const table = {
    // Function                                                                     Null    Miss    Hit: i, j, answer          Misses
    {"ZulGetNrOfModules",             by(ZulGetNrOfModules),                        "-1",   "",     0, 0, "3",                 Never},
    {"ZulGetModuleByNumber",          by(ZulGetModuleByNumber),                     "null", "null", 2, 0, "there",             First, 3},
    {"ZulGetModuleTyp",               by(ZulGetModuleTyp),                          "null", "null", 0, 0, "\"Camera\"",        First, 3},
    {"ZulGetModuleFullName",          by(ZulGetModuleFullName),                     "null", "null", 0, 0, "\"acq\\cam\"",      First, 3},
    {"ZulGetModuleDllName",           by(ZulGetModuleDllName),                      "null", "null", 0, 0, "\"libCamera.dylib\"", First, 3},
    {"ZulGetModuleDllDir",            by(ZulGetModuleDllDir),                       "null", "",     0, 0, "null",              Never},
    {"ZulGetModuleDecoratedName",     by(ZulGetModuleDecoratedName),                "null", "null", 0, 0, "\"CameraQelLocalCreate\"", First, 3},
    {"ZulGetModuleProcessName",       by(ZulGetModuleProcessName),                  "null", "null", 2, 0, "\"output\"",        First, 3},
    {"ZulGetModuleProcessId",         by(ZulGetModuleProcessId),                    "-1",   "-1",   2, 0, "4",                 First, 3},
    {"ZulGetNrOfProcess",             by(ZulGetNrOfProcess),                        "-1",   "",     0, 0, "2",                 Never},
    {"ZulGetProcessName",             by(ZulGetProcessName),                        "null", "null", 1, 0, "\"output\"",        First, 2},
    {"ZulGetProcessId",               by(ZulGetProcessId),                          "-1",   "-1",   1, 0, "4",                 First, 2},
    {"ZulGetProcessClk",              by(ZulGetProcessClk),                         "-1",   "0",    1, 0, "62500000",          First, 2},
    {"ZulGetParamName",               by(ZulGetParamName),                          "null", "null", 0, 2, "\"label\"",         Either, 3, 3},
    {"ZulGetParamFullName",           by(ZulGetParamFullName),                      "null", "null", 0, 2, "\"acq_cam_label\"", Either, 3, 3},
    {"ZulGetParamFullNameHier",       by(ZulGetParamFullNameHier),                  "null", "null", 0, 2, "\"acq\\cam\\label\"", Either, 3, 3},
    {"ZulGetParamValue",              by(ZulGetParamValue),                         "0",    "0",    0, 0, "2048",              Either, 3, 3},
    {"ZulGetParamValue64",            by(ZulGetParamValue64),                       "0",    "0",    0, 0, "2048",              Either, 3, 3},
    {"ZulGetParamValueDouble",        by(ZulGetParamValueDouble),                   "0",    "0",    1, 1, "2.5",               Either, 3, 3},
    {"ZulGetParamFlags",              by(ZulGetParamFlags),                         "0",    "0",    0, 2, "7",                 Either, 3, 3},
    {"ZulGetNrOfParam",               by(ZulGetNrOfParam),                          "-1",   "-1",   0, 0, "3",                 First, 3},
    {"ZulGetAbsolutParamIndex",       by(ZulGetAbsolutParamIndex),                  "-1",   "-1",   0, 2, "5",                 Either, 3, 3},
    {"ZulGetRelativeParamIndex",      by(ZulGetRelativeParamIndex),                 "-1",   "-1",   0, 5, "2",                 First, 3},
    {"ZulGetRelativeParamIndex",      by(ZulGetRelativeParamIndex),                 "-1",   "0",    0, 5, "2",                 Second, 0, 6},
    {"ZulGetParamModuleIndex",        by(ZulGetParamModuleIndex),                   "-1",   "0",    1, 0, "11",                First, 6},
    {"ZulGetAbsolutParamValue",       by(ZulGetAbsolutParamValue),                  "0",    "0",    1, 0, "5",                 First, 6},
    {"ZulGetNrOfParameter",           by(ZulGetNrOfParameter),                      "-1",   "",     0, 0, "6",                 Never},
    {"ZulGetParameterName",           by(ZulGetParameterName),                      "null", "null", 5, 0, "\"label\"",         First, 6},
    {"ZulGetParameterFullName",       by(ZulGetParameterFullName),                  "null", "null", 5, 0, "\"acq\\cam\\label\"", First, 6},
    {"ZulGetDmaWidth",                by(ZulGetDmaWidth),                           "-1",   "-1",   1, 0, "1024",              First, 2},
    {"ZulGetDmaHeight",               by(ZulGetDmaHeight),                          "-1",   "-1",   1, 0, "768",               First, 2},
    {"ZulGetDmaFormat",               by(ZulGetDmaFormat),                          "-1",   "-1",   1, 0, "1",                 First, 2},
    {"ZulGetDmaBitWidth",             by(ZulGetDmaBitWidth),                        "-1",   "-1",   1, 0, "8",                 First, 2},
    {"ZulGetDmaModuleNr",             by(ZulGetDmaModuleNr),                        "-1",   "-1",   1, 0, "12",                First, 2},
    {"ZulGetNrOfDmas",                by(ZulGetNrOfDmas),                           "-1",   "",     0, 0, "2",                 Never},
    {"ZulGetDmaChannel",              by(ZulGetDmaChannel),                         "-1",   "-1",   1, 0, "1",                 First, 2},
    {"ZulGetNrOfCams",                by(ZulGetNrOfCams),                           "-1",   "",     0, 0, "2",                 Never},
    {"ZulGetCamChannel",              by(ZulGetCamChannel),                         "-1",   "-1",   1, 0, "5",                 First, 2},
    {"ZulGetNrOfCamsPerProcess",      byProcess(ZulGetNrOfCamsPerProcess),          "-1",   "0",    0, 0xFFFFFFFF, "2",        Never},
    {"ZulGetCamChannelPerProcess",    byProcess(ZulGetCamChannelPerProcess),        "-1",   "-1",   1, 0xFFFFFFFF, "5",        First, 2},
    {"ZulGetProcessNrFromDmaChannel", by(ZulGetProcessNrFromDmaChannel),            "-1",   "-1",   1, 0, "-1",                First, 2},
    {"ZulGetDesignData",              by(ZulGetDesignData),                         "null", "",     0, 0, "null",              Never},
    {"ZulGetDesignLength",            by(ZulGetDesignLength),                       "-1",   "",     0, 0, "0",                 Never},
    {"ZulGetDesignTyp",               by(ZulGetDesignTyp),                          "-1",   "",     0, 0, "0",                 Never},
    {"ZulGetNrOfRegister",            by(ZulGetNrOfRegister),                       "-1",   "",     0, 0, "3",                 Never},
    {"ZulGetRegisterByName",          by(ZulGetRegisterByName, "Frames"),           "0",    "0",    0, 0, "2",                 First, 1},
    {"ZulGetRegisterBitRange",        by(ZulGetRegisterBitRange),                   "-1",   "0",    1, 0, "32",                First, 4},
    {"ZulGetRegisterBitPos",          by(ZulGetRegisterBitPos),                     "-1",   "0",    1, 0, "1",                 First, 4},
    {"ZulGetRegisterInitValue",       by(ZulGetRegisterInitValue),                  "0",    "0",    3, 0, "81985529216486895", First, 4},
    {"ZulGetRegisterDirection",       by(ZulGetRegisterDirection),                  "-1",   "0",    1, 0, "1",                 First, 4},
    {"ZulGetRegisterAddress",         by(ZulGetRegisterAddress),                    "0",    "-1",   1, 0, "256",               First, 4},
    {"ZulGetRegisterName",            by(ZulGetRegisterName),                       "null", "null", 1, 0, "\"CameraControl\"", First, 4},
    {"ZulGetNrOfUserInfos",           by(ZulGetNrOfUserInfos),                      "-1",   "",     0, 0, "3",                 Never},
    {"ZulGetUserInfoByNumber",        by(ZulGetUserInfoByNumber),                   "null", "null", 2, 0, "there",             First, 3},
    {"ZulGetUserInfoByName",          by(ZulGetUserInfoByName, "BuildNumber"),      "null", "null", 0, 0, "there",             First, 1},
    {"ZulGetUserInfoTypByNumber",     by(ZulGetUserInfoTypByNumber),                "-1",   "0",    1, 0, "200",               First, 3},
    {"ZulGetUserInfoTypByName",       by(ZulGetUserInfoTypByName, "BuildNumber"),   "-1",   "0",    0, 0, "200",               First, 1},
    {"ZulGetDesignVersion",           by(ZulGetDesignVersion),                      "null", "",     0, 0, "\"1.0.02\"",        Never},
    {"ZulGetDesignVersionNumber",     versionNumber(),                              "-1",   "-1",   0, 0, "0 2.7",             Either, 1, 1},
    {"ZulGetMaxConfigIndex",          by(ZulGetMaxConfigIndex),                     "-1",   "",     0, 0, "2",                 Never},
    {"ZulGetRequiredFixedVersion",    fixedVersion(),                               "-1",   "",     0, 0, "0 2.3",             Never},
    {"ZulGetConfigData",              config(true),                                 "null", "null", 1, 0, "15",                Either, 3, 1},
    {"ZulGetConfigData",              config(false),                                "null", "null", 2, 0xA45, "there",         Either, 3, 0xA46},
    {"ZulGetOperatorDir",             by(ZulGetOperatorDir),                        "null", "",     0, 0, "null",              Never},
    {"ZulSupportsOs",                 by(ZulSupportsOs),                            "-1",   "0",    516, 0, "1",               First, 517},
    {"ZulGetEvent",                   by(ZulGetEvent),                              "null", "null", 1, 0, "there",             First, 2},
    {"ZulModuleGetParam",             by(ZulModuleGetParam),                        "null", "null", 0, 2, "there",             Either, 3, 3},
    {"ZulModuleGetParamCount",        by(ZulModuleGetParamCount),                   "0",    "0",    0, 0, "3",                 First, 3},
    {"ZulModuleGetChannel",           by(ZulModuleGetChannel),                      "null", "null", 0, 0, "there",             Either, 3, 1},
    {"ZulModuleGetChannelCount",      by(ZulModuleGetChannelCount),                 "0",    "0",    0, 0, "1",                 First, 3},
};
// clang-format on

class ZulrtTable : public testing::TestWithParam<Row> {
protected:
    /// Queries leave errno alone.
    std::string ask(Handle handle, unsigned i, unsigned j) const
    {
        errno = EDOM;
        std::string answer = GetParam().ask(handle, i, j);
        EXPECT_EQ(errno, EDOM);
        return answer;
    }
    static std::vector<unsigned> from(unsigned end)
    {
        std::vector<unsigned> numbers = {end};
        for (unsigned const far : {end + 1, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
            numbers.push_back(far);
        }
        return numbers;
    }

    designs::Loaded m_design{designs::rich()};
};

TEST_P(ZulrtTable, GivesTheNullValueOfANullHandle)
{
    Row const& row = GetParam();
    for (unsigned const number : {0U, 1U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(ask(nullptr, row.i, row.j), row.nullHandle);
        EXPECT_EQ(ask(nullptr, number, number), row.nullHandle);
    }
}

TEST_P(ZulrtTable, AnswersWhatThereIs)
{
    EXPECT_EQ(ask(m_design.get(), GetParam().i, GetParam().j), GetParam().hit);
}

TEST_P(ZulrtTable, GivesTheMissOfWhatThereIsNot)
{
    Row const& row = GetParam();
    if (row.misses == First || row.misses == Either) {
        for (unsigned const number : from(row.end1)) {
            EXPECT_EQ(ask(m_design.get(), number, row.j), row.miss) << number;
        }
    }
    if (row.misses == Second || row.misses == Either) {
        for (unsigned const number : from(row.end2)) {
            EXPECT_EQ(ask(m_design.get(), row.i, number), row.miss) << number;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Row, ZulrtTable, testing::ValuesIn(table), [](auto const& row) {
    return std::string(row.param.function) + "_" + std::to_string(row.index);
});

TEST(ZulGetModuleName, AnswersLikeTheOthersForAHandle)
{
    designs::Loaded design(designs::rich());
    EXPECT_EQ(show(ZulGetModuleName(design.get(), 0)), "\"cam\"");
    for (unsigned const i : {3U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(ZulGetModuleName(design.get(), i), nullptr);
    }
}

TEST(ZulGetModuleNameDeathTest, EndsTheProcessForANullHandle)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(ZulGetModuleName(nullptr, 0), "");
}

TEST(ZulrtTableOfRegisters, HasNoNumberZero)
{
    designs::Loaded design(designs::rich());
    EXPECT_EQ(ZulGetRegisterBitRange(design.get(), 0), 0);
    EXPECT_EQ(ZulGetRegisterBitPos(design.get(), 0), 0);
    EXPECT_EQ(ZulGetRegisterInitValue(design.get(), 0), 0U);
    EXPECT_EQ(ZulGetRegisterDirection(design.get(), 0), 0);
    EXPECT_EQ(ZulGetRegisterAddress(design.get(), 0), -1);
    EXPECT_EQ(ZulGetRegisterName(design.get(), 0), nullptr);
}

TEST(ZulrtTableOfBoards, AnswersWithoutHandle)
{
    EXPECT_EQ(show(FPGA2dirname(-1)), "null");
    EXPECT_EQ(show(FPGAtype2RBTstring(-1)), "null");
    EXPECT_EQ(RBTstring2FPGAtype(nullptr), 0xFFFFFFFF);
    EXPECT_EQ(RBTstring2FPGAtype(""), 0xFFFFFFFF);
    char const* const part = FPGAtype2RBTstring(0xBBEA1);
    ASSERT_NE(part, nullptr);
    EXPECT_EQ(RBTstring2FPGAtype(part), 0xBBEA1U);
}

} // namespace
