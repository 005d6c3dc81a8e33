#include "container_bytes.h"
#include "merging.h"
#include "rows_tag.h"
#include "sample_tags.h"

#include <memory>

namespace {

using namespace merging;

TEST(ContainerMerge, SavesTheseBytes)
{
    Bytes const first = ContainerBytes()
                            .tag(sample::author("A. Noether"))
                            .tag(sample::process(3, "acquisition"))
                            .tag(sample::module(7, 3, "acquisition"))
                            .tag(sample::integerParam("width", 7))
                            .tag(sample::oldRegister("CameraControl"))
                            .tag(sample::userInfo("__ZUL_ID__", "first"))
                            .tag(sample::event("FrameEnd", "CameraControl"))
                            .tag(sample::destination(2))
                            .config(sample::config(2, "of the first"))
                            .build();
    Bytes const other = ContainerBytes()
                            .tag(sample::author("not taken over"))
                            .tag(sample::designName("of the second"))
                            .tag(sample::process(0, "output"))
                            .tag(sample::process(1, "display"))
                            .tag(sample::module(0, 1, "display"))
                            .tag(sample::module(5, 0, "output"))
                            .tag(sample::paramLink(5, 0))
                            .tag(sample::newRegister("FrameCounter"))
                            .tag(sample::event("Overflow", "FrameCounter"))
                            .tag(sample::userInfo("__ZUL_ID__", "second"))
                            .tag(sample::userInfo("maker", "second"))
                            .tag(sample::destination(1))
                            .config(sample::config(1, "of the second"))
                            .build();
    Bytes const merged =
        ContainerBytes()
            .tag(sample::author("A. Noether"))
            .tag(sample::designName("of the second"))
            .tag(sample::process(3, "acquisition"))
            .tag(sample::module(7, 3, "acquisition"))
            .tag(sample::integerParam("width", 7))
            .tag(sample::oldRegister("CameraControl"))
            .tag(sample::event("FrameEnd", "CameraControl").setU8(8, 18)) // queue 2, moved up
            .tag(sample::destination(2))
            .tag(sample::process(4, "output"))
            .tag(sample::process(5, "display"))
            .tag(sample::module(8, 5, "display"))
            .tag(sample::module(9, 4, "output"))
            .tag(sample::paramLink(9, 8))
            .tag(sample::newRegister("FrameCounter"))
            .tag(sample::userInfo("maker", "second"))
            .tag(sample::destination(1))
            .tag(sample::event("Overflow", "FrameCounter"))
            .tag(sample::userInfo("__ZUL_ID__", "__INVALID_ZUL_ID__")) // made by the save
            .config(sample::config(2, "of the first"))
            .config(sample::config(1, "of the second"))
            .build();
    for (bool const allOrNothing : {false, true}) {
        LoadedContainer into(first);
        LoadedContainer const from(other);
        if (allOrNothing) {
            into.zul.mergeAllOrNothing(from.zul, nullptr);
        } else {
            EXPECT_EQ(&(into.zul += from.zul), &into.zul);
        }
        EXPECT_EQ(savedContainer(into.zul), merged);
    }
}

TEST(ContainerMerge, IntoAnEmptyContainerKeepsEveryTagButTheId)
{
    LoadedContainer const other(sample::everyKind());
    ZUL zul;
    zul += other.zul;
    EXPECT_EQ(zul.getTotalTagCount(), other.zul.getTotalTagCount() - 1);
    EXPECT_EQ(zul.getId(), nullptr);
    EXPECT_STREQ(zul.getAuthor(), "A. Noether");
    EXPECT_STREQ(zul.getDesignName(), "double rate");
    EXPECT_STREQ(zul.getDesignVersion(), "2.7");
    EXPECT_EQ(tagOf<ZUL_process>(zul)->getId(), 0U);
    EXPECT_EQ(tagOf<ZUL_module>(zul)->getIndex(), 0);
    zul.forEachTag([&zul](ZUL_tag& tag) { EXPECT_EQ(tag.getParent(), &zul) << std::hex << tag.getTagId(); });
    EXPECT_EQ(zul.getConfigAt(0)->getParent(), &zul);
    zul.setId("4711");
    LoadedContainer const saved(savedContainer(zul));
    EXPECT_EQ(idsOf(saved.zul).size(), 25U);
}

TEST(ContainerMerge, LeavesTheOtherContainerAsItIs)
{
    LoadedContainer other(sample::everyKind());
    LoadedContainer into(ContainerBytes()
                             .tag(sample::process(0))
                             .tag(sample::module(0, 0))
                             .tag(sample::userInfo("__ZUL_ID__", "own"))
                             .build());
    into.zul += other.zul;
    EXPECT_EQ(savedContainer(other.zul), sample::everyKind());
}

TEST(ContainerMerge, OutlivesTheOtherContainerAndItsBuffer)
{
    auto other = std::make_unique<LoadedContainer>(sample::everyKind());
    ZUL zul;
    zul += other->zul;
    EXPECT_NE(zul.getConfigAt(0)->getData(), other->zul.getConfigAt(0)->getData());
    EXPECT_NE(tagOf<ZUL_dll>(zul)->getLib(), tagOf<ZUL_dll>(other->zul)->getLib());
    EXPECT_NE(tagOf<ZUL_param>(zul, 1)->getField(), tagOf<ZUL_param>(other->zul, 1)->getField());
    other.reset();
    zul.setId("4711");
    // Events come last of the tag list: they are added when everything they may refer to is there.
    Bytes const saved = savedContainer(zul);
    EXPECT_EQ(saved.size(), sample::everyKind().size());
    LoadedContainer const again(saved);
    EXPECT_EQ(std::string_view(static_cast<char const*>(again.zul.getConfigAt(0)->getData()), 9),
              "bitstream");
}

TEST(ContainerMerge, SingleInstancesAreTakenOverOnlyWhereThereAreNone)
{
    ZUL other;
    other.setAuthor("other");
    other.setDesignName("other");
    other.setDesignVersion("other");
    ZUL empty;
    empty += other;
    EXPECT_STREQ(empty.getAuthor(), "other");
    EXPECT_STREQ(empty.getDesignName(), "other");
    EXPECT_STREQ(empty.getDesignVersion(), "other");
    empty.setAuthor("own");
    EXPECT_STREQ(other.getAuthor(), "other") << "a copy";

    ZUL filled;
    filled.setAuthor("own");
    filled.setDesignName("own");
    filled.setDesignVersion("own");
    filled += other;
    EXPECT_STREQ(filled.getAuthor(), "own");
    EXPECT_STREQ(filled.getDesignName(), "own");
    EXPECT_STREQ(filled.getDesignVersion(), "own");
}

TEST(ContainerMerge, ATagWithoutTextTakesTheOthersText)
{
    ZUL other;
    other.setAuthor("other");
    other.setDesignName("other");
    other.setDesignVersion("other");
    ZUL zul;
    auto const* const author = file<ZUL_author>(zul);
    file<ZUL_design_name>(zul);
    file<ZUL_design_version>(zul);
    zul += other;
    EXPECT_STREQ(author->getAuthor(), "other");
    EXPECT_STREQ(zul.getDesignName(), "other");
    EXPECT_EQ(zul.getDesignVersion(), nullptr) << "the version is not replaced";
    ZUL nameless;
    file<ZUL_author>(nameless);
    nameless += ZUL();
    EXPECT_EQ(nameless.getTotalTagCount(), 1U) << "and not removed when the other has none";
}

TEST(ContainerMerge, TheOwnIdGoesWhenTheOtherHasOne)
{
    for (bool const ownHas : {false, true}) {
        for (bool const otherHas : {false, true}) {
            ZUL own;
            ZUL other;
            own.setId(ownHas ? "own" : nullptr);
            other.setId(otherHas ? "other" : nullptr);
            own += other;
            if (ownHas && !otherHas) {
                EXPECT_STREQ(own.getId(), "own");
            } else {
                EXPECT_EQ(own.getId(), nullptr);
                EXPECT_EQ(own.getTotalTagCount(), 0U);
            }
        }
    }
}

TEST(ContainerMerge, NoIdIsLeftOfSeveral)
{
    ZUL own;
    ZUL other;
    for (ZUL* const zul : {&own, &other}) {
        for (char const* const id : {"1", "2"}) {
            file<ZUL_user_info>(*zul, "__ZUL_ID__", id);
        }
    }
    file<ZUL_user_info>(own, "kept", "own");
    file<ZUL_user_info>(other, "kept", "other");
    file<ZUL_user_info>(other, "__ZUL_ID", "a longer name");
    file<ZUL_user_info>(other, nullptr, "no name");
    own += other;
    EXPECT_EQ(own.getId(), nullptr);
    EXPECT_EQ(own.getTotalTagCount(), 4U);
}

TEST(ContainerMerge, AnInfoWithTheIdsNameAndANumberIsNoIdAndNotTakenOver)
{
    ZUL own;
    own.setId("own");
    ZUL other;
    file<ZUL_user_info>(other, "__ZUL_ID__", 5U);
    ASSERT_EQ(other.getId(), nullptr);
    own += other;
    EXPECT_STREQ(own.getId(), "own");
    EXPECT_EQ(own.getTotalTagCount(), 1U);
}

TEST(ContainerMerge, CopiesComeInTheOthersOrderAndEventsLast)
{
    LoadedContainer const other(ContainerBytes()
                                    .tag(sample::comment("1"))
                                    .tag(sample::oldRegister("r"))
                                    .tag(sample::event("FrameEnd", "r"))
                                    .tag(sample::process(0))
                                    .tag(sample::comment("2"))
                                    .build());
    ZUL zul;
    file<ZUL_localintreg>(zul);
    zul += other.zul;
    EXPECT_EQ(idsOf(zul),
              (std::vector<std::uint32_t>{0x8151050, 0x8150010, 0x8151000, 0x8158000, 0x8150010, 0x8156576}));
    EXPECT_STREQ(tagOf<ZUL_comment>(zul, 1)->getComment(), "2");
}

TEST(ContainerMerge, ADuplicateRegisterNameIsRefusedAndWhatCameBeforeStays)
{
    for (bool const alias : {false, true}) {
        LoadedContainer into(
            ContainerBytes()
                .tag(sample::newRegister("target"))
                .tag(alias ? sample::registerLink("twice", "target") : sample::oldRegister("twice"))
                .build());
        LoadedContainer const other(ContainerBytes()
                                        .tag(sample::comment())
                                        .tag(sample::newRegister("twice"))
                                        .tag(sample::localInterrupt())
                                        .build());
        EXPECT_TRUE(refuses<ZUL_file_duplicate_tag>([&] { into.zul += other.zul; }, "duplicate tag found",
                                                    0x8151000));
        EXPECT_EQ(into.zul.getTotalTagCount(), 3U);
        EXPECT_EQ(into.zul.getTagCount(ZUL_comment::tag_id), 1U);
        EXPECT_EQ(into.zul.getTagCount(ZUL_localintreg::tag_id), 0U);
    }
}

TEST(ContainerMerge, AnAliasWithTheNameOfARegisterIsTaken)
{
    LoadedContainer into(ContainerBytes().tag(sample::newRegister("own")).build());
    LoadedContainer const other(
        ContainerBytes().tag(sample::oldRegister("r")).tag(sample::registerLink("own", "r")).build());
    into.zul += other.zul;
    EXPECT_EQ(into.zul.getTagCount(ZUL_register_link::tag_id), 1U);
    EXPECT_EQ(into.zul.getRegisterByName("own"), 2U) << "the register, behind the one of the older layout";
}

TEST(ContainerMerge, LinksMayCloseACircleThatLookupsSurvive)
{
    LoadedContainer into(ContainerBytes().tag(sample::registerLink("a", "b")).build());
    LoadedContainer const other(ContainerBytes()
                                    .tag(sample::registerLink("b", "a"))
                                    .tag(sample::oldRegister("r"))
                                    .tag(sample::registerLink("c", "r"))
                                    .build());
    into.zul += other.zul;
    EXPECT_EQ(into.zul.getTagCount(ZUL_register_link::tag_id), 3U);
    EXPECT_EQ(into.zul.getRegisterByName("a"), 0U);
    EXPECT_EQ(into.zul.getRegisterByName("b"), 0U);
    EXPECT_EQ(into.zul.findRegister("c"), into.zul.getRegisterAt(1));
}

TEST(ContainerMerge, LibrariesVersionNumbersAndInfosOfOneNameStandBesideEachOther)
{
    Bytes const bytes = ContainerBytes()
                            .tag(sample::library("camera"))
                            .tag(sample::versionNumber(1, 2, 3))
                            .tag(sample::userInfo("maker", "m"))
                            .tag(sample::fpgaInfo())
                            .tag(sample::destination(1))
                            .tag(sample::dmaCountRegister(0))
                            .tag(sample::readQueue())
                            .build();
    LoadedContainer into(bytes);
    LoadedContainer const other(bytes);
    into.zul += other.zul;
    for (std::uint32_t const id : savedIds(bytes)) {
        EXPECT_EQ(into.zul.getTagCount(id), 2U) << std::hex << id;
    }
}

TEST(ContainerMerge, UnknownTagsAreCopiedByTheirBytes)
{
    LoadedContainer const other(
        ContainerBytes().tag(sample::comment()).tag(sample::unknown(0x8150015, "kept as it is")).build());
    ZUL zul;
    zul += other.zul;
    ASSERT_EQ(zul.getTagCount(0x8150015), 1U);
    auto* const raw = zul.getTagAt(0x8150015, 0);
    EXPECT_EQ(savedBytes(*raw), sample::unknown(0x8150015, "kept as it is"));
    EXPECT_EQ(raw->getParent(), &zul);
}

TEST(ContainerMerge, TagsOfOtherClassesAreCopiedByTheirBytes)
{
    ZUL other;
    other.AddTag(new rows::RowsTag(
        [](TagLayout& row) {
            static std::uint32_t value = 77;
            row.fixed(12);
            row.u32(8, "value", value);
        },
        &other));
    other.AddTag(new ZUL_usrintqueue(&other));
    ZUL zul;
    zul += other;
    ASSERT_EQ(zul.getTagCount(rows::tagId), 1U);
    EXPECT_EQ(savedBytes(*zul.getTagAt(rows::tagId, 0)), Bytes().u32(rows::tagId).u32(12).u32(77));
    EXPECT_EQ(zul.getTagCount(ZUL_usrintqueue::tag_id), 1U);
}

TEST(ContainerMerge, WhatCopyingATagThrowsEndsIt)
{
    ZUL other;
    file<ZUL_comment>(other);
    auto* const module = fileModule(other, 0, fileProcess(other, 0));
    file<ZUL_param>(other, QL_ParamType{9}, module);
    file<ZUL_comment>(other);
    ZUL zul;
    EXPECT_THROW(zul += other, std::runtime_error);
    EXPECT_EQ(idsOf(zul), (std::vector<std::uint32_t>{0x8150010, 0x8158000, 0x8157000}));
}

TEST(ContainerMerge, TakesNeitherModeNorPolicyNorDestinationWordOver)
{
    LoadedContainer other(headBytes(0, 0, 1, 0xCAFE));
    other.zul.setRegisterPolicy(ZULRegisterPolicy{3});
    other.zul.setLoadMode(ZUL_LOAD_TOLERANT);
    ZUL zul;
    zul += other.zul;
    EXPECT_EQ(zul.getRegisterPolicy(), ZULRegisterPolicy{0});
    EXPECT_EQ(zul.getLoadMode(), ZUL_LOAD_STRICT);
    EXPECT_EQ(zul.getHeadDestination(), 0U);
}

TEST(ContainerMerge, LookupsSeeTheMergedTagsAtOnce)
{
    LoadedContainer into(ContainerBytes().tag(sample::comment("own")).build());
    EXPECT_EQ(into.zul.getTagCount(ZUL_comment::tag_id), 1U); // the search has a list
    EXPECT_EQ(into.zul.getTagCount(ZUL_event::tag_id), 0U);
    EXPECT_EQ(into.zul.getRegisterByName("FrameCounter"), 0U); // the index is there
    EXPECT_EQ(into.zul.getProcessAt(0), nullptr);
    EXPECT_EQ(into.zul.findUserInfo("__ZUL_ID__"), nullptr);
    LoadedContainer const other(sample::everyKind());
    into.zul += other.zul;
    EXPECT_EQ(into.zul.getTagCount(ZUL_comment::tag_id), 2U);
    EXPECT_EQ(into.zul.getTagCount(ZUL_event::tag_id), 1U);
    EXPECT_NE(into.zul.getRegisterByName("Frames"), 0U);
    EXPECT_EQ(into.zul.getProcessAt(0), tagOf<ZUL_process>(into.zul));
    EXPECT_EQ(into.zul.getModuleAt(0), tagOf<ZUL_module>(into.zul));
}

} // namespace
