#include "ZUL_module.h"

#include "full_module.h"
#include "throwing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>

namespace {

constexpr std::uint32_t moduleId = 0x08157000;
constexpr char const* noProcess = "Tried to save a ZUL_module that has no ZUL_process assigned to";
constexpr char const* longType = "Module type description is too long";
constexpr char const* longInstance = "Module instance name is too long";
constexpr char const* longFullName = "Module full name is too long";

void expectNeitherMeasuredNorSaved(ZUL_module& tag, char const* message)
{
    Bytes buffer = Bytes().fill(0xA5, 3 * 70000);
    EXPECT_TRUE(throws<std::runtime_error>([&] { tag.getSaveLength(); }, message));
    EXPECT_TRUE(throws<std::runtime_error>([&] { tag.Save(buffer.data()); }, message));
    EXPECT_EQ(buffer, Bytes().fill(0xA5, 3 * 70000)) << "nothing is written";
}

} // namespace

TEST_F(Module, NewOneHasIndexMinusOneAndNoTexts)
{
    ZUL_module const tag(&zul, process);
    EXPECT_EQ(tag.getIndex(), -1);
    EXPECT_EQ(tag.getParamCount(), 0U);
    EXPECT_EQ(tag.getChanCount(), 0U);
    EXPECT_EQ(tag.getType(), nullptr);
    EXPECT_EQ(tag.getInstance(), nullptr);
    EXPECT_EQ(tag.getFullName(), nullptr);
    EXPECT_EQ(tag.getProcess(), process);
    EXPECT_EQ(tag.getTagId(), moduleId);
    EXPECT_EQ(tag.getParent(), &zul);
}

TEST_F(Module, AnswersForItsProcess)
{
    ZUL_module tag(&zul, process);
    EXPECT_STREQ(tag.getProcessName(), "acquisition");
    EXPECT_EQ(tag.getProcessId(), 3U);
    tag.setProcess(otherProcess);
    EXPECT_EQ(tag.getProcess(), otherProcess);
    EXPECT_STREQ(tag.getProcessName(), "output");
    EXPECT_EQ(tag.getProcessId(), 4U);
}

TEST_F(Module, WithoutProcessHasNoProcessNameAndAllOnesAsProcessId)
{
    ZUL_module const tag(&zul, nullptr);
    EXPECT_EQ(tag.getProcessName(), nullptr);
    EXPECT_EQ(tag.getProcessId(), 0xFFFFFFFFU);
}

TEST_F(Module, ProcessWithoutNameGivesNoProcessName)
{
    process->setName(nullptr);
    EXPECT_EQ(module->getProcessName(), nullptr);
}

TEST_F(Module, TextsAreKeptWhole)
{
    std::string const text(100'000, 't');
    ZUL_module tag(&zul, process);
    tag.setType(text.c_str());
    tag.setInstance(text.c_str());
    tag.setFullName(text.c_str());
    EXPECT_EQ(tag.getType(), text);
    EXPECT_EQ(tag.getInstance(), text);
    EXPECT_EQ(tag.getFullName(), text);
}

TEST_F(Module, NullAndEmptyTextsAreAbsent)
{
    for (char const* const nothing : {static_cast<char const*>(nullptr), ""}) {
        ZUL_module tag = loaded();
        tag.setType(nothing);
        tag.setInstance(nothing);
        tag.setFullName(nothing);
        EXPECT_EQ(tag.getType(), nullptr);
        EXPECT_EQ(tag.getInstance(), nullptr);
        EXPECT_EQ(tag.getFullName(), nullptr);
    }
}

TEST_F(Module, TextsMaySetThemselves)
{
    ZUL_module tag = loaded();
    tag.setType(tag.getType());
    tag.setInstance(tag.getInstance());
    tag.setFullName(tag.getFullName());
    expectFull(tag);
}

TEST_F(Module, SavesAllButTheReservedBytes)
{
    ZUL_module tag = loaded(moduleBytes(3, 0x77));
    EXPECT_EQ(savedBytes(tag), moduleBytes());
    EXPECT_EQ(savedBytes(tag, 0xA5), moduleBytes(3, 0xA5));
}

TEST_F(Module, WithoutTextsIs120BytesAndLoadsBackWithoutTexts)
{
    ZUL_module tag(&zul, process);
    EXPECT_EQ(savedBytes(tag), bareModuleBytes());
    ZUL_module const back = loaded(bareModuleBytes());
    EXPECT_EQ(back.getType(), nullptr);
    EXPECT_EQ(back.getInstance(), nullptr);
    EXPECT_EQ(back.getFullName(), nullptr);
    EXPECT_EQ(back.getIndex(), -1);
}

TEST_F(Module, SavesTheProcessNameForReadersOfTheFile)
{
    ZUL_module tag(&zul, process);
    process->setName(std::string(64, 'p').c_str());
    Bytes const expected = Bytes().text(std::string(64, 'p'), 64);
    Bytes const saved = savedBytes(tag, 0xA5);
    EXPECT_TRUE(std::equal(expected.data(), expected.data() + 64, saved.data() + 36));
    process->setName(nullptr);
    Bytes const without = savedBytes(tag, 0xA5);
    EXPECT_TRUE(std::all_of(without.data() + 36, without.data() + 100,
                            [](std::byte b) { return b == std::byte{0}; }));
}

TEST_F(Module, WithoutProcessIsNeitherMeasuredNorSaved)
{
    ZUL_module tag(&zul, nullptr);
    EXPECT_TRUE(throws<std::runtime_error>([&] { tag.checkDependentFields(); }, noProcess));
    expectNeitherMeasuredNorSaved(tag, noProcess);
    tag.setProcess(process);
    EXPECT_NO_THROW(tag.checkDependentFields());
}

TEST_F(Module, TextOf65534CharactersIsTheLongestThatCanBeSaved)
{
    std::string const longest(65534, 't');
    ZUL_module tag(&zul, process);
    tag.setType(longest.c_str());
    tag.setInstance(longest.c_str());
    tag.setFullName(longest.c_str());
    ZUL_module const back = loaded(savedBytes(tag));
    EXPECT_EQ(tag.getSaveLength(), 120U + 3 * 65535U);
    EXPECT_EQ(back.getType(), longest);
    EXPECT_EQ(back.getInstance(), longest);
    EXPECT_EQ(back.getFullName(), longest);
}

TEST_F(Module, LongerTextsAreRefusedTheTypeFirst)
{
    std::string const tooLong(65535, 't');
    ZUL_module tag(&zul, process);
    tag.setFullName(tooLong.c_str());
    expectNeitherMeasuredNorSaved(tag, longFullName);
    tag.setInstance(tooLong.c_str());
    expectNeitherMeasuredNorSaved(tag, longInstance);
    tag.setType(tooLong.c_str());
    expectNeitherMeasuredNorSaved(tag, longType);
    tag.setProcess(nullptr);
    expectNeitherMeasuredNorSaved(tag, noProcess);
}

TEST_F(Module, CopiesShareTheProcessAndHaveNeitherContainerNorCounts)
{
    ZUL_module const source = loaded();
    ZUL_module const copy(source);
    ZUL_module const copyOfPointer(&source);
    for (ZUL_module const* const each : {&copy, &copyOfPointer}) {
        expectFull(*each);
        EXPECT_NE(each->getType(), source.getType()) << "texts are not shared";
        EXPECT_EQ(each->getParent(), nullptr);
        EXPECT_EQ(each->getParamCount(), 0U);
        EXPECT_EQ(each->getChanCount(), 0U);
    }
}

TEST_F(Module, AssignmentKeepsContainerAndCounts)
{
    ZUL_module target = loaded();
    ZUL_module source(nullptr, otherProcess);
    source.setIndex(9);
    source.setType("Source");
    target = source;
    EXPECT_EQ(target.getIndex(), 9);
    EXPECT_STREQ(target.getType(), "Source");
    EXPECT_EQ(target.getInstance(), nullptr);
    EXPECT_EQ(target.getFullName(), nullptr);
    EXPECT_EQ(target.getProcess(), otherProcess);
    EXPECT_EQ(target.getParent(), &zul);
    EXPECT_EQ(target.getParamCount(), 11U);
    EXPECT_EQ(target.getChanCount(), 12U);
}

TEST_F(Module, AssignmentToItselfChangesNothing)
{
    ZUL_module tag = loaded();
    ZUL_module const& same = tag;
    tag = same;
    expectFull(tag);
    EXPECT_EQ(tag.getParamCount(), 11U);
}

TEST_F(Module, IsFoundByTheIndexThatItHasNow)
{
    EXPECT_EQ(zul.getModuleAt(5), module);
    module->setIndex(50);
    EXPECT_EQ(zul.getModuleAt(5), nullptr);
    EXPECT_EQ(zul.getModuleAt(50), module);
    *module = loaded();
    EXPECT_EQ(zul.getModuleAt(0xFFFFFFFB), module);
    EXPECT_EQ(zul.getModuleAt(50), nullptr);
    loadFrom(*module, bareModuleBytes());
    EXPECT_EQ(zul.getModuleAt(0xFFFFFFFF), module);
}

TEST_F(Module, HasNoOrder)
{
    ZUL_tag const& tag = *module;
    constexpr char const* noOrder = "this operator has no default implementation";
    EXPECT_TRUE(throws<std::runtime_error>([&] { static_cast<void>(tag < tag); }, noOrder));
    EXPECT_TRUE(throws<std::runtime_error>([&] { static_cast<void>(tag == tag); }, noOrder));
}
