#include "quiet_load.h"

#include "captured_output.h"
#include "container_bytes.h"
#include "sample_tags.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {

LoadOutcome loaded(Bytes const& bytes, ZULLoadMode mode = ZUL_LOAD_STRICT)
{
    ZUL zul;
    return loadQuietly(zul, {bytes.data(), bytes.size()}, mode);
}

TEST(QuietLoad, HonestContainerLoads)
{
    LoadOutcome const outcome = loaded(sample::everyKind());
    EXPECT_TRUE(outcome.loads());
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.exceptionClass, "");
    EXPECT_EQ(outcome.printed, "");
    EXPECT_EQ(outcome.text(), "yes");
}

TEST(QuietLoad, CountsThatDifferAreNoException)
{
    LoadOutcome const outcome = loaded(headBytes(1));
    EXPECT_EQ(outcome.result, -22);
    EXPECT_EQ(outcome.exceptionClass, "");
    EXPECT_EQ(outcome.text(), "no: the counts in the head do not match the tags, result -22");
}

TEST(QuietLoad, ErrorOfATagIsKeptWithAllThatItSays)
{
    LoadOutcome const outcome = loaded(ContainerBytes().tag(sample::event("e", "nothing")).build());
    EXPECT_EQ(outcome.result, -22);
    EXPECT_EQ(outcome.exceptionClass, "ZUL_file_bad_reference");
    EXPECT_EQ(outcome.message, "dangling reference");
    EXPECT_EQ(outcome.details, "v");
    ASSERT_TRUE(outcome.tagId.has_value());
    EXPECT_EQ(*outcome.tagId, 0x8156576U);
    EXPECT_EQ(outcome.printed, "ZUL Exception: dangling reference\n  Details: v\n");
    EXPECT_EQ(outcome.text(),
              "no: dangling reference (ZUL_file_bad_reference, tag id 0x8156576), result -22");
}

TEST(QuietLoad, TolerantModePrintsAndLoads)
{
    Bytes const bytes = ContainerBytes().tag(sample::author()).tag(sample::author("B")).build();
    LoadOutcome const outcome = loaded(bytes, ZUL_LOAD_TOLERANT);
    EXPECT_TRUE(outcome.loads());
    EXPECT_EQ(outcome.printed, "ZUL Exception: duplicate tag found\n  Details: \n");
    EXPECT_EQ(loaded(bytes).exceptionClass, "ZUL_file_duplicate_tag");
}

TEST(QuietLoad, ModeOfTheContainerIsRestored)
{
    ZUL zul;
    Bytes const bytes = headBytes(0);
    loadQuietly(zul, {bytes.data(), bytes.size()}, ZUL_LOAD_TOLERANT);
    EXPECT_EQ(zul.getLoadMode(), ZUL_LOAD_STRICT);
}

TEST(QuietLoad, NothingReachesStandardOutput)
{
    CapturedOutput const captured;
    std::printf("before ");
    loaded(ContainerBytes().tag(sample::event("e", "nothing")).build());
    std::printf("after");
    EXPECT_EQ(captured.text(), "before after");
}

TEST(QuietLoad, NoBytesAreRefusedLikeAFileThatCannotBeMapped)
{
    EXPECT_EQ(loaded(Bytes()).result, -27);
}

} // namespace
