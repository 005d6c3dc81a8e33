#include "design_answers.h"
#include "designs.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>

namespace {

struct Unload {
    void operator()(fpga_design* design) const { EXPECT_EQ(ZulUnloadZulFile(design), 0); }
};
using Handle = std::unique_ptr<fpga_design, Unload>;

void expectVersion(int version, int revision, std::uint16_t storedVersion, std::uint16_t storedRevision)
{
    Handle const design(ZulFirmwareTrampoline(version, revision));
    ASSERT_NE(design, nullptr);
    std::uint16_t gotVersion = 0xAAAA;
    std::uint16_t gotRevision = 0xAAAA;
    EXPECT_EQ(ZulGetRequiredFixedVersion(design.get(), &gotVersion, &gotRevision), 0);
    EXPECT_EQ(gotVersion, storedVersion);
    EXPECT_EQ(gotRevision, storedRevision);
}

TEST(Trampoline, NeedsTheVersionCutToEightBits)
{
    expectVersion(0x103, 7, 3, 7);
    expectVersion(2, 5, 2, 5);
    expectVersion(0, 0, 0, 0);
    expectVersion(255, 256, 255, 0);
    expectVersion(-1, -2, 255, 254);
}

TEST(Trampoline, HoldsNothingElse)
{
    Handle const design(ZulFirmwareTrampoline(3, 7));
    EXPECT_EQ(ZulGetNrOfModules(design.get()), 0);
    EXPECT_EQ(ZulGetModuleByNumber(design.get(), 0), nullptr);
    EXPECT_EQ(ZulGetNrOfProcess(design.get()), 0);
    EXPECT_EQ(ZulGetNrOfParameter(design.get()), 0);
    EXPECT_EQ(ZulGetNrOfRegister(design.get()), 0);
    EXPECT_EQ(ZulGetNrOfUserInfos(design.get()), 0);
    EXPECT_EQ(ZulGetEvent(design.get(), 0), nullptr);
    EXPECT_EQ(ZulGetMaxConfigIndex(design.get()), -1);
    EXPECT_EQ(ZulGetModuleDllDir(design.get()), nullptr);
    EXPECT_EQ(ZulGetDesignVersion(design.get()), nullptr);
    EXPECT_EQ(ZulSupportsOs(design.get(), 516), 1);
    EXPECT_NE(ZulGetUserInfoByName(design.get(), "##_RZ3_DESIGN_SETTINGS"), nullptr);
    EXPECT_FALSE(answers::textOf(design.get()).empty()) << "everything can be asked";
}

TEST(Trampoline, CanBeStripped)
{
    Handle const design(ZulFirmwareTrampoline(3, 7));
    unsigned long length = 0;
    EXPECT_EQ(ZulStripConfigs(design.get(), nullptr, &length), -1);
    Bytes copy = Bytes().zeros(length);
    ASSERT_EQ(ZulStripConfigs(design.get(), copy.data(), &length), 0);
    Bytes const info = Bytes().u32(0x8150084).u32(12).u8(0).u8(3).u8(7).u8(0);
    EXPECT_EQ(copy,
              ContainerBytes().tag(info).tag(sample::userInfo("__ZUL_ID__", "__INVALID_ZUL_ID__")).build());
}

TEST(Trampoline, CanBeMergedInto)
{
    Handle const design(ZulFirmwareTrampoline(3, 7));
    Bytes const other = designs::rich();
    EXPECT_EQ(MergeFpgaDesignWithMem(design.get(), other.data(), other.size()), 0);
    EXPECT_EQ(ZulGetRequiredFixedVersion(design.get(), nullptr, nullptr), -1);
    EXPECT_EQ(ZulGetNrOfModules(design.get()), 3);
    EXPECT_STREQ(ZulGetModuleFullName(design.get(), 0), "acq\\cam");
    EXPECT_EQ(ZulGetModuleByNumber(design.get(), 0), nullptr) << "extensions are made at the load";
    EXPECT_EQ(ZulGetNrOfParam(design.get(), 0), -1);
    EXPECT_EQ(ZulGetNrOfParameter(design.get()), 6);
    ASSERT_NE(ZulGetEvent(design.get(), 0), nullptr);
    EXPECT_STREQ(ZulGetEvent(design.get(), 0)->name, "acq_FrameEnd");
}

} // namespace
