#include "ZUL_register.h"

#include "bytes.h"
#include "coverage.h"
#include "loading.h"
#include "virtual_slot.h"
#include "zul_class.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

constexpr std::uint32_t oldId = 0x08151000;
constexpr std::uint32_t newId = 0x08151002;
constexpr ZULRegisterPolicy newPolicy{1};

ZUL* const noContainer = nullptr;

Bytes oldRegister()
{
    return Bytes()
        .u32(0x08151000)
        .u32(104)
        .u32(2)          // access
        .u32(0x00012340) // address
        .u32(0x89ABCDEF) // value
        .u32(1)          // writable
        .u32(3)          // lsb
        .u32(32)         // msb
        .text("dma_ctrl", 64)
        .zeros(8);
}

Bytes newRegister()
{
    return Bytes()
        .u32(0x08151002)
        .u32(32 + 8)
        .u8(2)                   // access
        .u8(1)                   // writable
        .u8(3)                   // lsb
        .u8(60)                  // msb
        .u32(0x00012340)         // address
        .u64(0x0123456789ABCDEF) // value
        .u32(8)                  // name length
        .u32(0)
        .chars("dma_ctrl");
}

ZUL_register emptyRegister()
{
    return {noContainer, nullptr, false};
}

ZUL_register loaded(Bytes const& bytes)
{
    ZUL_register reg = emptyRegister();
    EXPECT_EQ(loadFrom(reg, bytes), bytes.size());
    return reg;
}

ZUL_register writableRegister(bool old)
{
    ZUL_register reg(noContainer, "r", old);
    reg.setReadOnly(false);
    return reg;
}

/// Everything but the name, in one line.
std::string values(ZUL_register const& reg)
{
    return "address " + std::to_string(reg.getAddress()) + " msb " + std::to_string(reg.getMSB()) + " lsb " +
           std::to_string(reg.getLSB()) + (reg.isReadOnly() ? " read-only" : " writable") + " access " +
           std::to_string(reg.getType()) + " value " + std::to_string(reg.getCache()) + " id " +
           std::to_string(reg.getTagId() - oldId);
}

std::string const defaultValues = "address 0 msb 64 lsb 1 read-only access 1 value 0 id 2";

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

TEST(RegisterTag, BeginsWithTheDefaultsAndTheLayoutAskedFor)
{
    ZUL_register const young(noContainer, "r", false);
    EXPECT_EQ(values(young), defaultValues);
    EXPECT_STREQ(young.getName(), "r");
    ZUL_register const old(noContainer, "r", true);
    EXPECT_EQ(values(old), "address 0 msb 64 lsb 1 read-only access 1 value 0 id 0");
}

TEST(RegisterTag, WithoutNameHasNoName)
{
    EXPECT_EQ(ZUL_register(noContainer, nullptr, false).getName(), nullptr);
    EXPECT_EQ(ZUL_register(noContainer, "", false).getName(), nullptr);
}

TEST(RegisterTag, MadeWithALongNameIsOfTheNewerLayout)
{
    EXPECT_EQ(ZUL_register(noContainer, std::string(65, 'n').c_str(), true).getTagId(), newId);
    EXPECT_EQ(ZUL_register(noContainer, std::string(64, 'n').c_str(), true).getTagId(), oldId);
}

TEST(RegisterTag, NewOperationsStandBehindThoseOfEveryTag)
{
    EXPECT_GT(virtualSlot(&ZUL_register::setName),
              virtualSlot<bool (ZUL_tag::*)(ZUL_tag const&) const>(&ZUL_tag::operator==));
    EXPECT_EQ(virtualSlot(&ZUL_register::setCacheValue), virtualSlot(&ZUL_register::setName) + 1);
}

// The older layout.

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

// The newer layout.

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

// Which layout.

TEST(RegisterTag, AnotherIdIsMalformed)
{
    for (std::uint32_t const id : {0x08151001U, 0x08151003U, 0U, 0xFFFFFFFFU}) {
        ZUL_register reg = emptyRegister();
        EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(reg, oldRegister().setU32(0, id), id))
            << std::hex << id;
        EXPECT_EQ(reg.getTagId(), newId);
    }
}

TEST(RegisterTag, FewerBytesThanAHeaderAreABadLengthOfTheIdItHas)
{
    for (bool const old : {false, true}) {
        ZUL_register reg(noContainer, nullptr, old);
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(reg, oldRegister().cut(7), old ? oldId : newId));
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(reg, newRegister().cut(7), old ? oldId : newId));
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(reg, Bytes(), old ? oldId : newId));
    }
}

TEST(RegisterTag, LoadingTakesTheLayoutOfTheBytes)
{
    ZUL_register young(noContainer, "r", false);
    loadFrom(young, oldRegister());
    EXPECT_EQ(young.getTagId(), oldId);
    ZUL_register old(noContainer, "r", true);
    loadFrom(old, newRegister());
    EXPECT_EQ(old.getTagId(), newId);
}

TEST(RegisterTag, IsNewByItsIdOrByTheContainersPolicy)
{
    ZUL zul;
    ZUL_register old(&zul, "r", true);
    EXPECT_FALSE(old.iAmANewRegister());
    zul.setRegisterPolicy(newPolicy);
    EXPECT_TRUE(old.iAmANewRegister());
    zul.setRegisterPolicy(ZULRegisterPolicy{0xFFFFFFFF});
    EXPECT_TRUE(old.iAmANewRegister());
    zul.setRegisterPolicy(ZULRegisterPolicy{0});
    EXPECT_FALSE(old.iAmANewRegister());
    EXPECT_TRUE(ZUL_register(&zul, "r", false).iAmANewRegister());
    EXPECT_FALSE(ZUL_register(noContainer, "r", true).iAmANewRegister());
    EXPECT_TRUE(ZUL_register(noContainer, "r", false).iAmANewRegister());
}

TEST(RegisterTag, PolicySavesTheNewerLayoutButKeepsTheId)
{
    ZUL zul;
    ZUL_register reg(&zul, nullptr, true);
    loadFrom(reg, oldRegister());
    EXPECT_EQ(savedBytes(reg), oldRegister());
    zul.setRegisterPolicy(newPolicy);
    EXPECT_EQ(savedBytes(reg, 0xA5), newRegister().setU8(11, 32).setU32(16, 0x89ABCDEF).setU32(20, 0));
    EXPECT_EQ(reg.getTagId(), oldId);
    zul.setRegisterPolicy(ZULRegisterPolicy{0});
    EXPECT_EQ(savedBytes(reg), oldRegister());
}

// Setters.

TEST(RegisterTag, AddressStoresEverything)
{
    ZUL_register reg = emptyRegister();
    EXPECT_EQ(reg.setAddress(0xFEDCBA98, 0x14, false, 4, 3, ZUL_register::access2), 0);
    EXPECT_EQ(values(reg), "address 4275878552 msb 4 lsb 3 writable access 2 value 20 id 2");
    EXPECT_EQ(reg.setAddress(1, 0, true, 0, 0, ZUL_register::access1), 0);
    EXPECT_EQ(values(reg), "address 1 msb 0 lsb 0 read-only access 1 value 0 id 2");
}

TEST(RegisterTag, AddressRefusesBitsOutOfOrder)
{
    ZUL_register reg = emptyRegister();
    EXPECT_EQ(reg.setAddress(1, 0, false, 4, 5, ZUL_register::access2), -22);
    EXPECT_EQ(reg.setAddress(1, 0, false, 64, 1, ZUL_register::access2), -22);
    EXPECT_EQ(reg.setAddress(1, 0, false, 255, 255, ZUL_register::access2), -22);
    EXPECT_EQ(values(reg), defaultValues);
    EXPECT_EQ(reg.setAddress(1, 0, false, 5, 5, ZUL_register::access2), 0);
    EXPECT_EQ(reg.setAddress(1, 0, false, 63, 63, ZUL_register::access2), 0);
}

TEST(RegisterTag, AddressRefusesAValueAboveTheMostSignificantBit)
{
    ZUL_register reg = emptyRegister();
    EXPECT_EQ(reg.setAddress(1, 256, false, 7, 1, ZUL_register::access2), -22);
    EXPECT_EQ(values(reg), defaultValues);
    EXPECT_EQ(reg.setAddress(1, 255, false, 7, 1, ZUL_register::access2), 0);
    EXPECT_EQ(reg.setAddress(1, 1, false, 0, 0, ZUL_register::access2), 0);
    EXPECT_EQ(reg.setAddress(1, 2, false, 0, 0, ZUL_register::access2), -22);
    EXPECT_EQ(reg.setAddress(1, 0x7FFFFFFFFFFFFFFF, false, 62, 1, ZUL_register::access2), 0);
    EXPECT_EQ(reg.setAddress(1, 0x8000000000000000, false, 62, 1, ZUL_register::access2), -22);
}

TEST(RegisterTag, AddressWithBit63TakesAnyValue)
{
    ZUL_register reg = emptyRegister();
    EXPECT_EQ(reg.setAddress(1, 0xFFFFFFFFFFFFFFFF, false, 63, 0, ZUL_register::access1), 0);
    EXPECT_EQ(reg.getCache(), 0xFFFFFFFFFFFFFFFFU);
}

TEST(RegisterTag, AddressRefusesAValueBelowTheLeastSignificantBit)
{
    ZUL_register reg = emptyRegister();
    for (unsigned const value : {1U, 2U, 3U, 5U, 6U}) {
        EXPECT_EQ(reg.setAddress(1, value, false, 7, 3, ZUL_register::access2), -22) << value;
    }
    EXPECT_EQ(values(reg), defaultValues);
    EXPECT_EQ(reg.setAddress(1, 4, false, 7, 3, ZUL_register::access2), 0);
    EXPECT_EQ(reg.setAddress(1, 1, false, 7, 2, ZUL_register::access2), -22);
    EXPECT_EQ(reg.setAddress(1, 1, false, 7, 1, ZUL_register::access2), 0);
    EXPECT_EQ(reg.setAddress(1, 1, false, 7, 0, ZUL_register::access2), 0);
    EXPECT_EQ(reg.setAddress(1, 1ULL << 61, false, 63, 63, ZUL_register::access2), -22);
    EXPECT_EQ(reg.setAddress(1, 1ULL << 62, false, 63, 63, ZUL_register::access2), 0);
}

TEST(RegisterTag, LeastSignificantBitIsOneOrAtMostTheMost)
{
    ZUL_register reg = emptyRegister();
    reg.setMSB(8);
    reg.setLSB(8);
    EXPECT_EQ(reg.getLSB(), 8);
    reg.setLSB(9);
    EXPECT_EQ(reg.getLSB(), 8);
    reg.setLSB(0);
    EXPECT_EQ(reg.getLSB(), 0);
    reg.setMSB(0);
    reg.setLSB(1);
    EXPECT_EQ(reg.getLSB(), 1) << "1 is always taken";
    reg.setLSB(2);
    EXPECT_EQ(reg.getLSB(), 1);
}

TEST(RegisterTag, MostSignificantBitIs64OrNotBelowTheLeast)
{
    ZUL_register reg = emptyRegister();
    reg.setLSB(8);
    reg.setMSB(7);
    EXPECT_EQ(reg.getMSB(), 64);
    reg.setMSB(8);
    EXPECT_EQ(reg.getMSB(), 8);
    reg.setMSB(65);
    EXPECT_EQ(reg.getMSB(), 8);
    reg.setMSB(64);
    EXPECT_EQ(reg.getMSB(), 64);
    ZUL_register wide = loaded(newRegister().setU8(10, 200).setU8(11, 201));
    wide.setMSB(64);
    EXPECT_EQ(wide.getMSB(), 64) << "64 is always taken";
    wide.setMSB(201);
    EXPECT_EQ(wide.getMSB(), 64);
}

TEST(RegisterTag, TypeIsOneOfTwo)
{
    ZUL_register reg = emptyRegister();
    reg.setType(ZUL_register::access2);
    EXPECT_EQ(reg.getType(), ZUL_register::access2);
    for (unsigned const type : {0U, 3U, 0x101U, 0xFFFFFFFFU}) {
        reg.setType(static_cast<ZUL_register::access>(type));
        EXPECT_EQ(reg.getType(), ZUL_register::access2) << type;
    }
    reg.setType(ZUL_register::access1);
    EXPECT_EQ(reg.getType(), ZUL_register::access1);
}

TEST(RegisterTag, NameIsReplacedOrTakenAway)
{
    ZUL_register reg(noContainer, "first", false);
    reg.setName("second");
    EXPECT_STREQ(reg.getName(), "second");
    reg.setName(nullptr);
    EXPECT_EQ(reg.getName(), nullptr);
    reg.setName("third");
    reg.setName("");
    EXPECT_EQ(reg.getName(), nullptr);
}

TEST(RegisterTag, NameMayBePartOfTheNameBefore)
{
    ZUL_register reg(noContainer, "left.right", false);
    reg.setName(reg.getName() + 5);
    EXPECT_STREQ(reg.getName(), "right");
}

// The value.

TEST(RegisterTag, ValueIsStoredAndReturned)
{
    ZUL_register reg = writableRegister(false);
    EXPECT_EQ(reg.setCacheValue(0xFFFFFFFFFFFFFFFF), 0xFFFFFFFFFFFFFFFFU);
    EXPECT_EQ(reg.getCache(), 0xFFFFFFFFFFFFFFFFU);
}

TEST(RegisterTag, ReadOnlyRegisterRefusesAnyValue)
{
    for (bool const old : {false, true}) {
        ZUL_register reg(noContainer, "r", old);
        try {
            reg.setCacheValue(0x1FFFFFFFF); // too wide for the older layout as well: read-only comes first
            FAIL() << "taken";
        } catch (std::invalid_argument const&) {
            FAIL() << "wrong error";
        } catch (std::runtime_error const& error) {
            EXPECT_STREQ(error.what(), "write attempt to read only register");
        }
        EXPECT_EQ(reg.getCache(), 0U);
    }
}

TEST(RegisterTag, OlderLayoutRefusesAValueOfMoreThan32Bits)
{
    ZUL_register reg = writableRegister(true);
    EXPECT_EQ(reg.setCacheValue(0xFFFFFFFF), 0xFFFFFFFFU);
    try {
        reg.setCacheValue(0x100000000);
        FAIL() << "taken";
    } catch (std::invalid_argument const& error) {
        EXPECT_STREQ(error.what(), "Value too big for old register type");
    }
    EXPECT_EQ(reg.getCache(), 0xFFFFFFFFU);
}

TEST(RegisterTag, PolicyLetsTheOlderLayoutTakeAWideValueAndSavesIt)
{
    ZUL zul;
    ZUL_register reg(&zul, "r", true);
    reg.setReadOnly(false);
    EXPECT_THROW(reg.setCacheValue(0x100000000), std::invalid_argument);
    zul.setRegisterPolicy(newPolicy);
    EXPECT_EQ(reg.setCacheValue(0x100000000), 0x100000000U);
    EXPECT_EQ(
        savedBytes(reg),
        Bytes().u32(newId).u32(33).u8(1).u8(1).u8(1).u8(64).u32(0).u64(0x100000000).u32(1).u32(0).chars("r"));
}

// Copies.

TEST(RegisterTag, CopyTakesEverythingAndTheSourcesLayout)
{
    for (bool const flag : {false, true}) {
        for (Bytes const& bytes : {oldRegister(), newRegister()}) {
            ZUL_register const source = loaded(bytes);
            ZUL_register const copy(source, flag);
            EXPECT_EQ(values(copy), values(source));
            EXPECT_STREQ(copy.getName(), "dma_ctrl");
            EXPECT_NE(copy.getName(), source.getName()) << "the text is its own";
            EXPECT_EQ(values(ZUL_register(&source, flag)), values(source));
            EXPECT_STREQ(ZUL_register(&source, flag).getName(), "dma_ctrl");
        }
    }
}

TEST(RegisterTag, CopyStartsWithoutContainer)
{
    ZUL zul;
    ZUL_register const source(&zul, "r", false);
    EXPECT_EQ(ZUL_register(source).getParent(), nullptr);
    EXPECT_EQ(ZUL_register(&source).getParent(), nullptr);
}

TEST(RegisterTag, CopyOfAnEmptyNameHasNone)
{
    ZUL_register const source = loaded(oldRegister().cut(32).zeros(72));
    ASSERT_STREQ(source.getName(), "");
    EXPECT_EQ(ZUL_register(source).getName(), nullptr);
}

TEST(RegisterTag, AssignmentTakesEverythingButTheContainer)
{
    ZUL zul;
    for (Bytes const& bytes : {oldRegister(), newRegister()}) {
        ZUL_register const source = loaded(bytes);
        ZUL_register target(&zul, std::string(65, 't').c_str(), false);
        target = source;
        EXPECT_EQ(values(target), values(source));
        EXPECT_STREQ(target.getName(), "dma_ctrl");
        EXPECT_EQ(target.getParent(), &zul);
    }
}

TEST(RegisterTag, AssignmentSetsTheNameThroughSetName)
{
    class Listening : public ZUL_register {
    public:
        using ZUL_register::operator=;
        Listening() : ZUL_register(noContainer, nullptr, false) {}
        void setName(char const* name) override
        {
            ++calls;
            ZUL_register::setName(name);
        }
        int calls = 0;
    };
    Listening target;
    target = ZUL_register(noContainer, "r", true);
    EXPECT_EQ(target.calls, 1);
    EXPECT_STREQ(target.getName(), "r");
}

TEST(RegisterTag, AssigningItselfChangesNothing)
{
    for (Bytes const& bytes : {oldRegister(), newRegister(), oldRegister().cut(32).zeros(72)}) {
        ZUL_register reg = loaded(bytes);
        reg = std::as_const(reg);
        EXPECT_EQ(savedBytes(reg), bytes);
        EXPECT_NE(reg.getName(), nullptr);
    }
}

TEST(RegisterTag, HasNoOrder)
{
    ZUL_register const a(noContainer, "a", false);
    ZUL_register const b(noContainer, "b", false);
    EXPECT_THROW(static_cast<void>(a < b), std::runtime_error);
    EXPECT_THROW(static_cast<void>(a == b), std::runtime_error);
}

// In a container.

TEST(RegisterTag, ContainerFindsARenamedRegister)
{
    ZUL zul;
    auto* const reg = new ZUL_register(&zul, "before", false);
    zul.AddTag(reg);
    ASSERT_EQ(zul.findRegister("before"), reg);
    reg->setName("after");
    EXPECT_EQ(zul.findRegister("before"), nullptr);
    EXPECT_EQ(zul.findRegister("after"), reg);
    *reg = ZUL_register(noContainer, "assigned", false);
    EXPECT_EQ(zul.findRegister("after"), nullptr);
    EXPECT_EQ(zul.findRegister("assigned"), reg);
    loadFrom(*reg, newRegister());
    EXPECT_EQ(zul.findRegister("dma_ctrl"), reg);
}

TEST(RegisterTag, ContainerCountsARegisterThatChangedItsLayout)
{
    ZUL zul;
    auto* const reg = new ZUL_register(&zul, "r", true);
    zul.AddTag(reg);
    ASSERT_EQ(zul.getTagCount(oldId), 1U);
    ASSERT_EQ(zul.getTagCount(newId), 0U);
    reg->setName(std::string(65, 'n').c_str());
    EXPECT_EQ(zul.getTagCount(oldId), 0U);
    EXPECT_EQ(zul.getTagCount(newId), 1U);
    EXPECT_EQ(zul.getTagAt(newId, 0), reg);
    *reg = ZUL_register(noContainer, "back", true);
    EXPECT_EQ(zul.getTagCount(oldId), 1U);
    EXPECT_EQ(zul.getTagCount(newId), 0U);
}

// Showing.

TEST(RegisterTag, VisitCoversBothLayoutsOnce)
{
    ZUL_register reg = emptyRegister();
    VisitRecord const old = visited(reg, oldRegister());
    EXPECT_TRUE(coversOnce(old, 104));
    EXPECT_TRUE(old.problems.empty());
    EXPECT_EQ(old.at(32).text(), "dma_ctrl");
    EXPECT_EQ(old.at(96).kind, FieldKind::Reserved);
    VisitRecord const young = visited(reg, newRegister());
    EXPECT_TRUE(coversOnce(young, 40));
    EXPECT_TRUE(young.problems.empty());
    EXPECT_EQ(young.at(16).number(), 0x0123456789ABCDEFU);
    EXPECT_EQ(young.at(28).kind, FieldKind::Zero);
    EXPECT_EQ(young.at(32).text(), "dma_ctrl");
    EXPECT_TRUE(coversOnce(visited(reg, newRegister().cut(32).setU32(4, 32).setU32(24, 0)), 32));
}

TEST(RegisterTag, VisitNamesEveryBrokenRule)
{
    ZUL_register reg = emptyRegister();
    Bytes const damaged = newRegister().setU32(4, 41).setU8(8, 3).setU8(9, 2);
    VisitRecord const record = visited(reg, damaged);
    ASSERT_EQ(record.problems.size(), 3U);
    EXPECT_STREQ(record.problems[0].field, "length");
    EXPECT_EQ(record.problems[0].expected, "40");
    EXPECT_EQ(record.problems[1].offset, 8U);
    EXPECT_EQ(record.problems[1].expected, "1 or 2");
    EXPECT_EQ(record.problems[1].found, "3");
    EXPECT_EQ(record.problems[2].offset, 9U);
    EXPECT_EQ(record.problems[2].expected, "0 or 1");
    EXPECT_EQ(record.problems[2].kind, TagProblem::Kind::Malformed);
    EXPECT_EQ(visited(reg, oldRegister().setU32(8, 0x101).setU32(20, 0x100)).problems.size(), 2U);
}

TEST(RegisterTag, VisitShowsCutTags)
{
    expectCutsAreShown(emptyRegister, oldRegister(), 104);
    expectCutsAreShown(emptyRegister, newRegister(), 32);
    expectCutsAreShown(emptyRegister, newRegister().setU32(4, 0xFFFFFFFF).setU32(24, 0xFFFFFFFF), 32);
}
