#include "ZUL_process.h"

#include "coverage.h"
#include "loading.h"
#include "modules.h"

#include <gtest/gtest.h>

#include <string>
#include <typeinfo>

namespace {

constexpr std::uint32_t processId = 0x08158000;

Bytes processBytes(std::uint32_t id = 7, std::string_view name = "acquisition")
{
    return Bytes().u32(0x08158000).u32(80).u32(id).text(name, 64).u32(62'500'000); // clock
}

ZUL_process emptyProcess()
{
    return {nullptr, 0, nullptr};
}

ZUL_process fullProcess()
{
    ZUL_process process(nullptr, 7, "acquisition");
    process.setClock(62'500'000);
    return process;
}

} // namespace

TEST(Process, NewOneHasIdAndNameAndClockZero)
{
    ZUL_process const process(nullptr, 7, "acquisition");
    EXPECT_EQ(process.getId(), 7U);
    EXPECT_STREQ(process.getName(), "acquisition");
    EXPECT_EQ(process.getClock(), 0U);
    EXPECT_EQ(process.getTagId(), processId);
    EXPECT_EQ(process.getParent(), nullptr);
}

TEST(Process, NullNameIsNoNameAndEmptyNameIsEmpty)
{
    EXPECT_EQ(emptyProcess().getName(), nullptr);
    ZUL_process process(nullptr, 0, "");
    EXPECT_STREQ(process.getName(), "");
    process.setName(nullptr);
    EXPECT_EQ(process.getName(), nullptr);
}

TEST(Process, NameIsCutAt64Characters)
{
    std::string const name(70, 'n');
    ZUL_process process(nullptr, 0, name.c_str());
    EXPECT_EQ(process.getName(), std::string(64, 'n'));
    process.setName("short");
    process.setName(name.c_str());
    EXPECT_EQ(process.getName(), std::string(64, 'n'));
}

TEST(Process, NameMaySetItself)
{
    ZUL_process process = fullProcess();
    process.setName(process.getName());
    EXPECT_STREQ(process.getName(), "acquisition");
}

TEST(Process, SavesEveryByte)
{
    ZUL_process process = fullProcess();
    EXPECT_EQ(savedBytes(process), processBytes());
    EXPECT_EQ(savedBytes(process, 0xA5), processBytes());
}

TEST(Process, NameThatFillsItsWidthIsSavedWithoutTerminator)
{
    ZUL_process process(nullptr, 7, std::string(64, 'n').c_str());
    process.setClock(62'500'000);
    EXPECT_EQ(savedBytes(process, 0xA5), processBytes(7, std::string(64, 'n')));
}

TEST(Process, AbsentNameIsSavedAsNul)
{
    ZUL_process process = emptyProcess();
    EXPECT_EQ(savedBytes(process, 0xA5), Bytes().u32(processId).u32(80).zeros(72));
}

TEST(Process, Loads)
{
    ZUL_process process = emptyProcess();
    EXPECT_EQ(loadFrom(process, processBytes(0xFFFFFFFE)), 80U);
    EXPECT_EQ(process.getId(), 0xFFFFFFFEU);
    EXPECT_STREQ(process.getName(), "acquisition");
    EXPECT_EQ(process.getClock(), 62'500'000U);
}

TEST(Process, LoadsANameThatFillsItsWidth)
{
    ZUL_process process = emptyProcess();
    loadFrom(process, processBytes(7, std::string(64, 'n')));
    EXPECT_EQ(process.getName(), std::string(64, 'n'));
    EXPECT_EQ(process.getClock(), 62'500'000U);
}

TEST(Process, LoadedNameEndsAtItsFirstNul)
{
    ZUL_process process = emptyProcess();
    loadFrom(process, processBytes().setU8(12 + 3, 0));
    EXPECT_STREQ(process.getName(), "acq");
    loadFrom(process, processBytes(7, ""));
    EXPECT_STREQ(process.getName(), "");
}

TEST(Process, LengthIsAlways80)
{
    expectFixedLength(emptyProcess, processBytes(), processId);
}

TEST(Process, RefusedLoadChangesNothing)
{
    ZUL_process process = fullProcess();
    EXPECT_TRUE(
        loadThrows<ZUL_file_bad_tag_length>(process, processBytes(8, "other").setU32(4, 81), processId));
    EXPECT_TRUE(process == fullProcess());
}

TEST(Process, CopiesHaveEverythingButTheContainer)
{
    ZUL zul;
    ZUL_process source = fullProcess();
    source.setParent(&zul);
    ZUL_process const copy(source);
    ZUL_process const copyOfPointer(&source);
    for (ZUL_process const* const each : {&copy, &copyOfPointer}) {
        EXPECT_TRUE(*each == source);
        EXPECT_NE(each->getName(), source.getName()) << "the name is not shared";
        EXPECT_EQ(each->getParent(), nullptr);
    }
}

TEST(Process, AssignmentKeepsTheContainer)
{
    ZUL zul;
    ZUL_process target(&zul, 1, "old");
    target = fullProcess();
    EXPECT_TRUE(target == fullProcess());
    EXPECT_EQ(target.getParent(), &zul);
}

TEST(Process, AssignmentToItselfChangesNothing)
{
    ZUL_process process = fullProcess();
    ZUL_process const& same = process;
    process = same;
    EXPECT_TRUE(process == fullProcess());
}

TEST(Process, OrderIsThatOfTheUnsignedIds)
{
    ZUL_process const low(nullptr, 1, "z");
    ZUL_process const high(nullptr, 0x80000000, "a");
    ZUL_tag const& tag = high;
    EXPECT_TRUE(low < tag);
    EXPECT_FALSE(low > tag);
    EXPECT_TRUE(high > static_cast<ZUL_tag const&>(low));
    EXPECT_FALSE(high < static_cast<ZUL_tag const&>(low));
    EXPECT_TRUE(low <= tag);
    EXPECT_FALSE(low >= tag);
    EXPECT_FALSE(low < static_cast<ZUL_tag const&>(low));
    EXPECT_FALSE(low > static_cast<ZUL_tag const&>(low));
    EXPECT_TRUE(low < &tag);
}

TEST(Process, EqualMeansSameIdClockAndName)
{
    ZUL_process const process = fullProcess();
    ZUL_process other = fullProcess();
    EXPECT_TRUE(process == other);
    EXPECT_TRUE(process == static_cast<ZUL_tag const&>(other));
    EXPECT_FALSE(process != other);
    other.setName("acquisitioN");
    EXPECT_FALSE(process == other);
    other = fullProcess();
    other.setClock(1);
    EXPECT_FALSE(process == other);
    other = fullProcess();
    other.setId(8);
    EXPECT_TRUE(process != other);
}

TEST(Process, FiledOneThatWasTakenFromItsContainerTellsNobodyOfItsNewId)
{
    ZUL zul;
    auto* const process = new ZUL_process(nullptr, 1, nullptr);
    zul.AddTag(process);
    process->setParent(nullptr);
    process->setId(2);
    EXPECT_EQ(process->getId(), 2U);
    EXPECT_EQ(process->getParent(), nullptr);
}

TEST(Process, AbsentNameEqualsOnlyAnAbsentName)
{
    ZUL_process const absent(nullptr, 1, nullptr);
    EXPECT_TRUE(absent == ZUL_process(nullptr, 1, nullptr));
    EXPECT_FALSE(absent == ZUL_process(nullptr, 1, ""));
    EXPECT_FALSE(ZUL_process(nullptr, 1, "") == absent);
}

TEST(Process, NeverEqualsAnotherKindAndHasNoOrderWithIt)
{
    ZUL_process const process = fullProcess();
    ZUL_module const module(nullptr, &process);
    ZUL_tag const& other = module;
    EXPECT_FALSE(process == other);
    EXPECT_TRUE(process != other);
    EXPECT_THROW(static_cast<void>(process < other), std::bad_cast);
    EXPECT_THROW(static_cast<void>(process > other), std::bad_cast);
}

TEST_F(Modules, ProcessIsFoundByTheIdThatItHasNow)
{
    EXPECT_EQ(zul.getProcessAt(3), process);
    process->setId(30);
    EXPECT_EQ(zul.getProcessAt(3), nullptr);
    EXPECT_EQ(zul.getProcessAt(30), process);
    *process = ZUL_process(nullptr, 31, "assigned");
    EXPECT_EQ(zul.getProcessAt(31), process);
    EXPECT_EQ(zul.getProcessAt(30), nullptr);
    loadFrom(*process, processBytes(32));
    EXPECT_EQ(zul.getProcessAt(32), process);
}

TEST(Process, VisitShowsEveryByteOnce)
{
    ZUL_process process = emptyProcess();
    Bytes const bytes = processBytes();
    VisitRecord const shown = visited(process, bytes);
    EXPECT_TRUE(coversOnce(shown, 80));
    EXPECT_TRUE(shown.problems.empty());
    EXPECT_EQ(shown.at(8).number(), 7U);
    EXPECT_EQ(shown.at(12).text(), "acquisition");
    EXPECT_EQ(shown.at(76).number(), 62'500'000U);
    EXPECT_EQ(process.getId(), 7U);
}

TEST(Process, VisitOfACutTagShowsWhatIsThere)
{
    expectCutsAreShown(emptyProcess, processBytes(), 80);
}

TEST(Process, VisitReportsAWrongLength)
{
    ZUL_process process = emptyProcess();
    VisitRecord const shown = visited(process, processBytes().setU32(4, 81).u8(0));
    ASSERT_EQ(shown.problems.size(), 1U);
    EXPECT_EQ(shown.problems[0].kind, TagProblem::Kind::BadLength);
    EXPECT_EQ(shown.problems[0].expected, "80");
    EXPECT_EQ(shown.problems[0].found, "81");
}
