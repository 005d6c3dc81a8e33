#include "tag_field.h"

#include "bytes.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

/// A field that shows the whole of @p bytes, of a width that may be larger.
TagField fieldOf(Bytes const& bytes, std::uint64_t width)
{
    return {8, width, FieldKind::Unsigned, "field", {bytes.data(), bytes.size()}};
}

/// Looks at the fields only.
class FieldCount : public FieldVisitor {
public:
    void field(TagField const&) override { ++count; }

    int count = 0;
};

} // namespace

TEST(FieldVisitor, NeedNotLookAtProblems)
{
    FieldCount visitor;
    FieldVisitor& visits = visitor;
    visits.problem({TagProblem::Kind::BadLength, 4, 4, "length", "80", "79"});
    visits.field(fieldOf(Bytes().u32(79), 4));
    EXPECT_EQ(visitor.count, 1);
}

TEST(TagField, NumberIsLittleEndianAndUnsigned)
{
    EXPECT_EQ(fieldOf(Bytes().u8(0xFE), 1).number(), 0xFEU);
    EXPECT_EQ(fieldOf(Bytes().u8(0x34).u8(0x12), 2).number(), 0x1234U);
    EXPECT_EQ(fieldOf(Bytes().u8(0x78).u8(0x56).u8(0x34).u8(0xF2), 4).number(), 0xF2345678U);
    EXPECT_EQ(fieldOf(Bytes().u64(0xF123456789ABCDEF), 8).number(), 0xF123456789ABCDEFU);
}

TEST(TagField, SignedNumberExtendsItsSign)
{
    EXPECT_EQ(fieldOf(Bytes().u8(0x7F), 1).signedNumber(), 127);
    EXPECT_EQ(fieldOf(Bytes().u8(0x80), 1).signedNumber(), -128);
    EXPECT_EQ(fieldOf(Bytes().u16(0xFFFE), 2).signedNumber(), -2);
    EXPECT_EQ(fieldOf(Bytes().u32(0x80000000), 4).signedNumber(), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(fieldOf(Bytes().u32(5), 4).signedNumber(), 5);
    EXPECT_EQ(fieldOf(Bytes().u64(0x8000000000000000), 8).signedNumber(),
              std::numeric_limits<std::int64_t>::min());
}

TEST(TagField, RealIsADouble)
{
    EXPECT_EQ(fieldOf(Bytes().real(-0.5), 8).real(), -0.5);
}

TEST(TagField, MissingBytesMakeNoNumber)
{
    EXPECT_EQ(fieldOf(Bytes().u8(1).u8(2).u8(3), 4).number(), 0U);
    EXPECT_EQ(fieldOf(Bytes().u8(0xFF), 2).signedNumber(), 0);
    EXPECT_EQ(fieldOf(Bytes().u32(0xFFFFFFFF), 8).real(), 0.0);
    EXPECT_EQ(fieldOf(Bytes(), 4).number(), 0U);
}

TEST(TagField, WiderThanANumberOrWithoutWidthIsZero)
{
    EXPECT_EQ(fieldOf(Bytes().fill(0xFF, 16), 16).number(), 0U);
    EXPECT_EQ(fieldOf(Bytes().fill(0xFF, 16), 16).signedNumber(), 0);
    EXPECT_EQ(fieldOf(Bytes(), 0).signedNumber(), 0);
}

TEST(TagField, TextEndsAtItsFirstNulOrWithTheBytes)
{
    EXPECT_EQ(fieldOf(Bytes().text("control", 16), 16).text(), "control");
    EXPECT_EQ(fieldOf(Bytes().chars("control"), 7).text(), "control");
    EXPECT_EQ(fieldOf(Bytes().chars("cont"), 7).text(), "cont");
    EXPECT_EQ(fieldOf(Bytes().chars("a").zeros(1).chars("b"), 3).text(), "a");
    EXPECT_EQ(fieldOf(Bytes().zeros(8), 8).text(), "");
    EXPECT_EQ(fieldOf(Bytes(), 8).text(), "");
}
