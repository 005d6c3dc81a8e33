#include "ZUL_param.h"

#include "huge_text.h"
#include "modules.h"
#include "param_bytes.h"
#include "throwing.h"
#include "zul_errors.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

constexpr char const* noModule = "Tried to save ZUL_param without assigning a ZUL_module. Not allowed.";
constexpr char const* unsaveable = "Save Zul Param: Tried to write an unimplemented type";
constexpr char const* noElements = "field without elements";
constexpr char const* tooBig = "The size of a parameter description grew to big to save it!";

class SavedParam : public Modules {
protected:
    ZUL_param of(std::uint32_t type)
    {
        ZUL_param parameter(&zul, QL_ParamType{type}, module);
        parameter.setName("threshold");
        parameter.setFlags(0x80000001);
        return parameter;
    }

    ZUL_param field(std::uint32_t type)
    {
        ZUL_param parameter = of(type);
        parameter.setField(threeElements().data(),
                           type == 8 ? ZUL_param::FIELD_DOUBLE : ZUL_param::FIELD_INTEGER, 3);
        return parameter;
    }

    /// Into clean buffers and into used ones.
    static void expectSaved(ZUL_param& parameter, ParamNumbers const& numbers, Bytes const& tail = {})
    {
        EXPECT_EQ(parameter.getSaveLength(), 192 + tail.size());
        EXPECT_EQ(savedBytes(parameter), paramBytes(numbers, tail));
        EXPECT_EQ(savedBytes(parameter, 0xA5), paramBytes(numbers, tail, 0xA5));
    }

    template <class Error>
    static void expectNeitherMeasuredNorSaved(ZUL_param& parameter, char const* message)
    {
        Bytes buffer = Bytes().fill(0xA5, 300);
        EXPECT_TRUE(throws<Error>([&] { parameter.getSaveLength(); }, message));
        EXPECT_TRUE(throws<Error>([&] { parameter.Save(buffer.data()); }, message));
        EXPECT_EQ(buffer, Bytes().fill(0xA5, 300)) << "nothing is written";
    }

    /// Rows before the one that finds the length may have been written.
    static void expectTooBig(ZUL_param& parameter)
    {
        Bytes buffer = Bytes().fill(0, 192);
        EXPECT_TRUE(throws<std::runtime_error>([&] { parameter.getSaveLength(); }, tooBig));
        EXPECT_TRUE(throws<std::runtime_error>([&] { parameter.Save(buffer.data()); }, tooBig));
    }
};

} // namespace

TEST_F(SavedParam, IntegerStandsAt80)
{
    for (std::uint32_t const type : {1U, 2U, 3U, 4U}) {
        ZUL_param parameter = of(type);
        parameter.setValue(0xFEDCBA9876543210ULL);
        expectSaved(parameter, {.type = type, .integer = 0xFEDCBA9876543210});
    }
}

TEST_F(SavedParam, DoubleStandsAt88)
{
    ZUL_param parameter = of(5);
    parameter.setValue(-0.125);
    expectSaved(parameter, {.type = 5, .real = -0.125});
}

TEST_F(SavedParam, FieldStandsBehindTheFixedPart)
{
    for (std::uint32_t const type : {6U, 7U, 8U}) {
        ZUL_param parameter = field(type);
        EXPECT_EQ(parameter.getSaveLength(), 216U);
        expectSaved(parameter, {.type = type, .elements = 3}, threeElements());
    }
}

TEST_F(SavedParam, TextStandsBehindTheFixedPartWithoutTerminator)
{
    for (std::uint32_t const type : {13U, 14U, 16U}) {
        ZUL_param parameter = of(type);
        parameter.setParamString("rising");
        expectSaved(parameter, {.type = type, .characters = 6}, Bytes().chars("rising"));
    }
}

TEST_F(SavedParam, EmptyAndAbsentTextsAre192Bytes)
{
    ZUL_param parameter = of(13);
    expectSaved(parameter, {.type = 13});
    parameter.setParamString("");
    expectSaved(parameter, {.type = 13});
}

TEST_F(SavedParam, CountOfAnEarlierFieldIsNotSavedWithAnotherType)
{
    ZUL_param parameter = field(6);
    parameter.setType(QL_ParamType{1});
    expectSaved(parameter, {.type = 1});
    parameter.setType(QL_ParamType{13});
    expectSaved(parameter, {.type = 13});
}

TEST_F(SavedParam, NameThatFillsItsWidthHasNoTerminator)
{
    ZUL_param parameter = of(1);
    parameter.setName(std::string(64, 'n').c_str());
    Bytes const saved = savedBytes(parameter, 0xA5);
    EXPECT_EQ(std::string(reinterpret_cast<char const*>(saved.data()) + 16, 64), std::string(64, 'n'));
    parameter.setName(nullptr);
    Bytes const nameless = savedBytes(parameter, 0xA5);
    EXPECT_EQ(std::string(reinterpret_cast<char const*>(nameless.data()) + 16, 64), std::string(64, '\0'));
}

TEST_F(SavedParam, WithoutModuleIsNeitherMeasuredNorSaved)
{
    ZUL_param parameter(&zul, QL_ParamType{9}, nullptr);
    EXPECT_TRUE(throws<std::runtime_error>([&] { parameter.checkDependentFields(); }, noModule));
    expectNeitherMeasuredNorSaved<std::runtime_error>(parameter,
                                                      noModule); // even though the type is wrong too
    parameter.setModule(module);
    EXPECT_NO_THROW(parameter.checkDependentFields());
}

TEST_F(SavedParam, TypeWithoutValueIsNeitherMeasuredNorSaved)
{
    for (std::uint32_t const type : {0U, 9U, 10U, 11U, 12U, 15U, 17U, 0x80000000U, 0xFFFFFFFFU}) {
        ZUL_param parameter = of(type);
        expectNeitherMeasuredNorSaved<std::invalid_argument>(parameter, unsaveable);
    }
}

TEST_F(SavedParam, FieldThatNeverHadElementsIs192Bytes)
{
    for (std::uint32_t const type : {6U, 7U, 8U}) {
        ZUL_param parameter = of(type);
        expectSaved(parameter, {.type = type});
    }
}

TEST_F(SavedParam, FieldWhoseElementsAreGoneIsNeitherMeasuredNorSaved)
{
    ZUL_param parameter = field(6);
    for (std::uint32_t const type : {7U, 8U, 6U}) {
        parameter.setType(QL_ParamType{type});
        expectNeitherMeasuredNorSaved<ZUL_invalid_data>(parameter, noElements);
    }
    parameter.setField(threeElements().data(), ZUL_param::FIELD_INTEGER, 3);
    EXPECT_EQ(parameter.getSaveLength(), 216U);
}

#if HUGE_TEXTS_ARE_CHEAP
TEST_F(SavedParam, TextHasToFitTheLengthField)
{
    constexpr std::size_t longest = 0xFFFFFFFF - 192;
    ZUL_param parameter = of(13);
    parameter.setParamString(HugeText(longest).get());
    EXPECT_EQ(parameter.getSaveLength(), 0xFFFFFFFFU);
    parameter.setParamString(nullptr);
    parameter.setParamString(HugeText(longest + 1).get());
    expectTooBig(parameter);
}

TEST_F(SavedParam, FieldHasToFitTheLengthField)
{
    constexpr unsigned int most = (0xFFFFFFFF - 192) / 8;
    HugeText const data((most + 1UL) * 8);
    ZUL_param parameter = of(6);
    parameter.setField(data.get(), ZUL_param::FIELD_INTEGER, most);
    EXPECT_EQ(parameter.getSaveLength(), 192U + most * 8UL);
    parameter.setField(data.get(), ZUL_param::FIELD_INTEGER, most + 1);
    expectTooBig(parameter);
}
#endif
