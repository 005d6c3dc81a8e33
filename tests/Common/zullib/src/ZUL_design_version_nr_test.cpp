#include "ZUL_design_version_nr.h"
#include "bytes.h"
#include "coverage.h"
#include "loading.h"
#include "zul_class.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

constexpr ZUL* noContainer = nullptr;

Bytes numberBytes()
{
    return Bytes().u32(0x8156001).u32(16).u16(0x0102).u16(0x0304).u8(5).zeros(3);
}

ZUL_design_version_nr number(unsigned short version, unsigned short revision, unsigned char index)
{
    ZUL_design_version_nr tag(noContainer);
    tag.setVersion(version, revision);
    tag.setIndex(index);
    return tag;
}

void expectNumber(ZUL_design_version_nr const& tag, unsigned version, unsigned revision, unsigned index)
{
    EXPECT_EQ(tag.getVersion(), version);
    EXPECT_EQ(tag.getRevision(), revision);
    EXPECT_EQ(tag.getIndex(), index);
}

TEST(DesignVersionNumberTag, NewOneIsZeroAndNotWorthSaving)
{
    ZUL_design_version_nr const tag(noContainer);
    EXPECT_EQ(tag.getTagId(), 0x8156001U);
    EXPECT_EQ(ZUL_design_version_nr::tag_id, 0x8156001U);
    expectNumber(tag, 0, 0, 0);
    EXPECT_FALSE(tag.needsSave());
}

TEST(DesignVersionNumberTag, SavesEveryByte)
{
    ZUL_design_version_nr tag = number(0x0102, 0x0304, 5);
    EXPECT_EQ(savedBytes(tag, 0xA5), numberBytes());
}

TEST(DesignVersionNumberTag, LoadsItsFieldsAndIgnoresTheReservedBytes)
{
    ZUL_design_version_nr tag(noContainer);
    EXPECT_EQ(loadFrom(tag, numberBytes().setU8(13, 1).setU8(14, 2).setU8(15, 255)), 16U);
    expectNumber(tag, 0x0102, 0x0304, 5);
    EXPECT_EQ(savedBytes(tag, 0xA5), numberBytes());
}

TEST(DesignVersionNumberTag, VersionZeroIsNotWrittenWhateverItsIndex)
{
    ZUL_design_version_nr tag = number(0, 0, 5);
    EXPECT_FALSE(tag.needsSave());
    EXPECT_EQ(tag.getSaveLength(), 0U);
    Bytes untouched = Bytes().fill(0xA5, 16);
    tag.Save(untouched.data());
    EXPECT_EQ(untouched, Bytes().fill(0xA5, 16));
}

TEST(DesignVersionNumberTag, VersionOrRevisionAloneIsWritten)
{
    ZUL_design_version_nr revision = number(0, 1, 5);
    EXPECT_TRUE(revision.needsSave());
    EXPECT_EQ(savedBytes(revision, 0xA5), Bytes().u32(0x8156001).u32(16).u16(0).u16(1).u8(5).zeros(3));
    ZUL_design_version_nr version = number(1, 0, 0);
    EXPECT_TRUE(version.needsSave());
    EXPECT_EQ(savedBytes(version, 0xA5), Bytes().u32(0x8156001).u32(16).u16(1).u16(0).u8(0).zeros(3));
}

TEST(DesignVersionNumberTag, VersionZeroLoads)
{
    ZUL_design_version_nr tag = number(9, 9, 9);
    EXPECT_EQ(loadFrom(tag, Bytes().u32(0x8156001).u32(16).u16(0).u16(0).u8(7).zeros(3)), 16U);
    expectNumber(tag, 0, 0, 7);
}

TEST(DesignVersionNumberTag, SettersChangeTheirFieldOnly)
{
    ZUL_design_version_nr tag = number(1, 2, 3);
    tag.setVersion(0xFFFF);
    expectNumber(tag, 0xFFFF, 2, 3);
    tag.setRevision(0xFFFE);
    expectNumber(tag, 0xFFFF, 0xFFFE, 3);
    tag.setIndex(255);
    expectNumber(tag, 0xFFFF, 0xFFFE, 255);
    tag.setVersion(7, 8);
    expectNumber(tag, 7, 8, 255);
}

TEST(DesignVersionNumberTag, EveryOtherLengthIsRefused)
{
    expectFixedLength([] { return ZUL_design_version_nr(noContainer); }, numberBytes(), 0x8156001);
}

TEST(DesignVersionNumberTag, CopiesAreFreeAndAssignmentKeepsTheContainer)
{
    ZUL zul;
    ZUL_design_version_nr tag(&zul);
    tag.setVersion(1, 2);
    tag.setIndex(3);
    ZUL_design_version_nr const copy(tag);
    expectNumber(copy, 1, 2, 3);
    EXPECT_EQ(copy.getParent(), nullptr);
    ZUL_design_version_nr const copyOfPointer(&copy);
    expectNumber(copyOfPointer, 1, 2, 3);
    EXPECT_EQ(copyOfPointer.getParent(), nullptr);
    tag = number(4, 5, 6);
    expectNumber(tag, 4, 5, 6);
    EXPECT_EQ(tag.getParent(), &zul);
    auto const& alias = tag;
    tag = alias;
    expectNumber(tag, 4, 5, 6);
}

/// The number with that index in the container, found by replacing it.
unsigned versionsWithIndex(ZUL& zul, unsigned char index)
{
    unsigned const before = zul.getTagCount(ZUL_design_version_nr::tag_id);
    ZUL_design_version_nr const probe = number(1, 1, index);
    zul.setDesignVersion(&probe);
    return zul.getTagCount(ZUL_design_version_nr::tag_id) == before ? 1 : 0;
}

TEST(DesignVersionNumberTag, ContainerFindsItByAChangedIndex)
{
    ZUL zul;
    ZUL_design_version_nr const first = number(1, 0, 1);
    zul.setDesignVersion(&first);
    ASSERT_EQ(zul.getTagCount(ZUL_design_version_nr::tag_id), 1U);
    auto* const filed = static_cast<ZUL_design_version_nr*>(zul.getTagAt(ZUL_design_version_nr::tag_id, 0));
    ASSERT_EQ(versionsWithIndex(zul, 1), 1U);
    filed->setIndex(2);
    EXPECT_EQ(versionsWithIndex(zul, 2), 1U);
    *filed = number(1, 0, 3);
    EXPECT_EQ(versionsWithIndex(zul, 3), 1U);
    EXPECT_EQ(versionsWithIndex(zul, 1), 0U) << "the old index is free again";
}

TEST(DesignVersionNumberTag, VisitShowsEveryByteOnceAlsoOfVersionZero)
{
    ZUL_design_version_nr tag(noContainer);
    Bytes const bytes = numberBytes();
    VisitRecord const record = visited(tag, bytes);
    EXPECT_TRUE(coversOnce(record, 16));
    EXPECT_TRUE(record.problems.empty());
    EXPECT_STREQ(record.at(8).name, "version");
    EXPECT_EQ(record.at(8).number(), 0x0102U);
    EXPECT_STREQ(record.at(10).name, "revision");
    EXPECT_STREQ(record.at(12).name, "index");
    EXPECT_EQ(record.at(13).kind, FieldKind::Zero);
    Bytes const zero = Bytes().u32(0x8156001).u32(16).zeros(8);
    EXPECT_TRUE(coversOnce(visited(tag, zero), 16));
    expectCutsAreShown([] { return ZUL_design_version_nr(noContainer); }, bytes, 16);
}

} // namespace
