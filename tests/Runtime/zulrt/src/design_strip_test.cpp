#include "design_answers.h"
#include "designs.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <vector>

namespace {

using designs::Loaded;

unsigned long neededLength(fpga_design const* design)
{
    unsigned long length = 0;
    EXPECT_EQ(ZulStripConfigs(design, nullptr, &length), -1);
    return length;
}

Bytes stripped(fpga_design const* design, unsigned background = 0)
{
    unsigned long length = neededLength(design);
    Bytes copy = Bytes().fill(background, length);
    EXPECT_EQ(ZulStripConfigs(design, copy.data(), &length), 0);
    EXPECT_EQ(length, copy.size());
    return copy;
}

TEST(Strip, LeavesOutBitstreamsDestinationsLibrariesAndVersionNumbers)
{
    ContainerBytes const kept = ContainerBytes()
                                    .tag(sample::designVersion("2.7"))
                                    .tag(sample::fpgaInfo())
                                    .tag(sample::oldRegister("CameraControl"))
                                    .tag(sample::userInfo("__ZUL_ID__", "4711"));
    Loaded design(ContainerBytes()
                      .tag(sample::designVersion("2.7"))
                      .tag(sample::versionNumber(0, 2, 7))
                      .tag(sample::fpgaInfo())
                      .tag(sample::destination(1))
                      .tag(sample::library("camera"))
                      .tag(sample::oldRegister("CameraControl"))
                      .tag(sample::library("camera", "for another system", 517))
                      .tag(sample::versionNumber(1, 3, 9))
                      .tag(sample::userInfo("__ZUL_ID__", "4711"))
                      .config(sample::config(1))
                      .config(sample::config(2)));
    EXPECT_EQ(stripped(design.get()), kept.build());
}

TEST(Strip, ChangesNothingInTheDesign)
{
    Loaded design(designs::rich());
    std::string const before = answers::textOf(design.get());
    stripped(design.get());
    EXPECT_EQ(answers::textOf(design.get()), before);
    EXPECT_EQ(stripped(design.get()), stripped(design.get()));
}

TEST(Strip, MakesAnIdInTheCopyOnly)
{
    Loaded design(ContainerBytes().tag(sample::oldRegister("CameraControl")));
    EXPECT_EQ(stripped(design.get()), ContainerBytes()
                                          .tag(sample::oldRegister("CameraControl"))
                                          .tag(sample::userInfo("__ZUL_ID__", "__INVALID_ZUL_ID__"))
                                          .build());
    EXPECT_EQ(ZulGetNrOfUserInfos(design.get()), 0);
}

TEST(Strip, GivesADesignThatLoads)
{
    Loaded design(designs::rich());
    Loaded copy(stripped(design.get()));
    EXPECT_EQ(ZulGetNrOfModules(copy.get()), 3);
    EXPECT_EQ(ZulGetNrOfParameter(copy.get()), 6);
    EXPECT_EQ(ZulGetMaxConfigIndex(copy.get()), -1);
    EXPECT_EQ(ZulSupportsOs(copy.get(), 999), 1) << "it has no libraries";
    int version = 0;
    EXPECT_EQ(ZulGetDesignVersionNumber(copy.get(), &version, &version), -1);
    EXPECT_STREQ(ZulGetDesignVersion(copy.get()), "1.0.02") << "the text stays";
    EXPECT_EQ(ZulGetRequiredFixedVersion(copy.get(), nullptr, nullptr), 0);
    EXPECT_EQ(stripped(copy.get()), stripped(design.get()));
}

TEST(Strip, WritesReservedBytesAsZero)
{
    Loaded design(designs::rich());
    EXPECT_EQ(stripped(design.get(), 0xA5), stripped(design.get()));
}

TEST(Strip, TellsTheLengthThatATooSmallBufferNeeds)
{
    Loaded design(designs::rich());
    unsigned long const needed = neededLength(design.get());
    EXPECT_GT(needed, 24U);
    Bytes buffer = Bytes().fill(0xA5, needed + 8);
    Bytes const untouched = buffer;
    for (unsigned long const given : {0UL, 1UL, needed - 1}) {
        unsigned long length = given;
        EXPECT_EQ(ZulStripConfigs(design.get(), buffer.data(), &length), -1);
        EXPECT_EQ(length, needed);
        EXPECT_EQ(buffer, untouched);
    }
    unsigned long large = 1'000'000;
    EXPECT_EQ(ZulStripConfigs(design.get(), nullptr, &large), -1) << "there is no buffer";
    EXPECT_EQ(large, needed);
}

TEST(Strip, TellsTheLengthThatALargerBufferTook)
{
    Loaded design(designs::rich());
    unsigned long const needed = neededLength(design.get());
    Bytes buffer = Bytes().fill(0xA5, needed + 8);
    unsigned long length = needed + 8;
    EXPECT_EQ(ZulStripConfigs(design.get(), buffer.data(), &length), 0);
    EXPECT_EQ(length, needed);
    EXPECT_EQ(buffer, Bytes(stripped(design.get())).fill(0xA5, 8)) << "what is behind it stays";
}

TEST(Strip, LeavesErrnoAloneWhenOnlyTheLengthIsAskedFor)
{
    Loaded design(designs::rich());
    errno = EDOM;
    neededLength(design.get());
    EXPECT_EQ(errno, EDOM);
}

TEST(Strip, RefusesANullLength)
{
    Loaded design(designs::rich());
    Bytes buffer = Bytes().fill(0xA5, 10'000);
    errno = 0;
    EXPECT_EQ(ZulStripConfigs(design.get(), buffer.data(), nullptr), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(buffer, Bytes().fill(0xA5, 10'000));
    errno = 0;
    EXPECT_EQ(ZulStripConfigs(design.get(), nullptr, nullptr), -1);
    EXPECT_EQ(errno, EINVAL);
}

TEST(Strip, OfNoHandleIsMinusOne)
{
    unsigned long length = 77;
    EXPECT_EQ(ZulStripConfigs(nullptr, nullptr, &length), -1);
    EXPECT_EQ(ZulStripConfigs(nullptr, nullptr, nullptr), -1);
    EXPECT_EQ(length, 77U);
}

TEST(Strip, OfAnEmptyObjectIsRefused)
{
    fpga_design const design;
    unsigned long length = 77;
    errno = 0;
    EXPECT_EQ(design.stripConfigs(nullptr, &length), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(length, 77U);
}

TEST(Strip, OfADesignThatCannotBeSavedLeavesTheLengthAlone)
{
    Loaded design(ContainerBytes()
                      .tag(sample::oldRegister("CameraControl"))
                      .tag(designs::event(0, 0, "", "CameraControl"))); // loads, and cannot be saved
    unsigned long length = 77;
    errno = 0;
    int const result = ZulStripConfigs(design.get(), nullptr, &length);
    EXPECT_EQ(result, -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(length, 77U);
}

TEST(Strip, KeepsWhatWasMergedIn)
{
    Loaded design(designs::rich());
    Bytes const other = designs::addition();
    ASSERT_EQ(MergeFpgaDesignWithMem(design.get(), other.data(), other.size()), 0);
    Loaded copy(stripped(design.get()));
    EXPECT_EQ(ZulGetNrOfModules(copy.get()), 4);
    EXPECT_STREQ(ZulGetModuleFullName(copy.get(), 3), "out\\screen");
    EXPECT_EQ(ZulGetNrOfParam(copy.get(), 3), 2);
    EXPECT_EQ(ZulGetRequiredFixedVersion(copy.get(), nullptr, nullptr), -1)
        << "that is gone from the design itself";
}

} // namespace
