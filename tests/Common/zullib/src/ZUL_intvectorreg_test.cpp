#include "ZUL_intvectorreg.h"

#include "bytes.h"
#include "coverage.h"
#include "loading.h"
#include "zul_class.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

namespace {

ZUL* const noContainer = nullptr;

Bytes vectorRegister()
{
    return Bytes()
        .u32(0x08151030)
        .u32(20)
        .u32(0x00012340)  // base address
        .u32(0x00012344)  // ack address
        .u32(0x00012348); // start address
}

ZUL_intvectorreg emptyRegister()
{
    return ZUL_intvectorreg(noContainer);
}

ZUL_intvectorreg filledRegister()
{
    ZUL_intvectorreg reg(noContainer);
    reg.setBaseAddress(0x00012340);
    reg.setAckAddress(0x00012344);
    reg.setStartAddress(0x00012348);
    return reg;
}

} // namespace

TEST(InterruptVectorTag, BeginsWithZeros)
{
    ZUL_intvectorreg const reg = emptyRegister();
    EXPECT_EQ(reg.getBaseAddress(), 0U);
    EXPECT_EQ(reg.getAckAddress(), 0U);
    EXPECT_EQ(reg.getStartAddress(), 0U);
    EXPECT_EQ(reg.getTagId(), 0x08151030U);
}

TEST(InterruptVectorTag, SavesEveryByte)
{
    ZUL_intvectorreg reg = filledRegister();
    EXPECT_EQ(savedBytes(reg, 0xA5), vectorRegister());
    EXPECT_EQ(savedBytes(reg, 0x00), vectorRegister());
}

TEST(InterruptVectorTag, LoadsEveryField)
{
    ZUL_intvectorreg reg = emptyRegister();
    EXPECT_EQ(loadFrom(reg, vectorRegister()), 20U);
    EXPECT_EQ(reg.getBaseAddress(), 0x00012340U);
    EXPECT_EQ(reg.getAckAddress(), 0x00012344U);
    EXPECT_EQ(reg.getStartAddress(), 0x00012348U);
}

TEST(InterruptVectorTag, TakesEveryNumber)
{
    ZUL_intvectorreg reg = emptyRegister();
    Bytes const extreme = vectorRegister().cut(8).fill(0xFF, 20 - 8);
    loadFrom(reg, extreme);
    EXPECT_EQ(savedBytes(reg), extreme);
}

TEST(InterruptVectorTag, IsAlways20BytesLong)
{
    expectFixedLength(emptyRegister, vectorRegister(), 0x08151030);
}

TEST(InterruptVectorTag, RefusedLoadChangesNothing)
{
    ZUL_intvectorreg reg = filledRegister();
    Bytes const refused = Bytes().u32(0x08151030).u32(20 + 1).fill(0xFF, 20);
    ASSERT_TRUE(loadThrows<ZUL_file_bad_tag_length>(reg, refused, 0x08151030));
    EXPECT_EQ(savedBytes(reg), vectorRegister());
}

TEST(InterruptVectorTag, CopiesTakeEverythingButTheContainer)
{
    ZUL zul;
    ZUL_intvectorreg source = filledRegister();
    source.setParent(&zul);
    ZUL_intvectorreg copy(source);
    ZUL_intvectorreg fromPointer(&source);
    ZUL_intvectorreg assigned = emptyRegister();
    assigned = source;
    for (ZUL_intvectorreg* const reg : {&copy, &fromPointer, &assigned}) {
        EXPECT_EQ(savedBytes(*reg), vectorRegister());
        EXPECT_EQ(reg->getParent(), nullptr);
    }
    source = emptyRegister();
    EXPECT_EQ(source.getParent(), &zul);
    copy = std::as_const(copy);
    EXPECT_EQ(savedBytes(copy), vectorRegister());
}

TEST(InterruptVectorTag, HasNoOrder)
{
    ZUL_intvectorreg const reg = emptyRegister();
    EXPECT_THROW(static_cast<void>(reg < reg), std::runtime_error);
    EXPECT_THROW(static_cast<void>(reg == reg), std::runtime_error);
}

TEST(InterruptVectorTag, VisitCoversItOnce)
{
    ZUL_intvectorreg reg = emptyRegister();
    VisitRecord const record = visited(reg, vectorRegister());
    EXPECT_TRUE(coversOnce(record, 20));
    EXPECT_TRUE(record.problems.empty());
    EXPECT_STREQ(record.at(8).name, "base address");
    EXPECT_STREQ(record.at(12).name, "ack address");
    EXPECT_STREQ(record.at(16).name, "start address");
    EXPECT_EQ(visited(reg, vectorRegister().setU32(4, 20 + 1)).problems.size(), 1U);
    expectCutsAreShown(emptyRegister, vectorRegister(), 20);
}
