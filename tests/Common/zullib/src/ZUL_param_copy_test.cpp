#include "ZUL_param.h"

#include "params.h"
#include "throwing.h"
#include "zul_errors.h"

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>

namespace {

constexpr auto integers = std::to_array<std::uint32_t>({1, 2, 3, 4});
constexpr std::uint32_t real = 5;
constexpr auto fields = std::to_array<std::uint32_t>({6, 7, 8});
constexpr auto texts = std::to_array<std::uint32_t>({13, 14, 16});
constexpr auto valueless = std::to_array<std::uint32_t>({0, 9, 10, 11, 12, 15, 17, 0x80000000, 0xFFFFFFFF});
constexpr char const* noElements = "field without elements";

} // namespace

TEST_F(Param, CopiesHaveEverythingButTheContainer)
{
    ZUL_param source = of(4);
    source.setName("threshold");
    source.setFlags(9);
    source.setParamIndex(12);
    source.setValue(42ULL);
    ZUL_param const copy(source);
    ZUL_param const copyOfPointer(&source);
    for (ZUL_param const* const each : {&copy, &copyOfPointer}) {
        EXPECT_STREQ(each->getName(), "threshold");
        EXPECT_NE(each->getName(), source.getName()) << "the name is not shared";
        EXPECT_EQ(each->getModule(), module);
        EXPECT_EQ(each->getFlags(), 9U);
        EXPECT_EQ(each->getParamIndex(), 12);
        EXPECT_EQ(each->getType(), 4U);
        EXPECT_EQ(each->getValue(), 42U);
        EXPECT_EQ(each->getParent(), nullptr);
    }
}

TEST_F(Param, AssignmentTakesOverTheValueOfEveryType)
{
    for (std::uint32_t const type : integers) {
        ZUL_param source = of(type);
        source.setValue(42ULL);
        ZUL_param target = field(6);
        target = source;
        EXPECT_EQ(target.getValue(), 42U);
        EXPECT_EQ(target.getField(), nullptr);
    }
    ZUL_param target = field(6);
    ZUL_param source = of(real);
    source.setValue(2.5);
    target = source;
    EXPECT_EQ(target.getValueDouble(), 2.5);
    for (std::uint32_t const type : texts) {
        source = of(type);
        source.setParamString("text");
        target = source;
        EXPECT_STREQ(target.getParamString(), "text");
        EXPECT_NE(target.getParamString(), source.getParamString()) << "the text is not shared";
    }
    for (std::uint32_t const type : fields) {
        source = field(type);
        target = source;
        expectElements(target);
        EXPECT_NE(target.getField(), source.getField()) << "the elements are not shared";
    }
    EXPECT_EQ(target.getParent(), &zul);
}

TEST_F(Param, CopyOfAnAbsentTextIsAnEmptyText)
{
    for (std::uint32_t const type : texts) {
        ZUL_param const source = of(type);
        EXPECT_EQ(source.getParamString(), nullptr);
        EXPECT_STREQ(ZUL_param(source).getParamString(), "");
    }
}

TEST_F(Param, CopyKeepsTheNumberOfElementsOfAnEarlierType)
{
    ZUL_param source = field(6);
    source.setType(numbered(1));
    EXPECT_EQ(ZUL_param(source).getFieldSize(), 3U);
}

TEST_F(Param, AssignmentToItselfChangesNothing)
{
    ZUL_param parameter = field(8);
    parameter.setName("threshold");
    void const* const before = parameter.getField();
    ZUL_param const& same = parameter;
    parameter = same;
    expectElements(parameter);
    EXPECT_EQ(parameter.getField(), before);
    EXPECT_STREQ(parameter.getName(), "threshold");
    ZUL_param invalid = of(9);
    ZUL_param const& sameInvalid = invalid;
    EXPECT_NO_THROW(invalid = sameInvalid);
}

TEST_F(Param, TypeWithoutValueCannotBeCopied)
{
    constexpr char const* message = "Zul Param: Tried to assign an invalid type.";
    for (std::uint32_t const type : valueless) {
        ZUL_param const source = of(type);
        ZUL_param target = field(6);
        EXPECT_TRUE(throws<std::runtime_error>([&] { target = source; }, message)) << type;
        EXPECT_TRUE(throws<std::runtime_error>([&] { ZUL_param const copy(source); }, message)) << type;
        expectElements(target);
        EXPECT_EQ(target.getType(), 6U) << "nothing is changed";
    }
}

TEST_F(Param, FieldWithoutElementsCannotBeCopied)
{
    for (std::uint32_t const type : fields) {
        ZUL_param const fresh = of(type);
        EXPECT_TRUE(throws<ZUL_invalid_data>([&] { ZUL_param const copy(fresh); }, noElements)) << type;
        ZUL_param emptied = field(type);
        emptied.setType(numbered(type == 6 ? 7 : 6));
        EXPECT_TRUE(throws<ZUL_invalid_data>([&] { ZUL_param const copy(emptied); }, noElements)) << type;
        ZUL_param target = of(1);
        target.setValue(42ULL);
        EXPECT_TRUE(throws<ZUL_invalid_data>([&] { target = emptied; }, noElements)) << type;
        EXPECT_EQ(target.getValue(), 42U) << "nothing is changed";
    }
}
