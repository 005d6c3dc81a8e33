#include "container_bytes.h"
#include "merging.h"
#include "sample_tags.h"

#include <stdexcept>

namespace {

using namespace merging;

/// A container with tags of every kind, ids in their midst, and events.
Bytes ownBytes()
{
    return ContainerBytes()
        .tag(sample::comment())
        .tag(sample::userInfo("__ZUL_ID__", "first"))
        .tag(sample::process(3))
        .tag(sample::module(7, 3))
        .tag(sample::integerParam("width", 7))
        .tag(sample::userInfo("__ZUL_ID__", "second"))
        .tag(sample::oldRegister("OwnControl"))
        .tag(sample::registerLink("alias", "OwnControl"))
        .tag(sample::event("FrameEnd", "OwnControl"))
        .tag(sample::event("FrameStart", "OwnControl").setU8(8, 250).setU8(9, 7))
        .tag(sample::fpgaInfo())
        .tag(sample::destination(2))
        .config(sample::config(2))
        .build();
}

/// What can be seen of a container without changing it.
struct Seen {
    explicit Seen(ZUL& zul)
        : tags(tagsOf(zul)),
          author(zul.getAuthor()),
          designName(zul.getDesignName()),
          designVersion(zul.getDesignVersion()),
          id(zul.getId() == nullptr ? "" : zul.getId()),
          count(zul.getTotalTagCount()),
          configs(zul.getConfigCount())
    {
        for (unsigned i = 0; i < zul.getTagCount(ZUL_event::tag_id); ++i) {
            firmware.push_back(tagOf<ZUL_event>(zul, i)->isFirmwareEvent());
        }
        for (ZUL_tag* const tag : tags) {
            ids.push_back(tag->getTagId());
        }
        bytes = savedContainer(zul);
    }
    bool operator==(Seen const&) const = default;

    std::vector<ZUL_tag*> tags;
    std::vector<std::uint32_t> ids;
    char const* author;
    char const* designName;
    char const* designVersion;
    std::string id;
    unsigned count;
    unsigned configs;
    std::vector<bool> firmware;
    Bytes bytes;
};

/// Merges @p other, which fails in the merge or else in the finish, and checks that nothing has changed.
/// @return whether it got as far as the finish
bool expectUnchangedByFailure(ZUL& zul, ZUL const& other)
{
    tagOf<ZUL_event>(zul, 1)->flagAsFirmwareEvent();
    Seen const before(zul);
    bool finished = false;
    EXPECT_ANY_THROW(zul.mergeAllOrNothing(other, [&] {
        finished = true;
        EXPECT_FALSE(Seen(zul) == before);
        throw std::runtime_error("finish");
    }));
    EXPECT_TRUE(Seen(zul) == before);
    EXPECT_EQ(zul.getTagAt(ZUL_process::tag_id, 0), zul.getProcessAt(3));
    EXPECT_EQ(zul.getTagCount(ZUL_process::tag_id), 1U);
    EXPECT_EQ(zul.findRegister("alias"), zul.getRegisterAt(1));
    EXPECT_EQ(zul.findRegister("FrameCounter"), nullptr);
    EXPECT_EQ(zul.getConfigAt(0)->getDestination(), tagOf<ZUL_destination>(zul));
    EXPECT_EQ(tagOf<ZUL_module>(zul)->getProcess(), zul.getProcessAt(3));
    return finished;
}

TEST(MergeAllOrNothing, IsUndoneWhenItsFinishThrows)
{
    for (bool const withConfig : {false, true}) {
        LoadedContainer own(ownBytes());
        LoadedContainer other(sample::everyKind());
        if (!withConfig) {
            own.zul.removeTags(ZUL_multi_data::tag_id);
            fileConfiguration(own.zul, 0)->setBoard(1, 2);
        }
        EXPECT_TRUE(expectUnchangedByFailure(own.zul, other.zul));
        EXPECT_EQ(savedContainer(other.zul), sample::everyKind());
    }
}

TEST(MergeAllOrNothing, TakesFirmwareFlagsOfOwnEventsBack)
{
    ZUL zul;
    auto const* const event = fileEvent(zul, 3, 4);
    ZUL other;
    fileConfiguration(other, 9);
    EXPECT_ANY_THROW(zul.mergeAllOrNothing(other, [&] {
        EXPECT_TRUE(event->isFirmwareEvent());
        throw std::runtime_error("finish");
    }));
    EXPECT_FALSE(event->isFirmwareEvent());
    EXPECT_EQ(zul.getConfigCount(), 0U);
}

TEST(MergeAllOrNothing, IsUndoneWhereverItIsRefused)
{
    Bytes const before = ContainerBytes()
                             .tag(sample::author())
                             .tag(sample::designName())
                             .tag(sample::designVersion())
                             .tag(sample::process(0))
                             .tag(sample::module(0, 0))
                             .tag(sample::userInfo("__ZUL_ID__", "other"))
                             .tag(sample::newRegister("FrameCounter"))
                             .tag(sample::destination(1))
                             .config(sample::config(1))
                             .build();
    auto const refused = [&before](std::function<void(ZUL&)> const& add) {
        LoadedContainer own(ownBytes());
        LoadedContainer other(before);
        add(other.zul);
        EXPECT_THROW(ZUL(own.zul) += other.zul, ZUL_runtime_error) << "the case is one";
        EXPECT_FALSE(expectUnchangedByFailure(own.zul, other.zul));
    };
    refused([](ZUL& zul) { fileModule(zul, 1, nullptr); });
    refused([](ZUL& zul) { file<ZUL_param>(zul, QL_ParamType{1}, nullptr); });
    refused([](ZUL& zul) { file<ZUL_channel_param>(zul, false, nullptr, "link"); });
    refused([](ZUL& zul) { file<ZUL_dma_param>(zul, 0U, nullptr); });
    refused([](ZUL& zul) { file<ZUL_camparam>(zul, 0U, nullptr); });
    refused([](ZUL& zul) { file<ZUL_param_link>(zul, nullptr, tagOf<ZUL_module>(zul)); });
    refused([](ZUL& zul) { file<ZUL_param_link>(zul, tagOf<ZUL_module>(zul), nullptr); });
    refused([](ZUL& zul) { file<ZUL_register>(zul, "OwnControl", false); });
    refused([](ZUL& zul) { file<ZUL_register>(zul, "alias", false); });
    refused([](ZUL& zul) { fileEvent(zul, 18, 9); }); // queue 2 of the own event moves there
    refused([](ZUL& zul) { fileEvent(zul, 18, 255); });
    refused([](ZUL& zul) {
        auto* const module = file<ZUL_camparam>(zul, 0U, nullptr); // before its module, which is bound first
        module->setModule(fileModule(zul, 5, zul.getProcessAt(0)));
        fileEvent(zul, 10, 7); // queue 250, wrapped
    });
}

TEST(MergeAllOrNothing, BringsIdAndEmptySingleInstancesBack)
{
    ZUL zul;
    zul.setId("own");
    file<ZUL_author>(zul);
    file<ZUL_design_name>(zul);
    ZUL other;
    other.setId("other");
    other.setAuthor("other");
    other.setDesignName("other");
    other.setDesignVersion("other");
    ZUL_tag const* const id = zul.getTagAt(ZUL_user_info::tag_id, 0);
    EXPECT_ANY_THROW(zul.mergeAllOrNothing(other, [&zul] {
        EXPECT_EQ(zul.getId(), nullptr);
        EXPECT_STREQ(zul.getAuthor(), "other");
        EXPECT_STREQ(zul.getDesignName(), "other");
        EXPECT_STREQ(zul.getDesignVersion(), "other");
        throw std::runtime_error("finish");
    }));
    EXPECT_EQ(zul.getTagAt(ZUL_user_info::tag_id, 0), id);
    EXPECT_STREQ(zul.getId(), "own");
    EXPECT_EQ(zul.getAuthor(), nullptr);
    EXPECT_EQ(zul.getDesignName(), nullptr);
    EXPECT_EQ(zul.getDesignVersion(), nullptr);
    EXPECT_EQ(zul.getTotalTagCount(), 3U) << "the empty author and name are there";

    ZUL empty;
    EXPECT_ANY_THROW(empty.mergeAllOrNothing(other, [] { throw std::runtime_error("finish"); }));
    EXPECT_EQ(empty.getTotalTagCount(), 0U);
}

TEST(MergeAllOrNothing, AnUndoneIdIsAnOrdinaryTagAgain)
{
    ZUL zul;
    zul.setId("own");
    ZUL other;
    other.setId("other");
    EXPECT_ANY_THROW(zul.mergeAllOrNothing(other, [] { throw std::runtime_error("finish"); }));
    auto* const info = tagOf<ZUL_user_info>(zul);
    EXPECT_EQ(zul.findUserInfo("__ZUL_ID__"), info);
    info->setInfo("renamed"); // the container hears of it
    EXPECT_EQ(zul.getId(), nullptr);
    EXPECT_EQ(zul.findUserInfo("renamed"), info);
    zul.removeTag(info);
    EXPECT_EQ(zul.getTotalTagCount(), 0U);
}

TEST(MergeAllOrNothing, ThatSucceedsKeepsAddressesAndCallsItsFinishOnTheMergedContainer)
{
    LoadedContainer own(ownBytes());
    LoadedContainer const other(sample::everyKind());
    std::vector<ZUL_tag*> expected = tagsOf(own.zul);
    std::erase_if(expected, [](ZUL_tag* tag) {
        auto const* const info = dynamic_cast<ZUL_user_info*>(tag);
        return info != nullptr || tag->getTagId() == ZUL_fixed_fpga_info::tag_id;
    });
    unsigned calls = 0;
    LoadedContainer harmless(ContainerBytes()
                                 .tag(sample::userInfo("__ZUL_ID__", "other"))
                                 .tag(sample::fpgaInfo())
                                 .tag(sample::comment())
                                 .build());
    own.zul.mergeAllOrNothing(harmless.zul, [&] {
        ++calls;
        EXPECT_EQ(own.zul.getTagCount(ZUL_comment::tag_id), 2U);
        EXPECT_EQ(own.zul.getTagCount(ZUL_fixed_fpga_info::tag_id), 2U);
        EXPECT_EQ(own.zul.getId(), nullptr);
        own.zul.removeTags(ZUL_fixed_fpga_info::tag_id);
    });
    EXPECT_EQ(calls, 1U);
    std::vector<ZUL_tag*> const tags = tagsOf(own.zul);
    ASSERT_EQ(tags.size(), expected.size() + 1);
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), tags.begin()));
    EXPECT_EQ(tags.back()->getTagId(), ZUL_comment::tag_id);
    EXPECT_EQ(own.zul.getTagCount(ZUL_fixed_fpga_info::tag_id), 0U);
}

TEST(MergeAllOrNothing, OfAContainerWithItselfIsUndoneToo)
{
    LoadedContainer own(ownBytes());
    EXPECT_FALSE(expectUnchangedByFailure(own.zul, own.zul)); // its registers are there already
    ZUL zul;
    fileModule(zul, 0, fileProcess(zul, 0));
    zul.setId("id");
    Bytes const before = savedContainer(zul);
    EXPECT_ANY_THROW(zul.mergeAllOrNothing(zul, [&] {
        EXPECT_EQ(zul.getTotalTagCount(), 4U);
        throw std::runtime_error("finish");
    }));
    EXPECT_EQ(savedContainer(zul), before);
}

TEST(MergeAllOrNothing, ForgetsWhatItsFinishAskedFor)
{
    LoadedContainer own(ownBytes());
    LoadedContainer const other(sample::everyKind());
    EXPECT_ANY_THROW(own.zul.mergeAllOrNothing(other.zul, [&own] {
        EXPECT_EQ(own.zul.getTagCount(ZUL_comment::tag_id), 2U);
        EXPECT_NE(own.zul.findRegister("FrameCounter"), nullptr);
        throw std::runtime_error("finish");
    }));
    EXPECT_EQ(own.zul.getTagCount(ZUL_comment::tag_id), 1U);
    EXPECT_EQ(own.zul.findRegister("FrameCounter"), nullptr);
}

} // namespace
