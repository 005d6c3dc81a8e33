#include "checking.h"

#include <gtest/gtest.h>

namespace {

/// A register of the newer layout at address 0x40.
Bytes reg(std::string_view name, unsigned lsb, unsigned msb, std::uint64_t value = 0, unsigned writable = 1,
          unsigned access = 1)
{
    return Bytes()
        .u32(0x8151002)
        .u32(32 + name.size())
        .u8(access)
        .u8(writable)
        .u8(lsb)
        .u8(msb)
        .u32(0x40)
        .u64(value)
        .u32(name.size())
        .u32(0)
        .chars(name);
}

TEST(CheckRegisters, Z0301BitsOutOfOrder)
{
    EXPECT_EQ(findingsIn(identified().tag(reg("ctrl", 8, 7))), "Z0301 tag 1 at 178, lsb: at most 7, not 8\n");
    EXPECT_EQ(findingsIn(identified().tag(reg("ctrl", 8, 8))), "");
}

TEST(CheckRegisters, Z0302BitBeyond64)
{
    EXPECT_EQ(findingsIn(identified().tag(reg("ctrl", 1, 65))),
              "Z0302 tag 1 at 179, msb: at most 64, not 65\n");
    EXPECT_EQ(findingsIn(identified().tag(reg("ctrl", 65, 66))),
              "Z0302 tag 1 at 178, lsb: at most 64, not 65\n");
    EXPECT_EQ(findingsIn(identified().tag(reg("ctrl", 1, 64))), "");
}

TEST(CheckRegisters, Z0302WholeWordOfTheOlderLayout)
{
    Bytes const old = sample::oldRegister("ctrl").setU32(28, 0x100 + 32);
    EXPECT_EQ(findingsIn(identified().tag(old)), "Z0302 tag 1 at 196, msb: at most 64, not 288\n");
}

TEST(CheckRegisters, Z0303ValueAboveTheMostSignificantBit)
{
    EXPECT_EQ(findingsIn(identified().tag(reg("ctrl", 0, 7, 0x100))),
              "Z0303 tag 1 at 184, value: a value in bits 0 to 7, not 0x100\n");
    EXPECT_EQ(findingsIn(identified().tag(reg("ctrl", 0, 7, 0xFF))), "");
}

TEST(CheckRegisters, Z0303ValueBelowTheLeastSignificantBit)
{
    EXPECT_EQ(findingsIn(identified().tag(reg("ctrl", 3, 7, 2))),
              "Z0303 tag 1 at 184, value: a value in bits 3 to 7, not 0x2\n");
    EXPECT_EQ(findingsIn(identified().tag(reg("ctrl", 3, 7, 4))), "");
}

TEST(CheckRegisters, AllValuesFitARegisterOf64Bits)
{
    EXPECT_EQ(findingsIn(identified().tag(reg("ctrl", 0, 63, UINT64_MAX))), "");
    EXPECT_EQ(findingsIn(identified().tag(reg("ctrl", 1, 64, UINT64_MAX))), "");
    EXPECT_EQ(findingsIn(identified().tag(reg("ctrl", 64, 64, 1)).build()),
              "Z0303 tag 1 at 184, value: a value in bits 64 to 64, not 0x1\n");
}

TEST(CheckRegisters, Z0304OverlappingBits)
{
    EXPECT_EQ(
        findingsIn(identified().tag(reg("low", 0, 8)).tag(reg("high", 8, 15))),
        "Z0304 tag 2 at 213, lsb: no bits in common with 'low' (tag 1, bits 0 to 8), not bits 8 to 15\n");
}

TEST(CheckRegisters, Z0304IsReportedAtTheLaterOne)
{
    EXPECT_EQ(
        findingsIn(identified().tag(reg("high", 8, 15)).tag(reg("low", 0, 8))),
        "Z0304 tag 2 at 214, lsb: no bits in common with 'high' (tag 1, bits 8 to 15), not bits 0 to 8\n");
}

TEST(CheckRegisters, Z0304RegisterWithinAWideOne)
{
    Bytes const bytes = identified().tag(reg("all", 0, 31)).tag(reg("a", 2, 3)).tag(reg("b", 8, 9)).build();
    EXPECT_EQ(
        findingsIn(bytes),
        "Z0304 tag 2 at 213, lsb: no bits in common with 'all' (tag 1, bits 0 to 31), not bits 2 to 3\n"
        "Z0304 tag 3 at 246, lsb: no bits in common with 'all' (tag 1, bits 0 to 31), not bits 8 to 9\n");
}

TEST(CheckRegisters, RegistersMayShareAnAddress)
{
    EXPECT_EQ(findingsIn(identified().tag(reg("low", 0, 7)).tag(reg("high", 8, 15))), "");
    EXPECT_EQ(findingsIn(identified().tag(reg("w", 0, 7)).tag(reg("r", 0, 7, 0, 0))), "");
    EXPECT_EQ(findingsIn(identified().tag(reg("w", 0, 7)).tag(reg("r", 0, 7, 0, 1, 2))), "");
    EXPECT_EQ(findingsIn(identified().tag(reg("w", 0, 7)).tag(reg("x", 0, 7).setU32(12, 0x44))), "");
}

} // namespace
