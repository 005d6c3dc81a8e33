#include "ZUL_module.h"

#include "container_bytes.h"
#include "coverage.h"
#include "full_module.h"
#include "throwing.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

constexpr std::uint32_t moduleId = 0x08157000;

} // namespace

TEST_F(Module, Loads)
{
    ZUL_module const tag = loaded();
    expectFull(tag);
    EXPECT_EQ(tag.getParamCount(), 11U);
    EXPECT_EQ(tag.getChanCount(), 12U);
}

TEST_F(Module, LoadLooksNeitherAtTheProcessNameNorAtReservedBytes)
{
    expectFull(loaded(moduleBytes(3, 0xFF).setU8(36, 'X')));
}

TEST_F(Module, LoadedTextsEndAtTheirFirstNul)
{
    ZUL_module tag = loaded(moduleBytes().setU8(120 + 3, 0).setU8(127, 0));
    EXPECT_STREQ(tag.getType(), "Buf");
    EXPECT_STREQ(tag.getInstance(), "") << "a stored text of no characters is empty, not absent";
    EXPECT_STREQ(tag.getFullName(), "acq\\buf0");
    EXPECT_EQ(tag.getSaveLength(), 120U + 4 + 1 + 9);
}

TEST_F(Module, TextWithoutTerminatorTakesItsWholeLength)
{
    ZUL_module const tag = loaded(moduleBytes().setU8(126, '!'));
    EXPECT_STREQ(tag.getType(), "Buffer!");
    EXPECT_STREQ(tag.getInstance(), "buf0");
}

TEST_F(Module, LoadWithoutContainerIsALogicErrorBeforeAnythingElse)
{
    ZUL_module tag(nullptr, process);
    constexpr char const* orphaned = "loading orphaned tag without parent is invalid";
    Bytes const bytes = moduleBytes();
    EXPECT_TRUE(throws<std::logic_error>([&] { loadFrom(tag, bytes); }, orphaned));
    EXPECT_TRUE(throws<std::logic_error>([&] { loadFrom(tag, Bytes()); }, orphaned));
}

TEST_F(Module, EveryShorterBufferIsABadLength)
{
    for (std::size_t avail = 0; avail < moduleBytes().size(); ++avail) {
        ZUL_module tag = empty();
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, moduleBytes().cut(avail), moduleId)) << avail;
    }
    for (std::size_t avail = 0; avail < 120; ++avail) {
        ZUL_module tag = empty();
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, bareModuleBytes().cut(avail), moduleId))
            << avail;
    }
}

TEST_F(Module, LengthFieldHasToBeTheSumOfTheLengths)
{
    auto const honest = static_cast<std::uint32_t>(moduleBytes().size());
    for (std::uint32_t const stated : {0U, 8U, 120U, honest - 1, honest + 1, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        ZUL_module tag = empty();
        Bytes const bytes = moduleBytes().setU32(4, stated).zeros(16);
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, bytes, moduleId)) << stated;
    }
    ZUL_module tag = empty();
    EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, bareModuleBytes(121).zeros(16), moduleId));
}

TEST_F(Module, EachTextLengthCounts)
{
    for (std::size_t const offset : {12U, 14U, 16U}) {
        for (unsigned const length : {0U, 4U, 255U}) {
            ZUL_module tag = empty();
            Bytes const bytes = moduleBytes().setU8(offset, length).zeros(300);
            EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, bytes, moduleId))
                << offset << ", " << length;
        }
    }
}

TEST_F(Module, BytesBehindTheTagAreNotItsOwn)
{
    ZUL_module tag = empty();
    EXPECT_EQ(loadFrom(tag, moduleBytes().fill(0xA5, 50)), moduleBytes().size());
    expectFull(tag);
}

TEST_F(Module, UnknownProcessIsADanglingReference)
{
    ZUL_module tag = empty();
    tag.setType("kept");
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(tag, moduleBytes(nobody), moduleId));
    EXPECT_STREQ(tag.getType(), "kept");
    EXPECT_EQ(tag.getProcess(), nullptr);
}

TEST_F(Module, WrongLengthIsRefusedBeforeTheProcessIsLookedUp)
{
    ZUL_module tag = empty();
    EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(tag, moduleBytes(nobody).setU32(4, 140), moduleId));
}

TEST(ModuleInContainer, ProcessHasToComeFirst)
{
    Bytes const process = Bytes().u32(0x08158000).u32(80).u32(7).text("late", 64).u32(0);
    Bytes const module = bareModuleBytes().setU32(32, 7);
    Bytes const honest = ContainerBytes().tag(process).tag(module).build();
    Bytes const late = ContainerBytes().tag(module).tag(process).build();

    ZUL good;
    EXPECT_EQ(good.Load(honest.data(), honest.size()), 0);
    EXPECT_EQ(good.getModuleAt(0xFFFFFFFF)->getProcess(), good.getProcessAt(7));
    ZUL bad;
    EXPECT_THROW(bad.Load(late.data(), late.size()), ZUL_file_bad_reference);
}

TEST_F(Module, OfEqualProcessIdsTheFirstIsTheProcess)
{
    zul.AddTag(new ZUL_process(&zul, 3, "second"));
    EXPECT_EQ(loaded().getProcess(), process);
}

TEST_F(Module, VisitShowsEveryByteOnce)
{
    ZUL_module tag(nullptr, nullptr);
    Bytes const bytes = moduleBytes(nobody);
    VisitRecord const shown = visited(tag, bytes);
    EXPECT_TRUE(coversOnce(shown, bytes.size()));
    EXPECT_TRUE(shown.problems.empty());
    EXPECT_EQ(shown.at(8).signedNumber(), -5);
    EXPECT_EQ(shown.at(12).kind, FieldKind::TailLength);
    EXPECT_EQ(shown.at(18).kind, FieldKind::Reserved);
    EXPECT_EQ(shown.at(32).kind, FieldKind::ProcessReference);
    EXPECT_EQ(shown.at(32).number(), nobody);
    EXPECT_EQ(shown.at(36).text(), "acquisition");
    EXPECT_EQ(shown.at(120).text(), "Buffer");
    EXPECT_EQ(shown.at(127).text(), "buf0");
    EXPECT_EQ(shown.at(132).text(), "acq\\buf0");
    ZUL_module bare(nullptr, nullptr);
    EXPECT_TRUE(coversOnce(visited(bare, bareModuleBytes()), 120));
}

TEST_F(Module, VisitOfDamagedBytesShowsWhatIsThere)
{
    expectCutsAreShown([] { return ZUL_module(nullptr, nullptr); }, moduleBytes(), 120);
    ZUL_module tag(nullptr, nullptr);
    Bytes const bytes = moduleBytes().setU32(12, 0xFFFFFFFF).setU8(16, 0xFF).setU8(17, 0xFF);
    VisitRecord const shown = visited(tag, bytes);
    ASSERT_EQ(shown.problems.size(), 1U);
    EXPECT_EQ(shown.problems[0].kind, TagProblem::Kind::BadLength);
    EXPECT_EQ(shown.problems[0].expected, std::to_string(120 + 3 * 65535));
    EXPECT_EQ(shown.problems[0].found, "141");
    EXPECT_EQ(shown.at(120).bytes.size(), 21U) << "a text that is longer than the bytes ends with them";
}
