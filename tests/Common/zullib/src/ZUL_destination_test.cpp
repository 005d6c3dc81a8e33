#include "ZUL_destination.h"
#include "bytes.h"
#include "coverage.h"
#include "loading.h"
#include "zul_class.h"

#include <gtest/gtest.h>

namespace {

constexpr ZUL* noContainer = nullptr;

Bytes destinationBytes()
{
    return Bytes().u32(0x8150099).u32(16).u16(0xA123).u16(0x0204).u8(7).zeros(3);
}

void expectDestination(ZUL_destination const& tag, unsigned index, unsigned board, unsigned revision)
{
    EXPECT_EQ(tag.getIndex(), index);
    EXPECT_EQ(tag.getBoard(), board);
    EXPECT_EQ(tag.getRevision(), revision);
}

TEST(DestinationTag, ConstructorTakesTheIndexFirst)
{
    ZUL zul;
    ZUL_destination const tag(&zul, 1, 2, 3);
    EXPECT_EQ(tag.getTagId(), 0x8150099U);
    EXPECT_EQ(ZUL_destination::tag_id, 0x8150099U);
    EXPECT_EQ(tag.getParent(), &zul);
    expectDestination(tag, 1, 2, 3);
}

TEST(DestinationTag, SavesEveryByte)
{
    ZUL_destination tag(noContainer, 7, 0xA123, 0x0204);
    EXPECT_EQ(savedBytes(tag, 0xA5), destinationBytes());
}

TEST(DestinationTag, LoadsItsFieldsAndIgnoresTheReservedBytes)
{
    ZUL_destination tag(noContainer, 0, 0, 0);
    EXPECT_EQ(loadFrom(tag, destinationBytes().setU8(13, 1).setU8(14, 2).setU8(15, 255)), 16U);
    expectDestination(tag, 7, 0xA123, 0x0204);
    EXPECT_EQ(savedBytes(tag, 0xA5), destinationBytes());
}

TEST(DestinationTag, SettersChangeTheirFieldOnly)
{
    ZUL_destination tag(noContainer, 1, 2, 3);
    tag.setBoard(0xFFFF);
    expectDestination(tag, 1, 0xFFFF, 3);
    tag.setRevision(0xFFFE);
    expectDestination(tag, 1, 0xFFFF, 0xFFFE);
    tag.setIndex(255);
    expectDestination(tag, 255, 0xFFFF, 0xFFFE);
    tag.setBoard(8, 9);
    expectDestination(tag, 255, 8, 9);
}

TEST(DestinationTag, EveryOtherLengthIsRefused)
{
    expectFixedLength([] { return ZUL_destination(noContainer, 0, 0, 0); }, destinationBytes(), 0x8150099);
}

TEST(DestinationTag, CopiesAreFreeAndAssignmentKeepsTheContainer)
{
    ZUL zul;
    ZUL_destination tag(&zul, 1, 2, 3);
    ZUL_destination const copy(tag);
    expectDestination(copy, 1, 2, 3);
    EXPECT_EQ(copy.getParent(), nullptr);
    ZUL_destination const copyOfPointer(&copy);
    expectDestination(copyOfPointer, 1, 2, 3);
    EXPECT_EQ(copyOfPointer.getParent(), nullptr);
    tag = ZUL_destination(noContainer, 4, 5, 6);
    expectDestination(tag, 4, 5, 6);
    EXPECT_EQ(tag.getParent(), &zul);
    auto const& alias = tag;
    tag = alias;
    expectDestination(tag, 4, 5, 6);
}

TEST(DestinationTag, ContainerFindsItByChangedValues)
{
    ZUL zul;
    auto* const tag = new ZUL_destination(&zul, 1, 2, 3);
    zul.AddTag(tag);
    ASSERT_EQ(zul.searchDestination(1, 2, 3), tag);
    tag->setIndex(4);
    EXPECT_EQ(zul.searchDestination(4, 2, 3), tag);
    EXPECT_EQ(zul.searchDestination(1, 2, 3), nullptr);
    tag->setBoard(5);
    EXPECT_EQ(zul.searchDestination(4, 5, 3), tag);
    tag->setRevision(6);
    EXPECT_EQ(zul.searchDestination(4, 5, 6), tag);
    tag->setBoard(7, 8);
    EXPECT_EQ(zul.searchDestination(4, 7, 8), tag);
    *tag = ZUL_destination(noContainer, 9, 10, 11);
    EXPECT_EQ(zul.searchDestination(9, 10, 11), tag);
    loadFrom(*tag, destinationBytes());
    EXPECT_EQ(zul.searchDestination(7, 0xA123, 0x0204), tag);
    EXPECT_EQ(zul.searchDestination(9, 10, 11), nullptr);
}

TEST(DestinationTag, VisitShowsEveryByteOnce)
{
    ZUL_destination tag(noContainer, 0, 0, 0);
    Bytes const bytes = destinationBytes();
    VisitRecord const record = visited(tag, bytes);
    EXPECT_TRUE(coversOnce(record, 16));
    EXPECT_TRUE(record.problems.empty());
    EXPECT_STREQ(record.at(8).name, "board");
    EXPECT_EQ(record.at(8).number(), 0xA123U);
    EXPECT_STREQ(record.at(10).name, "revision");
    EXPECT_STREQ(record.at(12).name, "index");
    EXPECT_EQ(record.at(13).kind, FieldKind::Zero);
    expectCutsAreShown([] { return ZUL_destination(noContainer, 0, 0, 0); }, bytes, 16);
}

} // namespace
