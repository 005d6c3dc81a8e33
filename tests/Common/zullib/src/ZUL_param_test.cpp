#include "ZUL_param.h"

#include "params.h"
#include "throwing.h"
#include "zul_errors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>

namespace {

constexpr std::uint32_t real = 5;
constexpr auto fields = std::to_array<std::uint32_t>({6, 7, 8});
constexpr char const* noElements = "field without elements";

} // namespace

TEST(ParamType, FieldsHaveTheNumbersThatFilesUse)
{
    EXPECT_EQ(std::uint32_t{QL_DOUBLEFIELD}, 8U);
    EXPECT_EQ(std::uint32_t{QL_SINTFIELD} + std::uint32_t{QL_UINTFIELD}, 13U);
    EXPECT_EQ(std::uint32_t{ZUL_param::FIELD_INTEGER}, 1U);
    EXPECT_EQ(std::uint32_t{ZUL_param::FIELD_DOUBLE}, 2U);
    static_assert(sizeof(QL_ParamType) == 4);
}

TEST_F(Param, NewOneHasNothing)
{
    ZUL_param const parameter(&zul, numbered(2), module);
    EXPECT_EQ(parameter.getType(), 2U);
    EXPECT_EQ(parameter.getModule(), module);
    EXPECT_EQ(parameter.getModuleIndex(), 5);
    EXPECT_EQ(parameter.getName(), nullptr);
    EXPECT_EQ(parameter.getFlags(), 0U);
    EXPECT_EQ(parameter.getParamIndex(), -1);
    EXPECT_EQ(parameter.getFieldSize(), 0U);
    EXPECT_EQ(parameter.getTagId(), 0x0815A000U);
    EXPECT_EQ(parameter.getParent(), &zul);
    expectNoValue(parameter);
}

TEST_F(Param, SettersAreSeenByGetters)
{
    ZUL_param parameter = of(1);
    parameter.setModule(otherModule);
    parameter.setFlags(0xFFFFFFFF);
    parameter.setParamIndex(-7);
    EXPECT_EQ(parameter.getModule(), otherModule);
    EXPECT_EQ(parameter.getModuleIndex(), 6);
    EXPECT_EQ(parameter.getFlags(), 0xFFFFFFFFU);
    EXPECT_EQ(parameter.getParamIndex(), -7);
}

TEST_F(Param, ModuleIndexWithoutModuleIsMinusOne)
{
    EXPECT_EQ(ZUL_param(&zul, numbered(1), nullptr).getModuleIndex(), -1);
}

TEST_F(Param, NameIsCutAt64Characters)
{
    ZUL_param parameter = of(1);
    parameter.setName(std::string(70, 'n').c_str());
    EXPECT_EQ(parameter.getName(), std::string(64, 'n'));
    parameter.setName("");
    EXPECT_STREQ(parameter.getName(), "");
    parameter.setName(nullptr);
    EXPECT_EQ(parameter.getName(), nullptr);
}

TEST_F(Param, StringTypesAre13And14And16)
{
    ZUL_param const parameter = of(1);
    for (std::uint32_t type = 0; type < 100; ++type) {
        EXPECT_EQ(parameter.isStringType(numbered(type)), type == 13 || type == 14 || type == 16) << type;
    }
    for (std::uint32_t const type : {32U + 13, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_FALSE(parameter.isStringType(numbered(type))) << type;
    }
}

TEST_F(Param, OnlyIntegerTypesHaveAnInteger)
{
    for (std::uint32_t type = 0; type < 20; ++type) {
        ZUL_param parameter = of(type);
        parameter.setValue(0xFEDCBA9876543210ULL);
        EXPECT_EQ(parameter.getValue(), type >= 1 && type <= 4 ? 0xFEDCBA9876543210U : 0U) << type;
    }
}

TEST_F(Param, OnlyTheDoubleTypeHasADoubleAllOthersAreNaN)
{
    for (std::uint32_t type = 0; type < 20; ++type) {
        ZUL_param parameter = of(type);
        parameter.setValue(2.5);
        if (type == real) {
            EXPECT_EQ(parameter.getValueDouble(), 2.5);
        } else {
            EXPECT_TRUE(std::isnan(parameter.getValueDouble())) << type;
            expectNoValue(parameter);
        }
    }
}

TEST_F(Param, DoubleParameterAnswersZeroAsInteger)
{
    ZUL_param parameter = of(real);
    parameter.setValue(2.5);
    EXPECT_EQ(parameter.getValue(), 0U);
    parameter.setValue(7ULL);
    EXPECT_EQ(parameter.getValueDouble(), 2.5);
}

TEST_F(Param, OnlyTextTypesHaveAText)
{
    for (std::uint32_t type = 0; type < 20; ++type) {
        ZUL_param parameter = of(type);
        parameter.setParamString("text");
        if (parameter.isStringType(numbered(type))) {
            EXPECT_STREQ(parameter.getParamString(), "text") << type;
        } else {
            EXPECT_EQ(parameter.getParamString(), nullptr) << type;
        }
    }
}

TEST_F(Param, TextIsKeptWholeAndNullLeavesNone)
{
    std::string const text(100'000, 't');
    ZUL_param parameter = of(14);
    parameter.setParamString(text.c_str());
    EXPECT_EQ(parameter.getParamString(), text);
    parameter.setParamString(parameter.getParamString());
    EXPECT_EQ(parameter.getParamString(), text) << "a text may set itself";
    parameter.setParamString("");
    EXPECT_STREQ(parameter.getParamString(), "");
    parameter.setParamString(nullptr);
    EXPECT_EQ(parameter.getParamString(), nullptr);
}

TEST_F(Param, TextOfAnotherTypeIsLeftAlone)
{
    ZUL_param parameter = field(6);
    parameter.setParamString("text");
    expectElements(parameter);
}

TEST_F(Param, FieldIsCopied)
{
    for (std::uint32_t const type : fields) {
        ZUL_param const parameter = field(type);
        EXPECT_NE(parameter.getField(), static_cast<void const*>(elements.data()));
        expectElements(parameter);
    }
}

TEST_F(Param, FieldIsReplaced)
{
    ZUL_param parameter = field(6);
    std::uint64_t const one = 42;
    parameter.setField(&one, ZUL_param::FIELD_INTEGER, 1);
    EXPECT_EQ(parameter.getFieldSize(), 1U);
    EXPECT_EQ(parameter.b_fieldlen(), 8U);
    EXPECT_EQ(std::memcmp(parameter.getField(), &one, 8), 0);
}

TEST_F(Param, FieldMaySetItself)
{
    ZUL_param parameter = field(7);
    parameter.setField(parameter.getField(), ZUL_param::FIELD_INTEGER, 3);
    expectElements(parameter);
}

TEST_F(Param, FieldWithoutElementsIsRefusedBeforeAnythingElse)
{
    ZUL_param parameter = field(6);
    auto const none = [&](std::uint32_t kind) {
        return throws<ZUL_invalid_data>(
            [&] { parameter.setField(elements.data(), ZUL_param::fieldType{kind}, 0); }, noElements);
    };
    EXPECT_TRUE(none(1));
    EXPECT_TRUE(none(2));
    EXPECT_TRUE(none(3));
    expectElements(parameter);
}

TEST_F(Param, FieldOfNothingIsRefused)
{
    ZUL_param parameter = field(6);
    EXPECT_TRUE(throws<ZUL_invalid_data>([&] { parameter.setField(nullptr, ZUL_param::FIELD_INTEGER, 3); },
                                         noElements));
    expectElements(parameter);
}

TEST_F(Param, UnknownKindOfFieldIsRefusedWhateverTheType)
{
    for (std::uint32_t const type : {1U, 6U, 8U, 13U}) {
        for (std::uint32_t const kind : {0U, 3U, 0xFFFFFFFFU}) {
            ZUL_param parameter = of(type);
            auto const set = [&] { parameter.setField(elements.data(), ZUL_param::fieldType{kind}, 3); };
            EXPECT_TRUE(throws<ZUL_invalid_data>(set, "type parameter is invalid")) << type << ", " << kind;
        }
    }
}

TEST_F(Param, KindOfFieldHasToFitTheType)
{
    for (std::uint32_t type = 0; type < 20; ++type) {
        ZUL_param parameter = of(type);
        auto const setDoubles = [&] { parameter.setField(elements.data(), ZUL_param::FIELD_DOUBLE, 3); };
        auto const setIntegers = [&] { parameter.setField(elements.data(), ZUL_param::FIELD_INTEGER, 3); };
        if (type != 8) {
            EXPECT_TRUE(throws<ZUL_inconsistent_data>(
                setDoubles, "FIELD_DOUBLE data but parameter is not QL_DOUBLEFIELD"))
                << type;
        }
        if (type != 6 && type != 7) {
            EXPECT_TRUE(throws<ZUL_inconsistent_data>(
                setIntegers, "FIELD_INTEGER data but parameter is not QL_SINTFIELD or QL_UINTFIELD"))
                << type;
        }
        EXPECT_EQ(parameter.getFieldSize(), 0U);
        expectNoValue(parameter);
    }
}

TEST_F(Param, SettingTheSameTypeKeepsTheValue)
{
    ZUL_param parameter = of(3);
    parameter.setValue(42ULL);
    parameter.setType(numbered(3));
    EXPECT_EQ(parameter.getValue(), 42U);
}

TEST_F(Param, SettingAnotherTypeDiscardsTheValue)
{
    ZUL_param parameter = of(1);
    auto const change = [&](std::uint32_t type) {
        parameter.setType(numbered(type));
        EXPECT_EQ(parameter.getType(), type);
        expectNoValue(parameter);
    };
    parameter.setValue(42ULL);
    change(2);
    parameter.setValue(42ULL);
    change(real);
    parameter.setValue(2.5);
    change(13);
    parameter.setParamString("text");
    change(14);
    parameter.setParamString("text");
    change(6);
    setElements(parameter);
    change(7);
    setElements(parameter);
    change(8);
    setElements(parameter);
    change(16);
    parameter.setParamString("text");
    change(1);
    change(4711);
}

TEST_F(Param, SettingAnotherTypeKeepsTheNumberOfElements)
{
    ZUL_param parameter = field(6);
    parameter.setType(numbered(1));
    EXPECT_EQ(parameter.getFieldSize(), 3U);
    EXPECT_EQ(parameter.b_fieldlen(), 0U);
    parameter.setType(numbered(8));
    EXPECT_EQ(parameter.getFieldSize(), 3U);
    EXPECT_EQ(parameter.b_fieldlen(), 24U);
    EXPECT_EQ(parameter.getField(), nullptr);
}

TEST_F(Param, FieldLengthIsOfFieldTypesOnly)
{
    ZUL_param parameter = field(6);
    for (std::uint32_t type = 0; type < 20; ++type) {
        parameter.setType(numbered(type));
        EXPECT_EQ(parameter.b_fieldlen(), type >= 6 && type <= 8 ? 24U : 0U) << type;
    }
}
