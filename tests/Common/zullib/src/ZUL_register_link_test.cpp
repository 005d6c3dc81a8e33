#include "ZUL_register_link.h"

#include "bytes.h"
#include "coverage.h"
#include "loading.h"
#include "zul_class.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

constexpr std::uint32_t linkId = 0x08151001;

ZUL* const noContainer = nullptr;

Bytes linkBytes()
{
    return Bytes()
        .u32(0x08151001)
        .u32(204)
        .u8(1) // writable
        .u8(2) // access
        .text("dma_ctrl", 64)
        .text("control", 128)
        .zeros(2);
}

ZUL_register_link emptyLink()
{
    return {noContainer, nullptr, nullptr};
}

ZUL_register_link loaded(Bytes const& bytes)
{
    ZUL_register_link link = emptyLink();
    EXPECT_EQ(loadFrom(link, bytes), 204U);
    return link;
}

} // namespace

TEST(RegisterLinkTag, BeginsWritableWithTheFirstAccess)
{
    ZUL_register_link link(noContainer, "control", "dma_ctrl");
    EXPECT_STREQ(link.getAlias(), "control");
    EXPECT_STREQ(link.getTarget(), "dma_ctrl");
    EXPECT_FALSE(link.isReadOnly());
    EXPECT_EQ(link.getType(), ZUL_register::access1);
    EXPECT_EQ(link.getTagId(), linkId);
    EXPECT_EQ(link.getSaveLength(), 204U);
}

TEST(RegisterLinkTag, LoadsEveryField)
{
    ZUL_register_link const link = loaded(linkBytes());
    EXPECT_STREQ(link.getAlias(), "control");
    EXPECT_STREQ(link.getTarget(), "dma_ctrl");
    EXPECT_FALSE(link.isReadOnly());
    EXPECT_EQ(link.getType(), ZUL_register::access2);
}

TEST(RegisterLinkTag, SavesEveryByteButTheReservedOnes)
{
    ZUL_register_link link(noContainer, "control", "dma_ctrl");
    link.setType(false, ZUL_register::access2);
    EXPECT_EQ(savedBytes(link, 0xA5), linkBytes().cut(202).fill(0xA5, 2));
    EXPECT_EQ(savedBytes(link, 0x00), linkBytes());
}

TEST(RegisterLinkTag, IsAlways204BytesLong)
{
    expectFixedLength(emptyLink, linkBytes(), linkId);
}

TEST(RegisterLinkTag, KnowsWritableAndReadOnlyOnly)
{
    EXPECT_TRUE(loaded(linkBytes().setU8(8, 0)).isReadOnly());
    EXPECT_FALSE(loaded(linkBytes().setU8(8, 1)).isReadOnly());
    for (unsigned const writable : {2U, 128U, 255U}) {
        ZUL_register_link link = emptyLink();
        EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(link, linkBytes().setU8(8, writable), linkId))
            << writable;
    }
}

TEST(RegisterLinkTag, KnowsTwoAccessValues)
{
    EXPECT_EQ(loaded(linkBytes().setU8(9, 1)).getType(), ZUL_register::access1);
    for (unsigned const access : {0U, 3U, 255U}) {
        ZUL_register_link link = emptyLink();
        EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(link, linkBytes().setU8(9, access), linkId)) << access;
    }
}

TEST(RegisterLinkTag, LengthIsCheckedBeforeValues)
{
    ZUL_register_link link = emptyLink();
    EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(link, linkBytes().setU32(4, 205).setU8(8, 2), linkId));
}

TEST(RegisterLinkTag, RefusedLoadLeavesTheNames)
{
    ZUL_register_link link(noContainer, "alias", "target");
    ASSERT_TRUE(loadThrows<ZUL_file_malformed_tag>(link, linkBytes().setU8(9, 0), linkId));
    EXPECT_STREQ(link.getAlias(), "alias");
    EXPECT_STREQ(link.getTarget(), "target");
}

TEST(RegisterLinkTag, NamesFillTheirFields)
{
    std::string const alias(128, 'a');
    std::string const target(64, 't');
    ZUL_register_link link(noContainer, alias.c_str(), target.c_str());
    Bytes const expected = Bytes().u32(linkId).u32(204).u8(1).u8(1).chars(target).chars(alias).fill(0xA5, 2);
    EXPECT_EQ(savedBytes(link, 0xA5), expected);
    EXPECT_EQ(loaded(expected).getAlias(), alias);
    EXPECT_EQ(loaded(expected).getTarget(), target);
}

TEST(RegisterLinkTag, LongerNamesAreCutWhenSet)
{
    ZUL_register_link link(noContainer, std::string(129, 'a').c_str(), std::string(65, 't').c_str());
    EXPECT_EQ(link.getAlias(), std::string(128, 'a'));
    EXPECT_EQ(link.getTarget(), std::string(64, 't'));
    link.setAlias(std::string(4000, 'b').c_str());
    link.setTarget(std::string(4000, 'u').c_str());
    EXPECT_EQ(link.getAlias(), std::string(128, 'b'));
    EXPECT_EQ(link.getTarget(), std::string(64, 'u'));
}

TEST(RegisterLinkTag, TargetMayBeGivenByItsRegister)
{
    ZUL_register_link link = emptyLink();
    ZUL_register const reg(noContainer, std::string(65, 'r').c_str(), false);
    link.setTarget(&reg);
    EXPECT_EQ(link.getTarget(), std::string(64, 'r'));
    ZUL_register const nameless(noContainer, nullptr, false);
    link.setTarget(&nameless);
    EXPECT_EQ(link.getTarget(), nullptr);
    link.setTarget("again");
    link.setTarget(static_cast<ZUL_register const*>(nullptr));
    EXPECT_EQ(link.getTarget(), nullptr);
}

TEST(RegisterLinkTag, WithoutNamesSavesAndLoadsNone)
{
    ZUL_register_link link = emptyLink();
    EXPECT_EQ(link.getAlias(), nullptr);
    EXPECT_EQ(link.getTarget(), nullptr);
    Bytes const expected = Bytes().u32(linkId).u32(204).u8(1).u8(1).zeros(192).fill(0xA5, 2);
    EXPECT_EQ(savedBytes(link, 0xA5), expected);
    ZUL_register_link read(noContainer, "before", "before");
    loadFrom(read, expected);
    EXPECT_EQ(read.getAlias(), nullptr);
    EXPECT_EQ(read.getTarget(), nullptr);
}

TEST(RegisterLinkTag, NullAndEmptyNamesAreNone)
{
    ZUL_register_link link(noContainer, "", "");
    EXPECT_EQ(link.getAlias(), nullptr);
    EXPECT_EQ(link.getTarget(), nullptr);
    link.setAlias("a");
    link.setTarget("t");
    link.setAlias("");
    link.setTarget("");
    EXPECT_EQ(link.getAlias(), nullptr);
    EXPECT_EQ(link.getTarget(), nullptr);
    link.setAlias("a");
    link.setTarget("t");
    link.setAlias(nullptr);
    link.setTarget(static_cast<char const*>(nullptr));
    EXPECT_EQ(link.getAlias(), nullptr);
    EXPECT_EQ(link.getTarget(), nullptr);
}

TEST(RegisterLinkTag, NamesEndAtTheirFirstNul)
{
    ZUL_register_link link = loaded(linkBytes().setU8(10 + 3, 0).setU8(74 + 4, 0));
    EXPECT_STREQ(link.getTarget(), "dma");
    EXPECT_STREQ(link.getAlias(), "cont");
    EXPECT_EQ(savedBytes(link),
              Bytes().u32(linkId).u32(204).u8(1).u8(2).text("dma", 64).text("cont", 128).zeros(2));
}

TEST(RegisterLinkTag, TypeIsStoredWithoutChecks)
{
    ZUL_register_link link = emptyLink();
    link.setType(true, static_cast<ZUL_register::access>(0x1FF));
    EXPECT_TRUE(link.isReadOnly());
    EXPECT_EQ(static_cast<unsigned>(link.getType()), 0x1FFU);
    EXPECT_EQ(savedBytes(link).cut(10), Bytes().u32(linkId).u32(204).u8(0).u8(0xFF));
    EXPECT_EQ(static_cast<unsigned>(link.getType()), 0x1FFU) << "saving changes nothing";
}

TEST(RegisterLinkTag, CopiesTakeEverythingButTheContainer)
{
    ZUL zul;
    ZUL_register_link source(&zul, "control", "dma_ctrl");
    source.setType(true, ZUL_register::access2);
    ZUL_register_link copy(source);
    ZUL_register_link fromPointer(&source);
    ZUL_register_link assigned = emptyLink();
    assigned = source;
    for (ZUL_register_link* const link : {&copy, &fromPointer, &assigned}) {
        EXPECT_EQ(savedBytes(*link), savedBytes(source));
        EXPECT_NE(link->getAlias(), source.getAlias()) << "the texts are its own";
        EXPECT_EQ(link->getParent(), nullptr);
    }
    ZUL_register_link const free = loaded(linkBytes());
    source = free;
    EXPECT_EQ(source.getParent(), &zul);
    EXPECT_EQ(savedBytes(source), linkBytes());
}

TEST(RegisterLinkTag, AssigningItselfChangesNothing)
{
    ZUL_register_link link = loaded(linkBytes());
    link = std::as_const(link);
    EXPECT_EQ(savedBytes(link), linkBytes());
}

TEST(RegisterLinkTag, ContainerFollowsItsNames)
{
    ZUL zul;
    auto* const first = new ZUL_register(&zul, "first", false);
    auto* const second = new ZUL_register(&zul, "second", false);
    auto* const link = new ZUL_register_link(&zul, "alias", "first");
    zul.AddTag(first);
    zul.AddTag(second);
    zul.AddTag(link);
    ASSERT_EQ(zul.findRegister("alias"), first);
    link->setTarget("second");
    EXPECT_EQ(zul.findRegister("alias"), second);
    link->setTarget(first);
    EXPECT_EQ(zul.findRegister("alias"), first);
    link->setAlias("other");
    EXPECT_EQ(zul.findRegister("alias"), nullptr);
    EXPECT_EQ(zul.findRegister("other"), first);
    *link = ZUL_register_link(noContainer, "third", "second");
    EXPECT_EQ(zul.findRegister("other"), nullptr);
    EXPECT_EQ(zul.findRegister("third"), second);
}

TEST(RegisterLinkTag, VisitCoversItOnceAndNamesEveryBrokenRule)
{
    ZUL_register_link link = emptyLink();
    VisitRecord const honest = visited(link, linkBytes());
    EXPECT_TRUE(coversOnce(honest, 204));
    EXPECT_TRUE(honest.problems.empty());
    EXPECT_EQ(honest.at(10).text(), "dma_ctrl");
    EXPECT_EQ(honest.at(74).text(), "control");
    EXPECT_EQ(honest.at(202).kind, FieldKind::Reserved);
    VisitRecord const damaged = visited(link, linkBytes().setU32(4, 203).setU8(8, 2).setU8(9, 0));
    ASSERT_EQ(damaged.problems.size(), 3U);
    EXPECT_EQ(damaged.problems[1].expected, "0 or 1");
    EXPECT_EQ(damaged.problems[2].expected, "1 or 2");
    expectCutsAreShown(emptyLink, linkBytes(), 204);
}
