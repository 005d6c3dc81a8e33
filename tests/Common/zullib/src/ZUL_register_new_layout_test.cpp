#include "ZUL_register.h"

#include "registers.h"

#include <string>

using namespace registers;

TEST(RegisterTag, LoadsTheNewerLayout)
{
    ZUL_register const reg = loaded(newRegister());
    EXPECT_EQ(values(reg), "address 74560 msb 60 lsb 3 writable access 2 value 81985529216486895 id 2");
    EXPECT_STREQ(reg.getName(), "dma_ctrl");
}

TEST(RegisterTag, SavesEveryByteOfTheNewerLayout)
{
    ZUL_register reg(noContainer, "dma_ctrl", false);
    ASSERT_EQ(reg.setAddress(0x12340, 0x0123456789ABCDEC, false, 60, 3, ZUL_register::access2), 0);
    Bytes const expected = newRegister().setU32(16, 0x89ABCDEC);
    EXPECT_EQ(savedBytes(reg, 0xA5), expected);
    EXPECT_EQ(savedBytes(reg, 0x00), expected);
}

TEST(RegisterTag, NewerLayoutIgnoresItsReservedWordAndWritesZero)
{
    ZUL_register reg = loaded(newRegister().setU32(28, 0xFFFFFFFF));
    EXPECT_EQ(savedBytes(reg, 0xA5), newRegister());
}

TEST(RegisterTag, NewerLayoutWithoutNameHas32Bytes)
{
    ZUL_register reg = emptyRegister();
    EXPECT_EQ(reg.getSaveLength(), 32U);
    Bytes const expected = Bytes().u32(newId).u32(32).u8(1).u8(0).u8(1).u8(64).u32(0).u64(0).u32(0).u32(0);
    EXPECT_EQ(savedBytes(reg, 0xA5), expected);
    EXPECT_EQ(loaded(expected).getName(), nullptr);
}

TEST(RegisterTag, LoadingANewerLayoutWithoutNameTakesTheNameAway)
{
    ZUL_register reg(noContainer, "before", false);
    loadFrom(reg, newRegister().cut(32).setU32(4, 32).setU32(24, 0));
    EXPECT_EQ(reg.getName(), nullptr);
}

TEST(RegisterTag, NameEndsAtItsFirstNul)
{
    ZUL_register reg = loaded(newRegister().setU8(32 + 3, 0));
    EXPECT_STREQ(reg.getName(), "dma");
    EXPECT_EQ(reg.getSaveLength(), 35U);
    EXPECT_STREQ(loaded(newRegister().setU8(32, 0)).getName(), "");
    EXPECT_STREQ(loaded(oldRegister().setU8(32 + 3, 0)).getName(), "dma");
}

TEST(RegisterTag, NewerLayoutNeedsItsBytes)
{
    for (std::size_t avail = 0; avail < newRegister().size(); ++avail) {
        ZUL_register reg = emptyRegister();
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(reg, newRegister().cut(avail), newId)) << avail;
    }
}

TEST(RegisterTag, NewerLayoutLengthIsThatOfTheName)
{
    for (std::uint32_t const length : {0U, 31U + 8U, 33U + 8U, 8U, 0xFFFFFFFFU}) {
        ZUL_register reg = emptyRegister();
        Bytes const bytes = newRegister().setU32(4, length).fill(0, 64);
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(reg, bytes, newId)) << length;
    }
    for (std::uint32_t const nameLength : {0U, 7U, 9U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        ZUL_register reg = emptyRegister();
        Bytes const bytes = newRegister().setU32(24, nameLength).fill(0, 64);
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(reg, bytes, newId)) << nameLength;
    }
}

TEST(RegisterTag, NewerLayoutLengthsThatMeetOnlyIn32BitsAreRefused)
{
    // 32 + 0xFFFFFFE8 is 8 in 32 bits.
    ZUL_register reg = emptyRegister();
    EXPECT_TRUE(
        loadThrows<ZUL_file_bad_tag_length>(reg, newRegister().setU32(4, 8).setU32(24, 0xFFFFFFE8), newId));
}

TEST(RegisterTag, LengthIsCheckedBeforeValues)
{
    ZUL_register reg = emptyRegister();
    EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(reg, newRegister().setU32(4, 39).setU8(9, 2), newId));
    EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(reg, oldRegister().setU32(4, 105).setU32(20, 2), oldId));
}

TEST(RegisterTag, NewerLayoutKnowsWritableAndReadOnlyOnly)
{
    EXPECT_TRUE(loaded(newRegister().setU8(9, 0)).isReadOnly());
    EXPECT_FALSE(loaded(newRegister().setU8(9, 1)).isReadOnly());
    for (unsigned const writable : {2U, 128U, 255U}) {
        ZUL_register reg = emptyRegister();
        EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(reg, newRegister().setU8(9, writable), newId))
            << writable;
    }
}

TEST(RegisterTag, NewerLayoutKnowsTwoAccessValues)
{
    EXPECT_EQ(loaded(newRegister().setU8(8, 1)).getType(), ZUL_register::access1);
    EXPECT_EQ(loaded(newRegister().setU8(8, 2)).getType(), ZUL_register::access2);
    for (unsigned const access : {0U, 3U, 129U, 255U}) {
        ZUL_register reg = emptyRegister();
        EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(reg, newRegister().setU8(8, access), newId)) << access;
    }
}

TEST(RegisterTag, NewerLayoutSavesTheLowByteOfTheAccess)
{
    ZUL_register reg(noContainer, nullptr, false);
    ASSERT_EQ(reg.setAddress(0, 0, false, 7, 1, static_cast<ZUL_register::access>(0x302)), 0);
    EXPECT_EQ(std::to_integer<unsigned>(savedBytes(reg, 0xA5).data()[8]), 2U);
}

TEST(RegisterTag, NameMayBeLongerThanAnyBufferOfFixedSize)
{
    std::string const name(100'000, 'n');
    ZUL_register reg(noContainer, name.c_str(), false);
    EXPECT_EQ(reg.getSaveLength(), 100'032U);
    EXPECT_EQ(loaded(savedBytes(reg)).getName(), name);
}
