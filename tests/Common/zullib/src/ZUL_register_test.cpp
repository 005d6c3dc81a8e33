#include "ZUL_register.h"

#include "registers.h"
#include "virtual_slot.h"
#include "zul_class.h"

#include <stdexcept>
#include <string>

using namespace registers;

namespace {

constexpr ZULRegisterPolicy newPolicy{1};

std::string const defaultValues = "address 0 msb 64 lsb 1 read-only access 1 value 0 id 2";

ZUL_register writableRegister(bool old)
{
    ZUL_register reg(noContainer, "r", old);
    reg.setReadOnly(false);
    return reg;
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
