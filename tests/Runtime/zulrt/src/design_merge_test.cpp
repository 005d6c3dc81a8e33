#include "designs.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

using designs::event;
using designs::Loaded;
using designs::mergeFrom;
using designs::module;

constexpr int refused = -113;

// What a merge gives.

class MergedDesign : public testing::Test {
protected:
    MergedDesign() : m_result(mergeFrom(m_design.get(), designs::addition())) {}

    static constexpr unsigned merged = 3; // the position of the module that was merged in

    Loaded m_design{designs::rich()};
    int m_result;
};

TEST_F(MergedDesign, HasTheModulesOfBothWhereTagsAreAsked)
{
    fpga_design const* const d = m_design.get();
    ASSERT_EQ(m_result, 0);
    EXPECT_EQ(ZulGetNrOfModules(d), 4);
    EXPECT_STREQ(ZulGetModuleName(d, merged), "screen");
    EXPECT_STREQ(ZulGetModuleTyp(d, merged), "Screen");
    EXPECT_STREQ(ZulGetModuleFullName(d, merged), "out\\screen");
    EXPECT_STREQ(ZulGetModuleProcessName(d, merged), "display");
    EXPECT_EQ(ZulGetModuleProcessId(d, merged), 5) << "renumbered behind 3 and 4";
    EXPECT_EQ(ZulGetNrOfProcess(d), 3);
    EXPECT_STREQ(ZulGetProcessName(d, 2), "display");
    EXPECT_EQ(ZulGetProcessId(d, 2), 5);
}

TEST_F(MergedDesign, HasTheModulesOfTheLoadWhereExtensionsAreAsked)
{
    fpga_design const* const d = m_design.get();
    EXPECT_EQ(ZulGetModuleByNumber(d, merged), nullptr);
    EXPECT_EQ(ZulGetModuleDllName(d, merged), nullptr);
    EXPECT_EQ(ZulGetModuleDecoratedName(d, merged), nullptr);
    EXPECT_EQ(ZulGetNrOfParam(d, merged), -1);
    EXPECT_EQ(ZulGetParamName(d, merged, 0), nullptr);
    EXPECT_EQ(ZulGetParamFullName(d, merged, 0), nullptr);
    EXPECT_EQ(ZulGetAbsolutParamIndex(d, merged, 0), -1);
    EXPECT_EQ(ZulGetRelativeParamIndex(d, merged, 6), -1);
    EXPECT_STREQ(ZulGetModuleDllName(d, 0), "libCamera.dylib");
    EXPECT_EQ(ZulGetNrOfParam(d, 0), 3);
    EXPECT_STREQ(ZulGetParamFullName(d, 0, 1), "acq_cam_height");
}

TEST_F(MergedDesign, HasTheParametersOfBothByAbsolutePosition)
{
    fpga_design const* const d = m_design.get();
    EXPECT_EQ(ZulGetNrOfParameter(d), 8);
    EXPECT_STREQ(ZulGetParameterName(d, 6), "brightness");
    EXPECT_EQ(ZulGetAbsolutParamValue(d, 6), 80U);
    EXPECT_EQ(ZulGetParamModuleIndex(d, 6), 13) << "renumbered behind 10, 11 and 12";
    EXPECT_STREQ(ZulGetParameterFullName(d, 6), "out\\screen\\brightness");
    EXPECT_EQ(ZulGetRelativeParamIndex(d, 0, 6), 0) << "no module of the load has it";
    EXPECT_EQ(ZulGetRelativeParamIndex(d, 0, 2), 1);
}

TEST_F(MergedDesign, HasDmasAndCamerasOfBoth)
{
    fpga_design const* const d = m_design.get();
    EXPECT_EQ(ZulGetNrOfDmas(d), 3);
    EXPECT_EQ(ZulGetDmaChannel(d, 2), 3);
    EXPECT_EQ(ZulGetDmaModuleNr(d, 2), 13);
    EXPECT_EQ(ZulGetProcessNrFromDmaChannel(d, 2), -1) << "that is a question about extensions";
    EXPECT_EQ(ZulGetNrOfCams(d), 3);
    EXPECT_EQ(ZulGetCamChannel(d, 2), 9);
}

TEST_F(MergedDesign, HasRegistersInfosAndBitstreamsOfBoth)
{
    fpga_design const* const d = m_design.get();
    EXPECT_EQ(ZulGetNrOfRegister(d), 4);
    EXPECT_EQ(ZulGetRegisterByName(d, "OutputControl"), 3U) << "older registers come first";
    EXPECT_STREQ(ZulGetRegisterName(d, 3), "OutputControl");
    EXPECT_EQ(ZulGetRegisterAddress(d, 3), 0x400);
    EXPECT_EQ(ZulGetRegisterByName(d, "FrameCounter"), 4U) << "and newer ones move";
    EXPECT_STREQ(static_cast<char const*>(ZulGetUserInfoByName(d, "maker")), "second");
    unsigned long length = 0;
    void const* const bits = ZulGetConfigData(d, 1, 0xB00, &length);
    ASSERT_NE(bits, nullptr);
    EXPECT_EQ(std::string_view(static_cast<char const*>(bits), length), "third bitstream")
        << "its buffer is gone by now";
}

TEST_F(MergedDesign, NeedsNoFixedFirmware)
{
    EXPECT_EQ(ZulGetRequiredFixedVersion(m_design.get(), nullptr, nullptr), -1);
}

TEST_F(MergedDesign, HasTheEventsOfBoth)
{
    fpga_design const* const d = m_design.get();
    ASSERT_NE(ZulGetEvent(d, 2), nullptr);
    EXPECT_STREQ(ZulGetEvent(d, 0)->name, "acq_FrameEnd");
    EXPECT_EQ(ZulGetEvent(d, 0)->register_index, 4U) << "that register has another number now";
    EXPECT_STREQ(ZulGetEvent(d, 2)->name, "out_Done") << "without backslashes";
    EXPECT_EQ(ZulGetEvent(d, 2)->queue, 7);
    EXPECT_EQ(ZulGetEvent(d, 2)->register_index, 3U);
    EXPECT_EQ(ZulGetEvent(d, 2)->firmware, 0);
    EXPECT_EQ(ZulGetEvent(d, 3), nullptr);
}

TEST(Merge, KeepsAnIdUnlessTheOtherHasOne)
{
    Loaded kept(designs::rich());
    ASSERT_EQ(mergeFrom(kept.get(), designs::addition()), 0);
    EXPECT_STREQ(static_cast<char const*>(ZulGetUserInfoByName(kept.get(), "__ZUL_ID__")), "4711");
    Loaded lost(designs::rich());
    ASSERT_EQ(mergeFrom(lost.get(), ContainerBytes().tag(sample::userInfo("__ZUL_ID__", "other")).build()),
              0);
    EXPECT_EQ(ZulGetUserInfoByName(lost.get(), "__ZUL_ID__"), nullptr);
}

TEST(Merge, CountsCamerasOfProcessesOverAllModules)
{
    // The module index of a camera is a position: that of the merged one is 1 here, and so is its index.
    Loaded design(ContainerBytes()
                      .tag(sample::process(3))
                      .tag(module(0, 3, "A", "a", "a"))
                      .tag(sample::cameraParam(1, 0)));
    ASSERT_EQ(mergeFrom(design.get(), ContainerBytes()
                                          .tag(sample::process(0, "display"))
                                          .tag(module(5, 0, "B", "b", "b"))
                                          .tag(sample::cameraParam(0, 5))
                                          .build()),
              0);
    EXPECT_EQ(ZulGetNrOfCamsPerProcess(design.get(), 3), 1);
    EXPECT_EQ(ZulGetNrOfCamsPerProcess(design.get(), 4), 1);
    EXPECT_EQ(ZulGetCamChannelPerProcess(design.get(), 0, 4), 0);
    EXPECT_EQ(ZulGetCamChannel(design.get(), 1), 0) << "cameras are sorted at the load only";
}

TEST(Merge, MovesTheQueuesOfTheSideWithTheHigherConfigurationIndex)
{
    auto const side = [](std::uint32_t config, char const* name) {
        return ContainerBytes()
            .tag(sample::oldRegister(name))
            .tag(event(250, 1, name, name))
            .config(sample::config(config))
            .build();
    };
    Loaded higher(side(2, "own"));
    ASSERT_EQ(mergeFrom(higher.get(), side(1, "other")), 0);
    EXPECT_EQ(ZulGetEvent(higher.get(), 0)->queue, 10) << "250 + 16, as a byte";
    EXPECT_EQ(ZulGetEvent(higher.get(), 1)->queue, 250);
    Loaded lower(side(1, "own"));
    ASSERT_EQ(mergeFrom(lower.get(), side(2, "other")), 0);
    EXPECT_EQ(ZulGetEvent(lower.get(), 0)->queue, 250);
    EXPECT_EQ(ZulGetEvent(lower.get(), 1)->queue, 10);
}

TEST(Merge, FlagsEventsOfASideWithoutConfigurationAsFirmware)
{
    Loaded design(ContainerBytes().tag(sample::oldRegister("own")).tag(event(0, 1, "own", "own")));
    EXPECT_EQ(ZulGetEvent(design.get(), 0)->firmware, 0);
    ASSERT_EQ(mergeFrom(design.get(), ContainerBytes()
                                          .tag(sample::oldRegister("other"))
                                          .tag(event(1, 1, "other", "other"))
                                          .config(sample::config(0))
                                          .build()),
              0);
    EXPECT_EQ(ZulGetEvent(design.get(), 0)->firmware, 1);
    EXPECT_EQ(ZulGetEvent(design.get(), 1)->firmware, 0);
}

TEST(Merge, LeavesEventRecordsReadable)
{
    Loaded design(ContainerBytes().tag(sample::oldRegister("own")).tag(event(3, 1, "a\\b", "own")));
    zul_event_record const* const former = ZulGetEvent(design.get(), 0);
    for (char const* const name : {"second", "third"}) {
        ASSERT_EQ(mergeFrom(design.get(), ContainerBytes()
                                              .tag(sample::newRegister(name))
                                              .tag(event(static_cast<unsigned char>(name[0]), 1, name, name))
                                              .build()),
                  0);
    }
    EXPECT_EQ(former->queue, 3);
    EXPECT_STREQ(former->name, "a_b");
    EXPECT_EQ(former->firmware, 0) << "as it was then";
    EXPECT_EQ(ZulGetEvent(design.get(), 0)->firmware, 1);
    EXPECT_STREQ(ZulGetEvent(design.get(), 2)->name, "third");
}

TEST(Merge, LeavesPointersOfTheLoadValid)
{
    Loaded design(designs::rich());
    zul_module_ext const* const cam = ZulGetModuleByNumber(design.get(), 0);
    zul_param const* const label = ZulModuleGetParam(cam, 2);
    char const* const name = ZulGetModuleFullName(design.get(), 0);
    void const* const number = ZulGetUserInfoByName(design.get(), "BuildNumber");
    ASSERT_EQ(mergeFrom(design.get(), designs::addition()), 0);
    EXPECT_EQ(ZulGetModuleByNumber(design.get(), 0), cam);
    EXPECT_EQ(ZulModuleGetParam(cam, 2), label);
    EXPECT_STREQ(label->param_string, "left");
    EXPECT_EQ(ZulGetModuleFullName(design.get(), 0), name);
    EXPECT_EQ(ZulGetUserInfoByName(design.get(), "BuildNumber"), number);
}

TEST(Merge, MakesSettingsOfBothUnlessTheyWereAskedForBefore)
{
    Bytes const other = ContainerBytes().tag(sample::localInterrupt()).build();
    auto const local = [](Loaded& design) {
        return static_cast<rz3_design_settings const*>(
                   ZulGetUserInfoByName(design.get(), "##_RZ3_DESIGN_SETTINGS"))
            ->local_interrupt;
    };
    Loaded late{ContainerBytes()};
    ASSERT_EQ(mergeFrom(late.get(), other), 0);
    EXPECT_EQ(local(late), 0x600U);
    Loaded early{ContainerBytes()};
    EXPECT_EQ(local(early), 0x200000U);
    ASSERT_EQ(mergeFrom(early.get(), other), 0);
    EXPECT_EQ(local(early), 0x200000U) << "there is one block for the life of a design";
}

TEST(Merge, ChecksTheLinksOfTheDesignOnly)
{
    Loaded design(designs::rich());
    EXPECT_EQ(
        mergeFrom(design.get(), ContainerBytes().tag(sample::registerLink("Elsewhere", "none")).build()), 0);
    EXPECT_EQ(ZulGetRegisterByName(design.get(), "Elsewhere"), 0U);
    errno = 0;
    EXPECT_EQ(mergeFrom(design.get(), ContainerBytes().build()), refused) << "now it is the design's";
    EXPECT_EQ(errno, EINVAL);
}

TEST(Merge, ResolvesALinkOfTheDesignInTheOther)
{
    Loaded design(ContainerBytes().tag(sample::registerLink("Alias", "Target")));
    EXPECT_EQ(ZulGetRegisterByName(design.get(), "Alias"), 0U);
    ASSERT_EQ(mergeFrom(design.get(), ContainerBytes().tag(sample::oldRegister("Target")).build()), 0);
    EXPECT_EQ(ZulGetRegisterByName(design.get(), "Alias"), 1U);
}

TEST(Merge, SurvivesLinksThatCloseACircle)
{
    Loaded design(ContainerBytes().tag(sample::oldRegister("C")).tag(sample::registerLink("A", "B")));
    ASSERT_EQ(mergeFrom(design.get(), ContainerBytes().tag(sample::oldRegister("B")).build()), 0);
    EXPECT_EQ(ZulGetRegisterByName(design.get(), "A"), 2U);
    Loaded circle(ContainerBytes().tag(sample::oldRegister("C")));
    ASSERT_EQ(mergeFrom(circle.get(), ContainerBytes().tag(sample::registerLink("X", "Y")).build()), 0);
    int const closing = mergeFrom(circle.get(), ContainerBytes().tag(sample::registerLink("Y", "X")).build());
    EXPECT_EQ(closing, refused) << "its own link does not resolve";
    EXPECT_EQ(ZulGetRegisterByName(circle.get(), "X"), 0U);
    EXPECT_EQ(ZulGetRegisterByName(circle.get(), "C"), 1U);
}

TEST(Merge, CanBeRepeated)
{
    Loaded design(ContainerBytes().tag(sample::process(0)).tag(module(0, "m")));
    Bytes const other = ContainerBytes().tag(sample::process(0)).tag(module(0, "m")).build();
    for (int i = 1; i <= 5; ++i) {
        ASSERT_EQ(mergeFrom(design.get(), other), 0);
        EXPECT_EQ(ZulGetNrOfModules(design.get()), 1 + i);
        EXPECT_EQ(ZulGetModuleProcessId(design.get(), static_cast<unsigned>(i)), i);
    }
}

TEST(Merge, OfTheDesignsOwnContainerDoublesIt)
{
    Loaded design(ContainerBytes()
                      .tag(sample::process(3))
                      .tag(module(7, 3, "A", "a", "a"))
                      .tag(sample::integerParam("p", 7)));
    Bytes const own = ContainerBytes()
                          .tag(sample::process(3))
                          .tag(module(7, 3, "A", "a", "a"))
                          .tag(sample::integerParam("p", 7))
                          .build();
    ASSERT_EQ(mergeFrom(design.get(), own), 0);
    EXPECT_EQ(ZulGetProcessId(design.get(), 1), 4);
    EXPECT_EQ(ZulGetParamModuleIndex(design.get(), 1), 8);
}

} // namespace
