#include "allocations.h"
#include "captured_output.h"
#include "container_bytes.h"
#include "files.h"
#include "listing.h"
#include "loaded_container.h"
#include "sample_tags.h"
#include "zullib.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <new>

namespace {

/// Whether every register, alias, process and user info of @p zul is found where it is: no index is stale.
void expectConsistent(ZUL& zul)
{
    for (unsigned number = 1; ZUL_register* const reg = zul.getRegisterAt(number); ++number) {
        EXPECT_EQ(zul.findRegister(reg->getName()), reg);
    }
    for (unsigned i = 0; i < zul.getTagCount(ZUL_process::tag_id); ++i) {
        auto* const process = static_cast<ZUL_process*>(zul.getTagAt(ZUL_process::tag_id, i));
        EXPECT_EQ(zul.getProcessAt(process->getId()), process);
    }
    EXPECT_EQ(zul.getRegisterByName("of a tag that was not filed"), 0U);
    zul.setId("still usable");
    EXPECT_STREQ(zul.getId(), "still usable");
}

constexpr ZUL* none = nullptr;
auto const newContainer = [] { return std::make_unique<ZUL>(); };
auto const loadedContainer = [] { return std::make_unique<LoadedContainer>(sample::everyKind()); };

TEST(FailingAllocation, OfALoadLeavesTheBufferFormAndAConsistentContainer)
{
    Bytes const bytes = sample::everyKind();
    for (ZULLoadMode const mode : {ZUL_LOAD_STRICT, ZUL_LOAD_TOLERANT}) {
        std::size_t const failures = withEveryAllocationFailing(
            newContainer,
            [&](ZUL& zul) {
                zul.setLoadMode(mode);
                EXPECT_EQ(zul.Load(bytes.data(), bytes.size()), 0) << "out of memory is no tag error";
            },
            expectConsistent);
        EXPECT_GT(failures, 15U);
    }
}

TEST(FailingAllocation, OfAFileLoadIsPrintedAndReturned)
{
    TemporaryDirectory const directory;
    std::string const path = directory / "design.zul";
    writeFile(path, sample::everyKind());
    bool failed = true;
    for (std::size_t failing = 1; failed; ++failing) {
        ZUL zul;
        int result = 0;
        std::string printed;
        {
            CapturedOutput const output;
            {
                WatchedAllocations const watched(failing);
                result = zul.Load(path.c_str());
                failed = watched.hasFailed();
            }
            printed = output.text();
        }
        EXPECT_TRUE(result == 0 || result == -ENOMEM) << result;
        EXPECT_EQ(printed, result == 0 ? "" : "Exception while parsing ZUL: Bad Alloc");
        expectConsistent(zul);
    }
}

TEST(FailingAllocation, OfACopyLeavesNothing)
{
    withEveryAllocationFailing(
        loadedContainer,
        [](LoadedContainer& loaded) {
            ZUL const copy(loaded.zul);
            EXPECT_EQ(copy.getTotalTagCount(), 28U);
        },
        [](LoadedContainer& loaded) { EXPECT_EQ(savedContainer(loaded.zul), sample::everyKind()); });
}

TEST(FailingAllocation, OfAnAssignmentLeavesTheTargetAsItWas)
{
    ZUL source;
    source.setAuthor("other");
    source.AddTag(new ZUL_process(&source, 7, "other"));
    source.AddTag(new ZUL_module(&source, source.getProcessAt(7)));
    withEveryAllocationFailing(
        loadedContainer, [&](LoadedContainer& loaded) { loaded.zul = source; },
        [](LoadedContainer& loaded) { EXPECT_EQ(savedContainer(loaded.zul), sample::everyKind()); });
}

TEST(FailingAllocation, OfAnAdditionLeavesTheTagToTheCaller)
{
    using Make = std::unique_ptr<ZUL_tag> (*)();
    for (Make const make : std::initializer_list<Make>{
             [] { return std::unique_ptr<ZUL_tag>(new ZUL_comment(none)); },
             [] { return std::unique_ptr<ZUL_tag>(new ZUL_process(none, 9, nullptr)); },
             [] {
                 return std::unique_ptr<ZUL_tag>(
                     new ZUL_register(none, "of a tag that was not filed", false));
             },
             [] {
                 return std::unique_ptr<ZUL_tag>(
                     new ZUL_register_link(none, "of a tag that was not filed", "x"));
             },
             [] { return std::unique_ptr<ZUL_tag>(new ZUL_dll(none)); },
             [] {
                 auto number = std::make_unique<ZUL_design_version_nr>(none);
                 number->setIndex(9); // a new one
                 return std::unique_ptr<ZUL_tag>(std::move(number));
             },
             [] { return std::unique_ptr<ZUL_tag>(new ZUL_multi_data(none)); }}) {
        std::size_t failures = 0;
        for (unsigned run = 0; run < 32; ++run) {
            std::unique_ptr<ZUL_tag> tag;
            unsigned before = 0;
            failures += withEveryAllocationFailing(
                [&] {
                    auto loaded = loadedContainer();
                    for (unsigned i = 0; i < run / 2; ++i) { // somewhere the list is full
                        loaded->zul.AddTag(new ZUL_localintreg(none));
                    }
                    if (run % 2 != 0) { // with and without an index to be kept
                        expectConsistent(loaded->zul);
                    }
                    before = loaded->zul.getTagCount(make()->getTagId()) + loaded->zul.getConfigCount();
                    tag = make();
                    return loaded;
                },
                [&](LoadedContainer& loaded) {
                    loaded.zul.AddTag(tag.get());
                    tag.release();
                },
                [&](LoadedContainer& loaded) {
                    std::uint32_t const id = tag->getTagId();
                    tag.reset(); // the caller's: nothing refers to it
                    EXPECT_EQ(loaded.zul.getTagCount(id) + loaded.zul.getConfigCount(), before);
                    expectConsistent(loaded.zul);
                });
        }
        EXPECT_GT(failures, 0U);
    }
}

TEST(FailingAllocation, OfARemovalRemovesAllOrNothing)
{
    for (std::uint32_t const id : {0x8158000U, 0x8157000U, 0x8151002U, 0x815A000U, 0x8150120U}) {
        withEveryAllocationFailing(
            loadedContainer, [id](LoadedContainer& loaded) { loaded.zul.removeTags(id); },
            [](LoadedContainer& loaded) { expectConsistent(loaded.zul); });
    }
    withEveryAllocationFailing(
        loadedContainer,
        [](LoadedContainer& loaded) { loaded.zul.removeTag(loaded.zul.getTagAt(ZUL_process::tag_id, 0)); },
        [](LoadedContainer& loaded) { expectConsistent(loaded.zul); });
}

TEST(FailingAllocation, OfASetterLeavesAConsistentContainer)
{
    withEveryAllocationFailing(
        loadedContainer,
        [](LoadedContainer& loaded) {
            ZUL& zul = loaded.zul;
            zul.setAuthor("an author with a name that is too long to be stored within the tag itself");
            zul.setDesignName("a name that is too long to be stored within the tag itself, we think");
            zul.setDesignVersion(65535, 65535);
            zul.setId("an identifier that is too long to be stored within the tag itself");
            zul.getConfigAt(0)->setId("another identifier that is too long to be stored within it");
            zul.getConfigAt(0)->setDestination(nullptr);
            zul.getConfigAt(0)->setBoard(77, 78);
            zul.getRegisterAt(1)->setName(
                "a name that is too long for the older layout, which has 64 characters");
        },
        [](LoadedContainer& loaded) { expectConsistent(loaded.zul); });
}

TEST(FailingAllocation, OfASaveTouchesNoFile)
{
    TemporaryDirectory const directory;
    std::string const path = directory / "design.zul";
    for (std::string const other : {"", "second name"}) { // replaced by another file, and written in place
        bool failed = true;
        writeFile(path, Bytes().chars("old"));
        if (!other.empty()) {
            std::filesystem::create_hard_link(path, directory / other);
        }
        for (std::size_t failing = 1; failed; ++failing) {
            writeFile(path, Bytes().chars("old")); // a failure that is made good changes it
            ZUL zul;
            int result = 0;
            {
                WatchedAllocations const watched(failing);
                result = zul.Save(path.c_str());
                failed = watched.hasFailed();
            }
            EXPECT_TRUE(result == 0 || result == -ENOMEM || result == -EFAULT) << result;
            EXPECT_EQ(readFile(path) == Bytes().chars("old"), result != 0);
            EXPECT_EQ(entriesOf(directory.path()).size(), other.empty() ? 1U : 2U);
        }
    }
}

TEST(AnnouncedCounts, CostNoMemory)
{
    Bytes const bytes = headBytes(0xFFFFFFFF, 0xFFFFFFFF).append(sample::comment()).append(sample::config(1));
    for (ZULLoadMode const mode : {ZUL_LOAD_STRICT, ZUL_LOAD_TOLERANT}) {
        ZUL zul;
        zul.setLoadMode(mode);
        WatchedAllocations const watched;
        EXPECT_EQ(zul.Load(bytes.data(), bytes.size()), mode == ZUL_LOAD_STRICT ? -22 : 0);
        EXPECT_LT(watched.bytes(), 16U << 10U);
    }
}

TEST(AnnouncedCounts, OfNamesAndElementsCostNoMemory)
{
    // Inner lengths that reach far behind the bytes are refused before anything is copied.
    Bytes const reg = sample::newRegister("r").setU32(4, 0xFFFFFFFF).setU32(24, 0xFFFFFFDF);
    Bytes const field = sample::fieldParam("f", 0).setU32(104, 0x1FFFFFFF).setU32(4, 0xFFFFFFFF);
    Bytes const link = sample::paramLink(0, 0).setU32(36, 0x80000000).setU32(40, 0x80000006);
    for (Bytes const& tag : {reg, field, link}) {
        Bytes const bytes =
            ContainerBytes().tag(sample::process(0)).tag(sample::module(0, 0)).tag(tag).build();
        ZUL zul;
        CapturedOutput const quiet;
        WatchedAllocations const watched;
        EXPECT_THROW(zul.Load(bytes.data(), bytes.size()), ZUL_file_bad_tag_length);
        EXPECT_LT(watched.bytes(), 16U << 10U);
    }
}

TEST(LoadedPayloads, AreNotCopied)
{
    std::string const bits(1 << 20U, 'x');
    Bytes const bytes = ContainerBytes()
                            .tag(sample::library("camera", bits))
                            .config(sample::config(1, bits))
                            .config(sample::config(2, bits))
                            .build();
    ZUL zul;
    WatchedAllocations const watched;
    EXPECT_EQ(zul.Load(bytes.data(), bytes.size()), 0);
    EXPECT_LT(watched.bytes(), 16U << 10U);
}

} // namespace
