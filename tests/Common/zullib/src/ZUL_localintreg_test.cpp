#include "ZUL_localintreg.h"

#include "bytes.h"
#include "coverage.h"
#include "loading.h"
#include "zul_class.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

namespace {

ZUL* const noContainer = nullptr;

Bytes localRegister()
{
    return Bytes().u32(0x08151050).u32(12).u32(0x00012340); // address
}

ZUL_localintreg emptyRegister()
{
    return ZUL_localintreg(noContainer);
}

ZUL_localintreg filledRegister()
{
    ZUL_localintreg reg(noContainer);
    reg.setAddress(0x00012340);
    return reg;
}

} // namespace

TEST(LocalInterruptTag, BeginsWithZeros)
{
    ZUL_localintreg const reg = emptyRegister();
    EXPECT_EQ(reg.getAddress(), 0U);
    EXPECT_EQ(reg.getTagId(), 0x08151050U);
}

TEST(LocalInterruptTag, SavesEveryByte)
{
    ZUL_localintreg reg = filledRegister();
    EXPECT_EQ(savedBytes(reg, 0xA5), localRegister());
    EXPECT_EQ(savedBytes(reg, 0x00), localRegister());
}

TEST(LocalInterruptTag, LoadsEveryField)
{
    ZUL_localintreg reg = emptyRegister();
    EXPECT_EQ(loadFrom(reg, localRegister()), 12U);
    EXPECT_EQ(reg.getAddress(), 0x00012340U);
}

TEST(LocalInterruptTag, TakesEveryNumber)
{
    ZUL_localintreg reg = emptyRegister();
    Bytes const extreme = localRegister().cut(8).fill(0xFF, 12 - 8);
    loadFrom(reg, extreme);
    EXPECT_EQ(savedBytes(reg), extreme);
}

TEST(LocalInterruptTag, IsAlways12BytesLong)
{
    expectFixedLength(emptyRegister, localRegister(), 0x08151050);
}

TEST(LocalInterruptTag, Length16IsRefusedThough16BytesAreThere)
{
    ZUL_localintreg reg = emptyRegister();
    EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(reg, localRegister().setU32(4, 16).zeros(4), 0x08151050));
}

TEST(LocalInterruptTag, RefusedLoadChangesNothing)
{
    ZUL_localintreg reg = filledRegister();
    Bytes const refused = Bytes().u32(0x08151050).u32(12 + 1).fill(0xFF, 12);
    ASSERT_TRUE(loadThrows<ZUL_file_bad_tag_length>(reg, refused, 0x08151050));
    EXPECT_EQ(savedBytes(reg), localRegister());
}

TEST(LocalInterruptTag, CopiesTakeEverythingButTheContainer)
{
    ZUL zul;
    ZUL_localintreg source = filledRegister();
    source.setParent(&zul);
    ZUL_localintreg copy(source);
    ZUL_localintreg fromPointer(&source);
    ZUL_localintreg assigned = emptyRegister();
    assigned = source;
    for (ZUL_localintreg* const reg : {&copy, &fromPointer, &assigned}) {
        EXPECT_EQ(savedBytes(*reg), localRegister());
        EXPECT_EQ(reg->getParent(), nullptr);
    }
    source = emptyRegister();
    EXPECT_EQ(source.getParent(), &zul);
    copy = std::as_const(copy);
    EXPECT_EQ(savedBytes(copy), localRegister());
}

TEST(LocalInterruptTag, HasNoOrder)
{
    ZUL_localintreg const reg = emptyRegister();
    EXPECT_THROW(static_cast<void>(reg < reg), std::runtime_error);
    EXPECT_THROW(static_cast<void>(reg == reg), std::runtime_error);
}

TEST(LocalInterruptTag, VisitCoversItOnce)
{
    ZUL_localintreg reg = emptyRegister();
    VisitRecord const record = visited(reg, localRegister());
    EXPECT_TRUE(coversOnce(record, 12));
    EXPECT_TRUE(record.problems.empty());
    EXPECT_STREQ(record.at(8).name, "address");
    EXPECT_EQ(visited(reg, localRegister().setU32(4, 12 + 1)).problems.size(), 1U);
    expectCutsAreShown(emptyRegister, localRegister(), 12);
}
