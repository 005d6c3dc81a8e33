#include "byte_ranges.h"

#include "container_bytes.h"
#include "sample_tags.h"

#include <gtest/gtest.h>

#include <string>

namespace {

Walk walked(Bytes const& bytes)
{
    return walkContainer({bytes.data(), bytes.size()});
}

/// Whether the ranges cover [0, size) once, without a hole.
testing::AssertionResult covers(std::vector<ByteRange> const& ranges, std::size_t size)
{
    std::uint64_t next = 0;
    for (ByteRange const& range : ranges) {
        if (range.field.bytes.empty()) {
            continue;
        }
        if (range.field.offset != next) {
            return testing::AssertionFailure() << range.field.name << " begins at " << range.field.offset;
        }
        next += range.field.bytes.size();
    }
    return next == size ? testing::AssertionSuccess() : testing::AssertionFailure() << "ends at " << next;
}

TEST(ByteRanges, EveryByteOfEveryKindBelongsToOneField)
{
    Bytes const bytes = sample::everyKind();
    Walk const walk = walked(bytes);
    EXPECT_TRUE(covers(rangesOfHead(walk.head), 24));
    for (WalkedTag const& tag : walk.tags) {
        std::vector<ByteRange> const ranges = rangesOf(tag);
        EXPECT_TRUE(covers(ranges, tag.length)) << tag.index;
        for (ByteRange const& range : ranges) {
            EXPECT_EQ(range.owner, Owner::Field) << tag.index << ' ' << range.field.name;
        }
    }
}

TEST(ByteRanges, DamagedTagsAreCoveredToo)
{
    Bytes const whole = sample::everyKind();
    for (std::size_t size = 24; size < whole.size(); ++size) {
        Bytes const bytes = Bytes(whole).cut(size);
        Walk const walk = walked(bytes);
        std::size_t sum = walk.head.size() + trailingRange(walk).field.bytes.size();
        for (WalkedTag const& tag : walk.tags) {
            sum += tag.length;
        }
        ASSERT_EQ(sum, size);
        if (!walk.tags.empty()) {
            ASSERT_TRUE(covers(rangesOf(walk.tags.back()), walk.tags.back().length)) << size;
        }
    }
}

TEST(ByteRanges, BytesBehindTheLayoutAreAGap)
{
    Bytes const bytes =
        ContainerBytes().tag(sample::author().setU32(4, 75).fill(0xA5, 3)).tag(sample::comment()).build();
    std::vector<ByteRange> const ranges = rangesOf(walked(bytes).tags.front());
    ByteRange const& gap = ranges.back();
    EXPECT_EQ(gap.owner, Owner::Nobody);
    EXPECT_STREQ(kindOf(gap), "gap");
    EXPECT_EQ(gap.field.offset, 72U);
    EXPECT_EQ(gap.field.bytes.size(), 3U);
}

TEST(ByteRanges, FieldsOfACutTagHaveTheBytesThatAreThere)
{
    Bytes const bytes = ContainerBytes().tag(sample::destination(1).cut(11)).build();
    std::vector<ByteRange> const ranges = rangesOf(walked(bytes).tags.front());
    ASSERT_EQ(ranges.size(), 6U);
    EXPECT_STREQ(ranges[3].field.name, "revision");
    EXPECT_EQ(ranges[3].field.width, 2U);
    EXPECT_EQ(ranges[3].field.bytes.size(), 1U);
    EXPECT_EQ(ranges[4].field.bytes.size(), 0U);
}

TEST(ByteRanges, UnknownTagHasAHeaderAndRawData)
{
    Bytes const bytes = ContainerBytes().tag(sample::unknown(0x1234, "12345")).build();
    std::vector<ByteRange> const ranges = rangesOf(walked(bytes).tags.front());
    ASSERT_EQ(ranges.size(), 3U);
    EXPECT_EQ(ranges[0].field.number(), 0x1234U);
    EXPECT_EQ(ranges[1].field.number(), 13U);
    EXPECT_STREQ(ranges[2].field.name, "raw data");
    EXPECT_EQ(ranges[2].field.bytes.size(), 5U);
}

TEST(ByteRanges, BytesThatNoLoadReadsAreTrailing)
{
    Bytes const bytes = ContainerBytes().tag(sample::author()).build(7);
    Walk const walk = walked(bytes);
    ByteRange const range = trailingRange(walk);
    EXPECT_EQ(range.owner, Owner::Trailing);
    EXPECT_EQ(range.field.offset, 96U);
    EXPECT_EQ(range.field.width, 7U);
}

TEST(ByteRanges, OfAForeignFileAllButTheHeadIsTrailing)
{
    Bytes const bytes = Bytes().chars("something else altogether");
    Walk const walk = walked(bytes);
    EXPECT_EQ(trailingRange(walk).field.offset, 24U);
    EXPECT_EQ(trailingRange(walk).field.width, 1U);
    EXPECT_TRUE(covers(rangesOfHead(walk.head), 24));
}

} // namespace
