#include "ZUL_register.h"

#include "registers.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

using namespace registers;

namespace {

std::string saveError(ZUL_register& reg)
{
    std::vector<std::byte> room(4096);
    try {
        reg.Save(room.data());
    } catch (std::runtime_error const& error) {
        return std::count(room.begin(), room.end(), std::byte{0}) == 4096 ? error.what()
                                                                          : "written before refused";
    }
    return "saved";
}

} // namespace

TEST(RegisterTag, LoadsTheOlderLayout)
{
    ZUL_register const reg = loaded(oldRegister());
    EXPECT_EQ(values(reg), "address 74560 msb 32 lsb 3 writable access 2 value 2309737967 id 0");
    EXPECT_STREQ(reg.getName(), "dma_ctrl");
}

TEST(RegisterTag, SavesTheOlderLayoutAndLeavesTheReservedBytesAlone)
{
    ZUL_register reg(noContainer, "dma_ctrl", true);
    ASSERT_EQ(reg.setAddress(0x12340, 0x89ABCDEC, false, 32, 3, ZUL_register::access2), 0);
    Bytes const expected = oldRegister().setU32(16, 0x89ABCDEC).cut(96);
    EXPECT_EQ(savedBytes(reg, 0xA5), Bytes(expected).fill(0xA5, 8));
    EXPECT_EQ(savedBytes(reg, 0x00), Bytes(expected).fill(0x00, 8));
}

TEST(RegisterTag, OlderLayoutComesBackAsItWas)
{
    ZUL_register reg = loaded(oldRegister());
    EXPECT_EQ(savedBytes(reg), oldRegister());
}

TEST(RegisterTag, OlderLayoutIgnoresItsReservedBytes)
{
    EXPECT_EQ(values(loaded(oldRegister().cut(96).fill(0xFF, 8))), values(loaded(oldRegister())));
}

TEST(RegisterTag, OlderLayoutIsAlways104BytesLong)
{
    ZUL* const none = nullptr;
    expectFixedLength([none] { return ZUL_register(none, nullptr, true); }, oldRegister(), oldId);
}

TEST(RegisterTag, OlderLayoutTakesTheLowByteOfBothBits)
{
    EXPECT_EQ(values(loaded(oldRegister().setU32(24, 0xFFFFFF07).setU32(28, 0x00000109))),
              "address 74560 msb 9 lsb 7 writable access 2 value 2309737967 id 0");
}

TEST(RegisterTag, OlderLayoutHasBitsOfAnyOrder)
{
    EXPECT_EQ(values(loaded(oldRegister().setU32(24, 255).setU32(28, 0))),
              "address 74560 msb 0 lsb 255 writable access 2 value 2309737967 id 0");
}

TEST(RegisterTag, OlderLayoutKnowsWritableAndReadOnlyOnly)
{
    EXPECT_TRUE(loaded(oldRegister().setU32(20, 0)).isReadOnly());
    EXPECT_FALSE(loaded(oldRegister().setU32(20, 1)).isReadOnly());
    for (std::uint32_t const writable : {2U, 0x100U, 0x101U, 0x01000000U, 0xFFFFFFFFU}) {
        ZUL_register reg = emptyRegister();
        EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(reg, oldRegister().setU32(20, writable), oldId))
            << writable;
    }
}

TEST(RegisterTag, OlderLayoutKnowsTwoAccessValuesInAFullWord)
{
    EXPECT_EQ(loaded(oldRegister().setU32(8, 1)).getType(), ZUL_register::access1);
    EXPECT_EQ(loaded(oldRegister().setU32(8, 2)).getType(), ZUL_register::access2);
    for (std::uint32_t const access : {0U, 3U, 0x101U, 0x102U, 0x01000001U, 0xFFFFFFFFU}) {
        ZUL_register reg = emptyRegister();
        EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(reg, oldRegister().setU32(8, access), oldId))
            << access;
    }
}

TEST(RegisterTag, OlderLayoutSavesTheLowByteOfTheAccessAsAWord)
{
    ZUL_register reg(noContainer, "r", true);
    ASSERT_EQ(reg.setAddress(0, 0, false, 7, 1, static_cast<ZUL_register::access>(0x301)), 0);
    Bytes const saved = savedBytes(reg, 0xA5);
    EXPECT_EQ(Bytes(saved).cut(12), Bytes().u32(oldId).u32(104).u32(1));
    EXPECT_EQ(static_cast<std::uint32_t>(reg.getType()), 0x301U) << "saving changes nothing";
}

TEST(RegisterTag, OlderLayoutSavesTheLow32BitsOfTheValue)
{
    ZUL_register reg(noContainer, "r", true);
    ASSERT_EQ(reg.setAddress(0, 0x123456789ABCDEF0, false, 63, 1, ZUL_register::access1), 0);
    EXPECT_EQ(savedBytes(reg).setU32(8, 0).setU32(12, 0).cut(20),
              Bytes().u32(oldId).u32(104).u32(0).u32(0).u32(0x9ABCDEF0));
    EXPECT_EQ(reg.getCache(), 0x123456789ABCDEF0U);
}

TEST(RegisterTag, OlderLayoutExtendsTheValueWithZeros)
{
    EXPECT_EQ(loaded(oldRegister().setU32(16, 0xFFFFFFFF)).getCache(), 0xFFFFFFFFU);
}

TEST(RegisterTag, NameOf64CharactersFillsTheOlderLayout)
{
    std::string const name(64, 'n');
    ZUL_register reg(noContainer, name.c_str(), true);
    ASSERT_EQ(reg.getSaveLength(), 104U);
    Bytes const saved = savedBytes(reg, 0xA5);
    EXPECT_EQ(Bytes().chars(name).fill(0xA5, 8),
              Bytes().chars({reinterpret_cast<char const*>(saved.data()) + 32, 72}));
    EXPECT_EQ(loaded(saved).getName(), name);
}

TEST(RegisterTag, NameOf65CharactersChangesToTheNewerLayout)
{
    ZUL_register reg(noContainer, std::string(64, 'n').c_str(), true);
    reg.setName(std::string(65, 'n').c_str());
    EXPECT_EQ(reg.getTagId(), newId);
    EXPECT_EQ(reg.getSaveLength(), 32U + 65U);
    EXPECT_EQ(loaded(savedBytes(reg)).getName(), std::string(65, 'n'));
}

TEST(RegisterTag, ShortNameDoesNotChangeBackToTheOlderLayout)
{
    ZUL_register reg(noContainer, std::string(65, 'n').c_str(), true);
    reg.setName("n");
    EXPECT_EQ(reg.getTagId(), newId);
}

TEST(RegisterTag, NulsOnlyAreAnEmptyNameInTheOlderLayout)
{
    Bytes bytes = oldRegister().cut(32).zeros(72);
    ZUL_register reg = loaded(bytes);
    ASSERT_NE(reg.getName(), nullptr);
    EXPECT_STREQ(reg.getName(), "");
    EXPECT_EQ(savedBytes(reg), bytes);
}

TEST(RegisterTag, WithoutNameSavesNulsInTheOlderLayout)
{
    ZUL_register reg(noContainer, nullptr, true);
    EXPECT_EQ(savedBytes(reg, 0xA5),
              Bytes().u32(oldId).u32(104).u32(1).u32(0).u32(0).u32(0).u32(1).u32(64).zeros(64).fill(0xA5, 8));
}

TEST(RegisterTag, LongNameIsRefusedByTheOlderLayoutBeforeAnythingIsWritten)
{
    // A load that was refused left the older id over a name that is too long for it.
    ZUL_register reg(noContainer, std::string(65, 'n').c_str(), false);
    ASSERT_TRUE(loadThrows<ZUL_file_bad_tag_length>(reg, oldRegister().setU32(4, 103), oldId));
    ASSERT_EQ(reg.getTagId(), oldId);
    EXPECT_EQ(reg.getSaveLength(), 104U);
    EXPECT_EQ(saveError(reg),
              "Tried to save a ZUL_register of old type with a name of more than 64 characters.");
}
