#include "tag_text.h"

#include "tag_blocks.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

TEST(TagText, BeginsWithoutText)
{
    TagText const text;
    EXPECT_EQ(text.get(), nullptr);
    EXPECT_FALSE(text);
    EXPECT_TRUE(text.empty());
    EXPECT_EQ(text.length(), 0U);
    EXPECT_EQ(text.view(), "");
}

TEST(TagText, KeepsItsOwnCopy)
{
    std::string source = "control";
    TagText text;
    text.set(source.c_str());
    source[0] = 'X';
    EXPECT_STREQ(text.get(), "control");
    EXPECT_TRUE(text);
    EXPECT_FALSE(text.empty());
    EXPECT_EQ(text.length(), 7U);
    EXPECT_EQ(text.view(), "control");
}

TEST(TagText, NullOrEmptyTextLeavesNone)
{
    TagText text;
    text.set("text");
    text.set(nullptr);
    EXPECT_EQ(text.get(), nullptr);
    text.set("text");
    text.set("");
    EXPECT_EQ(text.get(), nullptr);
}

TEST(TagText, WidthCutsTheText)
{
    TagText text;
    text.set("control", 4);
    EXPECT_STREQ(text.get(), "cont");
    text.set("control", 7);
    EXPECT_STREQ(text.get(), "control");
    char const unterminated[] = {'a', 'b', 'c'};
    text.set(unterminated, 3);
    EXPECT_STREQ(text.get(), "abc");
}

TEST(TagText, WidthOfAFieldThatBeginsWithNulLeavesTheEmptyText)
{
    TagText text;
    text.set("", 64);
    ASSERT_NE(text.get(), nullptr);
    EXPECT_STREQ(text.get(), "");
    EXPECT_TRUE(text) << "there is a text,";
    EXPECT_TRUE(text.empty()) << "and it is empty";
    text.set("\0rest", 5);
    EXPECT_STREQ(text.get(), "");
}

TEST(TagText, WidthOfZeroOrNullLeavesNone)
{
    TagText text;
    text.set("text");
    text.set("text", 0);
    EXPECT_EQ(text.get(), nullptr);
    text.set("text");
    text.set(nullptr, 64);
    EXPECT_EQ(text.get(), nullptr);
}

TEST(TagText, EndsAtTheFirstNul)
{
    TagText text;
    text.set("one\0two", 7);
    EXPECT_STREQ(text.get(), "one");
    EXPECT_EQ(text.length(), 3U);
}

TEST(TagText, HugeWidthCostsNoMoreThanTheText)
{
    TagText text;
    text.set("short", SIZE_MAX);
    EXPECT_STREQ(text.get(), "short");
}

TEST(TagText, MayBeSetFromPartOfItself)
{
    TagText text;
    text.set("left.right");
    text.set(text.get() + 5);
    EXPECT_STREQ(text.get(), "right");
    text.set(text.get(), 3);
    EXPECT_STREQ(text.get(), "rig");
}

TEST(TagText, CopiesAreDeep)
{
    TagText source;
    source.set("control");
    TagText const copy(source);
    TagText assigned;
    assigned.set("before");
    assigned = source;
    EXPECT_NE(copy.get(), source.get());
    EXPECT_NE(assigned.get(), source.get());
    source.set("changed");
    EXPECT_STREQ(copy.get(), "control");
    EXPECT_STREQ(assigned.get(), "control");
}

TEST(TagText, CopiesKeepNoTextAndTheEmptyTextApart)
{
    TagText none;
    TagText empty;
    empty.set("", 1);
    EXPECT_EQ(TagText(none).get(), nullptr);
    ASSERT_NE(TagText(empty).get(), nullptr);
    EXPECT_STREQ(TagText(empty).get(), "");
    TagText assigned;
    assigned.set("before");
    assigned = none;
    EXPECT_EQ(assigned.get(), nullptr);
    assigned = empty;
    ASSERT_NE(assigned.get(), nullptr);
    EXPECT_STREQ(assigned.get(), "");
}

TEST(TagText, AssigningItselfKeepsTheText)
{
    TagText text;
    text.set("control");
    text = std::as_const(text);
    EXPECT_STREQ(text.get(), "control");
}

TEST(TagText, MovesItsText)
{
    std::string const chars(500, 'c');
    TagText source;
    source.set(chars.c_str());
    TagText moved(std::move(source));
    EXPECT_EQ(moved.view(), chars);
    TagText assigned;
    assigned = std::move(moved);
    EXPECT_EQ(assigned.view(), chars);
}

TEST(TagText, LiesInTheBlocksThatItIsGivenUntilItChanges)
{
    TagBlocks blocks;
    TagText text;
    text.set("a text in blocks, and more", 16, &blocks);
    EXPECT_STREQ(text.get(), "a text in blocks");
    text.set(text.get() + 2);
    EXPECT_STREQ(text.get(), "text in blocks");
    text.set("once more", 64, &blocks);
    EXPECT_STREQ(text.get(), "once more");
    text.set("", 64, &blocks);
    ASSERT_NE(text.get(), nullptr);
    EXPECT_STREQ(text.get(), "");
    text.set("none", 0, &blocks);
    EXPECT_EQ(text.get(), nullptr);
}

TEST(TagText, CopiesOfATextInBlocksOutliveThem)
{
    TagText copy;
    TagText assigned;
    {
        TagBlocks blocks;
        TagText text;
        text.set("control", 64, &blocks);
        copy = TagText(std::as_const(text));
        assigned = std::as_const(text);
    }
    EXPECT_STREQ(copy.get(), "control");
    EXPECT_STREQ(assigned.get(), "control");
}

TEST(TagText, TerminatorIsCountedOnRequest)
{
    TagText text;
    EXPECT_EQ(text.sizeWithTerminator(), 0U);
    text.set("", 1);
    EXPECT_EQ(text.sizeWithTerminator(), 1U);
    text.set("abc");
    EXPECT_EQ(text.sizeWithTerminator(), 4U);
}
