#include "zullib.h"

#include <gtest/gtest.h>

namespace {

constexpr ZUL* noContainer = nullptr;

TEST(SingleInstances, AreMadeChangedAndDeletedByTheirSetters)
{
    ZUL zul;
    EXPECT_EQ(zul.getAuthor(), nullptr);
    EXPECT_EQ(zul.getDesignName(), nullptr);
    EXPECT_EQ(zul.getDesignVersion(), nullptr);
    for (char const* const text : {"first", "second"}) {
        zul.setAuthor(text);
        zul.setDesignName(text);
        zul.setDesignVersion(text);
        EXPECT_STREQ(zul.getAuthor(), text);
        EXPECT_STREQ(zul.getDesignName(), text);
        EXPECT_STREQ(zul.getDesignVersion(), text);
        EXPECT_EQ(zul.getTotalTagCount(), 3U);
    }
    zul.setAuthor(zul.getAuthor());
    EXPECT_STREQ(zul.getAuthor(), "second") << "its own text";
    zul.setAuthor(nullptr);
    EXPECT_EQ(zul.getAuthor(), nullptr);
    EXPECT_EQ(zul.getTotalTagCount(), 2U);
    zul.setDesignName(nullptr);
    zul.setDesignVersion(static_cast<char const*>(nullptr));
    EXPECT_EQ(zul.getDesignName(), nullptr);
    EXPECT_EQ(zul.getDesignVersion(), nullptr);
    EXPECT_EQ(zul.getTotalTagCount(), 0U);
}

TEST(DesignVersion, OfTwoNumbersIsTheirDecimalText)
{
    ZUL zul;
    zul.setDesignVersion(3, 65535);
    EXPECT_STREQ(zul.getDesignVersion(), "3.65535");
    zul.setDesignVersion(10, 0);
    EXPECT_STREQ(zul.getDesignVersion(), "10.0");
}

TEST(DesignVersion, IsCopiedFromATagThatStaysTheCallers)
{
    ZUL zul;
    ZUL_design_version version(noContainer);
    version.setVersion("4.2");
    zul.setDesignVersion(&version);
    version.setVersion("4.3");
    EXPECT_STREQ(zul.getDesignVersion(), "4.2");
    zul.setDesignVersion(&version);
    EXPECT_STREQ(zul.getDesignVersion(), "4.3");
    zul.setDesignVersion(static_cast<ZUL_design_version const*>(nullptr));
    EXPECT_EQ(zul.getDesignVersion(), nullptr);
}

TEST(DesignVersion, NumberIsCopiedForEachIndex)
{
    ZUL zul;
    ZUL_design_version_nr number(noContainer);
    number.setIndex(1);
    number.setVersion(2, 3);
    zul.setDesignVersion(&number);
    number.setIndex(2);
    zul.setDesignVersion(&number);
    EXPECT_EQ(zul.getTagCount(ZUL_design_version_nr::tag_id), 2U);
    auto* const first = static_cast<ZUL_design_version_nr*>(zul.getTagAt(ZUL_design_version_nr::tag_id, 0));
    first->setIndex(9);
    number.setIndex(1);
    zul.setDesignVersion(&number);
    EXPECT_EQ(zul.getTagCount(ZUL_design_version_nr::tag_id), 3U)
        << "the one with index 1 has another one now";
}

TEST(ContainerId, IsTheValueOfAUserInfo)
{
    ZUL zul;
    EXPECT_EQ(zul.getId(), nullptr);
    zul.setId(nullptr);
    EXPECT_EQ(zul.getTotalTagCount(), 0U);
    EXPECT_EQ(zul.getTagCount(ZUL_user_info::tag_id), 0U);
    zul.setId("4711");
    EXPECT_STREQ(zul.getId(), "4711");
    ASSERT_EQ(zul.getTagCount(ZUL_user_info::tag_id), 1U);
    auto const* const info = static_cast<ZUL_user_info*>(zul.getTagAt(ZUL_user_info::tag_id, 0));
    EXPECT_STREQ(info->getInfo(), "__ZUL_ID__");
    EXPECT_EQ(info->getParent(), &zul);
    zul.setId("4712");
    EXPECT_STREQ(info->getInfoString(), "4712");
    zul.setId(zul.getId());
    EXPECT_STREQ(zul.getId(), "4712");
    zul.setId(nullptr);
    EXPECT_EQ(zul.getId(), nullptr);
    EXPECT_EQ(zul.getTagCount(ZUL_user_info::tag_id), 0U);
}

TEST(ContainerId, IsGeneratedOnceAndSaysThatItIsNotValid)
{
    for (bool const flag : {false, true}) {
        ZUL zul;
        EXPECT_STREQ(zul.generateId(flag), "__INVALID_ZUL_ID__");
        EXPECT_STREQ(zul.generateId(flag), "__INVALID_ZUL_ID__");
        EXPECT_EQ(zul.getTagCount(ZUL_user_info::tag_id), 1U);
        zul.setId("real");
        EXPECT_STREQ(zul.generateId(flag), "real");
        zul.generateAllIds(flag);
        EXPECT_STREQ(zul.getId(), "real");
    }
}

TEST(ContainerId, OfAllReachesNoConfiguration)
{
    ZUL zul;
    auto* const config = new ZUL_multi_data(&zul);
    zul.AddConfig(config, nullptr);
    zul.generateAllIds(true);
    EXPECT_EQ(config->getId(), nullptr);
    EXPECT_STREQ(zul.getId(), "__INVALID_ZUL_ID__");
    EXPECT_EQ(zul.getTotalTagCount(), 1U);
}

} // namespace
