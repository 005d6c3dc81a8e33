#include "ZUL_dmacnt_register.h"

#include "ZUL_localintreg.h"
#include "bytes.h"
#include "coverage.h"
#include "dynarray.h"
#include "loading.h"
#include "zul_class.h"

#include <gtest/gtest.h>

#include <typeinfo>
#include <utility>

namespace {

ZUL* const noContainer = nullptr;

Bytes countRegister()
{
    return Bytes()
        .u32(0x08151020)
        .u32(20)
        .u32(3)           // channel
        .u32(0x00012340)  // address
        .u32(0xFFFFFFFE); // flags
}

ZUL_dmacnt_register emptyRegister()
{
    return {noContainer, 0, 0, 0};
}

} // namespace

TEST(DmaCountRegisterTag, KeepsWhatItIsMadeWith)
{
    ZUL_dmacnt_register const reg(noContainer, 1, 2, 3);
    EXPECT_EQ(reg.getChannel(), 1U);
    EXPECT_EQ(reg.getAddress(), 2U);
    EXPECT_EQ(reg.getFlags(), 3U);
    EXPECT_EQ(reg.getTagId(), 0x08151020U);
}

TEST(DmaCountRegisterTag, InfoReplacesAllThree)
{
    ZUL_dmacnt_register reg = emptyRegister();
    EXPECT_EQ(reg.setInfo(0xFFFFFFFF, 0x80000000, 7), 0);
    EXPECT_EQ(reg.getChannel(), 0xFFFFFFFFU);
    EXPECT_EQ(reg.getAddress(), 0x80000000U);
    EXPECT_EQ(reg.getFlags(), 7U);
}

TEST(DmaCountRegisterTag, SavesEveryByte)
{
    ZUL_dmacnt_register reg(noContainer, 3, 0x12340, 0xFFFFFFFE);
    EXPECT_EQ(savedBytes(reg, 0xA5), countRegister());
    EXPECT_EQ(savedBytes(reg, 0x00), countRegister());
}

TEST(DmaCountRegisterTag, LoadsEveryField)
{
    ZUL_dmacnt_register reg = emptyRegister();
    EXPECT_EQ(loadFrom(reg, countRegister()), 20U);
    EXPECT_EQ(reg.getChannel(), 3U);
    EXPECT_EQ(reg.getAddress(), 0x12340U);
    EXPECT_EQ(reg.getFlags(), 0xFFFFFFFEU);
}

TEST(DmaCountRegisterTag, IsAlways20BytesLong)
{
    expectFixedLength(emptyRegister, countRegister(), 0x08151020);
}

TEST(DmaCountRegisterTag, RefusedLoadChangesNothing)
{
    ZUL_dmacnt_register reg(noContainer, 1, 2, 3);
    ASSERT_TRUE(loadThrows<ZUL_file_bad_tag_length>(reg, countRegister().setU32(4, 24), 0x08151020));
    EXPECT_EQ(reg, ZUL_dmacnt_register(noContainer, 1, 2, 3));
}

TEST(DmaCountRegisterTag, CopiesTakeEverythingButTheContainer)
{
    ZUL zul;
    ZUL_dmacnt_register const source(&zul, 1, 2, 3);
    ZUL_dmacnt_register const copy(source);
    ZUL_dmacnt_register const fromPointer(&source);
    ZUL_dmacnt_register assigned = emptyRegister();
    assigned = source;
    for (ZUL_dmacnt_register const* const reg : {&copy, &fromPointer, &std::as_const(assigned)}) {
        EXPECT_EQ(*reg, source);
        EXPECT_EQ(reg->getParent(), nullptr);
    }
    ZUL_dmacnt_register owned(&zul, 4, 5, 6);
    owned = copy;
    EXPECT_EQ(owned.getParent(), &zul);
    owned = std::as_const(owned);
    EXPECT_EQ(owned, source);
}

TEST(DmaCountRegisterTag, OrderIsThatOfTheChannels)
{
    ZUL_dmacnt_register const low(noContainer, 1, 9, 9);
    ZUL_dmacnt_register const high(noContainer, 0x80000000, 0, 0); // unsigned
    EXPECT_TRUE(low < high);
    EXPECT_FALSE(high < low);
    EXPECT_TRUE(high > low);
    EXPECT_FALSE(low > high);
    EXPECT_TRUE(low <= high);
    EXPECT_FALSE(low >= high);
    EXPECT_TRUE(low != high);
    EXPECT_TRUE(low < static_cast<ZUL_tag const*>(&high));
    EXPECT_TRUE(high > static_cast<ZUL_tag const*>(&low));
}

TEST(DmaCountRegisterTag, EqualChannelsAreNeitherLessNorGreaterNorEqual)
{
    ZUL_dmacnt_register const left(noContainer, 1, 2, 3);
    for (ZUL_dmacnt_register const& right :
         {ZUL_dmacnt_register(noContainer, 1, 9, 3), ZUL_dmacnt_register(noContainer, 1, 2, 9)}) {
        EXPECT_FALSE(left < right);
        EXPECT_FALSE(left > right);
        EXPECT_FALSE(left == right);
        EXPECT_TRUE(left != right);
        EXPECT_FALSE(left <= right);
        EXPECT_FALSE(left >= right);
    }
    EXPECT_TRUE(left == ZUL_dmacnt_register(noContainer, 1, 2, 3));
    EXPECT_TRUE(left <= ZUL_dmacnt_register(noContainer, 1, 2, 3));
    EXPECT_FALSE(left == ZUL_dmacnt_register(noContainer, 2, 2, 3));
}

TEST(DmaCountRegisterTag, OtherClassesAreUnequalAndHaveNoOrder)
{
    ZUL_dmacnt_register const reg = emptyRegister();
    ZUL_localintreg const other(noContainer);
    ZUL_tag const& tag = other;
    EXPECT_FALSE(reg == tag);
    EXPECT_TRUE(reg != tag);
    EXPECT_THROW(static_cast<void>(reg < tag), std::bad_cast);
    EXPECT_THROW(static_cast<void>(reg > tag), std::bad_cast);
    EXPECT_THROW(static_cast<void>(reg <= tag), std::bad_cast);
    EXPECT_THROW(static_cast<void>(reg >= tag), std::bad_cast);
}

TEST(DmaCountRegisterTag, SortOrdersByChannel)
{
    dynarray_zultp<ZUL_tag> tags(nullptr);
    for (unsigned const channel : {5U, 0x90000000U, 0U, 7U}) {
        tags.Add(new ZUL_dmacnt_register(noContainer, channel, 0, 0));
    }
    tags.sort(0x08151020);
    std::vector<unsigned> channels;
    for (std::uint32_t i = 0; i < tags.getCount(); ++i) {
        channels.push_back(dynamic_cast<ZUL_dmacnt_register&>(*tags.at(i)).getChannel());
    }
    EXPECT_EQ(channels, (std::vector<unsigned>{0, 5, 7, 0x90000000}));
}

TEST(DmaCountRegisterTag, VisitCoversItOnce)
{
    ZUL_dmacnt_register reg = emptyRegister();
    VisitRecord const record = visited(reg, countRegister());
    EXPECT_TRUE(coversOnce(record, 20));
    EXPECT_TRUE(record.problems.empty());
    EXPECT_STREQ(record.at(8).name, "channel");
    EXPECT_STREQ(record.at(12).name, "address");
    EXPECT_STREQ(record.at(16).name, "flags");
    EXPECT_EQ(visited(reg, countRegister().setU32(4, 21)).problems.size(), 1U);
    expectCutsAreShown(emptyRegister, countRegister(), 20);
}
