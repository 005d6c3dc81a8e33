#include "ZUL_author.h"
#include "bytes.h"
#include "coverage.h"
#include "loading.h"

#include <gtest/gtest.h>

namespace {

constexpr ZUL* noContainer = nullptr;

Bytes authorBytes()
{
    return Bytes().u32(0x8150070).u32(72).text("A. Noether", 64);
}

TEST(AuthorTag, RefusedLengthIsReportedWithTheLowByteOfTheId)
{
    ZUL_author author(noContainer);
    for (Bytes const& bytes :
         {authorBytes().cut(71), authorBytes().setU32(4, 70), authorBytes().setU32(4, 80).zeros(8)}) {
        try {
            loadFrom(author, bytes);
            FAIL() << "loaded " << bytes;
        } catch (ZUL_file_bad_tag_length const& error) {
            EXPECT_EQ(error.getTagId(), 0x8150070U);
            EXPECT_STREQ(error.what(), "tag with invalid length information found");
            EXPECT_EQ(error.asString(), "p");
        }
    }
}

TEST(AuthorTag, FieldIsNamed)
{
    ZUL_author author(noContainer);
    Bytes const bytes = authorBytes();
    TagField const field = visited(author, bytes).at(8);
    EXPECT_STREQ(field.name, "author");
    EXPECT_EQ(field.width, 64U);
    EXPECT_EQ(field.kind, FieldKind::Text);
}

} // namespace
