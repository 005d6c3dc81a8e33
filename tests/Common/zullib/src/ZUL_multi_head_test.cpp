#include "ZUL_multi_head.h"
#include "bytes.h"
#include "container_bytes.h"
#include "coverage.h"
#include "loading.h"
#include "zul_class.h"

#include <gtest/gtest.h>

namespace {

constexpr ZUL* noContainer = nullptr;

ZUL_multi_head emptyHead()
{
    return {noContainer, 0, 0};
}

void expectHead(ZUL_multi_head const& head, unsigned tags, unsigned configs, unsigned dest)
{
    EXPECT_EQ(head.getTagCount(), tags);
    EXPECT_EQ(head.getConfigCount(), configs);
    EXPECT_EQ(head.getDest(), dest);
    EXPECT_EQ(head.getVersion(), 1U);
}

TEST(MultiHeadTag, NewOneHasVersionOneAndDestinationZero)
{
    ZUL zul;
    ZUL_multi_head head(&zul, 3, 2);
    EXPECT_EQ(head.getTagId(), 0x4B4F564DU);
    EXPECT_EQ(ZUL_multi_head::tag_id, 0x4B4F564DU);
    EXPECT_EQ(head.getParent(), &zul);
    expectHead(head, 3, 2, 0);
    EXPECT_EQ(head.getSaveLength(), 24U);
}

TEST(MultiHeadTag, SavesEveryByte)
{
    ZUL_multi_head head(noContainer, 0x01020304, 0x05060708);
    head.setDest(0x090A0B0C);
    Bytes const saved = savedBytes(head, 0xA5);
    EXPECT_EQ(saved, headBytes(0x01020304, 0x05060708, 1, 0x090A0B0C));
    EXPECT_EQ(saved, Bytes().chars("MVOK").u32(24).u32(0x01020304).u32(0x05060708).u32(1).u32(0x090A0B0C));
}

TEST(MultiHeadTag, LoadsItsFieldsAndKeepsAnyDestination)
{
    for (std::uint32_t const dest : {0U, 1U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        ZUL_multi_head head = emptyHead();
        EXPECT_EQ(loadFrom(head, headBytes(0xFFFFFFFF, 0xFFFFFFFE, 1, dest)), 24U);
        expectHead(head, 0xFFFFFFFF, 0xFFFFFFFE, dest);
        EXPECT_EQ(savedBytes(head, 0xA5), headBytes(0xFFFFFFFF, 0xFFFFFFFE, 1, dest));
    }
}

TEST(MultiHeadTag, EveryOtherVersionIsRefusedAndChangesNothing)
{
    for (std::uint32_t const version : {0U, 2U, 256U, 0xFFFFFFFFU}) {
        ZUL_multi_head head(noContainer, 7, 8);
        head.setDest(9);
        EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(head, headBytes(1, 2, version, 3), 0x4B4F564D))
            << version;
        expectHead(head, 7, 8, 9);
    }
}

TEST(MultiHeadTag, EveryOtherLengthIsRefused)
{
    expectFixedLength(emptyHead, headBytes(1, 2, 1, 3), 0x4B4F564D);
}

TEST(MultiHeadTag, WrongLengthIsFoundBeforeTheVersionAndChangesNothing)
{
    ZUL_multi_head head(noContainer, 7, 8);
    EXPECT_TRUE(
        loadThrows<ZUL_file_bad_tag_length>(head, headBytes(1, 2, 2, 3).setU32(4, 25).u8(0), 0x4B4F564D));
    expectHead(head, 7, 8, 0);
}

TEST(MultiHeadTag, SettersChangeTheirFieldOnly)
{
    ZUL_multi_head head(noContainer, 1, 2);
    head.setTags(3);
    expectHead(head, 3, 2, 0);
    head.setConfigs(4);
    expectHead(head, 3, 4, 0);
    head.setDest(5);
    expectHead(head, 3, 4, 5);
}

TEST(MultiHeadTag, CopiesAreFreeAndAssignmentKeepsTheContainer)
{
    ZUL zul;
    ZUL_multi_head head(&zul, 1, 2);
    head.setDest(3);
    ZUL_multi_head const copy(head);
    expectHead(copy, 1, 2, 3);
    EXPECT_EQ(copy.getParent(), nullptr);
    ZUL_multi_head const copyOfPointer(&copy);
    expectHead(copyOfPointer, 1, 2, 3);
    EXPECT_EQ(copyOfPointer.getParent(), nullptr);
    head = emptyHead();
    expectHead(head, 0, 0, 0);
    EXPECT_EQ(head.getParent(), &zul);
    head = copy;
    auto const& alias = head;
    head = alias;
    expectHead(head, 1, 2, 3);
}

TEST(MultiHeadTag, VersionIsNotCopied)
{
    ZUL_multi_head shown = emptyHead();
    Bytes const other = headBytes(1, 2, 7, 3);
    visited(shown, other); // the one way to an object with another version
    ASSERT_EQ(shown.getVersion(), 7U);
    expectHead(ZUL_multi_head(shown), 1, 2, 3);
    expectHead(ZUL_multi_head(&std::as_const(shown)), 1, 2, 3);
    ZUL_multi_head target = emptyHead();
    target = shown;
    expectHead(target, 1, 2, 3);
    shown = emptyHead();
    EXPECT_EQ(shown.getVersion(), 7U);
}

TEST(MultiHeadTag, VisitShowsEveryByteOnceAndTheVersion)
{
    ZUL_multi_head head = emptyHead();
    Bytes const bytes = headBytes(3, 2, 1, 4);
    VisitRecord const record = visited(head, bytes);
    EXPECT_TRUE(coversOnce(record, 24));
    EXPECT_TRUE(record.problems.empty());
    EXPECT_STREQ(record.at(8).name, "tag count");
    EXPECT_EQ(record.at(8).number(), 3U);
    EXPECT_STREQ(record.at(12).name, "config count");
    EXPECT_STREQ(record.at(16).name, "version");
    EXPECT_STREQ(record.at(20).name, "destination");
    Bytes const broken = headBytes(3, 2, 9, 4);
    VisitRecord const damaged = visited(head, broken);
    ASSERT_EQ(damaged.problems.size(), 1U);
    EXPECT_EQ(damaged.problems[0].offset, 16U);
    EXPECT_EQ(damaged.problems[0].expected, "1");
    EXPECT_EQ(damaged.problems[0].found, "9");
    expectCutsAreShown(emptyHead, bytes, 24);
}

} // namespace
