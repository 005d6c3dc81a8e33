#include "container_bytes.h"
#include "loaded_container.h"
#include "sample_tags.h"
#include "zullib.h"

#include <gtest/gtest.h>

namespace {

constexpr ZUL* noContainer = nullptr;
constexpr unsigned int none = 0xFFFFFFFF;

ZUL_multi_data* addConfig(ZUL& zul, unsigned int index)
{
    auto* const config = new ZUL_multi_data(&zul);
    config->setIndex(index);
    zul.AddConfig(config, nullptr);
    return config;
}

TEST(ZulConfigurations, AreCountedAndListedInOrder)
{
    ZUL zul;
    EXPECT_EQ(zul.getConfigCount(), 0U);
    EXPECT_EQ(zul.getConfigAt(0), nullptr);
    ZUL_multi_data* const first = addConfig(zul, 7);
    ZUL_multi_data* const second = addConfig(zul, 7);
    EXPECT_EQ(zul.getConfigCount(), 2U);
    EXPECT_EQ(zul.getConfigAt(0), first);
    EXPECT_EQ(zul.getConfigAt(1), second);
    EXPECT_EQ(zul.getConfigAt(2), nullptr);
    EXPECT_EQ(zul.getTotalTagCount(), 0U);
    EXPECT_EQ(zul.getTagCount(ZUL_multi_data::tag_id), 0U);
    EXPECT_EQ(zul.getTagAt(ZUL_multi_data::tag_id, 0), nullptr);
}

TEST(ZulConfigurations, AreAddedWithAnIdentifier)
{
    ZUL zul;
    auto* const config = new ZUL_multi_data(noContainer);
    config->setIndex(12);
    zul.AddConfig(config, "4711");
    EXPECT_STREQ(config->getId(), "4711");
    auto const* const info = zul.findUserInfo(":12UL_MULTI_DATA_ID__");
    ASSERT_NE(info, nullptr);
    EXPECT_STREQ(info->getInfoString(), "4711");
    auto* const sameIndex = new ZUL_multi_data(noContainer);
    sameIndex->setIndex(12);
    zul.AddConfig(sameIndex, nullptr);
    EXPECT_EQ(config->getId(), nullptr) << "the identifier is the index's";
}

TEST(MaxConfigIndex, IsTheLargestSignedOne)
{
    ZUL zul;
    EXPECT_EQ(zul.getMaxConfigIndex(), none);
    addConfig(zul, 0x80000000);
    EXPECT_EQ(zul.getMaxConfigIndex(), none) << "no index of 0x80000000 or more ever wins";
    addConfig(zul, 0xFFFFFFFF);
    EXPECT_EQ(zul.getMaxConfigIndex(), none);
    addConfig(zul, 0);
    EXPECT_EQ(zul.getMaxConfigIndex(), 0U);
    addConfig(zul, 0x7FFFFFFF);
    addConfig(zul, 3);
    EXPECT_EQ(zul.getMaxConfigIndex(), 0x7FFFFFFFU);
}

class BoardMatch : public testing::Test {
protected:
    ZUL_multi_data* add(unsigned int index, unsigned short board, unsigned short revision)
    {
        ZUL_multi_data* const config = addConfig(zul, index);
        config->setBoard(board, revision);
        return config;
    }

    ZUL zul;
};

TEST_F(BoardMatch, ZeroTakesTheFirstWithTheIndex)
{
    EXPECT_EQ(zul.getConfig(2, 0), nullptr);
    add(1, 0x123, 4);
    ZUL_multi_data* const second = add(2, 0x123, 4);
    add(2, 0x456, 1);
    EXPECT_EQ(zul.getConfig(2, 0), second);
    EXPECT_EQ(zul.getConfig(3, 0), nullptr);
}

TEST_F(BoardMatch, SmallNumberIsTheBoardType)
{
    add(2, 0x456, 1);
    ZUL_multi_data* const config = add(2, 0x123, 4);
    EXPECT_EQ(zul.getConfig(2, 0x123), config);
    EXPECT_EQ(zul.getConfig(2, 0x124), nullptr);
    EXPECT_EQ(zul.getConfig(1, 0x123), nullptr);
}

TEST_F(BoardMatch, NumberWithUpperBitsIsTypeAndRevision)
{
    add(2, 0x123, 5);
    ZUL_multi_data* const config = add(2, 0x123, 4);
    EXPECT_EQ(zul.getConfig(2, 0x1234), config);
    EXPECT_EQ(zul.getConfig(2, 0x1236), nullptr);
    EXPECT_EQ(zul.getConfig(2, 0x1230), nullptr);
}

TEST_F(BoardMatch, RevisionIsLaidOverTheType)
{
    ZUL_multi_data* const config = add(2, 0xA44, 0x1F); // 0xA440 | 0x1F
    EXPECT_EQ(zul.getConfig(2, 0xA45F), config);
    EXPECT_EQ(zul.getConfig(2, 0xA44F), nullptr);
}

TEST_F(BoardMatch, WideTypeMatchesOnlyWithRevision)
{
    ZUL_multi_data* const config = add(2, 0xA440, 2);
    EXPECT_EQ(zul.getConfig(2, 0xA440), nullptr) << "has one of the upper bits, so it is type and revision";
    EXPECT_EQ(zul.getConfig(2, 0xA4402), config);
    EXPECT_EQ(zul.getConfig(2, 0x10000), nullptr) << "none of the bits 0xF000: a type that no board has";
}

TEST_F(BoardMatch, WithoutDestinationTheFpgaTypeIsTheBoard)
{
    ZUL_multi_data* const config = addConfig(zul, 2);
    config->setFpgaType(0x00010345);
    EXPECT_EQ(zul.getConfig(2, 0x345), config);
    config->setFpgaType(0x00012345);
    EXPECT_EQ(zul.getConfig(2, 0x12345), nullptr) << "the type is 0x2345, and 0x23450 is asked for it";
    EXPECT_EQ(zul.getConfig(2, 0x23450), config);
}

TEST(SearchDestination, FindsTheFirstWithAllThreeValues)
{
    ZUL zul;
    zul.AddTag(new ZUL_destination(nullptr, 1, 2, 4));
    auto* const first = new ZUL_destination(nullptr, 1, 2, 3);
    zul.AddTag(first);
    zul.AddTag(new ZUL_destination(nullptr, 1, 2, 3));
    EXPECT_EQ(zul.searchDestination(1, 2, 3), first);
    EXPECT_EQ(zul.searchDestination(2, 2, 3), nullptr);
    EXPECT_EQ(zul.searchDestination(1, 3, 3), nullptr);
    EXPECT_EQ(zul.searchDestination(1, 2, 5), nullptr);
}

TEST(SearchDestination, FollowsEveryEdit)
{
    ZUL zul;
    auto* const destination = new ZUL_destination(nullptr, 1, 2, 3);
    zul.AddTag(destination);
    ASSERT_EQ(zul.searchDestination(1, 2, 3), destination);
    destination->setIndex(9);
    EXPECT_EQ(zul.searchDestination(1, 2, 3), nullptr);
    EXPECT_EQ(zul.searchDestination(9, 2, 3), destination);
    destination->setBoard(8);
    EXPECT_EQ(zul.searchDestination(9, 8, 3), destination);
    destination->setRevision(7);
    EXPECT_EQ(zul.searchDestination(9, 8, 7), destination);
    destination->setBoard(0xFFFF, 0xFFFF);
    EXPECT_EQ(zul.searchDestination(9, 0xFFFF, 0xFFFF), destination);
    *destination = ZUL_destination(nullptr, 1, 1, 1);
    EXPECT_EQ(zul.searchDestination(1, 1, 1), destination);
    zul.removeTag(destination);
    EXPECT_EQ(zul.searchDestination(1, 1, 1), nullptr);
}

TEST(SetBoard, MakesOneDestinationForEqualValues)
{
    ZUL zul;
    ZUL_multi_data* const first = addConfig(zul, 0x105);
    ZUL_multi_data* const second = addConfig(zul, 5);
    first->setBoard(2, 3);
    second->setBoard(2, 3);
    ASSERT_EQ(zul.getTagCount(ZUL_destination::tag_id), 1U);
    EXPECT_EQ(first->getDestination(), second->getDestination());
    EXPECT_EQ(first->getDestination()->getIndex(), 5) << "the low 8 bits";
    EXPECT_EQ(first->getIndex(), 0x105U) << "the configuration keeps its own index";
    first->setBoard(7, 8);
    EXPECT_EQ(second->getBoardType(), 7) << "the destination is shared";
    EXPECT_EQ(zul.getTagCount(ZUL_destination::tag_id), 1U);
}

} // namespace
