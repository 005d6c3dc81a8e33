#include "tag_kinds.h"

#include "tag_blocks.h"

#include "container_bytes.h"
#include "loaded_container.h"
#include "sample_tags.h"
#include "zullib.h"

#include <gtest/gtest.h>

#include <map>

namespace {

/// The format's table.
std::map<std::uint32_t, std::string> const classes{{0x4B4F564D, "ZUL_multi_head"},
                                                   {0x8150010, "ZUL_comment"},
                                                   {0x8150070, "ZUL_author"},
                                                   {0x8150084, "ZUL_fixed_fpga_info"},
                                                   {0x8150099, "ZUL_destination"},
                                                   {0x8150120, "ZUL_multi_data"},
                                                   {0x8151000, "ZUL_register"},
                                                   {0x8151001, "ZUL_register_link"},
                                                   {0x8151002, "ZUL_register"},
                                                   {0x8151020, "ZUL_dmacnt_register"},
                                                   {0x8151030, "ZUL_intvectorreg"},
                                                   {0x8151040, "ZUL_dmatag_register"},
                                                   {0x8151050, "ZUL_localintreg"},
                                                   {0x8151060, "ZUL_usrintqueue_read"},
                                                   {0x8151070, "ZUL_usrintqueue_write"},
                                                   {0x8154000, "ZUL_dll"},
                                                   {0x8155000, "ZUL_design_name"},
                                                   {0x8156000, "ZUL_design_version"},
                                                   {0x8156001, "ZUL_design_version_nr"},
                                                   {0x8156576, "ZUL_event"},
                                                   {0x8157000, "ZUL_module"},
                                                   {0x8158000, "ZUL_process"},
                                                   {0x8159000, "ZUL_user_info"},
                                                   {0x815A000, "ZUL_param"},
                                                   {0x815B000, "ZUL_channel_param"},
                                                   {0x815C000, "ZUL_dma_param"},
                                                   {0x815D000, "ZUL_camparam"},
                                                   {0x815E000, "ZUL_param_link"}};

TEST(TagKinds, AreThoseOfTheFormatAscendingById)
{
    std::map<std::uint32_t, std::string> found;
    std::uint32_t last = 0;
    for (TagKind const& kind : tagKinds()) {
        EXPECT_GT(kind.id, last);
        last = kind.id;
        found[kind.id] = kind.className;
        EXPECT_STRNE(kind.meaning, "");
    }
    EXPECT_EQ(found, classes);
}

TEST(TagKinds, AreFoundByIdAndNothingElseIs)
{
    for (auto const& [id, name] : classes) {
        ASSERT_NE(findTagKind(id), nullptr);
        EXPECT_EQ(findTagKind(id)->id, id);
        if (!classes.contains(id + 1)) {
            EXPECT_EQ(findTagKind(id + 1), nullptr);
        }
    }
    for (std::uint32_t const id : {0U, 0x8150015U, 0x815DFFFU, 0xFFFFFFFFU}) {
        EXPECT_EQ(findTagKind(id), nullptr) << std::hex << id;
    }
}

TEST(TagKinds, MakeTagsOfTheirClassForAContainer)
{
    ZUL zul;
    for (TagKind const& kind : tagKinds()) {
        std::unique_ptr<LaidOutTag> const tag = kind.create(&zul);
        EXPECT_EQ(tag->getParent(), &zul);
        LaidOutTag const& made = *tag;
        std::string const mangled = typeid(made).name();
        EXPECT_NE(mangled.find(kind.className), std::string::npos) << mangled;
        EXPECT_EQ(tag->getTagId(), kind.id == 0x8151000 ? 0x8151002 : kind.id)
            << "registers learn their layout by loading";
    }
    EXPECT_EQ(zul.getTotalTagCount(), 0U);
}

TEST(TagKinds, MakeTheSameInBlocks)
{
    ZUL zul;
    TagBlocks blocks;
    for (TagKind const& kind : tagKinds()) {
        std::unique_ptr<LaidOutTag> const made = kind.create(&zul);
        std::unique_ptr<LaidOutTag> const madeInBlocks = kind.createIn(blocks, &zul);
        LaidOutTag const& tag = *made;
        LaidOutTag const& inBlocks = *madeInBlocks;
        EXPECT_EQ(inBlocks.getParent(), &zul);
        EXPECT_TRUE(typeid(inBlocks) == typeid(tag)) << kind.className;
        EXPECT_EQ(inBlocks.getTagId(), tag.getTagId());
    }
}

TEST(TagKinds, DestinationsOutliveTheBlocksBecauseTheyMayLeaveTheirContainer)
{
    std::unique_ptr<LaidOutTag> destination;
    {
        TagBlocks blocks;
        destination = findTagKind(ZUL_destination::tag_id)->createIn(blocks, nullptr);
    }
    EXPECT_EQ(static_cast<ZUL_destination const*>(destination.get())->getIndex(), 0);
}

TEST(TagKinds, CopyWhatTheyOwnAndKeepWhatTheyReferTo)
{
    LoadedContainer loaded(sample::everyKind());
    ZUL other;
    unsigned copied = 0;
    for (TagKind const& kind : tagKinds()) {
        for (unsigned i = 0; i < loaded.zul.getTagCount(kind.id); ++i, ++copied) {
            ZUL_tag& tag = *loaded.zul.getTagAt(kind.id, i);
            std::unique_ptr<LaidOutTag> const copy = kind.copy(&other, tag);
            ASSERT_NE(copy, nullptr) << kind.className;
            EXPECT_EQ(copy->getParent(), &other);
            EXPECT_EQ(copy->getTagId(), kind.id);
            EXPECT_EQ(savedBytes(*copy), savedBytes(tag)) << kind.className;
        }
    }
    EXPECT_EQ(copied, 25U);
    EXPECT_EQ(other.getTotalTagCount(), 0U) << "a copied configuration or event asks for nothing";
    auto const config = findTagKind(0x8150120)->copy(&other, *loaded.zul.getConfigAt(0));
    EXPECT_EQ(static_cast<ZUL_multi_data*>(config.get())->getDestination(),
              loaded.zul.getTagAt(0x8150099, 0));
    EXPECT_NE(static_cast<ZUL_multi_data*>(config.get())->getData(), loaded.zul.getConfigAt(0)->getData());
    EXPECT_EQ(savedBytes(*config), savedBytes(*loaded.zul.getConfigAt(0)));
}

TEST(TagKinds, CopyOnlyTheirOwnClass)
{
    for (TagKind const& kind : tagKinds()) {
        ZUL_binary_data const raw(nullptr, kind.id);
        EXPECT_EQ(kind.copy(nullptr, raw), nullptr) << kind.className;
    }
}

} // namespace
