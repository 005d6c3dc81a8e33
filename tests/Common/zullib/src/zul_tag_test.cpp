#include "zul_tag.h"

#include "virtual_slot.h"
#include "zul_class.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <typeinfo>

namespace {

/// The least that a tag has to provide.
class PlainTag : public ZUL_tag {
public:
    using ZUL_tag::ZUL_tag;
    unsigned long Load(void const*, unsigned long) override { return 8; }
    unsigned long getSaveLength() override { return 8; }
    void Save(void*) override {}
    std::uint32_t getTagId() const override { return 1; }
};

/// A tag with an order.
class OrderedTag : public PlainTag {
public:
    explicit OrderedTag(int rank) : m_rank(rank) {}

    using ZUL_tag::operator<;
    using ZUL_tag::operator==;
    bool operator<(ZUL_tag const& other) const override
    {
        return m_rank < dynamic_cast<OrderedTag const&>(other).m_rank;
    }
    bool operator==(ZUL_tag const& other) const override
    {
        auto const* const tag = dynamic_cast<OrderedTag const*>(&other);
        return tag != nullptr && m_rank == tag->m_rank;
    }

private:
    int m_rank;
};

/// All six comparisons as a word, e.g. "<  <= !=".
std::string comparisons(ZUL_tag const& left, ZUL_tag const& right)
{
    std::string word;
    word += left < right ? "< " : "";
    word += left > right ? "> " : "";
    word += left <= right ? "<= " : "";
    word += left >= right ? ">= " : "";
    word += left == right ? "== " : "";
    word += left != right ? "!= " : "";
    return word;
}

std::string comparisons(ZUL_tag const& left, ZUL_tag const* right)
{
    std::string word;
    word += left < right ? "< " : "";
    word += left > right ? "> " : "";
    word += left <= right ? "<= " : "";
    word += left >= right ? ">= " : "";
    word += left == right ? "== " : "";
    word += left != right ? "!= " : "";
    return word;
}

std::string refusal(std::function<bool()> const& compare)
{
    try {
        return compare() ? "true" : "false";
    } catch (std::runtime_error const& error) {
        return error.what();
    }
}

/// An owned text as tags of other authors keep it.
struct OwnedText {
    OwnedText() = default;
    OwnedText(OwnedText const&) = delete;
    OwnedText& operator=(OwnedText const&) = delete;
    ~OwnedText() { delete[] text; }
    char* text = nullptr;
};

} // namespace

TEST(Tag, KnowsItsContainer)
{
    ZUL zul;
    PlainTag free;
    EXPECT_EQ(free.getParent(), nullptr);
    PlainTag tag(&zul);
    EXPECT_EQ(tag.getParent(), &zul);
    tag.setParent(nullptr);
    EXPECT_EQ(tag.getParent(), nullptr);
    free.setParent(&zul);
    EXPECT_EQ(free.getParent(), &zul);
}

TEST(Tag, CopyIsFreeAndAssignmentKeepsTheContainer)
{
    ZUL zul;
    ZUL other;
    PlainTag const source(&zul);
    PlainTag const copy(source);
    EXPECT_EQ(copy.getParent(), nullptr);
    PlainTag target(&other);
    target = source;
    EXPECT_EQ(target.getParent(), &other);
}

TEST(Tag, DependenciesAreFineByDefault)
{
    PlainTag tag;
    EXPECT_NO_THROW(tag.checkDependentFields());
}

TEST(Tag, VirtualOperationsKeepTheirOrder)
{
    using Compare = bool (ZUL_tag::*)(ZUL_tag const&) const;
    EXPECT_EQ(virtualSlot(&ZUL_tag::checkDependentFields), 0U);
    // 1 and 2: the destructor and its deleting form
    EXPECT_EQ(virtualSlot(&ZUL_tag::Load), 3U);
    EXPECT_EQ(virtualSlot(&ZUL_tag::getSaveLength), 4U);
    EXPECT_EQ(virtualSlot(&ZUL_tag::Save), 5U);
    EXPECT_EQ(virtualSlot(&ZUL_tag::setParent), 6U);
    EXPECT_EQ(virtualSlot(&ZUL_tag::getTagId), 7U);
    EXPECT_EQ(virtualSlot<Compare>(&ZUL_tag::operator<=), 8U);
    EXPECT_EQ(virtualSlot<Compare>(&ZUL_tag::operator>=), 9U);
    EXPECT_EQ(virtualSlot<Compare>(&ZUL_tag::operator!=), 10U);
    EXPECT_EQ(virtualSlot<Compare>(&ZUL_tag::operator<), 11U);
    EXPECT_EQ(virtualSlot<Compare>(&ZUL_tag::operator>), 12U);
    EXPECT_EQ(virtualSlot<Compare>(&ZUL_tag::operator==), 13U);
}

TEST(Tag, ComparisonsFollowFromLessAndEqual)
{
    OrderedTag const low(1);
    OrderedTag const same(1);
    OrderedTag const high(2);
    EXPECT_EQ(comparisons(low, high), "< <= != ");
    EXPECT_EQ(comparisons(high, low), "> >= != ");
    EXPECT_EQ(comparisons(low, same), "<= >= == ");
}

TEST(Tag, PointerComparisonsAskTheOverrides)
{
    OrderedTag const low(1);
    OrderedTag const same(1);
    OrderedTag const high(2);
    EXPECT_EQ(comparisons(low, &high), "< <= != ");
    EXPECT_EQ(comparisons(high, &low), "> >= != ");
    EXPECT_EQ(comparisons(low, &same), "<= >= == ");
}

TEST(Tag, WithoutOrderEveryComparisonIsRefused)
{
    PlainTag const left;
    PlainTag const right;
    std::string const message = "this operator has no default implementation";
    EXPECT_EQ(refusal([&] { return left < right; }), message);
    EXPECT_EQ(refusal([&] { return left > right; }), message);
    EXPECT_EQ(refusal([&] { return left <= right; }), message);
    EXPECT_EQ(refusal([&] { return left >= right; }), message);
    EXPECT_EQ(refusal([&] { return left == right; }), message);
    EXPECT_EQ(refusal([&] { return left != right; }), message);
    EXPECT_EQ(refusal([&] { return left < &right; }), message);
    EXPECT_EQ(refusal([&] { return left == &right; }), message);
    EXPECT_EQ(refusal([&] { return left == left; }), message) << "even with itself";
}

TEST(ChangeString, StoresACopyOfTheWholeText)
{
    OwnedText owned;
    std::string source = "control";
    ZUL_tag::changeString(&owned.text, source.c_str());
    source[0] = 'X';
    EXPECT_STREQ(owned.text, "control");
    ZUL_tag::changeString(&owned.text, "other");
    EXPECT_STREQ(owned.text, "other");
}

TEST(ChangeString, NullOrEmptyLeavesNoText)
{
    OwnedText owned;
    ZUL_tag::changeString(&owned.text, "text");
    ZUL_tag::changeString(&owned.text, nullptr);
    EXPECT_EQ(owned.text, nullptr);
    ZUL_tag::changeString(&owned.text, "text");
    ZUL_tag::changeString(&owned.text, "");
    EXPECT_EQ(owned.text, nullptr);
    ZUL_tag::changeString(&owned.text, nullptr);
    EXPECT_EQ(owned.text, nullptr);
}

TEST(ChangeString, LengthZeroOrNullLeavesNoText)
{
    OwnedText owned;
    ZUL_tag::changeString(&owned.text, "text");
    ZUL_tag::changeString(&owned.text, "text", 0);
    EXPECT_EQ(owned.text, nullptr);
    ZUL_tag::changeString(&owned.text, "text");
    ZUL_tag::changeString(&owned.text, nullptr, 5);
    EXPECT_EQ(owned.text, nullptr);
}

TEST(ChangeString, LengthCutsTheText)
{
    OwnedText owned;
    ZUL_tag::changeString(&owned.text, "control", 4);
    EXPECT_STREQ(owned.text, "cont");
    char const unterminated[] = {'a', 'b', 'c'};
    ZUL_tag::changeString(&owned.text, unterminated, 3);
    EXPECT_STREQ(owned.text, "abc");
}

TEST(ChangeString, RoomBehindAShorterTextIsZero)
{
    OwnedText owned;
    ZUL_tag::changeString(&owned.text, "ab", 6);
    EXPECT_EQ(std::string(owned.text, 7), std::string("ab\0\0\0\0\0", 7));
    ZUL_tag::changeString(&owned.text, "", 3);
    ASSERT_NE(owned.text, nullptr) << "empty, but there";
    EXPECT_EQ(std::string(owned.text, 4), std::string(4, '\0'));
}

TEST(ChangeString, MayTakePartOfTheOldText)
{
    OwnedText owned;
    ZUL_tag::changeString(&owned.text, "left.right");
    ZUL_tag::changeString(&owned.text, owned.text + 5);
    EXPECT_STREQ(owned.text, "right");
}

namespace {

struct Neighbour {
    virtual ~Neighbour() = default;
    int number = 5;
};

// The compiler takes the deletion of an object through its second base for that of a part.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wfree-nonheap-object"
/// The tag is not the first part of the object.
class SecondBaseTag : public Neighbour, public PlainTag {
public:
    explicit SecondBaseTag(bool& ended) : m_ended(ended) {}
    SecondBaseTag(SecondBaseTag const&) = delete;
    SecondBaseTag& operator=(SecondBaseTag const&) = delete;
    ~SecondBaseTag() override { m_ended = true; }

private:
    bool& m_ended;
};
#pragma GCC diagnostic pop

class RefusingTag : public PlainTag {
public:
    RefusingTag() { throw std::runtime_error("no"); }
};

} // namespace

TEST(Tag, IsDeletedAsAWholeThroughItsTagBase)
{
    bool ended = false;
    ZUL_tag* const tag = new SecondBaseTag(ended);
    delete tag; // a wrong address would be noticed by the allocator
    EXPECT_TRUE(ended);
}

TEST(Tag, ThatCannotBeMadeLeavesNoMemoryBehind)
{
    EXPECT_THROW(std::make_unique<RefusingTag>(),
                 std::runtime_error); // the leak check of the sanitizer sees the rest
}
