#include "loaded_container.h"
#include "sample_tags.h"
#include "throwing.h"
#include "zullib.h"

#include "kova/templates/platform/invariant.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>

namespace {

constexpr ZUL* noContainer = nullptr;
constexpr char const* notMember = "given tag is not member of this ZUL";

/// Says when it is destroyed.
class WatchedComment : public ZUL_comment {
public:
    explicit WatchedComment(int& destroyed) : ZUL_comment(noContainer), m_destroyed(destroyed) {}
    ~WatchedComment() override { ++m_destroyed; }

private:
    int& m_destroyed;
};

/// A class of somebody's own that derives from one of the format's and is a kind of its own.
template <class Base>
class OwnKind : public Base {
public:
    using Base::Base;
    std::uint32_t getTagId() const override { return 0x4242; }
};

TEST(AddTag, FilesEveryOtherKindIntoTheTagListInOrder)
{
    ZUL zul;
    std::array<ZUL_tag*, 16> const tags{new ZUL_comment(noContainer),
                                        new ZUL_fixed_fpga_info(nullptr, 0, 0, 0),
                                        new ZUL_destination(nullptr, 0, 0, 0),
                                        new ZUL_dmacnt_register(nullptr, 0, 0, 0),
                                        new ZUL_intvectorreg(noContainer),
                                        new ZUL_dmatag_register(noContainer),
                                        new ZUL_localintreg(noContainer),
                                        new ZUL_usrintqueue_read(noContainer),
                                        new ZUL_usrintqueue_write(noContainer),
                                        new ZUL_event(nullptr, 0, 0, 0),
                                        new ZUL_process(nullptr, 0, nullptr),
                                        new ZUL_module(nullptr, nullptr),
                                        new ZUL_user_info(nullptr, "info", 1U),
                                        new ZUL_param(nullptr, QL_ParamType{1}, nullptr),
                                        new ZUL_param_link(nullptr, nullptr, nullptr),
                                        new ZUL_binary_data(nullptr, 0x99)};
    for (ZUL_tag* const tag : tags) {
        EXPECT_EQ(zul.getTagCount(tag->getTagId()), 0U);
        zul.AddTag(tag);
        ASSERT_EQ(zul.getTagCount(tag->getTagId()), 1U) << std::hex << tag->getTagId();
        EXPECT_EQ(zul.getTagAt(tag->getTagId(), 0), tag);
        EXPECT_EQ(tag->getParent(), &zul);
    }
    EXPECT_EQ(zul.getTotalTagCount(), tags.size());
}

TEST(AddTag, NullIsIgnored)
{
    ZUL zul;
    zul.AddTag(nullptr);
    zul.AddLib(nullptr);
    zul.AddRegister(nullptr);
    zul.AddLink(nullptr);
    zul.AddConfig(nullptr);
    zul.AddConfig(nullptr, "id");
    zul.removeTag(nullptr);
    zul.removeDestination(nullptr);
    zul.setDesignVersion(static_cast<ZUL_design_version_nr const*>(nullptr));
    EXPECT_FALSE(zul.hasLib(nullptr));
    EXPECT_EQ(zul.getTotalTagCount(), 0U);
}

TEST(AddTag, TagIsDeletedWithTheContainer)
{
    int destroyed = 0;
    {
        ZUL zul;
        zul.AddTag(new WatchedComment(destroyed));
        EXPECT_EQ(destroyed, 0);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(AddTag, SingleInstanceReplacesTheOneThatIsThere)
{
    ZUL zul;
    for (char const* const text : {"first", "second"}) {
        auto* const author = new ZUL_author(noContainer);
        author->setAuthor(text);
        auto* const name = new ZUL_design_name(noContainer);
        name->setName(text);
        auto* const version = new ZUL_design_version(noContainer);
        version->setVersion(text);
        for (ZUL_tag* const tag : std::initializer_list<ZUL_tag*>{author, name, version}) {
            zul.AddTag(tag);
            zul.AddTag(tag); // the one that is there
            EXPECT_EQ(tag->getParent(), &zul);
        }
        EXPECT_STREQ(zul.getAuthor(), text);
        EXPECT_STREQ(zul.getDesignName(), text);
        EXPECT_STREQ(zul.getDesignVersion(), text);
    }
    EXPECT_EQ(zul.getTotalTagCount(), 3U);
    EXPECT_EQ(zul.getTagCount(ZUL_author::tag_id), 0U) << "single instances are not in the tag list";
}

TEST(AddTag, VersionNumberIsCopiedAndReleased)
{
    ZUL zul;
    for (unsigned short const revision : std::initializer_list<unsigned short>{1, 2}) {
        auto* const number = new ZUL_design_version_nr(noContainer);
        number->setVersion(7, revision);
        number->setIndex(3);
        zul.AddTag(number);
        ASSERT_EQ(zul.getTagCount(ZUL_design_version_nr::tag_id), 1U);
        auto const* const filed =
            static_cast<ZUL_design_version_nr*>(zul.getTagAt(ZUL_design_version_nr::tag_id, 0));
        EXPECT_EQ(filed->getVersion(), 7);
        EXPECT_EQ(filed->getRevision(), revision);
        EXPECT_EQ(filed->getParent(), &zul);
    }
}

TEST(AddTag, ConfigurationGetsAnEmptyIdentifier)
{
    ZUL zul;
    auto* const config = new ZUL_multi_data(noContainer);
    config->setIndex(5);
    zul.AddTag(config);
    EXPECT_EQ(zul.getConfigAt(0), config);
    EXPECT_EQ(config->getParent(), &zul);
    EXPECT_STREQ(config->getId(), "");
    ASSERT_EQ(zul.getTagCount(ZUL_user_info::tag_id), 1U);
    EXPECT_STREQ(static_cast<ZUL_user_info*>(zul.getTagAt(ZUL_user_info::tag_id, 0))->getInfo(),
                 ":5ZUL_MULTI_DATA_ID__");
    EXPECT_EQ(zul.getTagCount(ZUL_multi_data::tag_id), 0U);
}

TEST(AddTag, ClassWithAnIdOfItsOwnIsFiledByThatId)
{
    ZUL zul;
    zul.AddTag(new OwnKind<ZUL_author>(noContainer));
    zul.AddTag(new OwnKind<ZUL_design_version_nr>(noContainer));
    zul.AddTag(new OwnKind<ZUL_register>(nullptr, "same", false));
    zul.AddTag(new OwnKind<ZUL_register>(nullptr, "same", false));
    zul.AddTag(new OwnKind<ZUL_register_link>(nullptr, "a", "a"));
    zul.AddTag(new OwnKind<ZUL_register_link>(nullptr, "a", "a"));
    zul.AddTag(new OwnKind<ZUL_multi_data>(noContainer));
    EXPECT_EQ(zul.getTagCount(0x4242), 7U);
    EXPECT_EQ(zul.getAuthor(), nullptr);
    EXPECT_EQ(zul.getConfigCount(), 0U);
    EXPECT_EQ(zul.getRegisterByName("same"), 0U);
}

TEST(AddTag, OtherClassWithAnIdOfTheFormatIsFiledIntoTheTagList)
{
    ZUL zul;
    for (std::uint32_t const id :
         {0x8150070U, 0x8155000U, 0x8156000U, 0x8156001U, 0x8154000U, 0x8150120U, 0x8151001U, 0x8151000U,
          0x8151002U, 0x8158000U, 0x8157000U, 0x8159000U, 0x8150099U}) {
        zul.AddTag(new ZUL_binary_data(nullptr, id));
        EXPECT_EQ(zul.getTagCount(id), 1U) << std::hex << id;
    }
    EXPECT_EQ(zul.findRegister(""), nullptr);
    EXPECT_EQ(zul.getRegisterAt(1), nullptr);
    EXPECT_EQ(zul.getProcessAt(0), nullptr);
    EXPECT_EQ(zul.getModuleAt(0), nullptr);
    EXPECT_EQ(zul.getId(), nullptr);
    EXPECT_EQ(zul.getHighestModuleId(), 0U);
    EXPECT_EQ(zul.searchDestination(0, 0, 0), nullptr);
    EXPECT_EQ(zul.saveLibs("/", zul_opsys{0}, ZUL_dll::keep), -2);
}

TEST(AddLib, SecondOneOfNameAndSystemIsRefusedAndStaysTheCallers)
{
    ZUL zul;
    auto const make = [](char const* name, std::uint32_t system) {
        auto lib = std::make_unique<ZUL_dll>(noContainer);
        lib->setName(name);
        lib->setSystem(zul_opsys{system});
        return lib;
    };
    zul.AddLib(make("camera", 516).release());
    auto const second = make("camera", 516);
    EXPECT_TRUE(zul.hasLib(second.get()));
    for (auto const& add : std::initializer_list<std::function<void()>>{[&] { zul.AddLib(second.get()); },
                                                                        [&] { zul.AddTag(second.get()); }}) {
        try {
            add();
            FAIL() << "added";
        } catch (ZUL_dll_already_exists const& error) {
            EXPECT_STREQ(error.what(), "lib with that name already exists");
            EXPECT_EQ(error.asString(), "camera");
            EXPECT_EQ(error.getLibName(), "camera");
        }
    }
    EXPECT_EQ(zul.getTagCount(ZUL_dll::tag_id), 1U);
    zul.AddLib(make("camera", 517).release());
    zul.AddTag(make("Camera", 516).release());
    zul.AddLib(make(nullptr, 516).release());
    zul.AddLib(make(nullptr, 516).release()); // no name equals no other
    EXPECT_EQ(zul.getTagCount(ZUL_dll::tag_id), 5U);
    EXPECT_FALSE(zul.hasLib(make(nullptr, 516).get()));
}

TEST(AddLib, KnowsRenamedAndMovedLibraries)
{
    ZUL zul;
    auto* const lib = new ZUL_dll(&zul);
    lib->setName("old");
    zul.AddLib(lib);
    ZUL_dll probe(noContainer);
    probe.setName("new");
    EXPECT_FALSE(zul.hasLib(&probe));
    lib->setName("new");
    EXPECT_TRUE(zul.hasLib(&probe));
    lib->setSystem(zul_opsys{9});
    EXPECT_FALSE(zul.hasLib(&probe));
    probe.setSystem(zul_opsys{9});
    EXPECT_TRUE(zul.hasLib(&probe));
    zul.removeTag(lib);
    EXPECT_FALSE(zul.hasLib(&probe));
}

TEST(AddingTwice, LeavesOnePlaceOrEndsAProgramWithInvariants)
{
    using kova::templates::platform::invariantsAreChecked;
    ZUL zul;
    auto* const number = new ZUL_design_version_nr(noContainer);
    number->setVersion(1);
    zul.AddTag(number);
    std::array<ZUL_tag*, 5> const tags{new ZUL_comment(noContainer), new ZUL_register_link(nullptr, "a", "b"),
                                       new ZUL_register(nullptr, nullptr, true),
                                       new ZUL_multi_data(noContainer),
                                       zul.getTagAt(ZUL_design_version_nr::tag_id, 0)};
    for (std::size_t i = 0; i + 1 < tags.size(); ++i) {
        zul.AddTag(tags[i]);
    }
    for (ZUL_tag* const tag : tags) {
        if constexpr (invariantsAreChecked()) {
            EXPECT_DEATH(zul.AddTag(tag),
                         "Common/zullib/include/dynarray:44: Assertion .m_list\\[i\\] != n. failed");
        } else {
            zul.AddTag(tag);
        }
    }
    EXPECT_EQ(zul.getTotalTagCount(), 5U) << "four tags and the configuration's identifier";
    EXPECT_EQ(zul.getConfigCount(), 1U);
}

TEST(RemoveTag, TakesOutAndDeletesOneTag)
{
    ZUL zul;
    int destroyed = 0;
    auto* const comment = new WatchedComment(destroyed);
    zul.AddTag(new ZUL_comment(noContainer));
    zul.AddTag(comment);
    zul.AddTag(new ZUL_comment(noContainer));
    EXPECT_EQ(zul.getTagCount(ZUL_comment::tag_id), 3U);
    zul.removeTag(comment);
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(zul.getTagCount(ZUL_comment::tag_id), 2U);
    EXPECT_NE(zul.getTagAt(ZUL_comment::tag_id, 1), nullptr);
}

TEST(RemoveTag, RefusesWhatIsNotInTheTagList)
{
    ZUL zul;
    ZUL_comment stranger(&zul);
    auto* const author = new ZUL_author(noContainer);
    auto* const config = new ZUL_multi_data(noContainer);
    zul.AddTag(author);
    zul.AddTag(config);
    for (ZUL_tag* const tag : std::initializer_list<ZUL_tag*>{&stranger, author, config}) {
        EXPECT_TRUE(throws<ZUL_invalid_data>([&] { zul.removeTag(tag); }, notMember));
    }
    EXPECT_EQ(zul.getConfigCount(), 1U);
}

TEST(RemoveTags, TakesOutAllOfAnId)
{
    ZUL zul;
    int destroyed = 0;
    zul.AddTag(new WatchedComment(destroyed));
    zul.AddTag(new ZUL_process(nullptr, 1, nullptr));
    zul.AddTag(new WatchedComment(destroyed));
    EXPECT_EQ(zul.getTagCount(ZUL_comment::tag_id), 2U);
    EXPECT_EQ(zul.getTagCount(ZUL_process::tag_id), 1U);
    zul.removeTags(ZUL_comment::tag_id);
    EXPECT_EQ(destroyed, 2);
    EXPECT_EQ(zul.getTagCount(ZUL_comment::tag_id), 0U);
    EXPECT_EQ(zul.getTagCount(ZUL_process::tag_id), 1U);
    zul.removeTags(0x99);
    EXPECT_EQ(zul.getTotalTagCount(), 1U);
    zul.AddTag(new ZUL_comment(noContainer));
    EXPECT_EQ(zul.getTagCount(ZUL_comment::tag_id), 1U);
}

TEST(RemoveTags, OfConfigurationsTakesTheDestinationsToo)
{
    ZUL zul;
    zul.AddTag(new ZUL_destination(nullptr, 1, 2, 3));
    zul.AddTag(new ZUL_comment(noContainer));
    zul.AddConfig(new ZUL_multi_data(noContainer), nullptr);
    zul.AddConfig(new ZUL_multi_data(noContainer), nullptr);
    zul.removeTags(ZUL_multi_data::tag_id);
    EXPECT_EQ(zul.getConfigCount(), 0U);
    EXPECT_EQ(zul.getTagCount(ZUL_destination::tag_id), 0U);
    EXPECT_EQ(zul.getTotalTagCount(), 1U);
    zul.AddConfig(new ZUL_multi_data(noContainer), nullptr);
    EXPECT_EQ(zul.getConfigCount(), 1U);
}

} // namespace
