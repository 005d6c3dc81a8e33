#include "ZUL_param.h"

#include "loading.h"
#include "modules.h"
#include "param_bytes.h"
#include "throwing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <stdexcept>
#include <string>

#include <sys/mman.h>

namespace {

constexpr std::uint32_t paramId = 0x0815A000;

class LoadedParam : public Modules {
protected:
    ZUL_param empty() { return {&zul, QL_ParamType{1}, nullptr}; }

    /// One that has a value of every kind behind it.
    ZUL_param used(std::uint32_t type)
    {
        ZUL_param parameter(&zul, QL_ParamType{type}, otherModule);
        parameter.setParamString("old text");
        parameter.setParamIndex(9);
        if (type == QL_SINTFIELD) {
            parameter.setField(threeElements().data(), ZUL_param::FIELD_INTEGER, 3);
        }
        return parameter;
    }

    testing::AssertionResult malformed(Bytes const& bytes)
    {
        ZUL_param parameter = empty();
        return loadThrows<ZUL_file_malformed_tag>(parameter, bytes, paramId);
    }

    testing::AssertionResult badLength(Bytes const& bytes)
    {
        ZUL_param parameter = empty();
        return loadThrows<ZUL_file_bad_tag_length>(parameter, bytes, paramId);
    }
};

} // namespace

TEST_F(LoadedParam, HasNameModuleFlagsAndType)
{
    ZUL_param parameter = used(13);
    EXPECT_EQ(loadFrom(parameter, integerParam(3)), 192U);
    EXPECT_STREQ(parameter.getName(), "threshold");
    EXPECT_EQ(parameter.getModule(), module);
    EXPECT_EQ(parameter.getFlags(), 0x80000001U);
    EXPECT_EQ(parameter.getType(), 3U);
    EXPECT_EQ(parameter.getFieldSize(), 0U);
    EXPECT_EQ(parameter.getParamIndex(), -1) << "the index is not in the file";
}

TEST_F(LoadedParam, NameThatFillsItsWidthLoadsWhole)
{
    Bytes bytes = integerParam();
    std::memset(bytes.data() + 16, 'n', 64);
    ZUL_param parameter = empty();
    loadFrom(parameter, bytes);
    EXPECT_EQ(parameter.getName(), std::string(64, 'n'));
    loadFrom(parameter, integerParam().setU8(16, 0));
    EXPECT_STREQ(parameter.getName(), "");
}

TEST_F(LoadedParam, IntegerTypesTakeTheInteger)
{
    for (std::uint32_t const type : {1U, 2U, 3U, 4U}) {
        ZUL_param parameter = used(6);
        loadFrom(parameter, integerParam(type));
        EXPECT_EQ(parameter.getValue(), 0xFEDCBA9876543210U);
        EXPECT_TRUE(std::isnan(parameter.getValueDouble()));
        EXPECT_EQ(parameter.getField(), nullptr);
    }
}

TEST_F(LoadedParam, DoubleTypeTakesTheDouble)
{
    ZUL_param parameter = used(13);
    EXPECT_EQ(loadFrom(parameter, doubleParam()), 192U);
    EXPECT_EQ(parameter.getValueDouble(), -0.125);
    EXPECT_EQ(parameter.getValue(), 0U);
    EXPECT_EQ(parameter.getParamString(), nullptr);
}

TEST_F(LoadedParam, DoubleKeepsEveryBit)
{
    constexpr std::uint64_t signallingNaN = 0x7FF0000000000001;
    Bytes bytes = doubleParam();
    std::memcpy(bytes.data() + 88, &signallingNaN, sizeof signallingNaN);
    ZUL_param parameter = empty();
    loadFrom(parameter, bytes);
    ZUL_param copy(parameter);
    std::uint64_t bits = 0;
    std::memcpy(&bits, savedBytes(copy).data() + 88, sizeof bits);
    EXPECT_EQ(bits, signallingNaN);
}

TEST_F(LoadedParam, FieldTypesBorrowTheElements)
{
    for (std::uint32_t const type : {6U, 7U, 8U}) {
        Bytes const bytes = fieldParam(type);
        ZUL_param parameter = used(13);
        EXPECT_EQ(parameter.Load(bytes.data(), bytes.size()), 216U);
        EXPECT_EQ(parameter.getField(), static_cast<void const*>(bytes.data() + 192));
        EXPECT_EQ(parameter.getFieldSize(), 3U);
        EXPECT_EQ(parameter.b_fieldlen(), 24U);
        EXPECT_EQ(parameter.getValue(), 0U);
        EXPECT_EQ(parameter.getParamString(), nullptr);
    }
}

TEST_F(LoadedParam, CopyOfABorrowedFieldOwnsItsElements)
{
    Bytes const bytes = fieldParam();
    ZUL_param parameter = empty();
    parameter.Load(bytes.data(), bytes.size());
    ZUL_param const copy(parameter);
    ASSERT_NE(copy.getField(), parameter.getField());
    EXPECT_EQ(std::memcmp(copy.getField(), threeElements().data(), 24), 0);
}

TEST_F(LoadedParam, BorrowedFieldGivesWayToAnOwnOne)
{
    Bytes const bytes = fieldParam();
    ZUL_param parameter = empty();
    parameter.Load(bytes.data(), bytes.size());
    parameter.setField(parameter.getField(), ZUL_param::FIELD_INTEGER, 2);
    EXPECT_NE(parameter.getField(), static_cast<void const*>(bytes.data() + 192));
    EXPECT_EQ(std::memcmp(parameter.getField(), threeElements().data(), 16), 0);
    parameter.Load(bytes.data(), bytes.size());
    parameter.setType(QL_ParamType{1});
    EXPECT_EQ(bytes, fieldParam()) << "the loaded bytes are not touched";
}

TEST_F(LoadedParam, TextTypesCopyTheText)
{
    for (std::uint32_t const type : {13U, 14U, 16U}) {
        ZUL_param parameter = used(6);
        EXPECT_EQ(loadFrom(parameter, textParam(type)), 198U);
        EXPECT_STREQ(parameter.getParamString(), "rising");
        EXPECT_EQ(parameter.getField(), nullptr);
        EXPECT_EQ(parameter.getFieldSize(), 0U);
    }
}

TEST_F(LoadedParam, TextEndsAtItsFirstNul)
{
    ZUL_param parameter = empty();
    loadFrom(parameter, textParam(13, {"ri\0ing", 6}));
    EXPECT_STREQ(parameter.getParamString(), "ri");
    EXPECT_EQ(parameter.getSaveLength(), 194U);
    loadFrom(parameter, textParam(13, {"\0\0", 2}));
    EXPECT_STREQ(parameter.getParamString(), "");
}

TEST_F(LoadedParam, TextOfLengthZeroIsAbsent)
{
    ZUL_param parameter = used(13);
    EXPECT_EQ(loadFrom(parameter, textParam(13, "")), 192U);
    EXPECT_EQ(parameter.getParamString(), nullptr);
}

TEST_F(LoadedParam, SavesBackTheSameBytes)
{
    for (Bytes const& bytes : {fieldParam(8), textParam(16), integerParam(4), doubleParam()}) {
        ZUL_param parameter = empty();
        parameter.Load(bytes.data(), bytes.size());
        Bytes expected = bytes;
        std::uint64_t const zero = 0;
        if (parameter.getType() != 4) { // the value of another type is not carried on
            std::memcpy(expected.data() + 80, &zero, 8);
        }
        if (parameter.getType() != 5) {
            std::memcpy(expected.data() + 88, &zero, 8);
        }
        EXPECT_EQ(savedBytes(parameter), expected);
    }
}

TEST_F(LoadedParam, WithoutContainerIsALogicErrorBeforeAnythingElse)
{
    ZUL_param parameter(nullptr, QL_ParamType{1}, module);
    constexpr char const* orphaned = "loading orphaned tag without parent is invalid";
    EXPECT_TRUE(throws<std::logic_error>([&] { loadFrom(parameter, integerParam()); }, orphaned));
    EXPECT_TRUE(throws<std::logic_error>([&] { loadFrom(parameter, Bytes()); }, orphaned));
}

TEST_F(LoadedParam, EveryShorterBufferIsABadLength)
{
    for (Bytes const& bytes : {integerParam(), doubleParam(), fieldParam(), textParam()}) {
        for (std::size_t avail = 0; avail < bytes.size(); ++avail) {
            EXPECT_TRUE(badLength(Bytes(bytes).cut(avail))) << avail;
        }
    }
}

TEST_F(LoadedParam, LengthFieldHasToBeTheSum)
{
    for (Bytes const& bytes : {integerParam(), doubleParam(), fieldParam(), textParam()}) {
        auto const honest = static_cast<std::uint32_t>(bytes.size());
        for (std::uint32_t const stated : {0U, 8U, 191U, honest - 1, honest + 1, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
            EXPECT_TRUE(badLength(Bytes(bytes).setU32(4, stated).zeros(16))) << honest << ", not " << stated;
        }
    }
}

TEST_F(LoadedParam, SumsThatDoNotFit32BitsAreBadLengths)
{
    EXPECT_TRUE(badLength(fieldParam().setU32(104, 0x20000003))) << "times 8 and cut to 32 bits: 24";
    EXPECT_TRUE(badLength(fieldParam().setU32(104, 0xFFFFFFFF)));
    EXPECT_TRUE(badLength(textParam().setU32(120, 0xFFFFFFFF)));
    EXPECT_TRUE(badLength(fieldParam().setU32(104, 0x1FFFFFFF).setU32(120, 32))) << "cut to 32 bits: 24";
}

TEST_F(LoadedParam, BytesBehindTheTagAreNotItsOwn)
{
    ZUL_param parameter = empty();
    EXPECT_EQ(loadFrom(parameter, textParam().chars("more")), 198U);
    EXPECT_STREQ(parameter.getParamString(), "rising");
}

TEST_F(LoadedParam, UnknownModuleIsADanglingReference)
{
    ZUL_param parameter = used(13);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(parameter, integerParam().setU32(8, nobody), paramId));
    EXPECT_EQ(parameter.getModule(), otherModule);
    EXPECT_STREQ(parameter.getParamString(), "old text");
}

TEST_F(LoadedParam, ModuleIsLookedUpBeforeTheLengthsAreAddedUp)
{
    ZUL_param parameter = empty();
    Bytes const wrongLength = integerParam().setU32(8, nobody).setU32(4, 193);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(parameter, wrongLength, paramId));
    Bytes const tooShort = integerParam().setU32(8, nobody).cut(191);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(parameter, tooShort, paramId));
}

TEST_F(LoadedParam, TypeHasToHaveAValue)
{
    for (std::uint32_t const type : {0U, 9U, 10U, 11U, 12U, 15U, 17U, 32U + 13, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_TRUE(malformed(paramBytes({.type = type}))) << type;
        EXPECT_TRUE(badLength(paramBytes({.type = type}).setU32(4, 193).u8(0)))
            << type << ": lengths come first";
    }
}

TEST_F(LoadedParam, ElementsNeedAFieldType)
{
    for (std::uint32_t const type : {1U, 5U, 13U}) {
        EXPECT_TRUE(malformed(paramBytes({.type = type, .elements = 1}))) << type;
        EXPECT_TRUE(badLength(paramBytes({.type = type, .elements = 1}, Bytes().u64(0)))) << type;
    }
}

TEST_F(LoadedParam, FieldTypeNeedsElements)
{
    for (std::uint32_t const type : {6U, 7U, 8U}) {
        EXPECT_TRUE(malformed(paramBytes({.type = type}))) << type;
    }
}

TEST_F(LoadedParam, TextNeedsATextType)
{
    for (std::uint32_t const type : {1U, 2U, 3U, 4U, 5U, 9U}) {
        EXPECT_TRUE(malformed(paramBytes({.type = type, .characters = 4}, Bytes().chars("text")))) << type;
    }
    for (std::uint32_t const type : {6U, 7U, 8U}) {
        Bytes const both = threeElements().chars("text");
        EXPECT_TRUE(malformed(paramBytes({.type = type, .elements = 3, .characters = 4}, both))) << type;
    }
}

TEST_F(LoadedParam, RefusedLoadLeavesTheValueAndItsTypeTogether)
{
    ZUL_param field = used(6);
    EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(field, paramBytes({.type = 8}), paramId));
    EXPECT_EQ(field.getType(), 6U);
    EXPECT_EQ(field.b_fieldlen(), 24U);
    EXPECT_EQ(std::memcmp(field.getField(), threeElements().data(), 24), 0);
    ZUL_param text = used(13);
    EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(text, paramBytes({.type = 14, .elements = 1}), paramId));
    EXPECT_EQ(text.getType(), 13U);
    EXPECT_STREQ(text.getParamString(), "old text");
}

TEST_F(LoadedParam, LargestFieldIsBorrowedWithoutBeingTouched)
{
    constexpr std::uint32_t most = (0xFFFFFFFF - 192) / 8;
    constexpr std::size_t size = 192 + std::size_t{most} * 8;
    void* const space =
        mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(space, MAP_FAILED);
    Bytes const head = paramBytes({.type = 6, .elements = most}).setU32(4, static_cast<std::uint32_t>(size));
    std::memcpy(space, head.data(), head.size());
    ZUL_param parameter = empty();
    EXPECT_EQ(parameter.Load(space, size), size);
    EXPECT_EQ(parameter.b_fieldlen(), size - 192);
    EXPECT_EQ(parameter.getSaveLength(), size);
    munmap(space, size);
}
