#include "tag_layout.h"

#include "coverage.h"
#include "rows_tag.h"
#include "zul_class.h"

#include <stdexcept>

using namespace rows;

TEST(LayoutRules, OrphanIsNotLoadedWhereAContainerIsNeeded)
{
    RowsTag::Rows const rows = [](TagLayout& row) {
        row.fixed(8);
        row.needsContainer();
    };
    RowsTag orphan(rows);
    try {
        loadFrom(orphan, header(8));
        FAIL() << "loaded";
    } catch (std::logic_error const& error) {
        EXPECT_STREQ(error.what(), "loading orphaned tag without parent is invalid");
    }
    EXPECT_EQ(savedBytes(orphan), header(8)) << "saving needs none";
    ZUL zul;
    RowsTag tag(rows, &zul);
    EXPECT_EQ(loadFrom(tag, header(8)), 8U);
}

TEST(LayoutRules, DependenciesAreCheckedBySavingAndMeasuring)
{
    RowsTag tag([](TagLayout& row) {
        row.dependencies();
        row.fixed(8);
    });
    loadFrom(tag, header(8));
    visited(tag, header(8));
    EXPECT_EQ(tag.dependenciesChecked, 0);
    static_cast<void>(tag.getSaveLength());
    EXPECT_EQ(tag.dependenciesChecked, 1);
    savedBytes(tag);
    EXPECT_EQ(tag.dependenciesChecked, 3);
}

TEST(LayoutRules, RequiredIsRequiredBySavingOnly)
{
    RowsTag tag([](TagLayout& row) {
        row.require(false, "not complete");
        row.fixed(8);
    });
    EXPECT_EQ(savingError(tag), "not complete");
    EXPECT_EQ(loadFrom(tag, header(8)), 8U);
    EXPECT_TRUE(visited(tag, header(8)).problems.empty());
}

TEST(LayoutRules, DemandedValueIsDemandedByLoadingOnly)
{
    std::uint32_t value = 7;
    RowsTag tag([&value](TagLayout& row) {
        row.fixed(12);
        row.u32(8, "value", value);
        row.demand(value <= 1, "0 or 1");
    });
    EXPECT_EQ(savedBytes(tag), header(12).u32(7)) << "saved as it is";
    EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(tag, header(12).u32(2), tagId));
    EXPECT_EQ(loadFrom(tag, header(12).u32(1)), 12U);
    VisitRecord const record = visited(tag, header(12).u32(2));
    ASSERT_EQ(record.problems.size(), 1U);
    EXPECT_EQ(record.problems[0].kind, TagProblem::Kind::Malformed);
    EXPECT_EQ(record.problems[0].offset, 8U);
    EXPECT_EQ(record.problems[0].width, 4U);
    EXPECT_STREQ(record.problems[0].field, "value");
    EXPECT_EQ(record.problems[0].expected, "0 or 1");
    EXPECT_EQ(record.problems[0].found, "2");
}

TEST(LayoutRules, ValueThatDecidesTheLengthIsRefusedAfterTheLength)
{
    std::uint8_t unit = 2;
    RowsTag tag([&unit](TagLayout& row) {
        row.variable(10);
        row.u8(8, "unit", unit);
        row.demandOnceTotalled(unit == 2, "2");
        row.total(unit * row.tailLength(9, 1, "count", 0), "too big");
    });
    EXPECT_EQ(loadFrom(tag, header(14).u8(2).u8(2).zeros(4)), 14U);
    EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(tag, header(16).u8(3).u8(2).zeros(6), tagId));
    EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, header(14).u8(3).u8(2).zeros(6), tagId));
    EXPECT_EQ(loadFrom(tag, header(14).u8(2).u8(2).zeros(4)), 14U) << "one refusal does not lead to the next";
    EXPECT_EQ(visited(tag, header(16).u8(3).u8(2).zeros(6)).problems.size(), 1U);
    EXPECT_EQ(visited(tag, header(14).u8(3).u8(2).zeros(6)).problems.size(), 2U);
}

TEST(NumberRows, OfEveryWidthAreLittleEndianAndUnaligned)
{
    std::uint8_t one = 0x01;
    std::uint16_t two = 0x0203;
    std::uint32_t four = 0x04050607;
    std::int32_t negative = -2;
    std::uint64_t eight = 0x08090A0B0C0D0E0F;
    double real = -0.25;
    RowsTag tag([&](TagLayout& row) {
        row.fixed(35);
        row.u8(8, "one", one);
        row.u16(9, "two", two);
        row.u32(11, "four", four);
        row.s32(15, "negative", negative);
        row.u64(19, "eight", eight);
        row.real(27, "real", real);
    });
    Bytes const expected =
        header(35).u8(1).u16(0x0203).u32(0x04050607).u32(0xFFFFFFFE).u64(0x08090A0B0C0D0E0F).real(-0.25);
    EXPECT_EQ(savedBytes(tag, 0xA5), expected);

    one = 0, two = 0, four = 0, negative = 0, eight = 0, real = 0;
    loadFrom(tag, expected);
    EXPECT_EQ(savedBytes(tag), expected);
    EXPECT_EQ(negative, -2);
    EXPECT_EQ(real, -0.25);

    VisitRecord const record = visited(tag, expected);
    EXPECT_TRUE(coversOnce(record, 35));
    EXPECT_EQ(record.at(0).kind, FieldKind::TagId);
    EXPECT_EQ(record.at(4).kind, FieldKind::TagLength);
    EXPECT_EQ(record.at(8).kind, FieldKind::Unsigned);
    EXPECT_EQ(record.at(9).number(), 0x0203U);
    EXPECT_EQ(record.at(15).kind, FieldKind::Signed);
    EXPECT_EQ(record.at(15).signedNumber(), -2);
    EXPECT_EQ(record.at(27).kind, FieldKind::Real);
    EXPECT_EQ(record.at(27).real(), -0.25);
}

TEST(NumberRows, VisitTakesNumbersThatAreCutOffAsZero)
{
    std::uint32_t value = 7;
    RowsTag tag([&value](TagLayout& row) {
        row.fixed(12);
        row.u32(8, "value", value);
    });
    visited(tag, header(12).u8(1).u8(2).u8(3));
    EXPECT_EQ(value, 0U);
    visited(tag, header(12).u32(9));
    EXPECT_EQ(value, 9U);
}

TEST(NumberRows, NotANumberComesBackBitByBit)
{
    double real = 0;
    RowsTag tag([&real](TagLayout& row) {
        row.fixed(16);
        row.real(8, "real", real);
    });
    Bytes const bytes = header(16).u64(0x7FF4000000000001); // signalling
    loadFrom(tag, bytes);
    EXPECT_EQ(savedBytes(tag), bytes);
}

TEST(TextRows, ArePaddedWithNulAndUnterminatedWhenFull)
{
    TagText text;
    RowsTag tag([&text](TagLayout& row) {
        row.fixed(14);
        row.text(8, 6, "text", text);
    });
    EXPECT_EQ(savedBytes(tag, 0xA5), header(14).zeros(6)) << "none";
    text.set("abc");
    EXPECT_EQ(savedBytes(tag, 0xA5), header(14).text("abc", 6));
    text.set("abcdef");
    EXPECT_EQ(savedBytes(tag, 0xA5), header(14).chars("abcdef"));
    text.set("abcdefgh");
    EXPECT_EQ(savedBytes(tag, 0xA5), header(14).chars("abcdef")) << "cut";

    loadFrom(tag, header(14).chars("ghijkl"));
    EXPECT_STREQ(text.get(), "ghijkl");
    loadFrom(tag, header(14).chars("gh").zeros(1).chars("xxx"));
    EXPECT_STREQ(text.get(), "gh");
    loadFrom(tag, header(14).zeros(6));
    ASSERT_NE(text.get(), nullptr);
    EXPECT_STREQ(text.get(), "");
}

TEST(TextRows, OptionalTextOfNulsIsNone)
{
    TagText text;
    RowsTag tag([&text](TagLayout& row) {
        row.fixed(14);
        row.optionalText(8, 6, "text", text);
    });
    loadFrom(tag, header(14).chars("ghijkl"));
    EXPECT_STREQ(text.get(), "ghijkl");
    EXPECT_EQ(savedBytes(tag, 0xA5), header(14).chars("ghijkl"));
    loadFrom(tag, header(14).zeros(6));
    EXPECT_EQ(text.get(), nullptr);
    EXPECT_EQ(savedBytes(tag, 0xA5), header(14).zeros(6));
}

TEST(TextRows, WrittenTextIsNotLookedAt)
{
    RowsTag tag([](TagLayout& row) {
        row.fixed(14);
        row.writtenText(8, 6, "text", "abc");
    });
    EXPECT_EQ(savedBytes(tag, 0xA5), header(14).text("abc", 6));
    EXPECT_EQ(loadFrom(tag, header(14).fill(0xFF, 6)), 14U);
    RowsTag none([](TagLayout& row) {
        row.fixed(14);
        row.writtenText(8, 6, "text", nullptr);
    });
    EXPECT_EQ(savedBytes(none, 0xA5), header(14).zeros(6));
}

TEST(TextRows, AreShownNotStoredByAVisit)
{
    TagText text;
    text.set("before");
    RowsTag tag([&text](TagLayout& row) {
        row.fixed(14);
        row.text(8, 6, "text", text);
    });
    VisitRecord const record = visited(tag, header(14).text("abc", 6));
    EXPECT_EQ(record.at(8).kind, FieldKind::Text);
    EXPECT_EQ(record.at(8).text(), "abc");
    EXPECT_STREQ(text.get(), "before");
}

TEST(GapRows, ReservedBytesAreLeftAndZerosAreWritten)
{
    RowsTag tag([](TagLayout& row) {
        row.fixed(16);
        row.reserved(8, 4);
        row.zeros(12, 4);
    });
    EXPECT_EQ(savedBytes(tag, 0xA5), header(16).fill(0xA5, 4).zeros(4));
    EXPECT_EQ(loadFrom(tag, header(16).fill(0xFF, 8)), 16U);
    VisitRecord const record = visited(tag, header(16).fill(0xFF, 8));
    EXPECT_TRUE(record.problems.empty());
    EXPECT_EQ(record.at(8).kind, FieldKind::Reserved);
    EXPECT_EQ(record.at(12).kind, FieldKind::Zero);
}

TEST(GapRows, ByteThatMustBeZeroIsRefusedOtherwise)
{
    RowsTag tag([](TagLayout& row) {
        row.fixed(9);
        row.mustBeZero(8);
    });
    EXPECT_EQ(savedBytes(tag, 0xA5), header(9).u8(0));
    EXPECT_EQ(loadFrom(tag, header(9).u8(0)), 9U);
    EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(tag, header(9).u8(1), tagId));
    EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(tag, header(9).u8(0x80), tagId));
    VisitRecord const record = visited(tag, header(9).u8(4));
    EXPECT_EQ(record.at(8).kind, FieldKind::MustBeZero);
    ASSERT_EQ(record.problems.size(), 1U);
    EXPECT_EQ(record.problems[0].expected, "0");
    EXPECT_EQ(record.problems[0].found, "4");
}

TEST(LayoutVisit, NamesAWrongLengthOnce)
{
    RowsTag tag([](TagLayout& row) {
        row.fixed(12);
        row.reserved(8, 4);
    });
    VisitRecord const record = visited(tag, header(13).u32(0));
    ASSERT_EQ(record.problems.size(), 1U);
    EXPECT_EQ(record.problems[0].kind, TagProblem::Kind::BadLength);
    EXPECT_EQ(record.problems[0].offset, 4U);
    EXPECT_EQ(record.problems[0].width, 4U);
    EXPECT_STREQ(record.problems[0].field, "length");
    EXPECT_EQ(record.problems[0].expected, "12");
    EXPECT_EQ(record.problems[0].found, "13");
}

TEST(LayoutVisit, NamesMissingBytes)
{
    RowsTag tag([](TagLayout& row) {
        row.fixed(12);
        row.reserved(8, 4);
    });
    VisitRecord const record = visited(tag, header(12).u8(0));
    ASSERT_EQ(record.problems.size(), 1U);
    EXPECT_EQ(record.problems[0].expected, "at least 12 bytes");
    EXPECT_EQ(record.problems[0].found, "9 bytes");
    EXPECT_EQ(record.at(8).bytes.size(), 1U);
}

TEST(LayoutVisit, PayloadShorterThanItsFixedPartIsAProblem)
{
    TagBytes payload;
    RowsTag tag([&payload](TagLayout& row) { row.payload(12, "payload", payload); });
    VisitRecord const record = visited(tag, header(11).u32(0));
    ASSERT_EQ(record.problems.size(), 1U);
    EXPECT_EQ(record.problems[0].expected, "at least 12");
    EXPECT_EQ(record.problems[0].found, "11");
    VisitRecord const huge = visited(tag, header(0xFFFFFFFF).u32(0).chars("abc"));
    EXPECT_EQ(huge.at(12).bytes.size(), 3U);
    EXPECT_EQ(huge.at(12).width, 0xFFFFFFFFU - 12);
}
