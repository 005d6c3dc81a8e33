#include "ZUL_comment.h"
#include "bytes.h"
#include "coverage.h"
#include "loading.h"

#include <gtest/gtest.h>

namespace {

constexpr ZUL* noContainer = nullptr;

TEST(CommentTag, LastFourBytesAreIgnoredWhenLoadedAndZeroWhenSaved)
{
    ZUL_comment comment(noContainer);
    EXPECT_EQ(loadFrom(comment, Bytes().u32(0x8150010).u32(268).text("a remark", 256).u32(0xDEADBEEF)), 268U);
    EXPECT_STREQ(comment.getComment(), "a remark");
    EXPECT_EQ(savedBytes(comment, 0xFF), Bytes().u32(0x8150010).u32(268).text("a remark", 256).u32(0));
}

TEST(CommentTag, FieldsAreNamed)
{
    ZUL_comment comment(noContainer);
    Bytes const bytes = Bytes().u32(0x8150010).u32(268).text("a remark", 256).u32(0);
    VisitRecord const record = visited(comment, bytes);
    EXPECT_STREQ(record.at(8).name, "comment");
    EXPECT_EQ(record.at(8).width, 256U);
    EXPECT_EQ(record.at(264).kind, FieldKind::Zero);
}

} // namespace
