#include "ZUL_fixed_fpga_info.h"
#include "bytes.h"
#include "coverage.h"
#include "loading.h"
#include "zul_class.h"

#include <gtest/gtest.h>

namespace {

constexpr ZUL* noContainer = nullptr;

Bytes infoBytes(unsigned reserved = 0)
{
    return Bytes().u32(0x8150084).u32(12).u8(1).u8(2).u8(3).u8(reserved);
}

void expectInfo(ZUL_fixed_fpga_info const& tag, unsigned index, unsigned version, unsigned revision)
{
    EXPECT_EQ(tag.getIndex(), index);
    EXPECT_EQ(tag.getVersion(), version);
    EXPECT_EQ(tag.getRevision(), revision);
}

TEST(FixedFpgaInfoTag, ConstructorTakesIndexVersionRevision)
{
    ZUL zul;
    ZUL_fixed_fpga_info const tag(&zul, 1, 2, 255);
    EXPECT_EQ(tag.getTagId(), 0x8150084U);
    EXPECT_EQ(ZUL_fixed_fpga_info::tag_id, 0x8150084U);
    EXPECT_EQ(tag.getParent(), &zul);
    expectInfo(tag, 1, 2, 255);
}

TEST(FixedFpgaInfoTag, SavesEveryByte)
{
    ZUL_fixed_fpga_info tag(noContainer, 1, 2, 3);
    EXPECT_EQ(savedBytes(tag, 0xA5), infoBytes());
}

TEST(FixedFpgaInfoTag, LoadsItsFields)
{
    ZUL_fixed_fpga_info tag(noContainer, 0, 0, 0);
    EXPECT_EQ(loadFrom(tag, infoBytes()), 12U);
    expectInfo(tag, 1, 2, 3);
}

TEST(FixedFpgaInfoTag, ReservedByteMustBeZero)
{
    for (unsigned const reserved : {1U, 0x80U, 0xFFU}) {
        ZUL_fixed_fpga_info tag(noContainer, 0, 0, 0);
        EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(tag, infoBytes(reserved), 0x8150084));
        expectInfo(tag, 1, 2, 3); // stored before the byte is looked at
    }
}

TEST(FixedFpgaInfoTag, WrongLengthIsFoundBeforeTheReservedByte)
{
    ZUL_fixed_fpga_info tag(noContainer, 7, 8, 9);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, infoBytes(1).setU32(4, 13).u8(0), 0x8150084));
    expectInfo(tag, 7, 8, 9);
}

TEST(FixedFpgaInfoTag, Setters)
{
    ZUL_fixed_fpga_info tag(noContainer, 1, 2, 3);
    tag.setVersion(4, 5);
    expectInfo(tag, 1, 4, 5);
    tag.setIndex(6);
    expectInfo(tag, 6, 4, 5);
}

TEST(FixedFpgaInfoTag, EveryOtherLengthIsRefused)
{
    expectFixedLength([] { return ZUL_fixed_fpga_info(noContainer, 0, 0, 0); }, infoBytes(), 0x8150084);
}

TEST(FixedFpgaInfoTag, CopiesAreFreeAndAssignmentKeepsTheContainer)
{
    ZUL zul;
    ZUL_fixed_fpga_info tag(&zul, 1, 2, 3);
    ZUL_fixed_fpga_info const copy(tag);
    expectInfo(copy, 1, 2, 3);
    EXPECT_EQ(copy.getParent(), nullptr);
    ZUL_fixed_fpga_info const copyOfPointer(&copy);
    expectInfo(copyOfPointer, 1, 2, 3);
    EXPECT_EQ(copyOfPointer.getParent(), nullptr);
    tag = ZUL_fixed_fpga_info(noContainer, 4, 5, 6);
    expectInfo(tag, 4, 5, 6);
    EXPECT_EQ(tag.getParent(), &zul);
    auto const& alias = tag;
    tag = alias;
    expectInfo(tag, 4, 5, 6);
}

TEST(FixedFpgaInfoTag, VisitShowsEveryByteOnceAndTheReservedByte)
{
    ZUL_fixed_fpga_info tag(noContainer, 0, 0, 0);
    Bytes const bytes = infoBytes();
    VisitRecord const record = visited(tag, bytes);
    EXPECT_TRUE(coversOnce(record, 12));
    EXPECT_TRUE(record.problems.empty());
    EXPECT_STREQ(record.at(8).name, "index");
    EXPECT_STREQ(record.at(9).name, "version");
    EXPECT_STREQ(record.at(10).name, "revision");
    EXPECT_EQ(record.at(11).kind, FieldKind::MustBeZero);
    Bytes const broken = infoBytes(9);
    VisitRecord const damaged = visited(tag, broken);
    ASSERT_EQ(damaged.problems.size(), 1U);
    EXPECT_EQ(damaged.problems[0].kind, TagProblem::Kind::Malformed);
    EXPECT_EQ(damaged.problems[0].offset, 11U);
    EXPECT_EQ(damaged.problems[0].expected, "0");
    EXPECT_EQ(damaged.problems[0].found, "9");
    expectCutsAreShown([] { return ZUL_fixed_fpga_info(noContainer, 0, 0, 0); }, bytes, 12);
}

} // namespace
