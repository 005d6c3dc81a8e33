#include "container_bytes.h"
#include "sample_tags.h"
#include "tag_fields.h"
#include "walker.h"

#include <gtest/gtest.h>

namespace {

std::span<std::byte const> spanOf(Bytes const& bytes)
{
    return {bytes.data(), bytes.size()};
}

TEST(Walker, EveryTagInFileOrder)
{
    Bytes const bytes = ContainerBytes().tag(sample::author()).config(sample::config(0, "bits")).build();
    Walk const walk = walkContainer(spanOf(bytes));

    EXPECT_EQ(walk.end, WalkEnd::Complete);
    EXPECT_EQ(walk.endOffset, bytes.size());
    EXPECT_EQ(walk.head.size(), 24U);
    ASSERT_EQ(walk.tags.size(), 2U);
    EXPECT_EQ(walk.tags[0].index, 0U);
    EXPECT_EQ(walk.tags[0].offset, 24U);
    EXPECT_EQ(walk.tags[0].id, 0x8150070U);
    EXPECT_EQ(walk.tags[0].length, 72U);
    EXPECT_STREQ(walk.tags[0].kind->className, "ZUL_author");
    EXPECT_EQ(walk.tags[1].offset, 96U);
    EXPECT_EQ(walk.tags[1].bytes.size(), 92U);
    EXPECT_EQ(walk.tags[1].bytes.data(), bytes.data() + 96);
}

TEST(Walker, TooShortForAHead)
{
    Bytes const bytes = headBytes(0).cut(23);
    Walk const walk = walkContainer(spanOf(bytes));
    EXPECT_EQ(walk.end, WalkEnd::NoContainer);
    EXPECT_EQ(walk.head.size(), 23U);
    EXPECT_TRUE(walk.tags.empty());
    EXPECT_EQ(walkContainer({}).end, WalkEnd::NoContainer);
}

TEST(Walker, AnotherIdAtTheBeginning)
{
    Bytes const bytes = headBytes(0).setU8(0, 0);
    EXPECT_EQ(walkContainer(spanOf(bytes)).end, WalkEnd::NoContainer);
}

TEST(Walker, HeadWithWrongLengthIsWalkedOver)
{
    Bytes const bytes = ContainerBytes().tag(sample::author()).build().setU32(4, 99);
    EXPECT_EQ(walkContainer(spanOf(bytes)).tags.size(), 1U);
}

TEST(Walker, LastEightBytesBeginNoTag)
{
    Bytes const bytes = headBytes(0).u32(0x8150070).u32(8);
    Walk const walk = walkContainer(spanOf(bytes));
    EXPECT_TRUE(walk.tags.empty());
    EXPECT_EQ(walk.end, WalkEnd::Complete);
    EXPECT_EQ(walk.endOffset, 24U);

    Bytes const longer = headBytes(0).u32(0x8150070).u32(8).u8(0);
    EXPECT_EQ(walkContainer(spanOf(longer)).tags.size(), 1U);
    EXPECT_EQ(walkContainer(spanOf(longer)).endOffset, 32U);
}

TEST(Walker, UnknownTagTakesTheRest)
{
    Bytes const bytes = ContainerBytes().tag(sample::unknown(0x8150015, "abc")).tag(sample::author()).build();
    Walk const walk = walkContainer(spanOf(bytes));
    EXPECT_EQ(walk.end, WalkEnd::UnknownTag);
    ASSERT_EQ(walk.tags.size(), 1U);
    EXPECT_EQ(walk.tags[0].kind, nullptr);
    EXPECT_EQ(walk.tags[0].statedLength, 11U);
    EXPECT_EQ(walk.tags[0].length, 83U);
    EXPECT_EQ(walk.endOffset, bytes.size());
}

TEST(Walker, BadLengthTakesTheRest)
{
    for (std::uint32_t const length : {0U, 7U, 145U, 0xFFFFFFFFU}) {
        Bytes const bytes =
            ContainerBytes().tag(sample::author().setU32(4, length)).tag(sample::designName()).build();
        Walk const walk = walkContainer(spanOf(bytes));
        EXPECT_EQ(walk.end, WalkEnd::BadLength) << length;
        ASSERT_EQ(walk.tags.size(), 1U);
        EXPECT_EQ(walk.tags[0].length, 144U);
        EXPECT_EQ(walk.tags[0].statedLength, length);
    }
}

TEST(Walker, BadLengthOfUnknownTag)
{
    for (std::uint32_t const length : {7U, 12U}) {
        Bytes const bytes = ContainerBytes().tag(sample::unknown(0x8150015, "abc").setU32(4, length)).build();
        EXPECT_EQ(walkContainer(spanOf(bytes)).end, WalkEnd::BadLength) << length;
    }
}

TEST(Walker, LengthThatOnlyTheLayoutForbidsIsSteppedOver)
{
    Bytes const bytes =
        ContainerBytes().tag(sample::author().u8(0).setU32(4, 73)).tag(sample::designName()).build();
    Walk const walk = walkContainer(spanOf(bytes));
    EXPECT_EQ(walk.end, WalkEnd::Complete);
    EXPECT_EQ(walk.tags.size(), 2U);
}

std::string summaryIn(Bytes const& tag)
{
    Bytes const bytes = ContainerBytes().tag(tag).build();
    return summaryOf(walkContainer(spanOf(bytes)).tags.at(0));
}

TEST(TagSummary, OneLineForEveryKind)
{
    EXPECT_EQ(summaryIn(sample::comment("hi")), "comment 'hi'");
    EXPECT_EQ(summaryIn(sample::author("me")), "author 'me'");
    EXPECT_EQ(summaryIn(sample::designName("name")), "design name 'name'");
    EXPECT_EQ(summaryIn(sample::designVersion("1.0")), "design version '1.0'");
    EXPECT_EQ(summaryIn(sample::versionNumber(1, 2, 3)), "design version number 1: 2.3");
    EXPECT_EQ(summaryIn(sample::destination(1, 2624, 3)),
              "destination of configuration 1: board 2624, revision 3");
    EXPECT_EQ(summaryIn(sample::fpgaInfo()), "fixed FPGA info 1: version 2.3");
    EXPECT_EQ(summaryIn(sample::config(4, "bits", 0xFAD)), "configuration 4: FPGA type 0xfad, 4 bytes");
    EXPECT_EQ(summaryIn(sample::oldRegister("ctrl", 0x12C0)), "register 'ctrl' at 0x12c0");
    EXPECT_EQ(summaryIn(sample::newRegister("ctrl", 0x12C0)), "register 'ctrl' at 0x12c0");
    EXPECT_EQ(summaryIn(sample::registerLink("a", "b")), "register link 'a' to 'b'");
    EXPECT_EQ(summaryIn(sample::dmaCountRegister(1, 0x20)), "DMA count register of channel 1 at 0x20");
    EXPECT_EQ(summaryIn(sample::interruptVector()), "interrupt vector registers at 0x400, 0x404, 0x408");
    EXPECT_EQ(summaryIn(sample::dmaTagRegister()), "DMA tag register of channel 1 at 0x500");
    EXPECT_EQ(summaryIn(sample::localInterrupt()), "local interrupt register at 0x600");
    EXPECT_EQ(summaryIn(sample::readQueue()), "read queue 2 at 0x700");
    EXPECT_EQ(summaryIn(sample::writeQueue()), "write queue 3 at 0x800");
    EXPECT_EQ(summaryIn(sample::library("cam", "12345")), "library 'cam' for system 516, 5 bytes");
    EXPECT_EQ(summaryIn(sample::event("end", "ctrl")), "event 'end' of register 'ctrl'");
    EXPECT_EQ(summaryIn(sample::process(3, "acq")), "process 3 'acq'");
    EXPECT_EQ(summaryIn(sample::module(5, 3)), "module 5 '' of type 'Camera', process 3");
    EXPECT_EQ(summaryIn(sample::userInfo("a", "b")), "user info 'a' = 'b'");
    EXPECT_EQ(summaryIn(sample::userInfo("a", 7U)), "user info 'a' = '7'");
    EXPECT_EQ(summaryIn(sample::integerParam("width", 5)), "parameter 'width' of module 5, type 2");
    EXPECT_EQ(summaryIn(sample::channel("in", 5)), "channel 'in' of module 5");
    EXPECT_EQ(summaryIn(sample::dmaParam(0xFFFFFFFF, 5)), "DMA channel -1 of module 5");
    EXPECT_EQ(summaryIn(sample::cameraParam(2, 5)), "camera channel 2 of module 5");
    EXPECT_EQ(summaryIn(sample::paramLink(1, 2)), "parameter link from 'width' of module 1 to 'limit' of ''");
    EXPECT_EQ(summaryIn(sample::unknown(0x8150015, "abc")), "unknown tag 0x8150015, 11 bytes");
    EXPECT_EQ(summaryIn(headBytes(0)), "container head");
}

TEST(TagSummary, NoKindIsForgotten)
{
    for (TagKind const& kind : tagKinds()) {
        Bytes const bytes = Bytes().u32(kind.id).u32(8);
        WalkedTag const tag{0, 24, kind.id, 8, 8, &kind, spanOf(bytes)};
        EXPECT_EQ(summaryOf(tag).find("unknown"), std::string::npos) << kind.className;
    }
}

TEST(TagSummary, MissingBytesAreShownAsUnknown)
{
    EXPECT_EQ(summaryIn(sample::cameraParam(2, 5).cut(12)), "camera channel 2 of module ?");
    EXPECT_EQ(summaryIn(sample::process(3, "acq").cut(20)), "process 3 '?'");
}

TEST(TagFields, ByName)
{
    Bytes const bytes = ContainerBytes().tag(sample::newRegister("ctrl", 0x40)).build();
    TagFields const fields(walkContainer(spanOf(bytes)).tags.at(0));

    EXPECT_EQ(fields.number("address"), 0x40U);
    EXPECT_EQ(fields.text("name"), "ctrl");
    EXPECT_EQ(fields.find("name")->offset, 32U);
    EXPECT_EQ(fields.find("no such field"), nullptr);
    EXPECT_EQ(fields.number("no such field"), 0U);
    EXPECT_EQ(fields.text("no such field"), "");
    EXPECT_TRUE(fields.problems().empty());
}

TEST(TagFields, FieldsThatAreCutShortAreNotFound)
{
    Bytes const bytes = ContainerBytes().tag(sample::process(3, "acq").cut(20)).build();
    TagFields const fields(walkContainer(spanOf(bytes)).tags.at(0));

    EXPECT_EQ(fields.number("process id"), 3U);
    EXPECT_EQ(fields.find("name"), nullptr);
    EXPECT_EQ(fields.find("clock"), nullptr);
    EXPECT_FALSE(fields.problems().empty());
}

TEST(TagFields, SignedNumbersAreWords)
{
    Bytes const bytes = ContainerBytes().tag(sample::module(0xFFFFFFFF, 0)).build();
    EXPECT_EQ(TagFields(walkContainer(spanOf(bytes)).tags.at(0)).word("module index"), 0xFFFFFFFFU);
}

TEST(TagFields, UnknownTagHasNone)
{
    Bytes const bytes = ContainerBytes().tag(sample::unknown(0x8150015, "abc")).build();
    EXPECT_TRUE(TagFields(walkContainer(spanOf(bytes)).tags.at(0)).all().empty());
}

} // namespace
