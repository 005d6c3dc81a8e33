#include "ZUL_dmatag_register.h"

#include "bytes.h"
#include "coverage.h"
#include "loading.h"
#include "zul_class.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

namespace {

ZUL* const noContainer = nullptr;

Bytes tagRegister()
{
    return Bytes()
        .u32(0x08151040)
        .u32(24)
        .u32(0x00012340)  // address
        .u32(0x0000FF00)  // mask
        .u32(0x00000008)  // shiftr
        .u32(0x00000003); // channel
}

ZUL_dmatag_register emptyRegister()
{
    return ZUL_dmatag_register(noContainer);
}

ZUL_dmatag_register filledRegister()
{
    ZUL_dmatag_register reg(noContainer);
    reg.setAddress(0x00012340);
    reg.setMask(0x0000FF00);
    reg.setShiftr(0x00000008);
    reg.setChannel(0x00000003);
    return reg;
}

} // namespace

TEST(DmaTagRegisterTag, BeginsWithZeros)
{
    ZUL_dmatag_register const reg = emptyRegister();
    EXPECT_EQ(reg.getAddress(), 0U);
    EXPECT_EQ(reg.getMask(), 0U);
    EXPECT_EQ(reg.getShiftr(), 0U);
    EXPECT_EQ(reg.getChannel(), 0U);
    EXPECT_EQ(reg.getTagId(), 0x08151040U);
}

TEST(DmaTagRegisterTag, SavesEveryByte)
{
    ZUL_dmatag_register reg = filledRegister();
    EXPECT_EQ(savedBytes(reg, 0xA5), tagRegister());
    EXPECT_EQ(savedBytes(reg, 0x00), tagRegister());
}

TEST(DmaTagRegisterTag, LoadsEveryField)
{
    ZUL_dmatag_register reg = emptyRegister();
    EXPECT_EQ(loadFrom(reg, tagRegister()), 24U);
    EXPECT_EQ(reg.getAddress(), 0x00012340U);
    EXPECT_EQ(reg.getMask(), 0x0000FF00U);
    EXPECT_EQ(reg.getShiftr(), 0x00000008U);
    EXPECT_EQ(reg.getChannel(), 0x00000003U);
}

TEST(DmaTagRegisterTag, TakesEveryNumber)
{
    ZUL_dmatag_register reg = emptyRegister();
    Bytes const extreme = tagRegister().cut(8).fill(0xFF, 24 - 8);
    loadFrom(reg, extreme);
    EXPECT_EQ(savedBytes(reg), extreme);
}

TEST(DmaTagRegisterTag, IsAlways24BytesLong)
{
    expectFixedLength(emptyRegister, tagRegister(), 0x08151040);
}

TEST(DmaTagRegisterTag, RefusedLoadChangesNothing)
{
    ZUL_dmatag_register reg = filledRegister();
    Bytes const refused = Bytes().u32(0x08151040).u32(24 + 1).fill(0xFF, 24);
    ASSERT_TRUE(loadThrows<ZUL_file_bad_tag_length>(reg, refused, 0x08151040));
    EXPECT_EQ(savedBytes(reg), tagRegister());
}

TEST(DmaTagRegisterTag, CopiesTakeEverythingButTheContainer)
{
    ZUL zul;
    ZUL_dmatag_register source = filledRegister();
    source.setParent(&zul);
    ZUL_dmatag_register copy(source);
    ZUL_dmatag_register fromPointer(&source);
    ZUL_dmatag_register assigned = emptyRegister();
    assigned = source;
    for (ZUL_dmatag_register* const reg : {&copy, &fromPointer, &assigned}) {
        EXPECT_EQ(savedBytes(*reg), tagRegister());
        EXPECT_EQ(reg->getParent(), nullptr);
    }
    source = emptyRegister();
    EXPECT_EQ(source.getParent(), &zul);
    copy = std::as_const(copy);
    EXPECT_EQ(savedBytes(copy), tagRegister());
}

TEST(DmaTagRegisterTag, HasNoOrder)
{
    ZUL_dmatag_register const reg = emptyRegister();
    EXPECT_THROW(static_cast<void>(reg < reg), std::runtime_error);
    EXPECT_THROW(static_cast<void>(reg == reg), std::runtime_error);
}

TEST(DmaTagRegisterTag, VisitCoversItOnce)
{
    ZUL_dmatag_register reg = emptyRegister();
    VisitRecord const record = visited(reg, tagRegister());
    EXPECT_TRUE(coversOnce(record, 24));
    EXPECT_TRUE(record.problems.empty());
    EXPECT_STREQ(record.at(8).name, "address");
    EXPECT_STREQ(record.at(12).name, "mask");
    EXPECT_STREQ(record.at(16).name, "shiftr");
    EXPECT_STREQ(record.at(20).name, "channel");
    EXPECT_EQ(visited(reg, tagRegister().setU32(4, 24 + 1)).problems.size(), 1U);
    expectCutsAreShown(emptyRegister, tagRegister(), 24);
}
