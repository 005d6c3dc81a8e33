#include "tag_layout.h"

#include "ZUL_module.h"
#include "ZUL_process.h"
#include "ZUL_register.h"
#include "bytes.h"
#include "coverage.h"
#include "laid_out_tag.h"
#include "loading.h"
#include "zul_class.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

constexpr std::uint32_t tagId = 0x1234;

/// A tag with the rows that a test gives it.
class RowsTag : public LaidOutTag {
public:
    using Rows = std::function<void(TagLayout&)>;

    explicit RowsTag(Rows rows, ZUL* parent = nullptr) : LaidOutTag(parent), m_rows(std::move(rows)) {}
    std::uint32_t getTagId() const override { return tagId; }
    void checkDependentFields() override { ++dependenciesChecked; }

    int dependenciesChecked = 0;

private:
    void layout(TagLayout& row) override { m_rows(row); }

    Rows m_rows;
};

Bytes header(std::uint32_t length)
{
    return Bytes().u32(tagId).u32(length);
}

std::string savingError(RowsTag& tag)
{
    Bytes room = Bytes().fill(0xA5, 64);
    Bytes const before = room;
    std::string message;
    try {
        tag.Save(room.data());
        return "saved";
    } catch (std::runtime_error const& error) {
        message = error.what();
    }
    try {
        static_cast<void>(tag.getSaveLength());
        return "measured";
    } catch (std::runtime_error const& error) {
        EXPECT_EQ(error.what(), message);
    }
    EXPECT_EQ(room, before) << "nothing is written";
    return message;
}

} // namespace

// The size.

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

// What has to hold.

TEST(Rules, OrphanIsNotLoadedWhereAContainerIsNeeded)
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

TEST(Rules, DependenciesAreCheckedBySavingAndMeasuring)
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

TEST(Rules, RequiredIsRequiredBySavingOnly)
{
    RowsTag tag([](TagLayout& row) {
        row.require(false, "not complete");
        row.fixed(8);
    });
    EXPECT_EQ(savingError(tag), "not complete");
    EXPECT_EQ(loadFrom(tag, header(8)), 8U);
    EXPECT_TRUE(visited(tag, header(8)).problems.empty());
}

TEST(Rules, DemandedValueIsDemandedByLoadingOnly)
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

TEST(Rules, ValueThatDecidesTheLengthIsRefusedAfterTheLength)
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

// Fields.

TEST(Numbers, OfEveryWidthAreLittleEndianAndUnaligned)
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

TEST(Numbers, VisitTakesNumbersThatAreCutOffAsZero)
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

TEST(Numbers, NotANumberComesBackBitByBit)
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

TEST(Texts, ArePaddedWithNulAndUnterminatedWhenFull)
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

TEST(Texts, OptionalTextOfNulsIsNone)
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

TEST(Texts, WrittenTextIsNotLookedAt)
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

TEST(Texts, AreShownNotStoredByAVisit)
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

TEST(Gaps, ReservedBytesAreLeftAndZerosAreWritten)
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

TEST(Gaps, ByteThatMustBeZeroIsRefusedOtherwise)
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

// References.

namespace {

/// A container with process 3, module 5 and register "reg".
class References : public testing::Test {
protected:
    References()
    {
        m_zul.AddTag(m_process);
        m_module->setIndex(5);
        m_zul.AddTag(m_module);
        m_zul.AddTag(m_register);
    }

    ZUL m_zul;
    ZUL_process* m_process = new ZUL_process(&m_zul, 3, "process");
    ZUL_module* m_module = new ZUL_module(&m_zul, m_process);
    ZUL_register* m_register = new ZUL_register(&m_zul, "reg", false);
};

} // namespace

TEST_F(References, ProcessIsFoundByItsId)
{
    ZUL_process const* process = nullptr;
    RowsTag::Rows const rows = [&process](TagLayout& row) {
        row.fixed(12);
        row.process(8, "process id", process);
    };
    RowsTag tag(rows, &m_zul);
    loadFrom(tag, header(12).u32(3));
    EXPECT_EQ(process, m_process);
    EXPECT_EQ(savedBytes(tag), header(12).u32(3));
    EXPECT_EQ(visited(tag, header(12).u32(9)).at(8).kind, FieldKind::ProcessReference);
    EXPECT_EQ(process, m_process) << "a visit looks nothing up";
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(tag, header(12).u32(4), tagId));
    RowsTag free(rows);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(free, header(12).u32(3), tagId));
}

TEST_F(References, ModuleIsFoundByItsIndex)
{
    ZUL_module const* module = nullptr;
    RowsTag::Rows const rows = [&module](TagLayout& row) {
        row.fixed(12);
        row.module(8, "module index", module);
    };
    RowsTag tag(rows, &m_zul);
    loadFrom(tag, header(12).u32(5));
    EXPECT_EQ(module, m_module);
    EXPECT_EQ(savedBytes(tag), header(12).u32(5));
    EXPECT_EQ(visited(tag, header(12).u32(9)).at(8).kind, FieldKind::ModuleReference);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(tag, header(12).u32(6), tagId));
    EXPECT_EQ(module, m_module);
    RowsTag free(rows);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(free, header(12).u32(5), tagId));
}

TEST_F(References, UnknownModuleMayMakeATagMalformed)
{
    ZUL_module const* module = nullptr;
    RowsTag tag(
        [&module](TagLayout& row) {
            row.fixed(12);
            row.moduleElseMalformed(8, "module index", module);
        },
        &m_zul);
    loadFrom(tag, header(12).u32(5));
    EXPECT_EQ(module, m_module);
    EXPECT_EQ(savedBytes(tag), header(12).u32(5));
    EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(tag, header(12).u32(6), tagId));
    EXPECT_EQ(visited(tag, header(12).u32(9)).at(8).kind, FieldKind::ModuleReference);
}

TEST_F(References, RegisterIsFoundByItsName)
{
    ZUL_register const* reg = nullptr;
    RowsTag::Rows const rows = [&reg](TagLayout& row) {
        row.variable(12);
        auto const length = row.tailLength(8, 4, "length", reg == nullptr ? 0 : 3);
        row.total(length, "too big");
        row.tailRegisterName("register name", length, reg);
    };
    RowsTag tag(rows, &m_zul);
    loadFrom(tag, header(15).u32(3).chars("reg"));
    EXPECT_EQ(reg, m_register);
    EXPECT_EQ(savedBytes(tag), header(15).u32(3).chars("reg"));
    loadFrom(tag, header(17).u32(5).chars("reg").zeros(2));
    EXPECT_EQ(reg, m_register) << "a name ends at its first NUL";
    EXPECT_EQ(visited(tag, header(15).u32(3).chars("xyz")).at(12).kind, FieldKind::RegisterReference);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(tag, header(14).u32(2).chars("re"), tagId));
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(tag, header(12).u32(0), tagId));
    RowsTag free(rows);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(free, header(15).u32(3).chars("reg"), tagId));
}

// Variable parts.

TEST(Tails, LieBackToBack)
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

TEST(Tails, OfLengthZeroLeaveNoText)
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

TEST(Tails, VisitShowsWhatIsThereOfAHugeTail)
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

// Showing.

TEST(Visit, NamesAWrongLengthOnce)
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

TEST(Visit, NamesMissingBytes)
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

TEST(Visit, PayloadShorterThanItsFixedPartIsAProblem)
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
