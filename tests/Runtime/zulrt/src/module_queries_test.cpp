#include "designs.h"
#include "zullib.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <thread>

namespace {

using designs::Loaded;
using designs::module;

constexpr unsigned farAway[] = {3, 4, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};

class ModuleQueries : public testing::Test {
protected:
    Loaded m_loaded{designs::rich()};
    fpga_design const& m_design = *m_loaded;
};

TEST_F(ModuleQueries, AnswerWhatTheModuleTagSays)
{
    EXPECT_EQ(m_design.GetNrOfModules(), 3U);
    EXPECT_STREQ(m_design.GetModuleName(0), "cam");
    EXPECT_STREQ(m_design.GetModuleTyp(0), "Camera");
    EXPECT_STREQ(m_design.GetModuleFullName(0), "acq\\cam");
    EXPECT_STREQ(m_design.GetModuleProcessName(0), "acquisition");
    EXPECT_EQ(m_design.GetModuleProcessId(0), 3);
    EXPECT_STREQ(m_design.GetModuleDllName(0), "libCamera.dylib");
    EXPECT_STREQ(m_design.GetModuleDecoratedName(0), "CameraQelLocalCreate");
    EXPECT_STREQ(m_design.GetModuleProcessName(2), "output");
    EXPECT_EQ(m_design.GetModuleProcessId(2), 4);
}

TEST_F(ModuleQueries, AnswerNullForTextsThatAreAbsent)
{
    EXPECT_EQ(m_design.GetModuleName(2), nullptr);
    EXPECT_EQ(m_design.GetModuleTyp(2), nullptr);
    EXPECT_EQ(m_design.GetModuleFullName(2), nullptr);
    EXPECT_EQ(m_design.GetModuleDllName(2), nullptr);
    EXPECT_EQ(m_design.GetModuleDecoratedName(2), nullptr);
}

TEST_F(ModuleQueries, MissModulesThatAreNotThere)
{
    for (unsigned const i : farAway) {
        EXPECT_EQ(m_design.GetModuleByNumber(i), nullptr);
        EXPECT_EQ(m_design.GetModuleName(i), nullptr);
        EXPECT_EQ(m_design.GetModuleTyp(i), nullptr);
        EXPECT_EQ(m_design.GetModuleFullName(i), nullptr);
        EXPECT_EQ(m_design.GetModuleProcessName(i), nullptr);
        EXPECT_EQ(m_design.GetModuleProcessId(i), -1);
        EXPECT_EQ(m_design.GetModuleDllName(i), nullptr);
        EXPECT_EQ(m_design.GetModuleDecoratedName(i), nullptr);
        EXPECT_EQ(m_design.GetNrOfParams(i), -1);
        EXPECT_EQ(m_design.GetAbsolutParamIndex(i, 0), -1);
        EXPECT_EQ(m_design.GetRelativeParamIndex(i, 0), -1);
        EXPECT_EQ(m_design.GetParamName(i, 0), nullptr);
    }
}

TEST_F(ModuleQueries, FindAModuleByItsFullNameExactly)
{
    EXPECT_EQ(m_design.GetModuleByName("acq\\fir"), m_design.GetModuleByNumber(1));
    EXPECT_EQ(m_design.GetModuleByName("ACQ\\fir"), nullptr);
    EXPECT_EQ(m_design.GetModuleByName("acq\\fi"), nullptr);
    EXPECT_EQ(m_design.GetModuleByName(""), nullptr) << "an absent name equals nothing";
    EXPECT_EQ(m_design.GetModuleByName(nullptr), nullptr);
    Loaded two(ContainerBytes().tag(sample::process(0)).tag(module(1, "same")).tag(module(2, "same")));
    EXPECT_EQ(two->GetModuleByName("same"), two->GetModuleByNumber(0)) << "the first of them";
}

TEST_F(ModuleQueries, AnswerAboutProcesses)
{
    EXPECT_EQ(m_design.GetNrOfProcess(), 2U);
    EXPECT_STREQ(m_design.GetProcessName(1), "output");
    EXPECT_EQ(m_design.GetProcessId(1), 4);
    EXPECT_EQ(m_design.GetProcessClk(1), 62'500'000);
    for (unsigned const i : {2U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(m_design.GetProcessName(i), nullptr);
        EXPECT_EQ(m_design.GetProcessId(i), -1);
        EXPECT_EQ(m_design.GetProcessClk(i), 0);
    }
}

TEST_F(ModuleQueries, NumberProcessesAscendingById)
{
    Loaded design(ContainerBytes().tag(sample::process(9, "c")).tag(sample::process(2, "a")));
    EXPECT_EQ(design->GetProcessId(0), 2);
    EXPECT_STREQ(design->GetProcessName(1), "c");
}

TEST_F(ModuleQueries, AnswerParametersByModuleAndPosition)
{
    EXPECT_EQ(m_design.GetNrOfParams(0), 3);
    EXPECT_EQ(m_design.GetNrOfParams(1), 3);
    EXPECT_EQ(m_design.GetNrOfParams(2), 0);
    EXPECT_STREQ(m_design.GetParamName(0, 1), "height");
    EXPECT_EQ(m_design.GetParamValue(0, 1), 1088U);
    EXPECT_EQ(m_design.GetParamValue64(0, 1), 1088U);
    EXPECT_TRUE(std::isnan(m_design.GetParamValueDouble(0, 1)));
    EXPECT_EQ(m_design.GetParamFlags(0, 1), 7U);
    EXPECT_EQ(m_design.GetAbsolutParamIndex(0, 1), 2);
    EXPECT_EQ(m_design.GetParamValueDouble(1, 1), 2.5);
    EXPECT_EQ(m_design.GetParamValue(1, 1), 0U);
}

TEST_F(ModuleQueries, MissParametersThatAreNotThere)
{
    for (unsigned const j : farAway) {
        EXPECT_EQ(m_design.GetParamName(0, j), nullptr);
        EXPECT_EQ(m_design.GetParamFullName(0, j), nullptr);
        EXPECT_EQ(m_design.GetParamFullNameHier(0, j), nullptr);
        EXPECT_EQ(m_design.GetParamValue(0, j), 0U);
        EXPECT_EQ(m_design.GetParamValue64(0, j), 0U);
        EXPECT_EQ(m_design.GetParamValueDouble(0, j), 0.0);
        EXPECT_EQ(m_design.GetParamFlags(0, j), 0U);
        EXPECT_EQ(m_design.GetAbsolutParamIndex(0, j), -1);
        EXPECT_EQ(m_design.GetParamFullName(j, 0), nullptr);
        EXPECT_EQ(m_design.GetParamFullNameHier(j, 0), nullptr);
        EXPECT_EQ(m_design.GetParamValueDouble(j, 0), 0.0);
    }
    EXPECT_EQ(m_design.GetParamName(2, 0), nullptr);
}

TEST_F(ModuleQueries, AnswerTheLowerHalfWhere32BitsAreAskedFor)
{
    Bytes const param = sample::integerParam("wide", 1, 0x89ABCDEF).setU32(84, 0x01234567);
    Loaded design(ContainerBytes().tag(sample::process(0)).tag(module(1, "m")).tag(param));
    EXPECT_EQ(design->GetParamValue(0, 0), 0x89ABCDEFU);
    EXPECT_EQ(design->GetAbsolutParamValue(0), 0x89ABCDEFU);
    EXPECT_EQ(design->GetParamValue64(0, 0), 0x0123456789ABCDEFU);
    EXPECT_EQ(ZulGetParamValue64(design.get(), 0, 0), 0x0123456789ABCDEFU);
}

TEST_F(ModuleQueries, AnswerParametersByTheirAbsolutePosition)
{
    EXPECT_EQ(m_design.getParamCount(), 6U);
    EXPECT_STREQ(m_design.GetParameterName(1), "order");
    EXPECT_EQ(m_design.GetParamModuleIndex(1), 11) << "the module's index, not its position";
    EXPECT_EQ(m_design.GetAbsolutParamValue(1), 5U);
    EXPECT_STREQ(m_design.GetParamByNumber(1)->getName(), "order");
    for (unsigned const a : {6U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(m_design.GetParameterName(a), nullptr);
        EXPECT_EQ(m_design.GetParameterFullName(a), nullptr);
        EXPECT_EQ(m_design.GetParamModuleIndex(a), 0);
        EXPECT_EQ(m_design.GetAbsolutParamValue(a), 0U);
        EXPECT_EQ(m_design.GetParamByNumber(a), nullptr);
    }
}

TEST_F(ModuleQueries, AnswerTheRelativePositionOfAnAbsoluteOne)
{
    EXPECT_EQ(m_design.GetRelativeParamIndex(0, 0), 0);
    EXPECT_EQ(m_design.GetRelativeParamIndex(0, 2), 1);
    EXPECT_EQ(m_design.GetRelativeParamIndex(0, 5), 2);
    EXPECT_EQ(m_design.GetRelativeParamIndex(1, 3), 1);
}

TEST_F(ModuleQueries, AnswerZeroForAParameterOfAnotherModule)
{
    EXPECT_EQ(m_design.GetRelativeParamIndex(1, 5), 0);
    EXPECT_EQ(m_design.GetRelativeParamIndex(2, 5), 0) << "and of a module without any";
    for (unsigned const a : {6U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(m_design.GetRelativeParamIndex(0, a), 0) << "and of nobody";
    }
}

// Full names.

TEST_F(ModuleQueries, JoinFullNamesThreeWays)
{
    EXPECT_STREQ(m_design.GetParamFullName(0, 1), "acq_cam_height");
    EXPECT_STREQ(m_design.GetParamFullNameHier(0, 1), "acq\\cam\\height");
    EXPECT_STREQ(m_design.GetParameterFullName(2), "acq\\cam\\height");
}

TEST_F(ModuleQueries, KeepABufferForEachOfTheThree)
{
    char const* const plain = m_design.GetParamFullName(0, 0);
    char const* const hierarchical = m_design.GetParamFullNameHier(0, 0);
    char const* const absolute = m_design.GetParameterFullName(0);
    EXPECT_STREQ(plain, "acq_cam_width");
    EXPECT_STREQ(hierarchical, "acq\\cam\\width");
    EXPECT_STREQ(absolute, "acq\\cam\\width");
    EXPECT_NE(hierarchical, absolute);
    m_design.GetParamFullName(0, 1);
    EXPECT_STREQ(plain, "acq_cam_height") << "filled anew";
    EXPECT_STREQ(hierarchical, "acq\\cam\\width");
}

TEST_F(ModuleQueries, KeepABufferForEachOfTheThreads)
{
    char const* const plain = m_design.GetParamFullName(0, 0);
    char const* const hierarchical = m_design.GetParamFullNameHier(0, 0);
    char const* const absolute = m_design.GetParameterFullName(0);
    std::thread([&] {
        EXPECT_STREQ(m_design.GetParamFullName(0, 1), "acq_cam_height");
        EXPECT_STREQ(m_design.GetParamFullNameHier(0, 1), "acq\\cam\\height");
        EXPECT_STREQ(m_design.GetParameterFullName(2), "acq\\cam\\height");
    }).join();
    EXPECT_STREQ(plain, "acq_cam_width");
    EXPECT_STREQ(hierarchical, "acq\\cam\\width");
    EXPECT_STREQ(absolute, "acq\\cam\\width");
}

TEST_F(ModuleQueries, LeaveTheBufferOfAMissAlone)
{
    char const* const plain = m_design.GetParamFullName(0, 0);
    char const* const absolute = m_design.GetParameterFullName(0);
    EXPECT_EQ(m_design.GetParamFullName(0, 9), nullptr);
    EXPECT_EQ(m_design.GetParameterFullName(9), nullptr);
    EXPECT_STREQ(plain, "acq_cam_width");
    EXPECT_STREQ(absolute, "acq\\cam\\width");
}

TEST_F(ModuleQueries, CountAMissingPartOfAFullNameAsEmpty)
{
    Loaded design(ContainerBytes()
                      .tag(sample::process(0))
                      .tag(module(1, 0, "T", "i", ""))
                      .tag(module(2, "full"))
                      .tag(sample::integerParam("width", 1))
                      .tag(sample::integerParam("", 2)));
    EXPECT_STREQ(design->GetParamFullName(0, 0), "_width");
    EXPECT_STREQ(design->GetParamFullNameHier(0, 0), "\\width");
    EXPECT_STREQ(design->GetParameterFullName(0), "\\width");
    EXPECT_STREQ(design->GetParamFullName(1, 0), "full_");
    EXPECT_STREQ(design->GetParamFullNameHier(1, 0), "full\\");
    EXPECT_STREQ(design->GetParameterFullName(1), "full\\");
}

/// A design whose only module has a full name of @p length characters, and a parameter.
Loaded withFullName(std::size_t length)
{
    return Loaded(ContainerBytes()
                      .tag(sample::process(0))
                      .tag(module(1, std::string(length - 1, 'm') + '\\'))
                      .tag(sample::integerParam("param", 1)));
}

TEST_F(ModuleQueries, CutTheAbsoluteFullNameBehind511Characters)
{
    for (std::size_t const length : {504U, 505U, 506U, 509U, 510U, 511U, 512U, 600U, 65'000U}) {
        SCOPED_TRACE(length);
        auto design = withFullName(length);
        std::string const all = std::string(length - 1, 'm') + "\\\\param";
        EXPECT_EQ(design->GetParameterFullName(0), all.substr(0, 511));
        EXPECT_EQ(design->GetParamFullNameHier(0, 0), all) << "the others are never cut";
        EXPECT_EQ(design->GetParamFullName(0, 0), std::string(length - 1, 'm') + "__param");
    }
}

// Module handles.

TEST_F(ModuleQueries, AnswerRecordsOfAModuleHandle)
{
    zul_module_ext const* const fir = ZulGetModuleByNumber(&m_design, 1);
    EXPECT_EQ(ZulModuleGetParamCount(fir), 3U);
    EXPECT_EQ(ZulModuleGetChannelCount(fir), 1U);
    EXPECT_STREQ(ZulModuleGetParam(fir, 2)->name, "taps");
    EXPECT_STREQ(ZulModuleGetChannel(fir, 0)->name, "link1");
    for (unsigned const i : farAway) {
        EXPECT_EQ(ZulModuleGetParam(fir, i), nullptr);
        EXPECT_EQ(ZulModuleGetChannel(fir, i), nullptr);
    }
}

} // namespace
