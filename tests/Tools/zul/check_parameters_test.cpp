#include "checking.h"

#include <gtest/gtest.h>

namespace {

/// A module of process 0 that states counts and has a full name.
Bytes moduleWithCounts(std::uint32_t index, std::uint32_t parameters, std::uint32_t channels,
                       std::string_view fullName = "cam")
{
    return Bytes()
        .u32(0x8157000)
        .u32(120 + fullName.size() + 1)
        .u32(index)
        .u16(0)
        .u16(0)
        .u16(fullName.size() + 1)
        .zeros(6)
        .u32(parameters)
        .u32(channels)
        .u32(0)
        .text("acquisition", 64)
        .zeros(20)
        .charsZ(fullName);
}

Bytes namedLink(std::string_view destination, std::string_view module)
{
    return Bytes()
        .u32(0x815E000)
        .u32(52 + destination.size() + module.size())
        .u32(0) // modules
        .u32(0)
        .u32(0) // parameters
        .u32(0)
        .zeros(12)
        .u32(0)
        .u32(destination.size())
        .u32(module.size())
        .u32(1)
        .chars(destination)
        .chars(module);
}

/// Its process is tag 1 at 168; the next tag begins at 248.
ContainerBytes withProcess()
{
    return identified().tag(sample::process(0));
}

/// Module 0, "cam", with the parameter "width"; the next tag begins at 564.
ContainerBytes withParameter()
{
    return withProcess().tag(moduleWithCounts(0, 1, 0)).tag(sample::integerParam("width", 0));
}

TEST(CheckParameters, Z0401ParameterCount)
{
    Bytes const bytes =
        withProcess().tag(moduleWithCounts(0, 2, 0)).tag(sample::integerParam("width", 0)).build();
    EXPECT_EQ(findingsIn(bytes), "Z0401 tag 2 at 272, parameter count: 1, not 2\n");
}

TEST(CheckParameters, Z0402ChannelCount)
{
    Bytes const bytes = withProcess().tag(moduleWithCounts(0, 0, 3)).tag(sample::channel("in", 0)).build();
    EXPECT_EQ(findingsIn(bytes), "Z0402 tag 2 at 276, channel count: 1, not 3\n");
}

TEST(CheckParameters, RightCountsAndModulesThatDoNotCount)
{
    EXPECT_EQ(findingsIn(withParameter()), "");
    Bytes const bytes = withProcess()
                            .tag(moduleWithCounts(0, 0, 0))
                            .tag(sample::integerParam("width", 0))
                            .tag(sample::channel("in", 0))
                            .build();
    EXPECT_EQ(findingsIn(bytes), "");
}

TEST(CheckParameters, Z0403LinkToAnUnknownModuleName)
{
    EXPECT_EQ(findingsIn(withParameter().tag(namedLink("width", "CAM"))),
              "Z0403 tag 4 at 621, destination module name: the full name of a module, not 'CAM'\n");
}

TEST(CheckParameters, Z0404LinkToAnUnknownParameterName)
{
    EXPECT_EQ(findingsIn(withParameter().tag(namedLink("height", "cam"))),
              "Z0404 tag 4 at 616, destination name: the name of a parameter of 'cam', not 'height'\n");
}

TEST(CheckParameters, LinksThatResolveOrDoNotTry)
{
    EXPECT_EQ(findingsIn(withParameter().tag(namedLink("width", "cam"))), "");
    EXPECT_EQ(findingsIn(withParameter().tag(namedLink("", "cam"))), "");
    EXPECT_EQ(findingsIn(withParameter().tag(namedLink("height", ""))), "");
}

TEST(CheckParameters, LinkToAModuleAndParameterThatComeLater)
{
    Bytes const bytes = withParameter()
                            .tag(namedLink("late", "other"))
                            .tag(moduleWithCounts(1, 0, 0, "other"))
                            .tag(sample::integerParam("late", 1))
                            .build();
    EXPECT_EQ(findingsIn(bytes), "");
}

} // namespace
