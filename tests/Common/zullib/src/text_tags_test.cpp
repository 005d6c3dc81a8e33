// The rules that the author, the comment, the design's name and its version text share.
#include "ZUL_author.h"
#include "ZUL_comment.h"
#include "ZUL_design_name.h"
#include "ZUL_design_version.h"
#include "bytes.h"
#include "coverage.h"
#include "loading.h"
#include "zul_class.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr ZUL* noContainer = nullptr;

struct Author {
    using Tag = ZUL_author;
    static constexpr std::uint32_t id = 0x8150070;
    static constexpr std::size_t width = 64;
    static constexpr std::size_t trailing = 0;
    static char const* get(Tag const& tag) { return tag.getAuthor(); }
    static void set(Tag& tag, char const* text) { tag.setAuthor(text); }
};

struct Comment {
    using Tag = ZUL_comment;
    static constexpr std::uint32_t id = 0x8150010;
    static constexpr std::size_t width = 256;
    static constexpr std::size_t trailing = 4;
    static char const* get(Tag const& tag) { return tag.getComment(); }
    static void set(Tag& tag, char const* text) { tag.setComment(text); }
};

struct DesignName {
    using Tag = ZUL_design_name;
    static constexpr std::uint32_t id = 0x8155000;
    static constexpr std::size_t width = 64;
    static constexpr std::size_t trailing = 0;
    static char const* get(Tag const& tag) { return tag.getName(); }
    static void set(Tag& tag, char const* text) { tag.setName(text); }
};

struct DesignVersion {
    using Tag = ZUL_design_version;
    static constexpr std::uint32_t id = 0x8156000;
    static constexpr std::size_t width = 64;
    static constexpr std::size_t trailing = 0;
    static char const* get(Tag const& tag) { return tag.getVersion(); }
    static void set(Tag& tag, char const* text) { tag.setVersion(text); }
};

/// The tag as it lies in a file.
template <class Kind>
Bytes stored(std::string_view text)
{
    std::size_t const length = 8 + Kind::width + Kind::trailing;
    return Bytes().u32(Kind::id).u32(length).text(text, Kind::width).zeros(Kind::trailing);
}

template <class Kind>
typename Kind::Tag withText(char const* text)
{
    typename Kind::Tag tag(noContainer);
    Kind::set(tag, text);
    return tag;
}

template <class Kind>
class TextTag : public testing::Test {
};

using Kinds = testing::Types<Author, Comment, DesignName, DesignVersion>;
TYPED_TEST_SUITE(TextTag, Kinds);

TYPED_TEST(TextTag, AnswersItsTagId)
{
    typename TypeParam::Tag const tag(noContainer);
    EXPECT_EQ(tag.getTagId(), TypeParam::id);
    EXPECT_EQ(TypeParam::Tag::tag_id, TypeParam::id);
}

TYPED_TEST(TextTag, NewOneHasContainerAndNoText)
{
    ZUL zul;
    typename TypeParam::Tag const tag(&zul);
    EXPECT_EQ(tag.getParent(), &zul);
    EXPECT_EQ(TypeParam::get(tag), nullptr);
}

TYPED_TEST(TextTag, SavesEveryByte)
{
    auto tag = withText<TypeParam>("Gr\xFC\xDF Gott");
    EXPECT_EQ(savedBytes(tag, 0xA5), stored<TypeParam>("Gr\xFC\xDF Gott"));
}

TYPED_TEST(TextTag, SavesNulsWithoutText)
{
    typename TypeParam::Tag tag(noContainer);
    EXPECT_EQ(savedBytes(tag, 0xA5), stored<TypeParam>(""));
}

TYPED_TEST(TextTag, TextOfFullWidthIsSavedWithoutTerminatorAndLoadsBack)
{
    std::string const full = std::string(TypeParam::width - 1, 'f') + 'l';
    auto tag = withText<TypeParam>(full.c_str());
    Bytes const saved = savedBytes(tag, 0xA5);
    EXPECT_EQ(saved, stored<TypeParam>(full));
    typename TypeParam::Tag loaded(noContainer);
    loadFrom(loaded, saved);
    EXPECT_EQ(TypeParam::get(loaded), full);
}

TYPED_TEST(TextTag, SetterCutsWhatIsBeyondTheWidth)
{
    std::string const full(TypeParam::width, 'x');
    auto const tag = withText<TypeParam>((full + "y").c_str());
    EXPECT_EQ(TypeParam::get(tag), full);
}

TYPED_TEST(TextTag, SetterWithNullLeavesNoText)
{
    auto tag = withText<TypeParam>("something");
    TypeParam::set(tag, nullptr);
    EXPECT_EQ(TypeParam::get(tag), nullptr);
}

TYPED_TEST(TextTag, SetterWithEmptyTextLeavesEmptyText)
{
    auto const tag = withText<TypeParam>("");
    EXPECT_STREQ(TypeParam::get(tag), "");
}

TYPED_TEST(TextTag, OwnTextCanBeSetAgain)
{
    auto tag = withText<TypeParam>("itself");
    TypeParam::set(tag, TypeParam::get(tag) + 2);
    EXPECT_STREQ(TypeParam::get(tag), "self");
}

TYPED_TEST(TextTag, LoadReplacesTheText)
{
    auto tag = withText<TypeParam>("old and longer");
    EXPECT_EQ(loadFrom(tag, stored<TypeParam>("new")), 8 + TypeParam::width + TypeParam::trailing);
    EXPECT_STREQ(TypeParam::get(tag), "new");
}

TYPED_TEST(TextTag, LoadOfNulsGivesEmptyText)
{
    typename TypeParam::Tag tag(noContainer);
    loadFrom(tag, stored<TypeParam>(""));
    EXPECT_STREQ(TypeParam::get(tag), "");
}

TYPED_TEST(TextTag, LoadedTextEndsAtItsFirstNul)
{
    auto tag = withText<TypeParam>("");
    loadFrom(tag, stored<TypeParam>(std::string_view("ab\0cd", 5)));
    EXPECT_STREQ(TypeParam::get(tag), "ab");
    EXPECT_EQ(savedBytes(tag), stored<TypeParam>("ab"));
}

TYPED_TEST(TextTag, EveryOtherLengthIsRefused)
{
    expectFixedLength([] { return typename TypeParam::Tag(noContainer); }, stored<TypeParam>("text"),
                      TypeParam::id);
}

TYPED_TEST(TextTag, RefusedLoadKeepsTheText)
{
    auto tag = withText<TypeParam>("kept");
    EXPECT_THROW(loadFrom(tag, stored<TypeParam>("lost").setU32(4, 71)), ZUL_file_bad_tag_length);
    EXPECT_STREQ(TypeParam::get(tag), "kept");
}

TYPED_TEST(TextTag, CopiesAreDeepAndFree)
{
    ZUL zul;
    typename TypeParam::Tag tag(&zul);
    TypeParam::set(tag, "original");
    typename TypeParam::Tag const copy(tag);
    typename TypeParam::Tag const copyOfPointer(&std::as_const(tag));
    TypeParam::set(tag, "changed");
    EXPECT_STREQ(TypeParam::get(copy), "original");
    EXPECT_EQ(copy.getParent(), nullptr);
    EXPECT_STREQ(TypeParam::get(copyOfPointer), "original");
    EXPECT_EQ(copyOfPointer.getParent(), nullptr);
}

TYPED_TEST(TextTag, AssignmentTakesTheTextAndKeepsTheContainer)
{
    ZUL zul;
    typename TypeParam::Tag target(&zul);
    TypeParam::set(target, "target");
    target = withText<TypeParam>("source");
    EXPECT_STREQ(TypeParam::get(target), "source");
    EXPECT_EQ(target.getParent(), &zul);
    target = typename TypeParam::Tag(noContainer);
    EXPECT_EQ(TypeParam::get(target), nullptr);
}

TYPED_TEST(TextTag, SelfAssignmentChangesNothing)
{
    auto tag = withText<TypeParam>("same");
    auto const& alias = tag;
    tag = alias;
    EXPECT_STREQ(TypeParam::get(tag), "same");
}

TYPED_TEST(TextTag, HasNoOrder)
{
    typename TypeParam::Tag const tag(noContainer);
    EXPECT_THROW(static_cast<void>(tag < tag), std::runtime_error);
    EXPECT_THROW(static_cast<void>(tag == static_cast<ZUL_tag const&>(tag)), std::runtime_error);
}

TYPED_TEST(TextTag, VisitShowsEveryByteOnce)
{
    typename TypeParam::Tag tag(noContainer);
    Bytes const bytes = stored<TypeParam>("shown");
    VisitRecord const record = visited(tag, bytes);
    EXPECT_TRUE(coversOnce(record, bytes.size()));
    EXPECT_TRUE(record.problems.empty());
    EXPECT_EQ(record.at(8).text(), "shown");
    expectCutsAreShown([] { return typename TypeParam::Tag(noContainer); }, bytes, bytes.size());
}

} // namespace
