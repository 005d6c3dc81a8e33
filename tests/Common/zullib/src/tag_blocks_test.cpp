#include "tag_blocks.h"

#include "ZUL_comment.h"
#include "ZUL_process.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

class CountedComment : public ZUL_comment {
public:
    CountedComment(ZUL* parent, int& ended) : ZUL_comment(parent), m_ended(ended) {}
    CountedComment(CountedComment const&) = delete;
    CountedComment& operator=(CountedComment const&) = delete;
    ~CountedComment() override { ++m_ended; }

private:
    int& m_ended;
};

TEST(TagBlocks, DeletingATagEndsItOnceAndLeavesItsMemory)
{
    TagBlocks blocks;
    int ended = 0;
    auto first = blocks.make<CountedComment>(nullptr, ended);
    auto const second = blocks.make<CountedComment>(nullptr, ended);
    first.reset();
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(second->getTagId(), ZUL_comment::tag_id);
}

TEST(TagBlocks, TagsAreAlignedBehindTextsOfAnyLength)
{
    TagBlocks blocks;
    for (std::size_t length = 0; length < 40; ++length) {
        blocks.copyText("0123456789012345678901234567890123456789", length);
        auto const tag = blocks.make<ZUL_process>(nullptr, 7U, "name");
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(tag.get()) % alignof(ZUL_process), 0U);
        EXPECT_EQ(tag->getId(), 7U);
    }
}

TEST(TagBlocks, TextsAreTerminatedCopiesThatStayWhereTheyAre)
{
    TagBlocks blocks;
    std::vector<char const*> texts;
    for (int i = 0; i < 20'000; ++i) {
        std::string const text = "text " + std::to_string(i) + "|";
        texts.push_back(blocks.copyText(text.data(), text.size() - 1));
    }
    for (int i = 0; i < 20'000; ++i) {
        ASSERT_EQ(texts[static_cast<std::size_t>(i)], "text " + std::to_string(i));
    }
}

TEST(TagBlocks, TextLargerThanABlockGetsItsOwn)
{
    TagBlocks blocks;
    std::string const huge(1'000'000, 'h');
    EXPECT_EQ(blocks.copyText("before", 6), std::string("before"));
    EXPECT_EQ(blocks.copyText(huge.data(), huge.size()), huge);
    EXPECT_EQ(blocks.copyText("after", 5), std::string("after"));
}

TEST(TagBlocks, TextThatFillsABlockToItsEndHasRoomForItsTerminator)
{
    for (std::size_t length = 1000; length < 1040; ++length) {
        TagBlocks blocks;
        std::string const text(length, 't');
        EXPECT_EQ(blocks.copyText(text.data(), text.size()), text);
    }
}

} // namespace
