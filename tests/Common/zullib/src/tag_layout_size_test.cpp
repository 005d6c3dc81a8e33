#include "tag_layout.h"

#include "coverage.h"
#include "rows_tag.h"

#include <string>

using namespace rows;

TEST(FixedSize, IsTheLengthFieldAndFitsTheBytes)
{
    auto const makeTag = [] { return RowsTag([](TagLayout& row) { row.fixed(12); }); };
    expectFixedLength(makeTag, header(12).u32(0), tagId);
}

TEST(FixedSize, SavingWritesTheHeaderOnly)
{
    RowsTag tag([](TagLayout& row) { row.fixed(12); });
    EXPECT_EQ(savedBytes(tag, 0xA5), header(12).fill(0xA5, 4));
}

TEST(VariableSize, IsTheFixedPartAndItsTails)
{
    std::uint64_t read = 0;
    RowsTag tag([&read](TagLayout& row) {
        row.variable(12);
        read = row.tailLength(8, 4, "tail length", 3);
        row.total(read, "too big");
    });
    EXPECT_EQ(tag.getSaveLength(), 15U);
    EXPECT_EQ(savedBytes(tag, 0xA5), header(15).u32(3).fill(0xA5, 3));
    EXPECT_EQ(loadFrom(tag, header(17).u32(5).zeros(5)), 17U);
    EXPECT_EQ(read, 5U);
}

TEST(VariableSize, WrongLengthsAreRefused)
{
    RowsTag tag([](TagLayout& row) {
        row.variable(12);
        row.total(row.tailLength(8, 4, "tail length", 0), "too big");
    });
    Bytes const honest = header(17).u32(5).zeros(5);
    for (std::size_t avail = 0; avail < honest.size(); ++avail) {
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, Bytes(honest).cut(avail), tagId)) << avail;
    }
    for (std::uint32_t const length : {0U, 12U, 16U, 18U, 0xFFFFFFFFU}) {
        Bytes const broken = Bytes(honest).setU32(4, length).zeros(32);
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, broken, tagId)) << length;
    }
    for (std::uint32_t const tail : {0U, 4U, 6U, 0xFFFFFFFFU}) {
        Bytes const broken = Bytes(honest).setU32(8, tail).zeros(32);
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, broken, tagId)) << tail;
    }
    // 12 + 0xFFFFFFFC is 8 in 32 bits.
    EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, header(8).u32(0xFFFFFFFC).zeros(32), tagId));
}

TEST(VariableSize, InnerLengthsMayMakeATagMalformed)
{
    RowsTag tag([](TagLayout& row) {
        row.variable(12);
        row.totalElseMalformed(row.tailLength(8, 4, "tail length", 0), "too big");
    });
    Bytes const honest = header(17).u32(5).zeros(5);
    EXPECT_EQ(loadFrom(tag, honest), 17U);
    for (std::size_t avail = 0; avail < honest.size(); ++avail) {
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, Bytes(honest).cut(avail), tagId)) << avail;
    }
    EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, Bytes(honest).setU32(4, 18), tagId));
    EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(tag, Bytes(honest).setU32(4, 16), tagId));
    EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(tag, Bytes(honest).setU32(8, 4), tagId));
    EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(tag, Bytes(honest).setU32(8, 0xFFFFFFFF), tagId));
}

TEST(VariableSize, LengthsOfEveryWidthAreReadAndWritten)
{
    std::uint64_t one = 0;
    std::uint64_t two = 0;
    std::uint64_t four = 0;
    RowsTag tag([&](TagLayout& row) {
        row.variable(15);
        one = row.tailLength(8, 1, "one", 1);
        two = row.tailLength(9, 2, "two", 0x0102);
        four = row.tailLength(11, 4, "four", 2);
        row.total(one + two + four, "too big");
    });
    EXPECT_EQ(savedBytes(tag).cut(15), header(15 + 1 + 0x102 + 2).u8(1).u16(0x102).u32(2));
    loadFrom(tag, header(15 + 255 + 3 + 4).u8(255).u16(3).u32(4).zeros(262));
    EXPECT_EQ(one, 255U);
    EXPECT_EQ(two, 3U);
    EXPECT_EQ(four, 4U);
}

TEST(VariableSize, NumberThatDoesNotFitIsRefusedOrKeptToItsWidth)
{
    std::uint64_t length = 0x1FE;
    RowsTag limited([&length](TagLayout& row) {
        row.variable(9);
        row.total(row.tailLength(8, 1, "length", length, 254, "too long"), "too big");
    });
    EXPECT_EQ(savingError(limited), "too long");
    length = 255;
    EXPECT_EQ(savingError(limited), "too long");
    length = 254;
    EXPECT_EQ(savingError(limited), "saved");
    RowsTag unlimited([](TagLayout& row) {
        row.variable(9);
        row.total(row.tailLength(8, 1, "length", 0x101), "too big");
    });
    EXPECT_EQ(savedBytes(unlimited).cut(9), header(9 + 0x101).u8(0x01));
}

TEST(VariableSize, TagLargerThanItsLengthFieldIsRefused)
{
    std::uint64_t tail = 0;
    RowsTag tag([&tail](TagLayout& row) {
        row.variable(12);
        row.total(row.tailLength(8, 4, "length", tail), "grew too big");
    });
    tail = 0xFFFFFFFFU - 12;
    EXPECT_EQ(tag.getSaveLength(), 0xFFFFFFFFU);
    ++tail;
    EXPECT_EQ(savingError(tag), "grew too big");
}

TEST(PayloadSize, IsWhateverTheLengthFieldSays)
{
    TagBytes payload;
    RowsTag tag([&payload](TagLayout& row) { row.payload(12, "payload", payload); });
    Bytes const bytes = header(17).u32(0).chars("bytes").fill(0xFF, 8);
    EXPECT_EQ(tag.Load(bytes.data(), bytes.size()), 17U);
    EXPECT_EQ(payload.data(), bytes.data() + 12) << "borrowed";
    EXPECT_EQ(payload.size(), 5U);
    EXPECT_EQ(tag.getSaveLength(), 17U);
    EXPECT_EQ(savedBytes(tag, 0xA5), header(17).fill(0xA5, 4).chars("bytes"));
}

TEST(PayloadSize, MayBeNothing)
{
    TagBytes payload;
    RowsTag tag([&payload](TagLayout& row) { row.payload(8, "payload", payload); });
    EXPECT_EQ(loadFrom(tag, header(8)), 8U);
    EXPECT_EQ(payload.size(), 0U);
    EXPECT_EQ(savedBytes(tag), header(8));
}

TEST(PayloadSize, HasToHoldTheFixedPartAndFitTheBytes)
{
    TagBytes payload;
    payload.copyFrom("before", 6);
    RowsTag tag([&payload](TagLayout& row) { row.payload(12, "payload", payload); });
    for (std::uint32_t const length : {0U, 8U, 11U, 18U, 0xFFFFFFFFU}) {
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, header(length).zeros(9), tagId)) << length;
    }
    for (std::size_t avail = 0; avail < 12; ++avail) {
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, header(12).u32(0).cut(avail), tagId)) << avail;
    }
    EXPECT_EQ(payload.size(), 6U) << "a refused load keeps the payload";
}

TEST(HeaderId, IsTheOneInTheBytesOrTheOneToSave)
{
    std::uint32_t seen = 0;
    RowsTag tag([&seen](TagLayout& row) {
        row.needs(8);
        seen = row.headerId(0x5678);
        row.fixed(8);
    });
    loadFrom(tag, Bytes().u32(0x9ABC).u32(8));
    EXPECT_EQ(seen, 0x9ABCU);
    EXPECT_EQ(savedBytes(tag), Bytes().u32(0x5678).u32(8));
    EXPECT_EQ(seen, 0x5678U);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, Bytes().u32(0x9ABC).zeros(3), tagId));
    visited(tag, Bytes().u8(1).u8(2).u8(3));
    EXPECT_EQ(seen, 0U) << "no id in fewer than four bytes";
}

TEST(TailRows, LieBackToBack)
{
    TagText text;
    TagBytes block;
    RowsTag tag([&](TagLayout& row) {
        row.variable(16);
        auto const characters = row.tailLength(8, 4, "characters", text.length());
        auto const bytes = row.tailLength(12, 4, "bytes", block.size());
        row.total(characters + bytes, "too big");
        row.tailText("text", characters, text);
        row.tailBytes("block", bytes, block);
    });
    text.set("abc");
    block.copyFrom("\x01\x02", 2);
    Bytes const bytes = header(21).u32(3).u32(2).chars("abc").u8(1).u8(2);
    EXPECT_EQ(savedBytes(tag, 0xA5), bytes);

    text.set(nullptr);
    block.clear();
    EXPECT_EQ(savedBytes(tag, 0xA5), header(16).u32(0).u32(0));
    EXPECT_EQ(tag.Load(bytes.data(), bytes.size()), 21U);
    EXPECT_STREQ(text.get(), "abc");
    EXPECT_EQ(block.data(), bytes.data() + 19) << "borrowed";
    EXPECT_EQ(savedBytes(tag), bytes);

    VisitRecord const record = visited(tag, bytes);
    EXPECT_TRUE(coversOnce(record, 21));
    EXPECT_EQ(record.at(8).kind, FieldKind::TailLength);
    EXPECT_EQ(record.at(16).kind, FieldKind::Text);
    EXPECT_EQ(record.at(19).kind, FieldKind::Bytes);
    EXPECT_TRUE(coversOnce(visited(tag, header(16).u32(0).u32(0)), 16)) << "empty parts are no fields";
}

TEST(TailRows, OfLengthZeroLeaveNoText)
{
    TagText text;
    text.set("before");
    RowsTag tag([&text](TagLayout& row) {
        row.variable(12);
        auto const length = row.tailLength(8, 4, "length", text.length());
        row.total(length, "too big");
        row.tailText("text", length, text);
    });
    loadFrom(tag, header(12).u32(0));
    EXPECT_EQ(text.get(), nullptr);
}

TEST(TailRows, VisitShowsWhatIsThereOfAHugeTail)
{
    TagText text;
    auto const makeTag = [&text] {
        return RowsTag([&text](TagLayout& row) {
            row.variable(12);
            auto const length = row.tailLength(8, 4, "length", 0);
            row.total(length, "too big");
            row.tailText("text", length, text);
        });
    };
    RowsTag tag = makeTag();
    Bytes const bytes = header(15).u32(0xFFFFFFFF).chars("abc");
    VisitRecord const record = visited(tag, bytes);
    EXPECT_EQ(record.at(12).width, 0xFFFFFFFFU);
    EXPECT_EQ(record.at(12).text(), "abc");
    ASSERT_EQ(record.problems.size(), 1U);
    EXPECT_EQ(record.problems[0].expected, std::to_string(12 + std::uint64_t{0xFFFFFFFF}));
    EXPECT_EQ(record.problems[0].found, "15");
    expectCutsAreShown(makeTag, bytes, 12);
    EXPECT_EQ(text.get(), nullptr) << "a visit stores no text";
}
