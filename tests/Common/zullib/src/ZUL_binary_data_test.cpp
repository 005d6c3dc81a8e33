#include "ZUL_binary_data.h"
#include "bytes.h"
#include "loading.h"
#include "zul_class.h"

#include <gtest/gtest.h>

namespace {

constexpr ZUL* noContainer = nullptr;

Bytes strangeBytes()
{
    return Bytes().u32(0x8150015).u32(12).chars("what").chars("ever follows");
}

TEST(BinaryDataTag, NewOneHasItsIdAndNoBytes)
{
    ZUL zul;
    ZUL_binary_data tag(&zul, 0x12345678);
    EXPECT_EQ(tag.getTagId(), 0x12345678U);
    EXPECT_EQ(tag.getParent(), &zul);
    EXPECT_EQ(tag.getLength(), 0U);
    EXPECT_EQ(savedBytes(tag), Bytes());
}

TEST(BinaryDataTag, TakesAllOfferedBytesWhateverTheHeaderSaysAndGivesThemBack)
{
    ZUL_binary_data tag(noContainer, 0x8150015);
    EXPECT_EQ(loadFrom(tag, strangeBytes()), 24U);
    EXPECT_EQ(tag.getLength(), 24U);
    EXPECT_EQ(tag.getSaveLength(), 24U);
    EXPECT_EQ(savedBytes(tag, 0xA5), strangeBytes());
}

TEST(BinaryDataTag, LengthFieldIsNotLookedAt)
{
    for (std::uint32_t const stated : {0U, 7U, 0xFFFFFFFFU}) {
        ZUL_binary_data tag(noContainer, 0x8150015);
        EXPECT_EQ(loadFrom(tag, strangeBytes().setU32(4, stated)), 24U);
        EXPECT_EQ(savedBytes(tag), strangeBytes().setU32(4, stated));
    }
}

TEST(BinaryDataTag, IdComesFromTheConstructorAndNotFromTheBytes)
{
    ZUL_binary_data tag(noContainer, 42);
    loadFrom(tag, strangeBytes());
    EXPECT_EQ(tag.getTagId(), 42U);
    EXPECT_EQ(savedBytes(tag), strangeBytes());
}

TEST(BinaryDataTag, EightBytesAreEnough)
{
    ZUL_binary_data tag(noContainer, 1);
    EXPECT_EQ(loadFrom(tag, Bytes().u32(1).u32(8)), 8U);
    EXPECT_EQ(tag.getLength(), 8U);
}

TEST(BinaryDataTag, FewerThanEightBytesAreRefusedWithIdZero)
{
    ZUL_binary_data tag(noContainer, 0x8150015);
    loadFrom(tag, strangeBytes());
    for (std::size_t avail = 0; avail < 8; ++avail) {
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, strangeBytes().cut(avail), 0)) << avail;
    }
    EXPECT_EQ(savedBytes(tag), strangeBytes()) << "what was loaded before is kept";
}

TEST(BinaryDataTag, LoadOwnsItsBytes)
{
    ZUL_binary_data tag(noContainer, 0x8150015);
    Bytes buffer = strangeBytes();
    tag.Load(buffer.data(), buffer.size());
    buffer.setU32(0, 0).setU32(4, 0);
    EXPECT_EQ(savedBytes(tag), strangeBytes());
}

TEST(BinaryDataTag, LoadReplacesWhatWasThere)
{
    ZUL_binary_data tag(noContainer, 1);
    loadFrom(tag, strangeBytes());
    loadFrom(tag, Bytes().u32(1).u32(8));
    EXPECT_EQ(savedBytes(tag, 0xA5), Bytes().u32(1).u32(8));
}

TEST(BinaryDataTag, CopiesTakeTheIdAndAreDeepAndFree)
{
    ZUL zul;
    ZUL_binary_data tag(&zul, 0x8150015);
    loadFrom(tag, strangeBytes());
    ZUL_binary_data copy(tag);
    ZUL_binary_data copyOfPointer(&std::as_const(tag));
    loadFrom(tag, Bytes().u32(1).u32(8));
    for (ZUL_binary_data* const each : {&copy, &copyOfPointer}) {
        EXPECT_EQ(each->getTagId(), 0x8150015U);
        EXPECT_EQ(each->getParent(), nullptr);
        EXPECT_EQ(savedBytes(*each), strangeBytes());
    }
}

TEST(BinaryDataTag, AssignmentTakesTheBytesButNeitherIdNorContainer)
{
    ZUL zul;
    ZUL_binary_data source(noContainer, 1);
    loadFrom(source, strangeBytes());
    ZUL_binary_data target(&zul, 2);
    target = source;
    EXPECT_EQ(target.getTagId(), 2U);
    EXPECT_EQ(target.getParent(), &zul);
    EXPECT_EQ(target.getLength(), 24U);
    EXPECT_EQ(savedBytes(target), strangeBytes());
}

TEST(BinaryDataTag, AssignmentFromOneWithoutBytesDropsTheBytesAndKeepsTheLength)
{
    ZUL_binary_data target(noContainer, 2);
    loadFrom(target, strangeBytes());
    target = ZUL_binary_data(noContainer, 1);
    EXPECT_EQ(target.getLength(), 24U);
    EXPECT_EQ(target.getSaveLength(), 24U);
    EXPECT_EQ(savedBytes(target, 0xA5), Bytes().fill(0xA5, 24)) << "there is nothing to write";
    ZUL_binary_data const copy(target);
    EXPECT_EQ(copy.getLength(), 0U) << "a copy starts without bytes";
}

TEST(BinaryDataTag, SelfAssignmentChangesNothing)
{
    ZUL_binary_data tag(noContainer, 0x8150015);
    loadFrom(tag, strangeBytes());
    auto const& alias = tag;
    tag = alias;
    EXPECT_EQ(savedBytes(tag), strangeBytes());
}

TEST(BinaryDataTag, HasNoOrder)
{
    ZUL_binary_data const tag(noContainer, 1);
    EXPECT_THROW(static_cast<void>(tag < static_cast<ZUL_tag const&>(tag)), std::runtime_error);
}

} // namespace
