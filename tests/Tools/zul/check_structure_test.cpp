#include "checking.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace {

TEST(CheckStructure, HonestContainerOfEveryKindHasNoErrorAndNoWarning)
{
    // A version, a DMA tag register and an FPGA type that the made-up tags have otherwise.
    Bytes const honest = ContainerBytes()
                             .tag(sample::userInfo("__ZUL_ID__", "4711"))
                             .tag(sample::designVersion("0001020"))
                             .tag(sample::author())
                             .tag(sample::designName())
                             .tag(sample::comment())
                             .tag(sample::versionNumber(0, 2, 7))
                             .tag(sample::versionNumber(1, 2, 7))
                             .tag(sample::fpgaInfo())
                             .tag(sample::destination(1))
                             .tag(sample::oldRegister("CameraControl"))
                             .tag(sample::newRegister("FrameCounter"))
                             .tag(sample::registerLink("Camera", "CameraControl"))
                             .tag(sample::dmaCountRegister(0))
                             .tag(sample::interruptVector())
                             .tag(sample::dmaTagRegister())
                             .tag(sample::localInterrupt())
                             .tag(sample::readQueue())
                             .tag(sample::writeQueue())
                             .tag(sample::event("FrameEnd", "FrameCounter"))
                             .tag(sample::library("camera"))
                             .tag(sample::process(0))
                             .tag(sample::module(0, 0))
                             .tag(sample::integerParam("width", 0))
                             .tag(sample::fieldParam("limits", 0))
                             .tag(sample::textParam("label", 0, "left"))
                             .tag(sample::channel("link0", 0))
                             .tag(sample::dmaParam(0, 0))
                             .tag(sample::cameraParam(0, 0))
                             .tag(sample::paramLink(0, 0))
                             .config(sample::config(1, "bits", 0xBBEA1))
                             .build();

    EXPECT_EQ(findingsIn(honest), "");
}

TEST(CheckStructure, Z0101FileShorterThanAHead)
{
    EXPECT_EQ(findingsIn(headBytes(0).cut(23)),
              "Z0101 file at 0, tag id: 24 bytes that begin with 0x4b4f564d, not 23 bytes\n");
}

TEST(CheckStructure, Z0101FileThatBeginsWithSomethingElse)
{
    EXPECT_EQ(findingsIn(headBytes(0).setU32(0, 0x46434D21)),
              "Z0101 file at 0, tag id: 24 bytes that begin with 0x4b4f564d, not 0x46434d21\n");
}

TEST(CheckStructure, Z0102LengthOfFixedTag)
{
    Bytes const bytes = identified().tag(sample::author().u8(0).setU32(4, 73)).build();
    EXPECT_EQ(findingsIn(bytes), "Z0102 tag 1 at 172, length: 72, not 73\n");
}

TEST(CheckStructure, Z0102LengthShorterThanTheFixedPartIsReportedOnce)
{
    Bytes const bytes =
        identified().tag(Bytes().u32(0x8150070).u32(10).u16(0)).tag(sample::designName()).build();
    EXPECT_EQ(findingsIn(bytes), "Z0102 tag 1 at 172, length: 72, not 10\n");
}

TEST(CheckStructure, Z0102InnerLengthsThatDoNotAddUp)
{
    Bytes const reg = sample::newRegister("ctrl").setU32(24, 3);
    EXPECT_EQ(findingsIn(identified().tag(reg)), "Z0102 tag 1 at 172, length: 35, not 36\n");
}

TEST(CheckStructure, Z0102LengthOfTheHead)
{
    Bytes const bytes = identified().build().setU32(4, 25);
    EXPECT_EQ(findingsIn(bytes), "Z0102 file at 4, length: 24, not 25\n");
}

TEST(CheckStructure, Z0103ValueThatTheLayoutForbids)
{
    Bytes const reg = sample::newRegister("ctrl").setU8(9, 2);
    EXPECT_EQ(findingsIn(identified().tag(reg)), "Z0103 tag 1 at 177, writable: 0 or 1, not 2\n");
}

TEST(CheckStructure, Z0103VersionOfTheHead)
{
    Bytes const bytes = identified().build().setU32(16, 2);
    EXPECT_EQ(findingsIn(bytes), "Z0103 file at 16, version: 1, not 2\n");
}

TEST(CheckStructure, Z0104LengthOfLessThanAHeaderEndsTheWalk)
{
    Bytes const bytes = identified().tag(sample::author().setU32(4, 7)).tag(sample::designName()).build();
    EXPECT_EQ(findingsIn(bytes), "Z0104 tag 1 at 172, length: at least 8, not 7\n");
}

TEST(CheckStructure, Z0105LengthOverTheEnd)
{
    Bytes const bytes = identified().tag(sample::author().setU32(4, 73)).build();
    EXPECT_EQ(findingsIn(bytes), "Z0105 tag 1 at 172, length: at most 72, not 73\n");
}

TEST(CheckStructure, Z0105UnknownTagWithLengthOverTheEnd)
{
    Bytes const bytes = identified().tag(sample::unknown(0x8150015, "xyz").setU32(4, 12)).build();
    EXPECT_EQ(findingsIn(bytes), "Z0105 tag 1 at 172, length: at most 11, not 12\n");
}

TEST(CheckStructure, Z0106UnknownTag)
{
    Bytes const bytes = identified().tag(sample::unknown(0x8150015, "xyz")).build();
    EXPECT_EQ(findingsIn(bytes),
              "Z0106 tag 1 at 168, tag id: the id of a kind of the format, not 0x8150015, which "
              "takes 11 bytes and states 11\n");
}

TEST(CheckStructure, Z0106UnknownTagSwallowsTheTagsBehindIt)
{
    Bytes const bytes = identified().tag(sample::unknown(0x8150015, "xyz")).tag(sample::author()).build();
    EXPECT_EQ(findingsIn(bytes),
              "Z0107 file at 8, tag count: 2, not 3\n"
              "Z0106 tag 1 at 168, tag id: the id of a kind of the format, not 0x8150015, which "
              "takes 83 bytes and states 11\n");
}

TEST(CheckStructure, Z0107TagCount)
{
    EXPECT_EQ(findingsIn(identified().build().setU32(8, 4)), "Z0107 file at 8, tag count: 1, not 4\n");
}

TEST(CheckStructure, Z0107SecondLibrariesCount)
{
    Bytes const bytes = identified().tag(sample::library("cam")).tag(sample::library("cam")).build();
    EXPECT_EQ(findingsIn(bytes).substr(0, 5), "Z0601");
    EXPECT_EQ(findingsIn(Bytes(bytes).setU32(8, 2)).substr(0, 45),
              "Z0107 file at 8, tag count: 3, not 2\nZ0601 ta");
}

TEST(CheckStructure, Z0107ReplacedVersionsDoNotCount)
{
    Bytes const bytes = identified()
                            .tag(sample::designVersion("000102"))
                            .tag(sample::designVersion("000102"))
                            .tag(sample::versionNumber(1, 1, 1))
                            .tag(sample::versionNumber(1, 1, 1))
                            .build();
    EXPECT_EQ(findingsIn(bytes), "Z0107 file at 8, tag count: 3, not 5\n"
                                 "Z0114 tag 2 at 240, tag id: at most one design version, not another one\n"
                                 "Z0114 tag 4 at 340, index: an index of its own, not 1\n");
}

TEST(CheckStructure, Z0108ConfigCount)
{
    Bytes const bytes = identified().config(sample::config(1, "", 0xFAD)).build().setU32(12, 0);
    EXPECT_EQ(findingsIn(bytes), "Z0108 file at 12, config count: 1, not 0\n");
}

TEST(CheckStructure, Z0109PaddingOfUpTo8Bytes)
{
    EXPECT_EQ(findingsIn(identified().build(1)), "Z0109 file at 168, end of the file: nothing, not 1 byte\n");
    EXPECT_EQ(findingsIn(identified().build(8)),
              "Z0109 file at 168, end of the file: nothing, not 8 bytes\n");
}

TEST(CheckStructure, Z0110IgnoredBytesThatAreNoPadding)
{
    Bytes const bytes = identified().build().u32(0x8150070).u32(8);
    EXPECT_EQ(findingsIn(bytes), "Z0110 file at 168, end of the file: nothing, not 8 bytes\n");
}

/// A container of @p size bytes, nearly all of them a bitstream.
std::vector<std::byte> containerOfSize(std::size_t size)
{
    Bytes const begin = identified()
                            .config(sample::config(0, "", 0xFAD))
                            .build()
                            .setU32(172, static_cast<std::uint32_t>(size - 168));
    std::vector<std::byte> bytes(size);
    std::memcpy(bytes.data(), begin.data(), begin.size());
    return bytes;
}

TEST(CheckStructure, Z0111FileOfWhichALoadSeesAPart)
{
    EXPECT_EQ(findingsIn(containerOfSize(std::size_t{128} << 20)),
              "Z0111 file at 0, size of the file: less than 128 MiB, not 134217728 bytes, of which a load "
              "sees 0\n");
    EXPECT_EQ(findingsIn(containerOfSize((std::size_t{128} << 20) - 1)), "");
}

TEST(CheckStructure, Z0112SecondHead)
{
    EXPECT_EQ(findingsIn(identified().tag(headBytes(0))),
              "Z0112 tag 1 at 168, tag id: a head at the beginning only, not another head\n");
}

TEST(CheckStructure, Z0113SecondAuthorAndDesignName)
{
    Bytes const authors = identified().tag(sample::author()).tag(sample::author()).build();
    Bytes const names = identified().tag(sample::designName()).tag(sample::designName()).build();
    EXPECT_EQ(findingsIn(authors), "Z0113 tag 2 at 240, tag id: at most one, not another one\n");
    EXPECT_EQ(findingsIn(names), "Z0113 tag 2 at 240, tag id: at most one, not another one\n");
}

TEST(CheckStructure, Z0114SecondDesignVersion)
{
    Bytes const bytes = identified()
                            .tag(sample::designVersion("000102"))
                            .tag(sample::designVersion("000104"))
                            .build()
                            .setU32(8, 2);
    EXPECT_EQ(findingsIn(bytes), "Z0114 tag 2 at 240, tag id: at most one design version, not another one\n");
}

TEST(CheckStructure, Z0114SecondVersionNumberOfAnIndex)
{
    Bytes const bytes = identified()
                            .tag(sample::versionNumber(3, 1, 0))
                            .tag(sample::versionNumber(3, 1, 1))
                            .build()
                            .setU32(8, 2);
    EXPECT_EQ(findingsIn(bytes), "Z0114 tag 2 at 196, index: an index of its own, not 3\n");
}

} // namespace
