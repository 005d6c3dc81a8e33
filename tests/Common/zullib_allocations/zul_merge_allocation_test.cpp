#include "allocations.h"
#include "container_bytes.h"
#include "merging.h"
#include "sample_tags.h"

#include <memory>

namespace {

using namespace merging;

/// A container with tags of most kinds, a second id, and an author without text.
Bytes ownBytes()
{
    return ContainerBytes()
        .tag(sample::userInfo("__ZUL_ID__", "own"))
        .tag(sample::comment())
        .tag(sample::process(3))
        .tag(sample::module(7, 3))
        .tag(sample::integerParam("width", 7))
        .tag(sample::oldRegister("OwnRegister"))
        .tag(sample::event("OwnEvent", "OwnRegister"))
        .tag(sample::fpgaInfo())
        .tag(sample::destination(2))
        .tag(sample::userInfo("__ZUL_ID__", "second"))
        .config(sample::config(2))
        .build();
}

/// Users of processes and modules that come later, besides one tag of every kind.
std::unique_ptr<LoadedContainer> otherContainer()
{
    auto other = std::make_unique<LoadedContainer>(sample::everyKind());
    auto* const parameter = file<ZUL_camparam>(other->zul, 0U, nullptr);
    auto* const module = fileModule(other->zul, 4, nullptr);
    parameter->setModule(module);
    module->setProcess(fileProcess(other->zul, 9));
    return other;
}

/// With and without everything that questions build.
std::unique_ptr<LoadedContainer> ownContainer(bool asked)
{
    auto own = std::make_unique<LoadedContainer>(ownBytes());
    file<ZUL_author>(own->zul);
    if (asked) {
        static_cast<void>(own->zul.getModuleAt(7));
        static_cast<void>(own->zul.getProcessAt(3));
        static_cast<void>(own->zul.findRegister("OwnRegister"));
        static_cast<void>(own->zul.getTagCount(ZUL_comment::tag_id));
        static_cast<void>(own->zul.searchDestination(2, 0, 0));
    }
    return own;
}

void expectUsable(ZUL& zul)
{
    EXPECT_STREQ(tagOf<ZUL_process>(zul)->getName(), "acquisition");
    EXPECT_EQ(zul.getProcessAt(3), tagOf<ZUL_process>(zul));
    EXPECT_EQ(zul.getModuleAt(7), tagOf<ZUL_module>(zul));
    EXPECT_EQ(zul.findRegister("OwnRegister"), zul.getRegisterAt(1));
    std::vector<ZUL_tag*> const tags = tagsOf(zul);
    auto const isHere = [&tags](ZUL_tag const* tag) {
        return tag == nullptr || std::find(tags.begin(), tags.end(), tag) != tags.end();
    };
    for (ZUL_tag* const tag : tags) {
        EXPECT_EQ(tag->getParent(), &zul);
        if (auto const* const module = dynamic_cast<ZUL_module*>(tag)) {
            EXPECT_TRUE(isHere(module->getProcess()));
        } else if (auto const* const parameter = dynamic_cast<ZUL_camparam*>(tag)) {
            EXPECT_TRUE(isHere(parameter->getModule()));
        } else if (auto const* const event = dynamic_cast<ZUL_event*>(tag)) {
            EXPECT_TRUE(isHere(event->getRegister()));
        }
    }
    zul.setId("still usable");
    EXPECT_STREQ(zul.getId(), "still usable");
    zul.removeTags(ZUL_camparam::tag_id);
}

TEST(FailingAllocation, OfAMergeLeavesAUsableContainerAndNoReferenceToNothing)
{
    auto const other = otherContainer();
    for (bool const asked : {false, true}) {
        std::size_t const failures = withEveryAllocationFailing(
            [asked] { return ownContainer(asked); }, [&](LoadedContainer& own) { own.zul += other->zul; },
            [](LoadedContainer& own) { expectUsable(own.zul); });
        EXPECT_GT(failures, 40U);
    }
}

TEST(FailingAllocation, OfAMergeIntoAnEmptyContainerLeavesAUsableOne)
{
    auto const other = otherContainer();
    std::size_t const failures = withEveryAllocationFailing([] { return std::make_unique<ZUL>(); },
                                                            [&](ZUL& zul) { zul += other->zul; },
                                                            [](ZUL& zul) {
                                                                zul.setId("still usable");
                                                                EXPECT_STREQ(zul.getId(), "still usable");
                                                            });
    EXPECT_GT(failures, 40U);
}

TEST(FailingAllocation, OfAMergeWithItselfLeavesAUsableContainer)
{
    withEveryAllocationFailing(
        [] {
            auto own = ownContainer(false);
            own->zul.removeTags(ZUL_event::tag_id);
            own->zul.removeTags(ZUL_register::old_tag_id);
            return own;
        },
        [](LoadedContainer& own) {
            own.zul += own.zul;
            EXPECT_EQ(own.zul.getTagCount(ZUL_process::tag_id), 2U);
        },
        [](LoadedContainer& own) {
            own.zul.setId("still usable");
            EXPECT_STREQ(own.zul.getId(), "still usable");
        });
}

TEST(FailingAllocation, OfAnUndoneMergeLeavesBytesOrderAndPointers)
{
    auto const other = otherContainer();
    for (bool const asked : {false, true}) {
        std::vector<ZUL_tag*> before;
        ZUL_tag const* config = nullptr;
        std::unique_ptr<LoadedContainer> const twin = ownContainer(false);
        Bytes const bytes = savedContainer(twin->zul);
        std::size_t const failures = withEveryAllocationFailing(
            [&] {
                auto own = ownContainer(asked);
                tagOf<ZUL_event>(own->zul)->setFirmwareEvent(true);
                before = tagsOf(own->zul);
                config = own->zul.getConfigAt(0);
                return own;
            },
            [&](LoadedContainer& own) {
                own.zul.mergeAllOrNothing(other->zul, [&own] {
                    auto const needed = std::make_unique<int>(0);
                    own.zul.removeTags(ZUL_fixed_fpga_info::tag_id);
                });
            },
            [&](LoadedContainer& own) {
                EXPECT_EQ(tagsOf(own.zul), before);
                ASSERT_EQ(own.zul.getConfigCount(), 1U);
                EXPECT_EQ(own.zul.getConfigAt(0), config);
                EXPECT_EQ(own.zul.getAuthor(), nullptr);
                EXPECT_EQ(own.zul.getDesignName(), nullptr);
                EXPECT_STREQ(own.zul.getId(), "own");
                EXPECT_TRUE(tagOf<ZUL_event>(own.zul)->isFirmwareEvent());
                EXPECT_EQ(savedContainer(own.zul), bytes);
                expectUsable(own.zul);
            });
        EXPECT_GT(failures, 50U);
    }
}

} // namespace
