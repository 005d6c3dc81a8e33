#include "checking.h"

#include <gtest/gtest.h>

namespace {

constexpr std::uint32_t knownType = 0xBBEA1;

TEST(CheckConfigurations, Z0501DestinationAfterItsConfiguration)
{
    Bytes const bytes =
        identified().config(sample::config(3, "bits", knownType)).tag(sample::destination(3)).build();
    EXPECT_EQ(findingsIn(bytes), "Z0501 tag 1 at 248, config index: an earlier destination, not index 3, "
                                 "whose destination is tag 2\n");
}

TEST(CheckConfigurations, DestinationBeforeOrOfAnotherIndexOrNone)
{
    Bytes const config = sample::config(3, "bits", knownType);
    EXPECT_EQ(findingsIn(identified().tag(sample::destination(3)).config(config)), "");
    EXPECT_EQ(findingsIn(identified().config(config).tag(sample::destination(4))), "");
    EXPECT_EQ(findingsIn(identified().tag(sample::destination(3)).config(config).tag(sample::destination(3))),
              "");
    Bytes const beyond = sample::config(0x103, "bits", knownType); // a destination has 8 bits of an index
    EXPECT_EQ(findingsIn(identified().config(beyond).tag(sample::destination(3))), "");
}

TEST(CheckConfigurations, Z0502UnknownFpgaType)
{
    EXPECT_EQ(findingsIn(identified().config(sample::config(0, "bits", 0x12345))),
              "Z0502 tag 1 at 176, fpga type: a type of the table, not 0x12345\n");
    EXPECT_EQ(findingsIn(identified().config(sample::config(0, "bits", 0xFFFFFFFF))),
              "Z0502 tag 1 at 176, fpga type: a type of the table, not 0xffffffff\n");
}

TEST(CheckConfigurations, Z0503ChannelOutsideTheSettings)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::dmaCountRegister(4))),
              "Z0503 tag 1 at 176, channel: at most 3, not 4\n");
    EXPECT_EQ(findingsIn(identified().tag(sample::dmaTagRegister().setU32(20, 4))),
              "Z0503 tag 1 at 188, channel: at most 3, not 4\n");
    EXPECT_EQ(findingsIn(identified().tag(sample::dmaCountRegister(3))), "");
    EXPECT_EQ(findingsIn(identified().tag(sample::dmaTagRegister().setU32(20, 3))), "");
}

TEST(CheckConfigurations, Z0504QueueOutsideTheSettings)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::readQueue().setU32(16, 8))),
              "Z0504 tag 1 at 184, queue number: at most 7, not 8\n");
    EXPECT_EQ(findingsIn(identified().tag(sample::writeQueue().setU32(16, 8))),
              "Z0504 tag 1 at 184, queue number: at most 7, not 8\n");
    EXPECT_EQ(findingsIn(identified().tag(sample::readQueue().setU32(16, 7))), "");
}

TEST(CheckIdentity, Z0505NoId)
{
    EXPECT_EQ(findingsIn(headBytes(0)),
              "Z0505 file at 0, container id: a user info '__ZUL_ID__', not none\n");
}

TEST(CheckIdentity, Z0505IdThatIsNoTextOrEmpty)
{
    EXPECT_EQ(findingsIn(ContainerBytes().tag(sample::userInfo("__ZUL_ID__", 5U))),
              "Z0505 tag 0 at 32, info: a text as its value, not none\n");
    EXPECT_EQ(findingsIn(ContainerBytes().tag(sample::userInfo("__ZUL_ID__", ""))),
              "Z0505 tag 0 at 32, info: a text as its value, not none\n");
}

TEST(CheckIdentity, FirstIdCounts)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::userInfo("__ZUL_ID__", ""))), "");
}

TEST(CheckIdentity, Z0506PlaceholderId)
{
    EXPECT_EQ(findingsIn(ContainerBytes().tag(sample::userInfo("__ZUL_ID__", "__INVALID_ZUL_ID__"))),
              "Z0506 tag 0 at 104, text value: an id of its own, not '__INVALID_ZUL_ID__'\n");
}

TEST(CheckIdentity, Z0507IdThatLeadsOutOfItsDirectory)
{
    EXPECT_EQ(findingsIn(ContainerBytes().tag(sample::userInfo("__ZUL_ID__", "a/b"))),
              "Z0507 tag 0 at 104, text value: no '/' and no '..', not 'a/b'\n");
    EXPECT_EQ(findingsIn(ContainerBytes().tag(sample::userInfo("__ZUL_ID__", "a..b"))),
              "Z0507 tag 0 at 104, text value: no '/' and no '..', not 'a..b'\n");
    EXPECT_EQ(findingsIn(ContainerBytes().tag(sample::userInfo("__ZUL_ID__", "a.b"))), "");
}

TEST(CheckIdentity, Z0508VersionWithoutBoardCode)
{
    EXPECT_EQ(
        findingsIn(identified().tag(sample::designVersion("00010"))),
        "Z0508 tag 1 at 176, version: two digits of 0 to 9 and a to f as fifth and sixth character, not "
        "'00010'\n");
    EXPECT_EQ(
        findingsIn(identified().tag(sample::designVersion("00010A"))),
        "Z0508 tag 1 at 176, version: two digits of 0 to 9 and a to f as fifth and sixth character, not "
        "'00010A'\n");
}

TEST(CheckIdentity, Z0509UnknownBoardCode)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::designVersion("0001030000"))),
              "Z0509 tag 1 at 176, version: 00, 01, 02 or 04, not '03'\n");
    EXPECT_EQ(findingsIn(identified().tag(sample::designVersion("00010f"))),
              "Z0509 tag 1 at 176, version: 00, 01, 02 or 04, not '0f'\n");
}

TEST(CheckIdentity, BoardCodesAndContainersWithoutVersion)
{
    for (char const* const version : {"000100", "xyz.01x", "0001020000", "000104", ""}) {
        EXPECT_EQ(findingsIn(identified().tag(sample::designVersion(version))), "") << version;
    }
}

} // namespace
