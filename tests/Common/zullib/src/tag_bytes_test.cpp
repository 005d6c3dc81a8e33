#include "tag_bytes.h"

#include "bytes.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

Bytes contents(TagBytes const& block)
{
    return Bytes().chars({reinterpret_cast<char const*>(block.data()), block.size()});
}

} // namespace

TEST(TagBytes, BeginsWithoutBlock)
{
    TagBytes const block;
    EXPECT_EQ(block.data(), nullptr);
    EXPECT_EQ(block.size(), 0U);
    EXPECT_TRUE(block.span().empty());
}

TEST(TagBytes, BorrowsWithoutCopying)
{
    Bytes const bytes = Bytes().chars("bitstream");
    TagBytes block;
    block.borrow(bytes.data(), bytes.size());
    EXPECT_EQ(block.data(), bytes.data());
    EXPECT_EQ(block.size(), 9U);
    EXPECT_EQ(block.span().data(), bytes.data());
    EXPECT_EQ(block.span().size(), 9U);
}

TEST(TagBytes, OwnsACopy)
{
    Bytes bytes = Bytes().chars("bitstream");
    TagBytes block;
    block.copyFrom(bytes.data(), bytes.size());
    EXPECT_NE(block.data(), bytes.data());
    bytes.setU8(0, 'X');
    EXPECT_EQ(contents(block), Bytes().chars("bitstream"));
}

TEST(TagBytes, CopyOfNothing)
{
    TagBytes block;
    block.copyFrom("text", 4);
    block.copyFrom(nullptr, 4);
    EXPECT_EQ(block.data(), nullptr);
    EXPECT_EQ(block.size(), 0U);
    block.copyFrom("text", 0);
    EXPECT_NE(block.data(), nullptr) << "a block of no bytes is a block";
    EXPECT_EQ(block.size(), 0U);
}

TEST(TagBytes, MayCopyPartOfItself)
{
    TagBytes block;
    block.copyFrom("left.right", 10);
    block.copyFrom(block.data() + 5, 5);
    EXPECT_EQ(contents(block), Bytes().chars("right"));
}

TEST(TagBytes, BorrowingAndClearingReleaseWhatWasOwned)
{
    Bytes const bytes = Bytes().chars("lent");
    TagBytes block;
    block.copyFrom("owned", 5);
    block.borrow(bytes.data(), bytes.size());
    EXPECT_EQ(block.data(), bytes.data());
    block.copyFrom("owned", 5);
    block.clear();
    EXPECT_EQ(block.data(), nullptr);
    EXPECT_EQ(block.size(), 0U);
}

TEST(TagBytes, CopiesAlwaysOwn)
{
    Bytes bytes = Bytes().chars("lent");
    TagBytes borrowing;
    borrowing.borrow(bytes.data(), bytes.size());
    TagBytes const copy(borrowing);
    TagBytes assigned;
    assigned.copyFrom("before", 6);
    assigned = borrowing;
    bytes.setU8(0, 'b');
    EXPECT_EQ(contents(borrowing), Bytes().chars("bent"));
    EXPECT_EQ(contents(copy), Bytes().chars("lent"));
    EXPECT_EQ(contents(assigned), Bytes().chars("lent"));
}

TEST(TagBytes, CopyOfNoBlockHasNone)
{
    TagBytes const none;
    TagBytes assigned;
    assigned.copyFrom("before", 6);
    assigned = none;
    EXPECT_EQ(assigned.data(), nullptr);
    EXPECT_EQ(TagBytes(none).data(), nullptr);
}

TEST(TagBytes, AssigningItselfKeepsTheBlock)
{
    Bytes const bytes = Bytes().chars("lent");
    TagBytes block;
    block.borrow(bytes.data(), bytes.size());
    block = std::as_const(block);
    EXPECT_EQ(block.data(), bytes.data()) << "still borrowed";
    block.copyFrom("owned", 5);
    block = std::as_const(block);
    EXPECT_EQ(contents(block), Bytes().chars("owned"));
}

TEST(TagBytes, MovesItsBlock)
{
    TagBytes source;
    source.copyFrom("owned", 5);
    std::byte const* const data = source.data();
    TagBytes moved(std::move(source));
    EXPECT_EQ(moved.data(), data);
    TagBytes assigned;
    assigned.copyFrom("before", 6);
    assigned = std::move(moved);
    EXPECT_EQ(assigned.data(), data);
    EXPECT_EQ(contents(assigned), Bytes().chars("owned"));
}
