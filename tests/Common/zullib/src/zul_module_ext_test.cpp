#include "zul_module_ext.h"

#include "ZUL_channel_param.h"
#include "ZUL_param.h"
#include "modules.h"
#include "param_bytes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <type_traits>

// The records are read by callers that were compiled against them: fields are named by their bytes here.

namespace {

template <class Field, class Record>
Field fieldAt(Record const* record, std::size_t offset)
{
    static_assert(std::is_standard_layout_v<Record> && std::is_trivially_copyable_v<Record>);
    Field field;
    std::memcpy(&field, reinterpret_cast<std::byte const*>(record) + offset, sizeof field);
    return field;
}

template <class Record>
std::string nameAt(Record const* record, std::size_t offset)
{
    return {reinterpret_cast<char const*>(record) + offset, 64};
}

std::string padded(std::string const& name)
{
    return name + std::string(64 - name.size(), '\0');
}

class ModuleExtension : public Modules {
protected:
    ZUL_param parameter(std::uint32_t type, char const* name = "threshold") const
    {
        ZUL_param tag(nullptr, QL_ParamType{type}, module);
        tag.setName(name);
        tag.setFlags(0x80000001);
        return tag;
    }

    zul_module_ext extension{module};
};

} // namespace

TEST_F(ModuleExtension, NewOneIsEmpty)
{
    EXPECT_EQ(extension.getModule(), module);
    EXPECT_EQ(extension.GetModuleIndex(), 0);
    EXPECT_EQ(extension.GetProcessId(), 3U);
    EXPECT_EQ(extension.GetNrOfParam(), 0U);
    EXPECT_EQ(extension.GetNrOfChannel(), 0U);
    EXPECT_EQ(extension.getParam(0), nullptr);
    EXPECT_EQ(extension.GetParam(0), nullptr);
    EXPECT_EQ(extension.GetChannel(0), nullptr);
    EXPECT_EQ(extension.getLibraryFileName(), nullptr);
    EXPECT_EQ(extension.getFactoryName(), nullptr);
}

TEST_F(ModuleExtension, ModuleIndexIsThePositionNotTheIndexOfTheTag)
{
    extension.setIndex(-4);
    EXPECT_EQ(extension.GetModuleIndex(), -4);
    EXPECT_EQ(module->getIndex(), 5);
}

TEST_F(ModuleExtension, ProcessIdIsAskedOfTheModule)
{
    module->setProcess(otherProcess);
    EXPECT_EQ(extension.GetProcessId(), 4U);
    module->setProcess(nullptr);
    EXPECT_EQ(extension.GetProcessId(), 0xFFFFFFFFU);
}

TEST_F(ModuleExtension, KeepsTheNamesOfTheOperatorLibrary)
{
    extension.setLibraryFileName("libBuffer.dylib");
    extension.setFactoryName("BufferQelLocalCreate");
    EXPECT_STREQ(extension.getLibraryFileName(), "libBuffer.dylib");
    EXPECT_STREQ(extension.getFactoryName(), "BufferQelLocalCreate");
}

TEST_F(ModuleExtension, RecordOfAnInteger)
{
    ZUL_param tag = parameter(2);
    tag.setValue(0xFEDCBA9876543210ULL);
    tag.setParamIndex(99);
    extension.AddParam(&tag, 12);
    zul_param const* const record = extension.GetParam(0);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(fieldAt<std::uint64_t>(record, 0), 0U);
    EXPECT_EQ(fieldAt<std::uint32_t>(record, 8), 5U) << "module index";
    EXPECT_EQ(fieldAt<std::int32_t>(record, 12), 12) << "the given index, not the tag's";
    EXPECT_EQ(nameAt(record, 16), padded("threshold"));
    EXPECT_EQ(fieldAt<std::uint64_t>(record, 80), 0xFEDCBA9876543210U) << "value";
    EXPECT_TRUE(std::isnan(fieldAt<double>(record, 88))) << "double value";
    EXPECT_EQ(fieldAt<std::uint32_t>(record, 96), 0x80000001U) << "flags";
    EXPECT_EQ(fieldAt<std::uint32_t>(record, 100), 2U) << "type";
    EXPECT_EQ(fieldAt<std::uint32_t>(record, 104), 0U) << "field size";
    EXPECT_EQ(fieldAt<void const*>(record, 112), nullptr) << "field";
    EXPECT_EQ(fieldAt<void const*>(record, 120), nullptr) << "field again";
    EXPECT_EQ(fieldAt<char const*>(record, 128), nullptr) << "parameter string";
    EXPECT_EQ(fieldAt<std::uint32_t>(record, 136), 0U) << "string length";
    static_assert(sizeof(zul_param) == 144);
}

TEST_F(ModuleExtension, RecordOfADouble)
{
    ZUL_param tag = parameter(5);
    tag.setValue(-0.125);
    extension.AddParam(&tag, -1);
    EXPECT_EQ(fieldAt<double>(extension.GetParam(0), 88), -0.125);
    EXPECT_EQ(fieldAt<std::uint64_t>(extension.GetParam(0), 80), 0U);
    EXPECT_EQ(fieldAt<std::int32_t>(extension.GetParam(0), 12), -1);
}

TEST_F(ModuleExtension, RecordOfAFieldLeadsIntoTheTag)
{
    ZUL_param tag = parameter(6);
    tag.setField(threeElements().data(), ZUL_param::FIELD_INTEGER, 3);
    extension.AddParam(&tag, 0);
    EXPECT_EQ(fieldAt<std::uint32_t>(extension.GetParam(0), 104), 3U);
    EXPECT_EQ(fieldAt<void const*>(extension.GetParam(0), 112), tag.getField());
    EXPECT_EQ(fieldAt<void const*>(extension.GetParam(0), 120), tag.getField());
}

TEST_F(ModuleExtension, RecordOfATextLeadsIntoTheTag)
{
    ZUL_param tag = parameter(13);
    tag.setParamString("rising");
    extension.AddParam(&tag, 0);
    EXPECT_EQ(fieldAt<char const*>(extension.GetParam(0), 128), tag.getParamString());
    EXPECT_EQ(fieldAt<std::uint32_t>(extension.GetParam(0), 136), 6U);
}

TEST_F(ModuleExtension, NamesAreCutAt63Characters)
{
    for (std::size_t const length : {62U, 63U, 64U, 70U}) {
        std::string const name(length, 'n');
        ZUL_param tag = parameter(1, name.c_str());
        ZUL_channel_param channel(nullptr, true, module, name.c_str());
        zul_module_ext fresh(module);
        fresh.AddParam(&tag, 0);
        fresh.AddChannel(&channel);
        EXPECT_EQ(nameAt(fresh.GetParam(0), 16), padded(name.substr(0, 63)));
        EXPECT_EQ(nameAt(fresh.GetChannel(0), 20), padded(name.substr(0, 63)));
    }
}

TEST_F(ModuleExtension, AbsentNamesAreEmpty)
{
    ZUL_param tag = parameter(1, nullptr);
    ZUL_channel_param channel(nullptr, true, nullptr, nullptr);
    extension.AddParam(&tag, 0);
    extension.AddChannel(&channel);
    EXPECT_EQ(nameAt(extension.GetParam(0), 16), padded(""));
    EXPECT_EQ(nameAt(extension.GetChannel(0), 20), padded(""));
    EXPECT_EQ(fieldAt<std::uint32_t>(extension.GetChannel(0), 12), 0xFFFFFFFFU) << "no module";
}

TEST_F(ModuleExtension, RecordOfAChannel)
{
    ZUL_channel_param channel(nullptr, true, module, "image_in");
    channel.setLinkIndex(21);
    channel.setFormatIndex(22);
    channel.setArith(23);
    channel.setFlavor(24);
    channel.setWidth(25);
    channel.setPosition(26);
    channel.setParallel(27);
    channel.setKernelRows(28);
    channel.setKernelColumns(29);
    channel.setMaxWidth(30);
    channel.setMaxHeight(31);
    extension.AddChannel(&channel);
    zul_channel_param const* const record = extension.GetChannel(0);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(fieldAt<std::uint64_t>(record, 0), 0U);
    EXPECT_EQ(fieldAt<std::uint32_t>(record, 8), 1U) << "input";
    EXPECT_EQ(fieldAt<std::uint32_t>(record, 12), 5U) << "module index";
    EXPECT_EQ(fieldAt<std::uint32_t>(record, 16), 21U) << "link index";
    EXPECT_EQ(nameAt(record, 20), padded("image_in"));
    for (std::uint32_t i = 0; i < 10; ++i) {
        EXPECT_EQ(fieldAt<std::uint32_t>(record, 84 + 4 * i), 22 + i) << "format index to max height";
    }
    static_assert(sizeof(zul_channel_param) == 128);
}

TEST_F(ModuleExtension, OutputChannelIsZero)
{
    ZUL_channel_param channel(nullptr, false, module, "image_out");
    extension.AddChannel(&channel);
    EXPECT_EQ(fieldAt<std::uint32_t>(extension.GetChannel(0), 8), 0U);
}

TEST_F(ModuleExtension, KeepsTagsAndRecordsInTheOrderInWhichTheyWereAdded)
{
    ZUL_param first = parameter(1, "first");
    ZUL_param second = parameter(1, "second");
    ZUL_channel_param in(nullptr, true, module, "in");
    ZUL_channel_param out(nullptr, false, module, "out");
    extension.AddParam(&first, 7);
    zul_param const* const record = extension.GetParam(0);
    extension.AddChannel(&in);
    extension.AddParam(&second, 3);
    extension.AddChannel(&out);
    EXPECT_EQ(extension.GetNrOfParam(), 2U);
    EXPECT_EQ(extension.getParam(0), &first);
    EXPECT_EQ(extension.getParam(1), &second);
    EXPECT_EQ(extension.GetParam(0), record) << "a record keeps its address";
    EXPECT_STREQ(extension.GetParam(1)->name, "second");
    EXPECT_EQ(extension.GetParam(1)->param_index, 3);
    EXPECT_EQ(extension.GetNrOfChannel(), 2U);
    EXPECT_STREQ(extension.GetChannel(0)->name, "in");
    EXPECT_STREQ(extension.GetChannel(1)->name, "out");
}

TEST_F(ModuleExtension, IndicesOutsideAnswerNull)
{
    ZUL_param tag = parameter(1);
    ZUL_channel_param channel(nullptr, true, module, "in");
    extension.AddParam(&tag, 0);
    extension.AddChannel(&channel);
    EXPECT_EQ(extension.getParam(1), nullptr);
    EXPECT_EQ(extension.getParam(0xFFFFFFFF), nullptr);
    for (int const i : {1, -1, 0x7FFFFFFF, -0x7FFFFFFF - 1}) {
        EXPECT_EQ(extension.GetParam(i), nullptr) << i;
        EXPECT_EQ(extension.GetChannel(i), nullptr) << i;
    }
}

TEST_F(ModuleExtension, RecordIsWhatTheTagWasWhenItWasAdded)
{
    ZUL_param tag = parameter(1);
    tag.setValue(1ULL);
    extension.AddParam(&tag, 0);
    tag.setValue(2ULL);
    EXPECT_EQ(extension.GetParam(0)->value, 1U);
}
